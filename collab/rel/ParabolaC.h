#ifndef QELT_REL_PARABOLAC_H
#define QELT_REL_PARABOLAC_H

#include "collab/rel/ConicRelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The parabola with a horizontal axis, (y - k)^2 = 4a(x - h).
class ParabolaC : public ConicRelationC {
public:
    ParabolaC(double h, double k, double a);
    virtual ~ParabolaC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_a() const { return a_; }
    // The curve's x at y.
    double f(double y) const;

private:
    double a_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

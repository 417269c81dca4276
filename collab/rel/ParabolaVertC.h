#ifndef QELT_REL_PARABOLAVERTC_H
#define QELT_REL_PARABOLAVERTC_H

#include "collab/rel/ConicRelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The parabola with a vertical axis, (x - h)^2 = 4a(y - k).
class ParabolaVertC : public ConicRelationC {
public:
    ParabolaVertC(double h, double k, double a);
    virtual ~ParabolaVertC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_a() const { return a_; }
    // The curve's y at x.
    double f(double x) const;

private:
    double a_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

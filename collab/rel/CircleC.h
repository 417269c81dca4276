#ifndef QELT_REL_CIRCLEC_H
#define QELT_REL_CIRCLEC_H

#include "collab/rel/ConicRelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The circle (x - h)^2 + (y - k)^2 = r^2.
class CircleC : public ConicRelationC {
public:
    CircleC(double h, double k, double r);
    virtual ~CircleC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_r() const { return r_; }

private:
    double r_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

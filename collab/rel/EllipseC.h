#ifndef QELT_REL_ELLIPSEC_H
#define QELT_REL_ELLIPSEC_H

#include "collab/rel/ConicRelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The ellipse (x - h)^2/a^2 + (y - k)^2/b^2 = 1 (a along x, b along y).
class EllipseC : public ConicRelationC {
public:
    EllipseC(double h, double k, double a, double b);
    virtual ~EllipseC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_a() const { return a_; }
    double get_b() const { return b_; }

private:
    double a_;
    double b_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

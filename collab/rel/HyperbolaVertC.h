#ifndef QELT_REL_HYPERBOLAVERTC_H
#define QELT_REL_HYPERBOLAVERTC_H

#include "collab/rel/ConicRelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The hyperbola (y - k)^2/b^2 - (x - h)^2/a^2 = 1 (transverse axis vertical).
class HyperbolaVertC : public ConicRelationC {
public:
    HyperbolaVertC(double h, double k, double a, double b);
    virtual ~HyperbolaVertC();

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

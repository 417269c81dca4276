#ifndef QELT_REL_HYPERBOLAC_H
#define QELT_REL_HYPERBOLAC_H

#include "collab/rel/ConicRelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The hyperbola (x - h)^2/a^2 - (y - k)^2/b^2 = 1 (transverse axis horizontal).
class HyperbolaC : public ConicRelationC {
public:
    HyperbolaC(double h, double k, double a, double b);
    virtual ~HyperbolaC();

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

#ifndef QELT_REL_POWERFUNCTIONC_H
#define QELT_REL_POWERFUNCTIONC_H

#include "collab/rel/PowerFunctionDomainRestrictionE.h"
#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The power function y = a*(x - h)^r + k with an integer exponent, possibly
// restricted to one side of x = h.
class PowerFunctionC : public RelationC {
public:
    PowerFunctionC(double a, double h, double k, long long r, PowerFunctionDomainRestrictionE restriction);
    virtual ~PowerFunctionC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_a() const { return a_; }
    double get_h() const { return h_; }
    double get_k() const { return k_; }
    long long get_r() const { return r_; }
    PowerFunctionDomainRestrictionE getDomainRestriction() const { return restriction_; }
    // The formula's value at x, also outside the restriction and at the pole.
    double f(double x) const;

private:
    double a_;
    double h_;
    double k_;
    long long r_;
    PowerFunctionDomainRestrictionE restriction_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

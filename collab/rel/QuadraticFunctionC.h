#ifndef QELT_REL_QUADRATICFUNCTIONC_H
#define QELT_REL_QUADRATICFUNCTIONC_H

#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The quadratic y = a*(x - h)^2 + k.
class QuadraticFunctionC : public RelationC {
public:
    QuadraticFunctionC(double a, double h, double k);
    virtual ~QuadraticFunctionC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_a() const { return a_; }
    double get_h() const { return h_; }
    double get_k() const { return k_; }
    double f(double x) const;

private:
    double a_;
    double h_;
    double k_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

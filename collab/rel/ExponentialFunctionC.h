#ifndef QELT_REL_EXPONENTIALFUNCTIONC_H
#define QELT_REL_EXPONENTIALFUNCTIONC_H

#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The exponential function y = b*e^(r*x) + k.
class ExponentialFunctionC : public RelationC {
public:
    ExponentialFunctionC(double b, double r, double k);
    virtual ~ExponentialFunctionC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_b() const { return b_; }
    double get_r() const { return r_; }
    double get_k() const { return k_; }
    // The exponent coefficient r, then the value at x: the evaluator reaches both
    // through the relation's own virtual operations.
    virtual double getCoefficient() const;
    virtual double valueAt(double x) const;

private:
    double b_;
    double r_;
    double k_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_REL_LOGARITHMICFUNCTIONC_H
#define QELT_REL_LOGARITHMICFUNCTIONC_H

#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The logarithmic function y = b*log_base(a*(x - h)) + k.
class LogarithmicFunctionC : public RelationC {
public:
    LogarithmicFunctionC(double a, double b, double h, double k, double base);
    virtual ~LogarithmicFunctionC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_a() const { return a_; }
    double get_b() const { return b_; }
    double get_h() const { return h_; }
    double get_k() const { return k_; }
    virtual double getBase() const;
    virtual double valueAt(double x) const;

private:
    double a_;
    double b_;
    double h_;
    double k_;
    double base_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

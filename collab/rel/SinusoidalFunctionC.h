#ifndef QELT_REL_SINUSOIDALFUNCTIONC_H
#define QELT_REL_SINUSOIDALFUNCTIONC_H

#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The sinusoid y = b*cos(a*(x - h)) + k, or b*sin(a*(x - h)) + k.
class SinusoidalFunctionC : public RelationC {
public:
    SinusoidalFunctionC(double a, double b, double h, double k, bool sine);
    virtual ~SinusoidalFunctionC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_a() const { return a_; }
    double get_b() const { return b_; }
    double get_h() const { return h_; }
    double get_k() const { return k_; }
    virtual double valueAt(double x) const;
    // True for the sine, false for the cosine.
    bool getSinOrCos() const { return sine_; }

private:
    double a_;
    double b_;
    double h_;
    double k_;
    bool sine_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

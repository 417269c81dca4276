#ifndef EVALG_TESTS_SAMPLEBOXFUNCTIONS_H
#define EVALG_TESTS_SAMPLEBOXFUNCTIONS_H

// Hand-written functions of the plane for the implicit relation tests,
// benchmark and fuzzer, built from the library's interval operations only.
// Each takes one constant c so that fuzzers and random tests can vary it.
#include "collab/math/IntervalC.h"
#include "collab/rel/BoxFunctionIC.h"

namespace evalgtest {

using qelt::math::IntervalC;

enum class SampleCurve { CIRCLE, WAVY_CIRCLE, SIN_COS, CUBIC, POLE };

inline IntervalC sq(IntervalC const &a) { return IntervalC::powInt(a, 2); }

// CIRCLE: x^2 + y^2 - c; WAVY_CIRCLE: x^2 + y^2 + sin(4x) - c;
// SIN_COS: sin(x) - cos(y) - c; CUBIC: y^2 - x^3 + x - c; POLE: 1/x - c,
// which changes sign across x = 0 without vanishing there.
class SampleBoxFunction : public qelt::mathapp::rel::BoxFunctionIC {
public:
    SampleBoxFunction(SampleCurve curve, double c) : curve_(curve), c_(IntervalC(c, c)) {}

    IntervalC enclose(IntervalC const &x, IntervalC const &y) const override {
        switch (curve_) {
        case SampleCurve::CIRCLE:
            return IntervalC::sub(IntervalC::add(sq(x), sq(y)), c_);
        case SampleCurve::WAVY_CIRCLE: {
            IntervalC four(4, 4);
            return IntervalC::sub(IntervalC::add(IntervalC::add(sq(x), sq(y)), IntervalC::sin(IntervalC::mul(four, x))),
                                  c_);
        }
        case SampleCurve::SIN_COS:
            return IntervalC::sub(IntervalC::sub(IntervalC::sin(x), IntervalC::cos(y)), c_);
        case SampleCurve::CUBIC:
            return IntervalC::sub(IntervalC::add(IntervalC::sub(sq(y), IntervalC::powInt(x, 3)), x), c_);
        case SampleCurve::POLE:
            return IntervalC::sub(IntervalC::div(IntervalC(1, 1), x), c_);
        }
        return IntervalC::none();
    }

private:
    SampleCurve curve_;
    IntervalC c_;
};

} // namespace evalgtest

#endif

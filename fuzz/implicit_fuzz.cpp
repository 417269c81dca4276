// Implicit relations and parametric curves with fuzzed windows, constants and
// parameter ranges. Window sizes are cut to 128 pixels a side: a window where
// every pixel stays undecided costs PIXEL_BUDGET evaluations per pixel, and a
// larger one only takes longer, no other path. An implicit relation writes
// at most two points per run and one run per pixel; a curve at most eleven
// points per piece it takes off (a block of 3x3 undecided pixels between its
// two end pixels), and it takes off one piece per evaluation it spends plus
// the few left on the stack when the budget runs out.
#include "GraphFuzzCheck.h"
#include "collab/rel/ImplicitRelationC.h"
#include "collab/rel/ParametricCurveC.h"
#include "evalg/ImplicitRelationEvalC.h"
#include "evalg/ParametricCurveEvalC.h"
#include "tests/support/SampleBoxFunctions.h"

using namespace qelt;
using namespace qelt::mathapp;
using math::IntervalC;

namespace {

// (a cos(b t), sin(c t) / t): a Lissajous figure with a pole at t = 0.
class FuzzCurve : public rel::CurveFunctionIC {
public:
    FuzzCurve(double a, double b, double c) : a_(a, a), b_(b, b), c_(c, c) {}
    void enclose(IntervalC const &t, IntervalC &x, IntervalC &y) const override {
        x = IntervalC::mul(a_, IntervalC::cos(IntervalC::mul(b_, t)));
        y = IntervalC::div(IntervalC::sin(IntervalC::mul(c_, t)), t);
    }

private:
    IntervalC a_, b_, c_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    double xMin = in.value(), xMax = in.value(), yMin = in.value(), yMax = in.value();
    unsigned short m = in.pixels() % 129, n = in.pixels() % 129;
    oss::PointerTC<ds::GraphicalDomainC> domain(new ds::GraphicalDomainC(xMin, xMax, yMin, yMax, m, n));
    unsigned long side = m > n ? m : n;
    uint8_t kind = in.byte();
    if (kind & 0x80) {
        double a = in.value(), b = in.value(), c = in.value(), t0 = in.value(), t1 = in.value();
        oss::PointerTC<rel::CurveFunctionIC> curve(new FuzzCurve(a, b, c));
        evalg::ParametricCurveEvalC evaluator;
        unsigned long bound = 11 * (unsigned long)(evalg::ParametricCurveEvalC::EVALUATION_BUDGET + 128);
        fuzzcheck::evaluate(evaluator, new rel::ParametricCurveC(curve, t0, t1), domain, 0, bound);
        return 0;
    }
    auto shape = static_cast<evalgtest::SampleCurve>((kind & 7) % 5);
    auto comparison = static_cast<rel::ImplicitRelationC::ComparisonE>((kind >> 3) % 5);
    oss::PointerTC<rel::BoxFunctionIC> h(new evalgtest::SampleBoxFunction(shape, in.value()));
    evalg::ImplicitRelationEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new rel::ImplicitRelationC(h, comparison), domain, 2 * side, 0);
    return 0;
}

// Speed of the implicit relation evaluator on relations no closed-form
// evaluator takes, on a 16:9 window over [-8, 8] x [-4.5, 4.5]: the quadtree at 1920x1080 and 3840x2160 against
// classifying every pixel on its own with the same interval arithmetic, and
// the circle x^2 + y^2 = 9 against its exact rasteriser for scale; and the
// parametric curve (cos 3t, sin 2t) at both sizes. Typed: the circle typed
// as "x^2 + y^2 = 9", read and routed to the circle rasteriser, against that
// rasteriser given the numbers; and a typed implicit relation (a compiled
// expression) against the same relation written by hand.
#include <benchmark/benchmark.h>

#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/ImplicitRelationC.h"
#include "collab/rel/ParametricCurveC.h"
#include "collab/rel/TypedRelationC.h"
#include "evalg/CircleEvalC.h"
#include "evalg/ImplicitRelationEvalC.h"
#include "evalg/ParametricCurveEvalC.h"
#include "evalg/TypedRelationEvalC.h"
#include "tests/support/SampleBoxFunctions.h"

using namespace qelt;
using namespace qelt::mathapp;
using evalgtest::SampleBoxFunction;
using evalgtest::SampleCurve;

namespace {

struct Scene {
    char const *label;
    SampleCurve curve;
    double c;
    double xReach;
    double yReach;
};

Scene const scenes[] = {
    {"x^2 + y^2 + sin(4x) = 9", SampleCurve::WAVY_CIRCLE, 9, 8, 4.5},
    {"sin(x) = cos(y)", SampleCurve::SIN_COS, 0, 8, 4.5},
    {"y^2 = x^3 - x", SampleCurve::CUBIC, 0, 8, 4.5},
    {"x^2 + y^2 = 9", SampleCurve::CIRCLE, 9, 8, 4.5},
    // Twice the extent: four times the curve per window, twice per pixel.
    {"sin(x) = cos(y), wide", SampleCurve::SIN_COS, 0, 16, 9},
};

oss::PointerTC<ds::GraphicalDomainC> window(Scene const &s, int scale) {
    return oss::PointerTC<ds::GraphicalDomainC>(new ds::GraphicalDomainC(
        -s.xReach, s.xReach, -s.yReach, s.yReach, (unsigned short)(1920 * scale), (unsigned short)(1080 * scale)));
}

// range(0): the scene; range(1): 1 for 1920x1080, 2 for 3840x2160;
// range(2): 1 to classify every pixel on its own.
void implicitRelation(benchmark::State &state) {
    Scene const &s = scenes[state.range(0)];
    oss::PointerTC<rel::BoxFunctionIC> h(new SampleBoxFunction(s.curve, s.c));
    esb::CartesianRelationServiceC service(
        oss::PointerTC<rel::RelationC>(new rel::ImplicitRelationC(h, rel::ImplicitRelationC::EQUAL)));
    auto domain = window(s, int(state.range(1)));
    evalg::ImplicitRelationEvalC evaluator;
    unsigned int points = 0;
    for (auto _ : state) points = evaluator.evaluateGraph(service, domain, state.range(2) != 0)->getCount();
    state.counters["points"] = points;
    state.SetLabel(s.label);
}

// The handheld's window, or 1920x1080 over the scenes' 16:9 window.
oss::PointerTC<ds::GraphicalDomainC> circleWindow(int size) {
    if (size == 0) return oss::PointerTC<ds::GraphicalDomainC>(new ds::GraphicalDomainC(-8, 8, -5, 5, 161, 101));
    return window(scenes[3], 1);
}

// range(0): 0 the handheld's window, 1 1920x1080.
void circleRasteriser(benchmark::State &state) {
    esb::CartesianRelationServiceC service(oss::PointerTC<rel::RelationC>(new rel::CircleC(0, 0, 3)));
    auto domain = circleWindow(int(state.range(0)));
    evalg::CircleEvalC evaluator;
    unsigned int points = 0;
    for (auto _ : state) points = evaluator.evaluateGraph(service, domain)->getCount();
    state.counters["points"] = points;
}

// range(0) as for circleRasteriser; range(1): 0 reads the text every time
// (a command), 1 draws the relation read once (a view redrawing).
void typedCircle(benchmark::State &state) {
    auto domain = circleWindow(int(state.range(0)));
    oss::PointerTC<rel::TypedRelationC> once = rel::TypedRelationC::fromText("x^2 + y^2 = 9", nullptr);
    unsigned int points = 0;
    for (auto _ : state) {
        oss::PointerTC<rel::TypedRelationC> typed =
            state.range(1) == 0 ? rel::TypedRelationC::fromText("x^2 + y^2 = 9", nullptr) : once;
        points = evalg::TypedRelationEvalC::evaluateGraph(*typed, domain)->getCount();
    }
    state.counters["points"] = points;
    state.SetLabel(once->getEvaluatorName());
}

// The wavy circle typed (a compiled expression) at 1920x1080.
void typedImplicit(benchmark::State &state) {
    oss::PointerTC<rel::TypedRelationC> typed = rel::TypedRelationC::fromText("x^2 + y^2 + sin(4x) = 9", nullptr);
    auto domain = window(scenes[0], 1);
    unsigned int points = 0;
    for (auto _ : state) points = evalg::TypedRelationEvalC::evaluateGraph(*typed, domain)->getCount();
    state.counters["points"] = points;
}

// (cos 3t, sin 2t).
class Lissajous : public rel::CurveFunctionIC {
public:
    void enclose(math::IntervalC const &t, math::IntervalC &x, math::IntervalC &y) const override {
        x = math::IntervalC::cos(math::IntervalC::mul(math::IntervalC(3, 3), t));
        y = math::IntervalC::sin(math::IntervalC::mul(math::IntervalC(2, 2), t));
    }
};

// range(0): 1 for 1920x1080, 2 for 3840x2160.
void parametricCurve(benchmark::State &state) {
    esb::CartesianRelationServiceC service(oss::PointerTC<rel::RelationC>(
        new rel::ParametricCurveC(oss::PointerTC<rel::CurveFunctionIC>(new Lissajous), 0, 6.283185307179586)));
    Scene const s{"", SampleCurve::CIRCLE, 0, 1.6, 1.1};
    auto domain = window(s, int(state.range(0)));
    evalg::ParametricCurveEvalC evaluator;
    unsigned int points = 0;
    for (auto _ : state) points = evaluator.evaluateGraph(service, domain)->getCount();
    state.counters["points"] = points;
}

} // namespace

BENCHMARK(parametricCurve)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(implicitRelation)
    ->ArgsProduct({{0, 1, 2, 3, 4}, {1, 2}, {0}})
    ->ArgsProduct({{0, 1, 2, 4}, {1}, {1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(circleRasteriser)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(typedCircle)->ArgsProduct({{0, 1}, {0, 1}})->Unit(benchmark::kMicrosecond);
BENCHMARK(typedImplicit)->Unit(benchmark::kMillisecond);

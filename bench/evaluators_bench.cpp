// Every graph evaluator against three ways of drawing the same curve:
//   Evaluator  the closed-form rasteriser itself;
//   General    the general sampled evaluator on the same relation (how a
//              program without closed-form rasterisers draws it);
//   Naive      the relation's formula with the standard math functions at
//              every column edge, emitting the same kind of runs;
//   Floor      appending the evaluator's points to a set sized for them, nothing else.
// FlushSSE2 and FlushScalar repeat Evaluator on 1920x1080 with the span flush
// forced to two lanes or one (what a CPU without AVX2 runs).
// Each runs on 161x101, 1920x1080 and 16384x4096 pixels over the same
// [-8, 8] x [-5, 5] window, with a curve that crosses the whole window.
// The items counter is the number of columns, so items_per_second compares
// the cost per column across sizes. scripts/bench-report.py turns the JSON
// output into the ratio table of the README.
#include <benchmark/benchmark.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/oss/IntegerConversionC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/EllipseC.h"
#include "collab/rel/ExponentialFunctionC.h"
#include "collab/rel/HyperbolaC.h"
#include "collab/rel/HyperbolaVertC.h"
#include "collab/rel/LinearFunction1C.h"
#include "collab/rel/LogarithmicFunctionC.h"
#include "collab/rel/ParabolaC.h"
#include "collab/rel/ParabolaVertC.h"
#include "collab/rel/PowerFunctionC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "collab/rel/SinusoidalFunctionC.h"
#include "evalg/ArbitraryFunctionFloat64EvalC.h"
#include "evalg/CircleEvalC.h"
#include "evalg/EllipseEvalC.h"
#include "evalg/ExponentialFunctionEvalC.h"
#include "evalg/HyperbolaEvalC.h"
#include "evalg/HyperbolaVertEvalC.h"
#include "evalg/GeneralEvalC.h"
#include "evalg/LinearFunction1EvalC.h"
#include "evalg/LogarithmicFunctionEvalC.h"
#include "evalg/ParabolaEvalC.h"
#include "evalg/ParabolaVertEvalC.h"
#include "evalg/PowerFunctionEvalC.h"
#include "evalg/QuadraticFunctionEvalC.h"
#include "evalg/SinusoidalFunctionEvalC.h"
#include "evalg/SpanEmissionC.h"

using namespace qelt;
using namespace qelt::mathapp;

namespace {

struct Size {
    unsigned short m, n;
};
Size const sizes[] = {{161, 101}, {1920, 1080}, {16384, 4096}};

oss::PointerTC<ds::GraphicalDomainC> window(Size s) {
    return oss::PointerTC<ds::GraphicalDomainC>(new ds::GraphicalDomainC(-8, 8, -5, 5, s.m, s.n));
}

// One curve: how to build its relation, its evaluator, and its formula for
// the naive way (every y at x, appended to the vector).
struct Curve {
    std::string name;
    std::function<oss::PointerTC<rel::RelationC>()> relation;
    std::function<std::unique_ptr<evalg::CartesianRelationGraphEvalC>()> evaluator;
    std::function<void(double, std::vector<double> &)> formula;
    // Row walkers are measured per row, column walkers per column.
    bool rows = false;
};

oss::PointerTC<rel::RelationC> held(rel::RelationC *r) { return oss::PointerTC<rel::RelationC>(r); }

// k + s and k - s where s is a real square root.
void pair(std::vector<double> &v, double k, double s) {
    if (s == s) {
        v.push_back(k + s);
        v.push_back(k - s);
    }
}

template <class EvalT>
std::function<std::unique_ptr<evalg::CartesianRelationGraphEvalC>()> make() {
    return [] { return std::unique_ptr<evalg::CartesianRelationGraphEvalC>(new EvalT); };
}

std::vector<Curve> curves() {
    return {
        {"linear", [] { return held(new rel::LinearFunction1C(0.6, 0, 0)); }, make<evalg::LinearFunction1EvalC>(),
         [](double x, std::vector<double> &v) { v.push_back(0.6 * x); }},
        {"vparabola", [] { return held(new rel::ParabolaVertC(0, -4, 1 / 0.28)); }, make<evalg::ParabolaVertEvalC>(),
         [](double x, std::vector<double> &v) { v.push_back((x * x) / (4.0 / 0.28) - 4); }},
        // x = (y - k)^2 / 4a + h opens right across the whole height: per row.
        {"parabola", [] { return held(new rel::ParabolaC(-7, 0, 0.4)); }, make<evalg::ParabolaEvalC>(),
         [](double x, std::vector<double> &v) {
             double s = std::sqrt(1.6 * (x + 7));
             if (s == s) {
                 v.push_back(s);
                 v.push_back(-s);
             }
         },
         true},
        {"circle", [] { return held(new rel::CircleC(0, 0, 7)); }, make<evalg::CircleEvalC>(),
         [](double x, std::vector<double> &v) { pair(v, 0, std::sqrt(49 - x * x)); }},
        {"ellipse", [] { return held(new rel::EllipseC(0, 0, 7.5, 4.5)); }, make<evalg::EllipseEvalC>(),
         [](double x, std::vector<double> &v) { pair(v, 0, 4.5 * std::sqrt(1 - (x / 7.5) * (x / 7.5))); }},
        // Transverse axis along x: its branches are walked row by row.
        {"hyperbola", [] { return held(new rel::HyperbolaC(0, 0, 2, 1.5)); }, make<evalg::HyperbolaEvalC>(),
         [](double x, std::vector<double> &v) { pair(v, 0, 1.5 * std::sqrt((x / 2) * (x / 2) - 1)); }, true},
        {"vhyperbola", [] { return held(new rel::HyperbolaVertC(0, 0, 2, 1.5)); }, make<evalg::HyperbolaVertEvalC>(),
         [](double x, std::vector<double> &v) { pair(v, 0, 1.5 * std::sqrt((x / 2) * (x / 2) + 1)); }},
        {"expression",
         [] {
             return held(new rel::ArbitraryFunctionC(
                 math::algexpr::AlgebraicExpressionC::fromInfixString("0.07x^2 - 4", nullptr)));
         },
         make<evalg::ArbitraryFunctionFloat64EvalC>(),
         [](double x, std::vector<double> &v) { v.push_back(0.07 * (x * x) - 4); }},
        {"quadratic", [] { return held(new rel::QuadraticFunctionC(0.07, 0, -4)); },
         make<evalg::QuadraticFunctionEvalC>(),
         [](double x, std::vector<double> &v) { v.push_back(0.07 * (x * x) - 4); }},
        {"power", [] { return held(new rel::PowerFunctionC(0.009, 0, 0, 3, rel::POWER_DOMAIN_UNRESTRICTED)); },
         make<evalg::PowerFunctionEvalC>(),
         [](double x, std::vector<double> &v) { v.push_back(0.009 * std::pow(x, 3.0)); }},
        {"exponential", [] { return held(new rel::ExponentialFunctionC(0.5, 0.3, -2)); },
         make<evalg::ExponentialFunctionEvalC>(),
         [](double x, std::vector<double> &v) { v.push_back(0.5 * std::exp(0.3 * x) - 2); }},
        // Crosses the whole height: the row walk's cost is per row.
        {"logarithmic", [] { return held(new rel::LogarithmicFunctionC(1, 3, -8.2, 0, 2.718281828459045)); },
         make<evalg::LogarithmicFunctionEvalC>(),
         [](double x, std::vector<double> &v) { v.push_back(3 * std::log(x + 8.2)); }, true},
        {"sinusoidal", [] { return held(new rel::SinusoidalFunctionC(2, 4, 0, 0, true)); },
         make<evalg::SinusoidalFunctionEvalC>(),
         [](double x, std::vector<double> &v) { v.push_back(4 * std::sin(2 * x)); }},
    };
}

void evaluator(benchmark::State &state, Curve const &c, Size s) {
    auto domain = window(s);
    esb::CartesianRelationServiceC service(c.relation());
    auto eval = c.evaluator();
    unsigned points = 0;
    for (auto _ : state) {
        auto set = eval->evaluateGraph(service, domain);
        points = set->getCount();
        benchmark::DoNotOptimize(set.get());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * (c.rows ? s.n : s.m));
    state.counters["points"] = points;
}

void evaluatorOnPath(benchmark::State &state, Curve const &c, Size s, evalg::SpanEmissionC::PathE path) {
    evalg::SpanEmissionC::forcePath(path);
    if (evalg::SpanEmissionC::path() != path) state.SkipWithError("the CPU lacks this flush");
    evaluator(state, c, s);
    evalg::SpanEmissionC::unforcePath();
}

void general(benchmark::State &state, Curve const &c, Size s) {
    auto domain = window(s);
    esb::CartesianRelationServiceC service(c.relation());
    evalg::GeneralEvalC eval;
    for (auto _ : state) {
        auto set = eval.evaluateGraph(service, domain);
        benchmark::DoNotOptimize(set.get());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * (c.rows ? s.n : s.m));
}

// The obvious per-pixel way: the formula at both edges of every column, each
// branch's run stored as its two end pixels, clipped to the window.
void naive(benchmark::State &state, Curve const &c, Size s) {
    auto domain = window(s);
    double xStep = 16.0 / (s.m - 1), yStep = 10.0 / (s.n - 1);
    double left = -8 - xStep / 2, bottom = -5 - yStep / 2;
    std::vector<double> y0, y1;
    for (auto _ : state) {
        oss::PointerTC<ds::GraphDataSetWinC> set(new ds::GraphDataSetWinC(1000, 0, domain));
        y0.clear();
        c.formula(left, y0);
        for (int col = 0; col < s.m; ++col) {
            y1.clear();
            c.formula(left + (col + 1) * xStep, y1);
            for (size_t i = 0; i < y0.size() && i < y1.size(); ++i) {
                double lo = std::fmax(std::fmin(y0[i], y1[i]), -5), hi = std::fmin(std::fmax(y0[i], y1[i]), 5);
                if (lo > hi) continue;
                long r0 = s.n - 1 - oss::IntegerConversionC::toInt32(std::floor((lo - bottom) / yStep));
                long r1 = s.n - 1 - oss::IntegerConversionC::toInt32(std::floor((hi - bottom) / yStep));
                long x = col;
                set->appendPixelPoint(x, r0, 0);
                if (r1 != r0) set->appendPixelPoint(x, r1, 0);
            }
            y0.swap(y1);
        }
        benchmark::DoNotOptimize(set.get());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * (c.rows ? s.n : s.m));
}

// Storing the evaluator's points, and nothing else: the cost no drawing avoids.
void floorCost(benchmark::State &state, Curve const &c, Size s) {
    auto domain = window(s);
    esb::CartesianRelationServiceC service(c.relation());
    auto eval = c.evaluator();
    auto reference = eval->evaluateGraph(service, domain);
    unsigned count = 0;
    POINT const *pts = reference->getPixelPoints(count);
    for (auto _ : state) {
        // Sized for them up front, so that nothing but the stores is counted.
        oss::PointerTC<ds::GraphDataSetWinC> set(new ds::GraphDataSetWinC(count, 0, domain));
        for (unsigned i = 0; i < count; ++i) set->appendPixelPoint(pts[i], 0);
        benchmark::DoNotOptimize(set.get());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * (c.rows ? s.n : s.m));
}

int registerAll() {
    for (Curve const &c : curves()) {
        for (Size s : sizes) {
            std::string suffix = c.name + "/" + std::to_string(s.m) + "x" + std::to_string(s.n);
            benchmark::RegisterBenchmark(("Evaluator/" + suffix).c_str(), evaluator, c, s);
            benchmark::RegisterBenchmark(("General/" + suffix).c_str(), general, c, s);
            benchmark::RegisterBenchmark(("Naive/" + suffix).c_str(), naive, c, s);
            benchmark::RegisterBenchmark(("Floor/" + suffix).c_str(), floorCost, c, s);
        }
        Size hd = sizes[1];
        std::string suffix = c.name + "/" + std::to_string(hd.m) + "x" + std::to_string(hd.n);
        benchmark::RegisterBenchmark(("FlushSSE2/" + suffix).c_str(), evaluatorOnPath, c, hd,
                                     evalg::SpanEmissionC::SSE2);
        benchmark::RegisterBenchmark(("FlushScalar/" + suffix).c_str(), evaluatorOnPath, c, hd,
                                     evalg::SpanEmissionC::SCALAR);
    }
    return 0;
}
int const registered = registerAll();

} // namespace

// Speed of the arbitrary-function evaluator: compiled against tree
// evaluation per sample, and whole graphs on a 1920-column window.
#include <benchmark/benchmark.h>

#include <vector>

#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CompiledExpressionC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "bench/baseline/PreviousArbitraryEvalC.h"
#include "evalg/ArbitraryFunctionFloat64EvalC.h"

using namespace qelt;
using namespace qelt::mathapp;
using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CompiledExpressionC;

namespace {

char const *const expressions[] = {"3x^3 - 2x^2 + x - 5", "(x^2 - 1)/(x^2 + 1) + 0.5x", "sin(x)exp(-x^2/8) + x/3",
                                   "tan(x)"};
unsigned int const samples = 1920;

std::vector<double> sampleXs() {
    std::vector<double> xs(samples);
    for (unsigned int i = 0; i < samples; ++i) xs[i] = -8.0 + 16.0 * i / samples;
    return xs;
}

void treeEvaluation(benchmark::State &state) {
    oss::PointerTC<AlgebraicExpressionC> e = AlgebraicExpressionC::fromInfixString(expressions[state.range(0)]);
    std::vector<double> xs = sampleXs();
    for (auto _ : state)
        for (double x : xs) benchmark::DoNotOptimize(e->evaluateAt(x));
    state.SetItemsProcessed(state.iterations() * samples);
    state.SetLabel(expressions[state.range(0)]);
}

void compiledEvaluation(benchmark::State &state) {
    oss::PointerTC<AlgebraicExpressionC> e = AlgebraicExpressionC::fromInfixString(expressions[state.range(0)]);
    CompiledExpressionC program(e->getNode());
    std::vector<double> xs = sampleXs(), ys(samples);
    for (auto _ : state) {
        program.evaluate(xs.data(), ys.data(), samples);
        benchmark::DoNotOptimize(ys.data());
    }
    state.SetItemsProcessed(state.iterations() * samples);
    state.SetLabel(expressions[state.range(0)]);
}

void compiledOneByOne(benchmark::State &state) {
    oss::PointerTC<AlgebraicExpressionC> e = AlgebraicExpressionC::fromInfixString(expressions[state.range(0)]);
    CompiledExpressionC program(e->getNode());
    std::vector<double> xs = sampleXs();
    for (auto _ : state)
        for (double x : xs) benchmark::DoNotOptimize(program.evaluate(x));
    state.SetItemsProcessed(state.iterations() * samples);
    state.SetLabel(expressions[state.range(0)]);
}

// Argument 0: proven pixels; 1: point sampling; 2: the drawing before proven
// pixels (the yardstick for the proven drawing's cost).
void graph(benchmark::State &state, char const *infix, double xMin, double xMax) {
    esb::CartesianRelationServiceC service(new rel::ArbitraryFunctionC(AlgebraicExpressionC::fromInfixString(infix)));
    evalg::ArbitraryFunctionFloat64EvalC evaluator(state.range(0) == 1);
    oss::PointerTC<evalg::PreviousArbitraryEvalC> previous(new evalg::PreviousArbitraryEvalC());
    oss::PointerTC<ds::GraphicalDomainC> domain(new ds::GraphicalDomainC(xMin, xMax, -5, 5, 1920, 1080));
    unsigned int points = 0;
    for (auto _ : state) {
        oss::PointerTC<ds::GraphDataSetWinC> set =
            state.range(0) == 2 ? previous->evaluateGraph(service, domain) : evaluator.evaluateGraph(service, domain);
        points = set->getCount();
        benchmark::DoNotOptimize(points);
    }
    state.counters["points"] = points;
}

double const pi = 3.14159265358979323846;

void polynomialGraph(benchmark::State &state) { graph(state, "3x^3 - 2x^2 + x - 5", -3, 3); }
void tanGraph(benchmark::State &state) { graph(state, "tan(x)", -10 * pi, 10 * pi); }
void floorGraph(benchmark::State &state) { graph(state, "x floor(x)", -8, 8); }
void sinInverseGraph(benchmark::State &state) { graph(state, "x sin(1/x)", -1, 1); }

} // namespace

BENCHMARK(treeEvaluation)->DenseRange(0, 3);
BENCHMARK(compiledEvaluation)->DenseRange(0, 3);
BENCHMARK(compiledOneByOne)->DenseRange(0, 3);
BENCHMARK(polynomialGraph)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);
BENCHMARK(tanGraph)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);
BENCHMARK(floorGraph)->Arg(0)->Arg(2)->Unit(benchmark::kMicrosecond);
BENCHMARK(sinInverseGraph)->Arg(0)->Arg(2)->Unit(benchmark::kMicrosecond);

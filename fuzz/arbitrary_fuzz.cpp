// Arbitrary expressions drawn from interval enclosures, or by point sampling.
// A column spends at most EVALUATION_BUDGET interval evaluations, each leaves
// at most one piece, and a piece writes at most three runs (the point on the
// edge echoed into the column on the left, a point of its own, its stretch's
// run) of at most 16 points, so a graph holds at most 48 * (budget + 1)
// points per column. (tan(x) over a window many periods wide per column
// really does break that often.)
#include <string>

#include "GraphFuzzCheck.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "evalg/ArbitraryFunctionFloat64EvalC.h"
#include "evalg/ArbitraryFunctionInnerEvalC.h"

using namespace qelt;
using namespace qelt::mathapp;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    bool pointSampling = in.flag();
    // The rest of the input is the expression, in ordinary notation.
    std::string text;
    for (uint8_t c = in.byte(); c; c = in.byte()) text.push_back(char(c));
    auto expression = math::algexpr::AlgebraicExpressionC::fromInfixString(text, nullptr);
    if (!expression) return 0;
    evalg::ArbitraryFunctionFloat64EvalC evaluator(pointSampling);
    unsigned long perColumn = 48 * (evalg::ArbitraryFunctionInnerEvalC::EVALUATION_BUDGET + 1);
    fuzzcheck::evaluate(evaluator, new rel::ArbitraryFunctionC(expression), domain, perColumn, 64);
    return 0;
}

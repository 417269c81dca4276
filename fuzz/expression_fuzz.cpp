// The expression parsers on arbitrary text, in ordinary and prefix notation.
// Beyond no crash, no hang and no leak: a parsed expression prints to prefix
// text that parses back to the same values; the compiled program agrees with
// the tree to the bit; and the interval enclosure of a small interval around
// x contains the value at x (or says it may have none).
#include <cmath>
#include <cstring>
#include <string>

#include "FuzzInputC.h"
#include "GraphFuzzCheck.h"
#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CompiledExpressionC.h"

using namespace qelt::math;
using namespace qelt::math::algexpr;

namespace {

bool same(double a, double b) { return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0 || a == b; }

void check(qelt::oss::PointerTC<AlgebraicExpressionC> const &e, FuzzInputC &in) {
    std::string error;
    auto again = AlgebraicExpressionC::fromPrefixString(e->toPrefixString(), &error);
    if (!again) fuzzcheck::fail("printed expression does not parse", 0, 0);
    CompiledExpressionC program(e->getNode());
    for (int i = 0; i < 4; ++i) {
        double x = in.value();
        double tree = e->evaluateAt(x);
        if (!same(program.evaluate(x), tree)) fuzzcheck::fail("compiled differs from tree", 0, 0);
        if (!same(again->evaluateAt(x), tree)) fuzzcheck::fail("round trip differs", 0, 0);
        if (!std::isfinite(x)) continue;
        double w = std::fabs(x) * 1e-9 + 1e-9;
        IntervalC y = program.evaluate(IntervalC(x - w, x + w));
        if (!std::isnan(tree) && !y.contains(tree)) fuzzcheck::fail("enclosure misses the value", 0, 0);
        if (std::isnan(tree) && !(y.empty || y.partial)) fuzzcheck::fail("undefined value not flagged", 0, 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    // The text first, then the sample points.
    FuzzInputC in(nullptr, 0);
    std::string text = FuzzInputC::textThenValues(data, size, in);

    std::string error;
    auto infix = AlgebraicExpressionC::fromInfixString(text, &error);
    if (infix) check(infix, in);
    else if (error.empty()) fuzzcheck::fail("no expression and no message", 0, 0);

    std::u16string wide(text.begin(), text.end());
    auto prefix = AlgebraicExpressionC::fromPrefixString(wide, &error);
    if (prefix) check(prefix, in);
    return 0;
}

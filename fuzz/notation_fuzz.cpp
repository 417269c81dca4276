// The typed notation on arbitrary UTF-8 text (superscripts, bars, roots,
// factorials, functions without parentheses, several variables, 'y ='):
// beyond no crash, no hang and no leak, an expression that parses prints to
// a prefix form that parses back to the very same tree; the compiled program
// agrees with the tree to the bit at a few points of all four variables; and
// the interval enclosure of a small box around them holds the value there
// (or says it may have none).
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
    std::u16string printed = e->toPrefixString();
    auto again = AlgebraicExpressionC::fromPrefixString(printed);
    if (!again) fuzzcheck::fail("printed expression does not parse", 0, 0);
    if (again->toPrefixString() != printed) fuzzcheck::fail("round trip gives another tree", 0, 0);
    CompiledExpressionC program(e->getNode());
    for (int i = 0; i < 3; ++i) {
        double v[NodeABC::VARIABLE_COUNT];
        IntervalC box[NodeABC::VARIABLE_COUNT];
        bool finite = true;
        for (unsigned int k = 0; k < NodeABC::VARIABLE_COUNT; ++k) {
            v[k] = in.value();
            finite = finite && std::isfinite(v[k]);
            double w = std::fabs(v[k]) * 1e-9 + 1e-9;
            box[k] = std::isfinite(v[k]) ? IntervalC(v[k] - w, v[k] + w) : IntervalC::point(v[k]);
        }
        double tree = e->getNode()->evaluateWith(v);
        if (!same(program.evaluateWith(v), tree)) fuzzcheck::fail("compiled differs from tree", 0, 0);
        if (!same(again->getNode()->evaluateWith(v), tree)) fuzzcheck::fail("round trip differs", 0, 0);
        if (!same(program.evaluate(v[0]), e->evaluateAt(v[0]))) fuzzcheck::fail("one-variable run differs", 0, 0);
        if (!finite) continue;
        IntervalC y = program.evaluateWith(box);
        if (!std::isnan(tree) && !y.contains(tree)) fuzzcheck::fail("enclosure misses the value", 0, 0);
        if (std::isnan(tree) && !(y.empty || y.partial)) fuzzcheck::fail("undefined value not flagged", 0, 0);
        if (y.overflow) program.evaluateWideWith(box);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    // The text first, then the sample points.
    FuzzInputC in(nullptr, 0);
    std::string text = FuzzInputC::textThenValues(data, size, in);

    std::string error;
    auto e = AlgebraicExpressionC::fromInfixString(text, &error);
    if (e)
        check(e, in);
    else if (error.empty() || error.find(" at character ") == std::string::npos)
        fuzzcheck::fail("no expression and no message saying where", 0, 0);
    return 0;
}

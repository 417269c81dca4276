// Typed relations on arbitrary text after a fuzzed window (cut to 64 pixels a
// side: the implicit evaluator's cost grows with the pixels it cannot
// decide). Beyond no crash, no hang and no leak: a text that does not read
// says where; one that reads is drawn by the evaluator it names; and a bare
// expression read as a closed-form function agrees, at a few x, with the
// expression itself wherever the family's numbers are moderate, so the
// recogniser never turns one function into another.
#include <cmath>
#include <string>

#include "FuzzInputC.h"
#include "GraphFuzzCheck.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/rel/TypedRelationC.h"
#include "evalg/TypedRelationEvalC.h"

using namespace qelt;
using namespace qelt::mathapp;

namespace {

// The family's own formula at x.
double familyAt(rel::TypedRelationC const &r, double x) {
    auto p = [&r](char const *name) { return r.getParameter(name); };
    std::string const &k = r.getKind();
    if (k == "line") return p("m") * (x - p("h")) + p("k");
    if (k == "quadratic") return p("a") * (x - p("h")) * (x - p("h")) + p("k");
    if (k == "power") return p("a") * std::pow(x - p("h"), p("r")) + p("k");
    if (k == "exp") return p("b") * std::exp(p("r") * x) + p("k");
    if (k == "log") return p("b") * std::log(p("a") * (x - p("h"))) / std::log(p("base")) + p("k");
    if (k == "sin") return p("b") * std::sin(p("a") * (x - p("h"))) + p("k");
    if (k == "cos") return p("b") * std::cos(p("a") * (x - p("h"))) + p("k");
    return NAN;
}

bool moderate(rel::TypedRelationC const &r) {
    for (auto const &p : r.getParameters()) {
        double a = std::fabs(p.value);
        if (a != 0 && (a < 1e-3 || a > 1e3)) return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    double xMin = in.value(), xMax = in.value(), yMin = in.value(), yMax = in.value();
    unsigned short m = in.pixels() % 65, n = in.pixels() % 65;
    size_t const head = 4 * 11 + 2 * 3; // at most what the window took
    std::string text(reinterpret_cast<char const *>(data) + (size < head ? size : head), size < head ? 0 : size - head);
    std::string error;
    oss::PointerTC<rel::TypedRelationC> r = rel::TypedRelationC::fromText(text, &error);
    if (!r) {
        if (error.empty()) fuzzcheck::fail("refused without a message", 0, 0);
        return 0;
    }
    if (r->getEvaluatorName().empty() || !r->getRelation()) fuzzcheck::fail("read without an evaluator", 0, 0);
    oss::PointerTC<ds::GraphicalDomainC> domain(new ds::GraphicalDomainC(xMin, xMax, yMin, yMax, m, n));
    oss::PointerTC<ds::GraphDataSetWinC> set = evalg::TypedRelationEvalC::evaluateGraph(*r, domain);
    if (!set) fuzzcheck::fail("the named evaluator drew nothing", 0, 0);

    if (r->getForm() != rel::TypedRelationC::CLOSED_FORM || !moderate(*r)) return 0;
    oss::PointerTC<math::algexpr::AlgebraicExpressionC> f = math::algexpr::AlgebraicExpressionC::fromInfixString(text);
    if (!f || f->getVariables() & ~1u) return 0; // not a bare expression in x
    double const xs[] = {-2.75, -0.5, 0.375, 1.625, 3.25};
    for (unsigned long i = 0; i < 5; ++i) {
        double want = f->evaluateAt(xs[i]), got = familyAt(*r, xs[i]);
        if (!std::isfinite(want) || !std::isfinite(got) || std::fabs(want) > 1e6) continue;
        if (std::fabs(want - got) > 1e-6 * (1 + std::fabs(want)))
            fuzzcheck::fail("the family is another function at sample", i, 0);
    }
    return 0;
}

// The compiled program against the tree walk: the same doubles to the bit,
// one at a time and in batches, and interval runs that enclose them.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CompiledExpressionC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/VariableNodeC.h"
#include "support/RandomExpression.h"
#include "support/TestSupport.h"

using qelt::math::IntervalC;
using qelt::math::algexpr::AlgebraicExpressionC;
using qelt::math::algexpr::CompiledExpressionC;
using qelt::math::algexpr::NodeABC;
using qelt::math::algexpr::OperatorNodeC;
using qelt::math::algexpr::ParentNodeABC;
using qelt::math::algexpr::VariableNodeC;
using Expr = qelt::oss::PointerTC<AlgebraicExpressionC>;

namespace {

double const inf = std::numeric_limits<double>::infinity();
double const nan = std::numeric_limits<double>::quiet_NaN();

// Bit for bit, NaN payloads aside.
bool same(double a, double b) { return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0; }

// Checks scalar and batch runs of the program against the tree at xs.
void expectAgreement(Expr const &e, std::vector<double> const &xs, char const *what) {
    CompiledExpressionC program(e->getNode());
    std::vector<double> batch(xs.size());
    program.evaluate(xs.data(), batch.data(), static_cast<unsigned int>(xs.size()));
    for (std::size_t i = 0; i < xs.size(); ++i) {
        double tree = e->evaluateAt(xs[i]);
        EXPECT_TRUE(same(program.evaluate(xs[i]), tree)) << what << " at " << xs[i];
        EXPECT_TRUE(same(batch[i], tree)) << what << " at " << xs[i] << " (batch)";
    }
}

std::vector<double> someXs(evalgtest::Rng &rng, std::size_t n) {
    std::vector<double> xs = {0.0, -0.0, 1.0, -1.0, 2.0, 0.5, nan, inf, -inf, 1e300, -1e-300};
    while (xs.size() < n) xs.push_back(rng.below(3) == 0 ? rng.wild(1e3) : rng.uniform(-4, 4));
    return xs;
}

TEST(AlgexprCompile, AgreesWithTheTreeOnChosenExpressions) {
    // Powers whole and not, constant parts, every function, NaN-absorbing
    // rules (x^0, 1^x): cases where a shortcut in either path would show.
    char const *const cases[] = {
        "x", "3", "x^2", "x^3", "x^-3", "x^0", "x^64", "x^65", "x^0.5", "x^x", "1^x", "2^x", "(-2)^x",
        "(1/3)^x + x^(1/3)", "3x^3 - 2x^2 + x - 5", "sin(x)/x", "tan(x) + 1/(x^2-1)", "floor(x)*x",
        "sqrt(4-x^2)", "ln(x) + log10(-x)", "asin(x) + acos(x) + atan(x)", "sinh(x)cosh(x)tanh(x)",
        "exp(-x^2)", "abs(x) + sign(x) + ceil(x)", "sin(1/x)", "x sin(1/x)", "2^3^2 x", "-(-x)",
    };
    evalgtest::Rng rng(11);
    // 1000 samples: not a multiple of the batch block.
    std::vector<double> xs = someXs(rng, 1000);
    for (char const *c : cases) {
        Expr e = AlgebraicExpressionC::fromInfixString(c);
        ASSERT_TRUE(e) << c;
        expectAgreement(e, xs, c);
    }
}

TEST(AlgexprCompile, AgreesWithTheTreeOnRandomExpressions) {
    evalgtest::Rng rng(12);
    for (int i = 0; i < 400; ++i) {
        std::string text = evalgtest::randomPrefix(rng);
        Expr e = AlgebraicExpressionC::fromPrefixString(evalgtest::toU16(text));
        ASSERT_TRUE(e) << text;
        expectAgreement(e, someXs(rng, 70), text.c_str());
    }
}

TEST(AlgexprCompile, FoldsWhatDoesNotDependOnX) {
    char const *const cases[] = {"2*3+sin(0)", "x + 2*3", "(1+1)x^(1+1)"};
    unsigned int const instructions[] = {0, 1, 2};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(CompiledExpressionC(AlgebraicExpressionC::fromInfixString(cases[i])->getNode()).getInstructionCount(),
                  instructions[i]);
}

TEST(AlgexprCompile, ATreeOutOfBoundsHasNoValue) {
    CompiledExpressionC none(nullptr);
    EXPECT_TRUE(std::isnan(none.evaluate(1.0)));
    EXPECT_TRUE(none.evaluate(IntervalC(0, 1)).empty);
    // Built by hand past the parsers' depth limit.
    std::unique_ptr<NodeABC> deep(new VariableNodeC());
    for (unsigned int i = 0; i < AlgebraicExpressionC::MAX_DEPTH; ++i) {
        ParentNodeABC::ChildrenT children;
        children.push_back(std::move(deep));
        deep.reset(new OperatorNodeC(OperatorNodeC::NEGATE, std::move(children)));
    }
    EXPECT_TRUE(std::isnan(CompiledExpressionC(deep.get()).evaluate(1.0)));
}

// The interval run of a program encloses the double run at every point of
// the interval, and its flags do not claim more than the points show.
TEST(AlgexprCompile, IntervalRunsEncloseTheDoubleRuns) {
    evalgtest::Rng rng(13);
    int clean = 0;
    for (int i = 0; i < 1500; ++i) {
        std::string text = evalgtest::randomPrefix(rng, 4);
        Expr e = AlgebraicExpressionC::fromPrefixString(evalgtest::toU16(text));
        CompiledExpressionC program(e->getNode());
        double a = rng.uniform(-6, 6);
        double b = a + (rng.below(2) ? rng.uniform(0, 1e-3) : rng.uniform(0, 4));
        IntervalC y = program.evaluate(IntervalC(a, b));
        clean += y.clean();
        for (int k = 0; k <= 40; ++k) {
            double x = k == 40 ? b : a + (b - a) * (k / 40.0);
            double v = program.evaluate(x);
            if (std::isnan(v)) {
                // A point without a value: the enclosure must have said so.
                EXPECT_TRUE(y.empty || y.partial) << text << " on [" << a << ", " << b << "] at " << x;
                continue;
            }
            EXPECT_FALSE(y.empty) << text << " on [" << a << ", " << b << "] at " << x;
            EXPECT_TRUE(y.contains(v)) << text << " on [" << a << ", " << b << "] at " << x << ": " << v
                                       << " not in [" << y.lo << ", " << y.hi << "]";
        }
    }
    // The generator must not have made the flags vacuous.
    EXPECT_GT(clean, 300);
}

} // namespace

// The notation people type: every form reads as the tree of a plain prefix
// expression (read by the other parser), errors say what was expected where,
// the variables an expression uses, and the compiled program on functions
// of two operands and on several variables against the tree walk.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CompiledExpressionC.h"
#include "collab/math/algexpr/VariableNodeC.h"
#include "support/RandomExpression.h"
#include "support/TestSupport.h"

using qelt::math::IntervalC;
using qelt::math::algexpr::AlgebraicExpressionC;
using qelt::math::algexpr::CompiledExpressionC;
using qelt::math::algexpr::VariableNodeC;
using Expr = qelt::oss::PointerTC<AlgebraicExpressionC>;

namespace {

bool same(double a, double b) { return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0; }

TEST(AlgexprNotation, EveryFormMeansItsPlainExpression) {
    struct Case {
        char const *typed;
        char const *prefix;
    } const cases[] = {
        {"log(x)", "log10 x"}, {"ln x", "ln x"}, {"log2(x)", "log2 x"}, {"log10 x", "log10 x"},
        {"log(2, x)", "logbase 2 x"}, {"|x|", "abs x"}, {"||x|-1|", "abs - abs x 1"}, {"2|x|", "* 2 abs x"},
        {"|x|·|x-1|", "* abs x abs - x 1"}, {"x**2", "^ x 2"}, {"2**3**x", "^ 2 ^ 3 x"},
        {"x\xc2\xb2", "^ x 2"}, {"x\xe2\x81\xbb\xc2\xb9", "^ x -1"}, {"x\xc2\xb9\xe2\x81\xb0", "^ x 10"},
        {"sin x", "sin x"}, {"sin 2x", "sin * 2 x"}, {"sin \xcf\x80x", "sin * 3.141592653589793 x"},
        {"sin x^2", "sin ^ x 2"}, {"sin x + 1", "+ sin x 1"}, {"sin x cos x", "* sin x cos x"},
        {"sin^2(x)", "^ sin x 2"}, {"sin\xc2\xb2x", "^ sin x 2"}, {"sin^-1(x)", "asin x"},
        {"cos\xe2\x81\xbb\xc2\xb9 x", "acos x"}, {"tanh^-1(x)", "atanh x"}, {"sec x", "sec x"}, {"csc(x)", "csc x"},
        {"cot(x)", "cot x"}, {"asinh(x)", "asinh x"}, {"acosh(x)", "acosh x"}, {"atanh(x)", "atanh x"},
        {"arcsin(x)", "asin x"}, {"cbrt(x)", "cbrt x"}, {"root(3, x)", "root 3 x"}, {"min(x, 1)", "min x 1"},
        {"max(x, -1)", "max x neg 1"}, {"mod(x, 3)", "mod x 3"}, {"round(x)", "round x"}, {"trunc(x)", "trunc x"},
        {"sgn(x)", "sign x"}, {"gamma(x)", "gamma x"}, {"x!", "factorial x"}, {"3x!", "* 3 factorial x"},
        {"x!^2", "^ factorial x 2"}, {"erf(x)", "erf x"}, {"erfc(x)", "erfc x"}, {"\xcf\x80", "3.141592653589793"},
        {"pi x", "* 3.141592653589793 x"}, {"\xe2\x88\x9ax", "sqrt x"}, {"\xe2\x88\x9a(x+1)", "sqrt + x 1"},
        {"\xe2\x88\x9b x", "cbrt x"}, {"2\xc3\x97x", "* 2 x"}, {"x\xc3\xb7" "2", "/ x 2"},
        {"x\xe2\x88\x92" "1", "- x 1"}, {"\xe2\x88\x92x", "neg x"}, {"y = x^2", "^ x 2"}, {"y=2x", "* 2 x"},
        {"e^x", "^ 2.718281828459045 x"}, {"exp x", "exp x"},
    };
    double const xs[] = {-2.5, -1, -0.5, 0, 0.3, 1, 2, 3.7, 5};
    for (auto const &c : cases) {
        std::string error;
        Expr typed = AlgebraicExpressionC::fromInfixString(c.typed, &error);
        ASSERT_TRUE(typed) << c.typed << ": " << error;
        Expr plain = AlgebraicExpressionC::fromPrefixString(evalgtest::toU16(c.prefix));
        ASSERT_TRUE(plain) << c.prefix;
        EXPECT_EQ(typed->toPrefixString(), plain->toPrefixString()) << c.typed;
        for (double x : xs) EXPECT_TRUE(same(typed->evaluateAt(x), plain->evaluateAt(x))) << c.typed << " at " << x;
    }
}

TEST(AlgexprNotation, ErrorsSayWhatWasExpectedWhere) {
    struct Case {
        char const *text;
        char const *message;
    } const cases[] = {
        {"sin(", "expected an operand at character 5"},
        {"log(2,)", "expected an operand at character 7"},
        {"|x", "expected '|' at character 3"},
        {"x**", "expected an operand at character 4"},
        {"2 +", "expected an operand at character 4"},
        {"foo(x)", "unknown name 'foo' at character 1"},
        {"mod(x)", "expected ',' after the first operand of mod at character 6"},
        {"min(1, 2, 3)", "min takes 2 operands at character 12"},
        {"sin(x, 2)", "sin takes 1 operand at character 9"},
        {"root x", "expected '(' after root at character 6"},
        {"sin |x|", "expected '(' or an operand after sin at character 5"},
        {"exp^-1(x)", "no inverse function for exp^-1 at character 4"},
        {"y = y", "expected an expression in x after 'y =', not one in y at character 5"},
        {"y = x + y", "expected an expression in x after 'y =', not one in y at character 5"},
        {"x = 2", "'=' only after a leading y at character 3"},
        {"x!!!(", "expected an operand at character 6"},
        {"\xe2\x88\x9a", "expected an operand at character 2"},
        {"", "expected an operand at character 1"},
        {"*3", "expected an operand at character 1"},
        {"(x+1", "expected ')' at character 5"},
        {"x+1)", "unmatched ')' at character 4"},
        {"2z", "unknown name 'z' at character 2"},
        {"lug(x)", "unknown name 'lug' at character 1"},
        {"2 # 3", "expected an operator or the end of the expression at character 3"},
        {"#", "unexpected character '#' at character 1"},
        {"1e999x", "number out of range at character 1"},
        {".", "expected a number at character 1"},
        {"\xc3\xa9+x", "unexpected character at character 1"},
        {"(\xc3\xa9\xc3\xa9)", "unexpected character at character 2"},
        {"x \xc3\xa9 )", "expected an operator or the end of the expression at character 3"},
    };
    for (auto const &c : cases) {
        std::string error;
        EXPECT_FALSE(AlgebraicExpressionC::fromInfixString(c.text, &error)) << c.text;
        EXPECT_EQ(error, c.message) << c.text;
    }
}

TEST(AlgexprNotation, KnowsWhichVariablesItUses) {
    struct Case {
        char const *text;
        unsigned int variables;
    } const cases[] = {
        {"3", 0}, {"x^2", 1}, {"y", 2}, {"x y", 3}, {"sin(t)", 4}, {"\xce\xb8 + theta", 8}, {"y = x", 1},
    };
    for (auto const &c : cases) {
        Expr e = AlgebraicExpressionC::fromInfixString(c.text);
        ASSERT_TRUE(e) << c.text;
        EXPECT_EQ(e->getVariables(), c.variables) << c.text;
        // The prefix form keeps the variables apart.
        Expr back = AlgebraicExpressionC::fromPrefixString(e->toPrefixString());
        ASSERT_TRUE(back) << c.text;
        EXPECT_EQ(back->toPrefixString(), e->toPrefixString()) << c.text;
    }
}

TEST(AlgexprNotation, CompiledAgreesWithTheTreeOnSeveralVariablesAndTwoOperands) {
    char const *const cases[] = {
        "mod(x, y)", "min(x, t) + max(y, theta)", "log(y, x)", "root(t, x y)", "x y - t / \xce\xb8",
        "gamma(x) + x! + erf(y)", "sec x csc y cot t", "round(x) trunc(y) sgn(t)", "|x - y|^(t)",
    };
    evalgtest::Rng rng(41);
    for (char const *c : cases) {
        Expr e = AlgebraicExpressionC::fromInfixString(c);
        ASSERT_TRUE(e) << c;
        CompiledExpressionC program(e->getNode());
        for (int i = 0; i < 300; ++i) {
            double v[4];
            for (double &d : v) d = rng.below(4) == 0 ? double(rng.below(9) - 4) : rng.uniform(-6, 6);
            double tree = e->getNode()->evaluateWith(v);
            EXPECT_TRUE(same(program.evaluateWith(v), tree)) << c;
            IntervalC boxes[4];
            for (int k = 0; k < 4; ++k) boxes[k] = IntervalC(v[k], v[k] + rng.uniform(0, 0.01));
            IntervalC y = program.evaluateWith(boxes);
            if (std::isnan(tree))
                EXPECT_TRUE(y.empty || y.partial) << c;
            else
                EXPECT_TRUE(y.contains(tree)) << c << " " << tree << " not in [" << y.lo << ", " << y.hi << "]";
        }
        // The one-variable entry points leave the others without a value,
        // whatever an earlier run gave them.
        double x = 1.5;
        double values[4] = {x, std::nan(""), std::nan(""), std::nan("")};
        EXPECT_TRUE(same(program.evaluate(x), e->getNode()->evaluateWith(values))) << c;
        EXPECT_TRUE(same(program.evaluate(x), e->evaluateAt(x))) << c;
    }
}

} // namespace

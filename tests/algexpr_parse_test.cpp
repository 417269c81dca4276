// Parsing and printing of algebraic expressions: round trips, precedence,
// the prefix errors with their messages (the typed ones are in
// algexpr_notation_test.cpp), the depth limit, codes and execute.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/FloatNodeC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/VariableNodeC.h"
#include "support/RandomExpression.h"
#include "support/TestSupport.h"

using qelt::math::algexpr::AlgebraicExpressionC;
using qelt::math::algexpr::CoreFunctionNodeC;
using qelt::math::algexpr::FloatNodeC;
using qelt::math::algexpr::NodeABC;
using qelt::math::algexpr::OperatorNodeC;
using qelt::math::algexpr::ParentNodeABC;
using qelt::math::algexpr::VariableNodeC;
using qelt::oss::PointerTC;
using Expr = PointerTC<AlgebraicExpressionC>;

namespace {

std::u16string u16(std::string const &s) { return std::u16string(s.begin(), s.end()); }
std::string narrow(std::u16string const &s) { return std::string(s.begin(), s.end()); }
std::string prefixOf(Expr const &e) { return e ? narrow(e->toPrefixString()) : "<null>"; }

TEST(AlgexprPrefix, PrintsBackWhatItRead) {
    char const *const cases[] = {
        "x", "2", "-0.5", "0.1", "1e+300", "inf", "-inf", "+ x 1", "neg x", "- 3 neg x",
        "^ x 2", "/ 1 - * x x 1", "sin x", "log10 abs x", "sign floor ceil x",
        "+ * 3 ^ x 2 neg sin x", "asin acos atan sinh cosh tanh exp ln sqrt tan cos x",
    };
    for (char const *c : cases) {
        std::string error;
        Expr e = AlgebraicExpressionC::fromPrefixString(u16(c), &error);
        ASSERT_TRUE(e) << c << ": " << error;
        EXPECT_EQ(prefixOf(e), c);
    }
    // Spacing and number spellings are normalised.
    EXPECT_EQ(prefixOf(AlgebraicExpressionC::fromPrefixString(u"  +\tx\n 1.50 ")), "+ x 1.5");
    EXPECT_EQ(prefixOf(AlgebraicExpressionC::fromPrefixString(u"* 2E3 x")), "* 2000 x");
}

TEST(AlgexprPrefix, BuildsNumberVariableOperatorAndFunctionNodes) {
    Expr e = AlgebraicExpressionC::fromPrefixString(u"+ 2.5 sin x");
    ASSERT_TRUE(e);
    NodeABC *root = e->getNode();
    ParentNodeABC *sum = root->as<ParentNodeABC>();
    ASSERT_TRUE(sum);
    EXPECT_EQ(root->as<OperatorNodeC>()->getOperator(), OperatorNodeC::ADD);
    ASSERT_TRUE(sum->child(0)->as<FloatNodeC>());
    EXPECT_EQ(sum->child(0)->as<FloatNodeC>()->getValue()->toDouble(), 2.5);
    CoreFunctionNodeC *f = sum->child(1)->as<CoreFunctionNodeC>();
    ASSERT_TRUE(f);
    EXPECT_EQ(f->getCode(), CoreFunctionNodeC::SIN);
    EXPECT_TRUE(f->child(0)->as<VariableNodeC>());
    EXPECT_EQ(sum->child(2), nullptr);
    EXPECT_EQ(sum->child(1)->as<FloatNodeC>(), nullptr);
    // Every function name reads back as its own code, with its operands.
    for (int code = CoreFunctionNodeC::FIRST_CODE; code <= CoreFunctionNodeC::LAST_CODE; ++code) {
        std::string operands = CoreFunctionNodeC::arity(code) == 2 ? " 2 x" : " x";
        Expr f = AlgebraicExpressionC::fromPrefixString(u16(std::string(CoreFunctionNodeC::name(code)) + operands));
        ASSERT_TRUE(f) << code;
        EXPECT_EQ(f->getNode()->as<CoreFunctionNodeC>()->getCode(), code);
        EXPECT_EQ(f->getNode()->getChildCount(), CoreFunctionNodeC::arity(code));
    }
}

TEST(AlgexprInfix, PrecedenceAndImplicitMultiplication) {
    struct Case {
        char const *infix;
        char const *prefix;
    } const cases[] = {
        {"1+2*3", "+ 1 * 2 3"},
        {"1-2-3", "- - 1 2 3"},
        {"2^3^2", "^ 2 ^ 3 2"},
        {"-x^2", "neg ^ x 2"},
        {"2^-x", "^ 2 neg x"},
        {"2x", "* 2 x"},
        {"2x^2", "* 2 ^ x 2"},
        {"3sin(x)", "* 3 sin x"},
        {"xsin(x)", "* x sin x"},
        {"2(x+1)", "* 2 + x 1"},
        {"(x+1)(x-1)", "* + x 1 - x 1"},
        {"-2x", "* neg 2 x"},
        {"2e3", "2000"},
        {"2e", "* 2 2.718281828459045"},
        {"exp(x)", "exp x"},
        {"pi x", "* 3.141592653589793 x"},
        {".5x", "* 0.5 x"},
    };
    for (Case const &c : cases) {
        std::string error;
        Expr e = AlgebraicExpressionC::fromInfixString(c.infix, &error);
        EXPECT_EQ(prefixOf(e), c.prefix) << c.infix << " " << error;
    }
}

struct ErrorCase {
    char const *text;
    char const *message;
};

TEST(AlgexprErrors, PrefixSaysWhatWasExpectedWhere) {
    ErrorCase const cases[] = {
        {"", "expected an operand at character 1"},
        {"+ x", "expected an operand at character 4"},
        {"x x", "expected the end of the expression at character 3"},
        {"+ x z", "expected a number, a variable, an operator or a function name but found 'z' at character 5"},
        {"1e999", "number out of range at character 1"},
    };
    for (ErrorCase const &c : cases) {
        std::string error;
        EXPECT_FALSE(AlgebraicExpressionC::fromPrefixString(u16(c.text), &error)) << c.text;
        EXPECT_EQ(error, c.message) << c.text;
    }
    std::string error;
    EXPECT_FALSE(AlgebraicExpressionC::fromPrefixString(u"+ x \u00e9", &error));
    EXPECT_EQ(error, "unexpected character at character 5");
}

TEST(AlgexprErrors, DeepInputEndsInAnErrorNotAStackOverflow) {
    unsigned int const limit = AlgebraicExpressionC::MAX_DEPTH;
    std::string const tooDeep = "expression nested deeper than " + std::to_string(limit) + " levels";
    struct Case {
        std::string text;
        bool infix;
        bool ok;
    };
    auto repeat = [](std::string const &s, unsigned int n) {
        std::string out;
        for (unsigned int i = 0; i < n; ++i) out += s;
        return out;
    };
    Case const cases[] = {
        {repeat("(", 200000) + "x" + repeat(")", 200000), true, false},
        {repeat("-", 200000) + "x", true, false},
        {"x" + repeat("+1", 100000), true, false},
        {repeat("neg ", 200000) + "x", false, false},
        {repeat("+ 1 ", 200000) + "x", false, false},
        // Every recursive form of the typed notation.
        {repeat("\xe2\x88\x9a", 3000) + "x", true, false},
        {repeat("|", 3000) + "x", true, false},
        {repeat("sin(", 3000) + "x" + repeat(")", 3000), true, false},
        {repeat("x!^", 3000) + "x", true, false},
        // Just inside the limit both forms parse.
        {repeat("-", limit - 2) + "x", true, true},
        {repeat("neg ", limit - 1) + "x", false, true},
    };
    for (Case const &c : cases) {
        std::string error;
        Expr e = c.infix ? AlgebraicExpressionC::fromInfixString(c.text, &error)
                         : AlgebraicExpressionC::fromPrefixString(u16(c.text), &error);
        EXPECT_EQ(bool(e), c.ok) << c.text.substr(0, 20) << " " << error;
        if (!c.ok) {
            EXPECT_EQ(error.substr(0, tooDeep.size()), tooDeep);
        } else {
            EXPECT_LE(e->getNode()->getHeight(), limit);
        }
    }
}

TEST(AlgexprExecute, FoldsConstantsAndEvaluatesClosedExpressions) {
    Expr e = AlgebraicExpressionC::fromInfixString("x + 2*3 + sin(0)*x");
    ASSERT_TRUE(e);
    std::u16string message;
    EXPECT_EQ(prefixOf(e->execute(false, &message)), "+ + x 6 * 0 x");
    EXPECT_FALSE(e->execute(true, &message));
    EXPECT_EQ(message, u"the expression depends on x");
    Expr closed = AlgebraicExpressionC::fromInfixString("2^10 - sqrt(16)");
    EXPECT_EQ(prefixOf(closed->execute(true, &message)), "1020");
    AlgebraicExpressionC none(nullptr);
    EXPECT_FALSE(none.execute(false, &message));
    EXPECT_EQ(message, u"the expression is empty");
    EXPECT_TRUE(std::isnan(none.evaluateAt(1.0)));
}

// Random trees printed and read back give the same tree, value for value.
TEST(AlgexprPrefix, RandomTreesSurviveARoundTrip) {
    evalgtest::Rng rng(7);
    for (int i = 0; i < 300; ++i) {
        std::string text = evalgtest::randomPrefix(rng);
        Expr first = AlgebraicExpressionC::fromPrefixString(u16(text));
        ASSERT_TRUE(first) << text;
        Expr second = AlgebraicExpressionC::fromPrefixString(first->toPrefixString());
        ASSERT_TRUE(second);
        EXPECT_EQ(prefixOf(first), prefixOf(second));
        double x = rng.uniform(-3, 3);
        double a = first->evaluateAt(x), b = second->evaluateAt(x);
        EXPECT_TRUE(a == b || (std::isnan(a) && std::isnan(b))) << text;
    }
}

} // namespace

#ifndef QELT_MATH_ALGEXPR_ALGEBRAICEXPRESSIONC_H
#define QELT_MATH_ALGEXPR_ALGEBRAICEXPRESSIONC_H

#include <memory>
#include <string>

#include "collab/math/algexpr/NodeABC.h"
#include "collab/oss/PointerTC.h"
#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace math {
namespace algexpr {

// An algebraic expression in the variables x, y, t and theta: an immutable
// tree of nodes.
//
// Prefix form (fromPrefixString), the exchange format: tokens separated by
// white space, every operator written before its operands.
//
//   expression := number | variable | unary expression | binary expression expression
//   variable   := "x" | "y" | "t" | "theta"
//   binary     := "+" | "-" | "*" | "/" | "^" | function of two operands
//   unary      := "neg" (unary minus) | function of one operand
//   function   := a name of FunctionTableC: "sin" "cos" "tan" "asin" "acos"
//                 "atan" "sinh" "cosh" "tanh" "exp" "ln" "log10" "sqrt" "abs"
//                 "floor" "ceil" "sign" "sec" "csc" "cot" "asinh" "acosh"
//                 "atanh" "log2" "cbrt" "round" "trunc" "gamma" "factorial"
//                 "erf" "erfc"; of two: "logbase" (base, x), "root" (n, x),
//                 "min", "max", "mod" (x, y)
//   number     := a decimal number with optional sign, fraction and exponent
//                 ("2", "-0.5", "1e-3"), or "inf", "-inf", "nan"
//
// So "+ * 3 ^ x 2 neg sin x" is 3x^2 + -sin x. Printing with toPrefixString
// gives this form back, numbers in their shortest exact decimal text, so
// parsing what was printed rebuilds the same tree.
//
// Infix form (fromInfixString), for people: ordinary notation, UTF-8.
//
//   input    := [ "y" "=" ] sum       (after "y =", an expression that does
//                                      not use y)
//   sum      := product { ("+" | "-" | "−") product }
//   product  := signed { ("*" | "×" | "·" | "/" | "÷") signed | power }
//               (a bare power multiplies: "2x", "3sin(x)", "2(x+1)",
//               "(x+1)(x-1)", "2|x|")
//   signed   := ("-" | "−" | "+") signed | power
//   power    := postfix [ superscript | ("^" | "**") signed ]
//               (right-associative: 2^3^2 is 2^9, -x^2 is -(x^2), 2^-x is
//               allowed; superscript digits with an optional superscript
//               minus: x², x⁻¹, x¹⁰)
//   postfix  := primary { "!" }       (x! binds tighter than a power: x!^2 is
//                                      (x!)^2, 3x! is 3(x!))
//   primary  := number | variable | constant | "(" sum ")" | "|" sum "|"
//             | ("√" | "∛") postfix | function
//   variable := "x" | "y" | "t" | "theta" | "θ"
//   constant := "pi" | "π" | "e"
//   function := name [ superscript | "^" signed ] ( "(" sum { "," sum } ")" | simple )
//   simple   := [ number ] { variable | constant }, each factor with an
//               optional "!" and power
//
// A function written without parentheses takes a simple operand: "sin x",
// "sin 2x", "sin πx", "sin x^2" (= sin(x^2)); it ends at anything else, so
// "sin x + 1" is sin(x) + 1 and "sin x cos x" is sin(x) cos(x). A power
// right after a function's name raises its value (sin^2(x) and sin²x are
// (sin x)^2), except -1, which names the inverse (sin^-1(x) is asin x, for
// sin, cos, tan, sinh, cosh, tanh). "log" is base 10, as on a calculator,
// and log(b, x) is the logarithm of x to base b; "ln", "log2", "log10" and
// other spellings ("arcsin", "sgn", ...) are FunctionTableC's. mod(x, y) is
// x - y*floor(x/y), with the sign of y: mod(-1, 3) is 2. x! is gamma(x + 1),
// exactly the factorial for whole x up to 22 (5! is 120).
//
// Names are read as the longest known name at their place ("xsin(x)" is
// x*sin(x), "asinh" is never asin then h); a number's exponent needs digits
// after the e ("2e3" is 2000, "2e" is 2 times Euler's number). Inside bars a
// bar where an operator could stand closes them, so "||x|-1|" nests.
//
// Both parsers return null on an error, with a message saying what was
// expected at which character ("expected an operand at character 4"), and
// refuse trees more than MAX_DEPTH levels deep, so that no later recursive
// walk of a tree can exhaust the stack.
//
// The double meaning of the operators and functions is that of
// OperatorNodeC::apply and the rows of FunctionTableC: x^n for whole n up to
// 64 by repeated squaring, std::pow otherwise; the functions from <cmath>.
class AlgebraicExpressionC : public oss::RefCountedBC {
public:
    static unsigned int const MAX_DEPTH = 500;

    // Takes the tree (which must be no deeper than MAX_DEPTH; the parsers
    // ensure it). A null root is an expression without a value.
    explicit AlgebraicExpressionC(std::unique_ptr<NodeABC> root);
    virtual ~AlgebraicExpressionC();

    static oss::PointerTC<AlgebraicExpressionC> fromPrefixString(std::u16string const &text,
                                                                 std::string *error = nullptr);
    static oss::PointerTC<AlgebraicExpressionC> fromInfixString(std::string const &text,
                                                                std::string *error = nullptr);

    // A new expression computed from this one:
    // - evaluate false: simplified, every part that does not depend on x
    //   folded into its number (the same doubles the tree walk computes);
    // - evaluate true: the expression's one number; null, with *message
    //   saying why, when it depends on x or has no tree.
    oss::PointerTC<AlgebraicExpressionC> execute(bool evaluate, std::u16string *message);

    NodeABC *getNode() const { return root_.get(); }

    // The variables the expression uses: bit 1 << VariableNodeC::IndexE for
    // each (1 for x alone, 2 for y alone, 3 for x and y).
    unsigned int getVariables() const;

    // The value at x by walking the tree (NaN when there is no tree).
    double evaluateAt(double x) const;
    std::u16string toPrefixString() const;

private:
    AlgebraicExpressionC(AlgebraicExpressionC const &) = delete;
    AlgebraicExpressionC &operator=(AlgebraicExpressionC const &) = delete;

    std::unique_ptr<NodeABC> root_;
};

// Folds every part of a tree that does not depend on a variable into its
// number; the compiled program starts from this too. depends tells whether
// the whole tree depends on a variable.
std::unique_ptr<NodeABC> foldConstants(NodeABC const &node, bool &depends);

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

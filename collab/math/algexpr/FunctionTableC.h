#ifndef QELT_MATH_ALGEXPR_FUNCTIONTABLEC_H
#define QELT_MATH_ALGEXPR_FUNCTIONTABLEC_H

#include <string>

#include "collab/math/IntervalC.h"
#include "collab/math/WideIntervalC.h"

namespace qelt {
namespace math {
namespace algexpr {

// One function of the expression language: its code, its name in the prefix
// form, its number of operands, and its meaning on doubles, on intervals and
// on long double intervals (null where the range of a double does not limit
// it: the interval version then serves, through WideIntervalC::toDouble).
// A one-operand function ignores the second argument of each.
struct FunctionRowS {
    int code;
    char const *name;
    unsigned int arity;
    double (*point)(double a, double b);
    IntervalC (*interval)(IntervalC const &a, IntervalC const &b);
    WideIntervalC (*wide)(WideIntervalC const &a, WideIntervalC const &b);
};

// Every function of the expression language, one row each: the tree walk,
// constant folding, both parsers, printing and the compiled program all look
// functions up here, so adding a function is adding a row (and a code).
//
// Two-operand functions take their operands in the order written:
// logbase(b, x), root(n, x), min(a, b), max(a, b), mod(x, y).
class FunctionTableC {
public:
    // Stable codes, dense from SIN to ERFC (the first seventeen are the
    // original core functions, in their original order).
    enum CodeE {
        SIN = 1, COS, TAN, ASIN, ACOS, ATAN, SINH, COSH, TANH,
        EXP, LN, LOG10, SQRT, ABS, FLOOR, CEIL, SIGN,
        SEC, CSC, COT, ASINH, ACOSH, ATANH, LOG2, LOG_BASE, CBRT, ROOT,
        ROUND, TRUNC, MIN, MAX, MOD, GAMMA, FACTORIAL, ERF, ERFC
    };
    static int const FIRST_CODE = SIN;
    static int const LAST_CODE = ERFC;

    // The row of a code, or null for an unknown code.
    static FunctionRowS const *row(int code);
    // The code of a name or of one of its other spellings ("arcsin", "sgn",
    // "log" for log10), or 0 when no function has that name.
    static int codeOf(std::string const &name);

    // The double rules that have more to them than one library call.
    // sign gives -1, 0 or 1 (NaN for NaN).
    static double sign(double v) { return v > 0 ? 1.0 : (v < 0 ? -1.0 : (v == 0 ? 0.0 : v)); }
    // x - y*floor(x/y), from the exact remainder: the sign of y.
    static double mod(double x, double y);
    // The exact product for whole x from 0 to 22 (so 5! is 120), gamma(x+1)
    // otherwise.
    static double factorial(double x);
    // x^(1/n), and -(-x)^(1/n) for x < 0 when n is a whole odd number.
    static double root(double n, double x);
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

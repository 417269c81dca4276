#ifndef QELT_MATH_INTERVALC_H
#define QELT_MATH_INTERVALC_H

namespace qelt {
namespace math {

// An enclosure of the values a function takes over an input interval, with
// what is known about the function there.
//
// [lo, hi] holds every value the double evaluation can produce at an input
// inside the interval, and every real value of the function there; the
// bounds are extended reals (an infinite bound means "unbounded that way").
// Every operation rounds its bounds outward, so the enclosure stays sound
// under double rounding and under the libm error of the core functions.
//
// The three flags say where the enclosure cannot be trusted as a picture of
// one continuous piece of curve:
// - empty: no input in the interval has a value (lo and hi mean nothing);
// - partial: some inputs may have no value (a domain edge inside);
// - mayJump: the function may be discontinuous inside (a pole, or a jump of
//   floor, ceil or sign).
// A result carries the flags of its operands; when none is set the function
// is continuous over the whole input and takes every value between its
// minimum and maximum there.
//
// The flags are the three decorations of decorated interval arithmetic:
// - defined and continuous: none of empty, partial, mayJump;
// - defined (every input has a value, continuity unknown): mayJump alone;
// - possibly undefined: partial (or empty, when no input has a value).
//
// overflow is not a decoration but a note on tightness: some bound left the
// double range inside the computation (a value beyond the largest double, or
// a nonzero one below the smallest normal double), so the enclosure may be
// far looser than the function; a wider evaluation can do better.
class IntervalC {
public:
    double lo;
    double hi;
    bool empty;
    bool partial;
    bool mayJump;
    bool overflow;

    IntervalC();
    IntervalC(double lo, double hi);
    // The one value v (NaN: no value at all).
    static IntervalC point(double v);
    static IntervalC none();
    static IntervalC whole();

    bool isPoint() const { return !empty && lo == hi; }
    bool clean() const { return !empty && !partial && !mayJump; }
    // Whether v lies inside (for the checks of callers and tests).
    bool contains(double v) const { return !empty && lo <= v && v <= hi; }

    static IntervalC neg(IntervalC const &a);
    static IntervalC add(IntervalC const &a, IntervalC const &b);
    static IntervalC sub(IntervalC const &a, IntervalC const &b);
    static IntervalC mul(IntervalC const &a, IntervalC const &b);
    static IntervalC div(IntervalC const &a, IntervalC const &b);
    // a^n by repeated squaring, n a whole number of at most 64 in size: the
    // same products as the double evaluation, each rounded outward.
    static IntervalC powInt(IntervalC const &a, int n);
    // a^b for any exponent (the double evaluation's power rule).
    static IntervalC pow(IntervalC const &a, IntervalC const &b);

    static IntervalC sin(IntervalC const &a);
    static IntervalC cos(IntervalC const &a);
    static IntervalC tan(IntervalC const &a);
    static IntervalC asin(IntervalC const &a);
    static IntervalC acos(IntervalC const &a);
    static IntervalC atan(IntervalC const &a);
    static IntervalC sinh(IntervalC const &a);
    static IntervalC cosh(IntervalC const &a);
    static IntervalC tanh(IntervalC const &a);
    static IntervalC exp(IntervalC const &a);
    static IntervalC ln(IntervalC const &a);
    static IntervalC log10(IntervalC const &a);
    static IntervalC sqrt(IntervalC const &a);
    static IntervalC abs(IntervalC const &a);
    static IntervalC floor(IntervalC const &a);
    static IntervalC ceil(IntervalC const &a);
    static IntervalC sign(IntervalC const &a);

    static IntervalC sec(IntervalC const &a);
    static IntervalC csc(IntervalC const &a);
    static IntervalC cot(IntervalC const &a);
    static IntervalC asinh(IntervalC const &a);
    static IntervalC acosh(IntervalC const &a);
    static IntervalC atanh(IntervalC const &a);
    static IntervalC log2(IntervalC const &a);
    // The logarithm of x to base b: ln x / ln b.
    static IntervalC logBase(IntervalC const &b, IntervalC const &x);
    static IntervalC cbrt(IntervalC const &a);
    // The n-th root of x: x^(1/n), and -(-x)^(1/n) for x < 0 when n is odd.
    static IntervalC root(IntervalC const &n, IntervalC const &x);
    static IntervalC round(IntervalC const &a);
    static IntervalC trunc(IntervalC const &a);
    static IntervalC min(IntervalC const &a, IntervalC const &b);
    static IntervalC max(IntervalC const &a, IntervalC const &b);
    // x - y*floor(x/y): the sign of y (mod(-1, 3) = 2).
    static IntervalC mod(IntervalC const &x, IntervalC const &y);
    static IntervalC gamma(IntervalC const &a);
    // x! = gamma(x + 1).
    static IntervalC factorial(IntervalC const &a);
    static IntervalC erf(IntervalC const &a);
    static IntervalC erfc(IntervalC const &a);

    // The smallest interval holding both (flags of both).
    static IntervalC hull(IntervalC const &a, IntervalC const &b);

    // The neighbouring doubles toward -infinity and +infinity; a NaN becomes
    // the infinity that keeps a bound sound, and an infinity stays where it is
    // on its own side (down(+inf) is the largest double).
    static double down(double v);
    static double up(double v);
};

} // namespace math
} // namespace qelt

#endif

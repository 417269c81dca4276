#ifndef QELT_MATH_WIDEINTERVALC_H
#define QELT_MATH_WIDEINTERVALC_H

#include "collab/math/IntervalC.h"

namespace qelt {
namespace math {

// An enclosure like IntervalC, over long double: where long double has a
// wider exponent range than double (x86-64's 80-bit format reaches about
// 1e4932), values that overflow or underflow a double are ordinary here, so
// exp(x)/exp(x) near x = 710 or x^2/x^2 near 1e155 keep their true size.
// Where long double is double this is IntervalC over again, which is still
// sound.
//
// The bounds hold every real value of the function over the input. Every
// operation rounds outward by two long double ulps, every library function
// is widened by a relative margin; the flags mean what IntervalC's mean, and
// overflow says a bound left even the long double range.
//
// Only the operations where the range matters are computed in long double;
// the others go through IntervalC (fromDouble(IntervalC::f(toDouble(a)))),
// which is sound at any size.
class WideIntervalC {
public:
    long double lo;
    long double hi;
    bool empty;
    bool partial;
    bool mayJump;
    bool overflow;

    WideIntervalC();
    WideIntervalC(long double lo, long double hi);

    static WideIntervalC fromDouble(IntervalC const &a);
    // Bounds rounded outward to doubles; overflow stays set when a bound
    // does not fit in a double (it became infinite or left the normal range).
    IntervalC toDouble() const;

    static WideIntervalC neg(WideIntervalC const &a);
    static WideIntervalC add(WideIntervalC const &a, WideIntervalC const &b);
    static WideIntervalC sub(WideIntervalC const &a, WideIntervalC const &b);
    static WideIntervalC mul(WideIntervalC const &a, WideIntervalC const &b);
    static WideIntervalC div(WideIntervalC const &a, WideIntervalC const &b);
    static WideIntervalC powInt(WideIntervalC const &a, int n);
    // a^b; a base below 0 goes through IntervalC::pow.
    static WideIntervalC pow(WideIntervalC const &a, WideIntervalC const &b);

    static WideIntervalC exp(WideIntervalC const &a);
    static WideIntervalC ln(WideIntervalC const &a);
    static WideIntervalC sqrt(WideIntervalC const &a);
    static WideIntervalC abs(WideIntervalC const &a);
    static WideIntervalC sinh(WideIntervalC const &a);
    static WideIntervalC cosh(WideIntervalC const &a);
};

} // namespace math
} // namespace qelt

#endif

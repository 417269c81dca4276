#include "collab/math/IntervalC.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "collab/oss/IntegerConversionC.h"

namespace qelt {
namespace math {

namespace {

double const inf = std::numeric_limits<double>::infinity();
double const pi = 3.14159265358979323846;
// Beyond this size the period of sin, cos and tan is no longer resolved by a
// double division: such inputs get the whole range.
double const periodicLimit = 1e12;

// Two ulps: the core functions of the C library are within one ulp of the
// true value, and the double evaluation uses those same functions.
double down2(double v) { return IntervalC::down(IntervalC::down(v)); }
double up2(double v) { return IntervalC::up(IntervalC::up(v)); }

// The same, but exact where the function is: at the one argument where the
// C library returns the exact value (sin 0, log 1, exp 0, ...).
double down2at(double value, double arg, double exactArg) { return arg == exactArg ? value : down2(value); }
double up2at(double value, double arg, double exactArg) { return arg == exactArg ? value : up2(value); }

// Relative widening for the power rule, whose whole exponents go through
// repeated squaring (a few roundings) and the rest through std::pow.
double downWide(double v) { return std::isfinite(v) ? down2(v - std::fabs(v) * 0x1p-45) : IntervalC::down(v); }
double upWide(double v) { return std::isfinite(v) ? up2(v + std::fabs(v) * 0x1p-45) : IntervalC::up(v); }

// Whether some point offset + k*period, k whole, may lie in [a, b]. The
// margin covers the rounding of the division and of offset and period
// themselves, so the answer errs on yes.
bool mayHold(double a, double b, double offset, double period) {
    double ta = (a - offset) / period;
    double tb = (b - offset) / period;
    double margin = 1e-15 * (std::fabs(ta) + std::fabs(tb) + 1.0);
    return std::floor(tb + margin) >= std::ceil(ta - margin);
}

bool periodicResolved(IntervalC const &a, double period) {
    return std::fabs(a.lo) <= periodicLimit && std::fabs(a.hi) <= periodicLimit && a.hi - a.lo < period;
}

IntervalC withFlags(IntervalC r, IntervalC const &a) {
    r.partial = r.partial || a.partial;
    r.mayJump = r.mayJump || a.mayJump;
    return r;
}

IntervalC withFlags(IntervalC r, IntervalC const &a, IntervalC const &b) {
    return withFlags(withFlags(r, a), b);
}

// An empty result that keeps the operands' flags.
IntervalC emptyFrom(IntervalC const &a, IntervalC const &b) { return withFlags(IntervalC::none(), a, b); }

// One ulp or more outward from a correctly rounded result p, whose error is
// at most half an ulp of p: |p| * 2^-52 is at least one ulp for a normal p.
// Tiny, huge and non-finite results step by neighbouring doubles instead.
double outwardDown(double p) {
    double m = std::fabs(p);
    if (!(m >= 0x1p-1000 && m <= 0x1p1000)) return IntervalC::down(p);
    return p - m * 0x1p-52;
}

double outwardUp(double p) {
    double m = std::fabs(p);
    if (!(m >= 0x1p-1000 && m <= 0x1p1000)) return IntervalC::up(p);
    return p + m * 0x1p-52;
}

// The bounds of a sum. Adding 0 is exact, and so is a sum that comes out 0
// (with gradual underflow only x + -x gives 0).
double sumDown(double a, double b) {
    if (a == 0) return b;
    if (b == 0) return a;
    double s = a + b;
    return s == 0 ? s : outwardDown(s);
}

double sumUp(double a, double b) {
    if (a == 0) return b;
    if (b == 0) return a;
    double s = a + b;
    return s == 0 ? s : outwardUp(s);
}

// Where a product's rounding error can be computed exactly (no overflow in
// the splitting, no underflow in the error): between these sizes.
bool errorComputable(double a, double b, double p) {
    return std::fabs(a) < 0x1p995 && std::fabs(b) < 0x1p995 && std::fabs(p) > 0x1p-960 && std::isfinite(p);
}

// The rounding error of p = a*b, exactly (Dekker's two-product; it relies on
// the build not fusing multiply-adds).
double productError(double a, double b, double p) {
    double ca = 134217729.0 * a;
    double ah = ca - (ca - a);
    double al = a - ah;
    double cb = 134217729.0 * b;
    double bh = cb - (cb - b);
    double bl = b - bh;
    return ((ah * bh - p) + ah * bl + al * bh) + al * bl;
}

// One bound of a product. A zero factor is exact even against an infinite
// bound (0 is the limit of the finite values that the bound stands for), and
// so is a unit factor; otherwise the product moves outward, which is cheaper
// than finding out whether it was exact.
double productDown(double a, double b) {
    if (a == 0 || b == 0) return 0;
    if (a == 1) return b;
    if (b == 1) return a;
    return outwardDown(a * b);
}

double productUp(double a, double b) {
    if (a == 0 || b == 0) return 0;
    if (a == 1) return b;
    if (b == 1) return a;
    return outwardUp(a * b);
}

// The bounds of a quotient: the remainder a - q*b, computed exactly, tells
// which side of q the true quotient lies.
void quotientBounds(double a, double b, double &lo, double &hi) {
    if (a == 0) {
        lo = hi = 0;
        return;
    }
    double q = a / b;
    if (!errorComputable(q, b, q * b) || !std::isfinite(a) || !std::isfinite(b)) {
        lo = IntervalC::down(q);
        hi = IntervalC::up(q);
        return;
    }
    double p = q * b;
    double remainder = (a - p) - productError(q, b, p);
    bool above = (remainder > 0) == (b > 0) && remainder != 0;
    bool below = (remainder > 0) != (b > 0) && remainder != 0;
    lo = below ? IntervalC::down(q) : q;
    hi = above ? IntervalC::up(q) : q;
}

// Whether r is exactly the square root of v (r*r == v with no rounding).
bool exactSquareRoot(double r, double v) {
    if (r == 0) return v <= 0;
    if (!errorComputable(r, r, r * r)) return false;
    return r * r == v && productError(r, r, r * r) == 0;
}

double min4(double a, double b, double c, double d) {
    double m = a < b ? a : b;
    m = m < c ? m : c;
    return m < d ? m : d;
}

double max4(double a, double b, double c, double d) {
    double m = a > b ? a : b;
    m = m > c ? m : c;
    return m > d ? m : d;
}

// v^m for v >= 0 by the same repeated squaring as the double evaluation,
// every product rounded one way, so the result bounds both the real power
// and the double one (rounding is monotonic).
double magnitudePower(double v, int m, bool upward) {
    double result = 1.0;
    double base = v;
    while (m != 0) {
        if (m & 1) result = upward ? productUp(result, base) : productDown(result, base);
        m >>= 1;
        if (m != 0) base = upward ? productUp(base, base) : productDown(base, base);
    }
    return result;
}

double signOf(double v) { return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0); }

// The range of |v| over a: from 0 when a holds 0.
IntervalC magnitudes(IntervalC const &a) {
    double high = std::fabs(a.lo) > std::fabs(a.hi) ? std::fabs(a.lo) : std::fabs(a.hi);
    double low = (a.lo <= 0 && a.hi >= 0) ? 0.0 : (a.lo > 0 ? a.lo : -a.hi);
    return IntervalC(low, high);
}

// Infinite bounds stand for values that overflowed, which the double
// evaluation carries on as infinities: where an operation turns those into
// NaN (inf - inf, 0 * inf, sin of inf), some inputs may have no value.
bool unbounded(IntervalC const &a) { return !(std::isfinite(a.lo) && std::isfinite(a.hi)); }
bool holdsZero(IntervalC const &a) { return a.lo <= 0 && a.hi >= 0; }

bool isWhole(double v) { return std::isfinite(v) && std::floor(v) == v; }

} // namespace

IntervalC::IntervalC() : lo(0), hi(0), empty(false), partial(false), mayJump(false) {}

IntervalC::IntervalC(double l, double h) : lo(l), hi(h), empty(false), partial(false), mayJump(false) {}

IntervalC IntervalC::point(double v) {
    if (std::isnan(v)) return none();
    return IntervalC(v, v);
}

IntervalC IntervalC::none() {
    IntervalC r(inf, -inf);
    r.empty = true;
    return r;
}

IntervalC IntervalC::whole() { return IntervalC(-inf, inf); }

double IntervalC::down(double v) {
    if (std::isnan(v)) return -inf;
    if (v == inf) return std::numeric_limits<double>::max();
    if (v == -inf) return v;
    if (v == 0) return -std::numeric_limits<double>::denorm_min();
    std::uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    // Away from zero for negatives, toward zero for positives.
    bits = v > 0 ? bits - 1 : bits + 1;
    std::memcpy(&v, &bits, sizeof bits);
    return v;
}

double IntervalC::up(double v) {
    if (std::isnan(v)) return inf;
    if (v == -inf) return -std::numeric_limits<double>::max();
    if (v == inf) return v;
    if (v == 0) return std::numeric_limits<double>::denorm_min();
    std::uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    bits = v > 0 ? bits + 1 : bits - 1;
    std::memcpy(&v, &bits, sizeof bits);
    return v;
}

IntervalC IntervalC::neg(IntervalC const &a) {
    if (a.empty) return a;
    IntervalC r = a;
    r.lo = -a.hi;
    r.hi = -a.lo;
    return r;
}

IntervalC IntervalC::add(IntervalC const &a, IntervalC const &b) {
    if (a.empty || b.empty) return emptyFrom(a, b);
    IntervalC r = withFlags(IntervalC(sumDown(a.lo, b.lo), sumUp(a.hi, b.hi)), a, b);
    if ((a.hi == inf && b.lo == -inf) || (a.lo == -inf && b.hi == inf)) r.partial = true;
    return r;
}

IntervalC IntervalC::sub(IntervalC const &a, IntervalC const &b) { return add(a, neg(b)); }

IntervalC IntervalC::mul(IntervalC const &a, IntervalC const &b) {
    if (a.empty || b.empty) return emptyFrom(a, b);
    double l, h;
    // The sign cases: two products, four only when both straddle 0.
    if (a.lo >= 0) {
        if (b.lo >= 0) {
            l = productDown(a.lo, b.lo), h = productUp(a.hi, b.hi);
        } else if (b.hi <= 0) {
            l = productDown(a.hi, b.lo), h = productUp(a.lo, b.hi);
        } else {
            l = productDown(a.hi, b.lo), h = productUp(a.hi, b.hi);
        }
    } else if (a.hi <= 0) {
        if (b.lo >= 0) {
            l = productDown(a.lo, b.hi), h = productUp(a.hi, b.lo);
        } else if (b.hi <= 0) {
            l = productDown(a.hi, b.hi), h = productUp(a.lo, b.lo);
        } else {
            l = productDown(a.lo, b.hi), h = productUp(a.lo, b.lo);
        }
    } else if (b.lo >= 0) {
        l = productDown(a.lo, b.hi), h = productUp(a.hi, b.hi);
    } else if (b.hi <= 0) {
        l = productDown(a.hi, b.lo), h = productUp(a.lo, b.lo);
    } else {
        double l1 = productDown(a.lo, b.hi), l2 = productDown(a.hi, b.lo);
        double h1 = productUp(a.lo, b.lo), h2 = productUp(a.hi, b.hi);
        l = l1 < l2 ? l1 : l2;
        h = h1 > h2 ? h1 : h2;
    }
    IntervalC r = withFlags(IntervalC(l, h), a, b);
    if ((holdsZero(a) && unbounded(b)) || (holdsZero(b) && unbounded(a))) r.partial = true;
    return r;
}

IntervalC IntervalC::div(IntervalC const &a, IntervalC const &b) {
    if (a.empty || b.empty) return emptyFrom(a, b);
    if (b.lo <= 0 && b.hi >= 0) {
        if (b.lo == 0 && b.hi == 0) {
            // Dividing by exactly 0 gives an infinity (which the double
            // evaluation may carry on to a finite value, as atan does), or
            // NaN for 0/0. Its sign is the zero's, which bounds do not keep.
            IntervalC r = withFlags(whole(), a, b);
            r.mayJump = true;
            if (holdsZero(a)) r.partial = true;
            return r;
        }
        IntervalC r = withFlags(IntervalC(0, 0), a, b);
        r.partial = true;
        if (a.lo == 0 && a.hi == 0) return r;
        // A pole inside: the quotient runs off to both infinities.
        r.lo = -inf;
        r.hi = inf;
        r.mayJump = true;
        return r;
    }
    double l[4], h[4];
    quotientBounds(a.lo, b.lo, l[0], h[0]);
    quotientBounds(a.lo, b.hi, l[1], h[1]);
    quotientBounds(a.hi, b.lo, l[2], h[2]);
    quotientBounds(a.hi, b.hi, l[3], h[3]);
    IntervalC r = withFlags(IntervalC(min4(l[0], l[1], l[2], l[3]), max4(h[0], h[1], h[2], h[3])), a, b);
    if (unbounded(a) && unbounded(b)) r.partial = true;
    return r;
}

IntervalC IntervalC::powInt(IntervalC const &a, int n) {
    // x^0 is 1 for every x, a missing one included, as in the double rule.
    if (n == 0) return point(1.0);
    if (a.empty) return a;
    int m = n < 0 ? -n : n;
    IntervalC p;
    if (m % 2 == 0) {
        IntervalC size = magnitudes(a);
        p = IntervalC(magnitudePower(size.lo, m, false), magnitudePower(size.hi, m, true));
    } else {
        // Odd powers keep the sign; rounding is symmetric, so a negative base
        // gives the negated power of its magnitude.
        p.lo = a.lo >= 0 ? magnitudePower(a.lo, m, false) : -magnitudePower(-a.lo, m, true);
        p.hi = a.hi >= 0 ? magnitudePower(a.hi, m, true) : -magnitudePower(-a.hi, m, false);
    }
    p = withFlags(p, a);
    return n > 0 ? p : div(point(1.0), p);
}

IntervalC IntervalC::pow(IntervalC const &a, IntervalC const &b) {
    // 1^y and x^0 are 1 whatever the other operand, as in the double rule;
    // the one operand that matters keeps its flags.
    if (a.isPoint() && a.lo == 1) return withFlags(point(1.0), a);
    if (b.isPoint() && b.lo == 0) return withFlags(point(1.0), b);
    if (a.empty || b.empty) {
        // NaN^0 and 1^NaN are still 1.
        if ((a.empty && !b.empty && holdsZero(b)) || (b.empty && !a.empty && a.lo <= 1 && a.hi >= 1)) {
            IntervalC r = withFlags(point(1.0), a, b);
            r.partial = true;
            return r;
        }
        return emptyFrom(a, b);
    }
    if (b.isPoint() && isWhole(b.lo) && std::fabs(b.lo) <= 64)
        return withFlags(powInt(a, oss::IntegerConversionC::toInt32(b.lo)), b);
    if (b.isPoint() && isWhole(b.lo)) {
        // A whole exponent beyond repeated squaring: std::pow, defined for
        // negative bases too, even or odd in them as the exponent is.
        double e = b.lo;
        IntervalC base = std::fmod(e, 2.0) == 0 ? magnitudes(a) : a;
        if (base.lo <= 0 && base.hi >= 0 && e < 0) {
            IntervalC r = withFlags(whole(), a);
            r.partial = r.mayJump = true;
            return r;
        }
        double p1 = std::pow(base.lo, e);
        double p2 = std::pow(base.hi, e);
        IntervalC r(downWide(p1 < p2 ? p1 : p2), upWide(p1 < p2 ? p2 : p1));
        return withFlags(r, a);
    }
    if (a.lo == -inf || (a.lo < 0 && unbounded(b))) {
        // pow(-inf, y) and pow(x, +-inf) have values even where finite
        // negative bases with finite exponents do not: too rare to bound
        // closely.
        IntervalC r = withFlags(whole(), a, b);
        r.partial = r.mayJump = true;
        return r;
    }
    if (a.hi < 0 && b.isPoint()) return emptyFrom(a, b);
    if (a.lo < 0 && !b.isPoint()) {
        // Negative bases have values only at whole exponents, of either
        // sign: bound their size and give up on continuity.
        IntervalC size = magnitudes(a);
        double big = upWide(max4(std::pow(size.lo, b.lo), std::pow(size.lo, b.hi), std::pow(size.hi, b.lo),
                                 std::pow(size.hi, b.hi)));
        IntervalC r = withFlags(IntervalC(-big, big), a, b);
        r.partial = r.mayJump = true;
        return r;
    }
    // From here the base is taken as at least 0; a point exponent that is not
    // whole gives no value at a negative base.
    IntervalC base(a.lo < 0 ? 0.0 : a.lo, a.hi);
    double c1 = std::pow(base.lo, b.lo);
    double c2 = std::pow(base.lo, b.hi);
    double c3 = std::pow(base.hi, b.lo);
    double c4 = std::pow(base.hi, b.hi);
    // pow is monotonic in each argument for a base of at least 0, so the
    // corners bound the box.
    IntervalC r = withFlags(IntervalC(downWide(min4(c1, c2, c3, c4)), upWide(max4(c1, c2, c3, c4))), a, b);
    // Never below 0 for a base of at least 0.
    if (r.lo < 0) r.lo = 0;
    if (a.lo < 0) r.partial = true;
    if (base.lo == 0 && b.lo < 0) {
        // 0 to a negative power is an infinity, of either sign (the zero's
        // sign is not kept in bounds): a pole at the base's edge.
        r.lo = -inf;
        r.hi = inf;
        r.partial = r.mayJump = true;
    }
    if (base.lo == 0 && b.lo <= 0 && b.hi >= 0) r.mayJump = true;
    return r;
}

namespace {

// The whole range of a periodic function, with no value at an infinity.
IntervalC wholePeriod(IntervalC const &a, double lo, double hi) {
    IntervalC r = withFlags(IntervalC(lo, hi), a);
    if (unbounded(a)) r.partial = true;
    return r;
}

} // namespace

IntervalC IntervalC::sin(IntervalC const &a) {
    if (a.empty) return a;
    if (!periodicResolved(a, 2 * pi)) return wholePeriod(a, -1, 1);
    double s1 = std::sin(a.lo);
    double s2 = std::sin(a.hi);
    double l = s1 < s2 ? down2at(s1, a.lo, 0) : down2at(s2, a.hi, 0);
    double h = s1 < s2 ? up2at(s2, a.hi, 0) : up2at(s1, a.lo, 0);
    if (mayHold(a.lo, a.hi, pi / 2, 2 * pi)) h = 1;
    if (mayHold(a.lo, a.hi, -pi / 2, 2 * pi)) l = -1;
    return withFlags(IntervalC(l < -1 ? -1 : l, h > 1 ? 1 : h), a);
}

IntervalC IntervalC::cos(IntervalC const &a) {
    if (a.empty) return a;
    if (!periodicResolved(a, 2 * pi)) return wholePeriod(a, -1, 1);
    double c1 = std::cos(a.lo);
    double c2 = std::cos(a.hi);
    double l = c1 < c2 ? down2at(c1, a.lo, 0) : down2at(c2, a.hi, 0);
    double h = c1 < c2 ? up2at(c2, a.hi, 0) : up2at(c1, a.lo, 0);
    if (mayHold(a.lo, a.hi, 0, 2 * pi)) h = 1;
    if (mayHold(a.lo, a.hi, pi, 2 * pi)) l = -1;
    return withFlags(IntervalC(l < -1 ? -1 : l, h > 1 ? 1 : h), a);
}

IntervalC IntervalC::tan(IntervalC const &a) {
    if (a.empty) return a;
    if (!periodicResolved(a, pi) || mayHold(a.lo, a.hi, pi / 2, pi)) {
        IntervalC r = wholePeriod(a, -inf, inf);
        r.mayJump = true;
        return r;
    }
    // No pole inside: tan rises across the whole interval.
    return withFlags(IntervalC(down2at(std::tan(a.lo), a.lo, 0), up2at(std::tan(a.hi), a.hi, 0)), a);
}

IntervalC IntervalC::asin(IntervalC const &a) {
    if (a.empty) return a;
    if (a.hi < -1 || a.lo > 1) return withFlags(none(), a);
    double l = a.lo < -1 ? -1.0 : a.lo;
    double h = a.hi > 1 ? 1.0 : a.hi;
    IntervalC r(down2at(std::asin(l), l, 0), up2at(std::asin(h), h, 0));
    r = withFlags(r, a);
    if (a.lo < -1 || a.hi > 1) r.partial = true;
    return r;
}

IntervalC IntervalC::acos(IntervalC const &a) {
    if (a.empty) return a;
    if (a.hi < -1 || a.lo > 1) return withFlags(none(), a);
    // Falling: the upper end of the input gives the lower bound.
    IntervalC r(down2(std::acos(a.hi > 1 ? 1.0 : a.hi)), up2(std::acos(a.lo < -1 ? -1.0 : a.lo)));
    if (r.lo < 0) r.lo = 0;
    r = withFlags(r, a);
    if (a.lo < -1 || a.hi > 1) r.partial = true;
    return r;
}

IntervalC IntervalC::atan(IntervalC const &a) {
    if (a.empty) return a;
    return withFlags(IntervalC(down2at(std::atan(a.lo), a.lo, 0), up2at(std::atan(a.hi), a.hi, 0)), a);
}

IntervalC IntervalC::sinh(IntervalC const &a) {
    if (a.empty) return a;
    return withFlags(IntervalC(down2at(std::sinh(a.lo), a.lo, 0), up2at(std::sinh(a.hi), a.hi, 0)), a);
}

IntervalC IntervalC::cosh(IntervalC const &a) {
    if (a.empty) return a;
    double c1 = std::cosh(a.lo);
    double c2 = std::cosh(a.hi);
    double h = up2(c1 > c2 ? c1 : c2);
    // The minimum 1 sits at 0 when 0 is inside.
    double l = (a.lo <= 0 && a.hi >= 0) ? 1.0 : down2(c1 < c2 ? c1 : c2);
    return withFlags(IntervalC(l < 1 ? 1.0 : l, h), a);
}

IntervalC IntervalC::tanh(IntervalC const &a) {
    if (a.empty) return a;
    double l = down2at(std::tanh(a.lo), a.lo, 0);
    double h = up2at(std::tanh(a.hi), a.hi, 0);
    return withFlags(IntervalC(l < -1 ? -1.0 : l, h > 1 ? 1.0 : h), a);
}

IntervalC IntervalC::exp(IntervalC const &a) {
    if (a.empty) return a;
    double l = down2at(std::exp(a.lo), a.lo, 0);
    return withFlags(IntervalC(l < 0 ? 0.0 : l, up2at(std::exp(a.hi), a.hi, 0)), a);
}

namespace {

// ln and log10: no value below 0, -infinity at 0 (which the double
// evaluation may carry on), so the curve falls without bound toward 0.
template <class LogT>
IntervalC logarithm(IntervalC const &a, LogT log) {
    if (a.empty) return a;
    if (a.hi < 0) return withFlags(IntervalC::none(), a);
    IntervalC r(a.lo > 0 ? down2at(log(a.lo), a.lo, 1) : -inf, a.hi > 0 ? up2at(log(a.hi), a.hi, 1) : -inf);
    r = withFlags(r, a);
    if (a.lo < 0) r.partial = true;
    return r;
}

} // namespace

IntervalC IntervalC::ln(IntervalC const &a) {
    return logarithm(a, [](double v) { return std::log(v); });
}

IntervalC IntervalC::log10(IntervalC const &a) {
    return logarithm(a, [](double v) { return std::log10(v); });
}

IntervalC IntervalC::sqrt(IntervalC const &a) {
    if (a.empty) return a;
    if (a.hi < 0) return withFlags(none(), a);
    double low = std::sqrt(a.lo < 0 ? 0.0 : a.lo);
    double high = std::sqrt(a.hi);
    // sqrt is correctly rounded: one ulp each way, none where it is exact.
    IntervalC r(exactSquareRoot(low, a.lo) ? low : down(low), exactSquareRoot(high, a.hi) ? high : up(high));
    r = withFlags(r, a);
    if (a.lo < 0) r.partial = true;
    return r;
}

IntervalC IntervalC::abs(IntervalC const &a) {
    if (a.empty) return a;
    IntervalC r = a;
    if (a.lo >= 0) return r;
    if (a.hi <= 0) return neg(a);
    r.lo = 0;
    r.hi = -a.lo > a.hi ? -a.lo : a.hi;
    return r;
}

IntervalC IntervalC::floor(IntervalC const &a) {
    if (a.empty) return a;
    IntervalC r = withFlags(IntervalC(std::floor(a.lo), std::floor(a.hi)), a);
    if (r.lo != r.hi) r.mayJump = true;
    return r;
}

IntervalC IntervalC::ceil(IntervalC const &a) {
    if (a.empty) return a;
    IntervalC r = withFlags(IntervalC(std::ceil(a.lo), std::ceil(a.hi)), a);
    if (r.lo != r.hi) r.mayJump = true;
    return r;
}

IntervalC IntervalC::sign(IntervalC const &a) {
    if (a.empty) return a;
    IntervalC r = withFlags(IntervalC(signOf(a.lo), signOf(a.hi)), a);
    if (r.lo != r.hi) r.mayJump = true;
    return r;
}

} // namespace math
} // namespace qelt

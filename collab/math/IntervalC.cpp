#include "collab/math/IntervalC.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

#include "collab/math/TrigReductionC.h"
#include "collab/oss/IntegerConversionC.h"

namespace qelt {
namespace math {

namespace {

double const inf = std::numeric_limits<double>::infinity();
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

IntervalC withFlags(IntervalC r, IntervalC const &a) {
    r.partial = r.partial || a.partial;
    r.mayJump = r.mayJump || a.mayJump;
    r.overflow = r.overflow || a.overflow;
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

// A bound that left the double range: infinite, or nonzero and below the
// normal doubles (where relative accuracy is lost).
bool outOfRange(double v) {
    return !std::isfinite(v) || (v != 0 && std::fabs(v) < std::numeric_limits<double>::min());
}

// Notes on r that a bound left the double range although the operands'
// bounds did not, where the real result is neither 0 nor infinite.
IntervalC rangeChecked(IntervalC r, IntervalC const &a, IntervalC const &b) {
    if (r.empty || unbounded(a) || unbounded(b)) return r;
    bool aZero = holdsZero(a), bZero = holdsZero(b);
    if (std::isinf(r.lo) || std::isinf(r.hi)) r.overflow = true;
    // A product or quotient of nonzero values that came out 0 or subnormal.
    if (!aZero && !bZero && (outOfRange(r.lo) || outOfRange(r.hi) || holdsZero(r))) r.overflow = true;
    return r;
}

} // namespace

IntervalC::IntervalC() : lo(0), hi(0), empty(false), partial(false), mayJump(false), overflow(false) {}

IntervalC::IntervalC(double l, double h) : lo(l), hi(h), empty(false), partial(false), mayJump(false), overflow(false) {}

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
    IntervalC r = rangeChecked(withFlags(IntervalC(l, h), a, b), a, b);
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
    r = rangeChecked(r, a, b);
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
    p = rangeChecked(withFlags(p, a), a, point(1.0));
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

// Outward by an error e (>= 0) and then by two ulps for the C library.
double downBy(double v, double e) { return down2(v - e); }
double upBy(double v, double e) { return up2(v + e); }

// One end of an interval, reduced once: x = (quadrant + t) pi/2 with
// r = t pi/2, and its phase x * 2/pi modulo 4 (within 2^-50); the
// enclosures of sin x, cos x and tan x there once asked for (NaN until then).
struct ReducedS {
    double x;
    int quadrant;
    double r;
    double phase;
    IntervalC sinX, cosX, tanX;
};

// The ends reduced last on this thread. Bisection meets each end point
// again (a piece's ends were probed as points first, and neighbouring
// pieces share ends), so most ends are found here rather than reduced anew.
// A slot just handed out is never the next one replaced, so the two ends of
// one interval stay put while both are in use.
struct EndCacheS {
    static int const size = 4;
    ReducedS ends[size];
    int next;
    EndCacheS() : next(0) {
        for (ReducedS &e : ends) e.x = std::numeric_limits<double>::quiet_NaN();
    }
};

thread_local EndCacheS endCache;

ReducedS &reducedAt(double x) {
    EndCacheS &cache = endCache;
    for (int i = 0; i < EndCacheS::size; ++i) {
        if (cache.ends[i].x == x) {
            if (cache.next == i) cache.next = (i + 1) % EndCacheS::size;
            return cache.ends[i];
        }
    }
    ReducedS &e = cache.ends[cache.next];
    cache.next = (cache.next + 1) % EndCacheS::size;
    e.x = x;
    TrigReductionC::reduce(x, e.quadrant, e.r);
    double p = e.quadrant + e.r / 1.5707963267948966;
    e.phase = p < 0 ? p + 4 : p;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    e.sinX = e.cosX = e.tanX = IntervalC(nan, nan);
    return e;
}

// sin and cos at one end, each enclosed: the reduced argument is off by at
// most |r| * 2^-51 (exact below pi/4, where it is x itself), which moves
// sin and cos by no more than that.
IntervalC sinOrCosAt(ReducedS &e, bool sine) {
    IntervalC &known = sine ? e.sinX : e.cosX;
    if (!std::isnan(known.lo)) return known;
    double d = e.r == e.x ? 0 : std::fabs(e.r) * 0x1p-51;
    // sin x is sin r, cos r, -sin r, -cos r by quadrant; cos x one quadrant on.
    int q = (e.quadrant + (sine ? 0 : 1)) & 3;
    if (e.x == 0) return known = IntervalC::point(sine ? 0.0 : 1.0);
    double v = q % 2 == 0 ? std::sin(e.r) : std::cos(e.r);
    IntervalC r(downBy(v, d), upBy(v, d));
    return known = q >= 2 ? IntervalC::neg(r) : r;
}

// The sign of cos at one end, from its quadrant and reduced argument alone
// (cos r > 0 for |r| <= pi/4); 0 where that does not tell.
int cosSignAt(ReducedS const &e) {
    double sr = e.r > 0 ? 1 : (e.r < 0 ? -1 : 0);
    switch (e.quadrant) {
    case 0: return 1;
    case 1: return static_cast<int>(-sr);
    case 2: return -1;
    default: return static_cast<int>(sr);
    }
}

// tan at one end, enclosed: tan r in even quadrants, -1/tan r in odd ones. An error d in r moves tan r by at most d (1 + tan^2 r), taken with
// room. -1/u rises with u on either side of 0, so each bound of -1/tan r is
// -1 over the same bound of tan r, one ulp out (the quotient is correctly
// rounded); bounds of tan r either side of 0 (r = 0 in an odd quadrant: a
// pole) give both infinities.
IntervalC const &tanAt(ReducedS &e) {
    if (!std::isnan(e.tanX.lo)) return e.tanX;
    double t = std::tan(e.r);
    double d = e.r == e.x ? 0 : std::fabs(e.r) * 0x1p-51 * (1 + t * t) * 1.01;
    double l = e.r == 0 ? 0 : downBy(t, d), h = e.r == 0 ? 0 : upBy(t, d);
    if (e.quadrant % 2 == 0)
        e.tanX = IntervalC(l, h);
    else if (l <= 0 && h >= 0)
        e.tanX = IntervalC(-inf, inf);
    else
        e.tanX = IntervalC(IntervalC::down(-1 / l), IntervalC::up(-1 / h));
    return e.tanX;
}

// Where an interval lies in quarter periods: it starts at phase start (in
// [0, 4)) and spans span quarter periods; wide is set when it may cover a
// whole period (then the ends are not reduced, and low and high are null).
struct PhaseSpanS {
    double start;
    double span;
    bool wide;
    ReducedS *low, *high;
};

PhaseSpanS phaseSpan(IntervalC const &a) {
    PhaseSpanS p{0, 0, true, nullptr, nullptr};
    if (unbounded(a)) return p;
    double approximate = (a.hi - a.lo) * 0.6366197723675814;
    if (!(approximate < 3.999)) return p;
    p.low = &reducedAt(a.lo);
    p.high = &reducedAt(a.hi);
    p.start = p.low->phase;
    double span = p.high->phase - p.start;
    if (span < 0) span += 4;
    // Both phases are within 2^-50: a span near 4 for a narrow interval is
    // a span near 0 read across the wrap.
    if (span > 3.5 && approximate < 2) span = 0;
    p.span = span;
    p.wide = span > 3.999 || (approximate > 2 && span < 1);
    return p;
}

// Whether the phase c (plus a multiple of 4) may lie inside the span; the
// slack covers the phases' errors, and where it errs the function is
// within 1e-18 of its value at c anyway.
bool spanHolds(PhaseSpanS const &p, double c) {
    double const slack = 1e-9;
    double l = p.start - slack, h = p.start + p.span + slack;
    return (c >= l && c <= h) || (c + 4 >= l && c + 4 <= h);
}

enum TrigE { SINE, COSINE };

IntervalC sinOrCos(IntervalC const &a, TrigE which) {
    if (a.empty) return a;
    PhaseSpanS p = phaseSpan(a);
    if (p.wide) return wholePeriod(a, -1, 1);
    IntervalC v1 = sinOrCosAt(*p.low, which == SINE), v2 = sinOrCosAt(*p.high, which == SINE);
    double l = v1.lo < v2.lo ? v1.lo : v2.lo;
    double h = v1.hi > v2.hi ? v1.hi : v2.hi;
    // sin peaks at phase 1 and bottoms at 3; cos at 0 and 2.
    double top = which == SINE ? 1 : 0;
    if (spanHolds(p, top)) h = 1;
    if (spanHolds(p, top + 2)) l = -1;
    return withFlags(IntervalC(l < -1 ? -1 : l, h > 1 ? 1 : h), a);
}

} // namespace

IntervalC IntervalC::sin(IntervalC const &a) { return sinOrCos(a, SINE); }

IntervalC IntervalC::cos(IntervalC const &a) { return sinOrCos(a, COSINE); }

IntervalC IntervalC::tan(IntervalC const &a) {
    if (a.empty) return a;
    PhaseSpanS p = phaseSpan(a);
    // Less than half a period wide, a pole inside is where cos changes sign,
    // which the quadrant and the sign of the reduced argument tell exactly.
    bool pole = p.wide || p.span >= 2;
    if (!pole) {
        int c1 = cosSignAt(*p.low), c2 = cosSignAt(*p.high);
        pole = c1 == 0 || c2 == 0 || c1 != c2;
    }
    if (pole) {
        // tan runs off to both infinities. The double evaluation has a value
        // at every double (no double is a pole).
        IntervalC r = wholePeriod(a, -inf, inf);
        r.mayJump = true;
        return r;
    }
    // No pole inside: tan rises across the whole interval.
    return withFlags(IntervalC(tanAt(*p.low).lo, tanAt(*p.high).hi), a);
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
    IntervalC r(down2at(std::sinh(a.lo), a.lo, 0), up2at(std::sinh(a.hi), a.hi, 0));
    return rangeChecked(withFlags(r, a), a, point(1.0));
}

IntervalC IntervalC::cosh(IntervalC const &a) {
    if (a.empty) return a;
    double c1 = std::cosh(a.lo);
    double c2 = std::cosh(a.hi);
    double h = up2(c1 > c2 ? c1 : c2);
    // The minimum 1 sits at 0 when 0 is inside.
    double l = (a.lo <= 0 && a.hi >= 0) ? 1.0 : down2(c1 < c2 ? c1 : c2);
    return rangeChecked(withFlags(IntervalC(l < 1 ? 1.0 : l, h), a), a, point(1.0));
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
    IntervalC r = withFlags(IntervalC(l < 0 ? 0.0 : l, up2at(std::exp(a.hi), a.hi, 0)), a);
    // exp of a finite bound beyond about 709 or below about -708.
    // (exp of a finite number is never 0, so 0 too is out of range).
    double const smallest = std::numeric_limits<double>::min();
    if ((std::isfinite(a.hi) && !(std::exp(a.hi) < inf)) || (std::isfinite(a.lo) && std::exp(a.lo) < smallest))
        r.overflow = true;
    return r;
}

namespace {

// ln, log10 and log2: no value below 0, -infinity at 0 (which the double
// evaluation may carry on), so the curve falls without bound toward 0, and
// an input reaching 0 is outside the domain there.
template <class LogT>
IntervalC logarithm(IntervalC const &a, LogT log) {
    if (a.empty) return a;
    if (a.hi < 0) return withFlags(IntervalC::none(), a);
    IntervalC r(a.lo > 0 ? down2at(log(a.lo), a.lo, 1) : -inf, a.hi > 0 ? up2at(log(a.hi), a.hi, 1) : -inf);
    r = withFlags(r, a);
    if (a.lo <= 0) r.partial = true;
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

IntervalC IntervalC::hull(IntervalC const &a, IntervalC const &b) {
    if (a.empty) return withFlags(b, a);
    if (b.empty) return withFlags(a, b);
    IntervalC r(a.lo < b.lo ? a.lo : b.lo, a.hi > b.hi ? a.hi : b.hi);
    return withFlags(r, a, b);
}

IntervalC IntervalC::sec(IntervalC const &a) { return div(point(1.0), cos(a)); }

IntervalC IntervalC::csc(IntervalC const &a) { return div(point(1.0), sin(a)); }

// cos/sin encloses 1/tan too: both are within a few ulps of the real cot,
// and the enclosures of cos and sin are each two ulps or more outward.
IntervalC IntervalC::cot(IntervalC const &a) { return div(cos(a), sin(a)); }

namespace {

// Measured largest errors of the C library against MPFR, with room to
// spare: relative margins applied to the library's values.
double const libraryMargin = 0x1p-49;  // asinh, acosh, atanh, cbrt, erf, log2
double const gammaMargin = 0x1p-45;    // tgamma, erfc

double downRel(double v, double margin) {
    if (!std::isfinite(v)) return IntervalC::down(v);
    return down2(v - std::fabs(v) * margin);
}

double upRel(double v, double margin) {
    if (!std::isfinite(v)) return IntervalC::up(v);
    return up2(v + std::fabs(v) * margin);
}

// A function rising (or falling) over [l, h] inside its domain, from the C
// library's values at the ends widened by a relative margin.
IntervalC monotone(double l, double h, double (*f)(double), bool rising, double margin) {
    double fl = f(l), fh = f(h);
    if (!rising) std::swap(fl, fh);
    return IntervalC(downRel(fl, margin), upRel(fh, margin));
}

// Clips a to [low, high], the domain of a function; none when they miss,
// partial when some of a lies outside.
bool clipToDomain(IntervalC const &a, double low, double high, IntervalC &clipped) {
    if (a.hi < low || a.lo > high) return false;
    clipped = IntervalC(a.lo < low ? low : a.lo, a.hi > high ? high : a.hi);
    clipped.partial = a.lo < low || a.hi > high;
    return true;
}

// zeroAt is the one argument where f is exactly 0 (and the C library says
// so): an end there keeps its bound exact, so that a value of exactly 0
// stays one (floor, sign and the like of it then do not jump).
IntervalC rising(IntervalC const &a, double (*f)(double), double low, double high, double margin, double zeroAt) {
    if (a.empty) return a;
    IntervalC d;
    if (!clipToDomain(a, low, high, d)) return withFlags(IntervalC::none(), a);
    IntervalC r = monotone(d.lo, d.hi, f, true, margin);
    if (d.lo == zeroAt) r.lo = 0;
    if (d.hi == zeroAt) r.hi = 0;
    r.partial = d.partial;
    return withFlags(r, a);
}


// A step function (constant between its jumps, continuous from the side
// that the rule picks): continuous over the input exactly when it takes one
// value there.
IntervalC step(IntervalC const &a, double (*f)(double)) {
    if (a.empty) return a;
    IntervalC r = withFlags(IntervalC(f(a.lo), f(a.hi)), a);
    if (r.lo != r.hi) r.mayJump = true;
    return r;
}

} // namespace

IntervalC IntervalC::asinh(IntervalC const &a) {
    return rising(a, [](double v) { return std::asinh(v); }, -inf, inf, libraryMargin, 0);
}

IntervalC IntervalC::acosh(IntervalC const &a) {
    IntervalC r = rising(a, [](double v) { return std::acosh(v); }, 1, inf, libraryMargin, 1);
    if (!r.empty && r.lo < 0) r.lo = 0;
    return r;
}

IntervalC IntervalC::atanh(IntervalC const &a) {
    // Poles at -1 and 1: the ends of the domain, where atanh is infinite.
    IntervalC r = rising(a, [](double v) { return std::atanh(v); }, -1, 1, libraryMargin, 0);
    if (!r.empty && (a.lo <= -1 || a.hi >= 1)) r.partial = true;
    return r;
}

IntervalC IntervalC::log2(IntervalC const &a) {
    return logarithm(a, [](double v) { return std::log2(v); });
}

IntervalC IntervalC::logBase(IntervalC const &b, IntervalC const &x) {
    IntervalC base = ln(b);
    IntervalC r = div(ln(x), base);
    // Base 1 has no logarithm: a pole in the base, not only a hole.
    if (!base.empty && base.lo <= 0 && base.hi >= 0) r.partial = true;
    return r;
}

IntervalC IntervalC::cbrt(IntervalC const &a) {
    return rising(a, [](double v) { return std::cbrt(v); }, -inf, inf, libraryMargin, 0);
}

IntervalC IntervalC::root(IntervalC const &n, IntervalC const &x) {
    if (n.empty || x.empty) return emptyFrom(n, x);
    if (holdsZero(n) || unbounded(n)) {
        // The 0th root is x^infinity: 0, 1, infinity or none.
        IntervalC r = withFlags(whole(), n, x);
        r.partial = r.mayJump = true;
        return r;
    }
    IntervalC e = div(point(1.0), n);
    IntervalC r = none();
    if (x.hi >= 0) r = pow(IntervalC(x.lo < 0 ? 0.0 : x.lo, x.hi), e);
    if (x.lo < 0) {
        // Below 0 only odd roots have values, mirrored from above 0; a root
        // of varying degree has them only at its odd whole degrees.
        bool odd = n.isPoint() ? isWhole(n.lo) && std::fmod(n.lo, 2.0) != 0 : std::floor(n.hi) >= std::ceil(n.lo);
        if (odd) {
            IntervalC negative = neg(pow(neg(IntervalC(x.lo, x.hi < 0 ? x.hi : 0.0)), e));
            r = hull(r, negative);
            if (!n.isPoint()) r.partial = r.mayJump = true;
        } else {
            r.partial = true;
        }
    }
    if (r.empty) return emptyFrom(n, x);
    return withFlags(r, n, x);
}

IntervalC IntervalC::round(IntervalC const &a) {
    return step(a, [](double v) { return std::round(v); });
}

IntervalC IntervalC::trunc(IntervalC const &a) {
    return step(a, [](double v) { return std::trunc(v); });
}

IntervalC IntervalC::min(IntervalC const &a, IntervalC const &b) {
    if (a.empty || b.empty) return emptyFrom(a, b);
    return withFlags(IntervalC(a.lo < b.lo ? a.lo : b.lo, a.hi < b.hi ? a.hi : b.hi), a, b);
}

IntervalC IntervalC::max(IntervalC const &a, IntervalC const &b) {
    if (a.empty || b.empty) return emptyFrom(a, b);
    return withFlags(IntervalC(a.lo > b.lo ? a.lo : b.lo, a.hi > b.hi ? a.hi : b.hi), a, b);
}

IntervalC IntervalC::mod(IntervalC const &x, IntervalC const &y) {
    if (x.empty || y.empty) return emptyFrom(x, y);
    if (holdsZero(y) || unbounded(x) || unbounded(y)) {
        // mod by 0 has no value; an infinite x has none either.
        IntervalC r = withFlags(IntervalC(y.lo < 0 ? y.lo : 0.0, y.hi > 0 ? y.hi : 0.0), x, y);
        if (holdsZero(y)) r = withFlags(whole(), x, y);
        r.partial = r.mayJump = true;
        return r;
    }
    // The result lies between 0 and y, y itself included: r + y may round
    // up to y for a tiny negative remainder r.
    IntervalC range(y.lo < 0 ? y.lo : 0.0, y.hi > 0 ? y.hi : 0.0);
    IntervalC q = floor(div(x, y));
    if (q.lo != q.hi) {
        IntervalC r = withFlags(range, x, y);
        r.mayJump = true;
        return r;
    }
    // One whole quotient over the box: x - y*q, continuous.
    IntervalC r = sub(x, mul(y, point(q.lo)));
    if (r.lo < range.lo) r.lo = range.lo;
    if (r.hi > range.hi) r.hi = range.hi;
    r.overflow = false;
    return withFlags(r, x, y);
}

namespace {

// Where gamma has its minimum on the positive side, bracketed, and the
// minimum itself (0.88560319441088870027...), rounded down.
double const gammaMinLow = 1.4616;
double const gammaMinHigh = 1.4617;
double const gammaMinValue = 0.8856031944108886;

double tgammaOf(double v) { return std::tgamma(v); }

// gamma over [l, h] with 0 < l: falling up to the minimum, rising after.
IntervalC gammaPositive(double l, double h) {
    if (h < gammaMinLow) return monotone(l, h, tgammaOf, false, gammaMargin);
    if (l > gammaMinHigh) return monotone(l, h, tgammaOf, true, gammaMargin);
    double g1 = upRel(std::tgamma(l), gammaMargin), g2 = upRel(std::tgamma(h), gammaMargin);
    return IntervalC(IntervalC::down(gammaMinValue), g1 > g2 ? g1 : g2);
}

} // namespace

IntervalC IntervalC::gamma(IntervalC const &a) {
    if (a.empty) return a;
    // Poles at 0, -1, -2, ...: one inside, or an end on one.
    bool pole = a.lo <= 0 && (a.hi >= 0 || std::floor(a.lo) != std::floor(a.hi) || isWhole(a.lo) || isWhole(a.hi));
    if (pole || a.lo == -inf) {
        IntervalC r = withFlags(whole(), a);
        r.partial = r.mayJump = true;
        return r;
    }
    if (a.lo > 0) return rangeChecked(withFlags(gammaPositive(a.lo, a.hi), a), a, point(1.0));
    // Between two poles below 0: the sign alternates, negative on (-1, 0).
    bool negative = std::fmod(std::floor(a.lo), 2.0) != 0;
    if (a.lo < -170) {
        // Too far out for the recurrence: only the sign is kept.
        IntervalC r = negative ? IntervalC(-inf, 0) : IntervalC(0, inf);
        r.overflow = true;
        return withFlags(r, a);
    }
    // gamma(x) = gamma(x + n) / (x (x+1) ... (x+n-1)), x + n above 1.
    int n = oss::IntegerConversionC::toInt32(std::ceil(-a.lo)) + 1;
    IntervalC shifted = add(a, point(double(n)));
    IntervalC product = a;
    for (int k = 1; k < n; ++k) product = mul(product, add(a, point(double(k))));
    IntervalC r = div(gammaPositive(shifted.lo, shifted.hi), product);
    // Room for the C library's own error at negative arguments.
    r = IntervalC(downRel(r.lo, gammaMargin), upRel(r.hi, gammaMargin));
    if (negative && r.hi > 0) r.hi = 0;
    if (!negative && r.lo < 0) r.lo = 0;
    return rangeChecked(withFlags(r, a), a, point(1.0));
}

IntervalC IntervalC::factorial(IntervalC const &a) { return gamma(add(a, point(1.0))); }

IntervalC IntervalC::erf(IntervalC const &a) {
    IntervalC r = rising(a, [](double v) { return std::erf(v); }, -inf, inf, libraryMargin, 0);
    if (!r.empty) {
        if (r.lo < -1) r.lo = -1;
        if (r.hi > 1) r.hi = 1;
    }
    return r;
}

IntervalC IntervalC::erfc(IntervalC const &a) {
    if (a.empty) return a;
    IntervalC r = monotone(a.lo, a.hi, [](double v) { return std::erfc(v); }, false, gammaMargin);
    if (r.lo < 0) r.lo = 0;
    if (r.hi > 2) r.hi = 2;
    // erfc(0) is exactly 1: an end there keeps its bound exact, so that the
    // value stays inside the domain of acosh, acos and the like.
    if (a.lo == 0) r.hi = 1;
    if (a.hi == 0) r.lo = 1;
    return withFlags(r, a);
}

} // namespace math
} // namespace qelt

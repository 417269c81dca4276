#include "collab/math/WideIntervalC.h"

#include <cmath>
#include <limits>

namespace qelt {
namespace math {

namespace {

long double const inf = std::numeric_limits<long double>::infinity();
// The long double library functions are within a few of their ulps; this
// relative margin is eight or more of them.
long double const margin = std::numeric_limits<long double>::epsilon() * 8;

long double down(long double v) {
    if (std::isnan(v)) return -inf;
    return std::nextafter(std::nextafter(v, -inf), -inf);
}

long double up(long double v) {
    if (std::isnan(v)) return inf;
    return std::nextafter(std::nextafter(v, inf), inf);
}

// Exact where the operation was (0 and infinities stay put).
long double downOp(long double v) { return v == 0 || std::isinf(v) ? (v == inf ? std::numeric_limits<long double>::max() : v) : down(v); }
long double upOp(long double v) { return v == 0 || std::isinf(v) ? (v == -inf ? -std::numeric_limits<long double>::max() : v) : up(v); }

long double downLib(long double v) { return std::isfinite(v) ? down(v - std::fabs(v) * margin) : downOp(v); }
long double upLib(long double v) { return std::isfinite(v) ? up(v + std::fabs(v) * margin) : upOp(v); }

WideIntervalC flagged(WideIntervalC r, WideIntervalC const &a) {
    r.partial = r.partial || a.partial;
    r.mayJump = r.mayJump || a.mayJump;
    r.overflow = r.overflow || a.overflow;
    return r;
}

WideIntervalC flagged(WideIntervalC r, WideIntervalC const &a, WideIntervalC const &b) {
    return flagged(flagged(r, a), b);
}

WideIntervalC noneFrom(WideIntervalC const &a, WideIntervalC const &b) {
    WideIntervalC r(inf, -inf);
    r.empty = true;
    return flagged(r, a, b);
}

bool holdsZero(WideIntervalC const &a) { return a.lo <= 0 && a.hi >= 0; }

// A product's bound; 0 times anything is 0, as in IntervalC.
long double product(long double a, long double b) { return a == 0 || b == 0 ? 0 : a * b; }

// The range note: a bound beyond long double while the operands were not.
WideIntervalC ranged(WideIntervalC r) {
    long double const big = std::numeric_limits<long double>::max();
    if (std::fabs(r.lo) >= big || std::fabs(r.hi) >= big) r.overflow = true;
    return r;
}

// Through the double version: sound at any size.
WideIntervalC viaDouble(WideIntervalC const &a, IntervalC (*f)(IntervalC const &)) {
    return WideIntervalC::fromDouble(f(a.toDouble()));
}

} // namespace

WideIntervalC::WideIntervalC() : lo(0), hi(0), empty(false), partial(false), mayJump(false), overflow(false) {}
WideIntervalC::WideIntervalC(long double l, long double h)
    : lo(l), hi(h), empty(false), partial(false), mayJump(false), overflow(false) {}

WideIntervalC WideIntervalC::fromDouble(IntervalC const &a) {
    WideIntervalC r(a.lo, a.hi);
    r.empty = a.empty;
    r.partial = a.partial;
    r.mayJump = a.mayJump;
    r.overflow = a.overflow;
    return r;
}

IntervalC WideIntervalC::toDouble() const {
    if (empty) {
        IntervalC r = IntervalC::none();
        r.partial = partial;
        r.mayJump = mayJump;
        return r;
    }
    double l = static_cast<double>(lo), h = static_cast<double>(hi);
    if (static_cast<long double>(l) > lo) l = std::nextafter(l, -std::numeric_limits<double>::infinity());
    if (static_cast<long double>(h) < hi) h = std::nextafter(h, std::numeric_limits<double>::infinity());
    IntervalC r(l, h);
    r.partial = partial;
    r.mayJump = mayJump;
    long double const dmax = std::numeric_limits<double>::max(), dmin = std::numeric_limits<double>::min();
    auto outside = [dmax, dmin](long double v) { return std::fabs(v) > dmax || (v != 0 && std::fabs(v) < dmin); };
    r.overflow = overflow || (outside(lo) && std::isfinite(lo)) || (outside(hi) && std::isfinite(hi));
    return r;
}

WideIntervalC WideIntervalC::neg(WideIntervalC const &a) {
    WideIntervalC r = a;
    r.lo = -a.hi;
    r.hi = -a.lo;
    return r;
}

WideIntervalC WideIntervalC::add(WideIntervalC const &a, WideIntervalC const &b) {
    if (a.empty || b.empty) return noneFrom(a, b);
    WideIntervalC r = flagged(WideIntervalC(downOp(a.lo + b.lo), upOp(a.hi + b.hi)), a, b);
    if (std::isnan(a.lo + b.lo) || std::isnan(a.hi + b.hi)) {
        r = flagged(WideIntervalC(-inf, inf), a, b);
        r.partial = true;
    }
    return ranged(r);
}

WideIntervalC WideIntervalC::sub(WideIntervalC const &a, WideIntervalC const &b) { return add(a, neg(b)); }

WideIntervalC WideIntervalC::mul(WideIntervalC const &a, WideIntervalC const &b) {
    if (a.empty || b.empty) return noneFrom(a, b);
    long double p[4] = {product(a.lo, b.lo), product(a.lo, b.hi), product(a.hi, b.lo), product(a.hi, b.hi)};
    long double l = p[0], h = p[0];
    for (long double v : p) {
        l = v < l ? v : l;
        h = v > h ? v : h;
    }
    WideIntervalC r = flagged(WideIntervalC(downOp(l), upOp(h)), a, b);
    bool unboundedA = std::isinf(a.lo) || std::isinf(a.hi), unboundedB = std::isinf(b.lo) || std::isinf(b.hi);
    if ((holdsZero(a) && unboundedB) || (holdsZero(b) && unboundedA)) r.partial = true;
    return ranged(r);
}

WideIntervalC WideIntervalC::div(WideIntervalC const &a, WideIntervalC const &b) {
    if (a.empty || b.empty) return noneFrom(a, b);
    if (holdsZero(b)) {
        // As IntervalC::div: a hole where 0/0, else a pole.
        bool zeroA = a.lo == 0 && a.hi == 0, zeroB = b.lo == 0 && b.hi == 0;
        WideIntervalC r = flagged(zeroA && !zeroB ? WideIntervalC(0, 0) : WideIntervalC(-inf, inf), a, b);
        if (zeroA && !zeroB) {
            r.partial = true;
        } else {
            r.mayJump = true;
            r.partial = r.partial || !zeroB || holdsZero(a);
        }
        return r;
    }
    long double q[4] = {a.lo / b.lo, a.lo / b.hi, a.hi / b.lo, a.hi / b.hi};
    long double l = q[0], h = q[0];
    for (long double v : q) {
        if (std::isnan(v)) {
            WideIntervalC r = flagged(WideIntervalC(-inf, inf), a, b);
            r.partial = true;
            return r;
        }
        l = v < l ? v : l;
        h = v > h ? v : h;
    }
    return ranged(flagged(WideIntervalC(downOp(l), upOp(h)), a, b));
}

WideIntervalC WideIntervalC::powInt(WideIntervalC const &a, int n) {
    if (n == 0) return WideIntervalC(1, 1);
    if (a.empty) return a;
    int m = n < 0 ? -n : n;
    WideIntervalC p;
    if (m % 2 == 0) {
        long double big = std::fabs(a.lo) > std::fabs(a.hi) ? std::fabs(a.lo) : std::fabs(a.hi);
        long double small = holdsZero(a) ? 0 : (a.lo > 0 ? a.lo : -a.hi);
        p = WideIntervalC(downLib(std::pow(small, m)), upLib(std::pow(big, m)));
        if (p.lo < 0) p.lo = 0;
    } else {
        p = WideIntervalC(downLib(std::pow(a.lo, m)), upLib(std::pow(a.hi, m)));
    }
    p = ranged(flagged(p, a));
    return n > 0 ? p : div(WideIntervalC(1, 1), p);
}

WideIntervalC WideIntervalC::pow(WideIntervalC const &a, WideIntervalC const &b) {
    if (a.empty || b.empty || a.lo <= 0 || std::isinf(a.hi) || std::isinf(b.lo) || std::isinf(b.hi))
        return fromDouble(IntervalC::pow(a.toDouble(), b.toDouble()));
    // Monotonic in each argument for a base above 0: the corners bound it.
    long double c[4] = {std::pow(a.lo, b.lo), std::pow(a.lo, b.hi), std::pow(a.hi, b.lo), std::pow(a.hi, b.hi)};
    long double l = c[0], h = c[0];
    for (long double v : c) {
        l = v < l ? v : l;
        h = v > h ? v : h;
    }
    WideIntervalC r(downLib(l), upLib(h));
    if (r.lo < 0) r.lo = 0;
    return ranged(flagged(r, a, b));
}

WideIntervalC WideIntervalC::exp(WideIntervalC const &a) {
    if (a.empty) return a;
    WideIntervalC r(downLib(std::exp(a.lo)), upLib(std::exp(a.hi)));
    if (r.lo < 0) r.lo = 0;
    return ranged(flagged(r, a));
}

WideIntervalC WideIntervalC::ln(WideIntervalC const &a) {
    if (a.empty || a.hi < 0) return viaDouble(a, IntervalC::ln);
    WideIntervalC r(a.lo > 0 ? downLib(std::log(a.lo)) : -inf, a.hi > 0 ? upLib(std::log(a.hi)) : -inf);
    r = flagged(r, a);
    if (a.lo <= 0) r.partial = true;
    return r;
}

WideIntervalC WideIntervalC::sqrt(WideIntervalC const &a) {
    if (a.empty || a.hi < 0) return viaDouble(a, IntervalC::sqrt);
    WideIntervalC r(a.lo > 0 ? downOp(std::sqrt(a.lo)) : 0, upOp(std::sqrt(a.hi)));
    if (r.lo < 0) r.lo = 0;
    r = flagged(r, a);
    if (a.lo < 0) r.partial = true;
    return r;
}

WideIntervalC WideIntervalC::abs(WideIntervalC const &a) {
    if (a.empty || a.lo >= 0) return a;
    if (a.hi <= 0) return neg(a);
    WideIntervalC r = a;
    r.lo = 0;
    r.hi = -a.lo > a.hi ? -a.lo : a.hi;
    return r;
}

WideIntervalC WideIntervalC::sinh(WideIntervalC const &a) {
    if (a.empty) return a;
    return ranged(flagged(WideIntervalC(downLib(std::sinh(a.lo)), upLib(std::sinh(a.hi))), a));
}

WideIntervalC WideIntervalC::cosh(WideIntervalC const &a) {
    if (a.empty) return a;
    long double c1 = std::cosh(a.lo), c2 = std::cosh(a.hi);
    long double l = holdsZero(a) ? 1 : downLib(c1 < c2 ? c1 : c2);
    return ranged(flagged(WideIntervalC(l < 1 ? 1 : l, upLib(c1 > c2 ? c1 : c2)), a));
}

} // namespace math
} // namespace qelt

#include "MpfiReference.h"

#include <mpfi.h>

#include <cmath>
#include <limits>

#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/FloatNodeC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/VariableNodeC.h"

namespace evalgtest {

using qelt::math::algexpr::CoreFunctionNodeC;
using qelt::math::algexpr::FloatNodeC;
using qelt::math::algexpr::NodeABC;
using qelt::math::algexpr::OperatorNodeC;
using qelt::math::algexpr::VariableNodeC;
using Defined = MpfiReference::Defined;

namespace {

mpfr_prec_t const precision = 128;

// An MPFI interval that clears itself.
struct Interval {
    mpfi_t v;
    Interval() { mpfi_init2(v, precision); }
    ~Interval() { mpfi_clear(v); }
    Interval(Interval const &) = delete;
    Interval &operator=(Interval const &) = delete;
};

Defined worst(Defined a, Defined b) {
    if (a == Defined::NOWHERE || b == Defined::NOWHERE) return Defined::NOWHERE;
    if (a == Defined::SOMEWHERE || b == Defined::SOMEWHERE) return Defined::SOMEWHERE;
    return Defined::EVERYWHERE;
}

void setWhole(mpfi_t out) {
    double inf = std::numeric_limits<double>::infinity();
    mpfi_interv_d(out, -inf, inf);
}

double left(mpfi_t const v) { return mpfr_get_d(&v->left, MPFR_RNDD); }
double right(mpfi_t const v) { return mpfr_get_d(&v->right, MPFR_RNDU); }

// Keeps the part of v inside [lo, hi]; false when nothing is left.
bool clip(mpfi_t v, double lo, double hi, bool &cut) {
    cut = left(v) < lo || right(v) > hi;
    if (right(v) < lo || left(v) > hi) return false;
    Interval domain;
    mpfi_interv_d(domain.v, lo, hi);
    mpfi_intersect(v, v, domain.v);
    return true;
}

// |v|^n or v^n for a whole n >= 1, from the end points (the power is
// monotonic on each sign's side).
void wholePower(mpfi_t out, mpfi_t v, long n) {
    Interval base;
    if (n % 2 == 0)
        mpfi_abs(base.v, v);
    else
        mpfi_set(base.v, v);
    mpfr_t lo, hi;
    mpfr_init2(lo, precision);
    mpfr_init2(hi, precision);
    mpfr_pow_ui(lo, &base.v->left, static_cast<unsigned long>(n), MPFR_RNDD);
    mpfr_pow_ui(hi, &base.v->right, static_cast<unsigned long>(n), MPFR_RNDU);
    mpfi_interv_fr(out, lo, hi);
    mpfr_clear(lo);
    mpfr_clear(hi);
}

// The variables' values: x, and y for relations in the plane (null when
// the expression has none).
struct VariablesS {
    mpfi_ptr x;
    mpfi_ptr y;
};

Defined evaluate(NodeABC const &node, VariablesS const &x, mpfi_t out);

using MpfrFunction = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

// A function rising (or falling) over v, from its values at the ends.
void monotone(mpfi_t out, mpfi_t v, MpfrFunction f, bool rising) {
    mpfr_t lo, hi;
    mpfr_init2(lo, precision);
    mpfr_init2(hi, precision);
    f(lo, rising ? &v->left : &v->right, MPFR_RNDD);
    f(hi, rising ? &v->right : &v->left, MPFR_RNDU);
    mpfi_interv_fr(out, lo, hi);
    mpfr_clear(lo);
    mpfr_clear(hi);
}

// A step function that never falls (floor, ceil, round, trunc): the steps
// at the ends, which are exact.
void steps(mpfi_t out, mpfi_t v, int (*f)(mpfr_ptr, mpfr_srcptr)) {
    mpfr_t lo, hi;
    mpfr_init2(lo, precision);
    mpfr_init2(hi, precision);
    f(lo, &v->left);
    f(hi, &v->right);
    mpfi_interv_fr(out, lo, hi);
    mpfr_clear(lo);
    mpfr_clear(hi);
}

// gamma for arguments above 0, where it falls to its one minimum near
// 1.4616 (0.8856031944108887...) and rises after; anywhere else it is left
// whole (poles at 0, -1, -2, ... and a turn between each two).
Defined gammaOf(mpfi_t v, mpfi_t out) {
    if (mpfr_sgn(&v->left) <= 0) {
        setWhole(out);
        return Defined::SOMEWHERE;
    }
    // Just above and below the turn, and just below the minimum.
    double const above = 1.4616322, below = 1.4616321, least = 0.8856031944108886;
    if (mpfr_cmp_d(&v->left, above) >= 0) {
        monotone(out, v, mpfr_gamma, true);
    } else if (mpfr_cmp_d(&v->right, below) <= 0) {
        monotone(out, v, mpfr_gamma, false);
    } else {
        Interval a, b;
        mpfi_set_fr(a.v, &v->left);
        mpfi_set_fr(b.v, &v->right);
        monotone(a.v, a.v, mpfr_gamma, true);
        monotone(b.v, b.v, mpfr_gamma, true);
        mpfi_union(out, a.v, b.v);
        mpfi_put_d(out, least);
    }
    return Defined::EVERYWHERE;
}

// By an exact 0 the double rule gives an infinity, which later operations
// may carry on to a finite value (atan(1/0)): anything, rather than nothing.
Defined divide(mpfi_t out, mpfi_t a, mpfi_t b) {
    if (mpfi_has_zero(b)) {
        setWhole(out);
        return Defined::SOMEWHERE;
    }
    mpfi_div(out, a, b);
    return Defined::EVERYWHERE;
}

Defined power(NodeABC const &exponentNode, mpfi_t base, mpfi_t out) {
    FloatNodeC const *constant = exponentNode.as<FloatNodeC>();
    if (!constant) {
        setWhole(out);
        return Defined::SOMEWHERE;
    }
    double e = constant->getValue()->toDouble();
    if (std::fabs(e) <= 64 && std::floor(e) == e) {
        long n = static_cast<long>(e);
        if (n == 0) {
            mpfi_set_d(out, 1.0);
            return Defined::EVERYWHERE;
        }
        Interval p;
        wholePower(p.v, base, n < 0 ? -n : n);
        if (n > 0) {
            mpfi_set(out, p.v);
            return Defined::EVERYWHERE;
        }
        Interval one;
        mpfi_set_d(one.v, 1.0);
        return divide(out, one.v, p.v);
    }
    // Any other exponent: the positive bases only (exp(e ln x)), and 0.
    bool cut = false;
    if (!std::isfinite(e) || !clip(base, 0, std::numeric_limits<double>::infinity(), cut)) return Defined::NOWHERE;
    if (e < 0 && mpfi_has_zero(base)) {
        setWhole(out);
        return Defined::SOMEWHERE;
    }
    Interval logs;
    mpfi_log(logs.v, base);
    mpfi_mul_d(logs.v, logs.v, e);
    mpfi_exp(out, logs.v);
    if (mpfi_has_zero(base)) mpfi_put_d(out, 0.0);
    return cut ? Defined::SOMEWHERE : Defined::EVERYWHERE;
}

// The n-th root of x for a whole degree n from 1 to 64 (negative x only for
// odd n); any other degree is left whole.
Defined rootOf(mpfi_t n, mpfi_t x, mpfi_t out) {
    double degree = left(n);
    if (!(degree == right(n) && degree >= 1 && degree <= 64 && std::floor(degree) == degree)) {
        setWhole(out);
        return Defined::SOMEWHERE;
    }
    unsigned long k = static_cast<unsigned long>(degree);
    bool cut = false;
    if (k % 2 == 0 && !clip(x, 0, std::numeric_limits<double>::infinity(), cut)) return Defined::NOWHERE;
    mpfr_t lo, hi;
    mpfr_init2(lo, precision);
    mpfr_init2(hi, precision);
    mpfr_rootn_ui(lo, &x->left, k, MPFR_RNDD);
    mpfr_rootn_ui(hi, &x->right, k, MPFR_RNDU);
    mpfi_interv_fr(out, lo, hi);
    mpfr_clear(lo);
    mpfr_clear(hi);
    return cut ? Defined::SOMEWHERE : Defined::EVERYWHERE;
}

// x - y floor(x/y): no value where y is 0; otherwise between 0 and y, and
// within x - y floor(x/y) taken over the intervals.
Defined modOf(mpfi_t x, mpfi_t y, mpfi_t out) {
    if (mpfi_has_zero(y)) {
        if (mpfi_is_zero(y)) return Defined::NOWHERE;
        setWhole(out);
        return Defined::SOMEWHERE;
    }
    Interval q, f;
    mpfi_div(q.v, x, y);
    steps(f.v, q.v, mpfr_floor);
    mpfi_mul(f.v, f.v, y);
    mpfi_sub(out, x, f.v);
    Interval range;
    mpfi_set(range.v, y);
    mpfi_put_d(range.v, 0.0);
    mpfi_intersect(out, out, range.v);
    return Defined::EVERYWHERE;
}

Defined function(int code, mpfi_t v, mpfi_t out) {
    double const inf = std::numeric_limits<double>::infinity();
    bool cut = false;
    switch (code) {
    case CoreFunctionNodeC::SIN: mpfi_sin(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::COS: mpfi_cos(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::TAN:
        mpfi_tan(out, v);
        return mpfi_bounded_p(out) ? Defined::EVERYWHERE : Defined::SOMEWHERE;
    case CoreFunctionNodeC::ATAN: mpfi_atan(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::SINH: mpfi_sinh(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::COSH: mpfi_cosh(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::TANH: mpfi_tanh(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::EXP: mpfi_exp(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::ABS: mpfi_abs(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::ASIN:
    case CoreFunctionNodeC::ACOS:
        if (!clip(v, -1, 1, cut)) return Defined::NOWHERE;
        if (code == CoreFunctionNodeC::ASIN)
            mpfi_asin(out, v);
        else
            mpfi_acos(out, v);
        return cut ? Defined::SOMEWHERE : Defined::EVERYWHERE;
    case CoreFunctionNodeC::SQRT:
        if (!clip(v, 0, inf, cut)) return Defined::NOWHERE;
        mpfi_sqrt(out, v);
        return cut ? Defined::SOMEWHERE : Defined::EVERYWHERE;
    case CoreFunctionNodeC::LN:
    case CoreFunctionNodeC::LOG10: {
        if (right(v) <= 0) return Defined::NOWHERE;
        bool touches = left(v) <= 0;
        if (touches) mpfr_set_d(&v->left, 0x1p-1074, MPFR_RNDD);
        if (code == CoreFunctionNodeC::LN)
            mpfi_log(out, v);
        else
            mpfi_log10(out, v);
        if (touches) mpfr_set_inf(&out->left, -1);
        return touches ? Defined::SOMEWHERE : Defined::EVERYWHERE;
    }
    case CoreFunctionNodeC::FLOOR: steps(out, v, mpfr_floor); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::CEIL: steps(out, v, mpfr_ceil); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::ASINH: mpfi_asinh(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::CBRT: mpfi_cbrt(out, v); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::ATANH:
    case CoreFunctionNodeC::ACOSH:
        // Open at the ends of their domains: (-1, 1) and [1, inf).
        if (code == CoreFunctionNodeC::ATANH) {
            if (!clip(v, -1, 1, cut)) return Defined::NOWHERE;
            mpfi_atanh(out, v);
            if (mpfi_is_inside_d(1.0, v) || mpfi_is_inside_d(-1.0, v)) return Defined::SOMEWHERE;
        } else {
            if (!clip(v, 1, inf, cut)) return Defined::NOWHERE;
            mpfi_acosh(out, v);
        }
        return cut ? Defined::SOMEWHERE : Defined::EVERYWHERE;
    case CoreFunctionNodeC::LOG2: {
        Interval ln;
        Defined d = function(CoreFunctionNodeC::LN, v, ln.v);
        if (d == Defined::NOWHERE) return d;
        Interval ln2;
        mpfi_const_log2(ln2.v);
        mpfi_div(out, ln.v, ln2.v);
        return d;
    }
    case CoreFunctionNodeC::SEC:
    case CoreFunctionNodeC::CSC:
    case CoreFunctionNodeC::COT: {
        Interval num, den;
        if (code == CoreFunctionNodeC::COT) mpfi_cos(num.v, v); else mpfi_set_d(num.v, 1.0);
        if (code == CoreFunctionNodeC::SEC) mpfi_cos(den.v, v); else mpfi_sin(den.v, v);
        return divide(out, num.v, den.v);
    }
    case CoreFunctionNodeC::ERF: monotone(out, v, mpfr_erf, true); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::ERFC: monotone(out, v, mpfr_erfc, false); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::ROUND: steps(out, v, mpfr_round); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::TRUNC: steps(out, v, mpfr_trunc); return Defined::EVERYWHERE;
    case CoreFunctionNodeC::GAMMA: return gammaOf(v, out);
    case CoreFunctionNodeC::FACTORIAL: {
        Interval shifted;
        mpfi_add_d(shifted.v, v, 1.0);
        return gammaOf(shifted.v, out);
    }
    case CoreFunctionNodeC::SIGN: {
        double lo = mpfr_sgn(&v->left) > 0 ? 1.0 : (mpfr_sgn(&v->left) < 0 ? -1.0 : 0.0);
        double hi = mpfr_sgn(&v->right) > 0 ? 1.0 : (mpfr_sgn(&v->right) < 0 ? -1.0 : 0.0);
        mpfi_interv_d(out, lo, hi);
        return Defined::EVERYWHERE;
    }
    }
    setWhole(out);
    return Defined::SOMEWHERE;
}

Defined evaluate(NodeABC const &node, VariablesS const &x, mpfi_t out) {
    if (FloatNodeC const *f = node.as<FloatNodeC>()) {
        double v = f->getValue()->toDouble();
        if (std::isnan(v)) return Defined::NOWHERE;
        mpfi_set_d(out, v);
        return Defined::EVERYWHERE;
    }
    if (VariableNodeC const *v = node.as<VariableNodeC>()) {
        mpfi_ptr value = v->getIndex() == VariableNodeC::X ? x.x : (v->getIndex() == VariableNodeC::Y ? x.y : nullptr);
        if (!value) return Defined::NOWHERE;
        mpfi_set(out, value);
        return Defined::EVERYWHERE;
    }
    if (OperatorNodeC const *op = node.as<OperatorNodeC>()) {
        Interval a;
        Defined da = evaluate(*op->child(0), x, a.v);
        if (da == Defined::NOWHERE && op->getOperator() == OperatorNodeC::POWER) {
            // The double rule gives x^0 = 1 even where x has no value.
            Interval e;
            if (evaluate(*op->child(1), x, e.v) == Defined::NOWHERE || !mpfi_has_zero(e.v)) return da;
            mpfi_set_d(out, 1.0);
            return Defined::SOMEWHERE;
        }
        if (da == Defined::NOWHERE) return da;
        if (op->getOperator() == OperatorNodeC::NEGATE) {
            mpfi_neg(out, a.v);
            return da;
        }
        if (op->getOperator() == OperatorNodeC::POWER) return worst(da, power(*op->child(1), a.v, out));
        Interval b;
        Defined db = evaluate(*op->child(1), x, b.v);
        if (db == Defined::NOWHERE) return db;
        Defined d = worst(da, db);
        switch (op->getOperator()) {
        case OperatorNodeC::ADD: mpfi_add(out, a.v, b.v); return d;
        case OperatorNodeC::SUBTRACT: mpfi_sub(out, a.v, b.v); return d;
        case OperatorNodeC::MULTIPLY: mpfi_mul(out, a.v, b.v); return d;
        case OperatorNodeC::DIVIDE: return worst(d, divide(out, a.v, b.v));
        default: break;
        }
        setWhole(out);
        return Defined::SOMEWHERE;
    }
    if (CoreFunctionNodeC const *fn = node.as<CoreFunctionNodeC>()) {
        Interval a;
        Defined da = evaluate(*fn->child(0), x, a.v);
        if (da == Defined::NOWHERE) return da;
        if (fn->getChildCount() == 1) return worst(da, function(fn->getCode(), a.v, out));
        Interval b;
        Defined db = evaluate(*fn->child(1), x, b.v);
        if (db == Defined::NOWHERE) return db;
        Defined d = worst(da, db);
        switch (fn->getCode()) {
        case CoreFunctionNodeC::MIN:
        case CoreFunctionNodeC::MAX: {
            // Both ends of the min (max) are the min (max) of the ends.
            mpfr_t lo, hi;
            mpfr_init2(lo, precision);
            mpfr_init2(hi, precision);
            bool min = fn->getCode() == CoreFunctionNodeC::MIN;
            (min ? mpfr_min : mpfr_max)(lo, &a.v->left, &b.v->left, MPFR_RNDD);
            (min ? mpfr_min : mpfr_max)(hi, &a.v->right, &b.v->right, MPFR_RNDU);
            mpfi_interv_fr(out, lo, hi);
            mpfr_clear(lo);
            mpfr_clear(hi);
            return d;
        }
        case CoreFunctionNodeC::ROOT: return worst(d, rootOf(a.v, b.v, out));
        case CoreFunctionNodeC::MOD: return worst(d, modOf(a.v, b.v, out));
        case CoreFunctionNodeC::LOG_BASE: {
            // log(b, x) = ln x / ln b.
            Interval lb, lx;
            Defined dl = worst(function(CoreFunctionNodeC::LN, a.v, lb.v), function(CoreFunctionNodeC::LN, b.v, lx.v));
            if (dl == Defined::NOWHERE) return dl;
            return worst(worst(d, dl), divide(out, lx.v, lb.v));
        }
        default: break;
        }
        setWhole(out);
        return Defined::SOMEWHERE;
    }
    setWhole(out);
    return Defined::SOMEWHERE;
}

} // namespace

Defined MpfiReference::enclose(double a, double b, double &lo, double &hi) const {
    return enclose(a, b, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN(), lo, hi);
}

Defined MpfiReference::enclose(double x0, double x1, double y0, double y1, double &lo, double &hi) const {
    Interval x, y, result;
    mpfi_interv_d(x.v, x0, x1);
    mpfi_interv_d(y.v, y0, y1);
    VariablesS variables{x.v, std::isnan(y0) ? nullptr : y.v};
    Defined d = root_ ? evaluate(*root_, variables, result.v) : Defined::NOWHERE;
    if (d == Defined::NOWHERE) return d;
    if (mpfi_nan_p(result.v)) {
        lo = -std::numeric_limits<double>::infinity();
        hi = std::numeric_limits<double>::infinity();
        return Defined::SOMEWHERE;
    }
    lo = left(result.v);
    hi = right(result.v);
    return d;
}

} // namespace evalgtest

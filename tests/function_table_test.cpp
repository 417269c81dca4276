// Every row of the function table against MPFR: on seeded random intervals
// (narrow and wide, tiny, huge, negative, across poles and jumps) the
// interval version must hold the 200-bit MPFR value at sample points where
// the function is defined, and the double rule's value (or flag that there
// may be none). Then decorations at the named singularities, trigonometric
// functions at huge arguments, and bounds that leave the double range.
#include <gtest/gtest.h>

#include <mpfr.h>

#include <cmath>
#include <limits>
#include <string>

#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/FunctionTableC.h"
#include "support/TestSupport.h"

using qelt::math::IntervalC;
using qelt::math::algexpr::FunctionRowS;
using qelt::math::algexpr::FunctionTableC;

namespace {

double const inf = std::numeric_limits<double>::infinity();

// The real value of a row's function at (a, b), rounded to nearest, by
// MPFR at 200 bits; false where the real function has no value.
class Reference {
public:
    Reference() {
        mpfr_inits2(200, x_, y_, r_, t_, static_cast<mpfr_ptr>(nullptr));
    }
    ~Reference() { mpfr_clears(x_, y_, r_, t_, static_cast<mpfr_ptr>(nullptr)); }

    bool value(int code, double a, double b, double &out) {
        mpfr_set_d(x_, a, MPFR_RNDN);
        mpfr_set_d(y_, b, MPFR_RNDN);
        mpfr_rnd_t const N = MPFR_RNDN;
        switch (code) {
        case FunctionTableC::SIN: mpfr_sin(r_, x_, N); break;
        case FunctionTableC::COS: mpfr_cos(r_, x_, N); break;
        case FunctionTableC::TAN: mpfr_tan(r_, x_, N); break;
        case FunctionTableC::ASIN: mpfr_asin(r_, x_, N); break;
        case FunctionTableC::ACOS: mpfr_acos(r_, x_, N); break;
        case FunctionTableC::ATAN: mpfr_atan(r_, x_, N); break;
        case FunctionTableC::SINH: mpfr_sinh(r_, x_, N); break;
        case FunctionTableC::COSH: mpfr_cosh(r_, x_, N); break;
        case FunctionTableC::TANH: mpfr_tanh(r_, x_, N); break;
        case FunctionTableC::EXP: mpfr_exp(r_, x_, N); break;
        case FunctionTableC::LN: mpfr_log(r_, x_, N); break;
        case FunctionTableC::LOG10: mpfr_log10(r_, x_, N); break;
        case FunctionTableC::SQRT: mpfr_sqrt(r_, x_, N); break;
        case FunctionTableC::ABS: mpfr_abs(r_, x_, N); break;
        case FunctionTableC::FLOOR: mpfr_floor(r_, x_); break;
        case FunctionTableC::CEIL: mpfr_ceil(r_, x_); break;
        case FunctionTableC::SIGN: mpfr_set_si(r_, mpfr_sgn(x_), N); break;
        case FunctionTableC::SEC: mpfr_sec(r_, x_, N); break;
        case FunctionTableC::CSC: mpfr_csc(r_, x_, N); break;
        case FunctionTableC::COT: mpfr_cot(r_, x_, N); break;
        case FunctionTableC::ASINH: mpfr_asinh(r_, x_, N); break;
        case FunctionTableC::ACOSH: mpfr_acosh(r_, x_, N); break;
        case FunctionTableC::ATANH: mpfr_atanh(r_, x_, N); break;
        case FunctionTableC::LOG2: mpfr_log2(r_, x_, N); break;
        case FunctionTableC::LOG_BASE: // log of y to base x
            mpfr_log(r_, y_, N);
            mpfr_log(t_, x_, N);
            mpfr_div(r_, r_, t_, N);
            break;
        case FunctionTableC::CBRT: mpfr_cbrt(r_, x_, N); break;
        case FunctionTableC::ROOT: { // root x of y
            if (mpfr_zero_p(x_)) return false;
            bool odd = std::floor(a) == a && std::fmod(a, 2.0) != 0;
            mpfr_ui_div(t_, 1, x_, N);
            if (mpfr_sgn(y_) < 0 && odd) {
                mpfr_neg(r_, y_, N);
                mpfr_pow(r_, r_, t_, N);
                mpfr_neg(r_, r_, N);
            } else {
                mpfr_pow(r_, y_, t_, N);
            }
            break;
        }
        case FunctionTableC::ROUND: mpfr_round(r_, x_); break;
        case FunctionTableC::TRUNC: mpfr_trunc(r_, x_); break;
        case FunctionTableC::MIN: mpfr_min(r_, x_, y_, N); break;
        case FunctionTableC::MAX: mpfr_max(r_, x_, y_, N); break;
        case FunctionTableC::MOD: // x - y floor(x/y): the exact remainder, moved to the sign of y
            if (mpfr_zero_p(y_)) return false;
            mpfr_fmod(r_, x_, y_, N);
            if (!mpfr_zero_p(r_) && mpfr_sgn(r_) != mpfr_sgn(y_)) mpfr_add(r_, r_, y_, N);
            break;
        case FunctionTableC::GAMMA: mpfr_gamma(r_, x_, N); break;
        case FunctionTableC::FACTORIAL:
            mpfr_add_ui(t_, x_, 1, N);
            mpfr_gamma(r_, t_, N);
            break;
        case FunctionTableC::ERF: mpfr_erf(r_, x_, N); break;
        case FunctionTableC::ERFC: mpfr_erfc(r_, x_, N); break;
        default: ADD_FAILURE() << "no reference for code " << code; return false;
        }
        if (mpfr_nan_p(r_)) return false;
        out = mpfr_get_d(r_, MPFR_RNDN);
        // A real value beyond the doubles: compare with the extreme double.
        return true;
    }

private:
    mpfr_t x_, y_, r_, t_;
};

// Random operands for a row: mostly moderate, sometimes tiny or huge, on a
// whole number, or a point.
IntervalC randomOperand(evalgtest::Rng &rng, int code, bool second) {
    double range = 6;
    if (code == FunctionTableC::ROOT && !second) {
        double n = double(rng.below(7) - 3);
        return rng.below(4) == 0 ? IntervalC(n, n + rng.uniform(0, 1)) : IntervalC(n == 0 ? 2 : n, n == 0 ? 2 : n);
    }
    if (code == FunctionTableC::GAMMA || code == FunctionTableC::FACTORIAL) range = rng.below(3) == 0 ? 175 : 8;
    double a;
    switch (rng.below(8)) {
    case 0: a = rng.uniform(-1, 1) * std::ldexp(1.0, -rng.below(1000)); break;
    case 1: a = rng.uniform(-1, 1) * std::ldexp(1.0, rng.below(1000)); break;
    case 2: a = std::floor(rng.uniform(-range, range)); break;
    default: a = rng.uniform(-range, range); break;
    }
    if (rng.below(5) == 0) return IntervalC(a, a);
    double w = std::fabs(a) + 1;
    double width = rng.below(2) ? rng.uniform(0, 1e-9) * w : rng.uniform(0, 2) * (rng.below(2) ? 1 : w);
    double b = a + width;
    return std::isfinite(b) ? IntervalC(a, b) : IntervalC(a, a);
}

TEST(FunctionTable, EveryRowEnclosesMpfrAndItsDoubleRule) {
    Reference reference;
    evalgtest::Rng rng(31);
    for (int code = FunctionTableC::FIRST_CODE; code <= FunctionTableC::LAST_CODE; ++code) {
        FunctionRowS const *row = FunctionTableC::row(code);
        ASSERT_TRUE(row);
        ASSERT_EQ(row->code, code);
        ASSERT_EQ(FunctionTableC::codeOf(row->name), code);
        int checked = 0;
        for (int i = 0; i < 800; ++i) {
            IntervalC a = randomOperand(rng, code, false);
            IntervalC b = row->arity == 2 ? randomOperand(rng, code, true) : IntervalC::none();
            IntervalC y = row->interval(a, b);
            for (int k = 0; k < 8; ++k) {
                double p = k == 0 ? a.lo : (k == 1 ? a.hi : rng.uniform(a.lo, a.hi));
                double q = row->arity == 2 ? (k < 2 ? b.lo : rng.uniform(b.lo, b.hi)) : 0.0;
                std::string what = std::string(row->name) + "(" + std::to_string(p) + ", " + std::to_string(q) +
                                   ") over [" + std::to_string(a.lo) + ", " + std::to_string(a.hi) + "]";
                double point = row->point(p, q);
                if (std::isnan(point))
                    EXPECT_TRUE(y.empty || y.partial) << what;
                else
                    EXPECT_TRUE(y.contains(point)) << what << ": double " << point << " not in [" << y.lo << ", "
                                                   << y.hi << "]";
                double real;
                if (!reference.value(code, p, q, real)) continue;
                ++checked;
                EXPECT_TRUE(y.contains(real) || (std::isinf(real) && y.contains(std::copysign(1.7976931348623157e308, real))))
                    << what << ": real " << real << " not in [" << y.lo << ", " << y.hi << "]";
            }
        }
        EXPECT_GT(checked, 500) << row->name;
    }
}

TEST(FunctionTable, DecorationsAtTheSingularities) {
    struct Case {
        char const *what;
        IntervalC y;
        bool empty, partial, mayJump;
    } const cases[] = {
        {"ln [0, 2]", IntervalC::ln(IntervalC(0, 2)), false, true, false},
        {"ln [1e-300, 2]", IntervalC::ln(IntervalC(1e-300, 2)), false, false, false},
        {"log2 [0, 0]", IntervalC::log2(IntervalC(0, 0)), false, true, false},
        {"log10 of |[-1, 1]|", IntervalC::log10(IntervalC::abs(IntervalC(-1, 1))), false, true, false},
        {"sqrt [0, 4]", IntervalC::sqrt(IntervalC(0, 4)), false, false, false},
        {"floor [1, 1.5]", IntervalC::floor(IntervalC(1, 1.5)), false, false, false},
        {"floor [0.5, 1]", IntervalC::floor(IntervalC(0.5, 1)), false, false, true},
        {"round [0.5, 1.4]", IntervalC::round(IntervalC(0.5, 1.4)), false, false, false},
        {"round [0.4, 0.6]", IntervalC::round(IntervalC(0.4, 0.6)), false, false, true},
        {"trunc [-0.5, 0.5]", IntervalC::trunc(IntervalC(-0.5, 0.5)), false, false, false},
        {"trunc [0.5, 1]", IntervalC::trunc(IntervalC(0.5, 1)), false, false, true},
        {"mod [0.5, 2.5] 3", IntervalC::mod(IntervalC(0.5, 2.5), IntervalC(3, 3)), false, false, false},
        {"mod [2.5, 3.5] 3", IntervalC::mod(IntervalC(2.5, 3.5), IntervalC(3, 3)), false, false, true},
        {"mod x [-1, 1]", IntervalC::mod(IntervalC(1, 2), IntervalC(-1, 1)), false, true, true},
        {"gamma [0.5, 3]", IntervalC::gamma(IntervalC(0.5, 3)), false, false, false},
        {"gamma [-0.5, 0.5]", IntervalC::gamma(IntervalC(-0.5, 0.5)), false, true, true},
        {"gamma [-2.5, -1.5]", IntervalC::gamma(IntervalC(-2.5, -1.5)), false, true, true},
        {"gamma [-2.9, -2.1]", IntervalC::gamma(IntervalC(-2.9, -2.1)), false, false, false},
        {"atanh [0.5, 1]", IntervalC::atanh(IntervalC(0.5, 1)), false, true, false},
        {"acosh [0, 0.5]", IntervalC::acosh(IntervalC(0, 0.5)), true, false, false},
        {"csc [-1, 1]", IntervalC::csc(IntervalC(-1, 1)), false, true, true},
        {"cot [1, 2]", IntervalC::cot(IntervalC(1, 2)), false, false, false},
        {"sec [1, 2]", IntervalC::sec(IntervalC(1, 2)), false, true, true},
        {"root 2 of [-1, 4]", IntervalC::root(IntervalC(2, 2), IntervalC(-1, 4)), false, true, false},
        {"root 3 of [-8, 8]", IntervalC::root(IntervalC(3, 3), IntervalC(-8, 8)), false, false, false},
        {"logbase [0.5, 2] of 3", IntervalC::logBase(IntervalC(0.5, 2), IntervalC(3, 3)), false, true, true},
    };
    for (Case const &c : cases) {
        EXPECT_EQ(c.y.empty, c.empty) << c.what;
        EXPECT_EQ(c.y.partial, c.partial) << c.what;
        EXPECT_EQ(c.y.mayJump, c.mayJump) << c.what;
    }
    // Chosen values: 5! exactly, gamma's minimum, mod's sign, an odd root.
    EXPECT_EQ(FunctionTableC::factorial(5), 120);
    EXPECT_EQ(FunctionTableC::factorial(22), 1124000727777607680000.0);
    EXPECT_EQ(FunctionTableC::mod(-1, 3), 2);
    EXPECT_EQ(FunctionTableC::mod(1, -3), -2);
    EXPECT_EQ(FunctionTableC::root(3, -8), -2);
    IntervalC g = IntervalC::gamma(IntervalC(1, 2));
    EXPECT_LT(g.lo, 0.88560319441088870) << "the minimum inside";
    EXPECT_GT(g.lo, 0.8856031944) << "and no lower";
}

// sin, cos and tan of one huge double: the enclosure holds MPFR's value and
// is a few ulps wide at any magnitude (the reduced argument is trusted to
// 2^-51 of itself, which with the library's ulp makes the width).
TEST(FunctionTable, TrigonometryIsTightAtHugeArguments) {
    evalgtest::Rng rng(32);
    mpfr_t x, r;
    mpfr_inits2(200, x, r, static_cast<mpfr_ptr>(nullptr));
    double const chosen[] = {1e15, 1e22, 1e300, 1.7976931348623157e308, 6381956970095103.0 * 0x1p797, 5e-324, 0x1p60};
    for (int i = 0; i < 3000; ++i) {
        double v = i < 7 ? chosen[i] : rng.uniform(1, 2) * std::ldexp(1.0, rng.below(1024));
        if (rng.below(2)) v = -v;
        IntervalC p(v, v);
        IntervalC ys[3] = {IntervalC::sin(p), IntervalC::cos(p), IntervalC::tan(p)};
        int (*const reference[3])(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t) = {mpfr_sin, mpfr_cos, mpfr_tan};
        mpfr_set_d(x, v, MPFR_RNDN);
        for (int f = 0; f < 3; ++f) {
            reference[f](r, x, MPFR_RNDN);
            double real = mpfr_get_d(r, MPFR_RNDN);
            IntervalC const &y = ys[f];
            EXPECT_TRUE(y.clean()) << f << " at " << v;
            EXPECT_TRUE(y.contains(real)) << f << " at " << v << ": " << real << " not in [" << y.lo << ", " << y.hi << "]";
            double ulp = std::nextafter(std::fabs(real), inf) - std::fabs(real);
            EXPECT_LE(y.hi - y.lo, 24 * ulp) << f << " at " << v;
        }
    }
    // Narrow intervals near 1e15 (doubles 1/8 apart there) know where tan's
    // poles are: at the next odd multiple of pi/2 (found by MPFR) tan jumps,
    // and not one double step beside it.
    mpfr_t t;
    mpfr_inits2(200, t, static_cast<mpfr_ptr>(nullptr));
    for (double start : {1e15, -3e14, 7.5e14}) {
        mpfr_const_pi(r, MPFR_RNDN);
        mpfr_div_ui(r, r, 2, MPFR_RNDN);
        mpfr_set_d(t, start, MPFR_RNDN);
        mpfr_div(t, t, r, MPFR_RNDN);
        mpfr_ceil(t, t);
        mpfr_set_ui(x, 2, MPFR_RNDN);
        mpfr_fmod(x, t, x, MPFR_RNDN);
        if (mpfr_zero_p(x)) mpfr_add_ui(t, t, 1, MPFR_RNDN); // an odd multiple
        mpfr_mul(t, t, r, MPFR_RNDN);
        double below = mpfr_get_d(t, MPFR_RNDD), above = mpfr_get_d(t, MPFR_RNDU);
        EXPECT_TRUE(IntervalC::tan(IntervalC(below, above)).mayJump) << start;
        EXPECT_FALSE(IntervalC::tan(IntervalC(above, std::nextafter(above, inf))).mayJump) << start;
        EXPECT_FALSE(IntervalC::tan(IntervalC(std::nextafter(below, -inf), below)).mayJump) << start;
    }
    mpfr_clears(x, t, r, static_cast<mpfr_ptr>(nullptr));
}

TEST(FunctionTable, BoundsLeavingTheDoubleRangeStaySoundAndSaySo) {
    struct Case {
        char const *what;
        IntervalC y;
        double inside; // a value the enclosure must hold
    } const cases[] = {
        {"exp [710, 711]", IntervalC::exp(IntervalC(710, 711)), 1.7976931348623157e308},
        {"exp [-800, -790]", IntervalC::exp(IntervalC(-800, -790)), 0},
        {"[1e155, 1e156]^2", IntervalC::powInt(IntervalC(1e155, 1e156), 2), 1.7976931348623157e308},
        {"[1e-160, 1e-159]^2", IntervalC::powInt(IntervalC(1e-160, 1e-159), 2), 1e-320},
        {"1e200 * 1e200", IntervalC::mul(IntervalC(1e200, 1e200), IntervalC(1e200, 1e200)), 1.7976931348623157e308},
        {"1e-200 / 1e200", IntervalC::div(IntervalC(1e-200, 1e-200), IntervalC(1e200, 1e200)), 0},
        {"gamma [171, 172]", IntervalC::gamma(IntervalC(171, 172)), 1.7976931348623157e308},
        {"cosh [710, 720]", IntervalC::cosh(IntervalC(710, 720)), 1.7976931348623157e308},
    };
    for (Case const &c : cases) {
        EXPECT_TRUE(c.y.overflow) << c.what;
        EXPECT_TRUE(c.y.contains(c.inside)) << c.what << ": [" << c.y.lo << ", " << c.y.hi << "]";
        EXPECT_TRUE(std::isfinite(c.y.lo) || std::isfinite(c.y.hi)) << c.what << " is more than an infinity";
    }
    EXPECT_FALSE(IntervalC::exp(IntervalC(700, 709)).overflow);
    EXPECT_FALSE(IntervalC::mul(IntervalC(1e100, 1e101), IntervalC(-2, 3)).overflow);
    // The note travels with the result.
    EXPECT_TRUE(IntervalC::div(IntervalC::exp(IntervalC(710, 711)), IntervalC(2, 3)).overflow);
}

} // namespace

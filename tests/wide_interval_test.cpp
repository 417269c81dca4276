// The long double re-run of an interval program where the double run
// overflowed: it must hold the real value (MPFR at 200 bits, at random
// points of random intervals far out) and be tight where the double one
// was not.
#include <gtest/gtest.h>

#include <mpfr.h>

#include <cmath>
#include <functional>

#include "collab/math/IntervalC.h"
#include "collab/math/WideIntervalC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CompiledExpressionC.h"
#include "support/TestSupport.h"

using qelt::math::IntervalC;
using qelt::math::algexpr::AlgebraicExpressionC;
using qelt::math::algexpr::CompiledExpressionC;

namespace {

using ReferenceT = std::function<void(mpfr_t r, mpfr_t x, mpfr_t t)>;

TEST(WideInterval, ReRunsOverflowingEnclosuresTightlyAndSoundly) {
    struct Case {
        char const *text;
        double lo, hi;       // where x is drawn from
        double width;        // how wide the wide enclosure may be
        ReferenceT reference; // the real value at x (t is scratch)
    } const cases[] = {
        {"exp(x)/exp(x)", 705, 720, 1e-9, [](mpfr_t r, mpfr_t x, mpfr_t t) { mpfr_exp(t, x, MPFR_RNDN); mpfr_div(r, t, t, MPFR_RNDN); }},
        {"x^2/x^2", 1e155, 1e156, 1e-9, [](mpfr_t r, mpfr_t, mpfr_t) { mpfr_set_ui(r, 1, MPFR_RNDN); }},
        {"x^2/x^2", 1e-161, 1e-160, 1e-9, [](mpfr_t r, mpfr_t, mpfr_t) { mpfr_set_ui(r, 1, MPFR_RNDN); }},
        {"exp(x) exp(-x) + 1", 700, 1000, 1e-9, [](mpfr_t r, mpfr_t, mpfr_t) { mpfr_set_ui(r, 2, MPFR_RNDN); }},
        {"sinh(x)/cosh(x)", 710, 800, 1e-9, [](mpfr_t r, mpfr_t x, mpfr_t) { mpfr_tanh(r, x, MPFR_RNDN); }},
        {"ln(exp(x))", 710, 5000, 1e-9, [](mpfr_t r, mpfr_t x, mpfr_t) { mpfr_set(r, x, MPFR_RNDN); }},
        {"sqrt(x^2 + 1)/x", 1e160, 1e200, 1e-9, [](mpfr_t r, mpfr_t x, mpfr_t t) {
             mpfr_sqr(t, x, MPFR_RNDN);
             mpfr_add_ui(t, t, 1, MPFR_RNDN);
             mpfr_sqrt(t, t, MPFR_RNDN);
             mpfr_div(r, t, x, MPFR_RNDN);
         }},
        {"x^3 / (x^2 x)", -1e140, -1e120, 1e-9, [](mpfr_t r, mpfr_t, mpfr_t) { mpfr_set_ui(r, 1, MPFR_RNDN); }},
    };
    evalgtest::Rng rng(51);
    mpfr_t x, r, t;
    mpfr_inits2(200, x, r, t, static_cast<mpfr_ptr>(nullptr));
    for (Case const &c : cases) {
        auto e = AlgebraicExpressionC::fromInfixString(c.text);
        ASSERT_TRUE(e) << c.text;
        CompiledExpressionC program(e->getNode());
        int overflowed = 0;
        for (int i = 0; i < 300; ++i) {
            double a = rng.uniform(c.lo, c.hi);
            // A few doubles wide: the width left is the arithmetic's own.
            double b = std::nextafter(std::nextafter(a, 2 * a), 2 * a);
            IntervalC narrow = program.evaluate(IntervalC(a, b));
            overflowed += narrow.overflow;
            IntervalC wide = program.evaluateWide(IntervalC(a, b));
            EXPECT_FALSE(wide.overflow) << c.text << " at " << a;
            EXPECT_LE(wide.hi - wide.lo, c.width) << c.text << " at " << a;
            for (int k = 0; k < 4; ++k) {
                double p = k == 0 ? a : (k == 1 ? b : rng.uniform(a, b));
                mpfr_set_d(x, p, MPFR_RNDN);
                c.reference(r, x, t);
                double real = mpfr_get_d(r, MPFR_RNDN);
                EXPECT_TRUE(wide.contains(real)) << c.text << " at " << p << ": " << real << " not in [" << wide.lo
                                                 << ", " << wide.hi << "]";
            }
        }
        // The double run needed it on most of these inputs.
        EXPECT_GT(overflowed, 100) << c.text;
    }
    mpfr_clears(x, r, t, static_cast<mpfr_ptr>(nullptr));
}

TEST(WideInterval, SaysOverflowWhereEvenTheWideRangeIsLeftOrTheResultDoesNotFit) {
    auto e = AlgebraicExpressionC::fromInfixString("exp(exp(x))");
    CompiledExpressionC program(e->getNode());
    EXPECT_TRUE(program.evaluateWide(IntervalC(20, 21)).overflow); // e^(e^20): beyond long double
    EXPECT_TRUE(program.evaluateWide(IntervalC(6.6, 6.7)).overflow); // about e^800: beyond double
    IntervalC fine = program.evaluateWide(IntervalC(1, 2));
    EXPECT_FALSE(fine.overflow);
    EXPECT_TRUE(fine.contains(std::exp(std::exp(1.5))));
}

} // namespace

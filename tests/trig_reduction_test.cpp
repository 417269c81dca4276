// Reduction by pi/2: the reduction in doubles against the wide-product one
// and against MPFR at 320 bits, on random arguments across its range and on
// the doubles nearest multiples of pi/2 (all cancellation) and of pi/4 (where
// the quadrant is decided).
#include <gtest/gtest.h>

#include <mpfr.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "collab/math/TrigReductionC.h"
#include "support/TestSupport.h"

using qelt::math::TrigReductionC;

namespace {

double const limit = TrigReductionC::moderateLimit;
// The largest error either reduction may make, relative to the reduced argument.
double const bound = 0x1p-51;

// A real number at 320 bits that clears itself.
struct Real {
    mpfr_t v;
    Real() { mpfr_init2(v, 320); }
    ~Real() { mpfr_clear(v); }
    Real(Real const &) = delete;
    Real &operator=(Real const &) = delete;
};

// x - k pi/2 at 320 bits, with k the nearest whole number to x 2/pi.
struct Truth {
    long k;
    Real r;
    Real halfPi;
    explicit Truth(double x) {
        mpfr_const_pi(halfPi.v, MPFR_RNDN);
        mpfr_div_2ui(halfPi.v, halfPi.v, 1, MPFR_RNDN);
        Real t;
        mpfr_set_d(t.v, x, MPFR_RNDN);
        mpfr_div(t.v, t.v, halfPi.v, MPFR_RNDN);
        k = mpfr_get_si(t.v, MPFR_RNDN);
        residue(x, k, r);
    }
    // x - j pi/2.
    void residue(double x, long j, Real &out) const {
        mpfr_mul_si(out.v, halfPi.v, j, MPFR_RNDN);
        Real xr;
        mpfr_set_d(xr.v, x, MPFR_RNDN);
        mpfr_sub(out.v, xr.v, out.v, MPFR_RNDN);
    }
};

// |computed - truth| / |truth|.
double relativeError(double computed, Real const &truth) {
    Real d;
    mpfr_sub_d(d.v, truth.v, computed, MPFR_RNDN);
    mpfr_div(d.v, d.v, truth.v, MPFR_RNDN);
    return std::fabs(mpfr_get_d(d.v, MPFR_RNDN));
}

bool nearQuarterPi(Real const &r) { return std::fabs(mpfr_get_d(r.v, MPFR_RNDN)) >= 0.7853981633974483 * (1 - 0x1p-49); }

// Checks both reductions of x against the truth and each other.
void checkReduction(double x) {
    std::ostringstream what;
    what.precision(17);
    what << "x = " << x;
    int qm, qe;
    double rm, re;
    TrigReductionC::reduceModerate(x, qm, rm);
    TrigReductionC::reduceExact(x, qe, re);
    Truth truth(x);
    // The moderate quadrant stands for k or a neighbour; the neighbour only
    // where x sits on the boundary between the two.
    long km = truth.k;
    if (((truth.k + 1) & 3) == qm) km = truth.k + 1;
    if (((truth.k - 1) & 3) == qm) km = truth.k - 1;
    EXPECT_EQ(km & 3, qm) << what.str();
    if (km != truth.k) {
        EXPECT_TRUE(nearQuarterPi(truth.r)) << what.str() << " quadrant " << qm;
    }
    Real rTrue;
    truth.residue(x, km, rTrue);
    EXPECT_LE(relativeError(rm, rTrue), bound) << what.str() << " reduced " << rm;
    EXPECT_LE(std::fabs(rm), 0.7853981633974483 * (1 + 0x1p-49)) << what.str();
    // Against the wide-product reduction: one quadrant off only at the
    // boundary, and the reduced arguments within both bounds of each other.
    EXPECT_EQ(truth.k & 3, qe) << what.str();
    if (qm != qe) {
        EXPECT_TRUE(nearQuarterPi(truth.r)) << what.str() << " quadrants " << qm << " and " << qe;
    } else {
        EXPECT_LE(std::fabs(rm - re), 2 * bound * std::fabs(re)) << what.str() << ": " << rm << " and " << re;
    }
}

// The doubles nearest j * pi/4 (j odd: quadrant boundaries; j even:
// multiples of pi/2) and one each side, both signs.
std::vector<double> nearMultiple(long j) {
    Real m;
    mpfr_const_pi(m.v, MPFR_RNDN);
    mpfr_mul_si(m.v, m.v, j, MPFR_RNDN);
    mpfr_div_2ui(m.v, m.v, 2, MPFR_RNDN);
    double x = mpfr_get_d(m.v, MPFR_RNDN);
    std::vector<double> xs;
    for (double v : {std::nextafter(x, 0.0), x, std::nextafter(x, 2 * x)})
        if (std::fabs(v) < limit) {
            xs.push_back(v);
            xs.push_back(-v);
        }
    return xs;
}

TEST(TrigReduction, RandomArgumentsAcrossTheRange) {
    evalgtest::Rng rng(2718);
    for (int i = 0; i < 200000; ++i) {
        double x;
        switch (rng.below(4)) {
        case 0: x = rng.uniform(-limit, limit); break;
        case 1: x = std::ldexp(rng.uniform(0.5, 1), -rng.below(4)) * limit; break; // near the top
        case 2: x = std::floor(rng.uniform(-1e5, 1e5)); break;                  // whole numbers
        default: x = std::exp2(rng.uniform(-1, 20)); break;                       // every binade
        }
        if (rng.below(2)) x = -x;
        if (!(std::fabs(x) < limit)) continue;
        checkReduction(x);
        if (HasFailure()) return;
    }
}

TEST(TrigReduction, NearestDoublesToMultiplesOfPiOverTwoAndQuarterPi) {
    evalgtest::Rng rng(31416);
    long const top = long(limit / 0.7853981633974483);
    std::vector<long> js;
    for (long j = 1; j <= 40000; ++j) js.push_back(j);
    for (int i = 0; i < 40000; ++i) js.push_back(40000 + long(rng.next() % (unsigned long long)(top - 40000)));
    for (long j : {top - 2, top - 1, top}) js.push_back(j);
    for (long j : js) {
        for (double x : nearMultiple(j)) checkReduction(x);
        if (HasFailure()) return;
    }
}

// reduce takes the moderate path below the limit and the wide product from
// there (which function_table_test.cpp holds against MPFR at huge arguments).
TEST(TrigReduction, ReduceSwitchesAtTheLimit) {
    for (double x : {limit, -limit, std::nextafter(limit, 0.0), -std::nextafter(limit, 0.0), 1e7, -3e15}) {
        int q, qWant;
        double r, rWant;
        TrigReductionC::reduce(x, q, r);
        (std::fabs(x) < limit ? TrigReductionC::reduceModerate : TrigReductionC::reduceExact)(x, qWant, rWant);
        EXPECT_EQ(q, qWant) << x;
        EXPECT_EQ(r, rWant) << x;
    }
}

} // namespace

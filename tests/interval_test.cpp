// Interval arithmetic: enclosures of every operation hold the double values
// at thousands of random points, also across poles and jumps (the functions
// are held against MPFR in function_table_test.cpp); the flags mark jumps,
// poles and domain edges; chosen enclosures.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "support/TestSupport.h"

using qelt::math::IntervalC;
using qelt::math::algexpr::CoreFunctionNodeC;
using qelt::math::algexpr::OperatorNodeC;

namespace {

double const inf = std::numeric_limits<double>::infinity();
double const pi = 3.14159265358979323846;

using UnaryT = IntervalC (*)(IntervalC const &);

// A random interval: narrow or wide, sometimes a point, sometimes on an
// integer or a multiple of pi/2 (the jumps and poles).
IntervalC randomInterval(evalgtest::Rng &rng, double range) {
    double a = rng.uniform(-range, range);
    switch (rng.below(6)) {
    case 0: return IntervalC(a, a);
    case 1: a = std::floor(a); break;
    case 2: a = std::round(a / (pi / 2)) * (pi / 2); break;
    default: break;
    }
    double width = rng.below(2) ? rng.uniform(0, 1e-6) : rng.uniform(0, range);
    return IntervalC(a, a + width);
}

// A double value v of the function lies in its enclosure y; a point without
// a value needs a flag that says so.
void expectHolds(IntervalC const &y, double v, std::string const &what) {
    if (std::isnan(v))
        EXPECT_TRUE(y.empty || y.partial) << what;
    else
        EXPECT_TRUE(y.contains(v)) << what << ": " << v << " not in [" << y.lo << ", " << y.hi << "]";
}

TEST(Interval, EveryOperatorEnclosesItsValues) {
    using BinaryT = IntervalC (*)(IntervalC const &, IntervalC const &);
    BinaryT const enclose[] = {IntervalC::add, IntervalC::sub, IntervalC::mul, IntervalC::div, IntervalC::pow};
    evalgtest::Rng rng(22);
    for (int op = OperatorNodeC::ADD; op <= OperatorNodeC::POWER; ++op) {
        for (int i = 0; i < 4000; ++i) {
            IntervalC a = randomInterval(rng, 4);
            IntervalC b = randomInterval(rng, op == OperatorNodeC::POWER ? 3 : 4);
            // Whole exponents, of either sign, for the power rule's squaring.
            if (op == OperatorNodeC::POWER && rng.below(3) == 0) b = IntervalC::point(double(rng.below(13) - 6));
            IntervalC y = enclose[op](a, b);
            for (int k = 0; k < 12; ++k) {
                double p = rng.uniform(a.lo, a.hi), q = rng.uniform(b.lo, b.hi);
                expectHolds(y, OperatorNodeC::apply(OperatorNodeC::OperatorE(op), p, q),
                            std::to_string(p) + OperatorNodeC::symbol(OperatorNodeC::OperatorE(op)) + std::to_string(q));
            }
        }
    }
}

// A discontinuity inside the input must be flagged; computed here with long
// doubles, independently of the interval code.
TEST(Interval, JumpsAndPolesAreFlagged) {
    evalgtest::Rng rng(23);
    long double const lpi = 3.141592653589793238462643383279502884L;
    int flagged = 0;
    for (int i = 0; i < 20000; ++i) {
        IntervalC x = randomInterval(rng, 8);
        bool floorJump = std::floor(x.lo) != std::floor(x.hi);
        bool ceilJump = std::ceil(x.lo) != std::ceil(x.hi);
        bool signJump = CoreFunctionNodeC::sign(x.lo) != CoreFunctionNodeC::sign(x.hi);
        bool pole = std::floor((x.hi - lpi / 2) / lpi) != std::floor((x.lo - lpi / 2) / lpi);
        EXPECT_EQ(IntervalC::floor(x).mayJump, floorJump) << x.lo << " " << x.hi;
        EXPECT_EQ(IntervalC::ceil(x).mayJump, ceilJump) << x.lo << " " << x.hi;
        EXPECT_EQ(IntervalC::sign(x).mayJump, signJump) << x.lo << " " << x.hi;
        IntervalC q = IntervalC::div(IntervalC(1, 2), x);
        EXPECT_TRUE(IntervalC::tan(x).mayJump || !pole) << x.lo << " " << x.hi;
        EXPECT_TRUE(q.mayJump || !(x.lo <= 0 && x.hi >= 0)) << x.lo << " " << x.hi;
        flagged += pole;
    }
    EXPECT_GT(flagged, 2000);
}

TEST(Interval, ChosenEnclosures) {
    struct Case {
        char const *what;
        IntervalC y;
        double lo, hi; // expected bounds, to within a few ulps outward
        bool empty, partial, mayJump;
        double ulps; // how far outward the bounds may lie
    } const cases[] = {
        {"sin over a period", IntervalC::sin(IntervalC(0, 10)), -1, 1, false, false, false, 4},
        {"cos across 0", IntervalC::cos(IntervalC(-0.1, 0.1)), std::cos(0.1), 1, false, false, false, 4},
        {"tan across a pole", IntervalC::tan(IntervalC(1.5, 1.7)), -inf, inf, false, false, true, 4},
        {"ln across 0", IntervalC::ln(IntervalC(-1, 1)), -inf, 0, false, true, false, 4},
        {"ln below 0", IntervalC::ln(IntervalC(-2, -1)), 0, 0, true, false, false, 4},
        {"sqrt across 0", IntervalC::sqrt(IntervalC(-1, 4)), 0, 2, false, true, false, 4},
        {"sqrt of squares", IntervalC::sqrt(IntervalC(4, 9)), 2, 3, false, false, false, 4},
        {"asin past 1", IntervalC::asin(IntervalC(0.5, 2)), std::asin(0.5), pi / 2, false, true, false, 4},
        {"cosh across 0", IntervalC::cosh(IntervalC(-1, 2)), 1, std::cosh(2.0), false, false, false, 4},
        {"1/[-1,1]", IntervalC::div(IntervalC(1, 2), IntervalC(-1, 1)), -inf, inf, false, true, true, 4},
        {"0/[-1,1]", IntervalC::div(IntervalC(0, 0), IntervalC(-1, 1)), 0, 0, false, true, false, 4},
        {"0 times unbounded", IntervalC::mul(IntervalC(0, 0), IntervalC::whole()), 0, 0, false, true, false, 4},
        {"[-2,3]*[-1,4]", IntervalC::mul(IntervalC(-2, 3), IntervalC(-1, 4)), -8, 12, false, false, false, 4},
        {"[-2,3]^2", IntervalC::powInt(IntervalC(-2, 3), 2), 0, 9, false, false, false, 4},
        {"[-2,-1]^3", IntervalC::powInt(IntervalC(-2, -1), 3), -8, -1, false, false, false, 4},
        {"[-1,1]^-2", IntervalC::powInt(IntervalC(-1, 1), -2), -inf, inf, false, true, true, 4},
        {"[4,9]^0.5", IntervalC::pow(IntervalC(4, 9), IntervalC::point(0.5)), 2, 3, false, false, false, 1024},
        {"[-1,4]^0.5", IntervalC::pow(IntervalC(-1, 4), IntervalC::point(0.5)), 0, 2, false, true, false, 1024},
        {"2^[1,3]", IntervalC::pow(IntervalC::point(2), IntervalC(1, 3)), 2, 8, false, false, false, 1024},
        {"floor across 1", IntervalC::floor(IntervalC(0.5, 1.5)), 0, 1, false, false, true, 4},
        {"sign across 0", IntervalC::sign(IntervalC(-1, 1)), -1, 1, false, false, true, 4},
        {"flags carry", IntervalC::exp(IntervalC::sqrt(IntervalC(-1, 1))), 1, std::exp(1.0), false, true, false, 4},
        // Exactly 0 where the function is: a step of it does not jump.
        {"floor(atanh 0)", IntervalC::floor(IntervalC::atanh(IntervalC(0, 0))), 0, 0, false, false, false, 0},
        {"floor(asinh 0)", IntervalC::floor(IntervalC::asinh(IntervalC(0, 0))), 0, 0, false, false, false, 0},
        {"sign(cbrt 0)", IntervalC::sign(IntervalC::cbrt(IntervalC(0, 0))), 0, 0, false, false, false, 0},
        {"floor(erf 0)", IntervalC::floor(IntervalC::erf(IntervalC(0, 0))), 0, 0, false, false, false, 0},
        {"floor(acosh 1)", IntervalC::floor(IntervalC::acosh(IntervalC(1, 1))), 0, 0, false, false, false, 0},
        {"atanh from 0", IntervalC::atanh(IntervalC(0, 0.5)), 0, std::atanh(0.5), false, false, false, 16},
    };
    for (Case const &c : cases) {
        EXPECT_EQ(c.y.empty, c.empty) << c.what;
        EXPECT_EQ(c.y.partial, c.partial) << c.what;
        EXPECT_EQ(c.y.mayJump, c.mayJump) << c.what;
        if (c.empty) continue;
        // Outward by at most a few ulps: sound, and not loose.
        EXPECT_LE(c.y.lo, c.lo) << c.what;
        EXPECT_GE(c.y.hi, c.hi) << c.what;
        EXPECT_GE(c.y.lo, c.lo - c.ulps * std::fabs(c.lo) * 0x1p-52) << c.what;
        EXPECT_LE(c.y.hi, c.hi + c.ulps * std::fabs(c.hi) * 0x1p-52) << c.what;
    }
}

// sin, cos and tan keep the ends they reduced last: an enclosure must not
// depend on what was asked before it. Intervals over a few shared end
// points (many found again, many pushed out) are enclosed on two threads,
// each with its own remembered ends, in two different orders.
TEST(Interval, TrigEnclosuresDoNotDependOnTheOrderAsked) {
    evalgtest::Rng rng(29);
    std::vector<double> ends;
    for (int i = 0; i < 7; ++i) ends.push_back(rng.uniform(-12, 12));
    ends.push_back(pi / 2);
    ends.push_back(-3 * pi / 2);
    struct Ask {
        UnaryT f;
        IntervalC x;
    };
    UnaryT const fs[] = {IntervalC::sin, IntervalC::cos, IntervalC::tan};
    std::vector<Ask> asks;
    for (int i = 0; i < 3000; ++i) {
        double a = ends[rng.below(int(ends.size()))], b = ends[rng.below(int(ends.size()))];
        asks.push_back(Ask{fs[rng.below(3)], IntervalC(a < b ? a : b, a < b ? b : a)});
    }
    auto run = [&asks](bool backward, std::vector<IntervalC> &out) {
        out.assign(asks.size(), IntervalC());
        for (std::size_t k = 0; k < asks.size(); ++k) {
            std::size_t i = backward ? asks.size() - 1 - k : k;
            out[i] = asks[i].f(asks[i].x);
        }
    };
    std::vector<IntervalC> forward, backward;
    std::thread one(run, false, std::ref(forward));
    std::thread two(run, true, std::ref(backward));
    one.join();
    two.join();
    for (std::size_t i = 0; i < asks.size(); ++i) {
        IntervalC const &y1 = forward[i], &y2 = backward[i];
        EXPECT_TRUE(y1.lo == y2.lo && y1.hi == y2.hi && y1.mayJump == y2.mayJump)
            << i << ": [" << asks[i].x.lo << ", " << asks[i].x.hi << "] gives [" << y1.lo << ", " << y1.hi
            << "] and [" << y2.lo << ", " << y2.hi << "]";
    }
}

TEST(Interval, NeighbouringDoubles) {
    double const max = std::numeric_limits<double>::max();
    double const values[] = {1.0, -1.0, 0.0, -0.0, 1e-310, -1e300, 3.5, inf, -inf, std::nan("")};
    double const below[] = {std::nextafter(1.0, 0), std::nextafter(-1.0, -2), -4.9e-324, -4.9e-324,
                            std::nextafter(1e-310, 0), std::nextafter(-1e300, -inf), std::nextafter(3.5, 0), max, -inf, -inf};
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(IntervalC::down(values[i]), below[i]) << values[i];
        // up is down mirrored.
        EXPECT_EQ(IntervalC::up(-values[i]), -below[i]) << values[i];
    }
}

} // namespace

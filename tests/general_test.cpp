#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "collab/esb/CartesianRelationServiceIC.h"
#include "collab/rel/CircleC.h"
#include "evalg/GeneralEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using qelt::mathapp::evalg::GeneralEvalC;
using Values = std::vector<double>;

namespace {

// Answers from a script and records every x it is asked about. It refuses
// every cast, so a result proves the evaluator never casts.
struct CountingService : qelt::mathapp::esb::CartesianRelationServiceIC {
    explicit CountingService(std::function<Values(double)> s) : script(std::move(s)) {}
    void *lookUpBase(unsigned short const *) const override { return nullptr; }
    bool getYValuesAt(double x, Values &values) override {
        asked.push_back(x);
        for (double y : script(x)) values.push_back(y);
        return true;
    }
    std::function<Values(double)> script;
    std::vector<double> asked;
};

// 5x5 pixels over [0, 4]^2: column c is [c - 0.5, c + 0.5), screen row 4 - floor(y + 0.5).
Window const W{0, 4, 0, 4, 5, 5};
double const inf = std::numeric_limits<double>::infinity();

std::vector<Pt> drawWith(GeneralEvalC evaluator, CountingService &service, Window const &w) {
    return points(evaluator.evaluateGraph(service, makeDomain(w)));
}

} // namespace

TEST(GeneralEval, DrawsHandComputedRuns) {
    auto two = [](bool on) { return on ? Values{2.2, 1.2} : Values{}; };
    struct Case {
        char const *name;
        std::function<Values(double)> script;
        double subdivisions;
        std::vector<XY> expected;
        size_t queries;
    } const cases[] = {
        {"one run per column", [](double x) { return Values{0.3 * x + 1}; }, 100,
         {{0, 3}, {1, 3}, {2, 3}, {2, 2}, {3, 2}, {4, 2}}, 6},
        {"no points anywhere", [](double) { return Values{}; }, 100, {}, 6},
        {"one branch begins: a single point, no refinement", [](double x) { return x > 1 ? Values{2.2} : Values{}; },
         100, {{1, 2}, {2, 2}, {3, 2}, {4, 2}}, 6},
        // Fine samples 0.9, 1.3, 1.7: the last lies beyond the column.
        {"two branches begin: refined, 2.5 steps", [&](double x) { return two(x > 1); }, 2.5,
         {{1, 2}, {1, 3}, {1, 2}, {1, 3}, {2, 2}, {2, 3}, {3, 2}, {3, 3}, {4, 2}, {4, 3}}, 10},
        {"refined with 0 steps: left edge asked, nothing drawn", [&](double x) { return two(x > 1); }, 0,
         {{2, 2}, {2, 3}, {3, 2}, {3, 3}, {4, 2}, {4, 3}}, 7},
        // The fine sample at -0.25 is drawn at -0.75: column -1, as unsigned 16 bits.
        {"column 0 refined: first runs half a column left", [&](double x) { return two(x > -0.4); }, 4,
         {{65535, 2}, {65535, 3}, {0, 2}, {0, 3}, {0, 2}, {0, 3}, {0, 2}, {0, 3},
          {1, 2}, {1, 3}, {2, 2}, {2, 3}, {3, 2}, {3, 3}, {4, 2}, {4, 3}}, 11},
        {"two branches end: refined into the column to the left", [&](double x) { return two(x < 3); }, 4,
         {{0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 2}, {2, 3}, {2, 2}, {2, 3}, {3, 2}, {3, 3}}, 11},
    };
    for (Case const &c : cases) {
        CountingService service(c.script);
        std::vector<Pt> pts = drawWith(GeneralEvalC(c.subdivisions), service, W);
        EXPECT_EQ(xys(pts), c.expected) << c.name;
        EXPECT_TRUE(withMarker(pts, 0xFF).empty()) << c.name;
        EXPECT_EQ(service.asked.size(), c.queries) << c.name;
    }
}

TEST(GeneralEval, FineStepsAreCeilOfSubdivisionsAndBounded) {
    // Only the last column (3.5 .. 4.5) is refined.
    unsigned const cap = GeneralEvalC::MAX_FINE_STEPS;
    struct Case {
        double subdivisions;
        unsigned fineSteps;
        double lastX;
    } const cases[] = {{0, 0, 3.5},        {-1, 0, 3.5},          {std::nan(""), 0, 3.5}, {0.5, 1, 5.5},
                       {2.5, 3, 4.7},      {100, 100, 4.5},       {65535, 65535, 4.5},    {70000, 70000, 4.5},
                       {1e300, cap, 3.5},  {inf, cap, 3.5}};
    for (Case const &c : cases) {
        CountingService service([](double x) { return x > 4.4 ? Values{2.2, 1.2} : Values{}; });
        drawWith(GeneralEvalC(c.subdivisions), service, W);
        EXPECT_EQ(service.asked.size(), 6u + 1u + c.fineSteps) << c.subdivisions;
        EXPECT_NEAR(service.asked.back(), c.lastX, 1e-9) << c.subdivisions;
    }
}

TEST(GeneralEval, DegenerateWindowsEndTheWalk) {
    struct Case {
        char const *name;
        Window w;
        size_t queries;
    } const cases[] = {
        // xStep is infinite, so the second sample would be NaN.
        {"one column", {0, 4, 0, 4, 1, 5}, 1},
        // The step is too small to move x.
        {"a few ulps wide", {1, std::nextafter(std::nextafter(1.0, 2.0), 2.0), 0, 4, 1000, 5}, 1},
        {"invalid", {4, 0, 0, 4, 5, 5}, 0},
    };
    for (Case const &c : cases) {
        CountingService service([](double) { return Values{1, 2, 3}; });
        EXPECT_TRUE(drawWith(GeneralEvalC(), service, c.w).empty()) << c.name;
        EXPECT_EQ(service.asked.size(), c.queries) << c.name;
    }
}

TEST(GeneralEval, RandomCirclesAndWindowsEndWithinTheQueryBound) {
    Rng rng(41);
    for (int i = 0; i < 100; ++i) {
        Window w{rng.wild(50), rng.wild(50), rng.wild(50), rng.wild(50), (unsigned short)(1 + rng.below(200)),
                 (unsigned short)(1 + rng.below(200))};
        w.xMax = w.xMin + std::fabs(w.xMax);
        w.yMax = w.yMin + std::fabs(w.yMax);
        PointerTC<qelt::mathapp::rel::CircleC> circle(
            new qelt::mathapp::rel::CircleC(rng.wild(20), rng.wild(20), rng.wild(20)));
        CountingService service([&](double x) { Values v; circle->getYValuesAt(x, v); return v; });
        double s = rng.wild(300);
        drawWith(GeneralEvalC(s), service, w);
        double steps = 0.0 < s ? std::fmin(std::ceil(s), GeneralEvalC::MAX_FINE_STEPS) : 0;
        // At most two samples per column (rounding of the running sum), each
        // of which may start a refined column.
        EXPECT_LE(double(service.asked.size()), 2.0 * (w.m + 1) * (steps + 2)) << i;
    }
}

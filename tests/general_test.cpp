#include <cmath>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "collab/rel/CircleC.h"
#include "evalg/GeneralEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using qelt::mathapp::evalg::GeneralEvalC;
using Values = std::vector<double>;

namespace {

// Answers from a script and records every x asked. It refuses every cast, so
// any output at all shows that the evaluator does not cast.
struct CountingService : qelt::mathapp::esb::CartesianRelationServiceIC {
    explicit CountingService(std::function<Values(double)> s) : script(std::move(s)) {}
    void *lookUpBase(unsigned short const *) const override { return nullptr; }
    bool getYValuesAt(double x, Values &values) override {
        asked.push_back(x);
        Values answer = script(x);
        values.insert(values.end(), answer.begin(), answer.end());
        return true;
    }
    std::function<Values(double)> script;
    Values asked;
};

Values two(bool on) { return on ? Values{2.2, 1.2} : Values{}; }

} // namespace

// 5x5 pixels over [0, 4]^2: samples at -0.5, 0.5 .. 4.5; an abscissa a lies in
// column floor(a + 0.5); y lies in screen row 4 - floor(y + 0.5). 2.2 and 1.2
// are rows 2 and 3.
TEST(GeneralEval, DrawsHandComputedRunsWithCountedQueries) {
    Window const W{0, 4, 0, 4, 5, 5};
    unsigned const cap = GeneralEvalC::MAX_FINE_STEPS;
    auto late = [](double x) { return two(x > 4.49999); }; // only the last column is refined
    struct Case { char const *name; Window w; std::function<Values(double)> script; double subdivisions;
                  std::vector<XY> expected; size_t queries; };
    Case const cases[] = {
        {"one run per column", W, [](double x) { return Values{0.3 * x + 1}; }, 100,
         {{0, 3}, {1, 3}, {2, 3}, {2, 2}, {3, 2}, {4, 2}}, 6},
        {"no points", W, [](double) { return Values{}; }, 100, {}, 6},
        {"one branch begins and ends: single points, not refined", W,
         [](double x) { return x > 1 && x < 3 ? Values{0.3 * x + 1} : Values{}; }, 100,
         {{1, 3}, {2, 3}, {2, 2}, {3, 2}}, 6},
        // Fine samples 0.9, 1.3 and 1.7, the last beyond the column.
        {"two branches begin: refined, 2.5 steps", W, [](double x) { return two(x > 1); }, 2.5,
         {{1, 2}, {1, 3}, {1, 2}, {1, 3}, {2, 2}, {2, 3}, {3, 2}, {3, 3}, {4, 2}, {4, 3}}, 6 + 4},
        {"refined in 0 steps: left edge asked, nothing drawn", W, [](double x) { return two(x > 1); }, 0,
         {{2, 2}, {2, 3}, {3, 2}, {3, 3}, {4, 2}, {4, 3}}, 6 + 1},
        // The fine sample -0.25 is drawn at -0.75: column -1, kept as unsigned 16 bits.
        {"column 0 refined: first runs half a column left", W, [](double x) { return two(x > -0.4); }, 4,
         {{65535, 2}, {65535, 3}, {0, 2}, {0, 3}, {0, 2}, {0, 3}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 2}, {2, 3},
          {3, 2}, {3, 3}, {4, 2}, {4, 3}}, 6 + 5},
        {"two branches end: refined into the column to the left", W, [](double x) { return two(x < 3); }, 4,
         {{0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 2}, {2, 3}, {2, 2}, {2, 3}, {3, 2}, {3, 3}}, 6 + 5},
        {"70000 steps, beyond a 16-bit counter", W, late, 70000, {{4, 2}, {4, 3}}, 6 + 1 + 70000},
        {"NaN subdivisions", W, late, std::nan(""), {}, 6 + 1},
        {"1e300 subdivisions: fine steps capped", W, late, 1e300, {}, 6 + 1 + cap},
        {"infinite subdivisions: fine steps capped", W, late, HUGE_VAL, {}, 6 + 1 + cap},
        {"one column: the second sample would be NaN", {0, 4, 0, 4, 1, 5}, late, 100, {}, 1},
        {"a few ulps wide: x stops moving", {1, 1 + 4e-16, 0, 4, 1000, 5}, late, 100, {}, 1},
        {"invalid window", {4, 0, 0, 4, 5, 5}, late, 100, {}, 0},
    };
    for (Case const &c : cases) {
        CountingService service(c.script);
        std::vector<Pt> pts = points(GeneralEvalC(c.subdivisions).evaluateGraph(service, makeDomain(c.w)));
        EXPECT_EQ(xys(pts), c.expected) << c.name;
        EXPECT_TRUE(withMarker(pts, 0xFF).empty()) << c.name;
        EXPECT_EQ(service.asked.size(), c.queries) << c.name;
    }
}

TEST(GeneralEval, RandomCirclesWindowsAndSubdivisionsStayWithinTheQueryBound) {
    Rng rng(41);
    for (int i = 0; i < 100; ++i) {
        double xMin = rng.wild(50), yMin = rng.wild(50), s = rng.wild(300);
        Window w{xMin, xMin + std::fabs(rng.wild(50)), yMin, yMin + std::fabs(rng.wild(50)),
                 (unsigned short)(1 + rng.below(200)), (unsigned short)(1 + rng.below(200))};
        PointerTC<qelt::mathapp::rel::CircleC> circle(
            new qelt::mathapp::rel::CircleC(rng.wild(20), rng.wild(20), rng.wild(20)));
        CountingService service([&](double x) { Values v; circle->getYValuesAt(x, v); return v; });
        GeneralEvalC(s).evaluateGraph(service, makeDomain(w));
        // At most two samples per column (running-sum rounding), each of which may refine its column.
        double steps = 0.0 < s ? std::fmin(std::ceil(s), GeneralEvalC::MAX_FINE_STEPS) : 0;
        EXPECT_LE(double(service.asked.size()), 2.0 * (w.m + 1) * (steps + 2)) << i;
    }
}

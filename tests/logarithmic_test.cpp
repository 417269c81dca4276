// Logarithms: the upward and downward row walks, the half-line b = 0, domain
// and direction rejection, and the runs checked against the inverse function.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "collab/rel/LogarithmicFunctionC.h"
#include "evalg/LogarithmicFunctionEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using namespace qelt::mathapp;

namespace {

// Steps of 1: column = floor(x + 0.5), screen row = 4 - floor(y + 0.5).
Window const W{0, 4, 0, 4, 5, 5};

std::vector<Pt> drawLog(double base, double a, double b, double h, double k, Window const &w) {
    evalg::LogarithmicFunctionEvalC source, copy(source);
    return draw(copy, PointerTC<rel::RelationC>(new rel::LogarithmicFunctionC(a, b, h, k, base)), w);
}

struct Case { double base, a, b, h, k; std::vector<Pt> want; };

TEST(Logarithmic, RowWalksHalfLinesAndRejection) {
    Case const cases[] = {
        // log2(x): the upward walk from the row under y = 0; column 5 is where
        // a run clamped at the right edge lands.
        {2, 1, 1, 0, 0, {{1,4,0},{1,3,0},{3,3,0},{3,2,0},{5,2,0}}},
        // k inside: the downward walk prepends its rows, each run end first.
        {2, 1, 1, 0, 2, {{0,4,0},{1,3,0},{0,3,0},{1,2,0},{1,1,0},{3,1,0},{3,0,0},{5,0,0}}},
        // k below the window: the upward walk starts at the bottom edge.
        {2, 1, 4, 0, -4, {{2,4,0},{2,3,0},{3,3,0},{3,2,0},{3,1,0},{4,1,0},{4,0,0}}},
        {2, 1, 0, 1.7, 1, {{2,3,0},{4,3,0}}},
        {2, -1, 0, 1.7, 1, {{0,3,0},{2,3,0}}},
        {2, 1, 0, 1.7, -0.5, {{2,4,0},{4,4,0}}},
        {2, 1, 0, 1.7, 4.5, {}},
        {2, 1, 0, 4.5, 1, {}},
        {2, 1, 1, 5, 0, {}},
        {2, -1, 1, -1, 0, {}},
        {2, 0, 1, 0, 0, {}},
    };
    for (Case const &c : cases) EXPECT_EQ(drawLog(c.base, c.a, c.b, c.h, c.k, W), c.want) << c.a << " " << c.b << " " << c.h << " " << c.k;
}

TEST(Logarithmic, RunsMatchInverseFunction) {
    Rng rng(43);
    for (int i = 0; i < 400; ++i) {
        int m = 2 + rng.below(80), n = 2 + rng.below(80);
        // Dyadic steps keep the row edges exact.
        double ys = rng.below(2) ? 0.25 : 0.5, yMin = rng.below(11) - 5;
        Window w{rng.uniform(-3, 0), rng.uniform(0.5, 3), yMin, yMin + (n - 1) * ys, (unsigned short)m, (unsigned short)n};
        // Bases above 1 only: the direction test reads the signs of a and b alone.
        double base = rng.uniform(1.2, 5), a = rng.uniform(0.2, 3) * (rng.below(2) ? 1 : -1);
        double b = rng.uniform(0.2, 3) * (rng.below(2) ? 1 : -1), h = rng.uniform(-2, 2), k = rng.uniform(-2, 2);
        std::vector<Pt> pts = drawLog(base, a, b, h, k, w);
        double xs = (w.xMax - w.xMin) / (m - 1), left = w.xMin - xs / 2, right = w.xMax + xs / 2;
        auto inverse = [&](double y) { return h + std::pow(base, (y - k) / b) / a; };
        std::vector<int> perRow(n, 0);
        for (size_t j = 0; j < pts.size(); ++j) {
            int row = n - 1 - pts[j].y;
            ASSERT_TRUE(row >= 0 && row < n && (j == 0 || pts[j - 1].y >= pts[j].y)) << i << " " << j;
            ++perRow[row];
            double x1 = inverse(yMin + (row - 0.5) * ys), x2 = inverse(yMin + (row + 0.5) * ys);
            double lo = std::max(std::min(x1, x2), left), hi = std::min(std::max(x1, x2), right);
            EXPECT_TRUE(pts[j].x >= std::floor((lo - left) / xs) - 1 && pts[j].x <= std::floor((hi - left) / xs) + 1) << i << " " << j;
        }
        for (int r = 0; r < n; ++r) {
            double x1 = inverse(yMin + (r - 0.5) * ys), x2 = inverse(yMin + (r + 0.5) * ys), e = xs / 100;
            double hi = std::max(x1, x2), lo = std::min(x1, x2);
            bool clearlyIn = hi > left + e && lo < right - e, clearlyOut = hi < left - e || lo > right + e;
            EXPECT_TRUE(perRow[r] > 0 ? !clearlyOut : !clearlyIn) << i << " " << r;
            EXPECT_LE(perRow[r], 2) << i << " " << r;
        }
    }
}

// Two points per row step; the walks cover disjoint parts of the window and
// take at most 2N + 2 steps between them (each step moves y by at least half
// of yStep, or the walk stops).
TEST(Logarithmic, WildParametersFinishWithinBound) {
    Rng rng(7);
    for (int i = 0; i < 3000; ++i) {
        double x0 = rng.wild(10), y0 = rng.wild(10);
        Window w{x0, x0 + std::fabs(rng.wild(30)), y0, y0 + std::fabs(rng.wild(30)),
                 (unsigned short)(1 + rng.below(300)), (unsigned short)(1 + rng.below(rng.below(32) ? 300 : 32767))};
        ASSERT_LE(drawLog(rng.wild(5), rng.wild(10), rng.wild(10), rng.wild(10), rng.wild(10), w).size(), 4u * w.n + 8) << i;
    }
}

} // namespace

// Logarithms: the upward and downward row walks, the half-line b = 0, the
// rejections, and the runs checked against the inverse function.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "collab/rel/LogarithmicFunctionC.h"
#include "evalg/LogarithmicFunctionEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using namespace qelt::mathapp;

static std::vector<Pt> drawLog(double base, double a, double b, double h, double k, Window const &w) {
    evalg::LogarithmicFunctionEvalC source, copy(source);
    return draw(copy, PointerTC<rel::RelationC>(new rel::LogarithmicFunctionC(a, b, h, k, base)), w);
}

TEST(Logarithmic, RowWalksHalfLinesAndRejection) {
    struct Case { double a, b, h, k; std::vector<Pt> want; } const cases[] = {
        // log2(x): the upward walk from the row under y = 0; a run clamped at the right edge lands in column 5.
        {1, 1, 0, 0, {{1,4,0},{1,3,0},{3,3,0},{3,2,0},{5,2,0}}},
        // k inside: the downward walk prepends its rows, each run end first.
        {1, 1, 0, 2, {{0,4,0},{1,3,0},{0,3,0},{1,2,0},{1,1,0},{3,1,0},{3,0,0},{5,0,0}}},
        // k below the window: the upward walk starts at the bottom edge.
        {1, 4, 0, -4, {{2,4,0},{2,3,0},{3,3,0},{3,2,0},{3,1,0},{4,1,0},{4,0,0}}},
        // b = 0: the half-line y = k from the column of h, rightwards for a > 0; k on the top edge is out.
        {1, 0, 1.7, 1, {{2,3,0},{4,3,0}}}, {-1, 0, 1.7, 1, {{0,3,0},{2,3,0}}}, {1, 0, 1.7, -0.5, {{2,4,0},{4,4,0}}},
        {1, 0, 1.7, 4.5, {}}, {1, 0, 4.5, 1, {}}, {1, 1, 5, 0, {}}, {-1, 1, -1, 0, {}}, {0, 1, 0, 0, {}},
    };
    // Steps of 1: column = floor(x + 0.5), screen row = 4 - floor(y + 0.5).
    for (Case const &c : cases)
        EXPECT_EQ(drawLog(2, c.a, c.b, c.h, c.k, {0, 4, 0, 4, 5, 5}), c.want) << c.a << " " << c.b << " " << c.h << " " << c.k;
}

// Bottom to top, each run within a column of the abscissae at its row's
// edges, and every row that the curve crosses inside the window drawn.
TEST(Logarithmic, RunsMatchInverseFunction) {
    Rng rng(43);
    for (int i = 0; i < 400; ++i) {
        // Dyadic row steps keep the row edges exact. Bases above 1 only: the
        // direction test reads the signs of a and b alone.
        int m = 2 + rng.below(80), n = 2 + rng.below(80);
        double ys = 0.25 * (1 + rng.below(2)), y0 = rng.below(11) - 5, xs = 4.0 / (m - 1), base = rng.uniform(1.2, 5);
        double a = rng.uniform(0.2, 3) * (rng.below(2) ? 1 : -1), b = rng.uniform(0.2, 3) * (rng.below(2) ? 1 : -1);
        double h = rng.uniform(-2, 2), k = rng.uniform(-2, 2);
        std::vector<Pt> pts = drawLog(base, a, b, h, k, {-2, 2, y0, y0 + (n - 1) * ys, (unsigned short)m, (unsigned short)n});
        auto g = [&](int r, double side) { return h + std::pow(base, (y0 + (r + side) * ys - k) / b) / a; };
        auto column = [&](double x) { return std::floor((std::clamp(x, -2 - xs / 2, 2 + xs / 2) + 2 + xs / 2) / xs); };
        for (size_t j = 0; j < pts.size(); ++j) {
            double lo = column(g(n - 1 - pts[j].y, -0.5)), hi = column(g(n - 1 - pts[j].y, 0.5));
            EXPECT_TRUE(j == 0 || pts[j - 1].y >= pts[j].y) << i << " " << j;
            EXPECT_TRUE(std::min(lo, hi) - 1 <= pts[j].x && pts[j].x <= std::max(lo, hi) + 1) << i << " " << j;
        }
        for (int r = 0; r < n; ++r) {
            bool crosses = std::max(g(r, -0.5), g(r, 0.5)) > -2 && std::min(g(r, -0.5), g(r, 0.5)) < 2;
            EXPECT_TRUE(!crosses || std::any_of(pts.begin(), pts.end(), [&](Pt p) { return p.y == n - 1 - r; })) << i << " " << r;
        }
    }
}

// At most two points per row step; the walks cover disjoint parts of the
// window and take at most 2N + 2 steps between them (a step moves y by at
// least half of yStep, or the walk stops).
TEST(Logarithmic, WildParametersFinishWithinBound) {
    // Rows of 2^-53 around -1: from -1 the downward step rounds back to -1
    // (the spacing doubles below it) while the upward one does not.
    double u = std::ldexp(1.0, -53);
    EXPECT_LE(drawLog(2, 1, 1, 0, -1 + 4 * u, {0, 4, -1 - 8 * u, -1 + 8 * u, 5, 17}).size(), 4u * 17 + 8);
    Rng rng(7);
    for (int i = 0; i < 3000; ++i) {
        double x0 = rng.wild(10), y0 = rng.wild(10);
        unsigned short m = 1 + rng.below(300), n = 1 + rng.below(rng.below(32) ? 300 : 32767);
        Window w{x0, x0 + std::fabs(rng.wild(30)), y0, y0 + std::fabs(rng.wild(30)), m, n};
        ASSERT_LE(drawLog(rng.wild(5), rng.wild(10), rng.wild(10), rng.wild(10), rng.wild(10), w).size(), 4u * n + 8) << i;
    }
}

// Exponential functions: the two walks out from x = 0, the degenerate
// coefficients, rejection, and the runs checked against direct evaluation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "collab/rel/ExponentialFunctionC.h"
#include "evalg/ExponentialFunctionEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using namespace qelt::mathapp;

static std::vector<Pt> drawExp(double b, double r, double k, Window const &w) {
    evalg::ExponentialFunctionEvalC source, copy;
    copy = source;
    return draw(copy, PointerTC<rel::RelationC>(new rel::ExponentialFunctionC(b, r, k)), w);
}

TEST(Exponential, WalksDegenerateCoefficientsAndRejection) {
    double const Ln2 = std::log(2.0);
    // Steps of 1: column = floor(x + 2.5), screen row = 4 - floor(y + 2.5).
    Window const W{-2, 2, -2, 2, 5, 5};
    std::vector<Pt> const row0{{0,0,0},{1,0,0},{2,0,0},{3,0,0},{4,0,0}}, row3{{0,3,0},{1,3,0},{2,3,0},{3,3,0},{4,3,0}};
    struct Case { double b, r, k; Window w; std::vector<Pt> want; } const cases[] = {
        // 2^x: both walks start on the edge left of 0; the left walk prepends each run end first.
        {1, Ln2, 0, W, {{0,2,0},{1,1,0},{1,2,0},{2,1,0},{3,1,0},{3,0,0}}},
        // Window right of 0: the right walk starts at its left edge.
        {1, -Ln2, 0, {1, 5, -2, 2, 5, 5}, {{0,1,0},{0,2,0},{1,2,0},{2,2,0},{3,2,0},{4,2,0}}},
        // One column: an infinite step, so the left walk takes one step to -inf.
        {1, 1, 0, {-1, 1, -2, 2, 1, 5}, {{0,1,0},{0,2,0}}},
        {0, 1, 2, W, row0}, {1, 0, 1, W, row0}, {1, HUGE_VAL, -1, W, row3}, {1, -HUGE_VAL, -1, W, row3},
        {1, NAN, 0, W, {}}, {1, Ln2, 3, W, {}}, {1, -Ln2, 3, W, {}},
        // A NaN b is neither rising nor falling, so nothing rejects it: its NaN heights become full-height runs.
        {NAN, 1, 0, W, {{0,4,0},{0,0,0},{1,4,0},{1,0,0},{2,0,0},{2,4,0},{3,0,0},{3,4,0},{4,0,0},{4,4,0}}},
    };
    for (Case const &c : cases) EXPECT_EQ(drawExp(c.b, c.r, c.k, c.w), c.want) << c.b << " " << c.r << " " << c.k;
}

// Left to right, each run within a row of the heights at its column's edges,
// and every column that the curve crosses inside the window drawn.
TEST(Exponential, RunsMatchDirectEvaluation) {
    Rng rng(41);
    for (int i = 0; i < 400; ++i) {
        // Dyadic column steps keep the column edges exact.
        int m = 2 + rng.below(80), n = 2 + rng.below(80);
        double xs = 0.25 * (1 + rng.below(2)), x0 = rng.below(21) - 10, ys = 4.0 / (n - 1);
        double b = rng.uniform(0.2, 3) * (rng.below(2) ? 1 : -1), r = rng.uniform(-2, 2), k = rng.uniform(-2, 2);
        std::vector<Pt> pts = drawExp(b, r, k, {x0, x0 + (m - 1) * xs, -2, 2, (unsigned short)m, (unsigned short)n});
        auto f = [&](int c, double side) { return b * std::exp(r * (x0 + (c + side) * xs)) + k; };
        auto row = [&](double y) { return std::floor((std::clamp(y, -2.0, 2.0) + 2 + ys / 2) / ys); };
        for (size_t j = 0; j < pts.size(); ++j) {
            double lo = row(f(pts[j].x, -0.5)), hi = row(f(pts[j].x, 0.5));
            EXPECT_TRUE(j == 0 || pts[j - 1].x <= pts[j].x) << i << " " << j;
            EXPECT_TRUE(std::min(lo, hi) - 1 <= n - 1 - pts[j].y && n - 1 - pts[j].y <= std::max(lo, hi) + 1) << i << " " << j;
        }
        for (int c = 0; c < m; ++c) {
            bool crosses = std::max(f(c, -0.5), f(c, 0.5)) > -2 && std::min(f(c, -0.5), f(c, 0.5)) < 2;
            EXPECT_TRUE(!crosses || std::any_of(pts.begin(), pts.end(), [c](Pt p) { return p.x == c; })) << i << " " << c;
        }
    }
}

// At most two points per column step; the walks cover disjoint parts of the
// window and take at most 2M + 2 steps between them (a step moves x by at
// least half of xStep, or the walk stops).
TEST(Exponential, WildParametersFinishWithinBound) {
    // Columns far narrower than an ulp of x: adding xStep no longer moves x.
    Window const Narrow{1e15, 1e15 + 1, -1, 1, 32767, 5};
    EXPECT_LE(drawExp(1, -1, 0, Narrow).size(), 4u * 32767 + 8);
    Rng rng(6);
    for (int i = 0; i < 3000; ++i) {
        double x0 = rng.wild(10), y0 = rng.wild(10);
        unsigned short m = 1 + rng.below(rng.below(32) ? 300 : 32767), n = 1 + rng.below(300);
        Window w{x0, x0 + std::fabs(rng.wild(30)), y0, y0 + std::fabs(rng.wild(30)), m, n};
        ASSERT_LE(drawExp(rng.wild(10), rng.wild(3), rng.wild(10), w).size(), 4u * m + 8) << i;
    }
}

// Exponential functions: the two walks out from x = 0, the degenerate
// coefficients, rejection, and the heights checked against direct evaluation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "collab/rel/ExponentialFunctionC.h"
#include "evalg/ExponentialFunctionEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using namespace qelt::mathapp;

namespace {

double const Inf = std::numeric_limits<double>::infinity();
double const Ln2 = std::log(2.0);
// Steps of 1: column = floor(x + 2.5), screen row = 4 - floor(y + 2.5).
Window const W{-2, 2, -2, 2, 5, 5};

std::vector<Pt> drawExp(double b, double r, double k, Window const &w) {
    evalg::ExponentialFunctionEvalC source, copy;
    copy = source;
    return draw(copy, PointerTC<rel::RelationC>(new rel::ExponentialFunctionC(b, r, k)), w);
}

std::vector<Pt> row(int y) {
    std::vector<Pt> out;
    for (int x = 0; x < 5; ++x) out.push_back(Pt{x, y, 0});
    return out;
}

struct Case { double b, r, k; Window w; std::vector<Pt> want; };

TEST(Exponential, WalksDegenerateCoefficientsAndRejection) {
    Case const cases[] = {
        // 2^x: both walks start on the edge left of 0; the left walk's runs are
        // prepended end first.
        {1, Ln2, 0, W, {{0,2,0},{1,1,0},{1,2,0},{2,1,0},{3,1,0},{3,0,0}}},
        // Window right of 0: the right walk starts at its left edge.
        {1, -Ln2, 0, {1, 5, -2, 2, 5, 5}, {{0,1,0},{0,2,0},{1,2,0},{2,2,0},{3,2,0},{4,2,0}}},
        {0, 1, 1, W, row(1)},
        {1, 0, 1, W, row(0)},
        {1, Inf, -1, W, row(3)},
        {1, -Inf, -1, W, row(3)},
        {1, std::nan(""), 0, W, {}},
        {1, Ln2, 3, W, {}},
        {1, -Ln2, 3, W, {}},
        // One column: an infinite step, so the left walk takes one step to -inf.
        {1, 1, 0, {-1, 1, -2, 2, 1, 5}, {{0,1,0},{0,2,0}}},
    };
    for (Case const &c : cases) EXPECT_EQ(drawExp(c.b, c.r, c.k, c.w), c.want) << c.b << " " << c.r << " " << c.k;
}

TEST(Exponential, RunsMatchDirectEvaluation) {
    Rng rng(41);
    for (int i = 0; i < 400; ++i) {
        int m = 2 + rng.below(80), n = 2 + rng.below(80);
        // Dyadic steps keep the column edges exact.
        double xs = rng.below(2) ? 0.25 : 0.5, xMin = rng.below(21) - 10;
        Window w{xMin, xMin + (m - 1) * xs, rng.uniform(-3, 0), rng.uniform(0.5, 3), (unsigned short)m, (unsigned short)n};
        double b = rng.uniform(0.2, 3) * (rng.below(2) ? 1 : -1), r = rng.uniform(-2, 2), k = rng.uniform(-2, 2);
        std::vector<Pt> pts = drawExp(b, r, k, w);
        double ys = (w.yMax - w.yMin) / (n - 1), bottom = w.yMin - ys / 2, top = w.yMax + ys / 2;
        std::vector<int> perColumn(m, 0);
        for (size_t j = 0; j < pts.size(); ++j) {
            ASSERT_TRUE(pts[j].x >= 0 && pts[j].x < m && (j == 0 || pts[j - 1].x <= pts[j].x)) << i << " " << j;
            ++perColumn[pts[j].x];
            double yl = b * std::exp(r * (xMin + (pts[j].x - 0.5) * xs)) + k, yr = b * std::exp(r * (xMin + (pts[j].x + 0.5) * xs)) + k;
            double lo = std::max(std::min(yl, yr), bottom), hi = std::min(std::max(yl, yr), top);
            int row = n - 1 - pts[j].y;
            EXPECT_TRUE(row >= std::floor((lo - bottom) / ys) - 1 && row <= std::floor((hi - bottom) / ys) + 1) << i << " " << j;
        }
        for (int c = 0; c < m; ++c) {
            double yl = b * std::exp(r * (xMin + (c - 0.5) * xs)) + k, yr = b * std::exp(r * (xMin + (c + 0.5) * xs)) + k;
            double e = ys / 100, hi = std::max(yl, yr), lo = std::min(yl, yr);
            bool clearlyIn = hi > bottom + e && lo < top - e, clearlyOut = hi < bottom - e || lo > top + e;
            EXPECT_TRUE(perColumn[c] > 0 ? !clearlyOut : !clearlyIn) << i << " " << c;
            EXPECT_LE(perColumn[c], 2) << i << " " << c;
        }
    }
}

// Two points per column step; the walks cover disjoint halves of the window
// and take at most 2M + 2 steps between them (each step moves x by at least
// half of xStep, or the walk stops).
TEST(Exponential, WildParametersFinishWithinBound) {
    Rng rng(6);
    for (int i = 0; i < 3000; ++i) {
        double x0 = rng.wild(10), y0 = rng.wild(10);
        Window w{x0, x0 + std::fabs(rng.wild(30)), y0, y0 + std::fabs(rng.wild(30)),
                 (unsigned short)(1 + rng.below(rng.below(32) ? 300 : 32767)), (unsigned short)(1 + rng.below(300))};
        ASSERT_LE(drawExp(rng.wild(10), rng.wild(3), rng.wild(10), w).size(), 4u * w.m + 8) << i;
    }
}

} // namespace

// Power functions: the three layouts, the asymptote and turning-point
// columns, the restrictions, and the bound on the sweep.
#include <gtest/gtest.h>

#include <cmath>

#include "collab/ds/PixelPointC.h"
#include "collab/rel/PowerFunctionC.h"
#include "evalg/PowerFunctionEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using namespace qelt::mathapp;

static unsigned const L = ds::PixelPointC::LAST_VISIBLE;

static std::vector<Pt> drawPower(double a, double h, double k, long long r, int restriction, Window const &w) {
    evalg::PowerFunctionEvalC source, copy(source);
    auto domain = rel::PowerFunctionDomainRestrictionE(restriction);
    return draw(copy, PointerTC<rel::RelationC>(new rel::PowerFunctionC(a, h, k, r, domain)), w);
}

TEST(Power, LayoutsAsymptotesAndRestrictions) {
    struct Case { double a, h; long long r; int restriction; std::vector<Pt> want; } const cases[] = {
        // Pole at 2: left branch, down the asymptote, from the top into the right branch.
        {1, 2, -1, 0, {{0,4,0},{0,5,0},{1,5,0},{1,6,L},{2,6,0},{2,8,L},{2,0,0},{2,2,L},{3,2,0},{3,3,0},{4,3,0},{4,4,L}}},
        {1, 2, -1, 1, {{2,0,0},{2,2,L},{3,2,0},{3,3,0},{4,3,0},{4,4,L}}},
        {1, 2, -1, 2, {{0,4,0},{0,5,0},{1,5,0},{1,6,L},{2,6,0},{2,8,L}}},
        // Both branches escape upward; with a = 0, upward on the left and downward on the right.
        {1, 2, -2, 0, {{0,4,0},{1,4,0},{1,0,L},{2,0,L},{2,0,L},{3,0,0},{3,4,0},{4,4,L}}},
        {0, 2, -2, 0, {{0,4,0},{1,4,L},{2,4,0},{2,0,L},{2,8,0},{2,4,L},{3,4,0},{4,4,L}}},
        // Turning point: the column of h runs from k to the larger neighbour.
        {1, 2.25, 2, 0, {{0,0,0},{0,1,0},{1,1,0},{1,3,L},{2,4,0},{2,3,L},{3,4,0},{3,2,0},{4,2,0},{4,0,L}}},
        {1, 2, 3, 0, {{0,8,0},{0,7,0},{1,7,0},{1,4,0},{2,4,0},{3,4,0},{3,1,0},{4,1,0},{4,0,L}}},
        {1, 2, 0, 0, {{0,3,0},{1,3,0},{2,3,0},{3,3,0},{4,3,L}}},
        // NaN samples become full-height runs in the emission.
        {NAN, 2, 3, 0, {{0,0,0},{0,8,0},{1,0,0},{1,8,0},{2,0,0},{2,8,0},{3,0,0},{3,8,0},{4,0,0},{4,8,L}}},
        // A pole on the left edge is not inside: one sweep, starting from f = inf.
        {1, -0.5, -1, 0, {{0,0,0},{0,3,0},{1,3,0},{2,3,0},{2,4,0},{3,4,0},{4,4,L}}},
        {1, 5, 3, 1, {}}, {1, -1, 3, 2, {}},
    };
    // Steps of 1: column = floor(x + 0.5), screen row = 8 - floor(y + 4.5).
    for (Case const &c : cases)
        EXPECT_EQ(drawPower(c.a, c.h, 0, c.r, c.restriction, {0, 4, -4, 4, 5, 9}), c.want) << c.a << " " << c.h << " " << c.r;
}

// -f draws the mirror image of f, row for row and marker for marker, and both
// read left to right.
TEST(Power, NegatedFunctionMirrorsRowsInDrawingOrder) {
    Rng rng(23);
    for (int i = 0; i < 500; ++i) {
        Window w{-4, 4, -3, 3, (unsigned short)(2 + rng.below(60)), (unsigned short)(2 + rng.below(60))};
        double a = rng.uniform(0.1, 3), h = rng.uniform(-5, 5), k = rng.uniform(-2, 2);
        long long r = rng.below(9) - 4;
        int restriction = rng.below(3);
        std::vector<Pt> up = drawPower(a, h, k, r, restriction, w), down = drawPower(-a, h, -k, r, restriction, w);
        ASSERT_EQ(up.size(), down.size()) << i;
        for (size_t j = 0; j < up.size(); ++j) {
            EXPECT_EQ(down[j], (Pt{up[j].x, w.n - 1 - up[j].y, up[j].m})) << i << " " << j;
            EXPECT_TRUE(j == 0 || up[j - 1].x <= up[j].x) << i << " " << j;
        }
    }
}

// At most two points per column step, at most 2M + 2 steps (a step moves x by
// at least half of xStep, or the sweep stops), and two asymptote runs.
TEST(Power, WildParametersFinishWithinBound) {
    // Columns far narrower than an ulp of x: adding xStep no longer moves x.
    Window const Narrow{1e15, 1e15 + 1, -1, 1, 32767, 5};
    EXPECT_LE(drawPower(1, 0, 0, 3, 0, Narrow).size(), 4u * 32767 + 8);
    Rng rng(5);
    for (int i = 0; i < 3000; ++i) {
        double x0 = rng.wild(10), y0 = rng.wild(10);
        unsigned short m = 1 + rng.below(rng.below(32) ? 300 : 32767), n = 1 + rng.below(300);
        Window w{x0, x0 + std::fabs(rng.wild(30)), y0, y0 + std::fabs(rng.wild(30)), m, n};
        ASSERT_LE(drawPower(rng.wild(10), rng.wild(10), rng.wild(10), rng.below(13) - 6, rng.below(4), w).size(), 4u * m + 8) << i;
    }
}

// Sinusoids: crest and trough columns, periods under a pixel, flat and
// degenerate curves, and the markers where the curve leaves and comes back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "collab/ds/PixelPointC.h"
#include "collab/rel/SinusoidalFunctionC.h"
#include "evalg/SinusoidalFunctionEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using namespace qelt::mathapp;

static unsigned const F = ds::PixelPointC::FIRST_VISIBLE, L = ds::PixelPointC::LAST_VISIBLE;
static double const Pi = 3.14159265358979323846;
// Steps of 1: column = floor(x + 0.5), screen row = 4 - floor(y + 2.5).
static Window const W{0, 8, -2, 2, 9, 5};

static std::vector<Pt> drawSin(double a, double b, double h, double k, bool sine, Window const &w) {
    evalg::SinusoidalFunctionEvalC source, copy(source);
    return draw(copy, PointerTC<rel::RelationC>(new rel::SinusoidalFunctionC(a, b, h, k, sine)), w);
}

// Every column from row y1 to row y2 (one point when they agree), the first marked.
static std::vector<Pt> everyColumn(int y1, int y2) {
    std::vector<Pt> out;
    for (int x = 0; x < 9; ++x) out.insert(out.end(), {Pt{x, y1, x == 0 ? F : 0}, Pt{x, y2, 0}});
    if (y1 == y2) out.erase(std::unique(out.begin(), out.end(), [](Pt p, Pt q) { return p.x == q.x; }), out.end());
    return out;
}

TEST(Sinusoidal, CrestsTroughsAndMarkers) {
    struct Case { double a, b, h, k; bool sine; Window w; std::vector<Pt> want; } const cases[] = {
        // Period 4, crests at 0.3 + 4n: columns 0, 4 and 8 run from the lower
        // sample up to k + b, troughs (2, 6) from the higher one down to k - b.
        {Pi / 2, 1, 0.3, 0, false, W, {{0,2,F},{0,1,0},{1,1,0},{1,2,0},{2,2,0},{2,3,0},{3,3,0},{3,2,0},{4,2,0},{4,1,0},
                                       {5,1,0},{5,2,0},{6,2,0},{6,3,0},{7,3,0},{7,2,0},{8,2,0},{8,1,0}}},
        // The sine with h = 0 has its crests a quarter period in: columns 1 and
        // 5. Raised by k = 1 on a window raised by 1, it draws the same pixels.
        {Pi / 2, 1, 0, 1, true, {0, 8, -1, 3, 9, 5}, {{0,3,F},{0,1,0},{1,1,0},{2,1,0},{2,3,0},{3,3,0},{4,3,0},{4,1,0},{5,1,0},{6,1,0},{6,3,0},{7,3,0},{8,3,0},{8,1,0}}},
        // Period 0.4: every column holds a crest and a trough.
        {5 * Pi, 1, 0, 0, false, W, everyColumn(3, 1)},
        // Out for one ordinary column (5): an end marker only.
        {Pi / 4, 3, 4.2, 0, false, W, {{1,4,F},{2,4,0},{2,1,0},{3,1,0},{3,0,L},{5,0,0},{6,0,0},{6,3,0},{7,3,0},{7,4,0}}},
        // Out for two (5 and 6): the start marker lands on the end marker's point.
        {Pi / 4, 6, 4.2, 0, false, W, {{2,4,F},{2,1,0},{3,1,0},{3,0,L | F},{6,0,0},{6,3,0},{7,3,0},{7,4,0}}},
        // Flat: b = 0 inside, on the top edge, a band above the window, NaN b.
        {1, 0, 0, 0, false, W, everyColumn(2, 2)}, {1, 0, 0, 2.5, false, W, {}}, {1, 1, 0, 4, false, W, {}},
        {1, NAN, 0, 0, false, W, {}},
        // a = 0: the cosine is the constant k + b, the sine the constant k.
        {0, 1, 0, 0, false, W, everyColumn(1, 1)}, {0, 3, 0, 0, false, W, {}}, {0, 3, 0, 0, true, W, everyColumn(2, 2)},
        // One column: an infinite step, so no column edge to walk to.
        {1, 1, 0, 0, false, {0, 8, -2, 2, 1, 5}, {}},
    };
    for (Case const &c : cases) EXPECT_EQ(drawSin(c.a, c.b, c.h, c.k, c.sine, c.w), c.want) << c.a << " " << c.b << " " << c.h;
}

// Many long excursions on a window wide enough for the set to regrow between
// an exit and its re-entry: every start marker after the first point sits on
// a point that took an end marker.
TEST(Sinusoidal, ReentryMarkersLandOnExitPoints) {
    std::vector<Pt> pts = drawSin(2 * Pi / 25, 10, 0.3, 0, false, {0, 2000, -2, 2, 2001, 5});
    std::vector<size_t> starts = withMarker(pts, F), ends = withMarker(pts, L);
    ASSERT_GT(starts.size(), 100u);
    EXPECT_EQ(starts[0], 0u);
    for (size_t j = 1; j < starts.size(); ++j) EXPECT_TRUE(pts[starts[j]].m & L) << starts[j];
    EXPECT_GE(starts.size(), ends.size());
}

// At most two points per column; the walk is paced by x alone and takes at
// most 2M + 2 steps (each moves x by at least half of xStep, or it stops),
// whatever the period does to crestX and troughX.
TEST(Sinusoidal, WildParametersFinishWithinBound) {
    // Columns far narrower than an ulp of x: adding xStep no longer moves x.
    Window const Narrow{1e15, 1e15 + 1, -1, 1, 32767, 5};
    EXPECT_LE(drawSin(1, 1, 0, 0, false, Narrow).size(), 4u * 32767 + 8);
    Rng rng(8);
    for (int i = 0; i < 3000; ++i) {
        double x0 = rng.wild(10), y0 = rng.wild(10);
        unsigned short m = 1 + rng.below(rng.below(32) ? 300 : 32767), n = 1 + rng.below(300);
        Window w{x0, x0 + std::fabs(rng.wild(30)), y0, y0 + std::fabs(rng.wild(30)), m, n};
        ASSERT_LE(drawSin(rng.wild(1e3), rng.wild(10), rng.wild(10), rng.wild(10), rng.below(2), w).size(), 4u * m + 8) << i;
    }
}

// The octant rasteriser: exact paths where the steps pin them, the straight-run
// short cut, degenerate parameters, and invariants over seeded random and
// deep-zoom cases (near the curve, covering it, 4-connected, bounded steps).
#include <gtest/gtest.h>

#include <limits>

#include "circle_conic_checks.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/EllipseC.h"
#include "evalg/CircleEvalC.h"
#include "evalg/EllipseEvalC.h"

using namespace evalgtest;
using namespace qelt::mathapp;

namespace {

double const NaN = std::numeric_limits<double>::quiet_NaN(), Inf = std::numeric_limits<double>::infinity();

struct Conic { double h, k, a, b; };

// Circles go through the circle evaluator, everything else through the ellipse's.
std::vector<Pt> drawConic(Conic c, Window const &w, unsigned long *steps = nullptr) {
    if (c.a == c.b) return drawCounted<evalg::CircleEvalC, rel::CircleC>(w, steps, c.h, c.k, c.a);
    return drawCounted<evalg::EllipseEvalC, rel::EllipseC>(w, steps, c.h, c.k, c.a, c.b);
}

// Stretches other than straight runs across the window lie in the grid within
// a pixel of the curve and step to 4-neighbours; without runs, the curve is
// covered.
void expectTraced(std::vector<Pt> const &pts, Conic c, Window const &w) {
    auto g = [c](double x, double y) { return std::hypot((x - c.h) / c.a, (y - c.k) / c.b) - 1; };
    bool runs = false;
    for (auto s : stretches(pts)) {
        bool row = s.second - s.first == w.m, column = s.second - s.first == w.n;
        for (size_t i = s.first; i < s.second; ++i) {
            row = row && pts[i].x == int(i - s.first) && pts[i].y == pts[s.first].y;
            column = column && pts[i].y == int(i - s.first) && pts[i].x == pts[s.first].x;
        }
        runs = runs || row || column;
        for (size_t i = s.first; i < s.second && !row && !column; ++i) {
            Pt p = pts[i], q = pts[i > s.first ? i - 1 : i];
            ASSERT_TRUE(p.x >= 0 && p.x < w.m && p.y >= 0 && p.y < w.n && nearCurve(g, w, p, c.h, c.k)) << p;
            ASSERT_TRUE(i == s.first || std::abs(p.x - q.x) + std::abs(p.y - q.y) == 1) << q << " to " << p;
        }
    }
    if (!runs) expectCovered(pts, w, rel::EllipseC(c.h, c.k, c.a, c.b), rel::EllipseC(c.k, c.h, c.b, c.a));
}

// Straight runs across the window: rows (or columns) at, of len points each.
std::vector<Pt> runs(std::vector<int> const &at, int len, bool rows, std::vector<Pt> out = {}) {
    for (int a : at)
        for (int i = 0; i < len; ++i) out.push_back({rows ? i : a, rows ? a : i, i == 0 ? F : i == len - 1 ? L : 0});
    return out;
}

// Traced by hand from the octant table: every octant is its own stretch.
TEST(ConicExact, PointsAndMarkers) {
    Window const nine{-4, 4, -4, 4, 9, 9};
    struct { Conic c; Window w; std::vector<Pt> want; } const cases[] = {
        // Each slope point once; the joins are diagonal or repeat a pixel.
        {{5, 5, 2, 2}, {0, 11, 0, 11, 12, 12}, parse("4,5FL 4,4F 5,4L 6,5FL 7,6F 7,7 6,7L 5,8F 4,8L 4,7F 3,7 3,6L")},
        // Octant 3 enters at (4, 5) and leaves past (2, 6); octant 5 enters at (5, -2).
        {{0, 0, 6, 6}, {2, 10, -2, 6, 9, 9}, parse("0,0F 0,1 1,1 2,1L 2,2F 3,2 3,3 3,4 4,4 4,5L 4,6F 4,7 4,8 3,8L")},
        // a = 0: the segment x = 0, each half walked by both octants of its side.
        {{0, 0, 0, 3}, nine, parse("4,3F 4,2 4,1L 4,1F 4,2 4,3L 4,4F 4,5 4,6 4,7L 4,7F 4,6 4,5 4,4L")},
        // A flat top: the bottom's first test has no window check, so row 201 too.
        {{0, 0, 100, 100}, {-2, 2, 97, 101, 5, 5}, runs({1, 201}, 5, true)},
        // One column at the right side; the left's test fires far outside (column -197).
        {{0, 0, 100, 100}, {97, 101, -2, 2, 5, 5}, runs({3, 65339}, 5, false)},
        // An infinite semi-axis along x: the two lines y = +-2.
        {{0, 0, Inf, 2}, defaultWindow(), runs({30, 70}, 161, true)},
        // Nothing: the window inside the curve, and radii of 0, NaN and infinity.
        {{0, 0, 100, 100}, defaultWindow(), {}}, {{0, 0, 0, 0}, nine, {}}, {{0, 0, NaN, NaN}, nine, {}},
        {{0, 0, Inf, Inf}, nine, {}}};
    for (auto const &e : cases) EXPECT_EQ(drawConic(e.c, e.w), e.want) << "case " << &e - cases;
}

// One column: a row run writes column 0 twice. Unreachable through
// evaluateGraph (the step is infinite there), so the window is set by hand.
TEST(ConicExact, OneColumnRowRun) {
    struct OneColumn : evalg::CircleEvalC {
        std::vector<Pt> run() {
            PointerTC<GraphDataSetWinC> set(new GraphDataSetWinC(10, 0, makeDomain({0, 1, 97, 101, 1, 5})));
            setDomain(makeDomain({0, 1, 97, 101, 1, 5}));
            xStep = 4, leftEdge = -2, rightEdge = 2;
            plot(100, 100, 0, 0, xStep, yStep, set);
            return points(set);
        }
    };
    EXPECT_EQ(OneColumn().run(), parse("0,1F 0,1L 0,201F 0,201L"));
}

// A circle inside the window: one closed path, clockwise on the screen from
// its leftmost pixels (octant 1 starts within 45 degrees of the leftmost point).
TEST(ConicShape, CircleInsideIsClosedAndClockwise) {
    Rng rng(7);
    Window w = defaultWindow();
    for (int n = 0; n < 200; ++n) {
        double r = rng.uniform(0.3, 4.8), turned = 0;
        Conic c{rng.uniform(-7.9 + r, 7.9 - r), rng.uniform(-4.9 + r, 4.9 - r), r, r};
        auto angle = [&](Pt p) { return std::atan2(w.yMax - p.y * 0.1 - c.k, w.xMin + p.x * 0.1 - c.h); };
        std::vector<Pt> pts = drawConic(c, w);
        expectTraced(pts, c, w);
        for (size_t i = 0; i < pts.size(); ++i) {
            Pt p = pts[i], q = pts[(i + 1) % pts.size()];
            double turn = std::remainder(angle(q) - angle(p), 2 * M_PI);
            ASSERT_TRUE(std::max(std::abs(p.x - q.x), std::abs(p.y - q.y)) <= 1 && turn <= 1e-12) << p << " to " << q;
            turned += turn;
        }
        EXPECT_NEAR(turned, -2 * M_PI, 1e-9);
        EXPECT_GT(std::abs(angle(pts[0])), 0.7 * M_PI) << pts[0];
    }
}

// Random ellipses, round, wide and tall, crossing the window anywhere. Below
// 60000 pixels no approach exceeds the limit, and skipping what cannot show
// must write exactly what walking every octant whole writes. Every fifth has
// wild parameters and must only end within the bound.
TEST(ConicShape, RandomEllipsesAreTracedWithinBoundedSteps) {
    struct Whole : evalg::EllipseEvalC {
        Whole() { reachMargin = Inf; }
    };
    Rng rng(11);
    for (int n = 0; n < 1500; ++n) {
        Window w{rng.uniform(-9, 0), rng.uniform(1, 9), rng.uniform(-9, 0), rng.uniform(1, 9),
                 (unsigned short)(1 + rng.below(200)), (unsigned short)(1 + rng.below(200))};
        double xs = (w.xMax - w.xMin) / (w.m - 1), ys = (w.yMax - w.yMin) / (w.n - 1), t = rng.uniform(0, 7);
        double a = xs * std::exp(rng.uniform(-1, n % 2 ? 11 : 16)), b = n % 3 ? ys * std::exp(rng.uniform(-1, 11)) : a;
        Conic c{rng.uniform(w.xMin, w.xMax) - a * std::cos(t), rng.uniform(w.yMin, w.yMax) - b * std::sin(t), a, b};
        if (n % 5 == 0) c = {rng.wild(20), rng.wild(20), rng.wild(30), rng.wild(30)};
        unsigned long steps = 0;
        std::vector<Pt> pts = drawConic(c, w, &steps);
        EXPECT_LE(steps, 4 * evalg::CircleAndEllipseCommonEvalC::APPROACH_LIMIT + 4 * (w.m + w.n) + 64);
        if (n % 5 == 0 || w.m == 1 || w.n == 1) continue;
        expectTraced(pts, c, w);
        if (a / xs < 6e4 && b / ys < 6e4) {
            EXPECT_EQ(pts, (drawCounted<Whole, rel::EllipseC>(w, nullptr, c.h, c.k, a, b)));
        }
    }
}

// Steps deep inside the window run without a branch on the decision value;
// they must give what the plain step loop gives, point for point, marker for
// marker and step for step. Windows up to 2000 pixels a side so that long
// runs occur, square and stretched pixels, radii from a few pixels to 10^11,
// centres near and far.
template <class EvalT, class RelationT>
struct Plain : EvalT {
    Plain() { this->branchFreeSteps = false; }
};
TEST(ConicShape, BranchFreeStepsMatchThePlainLoop) {
    Rng rng(23);
    int compared = 0;
    for (int n = 0; n < 3000; ++n) {
        Window w{rng.uniform(-9, 0), rng.uniform(1, 9), rng.uniform(-9, 0), rng.uniform(1, 9),
                 (unsigned short)(2 + rng.below(n % 4 ? 400 : 2000)), (unsigned short)(2 + rng.below(n % 4 ? 400 : 2000))};
        double xs = (w.xMax - w.xMin) / (w.m - 1), ys = (w.yMax - w.yMin) / (w.n - 1), t = rng.uniform(0, 7);
        double a = xs * std::exp(rng.uniform(0, n % 7 ? 8 : 25)), b = n % 3 ? ys * std::exp(rng.uniform(0, 8)) : a;
        Conic c{rng.uniform(w.xMin, w.xMax) - a * std::cos(t), rng.uniform(w.yMin, w.yMax) - b * std::sin(t), a, b};
        unsigned long fastSteps = 0, plainSteps = 0;
        std::vector<Pt> fast, plain;
        if (a == b) {
            fast = drawCounted<evalg::CircleEvalC, rel::CircleC>(w, &fastSteps, c.h, c.k, a);
            plain = drawCounted<Plain<evalg::CircleEvalC, rel::CircleC>, rel::CircleC>(w, &plainSteps, c.h, c.k, a);
        } else {
            fast = drawCounted<evalg::EllipseEvalC, rel::EllipseC>(w, &fastSteps, c.h, c.k, a, b);
            plain = drawCounted<Plain<evalg::EllipseEvalC, rel::EllipseC>, rel::EllipseC>(w, &plainSteps, c.h, c.k,
                                                                                        a, b);
        }
        ASSERT_EQ(fast, plain) << "case " << n;
        ASSERT_EQ(fastSteps, plainSteps) << "case " << n;
        compared += fast.size() > 8;
    }
    EXPECT_GT(compared, 2000);
}

// Deep zoom: a radius of 10^9 pixels, and a centre 10^12 pixels away, across
// the 161x101 window. The approach is skipped: only the window's pixels cost.
TEST(ConicShape, DeepZoomIsCorrectAndCheap) {
    Window w = defaultWindow();
    for (double r : {1e8, 1e11})
        for (double t : {0.3, 1.2, 2.0, 2.6, 3.5, 4.4, 5.1, 5.9})
            for (double e : {1.0, 1.0 / 64}) {
                Conic c{-r * std::cos(t), -r * e * std::sin(t), r, r * e};
                unsigned long steps = 0;
                std::vector<Pt> pts = drawConic(c, w, &steps);
                EXPECT_GT(pts.size(), 100u);
                expectTraced(pts, c, w);
                EXPECT_LE(steps, 4u * (w.m + w.n) + 64) << r << " " << t;
            }
}

} // namespace

// Lines, quadratics and parabolas: exact runs and markers on small windows,
// agreement with direct evaluation on random curves, the row walk against the
// column walk, guarded starts, and bounded output for any input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "collab/rel/LinearFunction1C.h"
#include "collab/rel/ParabolaC.h"
#include "collab/rel/ParabolaVertC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "evalg/LinearFunction1EvalC.h"
#include "evalg/ParabolaEvalC.h"
#include "evalg/ParabolaVertEvalC.h"
#include "evalg/QuadraticFunctionEvalC.h"
#include "support/TestSupport.h"

using namespace evalgtest;
using namespace qelt::mathapp;

namespace {

Window const five{0, 4, 0, 4, 5, 5};    // pitch 1, outer edges -0.5 and 4.5
Window const nine{-4, 4, -4, 4, 9, 9};  // pitch 1, outer edges -4.5 and 4.5
unsigned const F = 1, L = 2, FL = 3;    // FIRST_VISIBLE, LAST_VISIBLE
double const inf = std::numeric_limits<double>::infinity();
std::vector<Pt> const row3 = {{0, 3, 0}, {1, 3, 0}, {2, 3, 0}, {3, 3, 0}, {4, 3, 0}, {5, 3, 0}, {6, 3, 0}, {7, 3, 0}, {8, 3, 0}};

template <class EvalT, class RelationT>
std::vector<Pt> drawNew(Window const &w, double p1, double p2, double p3) {
    EvalT e;
    return draw(e, PointerTC<rel::RelationC>(new RelationT(p1, p2, p3)), w);
}
std::vector<Pt> line(double m, double h, double k, Window const &w = five) {
    return drawNew<evalg::LinearFunction1EvalC, rel::LinearFunction1C>(w, m, h, k);
}
std::vector<Pt> quad(double a, double h, double k, Window const &w = nine) {
    return drawNew<evalg::QuadraticFunctionEvalC, rel::QuadraticFunctionC>(w, a, h, k);
}
std::vector<Pt> vert(double h, double k, double a, Window const &w = nine) {
    return drawNew<evalg::ParabolaVertEvalC, rel::ParabolaVertC>(w, h, k, a);
}
std::vector<Pt> para(double h, double k, double a, Window const &w = nine) {
    return drawNew<evalg::ParabolaEvalC, rel::ParabolaC>(w, h, k, a);
}

// An evaluator copied or assigned from a used one draws as its source.
template <class EvalT, class RelationT>
void expectCopyDrawsAsSource(double p1, double p2, double p3) {
    PointerTC<rel::RelationC> relation(new RelationT(p1, p2, p3));
    EvalT source, assigned;
    draw(source, relation, five);
    EvalT copied(source);
    assigned = source;
    std::vector<Pt> want = draw(source, relation, defaultWindow());
    EXPECT_TRUE(!want.empty() && draw(copied, relation, defaultWindow()) == want);
    EXPECT_TRUE(draw(assigned, relation, defaultWindow()) == want);
}

// A few hundred pixels over moderate ranges: no rounding of the pitch.
Window ordinaryWindow(Rng &rng) {
    double x0 = rng.uniform(-10, 10), y0 = rng.uniform(-10, 10);
    return Window{x0, x0 + rng.uniform(0.5, 20), y0, y0 + rng.uniform(0.5, 20),
                  (unsigned short)(2 + rng.below(300)), (unsigned short)(2 + rng.below(300))};
}

// Any valid window: limits from Rng::wild at scales 1e-300 to 1e300, so some
// are only a few ulps per pixel; sometimes one pixel wide or high.
Window wildWindow(Rng &rng) {
    static double const scales[] = {1e-300, 1e-9, 1.0, 1e9, 1e300};
    auto limit = [&] { return rng.wild(10) * scales[rng.below(5)]; };
    auto pixels = [&] { return (unsigned short)(rng.below(8) == 0 ? 1 : 1 + rng.below(300)); };
    for (int attempt = 0; attempt < 100; ++attempt) {
        double x0 = limit(), y0 = limit();
        Window w{x0, x0 + std::fabs(limit()), y0, y0 + std::fabs(limit()), pixels(), pixels()};
        if (makeDomain(w)->isValid()) return w;
    }
    return defaultWindow();
}

// A column walk of y = f(x) on an ordinary window: columns run left to right,
// each in one run of at most maxRun points inside the grid; no drawn column
// lies wholly outside the window; every point's row is a row of the curve in
// its column (between f's least and greatest at the column's edges and at
// extremeX where that falls inside, give or take 1e-4 of a row for the
// stepping's rounding); and every column whose centre height is a row inside
// the window is drawn.
void checkColumnWalk(std::vector<Pt> const &pts, Window const &w, std::function<double(double)> f, double extremeX,
                     int maxRun) {
    double xStep = (w.xMax - w.xMin) / (w.m - 1), yStep = (w.yMax - w.yMin) / (w.n - 1);
    double left = w.xMin - xStep / 2, bottom = w.yMin - yStep / 2, top = w.yMax + yStep / 2;
    auto row = [&](double y) { return std::min(std::max(std::floor((y - bottom) / yStep), 0.0), w.n - 1.0); };
    std::vector<int> runs(w.m, 0);
    for (size_t i = 0; i < pts.size(); ++i) {
        Pt const &p = pts[i];
        ASSERT_TRUE(p.x >= 0 && p.x < w.m && p.y >= 0 && p.y < w.n) << p;
        ASSERT_TRUE(i == 0 || p.x >= pts[i - 1].x) << "out of order at " << i;
        ASSERT_LE(++runs[p.x], maxRun) << "column " << p.x << " drawn again";
        double l = left + p.x * xStep, r = l + xStep, e = std::min(std::max(extremeX, l), r);
        double lo = std::min({f(l), f(r), f(e)}), hi = std::max({f(l), f(r), f(e)});
        ASSERT_TRUE(lo <= top + yStep && hi >= bottom - yStep) << "column " << p.x << " misses the window";
        double r0 = w.n - 1 - p.y, slack = yStep * 1e-4;
        ASSERT_TRUE(r0 >= row(lo - slack) && r0 <= row(hi + slack)) << p << " off the curve";
    }
    for (int c = 0; c < w.m; ++c) {
        double y = f(left + (c + 0.5) * xStep);
        ASSERT_TRUE(runs[c] > 0 || !(y > bottom + yStep && y < top - yStep)) << "column " << c << " missing";
    }
}

} // namespace

TEST(LinearFunction1EvalC, DrawsEachColumnsRunFromEntryToExit) {
    struct Case { std::vector<Pt> got; std::vector<XY> want; };
    std::vector<Case> const cases = {
        {line(0, 7, 2), {{0, 2}, {1, 2}, {2, 2}, {3, 2}, {4, 2}}}, // flat: one point per column
        {line(0, 0, 4.6), {}}, {line(0, 0, -0.6), {}}, {line(1, 0, 10), {}}, {line(-1, 0, -10), {}},
        {line(1, 0, 0), {{0, 4}, {0, 3}, {1, 3}, {1, 2}, {2, 2}, {2, 1}, {3, 1}, {3, 0}, {4, 0}}},
        {line(4, 2, 2), {{1, 4}, {2, 4}, {2, 0}, {3, 0}}},                 // enters at the bottom, leaves at the top
        {line(-2, 3, 0), {{1, 0}, {1, 1}, {2, 1}, {2, 3}, {3, 3}, {3, 4}}}, // enters at the top, leaves at the bottom
        {line(1, 0, 0, Window{0, 4, 0, 4, 1, 5}), {{0, 4}, {0, 0}}},        // one column: the whole column
        // A NaN intercept is not tested: every column gets its whole height.
        {line(0, inf, 1), {{0, 0}, {0, 4}, {1, 0}, {1, 4}, {2, 0}, {2, 4}, {3, 0}, {3, 4}, {4, 0}, {4, 4}}},
    };
    for (size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(xys(cases[i].got), cases[i].want) << "case " << i;
        EXPECT_TRUE(withMarker(cases[i].got, 0xFF).empty()) << "a line sets no markers, case " << i;
    }
    expectCopyDrawsAsSource<evalg::LinearFunction1EvalC, rel::LinearFunction1C>(0.7, 1, -2);
}

TEST(QuadraticFamily, DrawsExactRunsAndMarkers) {
    struct Case { std::vector<Pt> got, want; };
    std::vector<Case> const cases = {
        // Vertex inside: left half prepended (its slot-0 start marker waits for the vertex), vertex, right half.
        {quad(1, 0, 0), {{2, 0, 0}, {2, 2, 0}, {3, 2, 0}, {3, 4, L}, {4, 4, FL}, {5, 4, F}, {5, 2, 0}, {6, 2, 0}, {6, 0, L}}},
        // Vertex below or above: two branches from their crossings, no vertex column.
        {quad(1, 0, -6), {{1, 0, 0}, {1, 4, 0}, {2, 4, 0}, {2, 8, 0}, {3, 8, L}, {5, 8, F}, {6, 8, 0}, {6, 4, 0}, {7, 4, 0}, {7, 0, L}}},
        {quad(-1, 0, 6), {{1, 8, 0}, {1, 4, 0}, {2, 4, 0}, {2, 0, 0}, {3, 0, L}, {5, 0, F}, {6, 0, 0}, {6, 4, 0}, {7, 4, 0}, {7, 8, L}}},
        {quad(1, -6, -2), {{0, 4, F}, {0, 0, 0}, {1, 0, L}}}, // vertex left: right half from leftEdge
        {quad(100, 0, 0), {{4, 0, F}, {4, 4, L}}},            // narrow: vertex run from k up to topEdge
        // Both crossings in the vertex column with k below the window: the far end
        // is inside, so the vertex run is drawn, and that column by all three pieces.
        {quad(16, 0, -4.75), {{3, 0, 0}, {3, 5, 0}, {4, 5, L}, {4, 5, F}, {4, 8, L}, {4, 5, F}, {5, 5, 0}, {5, 0, L}}},
        {quad(1, 2, 1, Window{0, 4, 0, 4, 1, 5}), {{0, 4, 0}, {0, 3, L}, {0, 0, F}, {0, 3, L}}}, // one column
        {quad(0, 3, 1), row3},
        {quad(1, 6.5, 0.5), {}}, // touches only the top-right corner: the window's top is open
        // d1 = +inf and d2 = -inf: the running value turns NaN and the walk stops there.
        {quad(-1e308, -1e-160, 0, Window{1, 9, -4, 4, 5, 5}), {{0, 2, F}, {0, 4, L}}},
        {quad(-1e308, 1e-160, 0, Window{-9, -1, -4, 4, 5, 5}), {{4, 4, 0}, {4, 2, L}}},
        {vert(3, 1, 0), row3},             // a == 0 tested before c = 1/(4a) is formed
        {vert(0, 0, 0.25), quad(1, 0, 0)}, // c = 1/(4a) = 1: the quadratic's drawing
        // Infinite a: c == 0 runs both halves flat and fails both vertex sign tests.
        {vert(0, 1, inf), {{0, 3, 0}, {1, 3, 0}, {2, 3, 0}, {3, 3, L}, {5, 3, F}, {6, 3, 0}, {7, 3, 0}, {8, 3, L}}},
        {para(3, 1, 0), row3}, // the horizontal line y = k, although x is the function here
        // x = y^2, bottom to top; runs clamped at rightEdge land in column 9.
        {para(0, 0, 0.25), {{9, 6, 0}, {6, 6, 0}, {6, 5, 0}, {4, 5, L}, {4, 4, FL}, {4, 3, F}, {6, 3, 0}, {6, 2, 0}, {9, 2, L}}},
        {para(6, 0, -0.25), {{0, 7, 0}, {4, 7, 0}, {4, 6, 0}, {8, 6, 0}, {8, 5, 0}, {9, 5, L}, {9, 3, F}, {8, 3, 0}, {8, 2, 0}, {4, 2, 0}, {4, 1, 0}, {0, 1, L}}},
        // Column pitch 2, row pitch 1: the vertex row comes from the column rounding
        // of k (row 7, screen 1), not the row rounding (row 6, screen 2).
        {para(2, 2.25, 0.0625, Window{1, 17, -4, 4, 9, 9}), {{9, 4, 0}, {7, 4, 0}, {7, 3, 0}, {2, 3, L}, {2, 1, F}, {1, 1, L}, {1, 1, F}, {4, 1, 0}, {4, 0, 0}, {9, 0, L}}},
        {quad(1, 0, 10), {}}, {quad(-1, 0, -10), {}}, {quad(1, -20, 0), {}}, {quad(1, 20, 0), {}},
        {vert(0, -10, -1), {}}, {para(-20, 0, -0.25), {}}, {para(20, 0, 0.25), {}}, {para(0, 10, 0.25), {}},
    };
    for (size_t i = 0; i < cases.size(); ++i) EXPECT_EQ(cases[i].got, cases[i].want) << "case " << i;
    expectCopyDrawsAsSource<evalg::QuadraticFunctionEvalC, rel::QuadraticFunctionC>(0.5, 1, -3);
    expectCopyDrawsAsSource<evalg::ParabolaVertEvalC, rel::ParabolaVertC>(1, -3, 0.5);
    expectCopyDrawsAsSource<evalg::ParabolaEvalC, rel::ParabolaC>(1, -3, 0.5);
}

TEST(LinearAndQuadratic, AgreeWithDirectEvaluation) {
    Rng rng(11);
    for (int i = 0; i < 3000 && !HasFatalFailure(); ++i) {
        Window w = ordinaryWindow(rng);
        double m = rng.below(10) == 0 ? 0 : rng.uniform(-30, 30), h = rng.uniform(-15, 15), k = rng.uniform(-15, 15);
        checkColumnWalk(line(m, h, k, w), w, [&](double x) { return m * (x - h) + k; }, h, 2);
        // Where the halves meet at a visible vertex no column is drawn twice; with
        // the vertex below or above, a column holding both crossings may be.
        int maxRun = k < w.yMin || k > w.yMax ? 6 : 2;
        double a = m / 3;
        checkColumnWalk(quad(a, h, k, w), w, [&](double x) { return a * ((x - h) * (x - h)) + k; }, h, maxRun);
    }
}

TEST(ParabolaEvalC, DrawsTheQuadraticTransposed) {
    Rng rng(23);
    for (int i = 0; i < 2000; ++i) {
        double lo = rng.uniform(-10, 10), hi = lo + rng.uniform(0.5, 20);
        int n = 1 + rng.below(200);
        Window w{lo, hi, lo, hi, (unsigned short)n, (unsigned short)n}; // square: both grids alike
        double c = std::ldexp(rng.below(2) ? 1.0 : -1.0, rng.below(12) - 6), h = rng.uniform(-15, 15), k = rng.uniform(-15, 15);
        // Rows here are the quadratic's columns. A run clamped at rightEdge ends in
        // column n where the quadratic's ends on the top row's centre: fold it
        // back, and compare both with repeated points as one.
        std::vector<XY> got, want = xys(quad(c, h, k, w));
        for (Pt const &p : para(k, h, 1 / (4 * c), w)) got.push_back(XY{n - 1 - p.y, n - 1 - std::min(p.x, n - 1)});
        got.erase(std::unique(got.begin(), got.end()), got.end());
        want.erase(std::unique(want.begin(), want.end()), want.end());
        ASSERT_EQ(got, want) << "c " << c << " h " << h << " k " << k << " n " << n;
    }
}

// Cancellation at these magnitudes puts a half's computed start tens of
// thousands of pixels beyond the window; the half starts at the window's edge
// instead. There the two quadratics' first step exceeds the window's height,
// so each spans it in the edge column and leaves; the row walk stays on rows.
TEST(QuadraticFamily, StartFarBeyondTheWindowIsTakenToItsEdge) {
    Window const w1{-68.808594254145348, -68.808590152833645, 6.5296923832236046e-10, 6.5296923832711137e-10, 58, 28};
    Window const w2{-4.1964354731018715e-05, -4.1959232441762563e-05, 5.1096652819408009e-16, 5.1096652820151569e-16, 75, 76};
    Window const w3{0.44417359452548427, 0.44417359452568622, 0.029968380736118405, 0.029968380959400243, 47, 81};
    EXPECT_EQ(xys(quad(2.7097110330909505e+45, 68485412197383.195, -1.270922673571505e+73, w1)), (std::vector<XY>{{57, 0}, {57, 27}}));
    EXPECT_EQ(xys(quad(1.2865892268146797e+51, -49701390893.959213, -3.1781690629645304e+72, w2)), (std::vector<XY>{{0, 75}, {0, 0}}));
    for (Pt const &p : para(1510144.8154352913, -1887452891.2765894, -589757920616.0769, w3)) EXPECT_TRUE(p.y >= 0 && p.y < w3.n) << p;
}

// Bounds, for M columns and N rows: a walk emits at most two points per step
// and a step advances at least half a pitch (less only when the pitch nears
// the coordinate's ulp). A line starts within half a window of its edge, so
// at most 4(M + 2) points. A parabola's half starts at most two pixels beyond
// the window, so its halves take at most 2(P + 4) steps for P pixels along
// the walk, plus two vertex points: 4(M + 4) + 2, or 4(N + 4) + 2 for rows,
// and the horizontal-axis parabola's a == 0 line has M points.
TEST(LinearAndQuadratic, AnyInputEndsWithBoundedOutput) {
    Rng rng(24);
    for (int i = 0; i < 3000; ++i) {
        Window w = wildWindow(rng);
        double a = rng.wild(10), h = rng.wild(1e6), k = rng.wild(1e6);
        ASSERT_LE(line(a, h, k, w).size(), 4u * (w.m + 2u));
        ASSERT_LE(quad(a, h, k, w).size(), 4u * (w.m + 4u) + 2u);
        ASSERT_LE(vert(h, k, a, w).size(), 4u * (w.m + 4u) + 2u);
        ASSERT_LE(para(h, k, a, w).size(), std::max(4u * (w.n + 4u) + 2u, unsigned(w.m)));
    }
}

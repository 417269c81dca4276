// Graphs of arbitrary expressions: breaks at poles and jumps and nowhere
// else, no line across a pole, gaps where undefined, exact points, the
// driver's cases and wild inputs. Coverage and overdrawing are proven against
// MPFI in proven_graph_test.cpp.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "collab/ds/PixelPointC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "evalg/ArbitraryFunctionFloat64EvalC.h"
#include "support/RandomExpression.h"
#include "support/TestSupport.h"

using evalgtest::Grid;
using evalgtest::Pt;
using evalgtest::Window;
using qelt::math::algexpr::AlgebraicExpressionC;
using qelt::mathapp::ds::PixelPointC;
using qelt::mathapp::evalg::ArbitraryFunctionFloat64EvalC;
using qelt::mathapp::rel::ArbitraryFunctionC;
using qelt::oss::PointerTC;
using Expr = PointerTC<AlgebraicExpressionC>;

namespace {

unsigned const F = PixelPointC::FIRST_VISIBLE;
unsigned const L = PixelPointC::LAST_VISIBLE;

Window const standard{-8, 8, -5, 5, 161, 101};

std::vector<Pt> draw(Expr const &e, Window const &w, bool pointSampling = false) {
    ArbitraryFunctionFloat64EvalC evaluator(pointSampling);
    return evalgtest::draw(evaluator, new ArbitraryFunctionC(e), w);
}

Expr parse(char const *infix) {
    std::string error;
    Expr e = AlgebraicExpressionC::fromInfixString(infix, &error);
    EXPECT_TRUE(e) << infix << ": " << error;
    return e;
}

// Every stretch opens with FIRST_VISIBLE and closes with LAST_VISIBLE, and the
// points run left to right.
bool wellFormed(std::vector<Pt> const &pts) {
    bool open = false;
    for (std::size_t i = 0; i < pts.size(); ++i) {
        if (open == bool(pts[i].m & F)) return false;
        open = !(pts[i].m & L);
        if (i > 0 && pts[i].x < pts[i - 1].x) return false;
    }
    return !open;
}

int stretchCount(std::vector<Pt> const &pts) { return int(evalgtest::withMarker(pts, F).size()); }

// Stretches counted by hand from where each curve breaks and leaves the
// window; no point in a column wholly outside the curve's domain.
TEST(ArbitraryGraph, BreaksExactlyWhereTheCurveBreaks) {
    double const all = 1e300;
    struct Case {
        char const *curve;
        Window w;
        int stretches;
        double from, to; // the domain
    } const cases[] = {
        {"tan(x)", {-7, 7, -5, 5, 141, 101}, 5, -all, all}, // four poles, five branches
        {"1/x", standard, 2, -all, all},
        {"1/(x^2-1)", standard, 3, -all, all},
        {"floor(x)", {-3.2, 3.2, -5, 5, 65, 101}, 8, -all, all}, // values -4 to 3
        // Steps 6..9, 2..4, 0..1, 1..2, 4..6, 9..9.75; the first step,
        // 12..13, lies above the window. At 0 the product has no jump, but
        // floor's does, and a join is made only where continuity is proven.
        {"x floor(x)", {-3.2, 3.2, -10, 10, 65, 101}, 7, -all, all},
        {"50x^3 - x", standard, 1, -all, all}, // steep, never broken
        {"exp(x)", standard, 1, -all, all},
        {"sqrt(4-x^2)", standard, 1, -2, 2},
        {"ln(x)", standard, 1, 0, all},
        {"sqrt(x-1) + asin(x/3)", standard, 1, 1, 3},
        {"sin(x)/x", standard, 2, -all, all}, // no join across its one-point hole
        {"sign(x)", standard, 3, -all, all},  // and the isolated point (0, 0)
        // The same off the simple numbers: the double nearest 0.3 (1/3) is
        // never a piece end, and its point is found inside the jump's sliver.
        {"sign(x - 0.3)", standard, 3, -all, all},
        {"-sign(1/3 - x)", standard, 3, -all, all},
        {"floor(x - 0.3)", standard, 11, -all, all}, // steps -5 to 5, no points between
        {"x^2 + 6", standard, 0, -all, all}, // above the window
    };
    for (Case const &c : cases) {
        Grid g(c.w);
        std::vector<Pt> pts = draw(parse(c.curve), c.w);
        EXPECT_TRUE(wellFormed(pts)) << c.curve;
        EXPECT_EQ(stretchCount(pts), c.stretches) << c.curve;
        for (Pt const &p : pts) {
            double left = g.leftEdge + g.xStep * p.x, right = left + g.xStep;
            EXPECT_TRUE(right >= c.from && left <= c.to) << c.curve << " column " << p.x;
        }
    }
}

// A joined pair of points spanning more than half the window's height at a
// pole's column is the false vertical line of column sampling (a true branch
// there runs off the window well within half its height on these windows).
int poleCrossings(std::vector<Pt> const &pts, Window const &w, std::vector<double> const &poles) {
    Grid g(w);
    int crossings = 0;
    for (double p : poles) {
        int column = int(std::floor((p - g.leftEdge) / g.xStep));
        for (std::size_t i = 0; i + 1 < pts.size(); ++i) {
            Pt const &a = pts[i], &b = pts[i + 1];
            bool joined = !(a.m & L);
            bool across = a.x <= column && column <= b.x;
            crossings += joined && across && std::abs(a.y - b.y) > w.n / 2;
        }
    }
    return crossings;
}

TEST(ArbitraryGraph, NoLineAcrossAPole) {
    double const pi = 3.14159265358979323846;
    struct Case {
        char const *curve;
        std::vector<double> poles;
    } const cases[] = {
        {"tan(x)", {-5 * pi / 2, -3 * pi / 2, -pi / 2, pi / 2, 3 * pi / 2, 5 * pi / 2}},
        {"1/x", {0}},
        {"-1/x", {0}},
        {"1/(x^2-1)", {-1, 1}},
        {"1/sin(x)", {-2 * pi, -pi, 0, pi, 2 * pi}},
    };
    for (Window const &w : {standard, Window{-8, 8, -5, 5, 33, 21}}) {
        for (Case const &c : cases) {
            EXPECT_EQ(poleCrossings(draw(parse(c.curve), w), w, c.poles), 0) << c.curve;
        }
    }
    // Point sampling has no such guarantee, and the check sees the difference.
    Window coarse{-8, 8, -5, 5, 33, 21};
    EXPECT_GT(poleCrossings(draw(parse("tan(x)"), coarse, true), coarse, cases[0].poles), 0);
}

// y = x on a 5x5 window over [0, 4]: column c spans x and y in [c - 0.5,
// c + 0.5], the rows of c and c + 1 (the upper edge belongs to the next
// row), clamped to the top row's centre in the last column.
TEST(ArbitraryGraph, ExactPointsOfALine) {
    Window w{0, 4, 0, 4, 5, 5};
    std::vector<Pt> expected = {{0, 4, F}, {0, 3, 0}, {1, 3, 0}, {1, 2, 0}, {2, 2, 0},
                                {2, 1, 0}, {3, 1, 0}, {3, 0, 0}, {4, 0, L}};
    EXPECT_EQ(draw(parse("x"), w), expected);
    // Point sampling joins the same edge values here.
    EXPECT_EQ(draw(parse("x"), w, true), expected);
}

TEST(ArbitraryGraph, DriverCases) {
    qelt::mathapp::esb::CartesianRelationServiceC other(new qelt::mathapp::rel::QuadraticFunctionC(1, 0, 0));
    ArbitraryFunctionFloat64EvalC evaluator;
    PointerTC<qelt::mathapp::ds::GraphicalDomainC> domain = evalgtest::makeDomain(standard);
    unsigned long before = domain->getReferenceCount();
    PointerTC<qelt::mathapp::ds::GraphDataSetWinC> set = evaluator.evaluateGraph(other, domain);
    ASSERT_TRUE(set);
    EXPECT_EQ(set->getCount(), 0u);
    EXPECT_EQ(set->getReferenceCount(), 1u);
    set.reset();
    EXPECT_EQ(domain->getReferenceCount(), before);
    EXPECT_TRUE(draw(parse("x"), Window{1, 1, -5, 5, 10, 10}).empty());
    // One column: an infinite step, no column to walk.
    EXPECT_TRUE(draw(parse("x"), Window{-1, 1, -5, 5, 1, 10}).empty());
    EXPECT_TRUE(evalgtest::draw(evaluator, new ArbitraryFunctionC(nullptr), standard).empty());
    // A copy draws the same, in its own mode.
    ArbitraryFunctionFloat64EvalC sampler(true);
    ArbitraryFunctionFloat64EvalC copy(sampler);
    EXPECT_TRUE(copy.getPointSampling());
    Expr e = parse("tan(x)");
    EXPECT_EQ(evalgtest::draw(copy, new ArbitraryFunctionC(e), standard), draw(e, standard, true));
    copy = evaluator;
    EXPECT_EQ(evalgtest::draw(copy, new ArbitraryFunctionC(e), standard), draw(e, standard));
}

// Seeded random expressions on wild windows: every walk ends, every point
// lies on the grid, and the markers pair up.
TEST(ArbitraryGraph, RandomExpressionsOnWildWindows) {
    evalgtest::Rng rng(31);
    for (int i = 0; i < 250; ++i) {
        std::string text = evalgtest::randomPrefix(rng, 5);
        Expr e = AlgebraicExpressionC::fromPrefixString(evalgtest::toU16(text));
        double x0 = rng.wild(50), y0 = rng.wild(50);
        Window w{x0, x0 + std::fabs(rng.wild(20)), y0, y0 + std::fabs(rng.wild(20)),
                 static_cast<unsigned short>(1 + rng.below(300)), static_cast<unsigned short>(1 + rng.below(200))};
        for (bool sampling : {false, true}) {
            std::vector<Pt> pts = draw(e, w, sampling);
            EXPECT_TRUE(wellFormed(pts)) << text;
            for (Pt const &p : pts) {
                EXPECT_TRUE(p.x >= 0 && p.x < w.m && p.y >= 0 && p.y < w.n) << text << " " << p;
            }
        }
    }
}

} // namespace

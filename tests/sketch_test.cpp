#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "collab/ds/FloatPointC.h"
#include "collab/rel/SketchC.h"
#include "evalg/SketchEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using qelt::mathapp::ds::FloatDataSetC;
using qelt::mathapp::ds::FloatPointC;
using qelt::mathapp::evalg::SketchEvalC;
using qelt::mathapp::rel::SketchC;
using Point = std::array<double, 3>; // x, y, marks

namespace {

// 5x5 pixels over [0, 4]^2: pixel (c, r) has its centre at (c, 4 - r).
Window const W{0, 4, 0, 4, 5, 5};
unsigned const Xi = FloatPointC::X_INTERCEPT, Yi = FloatPointC::Y_INTERCEPT, T = FloatPointC::TURNING_POINT;

PointerTC<GraphDataSetWinC> pixelSet(std::vector<XY> const &path, PointerTC<GraphicalDomainC> domain) {
    PointerTC<GraphDataSetWinC> set(new GraphDataSetWinC(8, 0, domain));
    for (XY const &p : path) set->appendPixelPoint(long(p.x), long(p.y), 0);
    return set;
}

std::vector<Point> sketchPoints(SketchC const &sketch) {
    std::vector<Point> out;
    for (FloatPointC const *p : sketch.getValues()) out.push_back({p->getX(), p->getY(), double(p->getMarks())});
    return out;
}

} // namespace

TEST(SketchEval, CreateSketchMarksAxesAndTurns) {
    struct Case {
        char const *name;
        std::vector<XY> path;
        std::vector<Point> expected;
    } const cases[] = {
        {"rise then fall: only the top", {{1, 3}, {2, 2}, {3, 1}, {4, 2}}, {{1, 1, 0}, {2, 2, 0}, {3, 3, T}, {4, 2, 0}}},
        {"plateau: its last point", {{1, 3}, {2, 2}, {3, 2}, {4, 3}}, {{1, 1, 0}, {2, 2, 0}, {3, 2, T}, {4, 1, 0}}},
        {"constant height: no turn", {{1, 2}, {2, 2}, {3, 2}}, {{1, 2, 0}, {2, 2, 0}, {3, 2, 0}}},
        {"one-sided axis marks, left and bottom kept", {{0, 4}, {-2, 6}, {1, 0}},
         {{0, 0, Xi | Yi}, {-2, -2, Xi | Yi | T}, {1, 4, 0}}},
        {"right and top skipped, turn seen across them", {{1, 3}, {2, 2}, {5, 0}, {2, -1}, {3, 3}, {4, 0}},
         {{1, 1, 0}, {2, 2, T}, {3, 1, T}, {4, 4, 0}}},
        {"empty path", {}, {}},
    };
    for (Case const &c : cases) {
        PointerTC<SketchC> sketch(SketchEvalC().createSketch(pixelSet(c.path, makeDomain(W))));
        ASSERT_TRUE(sketch) << c.name;
        EXPECT_EQ(sketchPoints(*sketch), c.expected) << c.name;
    }
}

TEST(SketchEval, CreateSketchRefusesNullSetAndInvalidWindow) {
    SketchEvalC evaluator;
    EXPECT_EQ(evaluator.createSketch(nullptr), nullptr);
    EXPECT_EQ(evaluator.createSketch(pixelSet({{1, 1}}, makeDomain({4, 0, 0, 4, 5, 5}))), nullptr);
    EXPECT_EQ(evaluator.createSketch(pixelSet({{1, 1}}, nullptr)), nullptr);
}

TEST(SketchEval, EvaluatePixelsPlacesEveryPointUnclipped) {
    double const N = std::nan(""), inf = std::numeric_limits<double>::infinity();
    PointerTC<FloatDataSetC> data(new FloatDataSetC);
    // Column floor(x + 0.5), row 5 - floor(y + 0.5); out-of-range values give
    // 0, and 32-bit coordinates wrap.
    std::vector<Point> const in = {{0, 0}, {4, 4}, {10, -3}, {N, inf}, {1e300, -1e300}, {3e9, 0}, {0, -2147483648.0}};
    std::vector<XY> const expected = {{0, 5}, {4, 1}, {10, 8}, {0, 5}, {0, 5}, {-1294967296, 5}, {0, -2147483643}};
    for (Point const &p : in) data->addPoint(new FloatPointC(p[0], p[1], 0));
    SketchC sketch(data);
    std::vector<Pt> pts = points(SketchEvalC().evaluatePixels(sketch, makeDomain(W)));
    EXPECT_EQ(xys(pts), expected);
    EXPECT_TRUE(withMarker(pts, 0xFF).empty());
    EXPECT_TRUE(points(SketchEvalC().evaluatePixels(sketch, makeDomain({4, 0, 0, 4, 5, 5}))).empty());
}

TEST(SketchEval, RandomRoundTripMovesEveryKeptPixelDownOneRow) {
    Rng rng(7);
    for (int i = 0; i < 200; ++i) {
        double xMin = rng.uniform(-100, 100), yMin = rng.uniform(-100, 100);
        Window w{xMin, xMin + rng.uniform(0.5, 100), yMin, yMin + rng.uniform(0.5, 100),
                 (unsigned short)(2 + rng.below(400)), (unsigned short)(2 + rng.below(400))};
        std::vector<XY> path, kept;
        for (int k = 0; k < 30; ++k) {
            XY p{rng.below(w.m + 10) - 5, rng.below(w.n + 10) - 5};
            path.push_back(p);
            // Only pixels right of the last column or above the top row are dropped.
            if (p.x < w.m && p.y >= 0) kept.push_back(XY{p.x, p.y + 1});
        }
        PointerTC<SketchC> sketch(SketchEvalC().createSketch(pixelSet(path, makeDomain(w))));
        ASSERT_TRUE(sketch);
        EXPECT_EQ(xys(points(SketchEvalC().evaluatePixels(*sketch, makeDomain(w)))), kept) << i;
    }
}

#include <array>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "collab/ds/FloatPointC.h"
#include "collab/rel/SketchC.h"
#include "evalg/SketchEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using qelt::mathapp::ds::FloatPointC;
using qelt::mathapp::evalg::SketchEvalC;
using qelt::mathapp::rel::SketchC;
using Point = std::array<double, 3>; // x, y, marks

namespace {

// 5x5 pixels over [0, 4]^2: pixel (c, r) has its centre at (c, 4 - r).
Window const W{0, 4, 0, 4, 5, 5};
Window const Invalid{4, 0, 0, 4, 5, 5};

PointerTC<GraphDataSetWinC> pixelSet(std::vector<XY> const &path, PointerTC<GraphicalDomainC> domain) {
    PointerTC<GraphDataSetWinC> set(new GraphDataSetWinC(8, 0, domain));
    for (XY const &p : path) set->appendPixelPoint(long(p.x), long(p.y), 0);
    return set;
}

} // namespace

TEST(SketchEval, CreateSketchMarksAxesAndTurns) {
    double const Xi = FloatPointC::X_INTERCEPT, Yi = FloatPointC::Y_INTERCEPT, T = FloatPointC::TURNING_POINT;
    struct Case { char const *name; std::vector<XY> path; std::vector<Point> expected; };
    Case const cases[] = {
        {"rise then fall: only the top", {{1, 3}, {2, 2}, {3, 1}, {4, 2}},
         {{1, 1, 0}, {2, 2, 0}, {3, 3, T}, {4, 2, 0}}},
        {"plateau: its last point", {{1, 3}, {2, 2}, {3, 2}, {4, 3}}, {{1, 1, 0}, {2, 2, 0}, {3, 2, T}, {4, 1, 0}}},
        {"constant height: no turn", {{1, 2}, {2, 2}, {3, 2}}, {{1, 2, 0}, {2, 2, 0}, {3, 2, 0}}},
        {"one-sided axis marks; left and bottom kept", {{0, 4}, {-2, 6}, {1, 0}},
         {{0, 0, Xi + Yi}, {-2, -2, Xi + Yi + T}, {1, 4, 0}}},
        {"right and top skipped; turns seen across them", {{1, 3}, {2, 2}, {5, 0}, {2, -1}, {3, 3}, {4, 0}},
         {{1, 1, 0}, {2, 2, T}, {3, 1, T}, {4, 4, 0}}},
        {"empty path", {}, {}},
    };
    for (Case const &c : cases) {
        PointerTC<SketchC> sketch(SketchEvalC().createSketch(pixelSet(c.path, makeDomain(W))));
        ASSERT_TRUE(sketch) << c.name;
        std::vector<Point> got;
        for (FloatPointC const *p : sketch->getValues()) got.push_back({p->getX(), p->getY(), double(p->getMarks())});
        EXPECT_EQ(got, c.expected) << c.name;
    }
    // A centre exactly half a step from an axis still counts as on it.
    PointerTC<SketchC> edge(SketchEvalC().createSketch(pixelSet({{0, 4}}, makeDomain({0.5, 4.5, 0.5, 4.5, 5, 5}))));
    EXPECT_EQ(edge->getValues().at(0)->getMarks(), Xi + Yi);
    EXPECT_EQ(SketchEvalC().createSketch(nullptr), nullptr);
    EXPECT_EQ(SketchEvalC().createSketch(pixelSet({{1, 1}}, makeDomain(Invalid))), nullptr);
}

TEST(SketchEval, EvaluatePixelsPlacesEveryPointUnclipped) {
    // Column floor(x + 0.5), row 5 - floor(y + 0.5); values out of range give
    // 0, and 32-bit coordinates wrap.
    std::vector<Point> const in = {{0, 0}, {4, 4}, {10, -3}, {NAN, HUGE_VAL}, {1e300, -1e300},
                                   {3e9, 0}, {0, -2147483648.0}};
    std::vector<XY> const expected = {{0, 5}, {4, 1}, {10, 8}, {0, 5}, {0, 5}, {-1294967296, 5}, {0, -2147483643}};
    PointerTC<qelt::mathapp::ds::FloatDataSetC> data(new qelt::mathapp::ds::FloatDataSetC);
    for (Point const &p : in) data->addPoint(new FloatPointC(p[0], p[1], 0));
    SketchC sketch(data);
    std::vector<Pt> pts = points(SketchEvalC().evaluatePixels(sketch, makeDomain(W)));
    EXPECT_EQ(xys(pts), expected);
    EXPECT_TRUE(withMarker(pts, 0xFF).empty());
    EXPECT_TRUE(points(SketchEvalC().evaluatePixels(sketch, makeDomain(Invalid))).empty());
}

TEST(SketchEval, RandomRoundTripMovesEveryKeptPixelDownOneRow) {
    Rng rng(7);
    for (int i = 0; i < 200; ++i) {
        double xMin = rng.uniform(-100, 100), yMin = rng.uniform(-100, 100);
        Window w{xMin, xMin + rng.uniform(0.5, 100), yMin, yMin + rng.uniform(0.5, 100),
                 (unsigned short)(2 + rng.below(400)), (unsigned short)(2 + rng.below(400))};
        std::vector<XY> path, kept;
        for (int k = 0; k < 30; ++k) {
            path.push_back(XY{rng.below(w.m + 10) - 5, rng.below(w.n + 10) - 5});
            // Only pixels right of the last column or above the top row are dropped.
            if (path.back().x < w.m && path.back().y >= 0) kept.push_back(XY{path.back().x, path.back().y + 1});
        }
        PointerTC<SketchC> sketch(SketchEvalC().createSketch(pixelSet(path, makeDomain(w))));
        ASSERT_TRUE(sketch);
        EXPECT_EQ(xys(points(SketchEvalC().evaluatePixels(*sketch, makeDomain(w)))), kept) << i;
    }
}

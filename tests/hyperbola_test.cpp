// The hyperbola walks, both orientations: exact small cases traced by hand,
// degenerate parameters, and shapes checked for closeness to the curve,
// coverage, reading order, separate branches and the cells walked.
#include <gtest/gtest.h>

#include <limits>

#include "circle_conic_checks.h"
#include "collab/rel/HyperbolaC.h"
#include "collab/rel/HyperbolaVertC.h"
#include "evalg/HyperbolaEvalC.h"
#include "evalg/HyperbolaVertEvalC.h"

using namespace evalgtest;
using namespace qelt::mathapp;

namespace {

double const NaN = std::numeric_limits<double>::quiet_NaN(), Inf = std::numeric_limits<double>::infinity();

struct Hyp { bool vert; double h, k, a, b; };

std::vector<Pt> drawHyp(Hyp c, Window const &w, unsigned long *steps = nullptr) {
    if (c.vert) return drawCounted<evalg::HyperbolaVertEvalC, rel::HyperbolaVertC>(w, steps, c.h, c.k, c.a, c.b);
    return drawCounted<evalg::HyperbolaEvalC, rel::HyperbolaC>(w, steps, c.h, c.k, c.a, c.b);
}

// x = +-sqrt(1 + y^2) at the row edges +-0.5 .. +-4.5 is 1.118, 1.803, 2.693,
// 3.640 and 4.610 (clamped to 4): the spans' columns follow, bottom to top,
// each branch one stretch; the vertical case is the transpose, left to right.
TEST(HyperbolaExact, PointsAndMarkers) {
    Window const nine{-4, 4, -4, 4, 9, 9};
    struct { Hyp c; std::vector<Pt> want; } const cases[] = {
        {{false, 0, 0, 1, 1}, parse("0,8F 0,7 1,7 1,6 2,6 2,5 3,5 3,4 3,3 2,3 2,2 1,2 1,1 0,1 0,0L "
                                    "8,8F 8,7 7,7 7,6 6,6 6,5 5,5 5,4 5,3 6,3 6,2 7,2 7,1 8,1 8,0L")},
        {{true, 0, 0, 1, 1}, parse("0,8F 1,8 1,7 2,7 2,6 3,6 3,5 4,5 5,5 5,6 6,6 6,7 7,7 7,8 8,8L "
                                   "0,0F 1,0 1,1 2,1 2,2 3,2 3,3 4,3 5,3 5,2 6,2 6,1 7,1 7,0 8,0L")},
        // a = 0: the line x = 0, once.
        {{false, 0, 0, 0, 1}, parse("4,8F 4,7 4,6 4,5 4,4 4,3 4,2 4,1 4,0L")},
        // b = 0: each branch runs in along its ray to the vertex and back out,
        // also with the centre on a row edge, where the slope times 0 is NaN.
        {{false, 0, 0.5, 2, 0}, parse("0,3F 2,3 0,3L 8,3F 6,3 8,3L")},
        {{true, 0, 0, 0, 2}, parse("4,8F 4,6 4,8L 4,0F 4,2 4,0L")},
        // a infinite (vertical case): the lines y = -+2.
        {{true, 0, 0, Inf, 2}, parse("0,6F 1,6 2,6 3,6 4,6 5,6 6,6 7,6 8,6L 0,2F 1,2 2,2 3,2 4,2 5,2 6,2 7,2 8,2L")},
        // Nothing: an infinite vertex, 0/0, NaN, an infinite centre.
        {{false, 0, 0, Inf, 1}, {}}, {{false, 0, 0, 0, 0}, {}}, {{true, 0, 0, 1, NaN}, {}}, {{true, Inf, 0, 1, 1}, {}}};
    for (auto const &e : cases) EXPECT_EQ(drawHyp(e.c, nine), e.want) << "case " << &e - cases;
}

// Within a stretch the points read along one branch: a span stays in its row
// (column), the next row (column) starts where the last ended, the walk never
// turns back, and the side of the centre never changes (but for the pixel of a
// vertex): branches are not joined. The named shapes, then seeded random ones,
// every fourth with wild parameters that must only give stretches in the grid.
TEST(HyperbolaShape, TracedBranchByBranch) {
    struct { Hyp c; int stretches; } const cases[] = {
        {{false, 0.3, 0.2, 2, 1.5}, 2}, {{true, 0.3, 0.2, 3, 2.5}, 2}, // both branches
        {{false, -6, 0, 3, 1}, 1},      {{true, 0, -3, 1, 3}, 1},      // one branch
        // The vertex beyond the window: the two halves enter apart.
        {{false, -30, 0.05, 21, 4}, 2}, {{true, 0.05, 30, 4, 24.5}, 2},
        // The centre 10^12 pixels out, the branch crossing near its asymptote.
        {{false, -1e11, -1e11, 1e11 / std::sqrt(101.0), 1e10}, 1},
        {{true, 1e11, 1e11, 1e10, 1e11 / std::sqrt(101.0)}, 1},
        // Very flat and very steep asymptotes.
        {{false, 0.02, 0.01, 1, 0.01}, 2}, {{true, 0, 0.01, 100, 1}, 2},
        {{false, 0.01, 0, 1, 100}, 2},     {{true, 0.02, 0, 0.01, 1}, 2},
    };
    Rng rng(5);
    for (int n = 0; n < 2012; ++n) {
        Window w = n < 12 ? defaultWindow()
                          : Window{rng.uniform(-9, 0), rng.uniform(1, 9), rng.uniform(-9, 0), rng.uniform(1, 9),
                                   (unsigned short)(1 + rng.below(150)), (unsigned short)(1 + rng.below(150))};
        Hyp c = n < 12 ? cases[n].c : Hyp{n % 2 == 0, rng.uniform(-12, 12), rng.uniform(-12, 12), std::exp(rng.uniform(-5, 3)), std::exp(rng.uniform(-5, 3))};
        if (n >= 12 && n % 4 == 0) c = {n % 8 == 0, rng.wild(12), rng.wild(12), rng.wild(6), rng.wild(6)};
        SCOPED_TRACE(testing::Message() << "case " << n);
        unsigned long steps = 0;
        std::vector<Pt> pts = drawHyp(c, w, &steps);
        auto parts = stretches(pts);
        EXPECT_LE(steps, 2u * (c.vert ? w.m : w.n));
        EXPECT_TRUE(n >= 12 || int(parts.size()) == cases[n].stretches) << parts.size() << " stretches";
        if (n >= 12 && (n % 4 == 0 || w.m == 1 || w.n == 1)) {
            for (Pt p : pts) ASSERT_TRUE(p.x >= 0 && p.x < w.m && p.y >= 0 && p.y < w.n) << p;
            continue;
        }
        double xs = (w.xMax - w.xMin) / (w.m - 1), ys = (w.yMax - w.yMin) / (w.n - 1);
        auto side = [&](Pt p) { return c.vert ? w.yMax - p.y * ys - c.k : w.xMin + p.x * xs - c.h; };
        auto g = [c](double x, double y) {
            double u = (x - c.h) / c.a, v = (y - c.k) / c.b;
            return c.vert ? v * v - u * u - 1 : u * u - v * v - 1;
        };
        for (auto s : parts)
            for (size_t i = s.first; i < s.second; ++i) {
                Pt p = pts[i], q = pts[i > s.first ? i - 1 : i];
                int along = c.vert ? p.x - q.x : q.y - p.y, across = c.vert ? p.y - q.y : p.x - q.x;
                ASSERT_TRUE(p.x >= 0 && p.x < w.m && p.y >= 0 && p.y < w.n && nearCurve(g, w, p, c.h, c.k)) << p;
                ASSERT_TRUE(i == s.first || (along == 0 && across != 0) || (along == 1 && across == 0)) << q << p;
                ASSERT_FALSE(side(p) * side(q) < 0 && std::min(std::fabs(side(p)), std::fabs(side(q))) > (c.vert ? ys : xs))
                    << "joins the branches: " << q << " to " << p;
            }
        if (c.vert) expectCovered(pts, w, rel::HyperbolaVertC(c.h, c.k, c.a, c.b), rel::HyperbolaC(c.k, c.h, c.b, c.a));
        if (!c.vert) expectCovered(pts, w, rel::HyperbolaC(c.h, c.k, c.a, c.b), rel::HyperbolaVertC(c.k, c.h, c.b, c.a));
    }
}

} // namespace

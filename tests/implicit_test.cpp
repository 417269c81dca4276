// Implicit relations h(x, y) op 0, checked pixel by pixel against MPFI
// (128-bit intervals, written here straight from each formula): a pixel
// where high-precision samples prove the relation holds must be drawn, and a
// pixel whose box MPFI proves empty of solutions must not be.
#include <mpfi.h>

#include <cmath>
#include <map>
#include <utility>

#include <gtest/gtest.h>

#include "SampleBoxFunctions.h"
#include "TestSupport.h"
#include "collab/ds/PixelPointC.h"
#include "collab/rel/ImplicitRelationC.h"
#include "evalg/ImplicitRelationEvalC.h"

using namespace evalgtest;
using qelt::mathapp::ds::PixelPointC;
using qelt::mathapp::evalg::ImplicitRelationEvalC;
using qelt::mathapp::rel::ImplicitRelationC;

namespace {

struct Mpfi {
    mpfi_t v;
    Mpfi() { mpfi_init2(v, 128); }
    ~Mpfi() { mpfi_clear(v); }
};

// h over the box [x0, x1] x [y0, y1], by MPFI.
void reference(SampleCurve curve, double c, double x0, double x1, double y0, double y1, double &lo, double &hi) {
    Mpfi x, y, a, b;
    mpfi_interv_d(x.v, x0, x1);
    mpfi_interv_d(y.v, y0, y1);
    switch (curve) {
    case SampleCurve::CIRCLE:
    case SampleCurve::WAVY_CIRCLE:
        mpfi_sqr(a.v, x.v);
        mpfi_sqr(b.v, y.v);
        mpfi_add(a.v, a.v, b.v);
        if (curve == SampleCurve::WAVY_CIRCLE) {
            mpfi_mul_ui(b.v, x.v, 4);
            mpfi_sin(b.v, b.v);
            mpfi_add(a.v, a.v, b.v);
        }
        break;
    case SampleCurve::SIN_COS:
        mpfi_sin(a.v, x.v);
        mpfi_cos(b.v, y.v);
        mpfi_sub(a.v, a.v, b.v);
        break;
    case SampleCurve::CUBIC:
        mpfi_sqr(a.v, y.v);
        mpfi_sqr(b.v, x.v);
        mpfi_mul(b.v, b.v, x.v);
        mpfi_sub(a.v, a.v, b.v);
        mpfi_add(a.v, a.v, x.v);
        break;
    case SampleCurve::POLE:
        // No value at 0: nothing is proven there, so the box is the whole line.
        if (x0 <= 0 && x1 >= 0) {
            lo = -INFINITY;
            hi = INFINITY;
            return;
        }
        mpfi_inv(a.v, x.v);
        break;
    }
    mpfi_sub_d(a.v, a.v, c);
    lo = mpfr_get_d(&a.v->left, MPFR_RNDD);
    hi = mpfr_get_d(&a.v->right, MPFR_RNDU);
}

// Whether the values [lo, hi] prove that the relation holds (at a point) or
// fails (over a box).
bool holds(ImplicitRelationC::ComparisonE op, double lo, double hi) {
    switch (op) {
    case ImplicitRelationC::EQUAL: return false;
    case ImplicitRelationC::LESS: return hi < 0;
    case ImplicitRelationC::LESS_EQUAL: return hi <= 0;
    case ImplicitRelationC::GREATER: return lo > 0;
    case ImplicitRelationC::GREATER_EQUAL: return lo >= 0;
    }
    return false;
}
bool fails(ImplicitRelationC::ComparisonE op, double lo, double hi) {
    switch (op) {
    case ImplicitRelationC::EQUAL: return lo > 0 || hi < 0;
    case ImplicitRelationC::LESS: return lo >= 0;
    case ImplicitRelationC::LESS_EQUAL: return lo > 0;
    case ImplicitRelationC::GREATER: return hi <= 0;
    case ImplicitRelationC::GREATER_EQUAL: return hi < 0;
    }
    return false;
}

// The drawn pixels, (column, screen row) -> undecided, after checking the
// run format: every stretch one run of one row (a point with both markers,
// or a first and a last point), in screen order, runs never touching.
using Pixels = std::map<std::pair<int, int>, bool>;
Pixels decode(std::vector<Pt> const &pts) {
    Pixels drawn;
    unsigned const ends = PixelPointC::FIRST_VISIBLE | PixelPointC::LAST_VISIBLE;
    int lastRow = -1, lastColumn = -2;
    for (size_t i = 0; i < pts.size();) {
        Pt a = pts[i];
        EXPECT_TRUE(a.m & PixelPointC::FIRST_VISIBLE) << "at " << i;
        Pt b = a;
        if ((a.m & ends) != ends) {
            EXPECT_LT(i + 1, pts.size());
            if (i + 1 >= pts.size()) break;
            b = pts[i + 1];
            EXPECT_EQ(b.m & ends, unsigned(PixelPointC::LAST_VISIBLE)) << "at " << i + 1;
            EXPECT_EQ(b.y, a.y);
            EXPECT_LT(a.x, b.x);
            EXPECT_EQ(a.m & PixelPointC::UNDECIDED, b.m & PixelPointC::UNDECIDED);
        }
        i += (a.m & ends) == ends ? 1 : 2;
        EXPECT_TRUE(a.y > lastRow || (a.y == lastRow && a.x > lastColumn)) << "out of order at " << a;
        lastRow = a.y;
        lastColumn = b.x;
        for (int x = a.x; x <= b.x; ++x) drawn[{x, a.y}] = (a.m & PixelPointC::UNDECIDED) != 0;
    }
    return drawn;
}

std::vector<Pt> drawImplicit(SampleCurve curve, double c, ImplicitRelationC::ComparisonE op, Window const &w,
                             bool everyPixel = false) {
    PointerTC<qelt::mathapp::rel::BoxFunctionIC> h(new SampleBoxFunction(curve, c));
    PointerTC<qelt::mathapp::rel::RelationC> relation(new ImplicitRelationC(h, op));
    qelt::mathapp::esb::CartesianRelationServiceC service(relation);
    ImplicitRelationEvalC evaluator;
    return points(evaluator.evaluateGraph(service, makeDomain(w), everyPixel));
}

struct Case {
    SampleCurve curve;
    double c;
    ImplicitRelationC::ComparisonE op;
    double reach; // windows are drawn around the origin within this
    bool tidy;    // nearly every drawn pixel proven (not so beside a pole)
};

Case const cases[] = {
    {SampleCurve::CIRCLE, 9, ImplicitRelationC::EQUAL, 5, true},
    {SampleCurve::WAVY_CIRCLE, 9, ImplicitRelationC::EQUAL, 5, true},
    {SampleCurve::SIN_COS, 0, ImplicitRelationC::EQUAL, 12, true},
    {SampleCurve::CUBIC, 0, ImplicitRelationC::EQUAL, 3, true},
    {SampleCurve::CIRCLE, 9, ImplicitRelationC::LESS, 5, true},
    {SampleCurve::SIN_COS, 0.5, ImplicitRelationC::GREATER_EQUAL, 12, true},
    {SampleCurve::CUBIC, 0, ImplicitRelationC::LESS_EQUAL, 3, true},
    {SampleCurve::WAVY_CIRCLE, 9, ImplicitRelationC::GREATER, 5, true},
    {SampleCurve::POLE, 0.5, ImplicitRelationC::EQUAL, 4, false},
    {SampleCurve::POLE, -1, ImplicitRelationC::LESS, 4, false},
};

} // namespace

// Seeded random windows: every sampled solution's pixel is drawn, no pixel
// MPFI excludes is drawn, and nearly every drawn pixel is proven.
TEST(ImplicitRelation, AgreesWithMpfiPixelByPixel) {
    Rng rng(11);
    int const grid = 5;
    for (Case const &k : cases) {
        for (int trial = 0; trial < 6; ++trial) {
            double x0 = rng.uniform(-k.reach, k.reach * 0.5), y0 = rng.uniform(-k.reach, k.reach * 0.5);
            Window w{x0, x0 + rng.uniform(0.5, k.reach), y0, y0 + rng.uniform(0.5, k.reach),
                     (unsigned short)(2 + rng.below(70)), (unsigned short)(2 + rng.below(70))};
            SCOPED_TRACE(::testing::Message() << "curve " << int(k.curve) << " op " << k.op << " window " << w.xMin
                                              << " " << w.xMax << " " << w.yMin << " " << w.yMax << " " << w.m
                                              << "x" << w.n);
            Pixels drawn = decode(drawImplicit(k.curve, k.c, k.op, w));
            double xStep = (w.xMax - w.xMin) / double(w.m - 1), yStep = (w.yMax - w.yMin) / double(w.n - 1);
            double left = w.xMin - xStep * 0.5, bottom = w.yMin - yStep * 0.5;
            int undecided = 0;
            for (int col = 0; col < w.m; ++col)
                for (int row = 0; row < w.n; ++row) {
                    double px0 = left + xStep * col, px1 = left + xStep * (col + 1);
                    double py0 = bottom + yStep * row, py1 = bottom + yStep * (row + 1);
                    auto found = drawn.find({col, int(w.n) - 1 - row});
                    bool isDrawn = found != drawn.end();
                    undecided += isDrawn && found->second;
                    double lo, hi;
                    reference(k.curve, k.c, px0, px1, py0, py1, lo, hi);
                    if (fails(k.op, lo, hi)) {
                        EXPECT_FALSE(isDrawn) << "excluded pixel drawn: " << col << "," << row;
                        continue;
                    }
                    bool positive = false, negative = false, satisfied = false;
                    for (int i = 0; i < grid; ++i)
                        for (int j = 0; j < grid; ++j) {
                            double x = px0 + (px1 - px0) * i / (grid - 1), y = py0 + (py1 - py0) * j / (grid - 1);
                            reference(k.curve, k.c, x, x, y, y, lo, hi);
                            positive = positive || lo > 0;
                            negative = negative || hi < 0;
                            satisfied = satisfied || holds(k.op, lo, hi);
                        }
                    bool met = k.op == ImplicitRelationC::EQUAL ? positive && negative : satisfied;
                    if (met) {
                        EXPECT_TRUE(isDrawn) << "pixel with a solution left out: " << col << "," << row;
                    }
                }
            if (k.tidy) {
                EXPECT_LE(undecided, int(drawn.size()) / 20 + 4) << "too many undecided pixels";
            }
        }
    }
}

// The quadtree decides every pixel exactly as classifying each on its own.
TEST(ImplicitRelation, QuadtreeMatchesEveryPixel) {
    Rng rng(7);
    for (Case const &k : cases) {
        double x0 = rng.uniform(-k.reach, 0), y0 = rng.uniform(-k.reach, 0);
        Window w{x0, x0 + k.reach, y0, y0 + k.reach, (unsigned short)(50 + rng.below(150)),
                 (unsigned short)(50 + rng.below(150))};
        EXPECT_EQ(drawImplicit(k.curve, k.c, k.op, w, false), drawImplicit(k.curve, k.c, k.op, w, true));
    }
}

// x^2 + y^2 = 9 is a closed ring: from the centre, the undrawn pixels do not
// lead out to the window's border, and the drawn ones are one 8-connected
// piece.
TEST(ImplicitRelation, CircleIsAClosedRing) {
    Window const windows[] = {defaultWindow(), {-4, 4, -4, 4, 81, 81}, {-3.5, 3.5, -3.2, 3.2, 400, 300},
                              {-5, 5, -4, 4, 33, 17}};
    for (Window const &w : windows) {
        Pixels drawn = decode(drawImplicit(SampleCurve::CIRCLE, 9, ImplicitRelationC::EQUAL, w));
        ASSERT_FALSE(drawn.empty());
        int const m = w.m, n = w.n;
        double xStep = (w.xMax - w.xMin) / (m - 1), yStep = (w.yMax - w.yMin) / (n - 1);
        int c0 = int((0 - (w.xMin - xStep / 2)) / xStep), r0 = n - 1 - int((0 - (w.yMin - yStep / 2)) / yStep);
        std::vector<char> seen(size_t(m) * n, 0);
        std::vector<std::pair<int, int>> todo{{c0, r0}};
        bool escaped = false;
        while (!todo.empty()) {
            auto p = todo.back();
            todo.pop_back();
            if (p.first < 0 || p.first >= m || p.second < 0 || p.second >= n) {
                escaped = true;
                continue;
            }
            char &s = seen[size_t(p.second) * m + p.first];
            if (s || drawn.count(p)) continue;
            s = 1;
            todo.insert(todo.end(), {{p.first + 1, p.second}, {p.first - 1, p.second}, {p.first, p.second + 1},
                                     {p.first, p.second - 1}});
        }
        EXPECT_FALSE(escaped) << w.m << "x" << w.n;
        std::map<std::pair<int, int>, bool> reached;
        todo = {drawn.begin()->first};
        while (!todo.empty()) {
            auto p = todo.back();
            todo.pop_back();
            if (!drawn.count(p) || reached.count(p)) continue;
            reached[p] = true;
            for (int dx = -1; dx <= 1; ++dx)
                for (int dy = -1; dy <= 1; ++dy) todo.push_back({p.first + dx, p.second + dy});
        }
        EXPECT_EQ(reached.size(), drawn.size()) << w.m << "x" << w.n;
    }
}

// Inputs with no answer draw nothing, or only undecided pixels, and end:
// one-pixel windows, functions with no value, poles, NaN constants.
TEST(ImplicitRelation, DegenerateInputsEnd) {
    EXPECT_TRUE(drawImplicit(SampleCurve::CIRCLE, 9, ImplicitRelationC::EQUAL, {-4, 4, -4, 4, 1, 1}).empty());
    EXPECT_TRUE(drawImplicit(SampleCurve::CIRCLE, -1, ImplicitRelationC::EQUAL, defaultWindow()).empty());
    // 1/x = 0 changes sign across the pole but has no solution: the pole's
    // column may stay undecided, nothing is proven.
    Window poleWindow{-2, 2, -1, 1, 40, 20};
    std::vector<Pt> pole = drawImplicit(SampleCurve::POLE, 0, ImplicitRelationC::EQUAL, poleWindow);
    EXPECT_FALSE(pole.empty());
    for (Pt const &p : pole) {
        EXPECT_TRUE(p.m & PixelPointC::UNDECIDED) << p;
        EXPECT_TRUE(p.x == 19 || p.x == 20) << p;
    }
    std::vector<Pt> nan = drawImplicit(SampleCurve::CIRCLE, std::nan(""), ImplicitRelationC::LESS, {-1, 1, -1, 1, 9, 9});
    for (Pt const &p : nan) EXPECT_TRUE(p.m & PixelPointC::UNDECIDED);
    PointerTC<qelt::mathapp::rel::RelationC> none(new ImplicitRelationC(nullptr, ImplicitRelationC::EQUAL));
    ImplicitRelationEvalC evaluator;
    EXPECT_TRUE(draw(evaluator, none, defaultWindow()).empty());
}

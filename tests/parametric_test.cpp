// Parametric and polar curves, checked against dense samples of the curve
// computed with MPFI (128-bit intervals, written here from each formula):
// every pixel a sample provably lies in is drawn, every proven pixel lies next
// to a sampled one, and a stretch never joins two pixels that do not touch.
#include <mpfi.h>

#include <cmath>
#include <cstdlib>
#include <set>
#include <utility>

#include <gtest/gtest.h>

#include "TestSupport.h"
#include "collab/ds/PixelPointC.h"
#include "collab/math/IntervalC.h"
#include "collab/rel/ParametricCurveC.h"
#include "collab/rel/PolarCurveC.h"
#include "evalg/ParametricCurveEvalC.h"

using namespace evalgtest;
using qelt::math::IntervalC;
using qelt::mathapp::ds::PixelPointC;
using qelt::mathapp::evalg::ParametricCurveEvalC;
using qelt::mathapp::rel::CurveFunctionIC;
using qelt::mathapp::rel::ParameterFunctionIC;
using qelt::mathapp::rel::ParametricCurveC;
using qelt::mathapp::rel::PolarCurveC;
using qelt::mathapp::rel::RelationC;

namespace {

enum class Shape { LISSAJOUS, STEPS, POLE, HALF_PARABOLA, OSCILLATION };

// LISSAJOUS (cos 3t, sin 2t); STEPS (t, floor t); POLE (t, 1/t);
// HALF_PARABOLA (sqrt t, t), defined from t = 0 on; OSCILLATION (t, sin 1/t).
class Curve : public CurveFunctionIC {
public:
    explicit Curve(Shape s) : s_(s) {}
    void enclose(IntervalC const &t, IntervalC &x, IntervalC &y) const override {
        switch (s_) {
        case Shape::LISSAJOUS:
            x = IntervalC::cos(IntervalC::mul(IntervalC(3, 3), t));
            y = IntervalC::sin(IntervalC::mul(IntervalC(2, 2), t));
            return;
        case Shape::STEPS: x = t; y = IntervalC::floor(t); return;
        case Shape::POLE: x = t; y = IntervalC::div(IntervalC(1, 1), t); return;
        case Shape::HALF_PARABOLA: x = IntervalC::sqrt(t); y = t; return;
        case Shape::OSCILLATION: x = t; y = IntervalC::sin(IntervalC::div(IntervalC(1, 1), t)); return;
        }
    }

private:
    Shape s_;
};

class Cardioid : public ParameterFunctionIC {
public:
    IntervalC enclose(IntervalC const &theta) const override { return IntervalC::add(IntervalC(1, 1), IntervalC::cos(theta)); }
};

struct Mpfi {
    mpfi_t v;
    Mpfi() { mpfi_init2(v, 128); }
    ~Mpfi() { mpfi_clear(v); }
};

// The curve's point at t by MPFI, in [x0, x1] x [y0, y1]; false where it has
// none. Cardioid is the polar r = 1 + cos θ.
bool sample(Shape s, bool cardioid, double t, double &x0, double &x1, double &y0, double &y1) {
    Mpfi a, x, y;
    mpfi_set_d(a.v, t);
    if (cardioid) {
        Mpfi r, c;
        mpfi_cos(r.v, a.v);
        mpfi_add_ui(r.v, r.v, 1);
        mpfi_cos(c.v, a.v);
        mpfi_mul(x.v, r.v, c.v);
        mpfi_sin(c.v, a.v);
        mpfi_mul(y.v, r.v, c.v);
    } else {
        switch (s) {
        case Shape::LISSAJOUS:
            mpfi_mul_ui(x.v, a.v, 3);
            mpfi_cos(x.v, x.v);
            mpfi_mul_ui(y.v, a.v, 2);
            mpfi_sin(y.v, y.v);
            break;
        case Shape::STEPS:
            mpfi_set_d(x.v, t);
            mpfi_set_d(y.v, std::floor(t));
            break;
        case Shape::POLE:
            if (t == 0) return false;
            mpfi_set_d(x.v, t);
            mpfi_inv(y.v, a.v);
            break;
        case Shape::HALF_PARABOLA:
            if (t < 0) return false;
            mpfi_sqrt(x.v, a.v);
            mpfi_set_d(y.v, t);
            break;
        case Shape::OSCILLATION:
            if (t == 0) return false;
            mpfi_set_d(x.v, t);
            mpfi_inv(y.v, a.v);
            mpfi_sin(y.v, y.v);
            break;
        }
    }
    x0 = mpfr_get_d(&x.v->left, MPFR_RNDD);
    x1 = mpfr_get_d(&x.v->right, MPFR_RNDU);
    y0 = mpfr_get_d(&y.v->left, MPFR_RNDD);
    y1 = mpfr_get_d(&y.v->right, MPFR_RNDU);
    return true;
}

struct Case {
    Shape shape;
    bool cardioid;
    double tMin, tMax;
    double reach;
};

Case const cases[] = {
    {Shape::LISSAJOUS, false, 0, 6.283185307179586, 1.2},
    {Shape::STEPS, false, -2.5, 2.5, 3},
    {Shape::POLE, false, -2, 2, 3},
    {Shape::HALF_PARABOLA, false, -1, 4, 2.5},
    {Shape::LISSAJOUS, true, 0, 6.283185307179586, 2.2},
};

std::vector<Pt> drawCurve(Case const &k, Window const &w) {
    PointerTC<RelationC> relation;
    if (k.cardioid)
        relation = PointerTC<RelationC>(new PolarCurveC(PointerTC<ParameterFunctionIC>(new Cardioid)));
    else
        relation = PointerTC<RelationC>(
            new ParametricCurveC(PointerTC<CurveFunctionIC>(new Curve(k.shape)), k.tMin, k.tMax));
    ParametricCurveEvalC evaluator;
    return draw(evaluator, relation, w);
}

// The pixels that samples of t from tFrom on provably lie in (away from
// every edge), as (column, screen row).
std::set<std::pair<int, int>> sampledPixels(Case const &k, Window const &w, double tFrom, int samples) {
    double xStep = (w.xMax - w.xMin) / (w.m - 1), yStep = (w.yMax - w.yMin) / (w.n - 1);
    double left = w.xMin - xStep * 0.5, bottom = w.yMin - yStep * 0.5;
    std::set<std::pair<int, int>> sampled;
    for (int i = 0; i <= samples; ++i) {
        double t = tFrom + (k.tMax - tFrom) * i / samples, sx0, sx1, sy0, sy1;
        if (!sample(k.shape, k.cardioid, t, sx0, sx1, sy0, sy1)) continue;
        double c = std::floor((sx0 - left) / xStep), r = std::floor((sy0 - bottom) / yStep);
        if (!(c >= 0 && c < w.m && r >= 0 && r < w.n)) continue;
        double margin = 1e-9;
        if (sx1 >= left + xStep * (c + 1) - margin * xStep || sx0 <= left + xStep * c + margin * xStep) continue;
        if (sy1 >= bottom + yStep * (r + 1) - margin * yStep || sy0 <= bottom + yStep * r + margin * yStep) continue;
        sampled.insert({int(c), int(w.n) - 1 - int(r)});
    }
    return sampled;
}

} // namespace

TEST(ParametricCurve, AgreesWithMpfiSamples) {
    Rng rng(2026);
    int const samples = 30000;
    for (Case const &k : cases) {
        for (int trial = 0; trial < 5; ++trial) {
            double x0 = rng.uniform(-k.reach, k.reach * 0.3), y0 = rng.uniform(-k.reach, k.reach * 0.3);
            Window w{x0, x0 + rng.uniform(0.5, k.reach * 1.5), y0, y0 + rng.uniform(0.5, k.reach * 1.5),
                     (unsigned short)(2 + rng.below(150)), (unsigned short)(2 + rng.below(150))};
            SCOPED_TRACE(::testing::Message() << "shape " << int(k.shape) << (k.cardioid ? " cardioid" : "")
                                              << " window " << w.xMin << " " << w.xMax << " " << w.yMin << " "
                                              << w.yMax << " " << w.m << "x" << w.n);
            std::vector<Pt> pts = drawCurve(k, w);
            std::set<std::pair<int, int>> sampled = sampledPixels(k, w, k.tMin, samples);
            std::set<std::pair<int, int>> drawn;
            bool open = false;
            for (size_t i = 0; i < pts.size(); ++i) {
                Pt const &p = pts[i];
                drawn.insert({p.x, p.y});
                EXPECT_EQ(open, !(p.m & PixelPointC::FIRST_VISIBLE)) << "stretch markers at " << i;
                if (open) {
                    EXPECT_LE(std::abs(p.x - pts[i - 1].x), 1) << "false join at " << i;
                    EXPECT_LE(std::abs(p.y - pts[i - 1].y), 1) << "false join at " << i;
                }
                open = !(p.m & PixelPointC::LAST_VISIBLE);
                if (p.m & PixelPointC::UNDECIDED) continue;
                bool near = false;
                for (int dx = -1; dx <= 1 && !near; ++dx)
                    for (int dy = -1; dy <= 1 && !near; ++dy) near = sampled.count({p.x + dx, p.y + dy}) > 0;
                EXPECT_TRUE(near) << "proven pixel far from the curve: " << p;
            }
            EXPECT_FALSE(open) << "last stretch not closed";
            for (auto const &s : sampled) EXPECT_TRUE(drawn.count(s)) << "crossed pixel left out: " << s.first << "," << s.second;
        }
    }
}

// Whole curves on a fixed window: where they must break, and the polar
// default of one turn closing the cardioid on itself.
TEST(ParametricCurve, BreaksAndClosure) {
    Window w{-3, 3, -3, 3, 121, 121};
    struct Expect {
        Case k;
        size_t minStretches, maxStretches;
    } const table[] = {
        {cases[0], 1, 1},  // Lissajous: one closed stretch
        {cases[1], 6, 6},  // floor t over [-2.5, 2.5]: five jumps
        {cases[2], 2, 2},  // 1/t: the pole splits it, both halves leave the window
        {cases[3], 1, 1},  // sqrt: drawn from t = 0 on only
        {cases[4], 1, 1},  // cardioid: one stretch over one turn
    };
    for (Expect const &e : table) {
        std::vector<Pt> pts = drawCurve(e.k, w);
        ASSERT_FALSE(pts.empty());
        size_t stretches = withMarker(pts, PixelPointC::FIRST_VISIBLE).size();
        EXPECT_GE(stretches, e.minStretches) << int(e.k.shape);
        EXPECT_LE(stretches, e.maxStretches) << int(e.k.shape);
        size_t undecided = withMarker(pts, PixelPointC::UNDECIDED).size();
        EXPECT_LE(undecided * 20, pts.size()) << int(e.k.shape);
        if (e.k.shape == Shape::LISSAJOUS) {
            EXPECT_LE(std::abs(pts.front().x - pts.back().x), 1);
            EXPECT_LE(std::abs(pts.front().y - pts.back().y), 1);
        }
    }
}

// Ranges and windows with nothing to draw end with an empty set.
TEST(ParametricCurve, DegenerateInputsEnd) {
    Case bad[] = {{Shape::LISSAJOUS, false, 1, 0, 1}, {Shape::LISSAJOUS, false, 0, INFINITY, 1},
                  {Shape::LISSAJOUS, false, NAN, 1, 1}, {Shape::HALF_PARABOLA, false, -5, -1, 1}};
    for (Case const &k : bad) EXPECT_TRUE(drawCurve(k, defaultWindow()).empty());
    EXPECT_TRUE(drawCurve(cases[0], {-1, 1, -1, 1, 1, 1}).empty());
    // One parameter value: one point of the curve.
    EXPECT_EQ(drawCurve({Shape::LISSAJOUS, false, 0, 0, 1}, {-2, 2, -2, 2, 41, 41}).size(), 1u);
}

// sin(1/t) at 0 is a spot no halving settles. It may take the budget it is
// given, but not what the rest of the curve, after it in t, needs: every
// pixel the curve provably crosses from t = 0.2 on is drawn.
TEST(ParametricCurve, ASpotThatNeverSettlesLeavesTheRestDrawn) {
    Case const k{Shape::OSCILLATION, false, -1, 3, 2};
    Window const w{-1, 3, -2, 2, 161, 101};
    std::vector<Pt> pts = drawCurve(k, w);
    std::set<std::pair<int, int>> drawn;
    for (Pt const &p : pts) drawn.insert({p.x, p.y});
    std::set<std::pair<int, int>> sampled = sampledPixels(k, w, 0.2, 20000);
    ASSERT_GT(sampled.size(), 100u);
    int missing = 0;
    for (auto const &px : sampled) missing += drawn.count(px) ? 0 : 1;
    EXPECT_EQ(missing, 0) << "of " << sampled.size() << " crossed pixels";
}

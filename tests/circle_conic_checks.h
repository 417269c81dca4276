#ifndef EVALG_TESTS_CIRCLE_CONIC_CHECKS_H
#define EVALG_TESTS_CIRCLE_CONIC_CHECKS_H

// Shared by the conic tests: drawing with a step count, point lists written
// as text, the split of a result into visible stretches, closeness of a pixel
// to a curve, and coverage of the curve by the drawn pixels.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>

#include "collab/ds/PixelPointC.h"
#include "collab/rel/RelationC.h"
#include "support/TestSupport.h"

namespace evalgtest {

unsigned const F = qelt::mathapp::ds::PixelPointC::FIRST_VISIBLE, L = qelt::mathapp::ds::PixelPointC::LAST_VISIBLE;

// Draws RelationT(args...) with a fresh EvalT; steps gets its step count.
template <class EvalT, class RelationT, class... Args>
std::vector<Pt> drawCounted(Window const &w, unsigned long *steps, Args... args) {
    EvalT eval;
    std::vector<Pt> pts = draw(eval, PointerTC<qelt::mathapp::rel::RelationC>(new RelationT(args...)), w);
    if (steps) *steps = eval.getStepCount();
    return pts;
}

// "4,5FL 4,4F 5,4": points with their marker bits.
inline std::vector<Pt> parse(char const *s) {
    std::vector<Pt> out;
    for (int x, y, n; std::sscanf(s, " %d,%d%n", &x, &y, &n) == 2; s += n)
        for (out.push_back(Pt{x, y, 0}); s[n] == 'F' || s[n] == 'L'; ++n) out.back().m |= s[n] == 'F' ? F : L;
    return out;
}

// Splits a result into its visible stretches [first, end), checking that it
// is made of them: FIRST_VISIBLE opens each one and LAST_VISIBLE closes it.
inline std::vector<std::pair<size_t, size_t>> stretches(std::vector<Pt> const &pts) {
    std::vector<std::pair<size_t, size_t>> out;
    for (size_t i = 0, j = 0; i < pts.size(); i = ++j) {
        while (j + 1 < pts.size() && !(pts[j].m & L) && !(pts[j + 1].m & F)) ++j;
        EXPECT_TRUE((pts[i].m & F) && (pts[j].m & L)) << "stretch without its ends: " << i << " to " << j;
        out.push_back({i, j + 1});
    }
    return out;
}

// True when the curve g = 0 passes within one pixel, in x and in y, of the
// pixel's centre: g takes both signs on the box of half-width one pixel. For
// the conics the extremes on the box lie at its corners, at the points of its
// edges nearest the centre (cx, cy), or at the centre itself.
inline bool nearCurve(std::function<double(double, double)> const &g, Window const &w, Pt p, double cx, double cy) {
    double xs = (w.xMax - w.xMin) / (w.m - 1), ys = (w.yMax - w.yMin) / (w.n - 1);
    double x0 = w.xMin + p.x * xs - xs, x1 = x0 + 2 * xs, y1 = w.yMax - p.y * ys + ys, y0 = y1 - 2 * ys;
    double nx = std::min(std::max(cx, x0), x1), ny = std::min(std::max(cy, y0), y1);
    std::vector<double> v = {g(x0, y0), g(x0, y1), g(x1, y0), g(x1, y1), g(x0, ny), g(x1, ny), g(nx, y0), g(nx, y1)};
    if (nx == cx && ny == cy) v.push_back(g(cx, cy));
    return *std::min_element(v.begin(), v.end()) <= 0 && *std::max_element(v.begin(), v.end()) >= 0;
}

// Where the curve crosses a line of pixel centres two pixels or more inside
// the window, a drawn pixel lies within one pixel. A display joins the points
// of a stretch, so a row or column between two of them counts as drawn. The
// curve's heights come from curve, its abscissae from its transpose.
inline void expectCovered(std::vector<Pt> const &pts, Window const &w, qelt::mathapp::rel::RelationC const &curve,
                          qelt::mathapp::rel::RelationC const &transposed) {
    std::vector<char> drawn(size_t(w.m) * w.n, 0);
    for (auto s : stretches(pts))
        for (size_t i = s.first; i < s.second; ++i) {
            Pt p = pts[i], q = pts[i > s.first && (pts[i - 1].x == p.x || pts[i - 1].y == p.y) ? i - 1 : i];
            for (int x = std::max(std::min(p.x, q.x), 0); x <= std::min(std::max(p.x, q.x), w.m - 1); ++x)
                for (int y = std::max(std::min(p.y, q.y), 0); y <= std::min(std::max(p.y, q.y), w.n - 1); ++y)
                    drawn[size_t(y) * w.m + x] = 1;
        }
    double xs = (w.xMax - w.xMin) / (w.m - 1), ys = (w.yMax - w.yMin) / (w.n - 1);
    auto check = [&](double c, double r) { // a crossing, in pixels from the top left centre
        if (!(c >= 2 && c <= w.m - 3 && r >= 2 && r <= w.n - 3)) return;
        bool hit = false;
        for (long x = std::lround(c) - 1; x <= std::lround(c) + 1; ++x)
            for (long y = std::lround(r) - 1; y <= std::lround(r) + 1; ++y) hit = hit || drawn[size_t(y) * w.m + x];
        EXPECT_TRUE(hit) << "nothing drawn near (" << c << ", " << r << ")";
    };
    std::vector<double> v;
    for (int c = 0; c < w.m; ++c, v.clear()) {
        curve.getYValuesAt(w.xMin + c * xs, v);
        for (double y : v) check(c, (w.yMax - y) / ys);
    }
    for (int r = 0; r < w.n; ++r, v.clear()) {
        transposed.getYValuesAt(w.yMax - r * ys, v);
        for (double x : v) check((x - w.xMin) / xs, r);
    }
}

} // namespace evalgtest

#endif

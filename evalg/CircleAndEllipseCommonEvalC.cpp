#include "evalg/CircleAndEllipseCommonEvalC.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "collab/ds/PixelPointC.h"
#include "collab/oss/IntegerConversionC.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

using oss::IntegerConversionC;

namespace {

// One octant: which axis the walk advances on, the signs of its steps, and
// whether its set is filled from the front.
struct Octant {
    bool swap;     // u is y and v is x
    double uSign;  // walking direction on u
    double vSign;  // outward direction on v
    bool prepend;
};

const Octant OCTANTS[8] = {
    {true, -1, -1, true},   // 1: slope point to the leftmost point
    {false, +1, +1, false}, // 2: slope point to the top
    {false, -1, +1, true},  // 3: slope point to the top
    {true, -1, +1, false},  // 4: slope point to the rightmost point
    {true, +1, +1, true},   // 5: slope point to the rightmost point
    {false, -1, -1, false}, // 6: slope point to the bottom
    {false, +1, -1, true},  // 7: slope point to the bottom
    {true, +1, -1, false},  // 8: slope point to the leftmost point
};

// a where f < 0, else b (so b for a NaN f), without a branch where the
// target allows: the mask comes straight from the comparison.
inline double ifNegative(double f, double a, double b) {
#if defined(__SSE2__)
    __m128d m = _mm_cmplt_sd(_mm_set_sd(f), _mm_setzero_pd());
    return _mm_cvtsd_f64(_mm_or_pd(_mm_and_pd(m, _mm_set_sd(a)), _mm_andnot_pd(m, _mm_set_sd(b))));
#else
    return f < 0 ? a : b;
#endif
}

// a where choose holds, else b, without a branch.
inline double pick(bool choose, double a, double b) {
    uint64_t x, y;
    std::memcpy(&x, &a, sizeof x);
    std::memcpy(&y, &b, sizeof y);
    uint64_t mask = 0 - uint64_t(choose);
    x = (x & mask) | (y & ~mask);
    std::memcpy(&a, &x, sizeof x);
    return a;
}

// The centre of the pixel cell holding c, on a grid of cells of width step
// starting at edge.
double snap(double c, double edge, double step) { return edge + (std::floor((c - edge) / step) + 0.5) * step; }

} // namespace

CircleAndEllipseCommonEvalC::CircleAndEllipseCommonEvalC()
    : reachMargin(3.0), branchFreeSteps(true), stepCount(0), octantBase(0) {}
// A copy gets its own scratch set when it first plots: sharing one would
// let two evaluators, perhaps on two threads, write the same set.
CircleAndEllipseCommonEvalC::CircleAndEllipseCommonEvalC(CircleAndEllipseCommonEvalC const &other)
    : CartesianRelationGraphEvalHelperC(other), reachMargin(other.reachMargin),
      branchFreeSteps(other.branchFreeSteps), stepCount(other.stepCount), octantBase(0) {}
CircleAndEllipseCommonEvalC &CircleAndEllipseCommonEvalC::operator=(CircleAndEllipseCommonEvalC const &other) {
    CartesianRelationGraphEvalHelperC::operator=(other);
    reachMargin = other.reachMargin;
    branchFreeSteps = other.branchFreeSteps;
    stepCount = other.stepCount;
    return *this;
}
CircleAndEllipseCommonEvalC::~CircleAndEllipseCommonEvalC() {}

unsigned int CircleAndEllipseCommonEvalC::pointsPerCell() const { return 4; }

void CircleAndEllipseCommonEvalC::plot(double a, double b, double h, double k, double xStep, double yStep,
                                       SetP target) {
    stepCount = 0;
    if (!target) return;
    oss::PointerTC<ds::GraphicalDomainC> domain = target->getDomain();
    if (!domain) return;

    // Odd octants (index 0, 2, ...) are filled from the front, in a scratch
    // set that is then appended; even ones are appended to the target
    // directly. The scratch set is kept from one plot to the next, bound to
    // no window, so that the evaluator holds on to none of its caller's.
    if (!scratch)
        scratch = SetP(new (std::nothrow) ds::GraphDataSetWinC(402, 402, oss::PointerTC<ds::GraphicalDomainC>()));
    if (!scratch) return;

    // Normaliser; the second form survives the overflow of the squares.
    double S = (a * yStep) * (a * yStep) + (b * xStep) * (b * xStep);
    double t;
    if (std::isfinite(S)) {
        t = 1 / std::sqrt(S);
    } else {
        double r = a * yStep / (b * xStep);
        t = 1 / (std::sqrt(r * r + 1) * b * xStep);
    }
    if (!std::isfinite(t)) return;

    // All four window corners strictly inside the curve: nothing to draw.
    double dxL = (leftEdge - h) * b;
    double dxR = (rightEdge - h) * b;
    double dyB = (bottomEdge - k) * a;
    double dyT = (topEdge - k) * a;
    double ab = a * b;
    if (std::sqrt(dxL * dxL + dyB * dyB) < ab && std::sqrt(dxL * dxL + dyT * dyT) < ab &&
        std::sqrt(dxR * dxR + dyB * dyB) < ab && std::sqrt(dxR * dxR + dyT * dyT) < ab)
        return;

    // Half-chords at the window edges; an edge that misses the curve gives NaN.
    double ia = 1 / a;
    double ib = 1 / b;
    double qL = (leftEdge - h) * ia;
    double qR = (rightEdge - h) * ia;
    double qB = (bottomEdge - k) * ib;
    double qT = (topEdge - k) * ib;
    double hL = std::sqrt(1 - qL * qL) * b;
    double hR = std::sqrt(1 - qR * qR) * b;
    double wB = std::sqrt(1 - qB * qB) * a;
    double wT = std::sqrt(1 - qT * qT) * a;

    if (!plot_straight_runs(a, b, h, k, hL, hR, wB, wT, target)) {
        bool upper = k <= topEdge && k + b >= bottomEdge;
        bool lower = k >= bottomEdge && k - b <= topEdge;
        bool leftHalf = h >= leftEdge && h - a <= rightEdge;
        bool rightHalf = h <= rightEdge && h + a >= leftEdge;
        // Quadrants in order: upper left, upper right, lower right, lower left.
        bool quadrant[4] = {leftHalf && upper, rightHalf && upper, rightHalf && lower, leftHalf && lower};
        for (int i = 0; i < 8; ++i) {
            if (!quadrant[i / 2]) continue;
            Octant const &o = OCTANTS[i];
            // All of its room in front: the scratch set is only prepended to.
            if (o.prepend) scratch->clear(SIZE_MAX);
            SetP const &into = o.prepend ? scratch : target;
            if (o.swap) {
                if (o.prepend)
                    plot_eighth<true, true>(b, a, k, h, o.uSign * yStep, o.vSign * xStep, t, into);
                else
                    plot_eighth<true, false>(b, a, k, h, o.uSign * yStep, o.vSign * xStep, t, into);
            } else {
                if (o.prepend)
                    plot_eighth<false, true>(a, b, h, k, o.uSign * xStep, o.vSign * yStep, t, into);
                else
                    plot_eighth<false, false>(a, b, h, k, o.uSign * xStep, o.vSign * yStep, t, into);
            }
            if (o.prepend) {
                // Pending spans go to the scratch set before it is copied.
                bindSpans(target.get());
                target->appendPixelPoints(scratch, false);
            }
        }
    }
    bindSpans(target.get());
}

bool CircleAndEllipseCommonEvalC::plot_straight_runs(double a, double b, double h, double k, double hL, double hR,
                                                     double wB, double wT, SetP target) {
    bool emitted = false;
    // The first alternative of each test has no window check: a curve whose
    // far side lies in one row (or column) outside the grid is run there too.
    if (std::isfinite(hL) && std::isfinite(hR)) {
        double yTop = k + b;
        double yL = k + hL;
        double yR = k + hR;
        if ((approx_equal(yL, yTop, yStep, bottomEdge) && approx_equal(yR, yTop, yStep, bottomEdge)) ||
            (approx_equal(yL, yR, yStep, bottomEdge) && (h < leftEdge || h > rightEdge) && yTop >= bottomEdge &&
             yTop < topEdge)) {
            plot_row_run(yTop, target);
            emitted = true;
        }
        double yBot = k - b;
        yL = k - hL;
        yR = k - hR;
        if ((approx_equal(yL, yBot, yStep, bottomEdge) && approx_equal(yR, yBot, yStep, bottomEdge)) ||
            (approx_equal(yL, yR, yStep, bottomEdge) && (h < leftEdge || h > rightEdge) && yBot >= bottomEdge &&
             yBot < topEdge)) {
            plot_row_run(yBot, target);
            emitted = true;
        }
    }
    if (std::isfinite(wB) && std::isfinite(wT)) {
        double xRight = h + a;
        double xB = h + wB;
        double xT = h + wT;
        if ((approx_equal(xB, xRight, xStep, leftEdge) && approx_equal(xT, xRight, xStep, leftEdge)) ||
            (approx_equal(xB, xT, xStep, leftEdge) && (k < bottomEdge || k > topEdge) && xRight >= leftEdge &&
             xRight < rightEdge)) {
            plot_column_run(xRight, target);
            emitted = true;
        }
        double xLeft = h - a;
        xB = h - wB;
        xT = h - wT;
        if ((approx_equal(xB, xLeft, xStep, leftEdge) && approx_equal(xT, xLeft, xStep, leftEdge)) ||
            (approx_equal(xB, xT, xStep, leftEdge) && (k < bottomEdge || k > topEdge) && xLeft >= leftEdge &&
             xLeft < rightEdge)) {
            plot_column_run(xLeft, target);
            emitted = true;
        }
    }
    return emitted;
}

void CircleAndEllipseCommonEvalC::plot_row_run(double y, SetP target) {
    static unsigned char const first = ds::PixelPointC::FIRST_VISIBLE;
    static unsigned char const none = 0;
    static unsigned char const last = ds::PixelPointC::LAST_VISIBLE;
    int32_t row = IntegerConversionC::toUInt16(double(int(pixelRows) - 1) - std::floor((y - bottomEdge) / yStep));
    int columns = pixelColumns;
    target->appendPixelPoint(POINT{0, row}, first);
    for (int c = 1; c < columns - 1; ++c) target->appendPixelPoint(POINT{c, row}, none);
    // With one column this writes column 0 a second time, now as the end.
    target->appendPixelPoint(POINT{columns - 1, row}, last);
    stepCount += columns < 2 ? 2 : columns;
}

void CircleAndEllipseCommonEvalC::plot_column_run(double x, SetP target) {
    static unsigned char const first = ds::PixelPointC::FIRST_VISIBLE;
    static unsigned char const none = 0;
    static unsigned char const last = ds::PixelPointC::LAST_VISIBLE;
    int32_t column = IntegerConversionC::toUInt16(std::floor((x - leftEdge) / xStep));
    int rows = pixelRows;
    target->appendPixelPoint(POINT{column, 0}, first);
    for (int r = 1; r < rows - 1; ++r) target->appendPixelPoint(POINT{column, r}, none);
    target->appendPixelPoint(POINT{column, rows - 1}, last);
    stepCount += rows < 2 ? 2 : rows;
}

template <bool swap, bool prepend>
void CircleAndEllipseCommonEvalC::plot_eighth(double au, double av, double cu, double cv, double du, double dv,
                                              double t, SetP const &set) {
    double A = au * au;
    double B = av * av;
    // The walk's state stays in locals; the step count is stored on every way out.
    bool lastVisible = false;
    bool left = false;
    unsigned long steps = stepCount;
    struct StoreSteps {
        unsigned long &to;
        unsigned long const &from;
        ~StoreSteps() { to = from; }
    } storeSteps{stepCount, steps};
    if (!set) return;
    // The octant's points go to set, as single-point spans; its own points
    // are those from octantBase on (the set may hold earlier octants').
    bindSpans(set.get());
    octantBase = long(boundCount());
    double uEdge = swap ? bottomEdge : leftEdge;
    double vEdge = swap ? leftEdge : bottomEdge;
    double uCell = std::fabs(du);
    double vCell = std::fabs(dv);
    double s1 = du > 0 ? 1.0 : -1.0;
    double s2 = dv > 0 ? 1.0 : -1.0;

    // The slope point, snapped to the centre of its pixel.
    double uStart = cu - s1 * vCell * A * t;
    double vStart = cv + s2 * uCell * B * t;
    double U = snap(uStart, uEdge, uCell);
    double V = snap(vStart, vEdge, vCell);

    // Decision value at the midpoint (U + du/2, V + dv/2) and its increments.
    // The same formulas serve a start just before the window (below).
    double F, Gu, Gv;
    auto startAt = [&](double u, double v) {
        double fv = au * (v + 0.5 * dv - cv);
        double fu = av * (u + 0.5 * du - cu);
        F = fv * fv + fu * fu - B * A;
        Gu = 2 * B * du * (u + du - cu);
        Gv = 2 * A * dv * (v + dv - cv);
    };
    startAt(U, V);
    if (!std::isfinite(F)) return;
    double Hu = 2 * B * du * du;
    double Hv = 2 * A * dv * dv;

    // The window in locals, for the visibility test of every point, and the
    // rows where a point may share a span with its neighbour in the column
    // (strictly between the centres of the outermost rows, where the
    // emission's clamps leave a run as it is; computed as the emission does).
    Box box = {leftEdge, rightEdge, bottomEdge, topEdge, yHalfStep + bottomEdge, topEdge - yHalfStep};
    // Two consecutive points of the path in one column go out as one span:
    // the same two points as two single-point spans, provided their rows
    // differ, which holds while U and V stay within a fraction of a pixel of
    // the centres they stand for. Each step adds at most half an ulp, the
    // walk takes fewer than 2^20 steps (see the class comment), so
    // magnitudes below 2^28 pixels keep the drift under 1/16 pixel. Row
    // indices must also fit the emission's signed 16 bits.
    auto pairable = [&](double u, double v) {
        double m = std::fabs(u) > std::fabs(v) ? std::fabs(u) : std::fabs(v);
        double e = std::fabs(leftEdge);
        if (std::fabs(rightEdge) > e) e = std::fabs(rightEdge);
        if (std::fabs(bottomEdge) > e) e = std::fabs(bottomEdge);
        if (std::fabs(topEdge) > e) e = std::fabs(topEdge);
        if (e > m) m = e;
        double big = uCell > vCell ? uCell : vCell;
        double small = uCell < vCell ? uCell : vCell;
        m += 0x1p20 * big;
        return pixelRows <= 32767 && m <= 0x1p28 * small;
    };
    // An empty range of rows where no point may join.
    auto noPairs = [&] {
        box.pairLow = std::numeric_limits<double>::infinity();
        box.pairHigh = -box.pairLow;
    };
    if (!pairable(U, V)) noPairs();
    Held held = {0, false};

    // The slope point belongs to the swapped octant of its pair.
    if (swap) left = plot_point<swap, prepend, false>(U, V, box, held, lastVisible);

    // The pixel boundary nearest the centre.
    double uEnd = uEdge + std::floor((cu - uEdge) / uCell + 0.5) * uCell;

    // An arc that never comes near the window has no pixel to show: not walked.
    Reach reach = window_reach(au, av, cu, cv, du, dv, uStart, vStart, swap);
    if (reach.near && (reach.in - s1 * U) / uCell > double(APPROACH_LIMIT)) {
        // Far out the running decision value has lost its precision anyway:
        // start afresh in the last pixel before the window, with V the row
        // (column) that the curve crosses at that pixel's entering boundary.
        U = snap(s1 * reach.in, uEdge, uCell);
        double q = (U - 0.5 * du - cu) / std::fabs(au);
        double r = (1 - q) * (1 + q);
        V = snap(cv + s2 * std::fabs(av) * std::sqrt(r > 0 ? r : 0), vEdge, vCell);
        if (!pairable(U, V)) noPairs();
        held.on = false; // the walk jumps: no column is shared across the gap
        startAt(U, V);
        if (!std::isfinite(F)) return;
    }

    double const uStop = uEnd - du;
    // How far u may run (times s1) and v may (times s2) with every point of a
    // step visible, its y strictly between the pairing rows, and the loop
    // going on. Three cells to spare cover the walk's drift.
    double uRun = swap ? (s1 > 0 ? box.pairHigh : -box.pairLow) : (s1 > 0 ? box.right : -box.left);
    if (reach.out < uRun) uRun = reach.out;
    if (s1 * uStop - uCell < uRun) uRun = s1 * uStop - uCell;
    uRun -= 3 * uCell;
    double const vRun = (swap ? (s2 > 0 ? box.right : -box.left) : (s2 > 0 ? box.pairHigh : -box.pairLow)) -
                        3 * vCell;
    while (reach.near) {
        // Deep inside the window every step plots the same way, with no
        // marker to set: run such steps without a branch on the decision
        // value, whose sign follows the curve and defeats prediction.
        if (lastVisible && branchFreeSteps) {
            SpanRoomS out = spanRoom(COLUMNS, prepend ? FRONT : BACK);
            double k = (uRun - s1 * U) / uCell;
            double kv = (vRun - s2 * V) / vCell;
            if (kv < k) k = kv;
            if (double(out.room) < k) k = double(out.room);
            // Along x the last point must still be a span of its own, for the
            // next step out on v to join; along y the last point must lie
            // between the pairing rows, as the steps' points will.
            bool ready = swap ? U > box.pairLow && U < box.pairHigh : held.on;
            if (ready && out.count != 0 && k >= 4) {
                unsigned int c = out.count;
                // Along y: whether the last span holds one point, which the
                // next point in its column joins.
                unsigned int single = held.on ? 1 : 0;
                for (long n = long(k); n > 0; --n) {
                    ++steps;
                    // Both sides' sums, as the plain loop forms them, and
                    // the one the sign of F picks: the next F waits on an
                    // addition and a mask, not on a chain of selections.
                    bool inside = F < 0;
                    double Fin = Gv + Gu + F;
                    double Fout = Gu + F;
                    V = ifNegative(F, V + dv, V);
                    Gv = ifNegative(F, Hv + Gv, Gv);
                    F = ifNegative(F, Fin, Fout);
                    if (!swap) out.to[c - 1] = V; // the step out joins the last point's span
                    if (!std::isfinite(F)) {
                        if (swap && inside) { // the step out was plotted, on its own
                            out.at[c] = V;
                            out.from[c] = U;
                            out.to[c] = U;
                            ++c;
                        }
                        commitSpans(c);
                        return;
                    }
                    double U2 = U + du;
                    Gu = Hu + Gu;
                    if (swap) {
                        // A new span from the step out to the step along, or
                        // from the step along alone; or the step along joins
                        // the last span, which held one point.
                        // The span starts at U unless U is already in
                        // another column's span (no step out, no single).
                        unsigned int fresh = (inside ? 1u : 0u) | (single ^ 1u);
                        unsigned int i = c - 1 + fresh;
                        double from = pick(inside || single != 0, U, U2);
                        out.at[i] = V;
                        out.from[i] = from;
                        out.to[i] = U2;
                        c += fresh;
                        single = (inside ? 0u : 1u) & (single ^ 1u);
                    } else {
                        out.at[c] = U2;
                        out.from[c] = V;
                        out.to[c] = V;
                        ++c;
                    }
                    U = U2;
                }
                commitSpans(c);
                held.on = swap ? single != 0 : true;
                held.y = swap ? U : V;
                continue;
            }
        }
        if (!(du > 0 ? U < uStop : U > uStop)) break;
        // Past the window nothing more can show; the rest of the walk is skipped.
        if (s1 * U > reach.out) break;
        ++steps;
        if (F < 0) { // midpoint inside: step outwards on v first, as its own point
            V = V + dv;
            // Straight out on v: in the column of the last point when u is x.
            if (plot_point<swap, prepend, !swap>(U, V, box, held, lastVisible)) break;
            F = Gv + Gu + F;
            Gv = Hv + Gv;
        } else {
            F = Gu + F;
        }
        if (!std::isfinite(F)) return; // stops where it is, without its end marker
        double U2 = U + du;
        if (U2 == U) break; // the step is lost in rounding
        Gu = Hu + Gu;
        // Along u: in the column of the last point when u is y.
        left = plot_point<swap, prepend, swap>(U2, V, box, held, lastVisible);
        U = U2;
        if (left) break;
    }

    if (lastVisible && long(boundCount()) != octantBase) {
        if (prepend)
            openStretchAt(octantBase);
        else
            closeStretch();
    }
}

CircleAndEllipseCommonEvalC::Reach CircleAndEllipseCommonEvalC::window_reach(double au, double av, double cu,
                                                                            double cv, double du, double dv,
                                                                            double uStart, double vStart,
                                                                            bool swap) const {
    Reach none = {false, 0, 0};
    double uCell = std::fabs(du);
    double vCell = std::fabs(dv);
    double s1 = du > 0 ? 1.0 : -1.0;
    double s2 = dv > 0 ? 1.0 : -1.0;
    double uLo = (swap ? bottomEdge : leftEdge) - reachMargin * uCell;
    double uHi = (swap ? topEdge : rightEdge) + reachMargin * uCell;
    double vLo = (swap ? leftEdge : bottomEdge) - reachMargin * vCell;
    double vHi = (swap ? rightEdge : topEdge) + reachMargin * vCell;
    double aU = std::fabs(au);
    double aV = std::fabs(av);

    // Along the arc v runs outwards, monotonely, from vStart to the axis point.
    double vAxis = cv + s2 * aV;
    double vIn = s2 > 0 ? vLo : vHi;
    double vOut = s2 > 0 ? vHi : vLo;
    if (s2 * vAxis < s2 * vIn) return none;  // never reaches the window's band on v
    if (s2 * vStart > s2 * vOut) return none; // starts beyond it
    // u on the arc where it crosses v, on the side the walk starts from.
    auto uAt = [&](double v) {
        double q = (v - cv) / aV;
        double r = (1 - q) * (1 + q);
        return cu - s1 * aU * std::sqrt(r > 0 ? r : 0);
    };

    double in = s1 * uStart;
    double uIn = s1 > 0 ? uLo : -uHi;
    if (uIn > in) in = uIn;
    if (s2 * vStart < s2 * vIn) {
        double w = s1 * uAt(vIn);
        if (w > in) in = w;
    }
    // The walk ends within a pixel of the axis point.
    double out = s1 * cu + uCell;
    double uOut = s1 > 0 ? uHi : -uLo;
    if (uOut < out) out = uOut;
    if (s2 * vAxis > s2 * vOut) {
        double w = s1 * uAt(vOut);
        if (w < out) out = w;
    }
    // With a finite decision value every term is finite; a NaN would fail here.
    if (!(in <= out)) return none;
    Reach reach = {true, in, out};
    return reach;
}

template <bool swap, bool prepend, bool column>
inline bool CircleAndEllipseCommonEvalC::plot_point(double u, double v, Box const &box, Held &held,
                                                    bool &lastVisible) {
    double x = swap ? v : u;
    double y = swap ? u : v;
    bool visible = x >= box.left && x <= box.right && y >= box.bottom && y <= box.top;
    if (visible) {
        bool inner = y > box.pairLow && y < box.pairHigh;
        // A point in the last one's column joins its span, if still pending.
        if (column && held.on && inner && y != held.y && extendLastSpan(y)) {
            held.on = false;
        } else {
            pushSpan(COLUMNS, prepend ? FRONT : BACK, x, y, y);
            held.on = inner;
            held.y = y;
        }
    } else {
        held.on = false;
    }
    if (visible == lastVisible) return false;
    // A prepending octant reads backwards, so its entering point ends a stretch.
    // Entering marks the end opposite to the one just written, leaving marks
    // the end written last; on the first entry both ends are the one point.
    lastVisible = visible;
    long count = long(boundCount()) - octantBase;
    if (count != 0) {
        long index = octantBase + (prepend == visible ? count - 1 : 0);
        if (visible != prepend)
            openStretchAt(index);
        else
            closeStretchAt(index);
    }
    // Leaving the window ends the octant.
    return !visible;
}

bool CircleAndEllipseCommonEvalC::approx_equal(double p, double q, double step, double origin) const {
    // The reciprocal once, then multiplied: no tolerance beyond the cell.
    double inverse = 1 / step;
    return std::floor((p - origin) * inverse) == std::floor((q - origin) * inverse);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

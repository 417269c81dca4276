#include "evalg/HyperbolaWalkBC.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

#include "collab/oss/IntegerConversionC.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

namespace {

// Cells between two exact values of the difference walk.
const int ANCHOR_PERIOD = 32;

} // namespace

HyperbolaWalkBC::HyperbolaWalkBC() : stepCount(0) {}
HyperbolaWalkBC::HyperbolaWalkBC(HyperbolaWalkBC const &) = default;
HyperbolaWalkBC &HyperbolaWalkBC::operator=(HyperbolaWalkBC const &) = default;
HyperbolaWalkBC::~HyperbolaWalkBC() {}

unsigned int HyperbolaWalkBC::pointsPerCell() const { return 4; }

// Cells first, first + d, ... of one half; each span reads along the curve
// (prepending turns the near-to-far order round). A half meets the window in
// one run of cells: the walk looks for its first cell, then follows the run
// and stops at the first cell after it. Returns whether the first cell met
// the window.
bool HyperbolaWalkBC::walkHalf(HalfS const &h, int first, int d, EndE end, ds::GraphDataSetWinC *set) {
    bindSpans(set);
    // Everything the loops read, in locals: spans are stored through
    // pointers, and a value reached through h would be loaded again after
    // every store.
    double const p = h.p, m = h.m, fLo = h.fLo, fHi = h.fHi, fMin = h.fMin, fMax = h.fMax;
    double const cf = h.cf, sStep = h.sStep, wEdge = h.wEdge, wStep = h.wStep, n0 = h.n0;
    double const dd = d;
    double const d2 = 2 * m * m;
    long const count = first < 0 || first >= h.cells ? 0 : d > 0 ? long(h.cells) - first : long(first) + 1;
    auto clamp = [&](double f) { return f < fMin ? fMin : (f > fMax ? fMax : f); };
    double nNear = n0 + double(d > 0 ? first : first + 1);
    // f at the near edge: the far edge's value of the cell before.
    double fNear = cf + sStep * std::sqrt(p * p + (m * nNear) * (m * nNear));
    double g2 = 0; // (f - cf)^2 at the far edge, in pixels
    double d1 = 0; // its first difference towards the next far edge
    long i = 0;
    // f at the far edge of the next cell. Every ANCHOR_PERIOD cells g2 is
    // taken afresh, so that rounding cannot pile up; in between it steps by
    // its differences.
    auto advance = [&]() {
        if (i % ANCHOR_PERIOD == 0) {
            int j = first + int(i) * d;
            double nFar = n0 + double(d > 0 ? j + 1 : j);
            g2 = p * p + (m * nFar) * (m * nFar);
            d1 = m * m * (2 * nFar * dd + 1);
        }
        double f = cf + sStep * std::sqrt(g2);
        g2 = g2 + d1;
        d1 = d1 + d2;
        ++i;
        return f;
    };
    double centre = double(first) + 0.5; // the cell's centre, in cells from edge 0
    double fFar = fNear;
    bool met = false;
    // Up to the first cell whose run meets the window.
    while (i < count) {
        fNear = fFar;
        fFar = advance();
        double lo = fNear < fFar ? fNear : fFar;
        double hi = fNear < fFar ? fFar : fNear;
        met = hi >= fLo && lo <= fHi && fNear == fNear && fFar == fFar;
        if (met) break;
        centre += dd;
    }
    bool const firstMet = met && i == 1;
    if (met) {
        SpanCursorC spans(*this, h.axis, end);
        double from = clamp(fNear);
        // Then the run, cell by cell. Its near end is the far end of the
        // cell before, which met the window and so is a number: the cell
        // meets when its far end is a number too and the two ends do not
        // both lie beyond one edge. The near end's tests carry over.
        for (;;) {
            double to = clamp(fFar);
            spans.put(wEdge + centre * wStep, from, to);
            if (i == count) break;
            bool nearLow = fFar >= fLo, nearHigh = fFar <= fHi;
            fFar = advance();
            if (!(fFar == fFar && (nearLow || fFar >= fLo) && (nearHigh || fFar <= fHi))) break;
            from = to;
            centre += dd;
        }
        spans.close();
    }
    stepCount += static_cast<unsigned long>(i);
    return firstMet;
}

void HyperbolaWalkBC::plotBranches(BranchFrame const &fr, AxisE axis, SetP target) {
    unsigned long &steps = stepCount;
    steps = 0;
    double const inf = std::numeric_limits<double>::infinity();
    if (!target) return;
    // A window one pixel wide or high has infinite cells: no grid to walk.
    if (!(fr.wStep > 0 && fr.wStep < inf && fr.fStep > 0 && fr.fStep < inf)) return;
    if (!(std::isfinite(fr.cw) && std::isfinite(fr.cf))) return;
    oss::PointerTC<ds::GraphicalDomainC> domain = target->getDomain();

    // In pixels: the vertex lies p cells from the centre along f, and the
    // asymptotes move m cells along f per cell along w.
    double p = std::fabs(fr.af) / fr.fStep;
    double m = (std::fabs(fr.af) / std::fabs(fr.aw)) * (fr.wStep / fr.fStep);
    // NaN parameters, 0/0 and inf/inf give NaN; a vertex whose square
    // overflows lies further out than any window a double can place.
    if (!(p * p < inf) || std::isnan(m)) return;
    // b = 0 (or a slope too steep to square): each branch folds onto the ray
    // from its vertex outwards, inside the vertex cell.
    bool rays = !(m * m < inf);

    double const fLo = fr.fLo, fHi = fr.fHi, fStep = fr.fStep, cf = fr.cf;
    double const wEdge = fr.wEdge, wStep = fr.wStep;
    double const fMin = fLo + 0.5 * fStep;
    double const fMax = fHi - 0.5 * fStep;
    // Clamped to the centres of the outermost cells, so every point is in the grid.
    auto clamp = [&](double f) { return f < fMin ? fMin : (f > fMax ? fMax : f); };
    auto cellOf = [&](double f) { return std::floor((f - fLo) / fStep); };
    auto meets = [&](double f1, double f2) {
        double lo = f1 < f2 ? f1 : f2;
        double hi = f1 < f2 ? f2 : f1;
        return hi >= fLo && lo <= fHi && !std::isnan(f1) && !std::isnan(f2);
    };
    auto G = [&](double n) { return p * p + (m * n) * (m * n); }; // (f - cf)^2 in pixels, n cells from cw
    auto centre = [&](int j) { return wEdge + (j + 0.5) * wStep; };
    double n0 = (wEdge - fr.cw) / wStep; // edge 0, in cells from the centre

    // The vertex cell, and the first cell of each half (outside [0, cells) when empty).
    double vertexCell = std::floor((fr.cw - fr.wEdge) / fr.wStep);
    bool vertexInside = vertexCell >= 0 && vertexCell < fr.cells;
    int upperFirst = vertexCell < 0 ? 0 : vertexInside ? oss::IntegerConversionC::toInt32(vertexCell) : fr.cells;
    int lowerFirst = upperFirst - 1;
    std::size_t room = 2 * std::size_t(fr.cells) + 8;
    SetP lower;
    // Each side's halves cover each cell once, at most two points a cell and
    // one more at the vertex: the target comes sized for both sides
    // (pointsPerCell), so it never grows (and copies) during the walk.

    for (int side = -1; side <= 1; side += 2) {
        // a = 0: both branches are the line f = cf; drawn once.
        if (side < 0 && p == 0 && m == 0) continue;
        // Wholly beyond the window on its own side, with its vertex.
        double vertexF = fr.cf + side * fr.fStep * p;
        if (side > 0 ? vertexF > fr.fHi : vertexF < fr.fLo) continue;
        // The lower half is walked backwards, from the vertex out, so it is
        // prepended into a scratch set and copied; the upper half reads
        // forwards and goes straight behind it in the target. The scratch set
        // holds a whole half (two points per cell) without growing, and
        // serves both sides.
        if (!lower) lower = SetP(new (std::nothrow) ds::GraphDataSetWinC(room, room, domain));
        if (!lower) continue; // a failed allocation leaves the branch out
        lower->clear(SIZE_MAX);
        auto f = [&](double g) { return cf + side * fStep * g; };
        HalfS const half = {p, m, fLo, fHi, fMin, fMax, cf, side * fStep, wEdge, wStep, n0, fr.cells, axis};

        // The lower half first: it precedes the upper one in the target.
        bool lowerJoins = false;
        if (!rays) lowerJoins = walkHalf(half, lowerFirst, -1, FRONT, lower.get()) && vertexInside;
        // Its pending spans go out to it before it is read.
        bindSpans(target.get());
        unsigned int lowerCount = lower->getCount();
        target->appendPixelPoints(lower, false);
        long upperBase = long(boundCount());

        // The vertex cell opens the upper half: lower edge, vertex, upper edge.
        bool upperJoins = false;
        int next = upperFirst;
        if (vertexInside) {
            ++steps;
            ++next;
            double gLo = rays ? inf : std::sqrt(G(n0 + double(upperFirst)));
            double gHi = rays ? inf : std::sqrt(G(n0 + double(upperFirst + 1)));
            double fV = f(p);
            if (meets(fV, f(gLo > gHi ? gLo : gHi))) {
                double fTip = clamp(fV);
                pushSpan(axis, BACK, centre(upperFirst), clamp(f(gLo)), fTip);
                // Back out to the upper edge, unless that ends in the vertex's own pixel.
                double fOut = clamp(f(gHi));
                if (cellOf(fOut) != cellOf(fTip)) pushSpan(axis, BACK, centre(upperFirst), fOut, fOut);
                upperJoins = true;
            }
        }
        if (!rays) walkHalf(half, next, +1, BACK, target.get());

        // Both halves meet the window next to the vertex: one stretch.
        bool joined = upperJoins && lowerJoins;
        long upperEnd = long(boundCount());
        if (lowerCount != 0) {
            openStretchAt(upperBase - long(lowerCount));
            if (!joined) closeStretchAt(upperBase - 1);
        }
        if (upperEnd != upperBase) {
            if (!joined) openStretchAt(upperBase);
            closeStretchAt(upperEnd - 1);
        }
    }
    return;
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

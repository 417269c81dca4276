#include "evalg/ParametricCurveEvalC.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>

#include "collab/ds/PixelPointC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

using math::IntervalC;

ParametricCurveEvalC::ParametricCurveEvalC() {}
ParametricCurveEvalC::ParametricCurveEvalC(ParametricCurveEvalC const &) = default;
ParametricCurveEvalC &ParametricCurveEvalC::operator=(ParametricCurveEvalC const &) = default;
ParametricCurveEvalC::~ParametricCurveEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> ParametricCurveEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::ParametricCurveC>(
        service, domain, 1000, 0, [this](rel::ParametricCurveC *relation, SetP set) { calculate(relation, set); });
}

void ParametricCurveEvalC::calculate(rel::ParametricCurveC *relation, SetP set) {
    oss::PointerTC<rel::CurveFunctionIC> curve = relation->getCurve();
    double tMin = relation->getTMin(), tMax = relation->getTMax();
    if (!curve || !std::isfinite(tMin) || !std::isfinite(tMax) || !(tMin <= tMax)) return;
    // A one-pixel window has an infinite step: no pixel edges to fit into.
    if (!(xStep > 0 && std::isfinite(xStep) && yStep > 0 && std::isfinite(yStep))) return;
    try {
        WalkS walk{};
        walk.curve = curve.get();
        walk.set = set.get();
        walk.budget = EVALUATION_BUDGET;
        std::vector<PieceS> &pieces = walk.pieces;
        pieces.push_back(PieceS{tMin, tMax, sampleAt(walk, tMin), sampleAt(walk, tMax), 0, 0, 0});
        // Depth first, left half on top: pieces come off in t order. A piece
        // is split only above the depth limits, so the loop ends.
        while (!pieces.empty()) {
            PieceS p = pieces.back();
            pieces.pop_back();
            IntervalC x, y;
            walk.curve->enclose(IntervalC(p.t0, p.t1), x, y);
            --walk.budget;
            if (x.empty || y.empty) {
                endStretch(walk);
                continue;
            }
            ClaimS claim = claimOf(x, y);
            if (missesWindow(claim)) {
                endStretch(walk);
                continue;
            }
            double mid = p.t0 + (p.t1 - p.t0) * 0.5;
            bool canSplit = walk.budget > p.kept && p.t0 < mid && mid < p.t1;
            long spare = walk.budget - p.kept;
            long keep = std::min(LATER_RESERVE, std::max(spare, 0L) / 2);
            bool clean = x.clean() && y.clean();
            if (!clean) {
                if (canSplit && p.depth < BREAK_DEPTH) {
                    SampleS m = sampleAt(walk, mid);
                    pieces.push_back(PieceS{mid, p.t1, m, p.b, p.depth + 1, 0, p.kept});
                    pieces.push_back(PieceS{p.t0, mid, p.a, m, p.depth + 1, 0, p.kept + keep});
                    continue;
                }
                // A break: the sliver's enclosure says nothing, and the
                // curve may not be joined across it.
                endStretch(walk);
                continue;
            }
            if (claim.colLo == claim.colHi && claim.rowLo == claim.rowHi) {
                addPixel(walk, claim.colLo, claim.rowLo, false);
                continue;
            }
            if (backedByEnds(p, claim) && (p.a.col == p.b.col || p.a.row == p.b.row)) {
                addPixel(walk, p.a.col, p.a.row, false);
                addPixel(walk, p.b.col, p.b.row, false);
                continue;
            }
            // A piece already down to a few pixels that keeps straddling a
            // pixel edge (a curve along the edge, through a corner) gets a
            // few halvings only, so such a curve costs per pixel, not per
            // doubling of the whole range.
            bool few = claim.colHi - claim.colLo < UNSETTLED_SPAN && claim.rowHi - claim.rowLo < UNSETTLED_SPAN;
            unsigned int settle = few ? p.settle + 1 : 0;
            if (canSplit && p.depth < TIGHT_DEPTH && settle <= SETTLE_DEPTH) {
                SampleS m = sampleAt(walk, mid);
                pieces.push_back(PieceS{mid, p.t1, m, p.b, p.depth + 1, settle, p.kept});
                pieces.push_back(PieceS{p.t0, mid, p.a, m, p.depth + 1, settle, p.kept + keep});
                continue;
            }
            unsettledLeaf(walk, p, claim);
        }
        endStretch(walk);
    } catch (std::bad_alloc const &) {
        // Out of memory: the points drawn so far are the result.
    }
}

// A continuous piece that no further halving settles. Between end pixels
// that touch at a corner only, the curve crosses one of the other two pixels
// or the corner itself, which all four share: those two are undecided. Else a
// few claimed pixels are all drawn undecided; otherwise only where its end
// points lie.
void ParametricCurveEvalC::unsettledLeaf(WalkS &walk, PieceS const &piece, ClaimS const &claim) {
    if (backedByEnds(piece, claim)) {
        addPixel(walk, piece.a.col, piece.a.row, false);
        addPixel(walk, piece.a.col, piece.b.row, true);
        addPixel(walk, piece.b.col, piece.a.row, true);
        addPixel(walk, piece.b.col, piece.b.row, false);
        return;
    }
    auto clampCol = [this](int c) { return c < 0 ? 0 : (c >= int(pixelColumns) ? int(pixelColumns) - 1 : c); };
    auto clampRow = [this](int r) { return r < 0 ? 0 : (r >= int(pixelRows) ? int(pixelRows) - 1 : r); };
    int c0 = clampCol(claim.colLo), c1 = clampCol(claim.colHi);
    int r0 = clampRow(claim.rowLo), r1 = clampRow(claim.rowHi);
    if (c1 - c0 < UNSETTLED_SPAN && r1 - r0 < UNSETTLED_SPAN) {
        if (piece.a.fits) addPixel(walk, piece.a.col, piece.a.row, false);
        for (int c = c0; c <= c1; ++c)
            for (int r = r0; r <= r1; ++r) addPixel(walk, c, r, true);
        if (piece.b.fits) addPixel(walk, piece.b.col, piece.b.row, false);
        return;
    }
    // Too wide to draw as a block: the stretch cannot be followed here.
    endStretch(walk);
    for (SampleS const *end : {&piece.a, &piece.b}) {
        if (!end->fits) continue;
        addPixel(walk, end->col, end->row, false);
        endStretch(walk);
    }
}

ParametricCurveEvalC::SampleS ParametricCurveEvalC::sampleAt(WalkS &walk, double t) const {
    IntervalC x, y;
    walk.curve->enclose(IntervalC(t, t), x, y);
    --walk.budget;
    SampleS s{false, 0, 0};
    if (x.empty || y.empty || x.partial || y.partial) return s;
    ClaimS c = claimOf(x, y);
    if (c.colLo != c.colHi || c.rowLo != c.rowHi || missesWindow(c)) return s;
    return SampleS{true, c.colLo, c.rowLo};
}

bool ParametricCurveEvalC::backedByEnds(PieceS const &piece, ClaimS const &claim) {
    SampleS const &a = piece.a, &b = piece.b;
    if (!a.fits || !b.fits || std::abs(a.col - b.col) > 1 || std::abs(a.row - b.row) > 1) return false;
    int colLo = a.col < b.col ? a.col : b.col, rowLo = a.row < b.row ? a.row : b.row;
    return claim.colLo >= colLo && claim.colHi <= colLo + 1 && claim.rowLo >= rowLo && claim.rowHi <= rowLo + 1 &&
           (claim.colHi == claim.colLo || a.col != b.col) && (claim.rowHi == claim.rowLo || a.row != b.row);
}

void ParametricCurveEvalC::addPixel(WalkS &walk, int col, int row, bool undecided) {
    ds::GraphDataSetWinC &set = *walk.set;
    if (walk.open && col == walk.lastCol && row == walk.lastRow) {
        // Proven now: the pixel loses its undecided mark.
        if (!undecided) *markerSlot(set, long(set.getCount()) - 1) &= ~ds::PixelPointC::UNDECIDED;
        return;
    }
    unsigned int at = set.getCount();
    set.appendPixelPoint(col, long(pixelRows) - 1 - row, undecided ? ds::PixelPointC::UNDECIDED : 0);
    if (!walk.open) addStartMarker(markerSlot(set, long(at)));
    walk.open = true;
    walk.lastCol = col;
    walk.lastRow = row;
}

void ParametricCurveEvalC::endStretch(WalkS &walk) {
    if (walk.open) addEndMarker(markerSlot(*walk.set, long(walk.set->getCount()) - 1));
    walk.open = false;
}

ParametricCurveEvalC::ClaimS ParametricCurveEvalC::claimOf(IntervalC const &x, IntervalC const &y) const {
    return ClaimS{columnOf(x.lo), columnOf(x.hi), rowOf(y.lo), rowOf(y.hi)};
}

// NaN bounds (from a careless function) land before the window: a piece with
// them is treated as outside and ends the stretch, never looping.
int ParametricCurveEvalC::columnOf(double x) const {
    if (!(x >= leftEdge)) return -1;
    if (!(x < rightEdge)) return int(pixelColumns);
    double q = std::floor((x - leftEdge) / xStep);
    int c = q < double(pixelColumns) ? int(q) : int(pixelColumns) - 1;
    // The quotient may round across an edge; the edges themselves, computed
    // from their index as everywhere, decide.
    if (c > 0 && x < leftEdge + xStep * double(c)) --c;
    if (c + 1 < int(pixelColumns) && x >= leftEdge + xStep * double(c + 1)) ++c;
    return c;
}

int ParametricCurveEvalC::rowOf(double y) const {
    if (!(y >= bottomEdge)) return -1;
    if (!(y < topEdge)) return int(pixelRows);
    double q = std::floor((y - bottomEdge) / yStep);
    int r = q < double(pixelRows) ? int(q) : int(pixelRows) - 1;
    if (r > 0 && y < bottomEdge + yStep * double(r)) --r;
    if (r + 1 < int(pixelRows) && y >= bottomEdge + yStep * double(r + 1)) ++r;
    return r;
}

bool ParametricCurveEvalC::missesWindow(ClaimS const &c) const {
    return c.colHi < 0 || c.colLo >= int(pixelColumns) || c.rowHi < 0 || c.rowLo >= int(pixelRows) ||
           c.colLo > c.colHi || c.rowLo > c.rowHi;
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

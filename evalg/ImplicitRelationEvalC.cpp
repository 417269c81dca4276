#include "evalg/ImplicitRelationEvalC.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "collab/ds/PixelPointC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

using math::IntervalC;
using rel::ImplicitRelationC;

ImplicitRelationEvalC::ImplicitRelationEvalC() {}
ImplicitRelationEvalC::ImplicitRelationEvalC(ImplicitRelationEvalC const &) = default;
ImplicitRelationEvalC &ImplicitRelationEvalC::operator=(ImplicitRelationEvalC const &) = default;
ImplicitRelationEvalC::~ImplicitRelationEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> ImplicitRelationEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateGraph(service, domain, false);
}

oss::PointerTC<ds::GraphDataSetWinC> ImplicitRelationEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain, bool everyPixel) {
    return evaluateWith<ImplicitRelationC>(
        service, domain, 1000, 0,
        [this, everyPixel](ImplicitRelationC *relation, SetP set) { calculate(relation, set, everyPixel); });
}

// Unknown bounds (NaN from a careless function) compare false everywhere and
// so land on SOME: such boxes are split and end undecided, never dropped.
ImplicitRelationEvalC::VerdictE ImplicitRelationEvalC::judge(ImplicitRelationC::ComparisonE comparison,
                                                             IntervalC const &v) {
    if (v.empty) return NONE;
    // Points without a value satisfy nothing, so they never stop a NONE; but
    // an ALL needs every point of the box to have its value.
    bool everywhere = !v.partial;
    switch (comparison) {
    case ImplicitRelationC::EQUAL:
        if (v.lo > 0 || v.hi < 0) return NONE;
        return everywhere && v.lo == 0 && v.hi == 0 ? ALL : SOME;
    case ImplicitRelationC::LESS:
        if (v.lo >= 0) return NONE;
        return everywhere && v.hi < 0 ? ALL : SOME;
    case ImplicitRelationC::LESS_EQUAL:
        if (v.lo > 0) return NONE;
        return everywhere && v.hi <= 0 ? ALL : SOME;
    case ImplicitRelationC::GREATER:
        if (v.hi <= 0) return NONE;
        return everywhere && v.lo > 0 ? ALL : SOME;
    case ImplicitRelationC::GREATER_EQUAL:
        if (v.hi < 0) return NONE;
        return everywhere && v.lo >= 0 ? ALL : SOME;
    }
    return SOME;
}

// Children before their parent, by an explicit stack: a long chain of ANDs
// must not run the call stack deep.
void ImplicitRelationEvalC::layOut(ImplicitRelationC const *relation, WalkS &walk) {
    std::vector<std::pair<ImplicitRelationC const *, bool>> stack{{relation, false}};
    std::vector<size_t> done;
    walk.equation = false;
    while (!stack.empty()) {
        ImplicitRelationC const *node = stack.back().first;
        bool expanded = stack.back().second;
        stack.pop_back();
        if (!node || node->getLogic() == ImplicitRelationC::COMPARISON) {
            ConditionS c{ImplicitRelationC::COMPARISON, node ? node->getFunction().get() : nullptr,
                         node ? node->getComparison() : ImplicitRelationC::EQUAL, 0, 0};
            walk.equation = walk.equation || (c.h && c.comparison == ImplicitRelationC::EQUAL);
            done.push_back(walk.conditions.size());
            walk.conditions.push_back(c);
        } else if (!expanded) {
            stack.emplace_back(node, true);
            stack.emplace_back(node->getRight().get(), false);
            stack.emplace_back(node->getLeft().get(), false);
        } else {
            size_t right = done.back();
            done.pop_back();
            size_t left = done.back();
            done.pop_back();
            done.push_back(walk.conditions.size());
            walk.conditions.push_back(ConditionS{node->getLogic(), nullptr, ImplicitRelationC::EQUAL, left, right});
        }
    }
    walk.verdicts.assign(walk.conditions.size(), NONE);
    walk.values.assign(walk.conditions.size(), IntervalC::none());
    walk.witnessed.assign(walk.conditions.size(), 0);
}

ImplicitRelationEvalC::VerdictE ImplicitRelationEvalC::judgeBox(WalkS &walk, double x0, double x1, double y0,
                                                                double y1) {
    IntervalC const x(x0, x1), y(y0, y1);
    for (size_t i = 0; i < walk.conditions.size(); ++i) {
        ConditionS const &c = walk.conditions[i];
        VerdictE l = walk.verdicts[c.left], r = walk.verdicts[c.right];
        switch (c.logic) {
        case ImplicitRelationC::COMPARISON:
            walk.values[i] = c.h ? c.h->enclose(x, y) : IntervalC::none();
            walk.verdicts[i] = judge(c.comparison, walk.values[i]);
            break;
        case ImplicitRelationC::AND:
            walk.verdicts[i] = l == NONE || r == NONE ? NONE : (l == ALL && r == ALL ? ALL : SOME);
            break;
        case ImplicitRelationC::OR:
            walk.verdicts[i] = l == ALL || r == ALL ? ALL : (l == NONE && r == NONE ? NONE : SOME);
            break;
        }
    }
    return walk.verdicts.back();
}

void ImplicitRelationEvalC::calculate(ImplicitRelationC *relation, SetP set, bool everyPixel) {
    // A one-pixel window has an infinite step: no box to enclose.
    if (!(xStep > 0 && std::isfinite(xStep) && yStep > 0 && std::isfinite(yStep))) return;
    try {
        WalkS walk{};
        layOut(relation, walk);
        int const columns = pixelColumns, rows = pixelRows;
        // Each edge from its index, not by a running sum: neighbouring pixels
        // then share their edge exactly, and the edges never drift.
        walk.columnEdges.resize(size_t(columns) + 1);
        walk.rowEdges.resize(size_t(rows) + 1);
        for (int c = 0; c <= columns; ++c) walk.columnEdges[size_t(c)] = leftEdge + xStep * double(c);
        for (int r = 0; r <= rows; ++r) walk.rowEdges[size_t(r)] = bottomEdge + yStep * double(r);
        if (everyPixel) {
            for (int r = 0; r < rows; ++r)
                for (int c = 0; c < columns; ++c) {
                    VerdictE verdict = judgeBox(walk, walk.columnEdges[size_t(c)], walk.columnEdges[size_t(c) + 1],
                                                walk.rowEdges[size_t(r)], walk.rowEdges[size_t(r) + 1]);
                    if (verdict == ALL) walk.runs.push_back(RunS{r, c, c, false});
                    if (verdict == SOME) classifyPixel(walk, c, r);
                }
        } else {
            walkQuadtree(walk);
        }
        emit(walk, *set);
    } catch (std::bad_alloc const &) {
        // Out of memory: the set holds whatever was written, possibly nothing.
    }
}

void ImplicitRelationEvalC::walkQuadtree(WalkS &walk) {
    std::vector<BoxS> &boxes = walk.boxes;
    boxes.push_back(BoxS{0, int(pixelColumns), 0, int(pixelRows)});
    // Every box taken off is either dropped, filled, decided as one pixel or
    // split into smaller index ranges: the loop ends after at most about
    // twice as many boxes as pixels.
    while (!boxes.empty()) {
        BoxS b = boxes.back();
        boxes.pop_back();
        VerdictE verdict = judgeBox(walk, walk.columnEdges[size_t(b.c0)], walk.columnEdges[size_t(b.c1)],
                                    walk.rowEdges[size_t(b.r0)], walk.rowEdges[size_t(b.r1)]);
        if (verdict == NONE) continue;
        if (verdict == ALL) {
            for (int r = b.r0; r < b.r1; ++r) walk.runs.push_back(RunS{r, b.c0, b.c1 - 1, false});
            continue;
        }
        bool wide = b.c1 - b.c0 > 1, tall = b.r1 - b.r0 > 1;
        if (!wide && !tall) {
            classifyPixel(walk, b.c0, b.r0);
            continue;
        }
        int cm = wide ? b.c0 + (b.c1 - b.c0) / 2 : b.c1;
        int rm = tall ? b.r0 + (b.r1 - b.r0) / 2 : b.r1;
        boxes.push_back(BoxS{b.c0, cm, b.r0, rm});
        if (wide) boxes.push_back(BoxS{cm, b.c1, b.r0, rm});
        if (tall) boxes.push_back(BoxS{b.c0, cm, rm, b.r1});
        if (wide && tall) boxes.push_back(BoxS{cm, b.c1, rm, b.r1});
    }
}

// The pixel's own enclosures (the last box judged) left it open: quarter it
// until a piece proves it, every piece is excluded, or the budget is spent.
void ImplicitRelationEvalC::classifyPixel(WalkS &walk, int column, int row) {
    std::vector<PieceS> &pieces = walk.pieces;
    pieces.clear();
    pieces.push_back(PieceS{walk.columnEdges[size_t(column)], walk.columnEdges[size_t(column) + 1],
                            walk.rowEdges[size_t(row)], walk.rowEdges[size_t(row) + 1], 0});
    int budget = PIXEL_BUDGET;
    bool first = true;
    bool open = false;
    // Every turn spends at least one evaluation after the first, and pieces
    // are pushed only while the budget lasts.
    while (!pieces.empty()) {
        PieceS p = pieces.back();
        pieces.pop_back();
        VerdictE verdict = first ? walk.verdicts.back() : judgeBox(walk, p.x0, p.x1, p.y0, p.y1);
        if (!first) --budget;
        first = false;
        if (verdict == NONE) continue;
        if (verdict == ALL || provenInside(walk, p)) {
            walk.runs.push_back(RunS{row, column, column, false});
            return;
        }
        budget -= walk.equation ? 4 : 1;
        double xm = p.x0 + (p.x1 - p.x0) * 0.5;
        double ym = p.y0 + (p.y1 - p.y0) * 0.5;
        // Pieces a few ulps wide have no midpoint left to split at.
        bool canSplit = p.depth < SUB_DEPTH && p.x0 < xm && xm < p.x1 && p.y0 < ym && ym < p.y1;
        if (!canSplit) {
            open = true;
            continue;
        }
        if (budget <= 0) break;
        unsigned int depth = p.depth + 1;
        pieces.push_back(PieceS{p.x0, xm, p.y0, ym, depth});
        pieces.push_back(PieceS{xm, p.x1, p.y0, ym, depth});
        pieces.push_back(PieceS{p.x0, xm, ym, p.y1, depth});
        pieces.push_back(PieceS{xm, p.x1, ym, p.y1, depth});
    }
    if (open || !pieces.empty() || budget <= 0) walk.runs.push_back(RunS{row, column, column, true});
}

// Whether points of the piece prove that the relation holds somewhere in
// it, from the verdicts and enclosures of the piece just judged.
bool ImplicitRelationEvalC::provenInside(WalkS &walk, PieceS const &piece) const {
    for (size_t i = 0; i < walk.conditions.size(); ++i) {
        ConditionS const &c = walk.conditions[i];
        VerdictE l = walk.verdicts[c.left], r = walk.verdicts[c.right];
        bool wl = walk.witnessed[c.left] != 0, wr = walk.witnessed[c.right] != 0;
        bool w = false;
        switch (c.logic) {
        case ImplicitRelationC::COMPARISON:
            w = walk.verdicts[i] == ALL ||
                (walk.verdicts[i] == SOME && comparisonProven(c, piece, walk.values[i]));
            break;
        case ImplicitRelationC::AND: w = (l == ALL && wr) || (r == ALL && wl); break;
        case ImplicitRelationC::OR: w = wl || wr; break;
        }
        walk.witnessed[i] = w;
    }
    return walk.witnessed.back() != 0;
}

// For h = 0: opposite proven signs at two corners of a piece on which h is
// continuous (its enclosure is clean), so h vanishes between them, inside the
// piece; or a corner where h is exactly 0. For an inequality: its centre.
bool ImplicitRelationEvalC::comparisonProven(ConditionS const &c, PieceS const &piece, IntervalC const &value) const {
    if (c.comparison != ImplicitRelationC::EQUAL) {
        double xc = piece.x0 + (piece.x1 - piece.x0) * 0.5, yc = piece.y0 + (piece.y1 - piece.y0) * 0.5;
        return judge(c.comparison, c.h->enclose(IntervalC(xc, xc), IntervalC(yc, yc))) == ALL;
    }
    if (!value.clean()) return false;
    // Opposite corners first: a curve through the piece most often separates
    // them, and the search stops at the first pair of signs.
    double const xs[4] = {piece.x0, piece.x1, piece.x1, piece.x0};
    double const ys[4] = {piece.y0, piece.y1, piece.y0, piece.y1};
    bool positive = false, negative = false;
    for (int i = 0; i < 4; ++i) {
        IntervalC h = c.h->enclose(IntervalC(xs[i], xs[i]), IntervalC(ys[i], ys[i]));
        if (h.empty || h.partial) continue;
        if (h.lo == 0 && h.hi == 0) return true;
        positive = positive || h.lo > 0;
        negative = negative || h.hi < 0;
        if (positive && negative) return true;
    }
    return false;
}

void ImplicitRelationEvalC::emit(WalkS &walk, ds::GraphDataSetWinC &set) {
    std::vector<RunS> &runs = walk.runs;
    // Screen order: the top row first, each row from the left.
    std::sort(runs.begin(), runs.end(), [](RunS const &a, RunS const &b) {
        return a.row != b.row ? a.row > b.row : a.first < b.first;
    });
    long const screenTop = long(pixelRows) - 1;
    size_t i = 0;
    while (i < runs.size()) {
        RunS run = runs[i++];
        while (i < runs.size() && runs[i].row == run.row && runs[i].first == run.last + 1 &&
               runs[i].undecided == run.undecided)
            run.last = runs[i++].last;
        unsigned char state = run.undecided ? ds::PixelPointC::UNDECIDED : 0;
        long screenRow = screenTop - run.row;
        unsigned int at = set.getCount();
        set.appendPixelPoint(run.first, screenRow, state);
        if (run.last != run.first) set.appendPixelPoint(run.last, screenRow, state);
        addStartMarker(markerSlot(set, long(at)));
        addEndMarker(markerSlot(set, long(set.getCount()) - 1));
    }
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

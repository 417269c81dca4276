#include "evalg/ArbitraryFunctionInnerEvalC.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#include "collab/ds/PixelPointC.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

using math::IntervalC;
using math::algexpr::CompiledExpressionC;

namespace {

int const NO_ROW_LO = std::numeric_limits<int>::max();
int const NO_ROW_HI = std::numeric_limits<int>::min();

int minInt(int a, int b) { return a < b ? a : b; }
int maxInt(int a, int b) { return a > b ? a : b; }

} // namespace

ArbitraryFunctionInnerEvalC::ArbitraryFunctionInnerEvalC() {}
ArbitraryFunctionInnerEvalC::ArbitraryFunctionInnerEvalC(ArbitraryFunctionInnerEvalC const &) = default;
ArbitraryFunctionInnerEvalC &ArbitraryFunctionInnerEvalC::operator=(ArbitraryFunctionInnerEvalC const &) = default;
ArbitraryFunctionInnerEvalC::~ArbitraryFunctionInnerEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> ArbitraryFunctionInnerEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateGraph(service, domain, false);
}

oss::PointerTC<ds::GraphDataSetWinC> ArbitraryFunctionInnerEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain, bool pointSampling) {
    return evaluateWith<rel::ArbitraryFunctionC>(
        service, domain, 1000, 0,
        [this, pointSampling](rel::ArbitraryFunctionC *relation, SetP set) { calculate(relation, set, pointSampling); });
}

double ArbitraryFunctionInnerEvalC::simplestBetween(double a, double b) {
    if (!(a < b)) return a;
    if (a <= 0 && b >= 0) return 0.0;
    // On one side of 0 the bit patterns of the magnitudes order like the
    // magnitudes; the candidate keeps the shared high bits and the first bit
    // where the larger one differs, and clears everything below it.
    bool negative = b < 0;
    double lo = negative ? -b : a;
    double hi = negative ? -a : b;
    std::uint64_t ul, uh;
    std::memcpy(&ul, &lo, sizeof ul);
    std::memcpy(&uh, &hi, sizeof uh);
    std::uint64_t differ = ul ^ uh;
    int bit = 63;
    while (bit > 0 && !((differ >> bit) & 1u)) --bit;
    std::uint64_t us = uh & ~((std::uint64_t(1) << bit) - 1);
    double s;
    std::memcpy(&s, &us, sizeof s);
    return negative ? -s : s;
}

void ArbitraryFunctionInnerEvalC::calculate(rel::ArbitraryFunctionC *relation, SetP set, bool pointSampling) {
    oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression = relation->getExpression();
    if (!expression) return;
    // A one-pixel window has an infinite step: no column to walk.
    if (!(xStep > 0 && std::isfinite(xStep) && yStep > 0 && std::isfinite(yStep))) return;
    try {
        CompiledExpressionC program(expression->getNode());
        math::algexpr::SlopeProgramC slopes(expression->getNode());
        unsigned int columns = pixelColumns;
        // Each edge from its index, not by a running sum: neighbouring columns
        // then share their edge exactly, and the edges never drift.
        std::vector<double> edges(columns + 1);
        for (unsigned int c = 0; c <= columns; ++c) edges[c] = leftEdge + xStep * double(c);
        WalkS walk{};
        walk.program = &program;
        walk.slopes = &slopes;
        walk.set = set.get();
        walk.coveredX = -std::numeric_limits<double>::infinity();
        walk.writtenColumn = -1;
        if (pointSampling)
            calculateSampled(walk, edges);
        else
            calculateEnclosed(walk, edges);
        closeBefore(walk, walk.last);
    } catch (std::bad_alloc const &) {
        // Out of memory: the points drawn so far are the result.
    }
}

void ArbitraryFunctionInnerEvalC::calculateSampled(WalkS &walk, std::vector<double> const &edges) {
    std::vector<double> values(edges.size());
    walk.program->evaluate(edges.data(), values.data(), static_cast<unsigned int>(edges.size()));
    SampleS left = sampleOf(edges[0], values[0], values[0]);
    for (unsigned int c = 0; c < pixelColumns; ++c) {
        walk.column = c;
        SampleS right = sampleOf(edges[c + 1], values[c + 1], values[c + 1]);
        PieceS piece{left, right, 0, 0};
        if (left.defined && right.defined) {
            // The samples stand for the whole column: what they span is drawn
            // and counts as met.
            int lo = minInt(left.rowLo, right.rowLo), hi = maxInt(left.rowHi, right.rowHi);
            if (hi < 0 || lo >= int(pixelRows)) {
                closeBefore(walk, left);
                walk.coveredX = right.x;
            } else {
                continuousLeaf(walk, piece, clampRow(lo), clampRow(hi), clampRow(lo), clampRow(hi));
            }
        } else {
            closeBefore(walk, left);
        }
        walk.last = right;
        endColumn(walk);
        left = right;
    }
}

void ArbitraryFunctionInnerEvalC::calculateEnclosed(WalkS &walk, std::vector<double> const &edges) {
    SampleS left = probe(walk, edges[0]);
    for (unsigned int c = 0; c < pixelColumns; ++c) {
        walk.column = c;
        walk.columnLeft = edges[c];
        SampleS right = probe(walk, edges[c + 1]);
        walkColumn(walk, left, right);
        walk.last = right;
        endColumn(walk);
        left = right;
    }
}

void ArbitraryFunctionInnerEvalC::endColumn(WalkS &walk) {
    writePath(walk);
    flushEdge(walk);
    // The stretch goes on into the next column only from a value inside the
    // window, reached through a continuous piece.
    SampleS const &edge = walk.last;
    bool inside = edge.defined && edge.rowLo >= 0 && edge.rowHi < int(pixelRows);
    if (!(walk.continuing && walk.coveredX == edge.x && inside)) endStretch(walk);
}

void ArbitraryFunctionInnerEvalC::walkColumn(WalkS &walk, SampleS const &left, SampleS const &right) {
    std::vector<PieceS> &pieces = walk.pieces;
    pieces.clear();
    pieces.push_back(PieceS{left, right, 0, 0});
    walk.budget = EVALUATION_BUDGET;
    int const rows = int(pixelRows);
    // Depth first, left half on top: the pieces come off in x order. A piece
    // is split only while the budget lasts beyond what it keeps for the
    // pieces to its right, and every split spends two evaluations, so the
    // loop ends.
    while (!pieces.empty()) {
        PieceS p = pieces.back();
        pieces.pop_back();
        IntervalC y = enclose(walk, IntervalC(p.a.x, p.b.x));
        double mid = p.a.x + (p.b.x - p.a.x) * 0.5;
        bool canSplit = walk.budget > p.kept && p.a.x < mid && mid < p.b.x;
        int claimedLo = y.empty ? rows : rowOf(y.lo);
        int claimedHi = y.empty ? -1 : rowOf(y.hi);
        if (claimedHi < 0 || claimedLo >= rows || claimedLo > claimedHi) {
            // No value, or none inside the window: whatever was visible ends.
            closeBefore(walk, p.a);
            walk.coveredX = p.b.x;
            continue;
        }
        claimedLo = clampRow(claimedLo);
        claimedHi = clampRow(claimedHi);
        bool split = false;
        // Continuous on a closed piece means bounded there too: an infinite
        // bound (ln of an argument reaching 0) is a break whatever the flags.
        bool continuous = y.clean() && std::isfinite(y.lo) && std::isfinite(y.hi);
        if (continuous) {
            int provenLo, provenHi;
            provenRows(p.a, p.b, provenLo, provenHi);
            bool backed = provenLo <= claimedLo && claimedHi <= provenHi;
            if (!backed && walk.slopes->available()) {
                // The derivative sharpens the enclosure: a piece where f
                // provably rises or falls lies between its end values, any
                // other within the mean values about both of its ends.
                IntervalC slope = walk.slopes->derivative(IntervalC(p.a.x, p.b.x));
                --walk.budget;
                IntervalC sharper = IntervalC::whole();
                if (slope.lo >= 0 || slope.hi <= 0) {
                    sharper = IntervalC(p.a.lo < p.b.lo ? p.a.lo : p.b.lo, p.a.hi > p.b.hi ? p.a.hi : p.b.hi);
                } else if (std::isfinite(slope.lo) && std::isfinite(slope.hi)) {
                    // The offsets from each end, rounded outward.
                    IntervalC width = IntervalC::sub(IntervalC::point(p.b.x), IntervalC::point(p.a.x));
                    IntervalC fromA = IntervalC::add(IntervalC(p.a.lo, p.a.hi),
                                                     IntervalC::mul(slope, IntervalC(0.0, width.hi)));
                    IntervalC fromB = IntervalC::add(IntervalC(p.b.lo, p.b.hi),
                                                     IntervalC::mul(slope, IntervalC(-width.hi, 0.0)));
                    sharper = IntervalC(fromA.lo > fromB.lo ? fromA.lo : fromB.lo,
                                        fromA.hi < fromB.hi ? fromA.hi : fromB.hi);
                }
                if (!sharper.empty && sharper.lo <= sharper.hi) {
                    int sharpLo = rowOf(sharper.lo), sharpHi = rowOf(sharper.hi);
                    if (sharpHi < 0 || sharpLo >= rows) {
                        // All of it outside the window after all.
                        closeBefore(walk, p.a);
                        walk.coveredX = p.b.x;
                        continue;
                    }
                    claimedLo = maxInt(claimedLo, clampRow(sharpLo));
                    claimedHi = minInt(claimedHi, clampRow(sharpHi));
                    if (sharper.lo > y.lo) y.lo = sharper.lo;
                    if (sharper.hi < y.hi) y.hi = sharper.hi;
                }
                backed = provenLo <= claimedLo && claimedHi <= provenHi;
            }
            split = !backed && canSplit && p.depth < TIGHT_DEPTH && !hairline(p, y);
            if (!split) {
                continuousLeaf(walk, p, claimedLo, claimedHi, provenLo, provenHi);
                continue;
            }
        } else {
            split = canSplit && p.depth < BREAK_DEPTH;
            if (!split) {
                bool sliver = p.depth >= BREAK_DEPTH || !(p.a.x < mid && mid < p.b.x);
                if (!sliver)
                    undecidedLeaf(walk, p, claimedLo, claimedHi); // out of budget: the enclosure is all there is
                else if (y.mayJump)
                    breakLeaf(walk, p);
                else
                    edgeLeaf(walk, p, claimedLo, claimedHi);
                continue;
            }
        }
        // Where f may break, split at the simplest number of the middle half:
        // a hole, pole or jump of a typed expression (0, an integer, a half)
        // then becomes a piece end, approached from both sides by pieces as
        // wide as their distance to it, whose enclosures tighten as they halve.
        double at = mid;
        if (!continuous) {
            double quarter = (p.b.x - p.a.x) * 0.25;
            double simple = simplestBetween(p.a.x + quarter, p.b.x - quarter);
            if (p.a.x < simple && simple < p.b.x) at = simple;
        }
        SampleS m = probe(walk, at);
        // The left half may not spend what the right half needs to settle
        // an ordinary stretch: a spot no halving settles (sin(1/x) at 0)
        // would take it all, and leave a jump beside it undecided.
        int spare = walk.budget - p.kept;
        int keep = std::min(RIGHT_RESERVE, std::max(spare, 0) / 2);
        pieces.push_back(PieceS{m, p.b, p.depth + 1, p.kept});
        pieces.push_back(PieceS{p.a, m, p.depth + 1, p.kept + keep});
    }
}

void ArbitraryFunctionInnerEvalC::continuousLeaf(WalkS &walk, PieceS const &piece, int claimedLo, int claimedHi,
                                                 int provenLo, int provenHi) {
    // A new stretch starts with the piece's left end, which it draws.
    if (!(walk.open && walk.continuing && walk.coveredX == piece.a.x)) startWith(walk, piece.a);
    addToPath(walk, rowOfSample(piece.a), rowOfSample(piece.b), claimedLo, claimedHi, provenLo, provenHi);
    walk.coveredX = piece.b.x;
    walk.continuing = true;
}

void ArbitraryFunctionInnerEvalC::breakLeaf(WalkS &walk, PieceS const &piece) {
    closeBefore(walk, piece.a);
    auto sameRow = [](SampleS const &u, SampleS const &v) {
        return u.rowKnown() && v.rowKnown() && u.rowLo == v.rowLo;
    };
    // The change of side lies between lo, in the row of the left end, and hi.
    SampleS lo = piece.a, hi = piece.b;
    double s = simplestBetween(piece.a.x, piece.b.x);
    if (piece.a.x < s && s < piece.b.x) {
        SampleS inner = probe(walk, s);
        bool withA = sameRow(inner, piece.a), withB = sameRow(inner, piece.b);
        // A value in a row of its own is an isolated point (sign(0)); one in
        // the row of a side is drawn with that side.
        if (!withA && !withB) {
            pointStretch(walk, inner, true);
            return;
        }
        if (withA) lo = inner;
        else hi = inner;
    }
    if (!piece.a.rowKnown() || !piece.b.rowKnown() || sameRow(piece.a, piece.b)) return;
    // Halved down to neighbouring doubles, the first value past the change
    // is the curve's own there: in a row of neither side it is an isolated
    // point off the simple numbers (sign(x - 0.3) at 0.3). The piece's right
    // end is left to the piece it starts.
    for (int halvings = 0; halvings < 64 && walk.budget > piece.kept; ++halvings) {
        double m = doubleBetween(lo.x, hi.x);
        if (!(lo.x < m && m < hi.x)) break;
        SampleS middle = probe(walk, m);
        if (sameRow(middle, piece.a))
            lo = middle;
        else
            hi = middle;
    }
    if (hi.x != piece.b.x && doubleBetween(lo.x, hi.x) == lo.x && hi.rowKnown() && !sameRow(hi, piece.a) &&
        !sameRow(hi, piece.b))
        pointStretch(walk, hi, true);
}

double ArbitraryFunctionInnerEvalC::doubleBetween(double a, double b) {
    // The middle of the doubles from a to b (a < b, both numbers), by their
    // order as integers: halving that count reaches neighbours within 64
    // steps, where halving the distance would take about a thousand near 0.
    auto key = [](double v) {
        std::uint64_t u;
        std::memcpy(&u, &v, sizeof u);
        return (u >> 63) ? ~u : u | (std::uint64_t(1) << 63);
    };
    std::uint64_t ka = key(a), kb = key(b);
    std::uint64_t km = ka + (kb - ka) / 2;
    std::uint64_t u = (km >> 63) ? km & ~(std::uint64_t(1) << 63) : ~km;
    double m;
    std::memcpy(&m, &u, sizeof m);
    return m;
}

void ArbitraryFunctionInnerEvalC::undecidedLeaf(WalkS &walk, PieceS const &piece, int claimedLo, int claimedHi) {
    SampleS const &a = piece.a;
    bool visible = a.defined && a.rowHi >= 0 && a.rowLo < int(pixelRows);
    int enter = visible ? clampRow(rowOfSample(a)) : claimedLo;
    int exit = piece.b.defined ? clampRow(rowOfSample(piece.b)) : claimedHi;
    if (walk.open && walk.loose && walk.looseEnd == a.x) {
        // Undecided pieces side by side (what a spent budget leaves) make one
        // run of the column: its pixels are the same.
        addToPath(walk, enter, exit, claimedLo, claimedHi, NO_ROW_LO, NO_ROW_HI);
    } else {
        // A stretch of its own, from the left end's row when it has one; the
        // right end is left to the piece after it.
        startStretch(walk);
        bool proven = visible && a.rowKnown();
        addToPath(walk, enter, exit, minInt(claimedLo, enter), maxInt(claimedHi, enter),
                  proven ? enter : NO_ROW_LO, proven ? enter : NO_ROW_HI);
        walk.loose = true;
        walk.coveredX = a.x;
    }
    walk.looseEnd = piece.b.x;
}

// A sliver beside a domain edge, with no jump inside: the defined part is
// continuous and its rows are real (sqrt(4 - x^2) at 2, ln|x| near 0 meeting
// every row below). With a value on one side only, they end or begin that
// side's stretch; otherwise they stand on their own.
void ArbitraryFunctionInnerEvalC::edgeLeaf(WalkS &walk, PieceS const &piece, int claimedLo, int claimedHi) {
    SampleS const &a = piece.a, &b = piece.b;
    if (a.defined && !b.defined && walk.open && walk.continuing && walk.coveredX == a.x) {
        int row = clampRow(rowOfSample(a));
        addToPath(walk, row, row, claimedLo, claimedHi, NO_ROW_LO, NO_ROW_HI);
        endStretch(walk);
        return;
    }
    if (b.defined && !a.defined) {
        startWith(walk, a);
        int row = clampRow(rowOfSample(b));
        int lo = minInt(claimedLo, row), hi = maxInt(claimedHi, row);
        bool proven = b.rowKnown() && b.rowLo >= 0 && b.rowLo < int(pixelRows);
        addToPath(walk, row == hi ? lo : hi, row, lo, hi, proven ? row : NO_ROW_LO, proven ? row : NO_ROW_HI);
        walk.coveredX = b.x;
        walk.continuing = true;
        return;
    }
    // Rows the stretch that just ended drew in this column add nothing.
    if (walk.writtenColumn == walk.column && walk.writtenLo <= claimedLo && claimedHi <= walk.writtenHi) {
        closeBefore(walk, a);
        return;
    }
    if (!a.defined && !b.defined) {
        // The domain may begin at the right end, a point whose own value is
        // in doubt (sqrt(4 - x^2) at -2): the rows go with the stretch that
        // starts there, if one does in this column.
        closeBefore(walk, a);
        walk.edge = EdgeS{true, b.x, walk.column, claimedLo, claimedHi};
        return;
    }
    undecidedLeaf(walk, piece, claimedLo, claimedHi);
}

// Starts a stretch at the sample, taking over the rows of a domain edge that
// ends there.
void ArbitraryFunctionInnerEvalC::startWith(WalkS &walk, SampleS const &sample) {
    EdgeS edge = walk.edge;
    bool joins = edge.pending && edge.x == sample.x && edge.column == walk.column;
    if (joins) walk.edge.pending = false;
    endStretch(walk);
    echoLeftEdge(walk, sample);
    startStretch(walk);
    if (joins) {
        int row = sample.defined ? clampRow(rowOfSample(sample)) : edge.lo;
        addToPath(walk, row == edge.hi ? edge.lo : edge.hi, row, minInt(edge.lo, row), maxInt(edge.hi, row), NO_ROW_LO,
                  NO_ROW_HI);
    }
}

// A point on the edge between two columns lies in both. Where a stretch
// starts there (a step's value at an integer edge, an isolated point), the
// column on the left, already written, gets that point too.
void ArbitraryFunctionInnerEvalC::echoLeftEdge(WalkS &walk, SampleS const &sample) {
    if (walk.column == 0 || sample.x != walk.columnLeft || !sample.defined) return;
    if (sample.rowHi < 0 || sample.rowLo >= int(pixelRows)) return;
    flushEdge(walk);
    --walk.column;
    startStretch(walk);
    int row = clampRow(rowOfSample(sample));
    bool known = sample.rowKnown();
    addToPath(walk, row, row, clampRow(sample.rowLo), clampRow(sample.rowHi), known ? row : NO_ROW_LO,
              known ? row : NO_ROW_HI);
    endStretch(walk);
    ++walk.column;
}

// A domain edge's rows that no stretch took over stand on their own.
void ArbitraryFunctionInnerEvalC::flushEdge(WalkS &walk) {
    if (!walk.edge.pending) return;
    EdgeS edge = walk.edge;
    walk.edge.pending = false;
    long column = walk.column;
    walk.column = edge.column;
    startStretch(walk);
    addToPath(walk, edge.lo, edge.hi, edge.lo, edge.hi, NO_ROW_LO, NO_ROW_HI);
    endStretch(walk);
    walk.column = column;
}

// Ends what is open, and draws the sample as a point of its own unless it is
// already part of what was drawn.
void ArbitraryFunctionInnerEvalC::closeBefore(WalkS &walk, SampleS const &sample) {
    // A stretch carried over the column edge that ends right there has drawn
    // the edge's point in the column on the left only; it lies in this one
    // too (floor(1/x) at -1/4, where the value -4 belongs to the left).
    bool carried = walk.open && walk.continuing && !walk.path.any && walk.coveredX == sample.x &&
                   sample.x == walk.columnLeft;
    endStretch(walk);
    flushEdge(walk);
    if (sample.defined && (sample.x != walk.coveredX || carried)) pointStretch(walk, sample, !carried);
}

void ArbitraryFunctionInnerEvalC::pointStretch(WalkS &walk, SampleS const &sample, bool echo) {
    walk.coveredX = sample.x;
    if (!sample.defined || sample.rowHi < 0 || sample.rowLo >= int(pixelRows)) return;
    endStretch(walk);
    if (echo) echoLeftEdge(walk, sample);
    startStretch(walk);
    int lo = clampRow(sample.rowLo), hi = clampRow(sample.rowHi);
    int row = clampRow(rowOfSample(sample));
    bool known = sample.rowKnown();
    addToPath(walk, row, row, lo, hi, known ? row : NO_ROW_LO, known ? row : NO_ROW_HI);
    endStretch(walk);
}

// The program over x; where a bound left the double range (exp(x)/exp(x) at
// 710) once more in the wider exponent range of long double.
IntervalC ArbitraryFunctionInnerEvalC::enclose(WalkS &walk, IntervalC const &x) const {
    IntervalC y = walk.program->evaluate(x);
    --walk.budget;
    if (y.overflow) {
        y = walk.program->evaluateWide(x);
        --walk.budget;
    }
    return y;
}

ArbitraryFunctionInnerEvalC::SampleS ArbitraryFunctionInnerEvalC::probe(WalkS &walk, double x) const {
    IntervalC y = enclose(walk, IntervalC(x, x));
    // At a point a possible jump is either a step's own value (floor at an
    // integer: a tight enclosure) or a division by an exact zero, whose
    // enclosure is loose (atan(1/0)) or unbounded: no value of the function.
    bool tight = y.lo == y.hi || (std::isfinite(y.lo) && std::isfinite(y.hi) &&
                                  y.hi - y.lo <= 1e-9 * (std::fabs(y.lo) + std::fabs(y.hi)));
    if (y.empty || y.partial || (y.mayJump && !tight)) return sampleOf(x, std::nan(""), std::nan(""));
    return sampleOf(x, y.lo, y.hi);
}

ArbitraryFunctionInnerEvalC::SampleS ArbitraryFunctionInnerEvalC::sampleOf(double x, double lo, double hi) const {
    // Infinite values are values (1/0 in the double rule), far outside.
    bool defined = !std::isnan(lo) && !std::isnan(hi) && lo <= hi;
    if (!defined) return SampleS{x, false, 0, 0, int(pixelRows), -1};
    return SampleS{x, true, lo, hi, rowOf(lo), rowOf(hi)};
}

int ArbitraryFunctionInnerEvalC::rowOf(double y) const {
    if (!(y >= bottomEdge)) return -1;
    if (!(y < topEdge)) return int(pixelRows);
    double r = std::floor((y - bottomEdge) / yStep);
    // The quotient's rounding may carry a value just below the top edge up.
    return r < double(pixelRows) ? int(r) : int(pixelRows) - 1;
}

// Whether a piece's enclosure reaches past its end values by a hair only (a
// ten-millionth of a row): then the rows it claims beyond those proven are
// met, if at all, within a hair of a row edge, as where the curve runs
// through a pixel corner. No halving settles those in double arithmetic;
// they stay undecided rather than spend the column's budget.
bool ArbitraryFunctionInnerEvalC::hairline(PieceS const &p, IntervalC const &y) const {
    if (!p.a.defined || !p.b.defined) return false;
    double hair = yStep * 1e-7;
    double endLo = p.a.lo < p.b.lo ? p.a.lo : p.b.lo;
    double endHi = p.a.hi > p.b.hi ? p.a.hi : p.b.hi;
    return y.lo >= endLo - hair && y.hi <= endHi + hair;
}

int ArbitraryFunctionInnerEvalC::rowOfSample(SampleS const &s) const {
    if (s.rowKnown()) return s.rowLo;
    return rowOf(s.lo * 0.5 + s.hi * 0.5);
}

// The rows that f provably meets on a piece where it is continuous: the rows
// of its end values where those are known, and, by the intermediate values,
// every row between them.
void ArbitraryFunctionInnerEvalC::provenRows(SampleS const &a, SampleS const &b, int &lo, int &hi) const {
    lo = NO_ROW_LO;
    hi = NO_ROW_HI;
    auto take = [&lo, &hi](int from, int to) {
        lo = minInt(lo, from);
        hi = maxInt(hi, to);
    };
    if (a.rowKnown()) take(a.rowLo, a.rowLo);
    if (b.rowKnown()) take(b.rowLo, b.rowLo);
    if (a.defined && b.defined) {
        if (a.hi <= b.lo) take(rowOf(a.hi), rowOf(b.lo));
        if (b.hi <= a.lo) take(rowOf(b.hi), rowOf(a.lo));
    }
    if (lo > hi || hi < 0 || lo >= int(pixelRows)) {
        lo = NO_ROW_LO;
        hi = NO_ROW_HI;
        return;
    }
    lo = clampRow(lo);
    hi = clampRow(hi);
}

void ArbitraryFunctionInnerEvalC::startStretch(WalkS &walk) {
    endStretch(walk);
    flushEdge(walk);
    walk.open = true;
    walk.loose = false;
    walk.fresh = true;
}

void ArbitraryFunctionInnerEvalC::endStretch(WalkS &walk) {
    writePath(walk);
    if (walk.open && !walk.fresh) {
        unsigned int count = walk.set->getCount();
        addEndMarker(markerSlot(*walk.set, long(count) - 1));
    }
    walk.open = false;
    walk.continuing = false;
    walk.loose = false;
}

void ArbitraryFunctionInnerEvalC::addToPath(WalkS &walk, int enter, int exit, int claimedLo, int claimedHi,
                                            int provenLo, int provenHi) {
    PathS &path = walk.path;
    if (!path.any) {
        path = PathS{true, enter, exit, claimedLo, claimedHi, provenLo, provenHi};
        return;
    }
    path.exit = exit;
    path.claimedLo = minInt(path.claimedLo, claimedLo);
    path.claimedHi = maxInt(path.claimedHi, claimedHi);
    // One continuous stretch: every row between two proven rows is met too.
    path.provenLo = minInt(path.provenLo, provenLo);
    path.provenHi = maxInt(path.provenHi, provenHi);
}

// The stretch's run in this column, as points: from the row where it enters,
// over the nearer extreme row and then the farther one, to the row where it
// leaves; a point wherever a leg starts, turns or changes between proven and
// undecided rows.
void ArbitraryFunctionInnerEvalC::writePath(WalkS &walk) {
    PathS &path = walk.path;
    if (!path.any) return;
    path.any = false;
    int lo = path.claimedLo, hi = path.claimedHi;
    if (lo > hi) return;
    auto clampTo = [lo, hi](int r) { return r < lo ? lo : (r > hi ? hi : r); };
    int enter = clampTo(path.enter), exit = clampTo(path.exit);
    bool lowFirst = (enter - lo) + (hi - exit) <= (hi - enter) + (exit - lo);
    int turns[4] = {enter, lowFirst ? lo : hi, lowFirst ? hi : lo, exit};

    ds::GraphDataSetWinC &set = *walk.set;
    unsigned int before = set.getCount();
    int const provenLo = path.provenLo, provenHi = path.provenHi;
    long const screenTop = long(pixelRows) - 1;
    int lastRow = -1;
    bool wrote = false;
    auto write = [&](int row) {
        if (wrote && row == lastRow) return;
        bool undecided = row < provenLo || row > provenHi;
        set.appendPixelPoint(walk.column, screenTop - row, undecided ? ds::PixelPointC::UNDECIDED : 0);
        lastRow = row;
        wrote = true;
    };
    write(turns[0]);
    for (int leg = 0; leg < 3; ++leg) {
        int from = turns[leg], to = turns[leg + 1];
        if (from == to) continue;
        int step = to > from ? 1 : -1;
        // Where the rows change between undecided and proven along the leg:
        // the last row before each change and the first after it.
        int changes[2] = {step > 0 ? provenLo : provenHi, step > 0 ? provenHi + 1 : provenLo - 1};
        for (int change : changes) {
            bool inside = step > 0 ? (change > from && change <= to) : (change < from && change >= to);
            if (provenLo > provenHi || !inside) continue;
            write(change - step);
            write(change);
        }
        write(to);
    }
    walk.writtenColumn = walk.column;
    walk.writtenLo = lo;
    walk.writtenHi = hi;
    if (walk.fresh && set.getCount() > before) {
        addStartMarker(markerSlot(set, long(before)));
        walk.fresh = false;
    }
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

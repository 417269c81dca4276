#ifndef QELT_EVALG_ARBITRARYFUNCTIONINNEREVALC_H
#define QELT_EVALG_ARBITRARYFUNCTIONINNEREVALC_H

#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/CompiledExpressionC.h"
#include "collab/math/algexpr/SlopeProgramC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws y = f(x) for an expression f, the work behind
// ArbitraryFunctionFloat64EvalC.
//
// Every pixel gets one of three answers. A pixel is left out only when an
// interval enclosure proves the curve misses it; it is drawn plainly when the
// curve provably meets it (a point of the curve enclosed inside it, or, on a
// piece where f is proven continuous, every row between two such points); a
// pixel that is neither is drawn and marked ds::PixelPointC::UNDECIDED.
//
// Each column [left edge, right edge] is bisected, left half first, until
// every piece is decided:
// - defined and continuous: halved until the rows its enclosure claims are
//   all backed by the enclosed values at its two ends (so an enclosure's
//   overestimate is never drawn), down to TIGHT_DEPTH; what is still unbacked
//   then is undecided. TIGHT_DEPTH lies well below BREAK_DEPTH: beside a
//   hole (x/x at 0) a piece's enclosure is as wide as the piece is near the
//   hole, and only pieces a few halvings smaller than that distance fit;
// - may be undefined or discontinuous: halved down to BREAK_DEPTH (2^-40 of a
//   column). What is left is a break: the stretch ends at its left end and a
//   new one starts at its right end. The enclosure of such a sliver says
//   nothing (x/x around 0 is the whole line) and is dropped, except where only
//   a domain edge may lie inside (no jump): then the defined part's rows are
//   real and drawn as undecided. The simplest double inside a break (0, an
//   integer, a short binary fraction: where isolated points sit, as sign(0))
//   is tried as a point of its own;
// - no value, or nothing inside the window: the stretch ends.
// A column spends at most EVALUATION_BUDGET interval evaluations; pieces left
// when it runs out are drawn from their enclosures, undecided.
//
// Consecutive decided pieces of one stretch are joined; a stretch goes on into
// the next column only when f is proven continuous on both sides of the edge
// and its value there lies inside the window. Within a column a stretch's
// pixels are one vertical run, written from the row where the stretch enters
// the column, over both extreme rows, to the row where it leaves it, so the
// join to the next column starts where the curve does.
//
// Point sampling (the flag) instead joins the double values at the column
// edges, breaking only where a sample has no value: faster, with no proof.
//
// Final: PointerTC deletes it through its non-virtual destructor.
class ArbitraryFunctionInnerEvalC final : public CartesianRelationGraphEvalHelperC {
public:
    static unsigned int const BREAK_DEPTH = 40;
    static unsigned int const TIGHT_DEPTH = 48;
    static int const EVALUATION_BUDGET = 4096;
    // Kept back for the right half at each split (at most half of what is
    // left), so that one side's spot that never settles cannot spend it all.
    static constexpr int RIGHT_RESERVE = 64;

    ArbitraryFunctionInnerEvalC();
    ArbitraryFunctionInnerEvalC(ArbitraryFunctionInnerEvalC const &other);
    ArbitraryFunctionInnerEvalC &operator=(ArbitraryFunctionInnerEvalC const &other);
    ~ArbitraryFunctionInnerEvalC();

    // The enclosure-driven drawing.
    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;
    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain,
                                                       bool pointSampling);

    // The double in [a, b] with the fewest significant bits: 0 when the range
    // holds it, else the binary prefix a and b share followed by a one.
    static double simplestBetween(double a, double b);
    // The double halfway, by count, between a and b (a < b): a itself when
    // they are neighbours.
    static double doubleBetween(double a, double b);

private:
    // A point of the curve: x, and an enclosure [lo, hi] of f(x) with the rows
    // of its two ends (-1 below the window, pixelRows above it).
    struct SampleS {
        double x;
        bool defined;
        double lo;
        double hi;
        int rowLo;
        int rowHi;
        bool rowKnown() const { return defined && rowLo == rowHi; }
    };
    struct PieceS {
        SampleS a;
        SampleS b;
        unsigned int depth;
        int kept; // budget left for the pieces to its right: not to be spent
    };
    // The part of the open stretch in the current column: the rows where it
    // enters and leaves, the rows it may meet and those it provably meets
    // (provenLo > provenHi: none), all inside the window.
    struct PathS {
        bool any;
        int enter;
        int exit;
        int claimedLo;
        int claimedHi;
        int provenLo;
        int provenHi;
    };
    // The rows of a sliver beside a domain edge with no value at either end,
    // waiting for a stretch that starts at its right end.
    struct EdgeS {
        bool pending;
        double x;
        long column;
        int lo;
        int hi;
    };
    struct WalkS {
        math::algexpr::CompiledExpressionC const *program;
        math::algexpr::SlopeProgramC const *slopes;
        ds::GraphDataSetWinC *set;
        long column;
        double columnLeft;
        PathS path;
        // A stretch is open; fresh: it has not written a point yet.
        bool open;
        bool fresh;
        // The open stretch reached coveredX through a continuous piece.
        bool continuing;
        // The open stretch is a run of undecided pieces ending at looseEnd.
        bool loose;
        double looseEnd;
        // The x of the last sample that is part of what was drawn.
        double coveredX;
        SampleS last;
        // The rows of the last run written, and its column.
        long writtenColumn;
        int writtenLo;
        int writtenHi;
        EdgeS edge;
        int budget;
        std::vector<PieceS> pieces;
    };

    void calculate(rel::ArbitraryFunctionC *relation, SetP set, bool pointSampling);
    void calculateSampled(WalkS &walk, std::vector<double> const &edges);
    void calculateEnclosed(WalkS &walk, std::vector<double> const &edges);
    void walkColumn(WalkS &walk, SampleS const &left, SampleS const &right);
    void endColumn(WalkS &walk);

    // The leaves of the bisection, in x order.
    void continuousLeaf(WalkS &walk, PieceS const &piece, int claimedLo, int claimedHi, int provenLo,
                        int provenHi);
    void breakLeaf(WalkS &walk, PieceS const &piece);
    void undecidedLeaf(WalkS &walk, PieceS const &piece, int claimedLo, int claimedHi);
    void edgeLeaf(WalkS &walk, PieceS const &piece, int claimedLo, int claimedHi);
    void closeBefore(WalkS &walk, SampleS const &sample);
    void startWith(WalkS &walk, SampleS const &sample);
    void flushEdge(WalkS &walk);
    void echoLeftEdge(WalkS &walk, SampleS const &sample);
    // echo: also into the column on the left when the sample is on its edge.
    void pointStretch(WalkS &walk, SampleS const &sample, bool echo);

    math::IntervalC enclose(WalkS &walk, math::IntervalC const &x) const;
    SampleS probe(WalkS &walk, double x) const;
    SampleS sampleOf(double x, double lo, double hi) const;
    int rowOf(double y) const;
    int clampRow(int r) const { return r < 0 ? 0 : (r >= int(pixelRows) ? int(pixelRows) - 1 : r); }
    int rowOfSample(SampleS const &s) const;
    void provenRows(SampleS const &a, SampleS const &b, int &lo, int &hi) const;
    bool hairline(PieceS const &p, math::IntervalC const &y) const;

    void startStretch(WalkS &walk);
    void endStretch(WalkS &walk);
    void addToPath(WalkS &walk, int enter, int exit, int claimedLo, int claimedHi, int provenLo, int provenHi);
    void writePath(WalkS &walk);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_EVALG_PARAMETRICCURVEEVALC_H
#define QELT_EVALG_PARAMETRICCURVEEVALC_H

#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/rel/ParametricCurveC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws a parametric curve (x(t), y(t)) over its t range, and so also a
// polar curve r = r(θ), from enclosures of x and y over parameter pieces.
//
// The range is bisected depth first, left half first, so the pieces come off
// in t order:
// - no value, or an enclosure wholly outside the window: whatever was
//   visible ends there;
// - may be undefined or discontinuous: halved down to BREAK_DEPTH (2^-40 of
//   the range); what is left is a break, dropped, and the stretch ends;
// - defined and continuous: halved until its x and y enclosures fit one
//   pixel, which the curve then provably meets and which is drawn, or until
//   the pixels of its two end points share an edge and hold all it claims
//   (then both are drawn: the curve runs from one into the other); below
//   TIGHT_DEPTH, after SETTLE_DEPTH halvings that left it claiming a few
//   pixels, or once the curve's EVALUATION_BUDGET is spent (up to what the
//   pieces after it keep back), the pixels
//   its enclosure claims are drawn undecided, ds::PixelPointC::UNDECIDED,
//   when they are few (a piece through a pixel corner), else only the pixels
//   of its two end points.
// Consecutive drawn pieces of one stretch are joined: they share an end point
// and the curve is proven continuous on both, so their pixels touch. A
// stretch's first point carries FIRST_VISIBLE and its last LAST_VISIBLE.
//
// Final: PointerTC deletes it through its non-virtual destructor.
class ParametricCurveEvalC final : public CartesianRelationGraphEvalHelperC {
public:
    static unsigned int const BREAK_DEPTH = 40;
    static unsigned int const TIGHT_DEPTH = 56;
    static long const EVALUATION_BUDGET = 1L << 18;
    // Kept back for the later half at each split (at most half of what is
    // left), so that a spot no halving settles (sin(1/t) at 0) cannot spend
    // the budget of the whole rest of the curve.
    static constexpr long LATER_RESERVE = 8192;
    // An unsettled piece whose enclosure claims at most this many pixels a
    // side is drawn as all of them.
    static int const UNSETTLED_SPAN = 3;
    // Halvings a piece gets once it claims only that few pixels.
    static unsigned int const SETTLE_DEPTH = 8;

    ParametricCurveEvalC();
    ParametricCurveEvalC(ParametricCurveEvalC const &other);
    ParametricCurveEvalC &operator=(ParametricCurveEvalC const &other);
    ~ParametricCurveEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    // A point of the curve, and the pixel it provably lies in when its
    // enclosure fits one pixel of the window.
    struct SampleS {
        bool fits;
        int col;
        int row;
    };
    struct PieceS {
        double t0;
        double t1;
        SampleS a;
        SampleS b;
        unsigned int depth;
        // Halvings spent since the piece's enclosure first claimed only a
        // few pixels.
        unsigned int settle;
        // Budget left for the pieces after it in t: not to be spent.
        long kept;
    };
    // Pixel ranges an enclosure claims; -1 and the pixel count stand for
    // beyond the window on either side.
    struct ClaimS {
        int colLo;
        int colHi;
        int rowLo;
        int rowHi;
    };
    struct WalkS {
        rel::CurveFunctionIC const *curve;
        ds::GraphDataSetWinC *set;
        bool open;
        int lastCol;
        int lastRow;
        long budget;
        std::vector<PieceS> pieces;
    };

    void calculate(rel::ParametricCurveC *relation, SetP set);
    void unsettledLeaf(WalkS &walk, PieceS const &piece, ClaimS const &claim);
    SampleS sampleAt(WalkS &walk, double t) const;
    // Whether the piece's two end pixels touch and hold everything its
    // enclosure claims.
    static bool backedByEnds(PieceS const &piece, ClaimS const &claim);
    void addPixel(WalkS &walk, int col, int row, bool undecided);
    void endStretch(WalkS &walk);

    ClaimS claimOf(math::IntervalC const &x, math::IntervalC const &y) const;
    int columnOf(double x) const;
    int rowOf(double y) const;
    bool missesWindow(ClaimS const &c) const;
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

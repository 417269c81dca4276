#ifndef QELT_EVALG_IMPLICITRELATIONEVALC_H
#define QELT_EVALG_IMPLICITRELATIONEVALC_H

#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/rel/ImplicitRelationC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws an implicit relation h(x, y) op 0 from enclosures of h over boxes,
// or an AND / OR of such relations.
//
// Every pixel (a closed box of the grid) gets one of three answers:
// - excluded, not drawn: h's enclosure over the box proves that no point of
//   it satisfies the relation (or that h has no value there);
// - proven, drawn: for h = 0, two points of a box inside the pixel where h is
//   proven continuous (a clean enclosure) with proven opposite signs, or a
//   point with h exactly 0; for an inequality, a point (or a whole box) that
//   provably satisfies it;
// - undecided, drawn with ds::PixelPointC::UNDECIDED: neither, once the
//   pixel's budget of PIXEL_BUDGET evaluations or SUB_DEPTH quarterings is
//   spent.
// For AND and OR the verdicts combine as three-state logic over each box. A
// point proves AND only where every other part holds over the whole piece
// around it (two curves each crossing a piece need not meet in it).
//
// The work follows the curve rather than the window: a quadtree over pixel
// index ranges starts from the whole window, drops every box whose enclosure
// excludes the relation, fills every box that provably satisfies it at once,
// and splits the rest down to single pixels, which alone are subdivided
// further.
//
// Output: the drawn pixels as row runs, screen rows from the top and columns
// from the left, a run being adjacent pixels of one row in the same state. A
// run is its own stretch: its first pixel carries FIRST_VISIBLE and its last
// LAST_VISIBLE (both on one point for a run of one pixel), so a display that
// joins consecutive points except across those markers draws each run as a
// horizontal line and never joins two runs. Undecided runs carry UNDECIDED on
// both points.
//
// Final: PointerTC deletes it through its non-virtual destructor.
class ImplicitRelationEvalC final : public CartesianRelationGraphEvalHelperC {
public:
    static int const PIXEL_BUDGET = 64;
    static unsigned int const SUB_DEPTH = 8;

    ImplicitRelationEvalC();
    ImplicitRelationEvalC(ImplicitRelationEvalC const &other);
    ImplicitRelationEvalC &operator=(ImplicitRelationEvalC const &other);
    ~ImplicitRelationEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;
    // everyPixel: classify each pixel on its own, without the quadtree (the
    // same answers at far greater cost; the yardstick the quadtree is
    // measured against).
    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain,
                                                       bool everyPixel);

private:
    // What an enclosure says about the relation over its box.
    enum VerdictE { NONE, SOME, ALL };
    // One comparison, or AND / OR of two earlier conditions: the relation's
    // tree laid out children first, the whole relation last.
    struct ConditionS {
        rel::ImplicitRelationC::LogicE logic;
        rel::BoxFunctionIC const *h; // null: satisfied nowhere
        rel::ImplicitRelationC::ComparisonE comparison;
        size_t left;
        size_t right;
    };
    // Columns first .. last of one row (rows counted from the bottom).
    struct RunS {
        int row;
        int first;
        int last;
        bool undecided;
    };
    // Pixel index ranges [c0, c1) x [r0, r1).
    struct BoxS {
        int c0;
        int c1;
        int r0;
        int r1;
    };
    // A box inside one pixel, in plane coordinates.
    struct PieceS {
        double x0;
        double x1;
        double y0;
        double y1;
        unsigned int depth;
    };
    struct WalkS {
        std::vector<ConditionS> conditions;
        bool equation; // some comparison is an equation: proofs cost more
        // Per condition, from the last box judged: its verdict and, for a
        // comparison, its enclosure; and whether a point of the piece is
        // proven to satisfy it.
        std::vector<VerdictE> verdicts;
        std::vector<math::IntervalC> values;
        std::vector<char> witnessed;
        std::vector<double> columnEdges;
        std::vector<double> rowEdges;
        std::vector<RunS> runs;
        std::vector<BoxS> boxes;
        std::vector<PieceS> pieces;
    };

    void calculate(rel::ImplicitRelationC *relation, SetP set, bool everyPixel);
    void walkQuadtree(WalkS &walk);
    void classifyPixel(WalkS &walk, int column, int row);
    bool provenInside(WalkS &walk, PieceS const &piece) const;
    bool comparisonProven(ConditionS const &c, PieceS const &piece, math::IntervalC const &value) const;
    void emit(WalkS &walk, ds::GraphDataSetWinC &set);

    static void layOut(rel::ImplicitRelationC const *relation, WalkS &walk);
    static VerdictE judge(rel::ImplicitRelationC::ComparisonE comparison, math::IntervalC const &v);
    static VerdictE judgeBox(WalkS &walk, double x0, double x1, double y0, double y1);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_EVALG_ARBITRARYFUNCTIONINNEREVALC_H
#define QELT_EVALG_ARBITRARYFUNCTIONINNEREVALC_H

#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/CompiledExpressionC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws y = f(x) for an expression f, the work behind
// ArbitraryFunctionFloat64EvalC.
//
// The expression is compiled once per evaluation. Each column's whole x
// interval is run through the program in interval arithmetic, so the
// enclosure says where the curve can be, and whether it may break there (a
// pole, a jump, an edge of the domain). A column is bisected only where the
// enclosure may break, or where its visible height exceeds that of the point
// samples at the piece's ends by more than a pixel row; then each piece is
// drawn by what it proves:
// - continuous: its enclosure joins the column's run (so every pixel the
//   curve passes through is drawn);
// - may break, at the depth limit: the stretch ends there (LAST_VISIBLE on
//   the point before, FIRST_VISIBLE on the point after), the samples at the
//   piece's two ends closing the one stretch and opening the next;
// - no value anywhere, or nothing of it inside the window: the stretch ends.
// So a pole or a jump never becomes a vertical line, a steep continuous
// stretch is never broken, and narrow features are not missed.
//
// Point sampling (the flag) instead joins the values at the column edges,
// breaking only where a sample has no value: faster, with no guarantee.
//
// Final: PointerTC deletes it through its non-virtual destructor.
class ArbitraryFunctionInnerEvalC final : public CartesianRelationGraphEvalHelperC {
public:
    // Bisection limits: a piece that may break beside a value is halved down
    // to 2^-40 of a column, any other down to 2^-8, and a column spends at
    // most this many interval evaluations on halving.
    static unsigned int const BREAK_DEPTH = 40;
    static unsigned int const DETAIL_DEPTH = 8;
    static int const EVALUATION_BUDGET = 2048;

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

private:
    // A stretch of the curve's run in the current column, not yet emitted:
    // its lowest and highest value, and the values where it starts and ends
    // (which give the run its direction).
    struct RunS {
        bool any;
        double lo;
        double hi;
        double first;
        double last;
    };
    // A piece of a column with the values at its two ends.
    struct PieceS {
        double a;
        double b;
        double fa;
        double fb;
        unsigned int depth;
    };
    // The state of one walk.
    struct WalkS {
        math::algexpr::CompiledExpressionC const *program;
        SetP set;
        RunS run;
        bool open; // a visible stretch is open and ends at the set's last point
        std::vector<PieceS> pieces;
        // The lowest and highest value sampled so far in the current column
        // since the last break.
        double seenLo;
        double seenHi;
    };

    void calculate(rel::ArbitraryFunctionC *relation, SetP set, bool pointSampling);
    void calculateSampled(WalkS &walk, std::vector<double> const &values);
    void calculateEnclosed(WalkS &walk, std::vector<double> const &edges, std::vector<double> const &values);
    void walk_column(WalkS &walk, unsigned int column, PieceS whole);
    bool too_tall(WalkS const &walk, math::IntervalC const &y) const;
    static void see(WalkS &walk, double y);
    static void unsee(WalkS &walk);
    bool inside(double y) const { return y >= bottomEdge && y <= topEdge; }

    static void add_to_run(RunS &run, double lo, double hi, double first, double last);
    static void add_sample(RunS &run, double y);
    void emit_run(WalkS &walk, unsigned int column);
    void end_stretch(WalkS &walk);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

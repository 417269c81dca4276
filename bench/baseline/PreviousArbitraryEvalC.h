#ifndef EVALG_BENCH_PREVIOUSARBITRARYEVALC_H
#define EVALG_BENCH_PREVIOUSARBITRARYEVALC_H

#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/CompiledExpressionC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// The arbitrary-function drawing as it was before pixels were proven (one
// row of enclosure overestimate allowed, joins from a column's extremes),
// kept unchanged as the benchmark's yardstick: the proven drawing is measured
// against it in the same run. Not part of the library.
class PreviousArbitraryEvalC final : public CartesianRelationGraphEvalHelperC {
public:
    // Bisection limits: a piece that may break beside a value is halved down
    // to 2^-40 of a column, any other down to 2^-8, and a column spends at
    // most this many interval evaluations on halving.
    static unsigned int const BREAK_DEPTH = 40;
    static unsigned int const DETAIL_DEPTH = 8;
    static int const EVALUATION_BUDGET = 2048;

    PreviousArbitraryEvalC();
    PreviousArbitraryEvalC(PreviousArbitraryEvalC const &other);
    PreviousArbitraryEvalC &operator=(PreviousArbitraryEvalC const &other);
    ~PreviousArbitraryEvalC();

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

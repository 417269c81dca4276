#ifndef QELT_EVALG_SINUSOIDALFUNCTIONEVALC_H
#define QELT_EVALG_SINUSOIDALFUNCTIONEVALC_H

#include "collab/rel/SinusoidalFunctionC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws y = b cos(a(x - h)) + k (or sin) column by column, left to right.
// Column heights come from a three-term recurrence, so the trigonometric
// function runs once per evaluation; the columns holding a crest or a trough
// get the exact extreme k + b or k - b, so peaks narrower than a pixel are
// never clipped. Markers flag where the curve leaves and re-enters the window.
class SinusoidalFunctionEvalC : public CartesianRelationGraphEvalHelperC {
public:
    SinusoidalFunctionEvalC();
    SinusoidalFunctionEvalC(SinusoidalFunctionEvalC const &other);
    SinusoidalFunctionEvalC &operator=(SinusoidalFunctionEvalC const &other);
    ~SinusoidalFunctionEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

    // Public, unlike the other evaluators' calculate.
    void calculate(rel::SinusoidalFunctionC *relation, SetP set);

private:
    void walk(rel::SinusoidalFunctionC *relation);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_EVALG_ARBITRARYFUNCTIONFLOAT64EVALC_H
#define QELT_EVALG_ARBITRARYFUNCTIONFLOAT64EVALC_H

#include "evalg/ArbitraryFunctionInnerEvalC.h"
#include "evalg/CartesianRelationGraphEvalC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws a relation y = f(x) given as an algebraic expression
// (rel::ArbitraryFunctionC). The drawing is done by an inner evaluator that
// this one holds by reference count; the flag chooses between drawing from
// interval enclosures (breaks exactly at poles, jumps and domain edges, every
// pixel of the curve present) and plain point sampling at the column edges
// (faster, with no guarantee). See ArbitraryFunctionInnerEvalC.
class ArbitraryFunctionFloat64EvalC : public CartesianRelationGraphEvalC {
public:
    ArbitraryFunctionFloat64EvalC();
    explicit ArbitraryFunctionFloat64EvalC(bool pointSampling);
    ArbitraryFunctionFloat64EvalC(ArbitraryFunctionFloat64EvalC const &other);
    ArbitraryFunctionFloat64EvalC &operator=(ArbitraryFunctionFloat64EvalC const &other);
    ~ArbitraryFunctionFloat64EvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

    bool getPointSampling() const { return pointSampling; }

private:
    oss::PointerTC<ArbitraryFunctionInnerEvalC> inner;
    bool pointSampling;
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

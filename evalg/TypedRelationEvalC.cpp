#include "evalg/TypedRelationEvalC.h"

#include <string>

#include "collab/esb/CartesianRelationServiceC.h"
#include "evalg/ArbitraryFunctionFloat64EvalC.h"
#include "evalg/CircleEvalC.h"
#include "evalg/EllipseEvalC.h"
#include "evalg/ExponentialFunctionEvalC.h"
#include "evalg/HyperbolaEvalC.h"
#include "evalg/HyperbolaVertEvalC.h"
#include "evalg/ImplicitRelationEvalC.h"
#include "evalg/LinearFunction1EvalC.h"
#include "evalg/LogarithmicFunctionEvalC.h"
#include "evalg/ParabolaEvalC.h"
#include "evalg/ParabolaVertEvalC.h"
#include "evalg/ParametricCurveEvalC.h"
#include "evalg/PowerFunctionEvalC.h"
#include "evalg/QuadraticFunctionEvalC.h"
#include "evalg/SinusoidalFunctionEvalC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

namespace {

template <class EvaluatorT>
oss::PointerTC<ds::GraphDataSetWinC> draw(rel::TypedRelationC const &relation,
                                          oss::PointerTC<ds::GraphicalDomainC> domain) {
    esb::CartesianRelationServiceC service(relation.getRelation());
    EvaluatorT evaluator;
    return evaluator.evaluateGraph(service, domain);
}

} // namespace

oss::PointerTC<ds::GraphDataSetWinC> TypedRelationEvalC::evaluateGraph(rel::TypedRelationC const &relation,
                                                                       oss::PointerTC<ds::GraphicalDomainC> domain) {
    using DrawF = oss::PointerTC<ds::GraphDataSetWinC> (*)(rel::TypedRelationC const &,
                                                           oss::PointerTC<ds::GraphicalDomainC>);
    static struct {
        char const *name;
        DrawF draw;
    } const evaluators[] = {
        {"LinearFunction1EvalC", draw<LinearFunction1EvalC>},
        {"QuadraticFunctionEvalC", draw<QuadraticFunctionEvalC>},
        {"ParabolaVertEvalC", draw<ParabolaVertEvalC>},
        {"ParabolaEvalC", draw<ParabolaEvalC>},
        {"CircleEvalC", draw<CircleEvalC>},
        {"EllipseEvalC", draw<EllipseEvalC>},
        {"HyperbolaEvalC", draw<HyperbolaEvalC>},
        {"HyperbolaVertEvalC", draw<HyperbolaVertEvalC>},
        {"PowerFunctionEvalC", draw<PowerFunctionEvalC>},
        {"ExponentialFunctionEvalC", draw<ExponentialFunctionEvalC>},
        {"LogarithmicFunctionEvalC", draw<LogarithmicFunctionEvalC>},
        {"SinusoidalFunctionEvalC", draw<SinusoidalFunctionEvalC>},
        {"ArbitraryFunctionFloat64EvalC", draw<ArbitraryFunctionFloat64EvalC>},
        {"ImplicitRelationEvalC", draw<ImplicitRelationEvalC>},
        {"ParametricCurveEvalC", draw<ParametricCurveEvalC>},
    };
    for (auto const &e : evaluators)
        if (relation.getEvaluatorName() == e.name) return e.draw(relation, domain);
    return oss::PointerTC<ds::GraphDataSetWinC>();
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

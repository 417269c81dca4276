#ifndef QELT_EVALG_TYPEDRELATIONEVALC_H
#define QELT_EVALG_TYPEDRELATIONEVALC_H

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/ds/GraphicalDomainC.h"
#include "collab/oss/PointerTC.h"
#include "collab/rel/TypedRelationC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws a typed relation with the evaluator its reading chose
// (rel::TypedRelationC::getEvaluatorName): a closed form by its family's
// exact evaluator, exactly as the family's relation given the same
// parameters; an expression in x by the proven-pixel evaluator; an implicit
// relation by ImplicitRelationEvalC; a polar or parametric curve by
// ParametricCurveEvalC.
class TypedRelationEvalC {
public:
    static oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(rel::TypedRelationC const &relation,
                                                              oss::PointerTC<ds::GraphicalDomainC> domain);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

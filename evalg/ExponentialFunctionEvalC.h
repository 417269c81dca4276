#ifndef QELT_EVALG_EXPONENTIALFUNCTIONEVALC_H
#define QELT_EVALG_EXPONENTIALFUNCTIONEVALC_H

#include "collab/rel/ExponentialFunctionC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws y = b e^(rx) + k by walking the columns outwards from x = 0 (or from
// the window edge nearest to it): rightwards appending, leftwards prepending,
// so the set reads left to right. The distance to the asymptote y = k changes
// by the same factor over every column, so each column costs one
// multiplication and one addition instead of an exp.
class ExponentialFunctionEvalC : public CartesianRelationGraphEvalHelperC {
public:
    ExponentialFunctionEvalC();
    ExponentialFunctionEvalC(ExponentialFunctionEvalC const &other);
    ExponentialFunctionEvalC &operator=(ExponentialFunctionEvalC const &other);
    ~ExponentialFunctionEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::ExponentialFunctionC *relation, SetP set);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

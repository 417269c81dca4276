#ifndef QELT_EVALG_LOGARITHMICFUNCTIONEVALC_H
#define QELT_EVALG_LOGARITHMICFUNCTIONEVALC_H

#include "collab/rel/LogarithmicFunctionC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws y = b log_B(a(x - h)) + k row by row, through its inverse
// x = h + B^((y - k)/b) / a: a logarithm is steep where an exponential is
// flat. Rows above y = k are walked upwards and appended, rows below walked
// downwards and prepended, so the set reads from the lowest row to the
// highest. Each row costs one multiplication and one addition.
class LogarithmicFunctionEvalC : public CartesianRelationGraphEvalHelperC {
public:
    LogarithmicFunctionEvalC();
    LogarithmicFunctionEvalC(LogarithmicFunctionEvalC const &other);
    LogarithmicFunctionEvalC &operator=(LogarithmicFunctionEvalC const &other);
    ~LogarithmicFunctionEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::LogarithmicFunctionC *relation);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

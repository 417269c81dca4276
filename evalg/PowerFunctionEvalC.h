#ifndef QELT_EVALG_POWERFUNCTIONEVALC_H
#define QELT_EVALG_POWERFUNCTIONEVALC_H

#include "collab/rel/PowerFunctionC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws y = a(x - h)^r + k for an integer r, possibly restricted to one side
// of x = h, by sampling f once per column edge and joining neighbouring
// samples with vertical runs. The column that holds h is drawn on its own:
// for r < 0 each branch's asymptote run reaches the window edge it escapes
// through; for an even r > 0 the turning point's run reaches down (up) to k.
class PowerFunctionEvalC : public CartesianRelationGraphEvalHelperC {
public:
    PowerFunctionEvalC();
    PowerFunctionEvalC(PowerFunctionEvalC const &other);
    PowerFunctionEvalC &operator=(PowerFunctionEvalC const &other);
    ~PowerFunctionEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::PowerFunctionC *relation);
    // Samples f at the column edges from `from` up to `to`, one run per column.
    void plotf(double from, double to, rel::PowerFunctionC *relation);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

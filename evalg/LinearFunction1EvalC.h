#ifndef QELT_EVALG_LINEARFUNCTION1EVALC_H
#define QELT_EVALG_LINEARFUNCTION1EVALC_H

#include "collab/rel/LinearFunction1C.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws y = m(x - h) + k column by column from where the line enters the
// window to where it leaves it, each column as the run between the line's
// heights at the column's two edges, so steep and shallow lines come out
// unbroken alike. Heights are stepped by one addition per column.
class LinearFunction1EvalC : public CartesianRelationGraphEvalHelperC {
public:
    LinearFunction1EvalC();
    LinearFunction1EvalC(LinearFunction1EvalC const &other);
    LinearFunction1EvalC &operator=(LinearFunction1EvalC const &other);
    ~LinearFunction1EvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::LinearFunction1C *relation);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_EVALG_PARABOLAVERTEVALC_H
#define QELT_EVALG_PARABOLAVERTEVALC_H

#include "collab/rel/ParabolaVertC.h"
#include "evalg/VerticalParabolaEvalTC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws the parabola (x - h)^2 = 4a(y - k) with its axis vertical: the
// quadratic's walk with the leading coefficient c = 1/(4a). Left half
// prepended, vertex column and right half appended: the set reads left to
// right.
class ParabolaVertEvalC : public VerticalParabolaEvalTC<rel::ParabolaVertC> {
public:
    ParabolaVertEvalC();
    ParabolaVertEvalC(ParabolaVertEvalC const &other);
    ParabolaVertEvalC &operator=(ParabolaVertEvalC const &other);
    ~ParabolaVertEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::ParabolaVertC *relation, SetP set);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

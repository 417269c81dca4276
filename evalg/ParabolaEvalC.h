#ifndef QELT_EVALG_PARABOLAEVALC_H
#define QELT_EVALG_PARABOLAEVALC_H

#include "collab/rel/ParabolaC.h"
#include "evalg/ParabolaWalkBC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws the parabola (y - k)^2 = 4a(x - h) with its axis horizontal, x as a
// function of y: the quadratic's walk transposed, row by row with horizontal
// runs. The bottom half is walked downwards and prepended, the vertex row and
// the top half appended, so the set reads from bottom to top.
class ParabolaEvalC : public ParabolaWalkBC {
public:
    ParabolaEvalC();
    ParabolaEvalC(ParabolaEvalC const &other);
    ParabolaEvalC &operator=(ParabolaEvalC const &other);
    ~ParabolaEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::ParabolaC *relation, SetP set);
    // The halves take the relation but step by differences and never evaluate it.
    void calculateBottomHalf(double y, double x, double d2, double c, double k);
    void calculateTopHalf(double y, double x, double d2, double c, double k);
    void calculateVertex(double xFar, double c, double k, double h);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_EVALG_CIRCLEEVALC_H
#define QELT_EVALG_CIRCLEEVALC_H

#include "collab/rel/CircleC.h"
#include "evalg/CircleAndEllipseCommonEvalC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws the circle (x - h)^2 + (y - k)^2 = r^2: the ellipse with both semi-axes r.
// Only fetches the relation's numbers; the octant rasteriser does the rest.
class CircleEvalC : public CircleAndEllipseCommonEvalC {
public:
    CircleEvalC();
    CircleEvalC(CircleEvalC const &other);
    CircleEvalC &operator=(CircleEvalC const &other);
    ~CircleEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::CircleC *relation, SetP set);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_EVALG_ELLIPSEEVALC_H
#define QELT_EVALG_ELLIPSEEVALC_H

#include "collab/rel/EllipseC.h"
#include "evalg/CircleAndEllipseCommonEvalC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws the ellipse (x - h)^2/a^2 + (y - k)^2/b^2 = 1 (a along x, b along y).
// Only fetches the relation's numbers; the octant rasteriser does the rest.
class EllipseEvalC : public CircleAndEllipseCommonEvalC {
public:
    EllipseEvalC();
    EllipseEvalC(EllipseEvalC const &other);
    EllipseEvalC &operator=(EllipseEvalC const &other);
    ~EllipseEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::EllipseC *relation, SetP set);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

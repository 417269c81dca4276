#ifndef QELT_EVALG_VERTICALPARABOLAEVALTC_H
#define QELT_EVALG_VERTICALPARABOLAEVALTC_H

#include "evalg/ParabolaWalkBC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// The steps of the two evaluators of a parabola with a vertical axis, whose
// relation RelationT gives the curve's y at x through f: the left half walked
// leftwards and prepended, the vertex column and the right half appended, so
// the set reads left to right. The evaluators differ only in how they read
// their relation and form the leading coefficient c.
template <class RelationT>
class VerticalParabolaEvalTC : public ParabolaWalkBC {
public:
    VerticalParabolaEvalTC() {}
    VerticalParabolaEvalTC(VerticalParabolaEvalTC const &) = default;
    VerticalParabolaEvalTC &operator=(VerticalParabolaEvalTC const &) = default;
    ~VerticalParabolaEvalTC() {}

protected:
    // Left half, vertex column, right half, for the vertex (h, k).
    void calculateFromVertex(RelationT *relation, double c, double h, double k) {
        drawFromVertex(
            columnWalk(), c, h, k, [relation](double x) { return relation->f(x); },
            [&](double x0, double y0, double d2) { calculateLeftHalf(x0, y0, d2, c, h); },
            [&](double yFar) { calculateVertex(yFar, c, h, k); },
            [&](double x0, double y0, double d2) { calculateRightHalf(x0, y0, d2, c, h); });
    }

private:
    void calculateLeftHalf(double x, double y, double d2, double c, double h) {
        walkHalf(columnWalk(), FRONT, x, y, d2, c, h);
    }
    void calculateRightHalf(double x, double y, double d2, double c, double h) {
        walkHalf(columnWalk(), BACK, x, y, d2, c, h);
    }
    void calculateVertex(double yFar, double c, double h, double k) {
        emitVertexRun(columnWalk(), yFar, c, h, k);
    }
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

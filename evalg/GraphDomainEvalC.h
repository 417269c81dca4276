#ifndef QELT_EVALG_GRAPHDOMAINEVALC_H
#define QELT_EVALG_GRAPHDOMAINEVALC_H

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/ds/GraphicalDomainC.h"
#include "collab/oss/PointerTC.h"
#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// The graph window as the evaluators see it: pixel pitch, half pitch and the
// outer edges of the pixel grid, plus roundings of a coordinate to a pixel
// boundary or centre. The x range spans the pixel centres, so column c covers
// [leftEdge + c*xStep, leftEdge + (c+1)*xStep); likewise rows from bottomEdge.
//
// Plain data: copying copies everything, the reference count included.
class GraphDomainEvalC : public oss::RefCountedBC {
public:
    GraphDomainEvalC();

protected:
    // Takes over the window. False, with no field changed, for a null or
    // invalid domain. No guard against one-pixel windows: their steps become
    // infinite and everything downstream follows from that.
    bool setDomain(oss::PointerTC<ds::GraphicalDomainC> domain);

    // Takes over the window and creates an evaluation's result set, sized
    // from the window when it is usable (first and second are the hints for
    // an unusable one, and say whether the walk prepends); domainSet tells
    // whether the window was usable. Shared by every evaluator's driver.
    oss::PointerTC<ds::GraphDataSetWinC> beginEvaluation(oss::PointerTC<ds::GraphicalDomainC> domain,
                                                         unsigned int first, unsigned int second,
                                                         bool &domainSet);

    // The most points a walk brings per cell of the window's longer side,
    // for sizing the result set up front: two for a curve that is a function
    // of the walked axis (a run per cell, a few more at a vertex).
    virtual unsigned int pointsPerCell() const;

    // Called once setDomain has taken over a window, for what is worked out
    // from the window once per evaluation.
    virtual void windowSet();

    double round_to_left(double v) const;
    double round_to_right(double v) const;
    double round_to_bottom(double v) const;
    double round_to_top(double v) const;
    double round_to_hcentre(double v) const;
    double round_to_vcentre(double v) const;

    double leftEdge;
    double rightEdge;
    double bottomEdge;
    double topEdge;
    unsigned short pixelColumns;
    unsigned short pixelRows;
    double xStep;
    double yStep;
    double xHalfStep;
    double yHalfStep;
    double xMax;
    double xMin;
    double yMax;
    double yMin;
    // 1 / xStep and 1 / yStep (0 where not a normal double), so that span
    // emission can find pixel indices by multiplying where that gives the same
    // index as dividing.
    double xStepReciprocal;
    double yStepReciprocal;
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

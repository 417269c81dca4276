#ifndef QELT_EVALG_SKETCHEVALC_H
#define QELT_EVALG_SKETCHEVALC_H

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/ds/GraphicalDomainC.h"
#include "collab/esb/SketchServiceIC.h"
#include "collab/oss/PointerTC.h"
#include "collab/rel/SketchC.h"
#include "evalg/GraphDomainEvalC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Converts between a free-hand sketch and pixels. evaluatePixels puts each
// sketch point in its pixel, unjoined and unclipped; createSketch turns a
// pixel path into sketch points at the pixel centres, marking the points on
// the axes and where the path turns between rising and falling.
//
// Not a graph evaluator: a sketch is drawn point by point, not sampled.
class SketchEvalC : public GraphDomainEvalC {
public:
    SketchEvalC();
    SketchEvalC(SketchEvalC const &other);
    SketchEvalC &operator=(SketchEvalC const &other);
    virtual ~SketchEvalC();

    // One pixel per sketch point, in the sketch's order; empty when the
    // window is invalid.
    virtual oss::PointerTC<ds::GraphDataSetWinC> evaluatePixels(esb::SketchServiceIC &service,
                                                                oss::PointerTC<ds::GraphicalDomainC> domain);

    // A new sketch that the caller owns (it holds no reference yet), or null
    // for a null pixel set or an invalid window.
    virtual rel::SketchC *createSketch(oss::PointerTC<ds::GraphDataSetWinC> pixels);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef EVALG_VIEWER_PLOTTEDRELATION_H
#define EVALG_VIEWER_PLOTTEDRELATION_H

#include <functional>
#include <string>
#include <vector>

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/ds/GraphicalDomainC.h"
#include "collab/oss/PointerTC.h"
#include "collab/rel/RelationC.h"

namespace evalgviewer {

using GraphP = qelt::oss::PointerTC<qelt::mathapp::ds::GraphDataSetWinC>;
using DomainP = qelt::oss::PointerTC<qelt::mathapp::ds::GraphicalDomainC>;
using RelationP = qelt::oss::PointerTC<qelt::mathapp::rel::RelationC>;

// A relation the page draws: its relation, for trace and table (null for
// one without y values: a sketch, an implicit relation, a curve), and how a
// window's pixels are made of it.
struct PlottedRelation {
    std::string label;
    RelationP relation;
    std::function<GraphP(DomainP const &)> evaluate;
    // What was chosen to draw it, for the label beside the box:
    // "circle · CircleEvalC".
    std::string chosen;
    // The drawing is row runs of pixels (a region or an implicit curve),
    // not a path to join.
    bool pixelRuns = false;
};

// The one place that reads what was typed into a relation box: a kind and its
// NAME=VALUE parameters as the evalg tool takes them ("circle r=3",
// "expr f='sin(x)/x'"), or anything else as a typed relation read by the
// library ("x^2 + y^2 = 9", "y < sin(x)", "r = 1 + cos(θ)", "(cos(t), sin(2t))").
// Throws evalgtool::UsageError with the message to show beside the box.
PlottedRelation relationFromText(std::string const &text);

} // namespace evalgviewer

#endif

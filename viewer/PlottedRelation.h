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

// A relation the page draws: its relation, for trace and table (null for a
// kind without y values, a sketch), and how a window's pixels are made of it.
struct PlottedRelation {
    std::string label;
    RelationP relation;
    std::function<GraphP(DomainP const &)> evaluate;
};

// The one place that reads what was typed into a relation box: a kind and its
// NAME=VALUE parameters as the evalg tool takes them ("circle r=3",
// "expr f='sin(x)/x'"), or a bare expression in x ("sin(x)/x"). Throws
// evalgtool::UsageError with the message to show beside the box.
PlottedRelation relationFromText(std::string const &text);

// The words of a relation as a shell would split them: blanks separate,
// single or double quotes keep blanks inside one word.
std::vector<std::string> splitWords(std::string const &text);

} // namespace evalgviewer

#endif

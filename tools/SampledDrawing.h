#ifndef EVALG_TOOL_SAMPLEDDRAWING_H
#define EVALG_TOOL_SAMPLEDDRAWING_H

#include "collab/oss/PointerTC.h"
#include "collab/rel/RelationC.h"
#include "Picture.h"
#include "Window.h"

namespace evalgtool {

// Draws the relation through the general sampled evaluator. Its points are
// the evaluator's output for the whole relation. It emits one vertical run
// per branch and column and sets no markers, so the runs of two branches
// follow each other in one column; joining them would fill the space between
// the branches. The stretches are therefore drawn one branch at a time, from
// the same evaluator run on a view of the relation that keeps the other
// branches out of the window: same samples, same branch counts and so the
// same refined columns, but only this branch's runs.
Drawing drawSampled(qelt::oss::PointerTC<qelt::mathapp::rel::RelationC> relation, double subdivisions,
                    Window const &w);

} // namespace evalgtool

#endif

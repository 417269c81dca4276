// A closed 4-connected path: at most one point per pixel step of the visible arcs, four of them, plus up to four straight runs across the window.
#include "GraphFuzzCheck.h"
#include "collab/rel/CircleC.h"
#include "evalg/CircleEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double h = in.value(), k = in.value(), r = in.value();
    qelt::mathapp::evalg::CircleEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::CircleC(h, k, r), domain, 8, 64);
    return 0;
}

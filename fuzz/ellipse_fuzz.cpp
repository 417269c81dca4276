// As the circle: each quadrant's visible arc is monotone in both axes, so at most M + N points each, plus straight runs.
#include "GraphFuzzCheck.h"
#include "collab/rel/EllipseC.h"
#include "evalg/EllipseEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double h = in.value(), k = in.value(), a = in.value(), b = in.value();
    qelt::mathapp::evalg::EllipseEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::EllipseC(h, k, a, b), domain, 8, 64);
    return 0;
}

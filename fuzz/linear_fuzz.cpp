// y = m(x - h) + k: two points per column stepped.
#include "GraphFuzzCheck.h"
#include "collab/rel/LinearFunction1C.h"
#include "evalg/LinearFunction1EvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double m = in.value(), h = in.value(), k = in.value();
    qelt::mathapp::evalg::LinearFunction1EvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::LinearFunction1C(m, h, k), domain, 4, 8);
    return 0;
}

// y = b e^(rx) + k: two points per column stepped by either walk.
#include "GraphFuzzCheck.h"
#include "collab/rel/ExponentialFunctionC.h"
#include "evalg/ExponentialFunctionEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double b = in.value(), r = in.value(), k = in.value();
    qelt::mathapp::evalg::ExponentialFunctionEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::ExponentialFunctionC(b, r, k), domain, 4, 8);
    return 0;
}

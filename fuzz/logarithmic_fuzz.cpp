// y = b log_B(a(x - h)) + k: two points per row stepped by either walk.
#include "GraphFuzzCheck.h"
#include "collab/rel/LogarithmicFunctionC.h"
#include "evalg/LogarithmicFunctionEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double a = in.value(), b = in.value(), h = in.value(), k = in.value(), base = in.value();
    qelt::mathapp::evalg::LogarithmicFunctionEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::LogarithmicFunctionC(a, b, h, k, base), domain, 4, 8);
    return 0;
}

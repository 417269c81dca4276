// y = b cos(a(x - h)) + k or b sin(a(x - h)) + k: two points per column.
#include "GraphFuzzCheck.h"
#include "collab/rel/SinusoidalFunctionC.h"
#include "evalg/SinusoidalFunctionEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double a = in.value(), b = in.value(), h = in.value(), k = in.value();
    bool sine = in.flag();
    qelt::mathapp::evalg::SinusoidalFunctionEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::SinusoidalFunctionC(a, b, h, k, sine), domain, 4, 8);
    return 0;
}

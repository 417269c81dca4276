// y = a(x - h)^2 + k: two points per column stepped, plus the vertex run.
#include "GraphFuzzCheck.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "evalg/QuadraticFunctionEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double a = in.value(), h = in.value(), k = in.value();
    qelt::mathapp::evalg::QuadraticFunctionEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::QuadraticFunctionC(a, h, k), domain, 4, 4);
    return 0;
}

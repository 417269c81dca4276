// (y - k)^2 = 4a(x - h): two points per row stepped plus the vertex run, or one per column for a = 0.
#include "GraphFuzzCheck.h"
#include "collab/rel/ParabolaC.h"
#include "evalg/ParabolaEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double h = in.value(), k = in.value(), a = in.value();
    qelt::mathapp::evalg::ParabolaEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::ParabolaC(h, k, a), domain, 4, 18);
    return 0;
}

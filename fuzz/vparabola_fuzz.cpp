// (x - h)^2 = 4a(y - k): two points per column stepped, plus the vertex run.
#include "GraphFuzzCheck.h"
#include "collab/rel/ParabolaVertC.h"
#include "evalg/ParabolaVertEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double h = in.value(), k = in.value(), a = in.value();
    qelt::mathapp::evalg::ParabolaVertEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::ParabolaVertC(h, k, a), domain, 4, 18);
    return 0;
}

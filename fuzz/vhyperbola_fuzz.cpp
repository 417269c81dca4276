// Each branch walks columns, a span of at most two points per column.
#include "GraphFuzzCheck.h"
#include "collab/rel/HyperbolaVertC.h"
#include "evalg/HyperbolaVertEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double h = in.value(), k = in.value(), a = in.value(), b = in.value();
    qelt::mathapp::evalg::HyperbolaVertEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::HyperbolaVertC(h, k, a, b), domain, 4, 16);
    return 0;
}

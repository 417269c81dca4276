// Each branch walks rows, a span of at most two points per row.
#include "GraphFuzzCheck.h"
#include "collab/rel/HyperbolaC.h"
#include "evalg/HyperbolaEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double h = in.value(), k = in.value(), a = in.value(), b = in.value();
    qelt::mathapp::evalg::HyperbolaEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::HyperbolaC(h, k, a, b), domain, 4, 16);
    return 0;
}

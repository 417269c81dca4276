// y = a(x - h)^r + k, any restriction: two points per column stepped, plus two asymptote runs.
#include "GraphFuzzCheck.h"
#include "collab/rel/PowerFunctionC.h"
#include "evalg/PowerFunctionEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double a = in.value(), h = in.value(), k = in.value();
    // Mostly small exponents, sometimes any 64-bit one.
    long long r = in.flag() ? (long long)(int8_t)in.byte() : (long long)in.bits();
    auto restriction = qelt::mathapp::rel::PowerFunctionDomainRestrictionE(in.byte() % 4);
    qelt::mathapp::evalg::PowerFunctionEvalC evaluator;
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::PowerFunctionC(a, h, k, r, restriction), domain, 4, 8);
    return 0;
}

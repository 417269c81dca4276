// The general sampled evaluator on a circle (two branches that appear and
// vanish together, so refinement runs): at most two points per branch per
// column or fine step, and only the columns where the circle appears or
// vanishes are refined.
#include <cmath>

#include "GraphFuzzCheck.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/SinusoidalFunctionC.h"
#include "evalg/GeneralEvalC.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);
    double h = in.value(), k = in.value(), r = in.value();
    // Up to 256 fine steps, or a wild value (NaN, infinite, negative, huge).
    double subdivisions = in.flag() ? double(in.byte()) + in.byte() / 256.0 : in.value();
    qelt::mathapp::evalg::GeneralEvalC evaluator(subdivisions);
    double steps = subdivisions > 0 && subdivisions < 256 ? std::ceil(subdivisions) : 0;
    if (!(subdivisions > 0 && subdivisions < 256)) {
        // Wild counts: keep the relation single-valued so nothing is refined.
        fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::SinusoidalFunctionC(h, k, r, 0, in.flag()), domain, 4, 8);
        return 0;
    }
    fuzzcheck::evaluate(evaluator, new qelt::mathapp::rel::CircleC(h, k, r), domain, 8,
                        (unsigned long)(16 * (steps + 1)) + 16);
    return 0;
}

#include "collab/rel/ParametricCurveC.h"

namespace qelt {
namespace mathapp {
namespace rel {

ParametricCurveC::ParametricCurveC(oss::PointerTC<CurveFunctionIC> curve, double tMin, double tMax)
    : curve_(curve), tMin_(tMin), tMax_(tMax) {}

ParametricCurveC::~ParametricCurveC() {}

unsigned short const *ParametricCurveC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::ParametricCurveC";
    return castableId(id);
}

void *ParametricCurveC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

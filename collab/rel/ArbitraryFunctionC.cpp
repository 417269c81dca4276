#include "collab/rel/ArbitraryFunctionC.h"

namespace qelt {
namespace mathapp {
namespace rel {

ArbitraryFunctionC::ArbitraryFunctionC(oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression)
    : expression_(expression) {}

ArbitraryFunctionC::~ArbitraryFunctionC() {}

unsigned short const *ArbitraryFunctionC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::ArbitraryFunctionC";
    return castableId(id);
}

void *ArbitraryFunctionC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

void ArbitraryFunctionC::getYValuesAt(double x, std::vector<double> &values) const {
    if (expression_) addValue(values, expression_->evaluateAt(x));
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

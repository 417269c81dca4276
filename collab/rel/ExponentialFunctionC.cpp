#include "collab/rel/ExponentialFunctionC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

ExponentialFunctionC::ExponentialFunctionC(double b, double r, double k)
    : b_(b), r_(r), k_(k) {}

ExponentialFunctionC::~ExponentialFunctionC() {}

unsigned short const *ExponentialFunctionC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::ExponentialFunctionC";
    return castableId(id);
}

void *ExponentialFunctionC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

void ExponentialFunctionC::getYValuesAt(double x, std::vector<double> &values) const {
    addValue(values, valueAt(x));
}

double ExponentialFunctionC::getCoefficient() const { return r_; }

double ExponentialFunctionC::valueAt(double x) const { return b_ * std::exp(r_ * x) + k_; }

} // namespace rel
} // namespace mathapp
} // namespace qelt

#include "collab/rel/QuadraticFunctionC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

QuadraticFunctionC::QuadraticFunctionC(double a, double h, double k)
    : a_(a), h_(h), k_(k) {}

QuadraticFunctionC::~QuadraticFunctionC() {}

unsigned short const *QuadraticFunctionC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::QuadraticFunctionC";
    return castableId(id);
}

void *QuadraticFunctionC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

void QuadraticFunctionC::getYValuesAt(double x, std::vector<double> &values) const {
    addValue(values, f(x));
}

double QuadraticFunctionC::f(double x) const {
    double d = x - h_;
    return a_ * (d * d) + k_;
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

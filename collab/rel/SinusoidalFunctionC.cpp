#include "collab/rel/SinusoidalFunctionC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

SinusoidalFunctionC::SinusoidalFunctionC(double a, double b, double h, double k, bool sine)
    : a_(a), b_(b), h_(h), k_(k), sine_(sine) {}

SinusoidalFunctionC::~SinusoidalFunctionC() {}

unsigned short const *SinusoidalFunctionC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::SinusoidalFunctionC";
    return castableId(id);
}

void *SinusoidalFunctionC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

void SinusoidalFunctionC::getYValuesAt(double x, std::vector<double> &values) const {
    addValue(values, valueAt(x));
}

double SinusoidalFunctionC::valueAt(double x) const {
    double d = x - h_;
    return sine_ ? b_ * std::sin(a_ * d) + k_ : b_ * std::cos(a_ * d) + k_;
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

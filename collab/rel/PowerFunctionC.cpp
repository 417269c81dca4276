#include "collab/rel/PowerFunctionC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

PowerFunctionC::PowerFunctionC(double a, double h, double k, long long r, PowerFunctionDomainRestrictionE restriction)
    : a_(a), h_(h), k_(k), r_(r), restriction_(restriction) {}

PowerFunctionC::~PowerFunctionC() {}

unsigned short const *PowerFunctionC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::PowerFunctionC";
    return castableId(id);
}

void *PowerFunctionC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

void PowerFunctionC::getYValuesAt(double x, std::vector<double> &values) const {
    if (restriction_ == POWER_DOMAIN_RIGHT_OF_H && !(x >= h_)) return;
    if (restriction_ == POWER_DOMAIN_LEFT_OF_H && !(x <= h_)) return;
    addValue(values, f(x));
}

double PowerFunctionC::f(double x) const {
    double d = x - h_;
    return a_ * std::pow(d, static_cast<double>(r_)) + k_;
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

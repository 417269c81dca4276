#include "collab/rel/LinearFunction1C.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

LinearFunction1C::LinearFunction1C(double m, double h, double k)
    : m_(m), h_(h), k_(k) {}

LinearFunction1C::~LinearFunction1C() {}

unsigned short const *LinearFunction1C::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::LinearFunction1C";
    return castableId(id);
}

void *LinearFunction1C::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

void LinearFunction1C::getYValuesAt(double x, std::vector<double> &values) const {
    addValue(values, m_ * (x - h_) + k_);
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

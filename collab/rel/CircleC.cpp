#include "collab/rel/CircleC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

CircleC::CircleC(double h, double k, double r)
    : ConicRelationC(h, k), r_(r) {}

CircleC::~CircleC() {}

unsigned short const *CircleC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::CircleC";
    return castableId(id);
}

void *CircleC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ConicRelationC::lookUpBase(id);
}

void CircleC::getYValuesAt(double x, std::vector<double> &values) const {
    double d = x - get_h();
    addPair(values, get_k(), std::sqrt(r_ * r_ - d * d));
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

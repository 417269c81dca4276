#include "collab/rel/EllipseC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

EllipseC::EllipseC(double h, double k, double a, double b)
    : ConicRelationC(h, k), a_(a), b_(b) {}

EllipseC::~EllipseC() {}

unsigned short const *EllipseC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::EllipseC";
    return castableId(id);
}

void *EllipseC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ConicRelationC::lookUpBase(id);
}

void EllipseC::getYValuesAt(double x, std::vector<double> &values) const {
    double d = x - get_h();
    addPair(values, get_k(), b_ * std::sqrt(1.0 - (d / a_) * (d / a_)));
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

#include "collab/rel/ParabolaC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

ParabolaC::ParabolaC(double h, double k, double a)
    : ConicRelationC(h, k), a_(a) {}

ParabolaC::~ParabolaC() {}

unsigned short const *ParabolaC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::ParabolaC";
    return castableId(id);
}

void *ParabolaC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ConicRelationC::lookUpBase(id);
}

void ParabolaC::getYValuesAt(double x, std::vector<double> &values) const {
    addPair(values, get_k(), std::sqrt((4.0 * a_) * (x - get_h())));
}

double ParabolaC::f(double y) const {
    double d = y - get_k();
    return (d * d) / (4.0 * a_) + get_h();
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

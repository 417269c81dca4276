#include "collab/rel/ParabolaVertC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

ParabolaVertC::ParabolaVertC(double h, double k, double a)
    : ConicRelationC(h, k), a_(a) {}

ParabolaVertC::~ParabolaVertC() {}

unsigned short const *ParabolaVertC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::ParabolaVertC";
    return castableId(id);
}

void *ParabolaVertC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ConicRelationC::lookUpBase(id);
}

void ParabolaVertC::getYValuesAt(double x, std::vector<double> &values) const {
    addValue(values, f(x));
}

double ParabolaVertC::f(double x) const {
    double d = x - get_h();
    return (d * d) / (4.0 * a_) + get_k();
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

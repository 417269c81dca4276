#include "collab/rel/HyperbolaC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

HyperbolaC::HyperbolaC(double h, double k, double a, double b)
    : ConicRelationC(h, k), a_(a), b_(b) {}

HyperbolaC::~HyperbolaC() {}

unsigned short const *HyperbolaC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::HyperbolaC";
    return castableId(id);
}

void *HyperbolaC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ConicRelationC::lookUpBase(id);
}

void HyperbolaC::getYValuesAt(double x, std::vector<double> &values) const {
    double d = x - get_h();
    addPair(values, get_k(), b_ * std::sqrt((d / a_) * (d / a_) - 1.0));
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

#include "collab/rel/HyperbolaVertC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

HyperbolaVertC::HyperbolaVertC(double h, double k, double a, double b)
    : ConicRelationC(h, k), a_(a), b_(b) {}

HyperbolaVertC::~HyperbolaVertC() {}

unsigned short const *HyperbolaVertC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::HyperbolaVertC";
    return castableId(id);
}

void *HyperbolaVertC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ConicRelationC::lookUpBase(id);
}

void HyperbolaVertC::getYValuesAt(double x, std::vector<double> &values) const {
    double d = x - get_h();
    addPair(values, get_k(), b_ * std::sqrt((d / a_) * (d / a_) + 1.0));
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

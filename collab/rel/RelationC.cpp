#include "collab/rel/RelationC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

RelationC::~RelationC() {}

unsigned short const *RelationC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::RelationC";
    return castableId(id);
}

void *RelationC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : nullptr;
}

void RelationC::getYValuesAt(double, std::vector<double> &) const {}

std::u16string RelationC::getSourceName() const { return u"rel"; }

void RelationC::addValue(std::vector<double> &values, double v) {
    if (std::isfinite(v)) values.push_back(v);
}

void RelationC::addPair(std::vector<double> &values, double k, double s) {
    if (std::isnan(s)) return;
    if (s == 0) {
        addValue(values, k);
        return;
    }
    addValue(values, k + s);
    addValue(values, k - s);
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

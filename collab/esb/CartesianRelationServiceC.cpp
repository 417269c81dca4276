#include "collab/esb/CartesianRelationServiceC.h"

namespace qelt {
namespace mathapp {
namespace esb {

CartesianRelationServiceC::CartesianRelationServiceC(oss::PointerTC<rel::RelationC> relation)
    : relation_(relation) {}

CartesianRelationServiceC::~CartesianRelationServiceC() {}

void *CartesianRelationServiceC::lookUpBase(unsigned short const *id) const {
    return relation_ ? relation_->lookUpBase(id) : nullptr;
}

bool CartesianRelationServiceC::getYValuesAt(double x, std::vector<double> &values) {
    if (!relation_) return false;
    std::size_t before = values.size();
    relation_->getYValuesAt(x, values);
    return values.size() != before;
}

} // namespace esb
} // namespace mathapp
} // namespace qelt

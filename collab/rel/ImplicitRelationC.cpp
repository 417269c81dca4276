#include "collab/rel/ImplicitRelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

ImplicitRelationC::ImplicitRelationC(oss::PointerTC<BoxFunctionIC> function, ComparisonE comparison)
    : function_(function), comparison_(comparison) {}

ImplicitRelationC::~ImplicitRelationC() {}

unsigned short const *ImplicitRelationC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::ImplicitRelationC";
    return castableId(id);
}

void *ImplicitRelationC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

#include "collab/rel/ImplicitRelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

ImplicitRelationC::ImplicitRelationC(oss::PointerTC<BoxFunctionIC> function, ComparisonE comparison)
    : function_(function), comparison_(comparison), logic_(COMPARISON) {}

ImplicitRelationC::ImplicitRelationC(LogicE logic, oss::PointerTC<ImplicitRelationC> left,
                                     oss::PointerTC<ImplicitRelationC> right)
    : comparison_(EQUAL), logic_(logic == OR ? OR : AND), left_(left), right_(right) {}

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

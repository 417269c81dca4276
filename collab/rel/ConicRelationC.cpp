#include "collab/rel/ConicRelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

ConicRelationC::~ConicRelationC() {}

unsigned short const *ConicRelationC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::ConicRelationC";
    return castableId(id);
}

void *ConicRelationC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

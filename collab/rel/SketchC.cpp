#include "collab/rel/SketchC.h"

namespace qelt {
namespace mathapp {
namespace rel {

SketchC::SketchC(oss::PointerTC<ds::FloatDataSetC> points) : points_(points) {}

SketchC::~SketchC() {}

unsigned short const *SketchC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::SketchC";
    return castableId(id);
}

void *SketchC::lookUpBase(unsigned short const *id) const {
    if (id == esb::SketchServiceIC::getCastableId())
        return const_cast<void *>(static_cast<void const *>(static_cast<esb::SketchServiceIC const *>(this)));
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

std::vector<ds::FloatPointC *> const &SketchC::getValues() const {
    static std::vector<ds::FloatPointC *> const none;
    return points_ ? points_->getPoints() : none;
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

#include "collab/math/algexpr/ParentNodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

ParentNodeABC::ParentNodeABC(ChildrenT children) : children_(std::move(children)) {
    unsigned int tallest = 0;
    for (auto const &c : children_)
        if (c && c->getHeight() > tallest) tallest = c->getHeight();
    height_ = tallest + 1;
}

ParentNodeABC::~ParentNodeABC() {}

unsigned short const *ParentNodeABC::getCastableId() {
    static char16_t const id[] = u"qelt::math::algexpr::ParentNodeABC";
    return castableId(id);
}

void *ParentNodeABC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : NodeABC::lookUpBase(id);
}

NodeABC *ParentNodeABC::child(unsigned int index) const {
    return index < children_.size() ? children_[index].get() : nullptr;
}

unsigned int ParentNodeABC::getChildCount() const { return static_cast<unsigned int>(children_.size()); }

ParentNodeABC::ChildrenT ParentNodeABC::cloneChildren() const {
    ChildrenT copy;
    for (auto const &c : children_) copy.push_back(c->clone());
    return copy;
}

void ParentNodeABC::appendChildrenPrefix(std::string &out) const {
    for (auto const &c : children_) {
        out.push_back(' ');
        c->appendPrefix(out);
    }
}

} // namespace algexpr
} // namespace math
} // namespace qelt

#include "collab/math/algexpr/VariableNodeC.h"

namespace qelt {
namespace math {
namespace algexpr {

VariableNodeC::VariableNodeC(IndexE index) : index_(index) {}
VariableNodeC::~VariableNodeC() {}

unsigned short const *VariableNodeC::getCastableId() {
    static char16_t const id[] = u"qelt::math::algexpr::VariableNodeC";
    return castableId(id);
}

void *VariableNodeC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : NodeABC::lookUpBase(id);
}

char const *VariableNodeC::name(IndexE index) {
    static char const *const names[] = {"x", "y", "t", "theta"};
    return names[index];
}

double VariableNodeC::evaluateWith(double const *values) const { return values[index_]; }

std::unique_ptr<NodeABC> VariableNodeC::clone() const { return std::unique_ptr<NodeABC>(new VariableNodeC(index_)); }

void VariableNodeC::appendPrefix(std::string &out) const { out.append(name(index_)); }

} // namespace algexpr
} // namespace math
} // namespace qelt

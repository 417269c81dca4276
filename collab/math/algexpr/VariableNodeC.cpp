#include "collab/math/algexpr/VariableNodeC.h"

namespace qelt {
namespace math {
namespace algexpr {

VariableNodeC::VariableNodeC() {}
VariableNodeC::~VariableNodeC() {}

unsigned short const *VariableNodeC::getCastableId() {
    static char16_t const id[] = u"qelt::math::algexpr::VariableNodeC";
    return castableId(id);
}

void *VariableNodeC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : NodeABC::lookUpBase(id);
}

double VariableNodeC::evaluate(double x) const { return x; }

std::unique_ptr<NodeABC> VariableNodeC::clone() const { return std::unique_ptr<NodeABC>(new VariableNodeC()); }

void VariableNodeC::appendPrefix(std::string &out) const { out.push_back('x'); }

} // namespace algexpr
} // namespace math
} // namespace qelt

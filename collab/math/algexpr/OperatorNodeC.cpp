#include "collab/math/algexpr/OperatorNodeC.h"

namespace qelt {
namespace math {
namespace algexpr {

OperatorNodeC::OperatorNodeC(OperatorE op, ChildrenT children) : ParentNodeABC(std::move(children)), op_(op) {}
OperatorNodeC::~OperatorNodeC() {}

unsigned short const *OperatorNodeC::getCastableId() {
    static char16_t const id[] = u"qelt::math::algexpr::OperatorNodeC";
    return castableId(id);
}

void *OperatorNodeC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ParentNodeABC::lookUpBase(id);
}

char const *OperatorNodeC::symbol(OperatorE op) {
    switch (op) {
    case ADD: return "+";
    case SUBTRACT: return "-";
    case MULTIPLY: return "*";
    case DIVIDE: return "/";
    case POWER: return "^";
    case NEGATE: return "neg";
    }
    return "?";
}

double OperatorNodeC::evaluateWith(double const *values) const {
    double a = child(0)->evaluateWith(values);
    if (op_ == NEGATE) return -a;
    return apply(op_, a, child(1)->evaluateWith(values));
}

std::unique_ptr<NodeABC> OperatorNodeC::clone() const {
    return std::unique_ptr<NodeABC>(new OperatorNodeC(op_, cloneChildren()));
}

void OperatorNodeC::appendPrefix(std::string &out) const {
    out.append(symbol(op_));
    appendChildrenPrefix(out);
}

} // namespace algexpr
} // namespace math
} // namespace qelt

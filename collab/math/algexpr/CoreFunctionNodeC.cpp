#include "collab/math/algexpr/CoreFunctionNodeC.h"

namespace qelt {
namespace math {
namespace algexpr {

namespace {

ParentNodeABC::ChildrenT single(std::unique_ptr<NodeABC> operand) {
    ParentNodeABC::ChildrenT children;
    children.push_back(std::move(operand));
    return children;
}

} // namespace

CoreFunctionNodeC::CoreFunctionNodeC(int code, std::unique_ptr<NodeABC> operand)
    : ParentNodeABC(single(std::move(operand))), code_(code) {}
CoreFunctionNodeC::CoreFunctionNodeC(int code, ChildrenT operands) : ParentNodeABC(std::move(operands)), code_(code) {}
CoreFunctionNodeC::~CoreFunctionNodeC() {}

unsigned short const *CoreFunctionNodeC::getCastableId() {
    static char16_t const id[] = u"qelt::math::algexpr::CoreFunctionNodeC";
    return castableId(id);
}

void *CoreFunctionNodeC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ParentNodeABC::lookUpBase(id);
}

char const *CoreFunctionNodeC::name(int code) {
    FunctionRowS const *r = row(code);
    return r ? r->name : nullptr;
}

unsigned int CoreFunctionNodeC::arity(int code) {
    FunctionRowS const *r = row(code);
    return r ? r->arity : 0;
}

double CoreFunctionNodeC::evaluateWith(double const *values) const {
    double a = child(0)->evaluateWith(values);
    NodeABC const *second = child(1);
    return apply(code_, a, second ? second->evaluateWith(values) : std::nan(""));
}

std::unique_ptr<NodeABC> CoreFunctionNodeC::clone() const {
    return std::unique_ptr<NodeABC>(new CoreFunctionNodeC(code_, cloneChildren()));
}

void CoreFunctionNodeC::appendPrefix(std::string &out) const {
    char const *n = name(code_);
    out.append(n ? n : "?");
    appendChildrenPrefix(out);
}

} // namespace algexpr
} // namespace math
} // namespace qelt

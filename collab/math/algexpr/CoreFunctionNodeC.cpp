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

char const *const names[] = {"sin",  "cos", "tan", "asin",  "acos",  "atan",  "sinh", "cosh", "tanh",
                             "exp",  "ln",  "log10", "sqrt", "abs", "floor", "ceil", "sign"};

} // namespace

CoreFunctionNodeC::CoreFunctionNodeC(int code, std::unique_ptr<NodeABC> operand)
    : ParentNodeABC(single(std::move(operand))), code_(code) {}
CoreFunctionNodeC::~CoreFunctionNodeC() {}

unsigned short const *CoreFunctionNodeC::getCastableId() {
    static char16_t const id[] = u"qelt::math::algexpr::CoreFunctionNodeC";
    return castableId(id);
}

void *CoreFunctionNodeC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ParentNodeABC::lookUpBase(id);
}

char const *CoreFunctionNodeC::name(int code) {
    if (code < FIRST_CODE || code > LAST_CODE) return nullptr;
    return names[code - FIRST_CODE];
}

int CoreFunctionNodeC::codeOf(std::string const &text) {
    for (int code = FIRST_CODE; code <= LAST_CODE; ++code)
        if (text == names[code - FIRST_CODE]) return code;
    return 0;
}

double CoreFunctionNodeC::evaluate(double x) const { return apply(code_, child(0)->evaluate(x)); }

std::unique_ptr<NodeABC> CoreFunctionNodeC::clone() const {
    return std::unique_ptr<NodeABC>(new CoreFunctionNodeC(code_, child(0)->clone()));
}

void CoreFunctionNodeC::appendPrefix(std::string &out) const {
    char const *n = name(code_);
    out.append(n ? n : "?");
    appendChildrenPrefix(out);
}

} // namespace algexpr
} // namespace math
} // namespace qelt

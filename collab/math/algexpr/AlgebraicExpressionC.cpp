#include "collab/math/algexpr/AlgebraicExpressionC.h"

#include <cmath>
#include <new>

#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/FloatNodeC.h"
#include "collab/math/algexpr/InfixParserC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/PrefixParserC.h"
#include "collab/math/algexpr/VariableNodeC.h"

namespace qelt {
namespace math {
namespace algexpr {

namespace {

oss::PointerTC<AlgebraicExpressionC> wrap(std::unique_ptr<NodeABC> root) {
    if (!root) return nullptr;
    return oss::PointerTC<AlgebraicExpressionC>(new AlgebraicExpressionC(std::move(root)));
}

} // namespace

AlgebraicExpressionC::AlgebraicExpressionC(std::unique_ptr<NodeABC> root) : root_(std::move(root)) {}
AlgebraicExpressionC::~AlgebraicExpressionC() {}

oss::PointerTC<AlgebraicExpressionC> AlgebraicExpressionC::fromPrefixString(std::u16string const &text,
                                                                            std::string *error) {
    return wrap(PrefixParserC::parse(text, error));
}

oss::PointerTC<AlgebraicExpressionC> AlgebraicExpressionC::fromInfixString(std::string const &text,
                                                                           std::string *error) {
    return wrap(InfixParserC::parse(text, error));
}

std::unique_ptr<NodeABC> foldConstants(NodeABC const &node, bool &depends) {
    ParentNodeABC const *parent = node.as<ParentNodeABC>();
    if (!parent) {
        // Depending on any variable, not only x.
        depends = node.as<VariableNodeC>() != nullptr;
        return node.clone();
    }
    ParentNodeABC::ChildrenT children;
    depends = false;
    for (unsigned int i = 0; i < parent->getChildCount(); ++i) {
        bool childDepends = false;
        children.push_back(foldConstants(*parent->child(i), childDepends));
        depends = depends || childDepends;
    }
    // Evaluated by the node itself, so the number is the very double that
    // the tree walk would compute at every x.
    if (!depends) return std::unique_ptr<NodeABC>(new FloatNodeC(node.evaluate(0.0)));
    if (OperatorNodeC const *op = node.as<OperatorNodeC>())
        return std::unique_ptr<NodeABC>(new OperatorNodeC(op->getOperator(), std::move(children)));
    if (CoreFunctionNodeC const *f = node.as<CoreFunctionNodeC>())
        return std::unique_ptr<NodeABC>(new CoreFunctionNodeC(f->getCode(), std::move(children)));
    return node.clone();
}

oss::PointerTC<AlgebraicExpressionC> AlgebraicExpressionC::execute(bool evaluate, std::u16string *message) {
    if (!root_) {
        if (message) *message = u"the expression is empty";
        return nullptr;
    }
    bool depends = false;
    std::unique_ptr<NodeABC> folded = foldConstants(*root_, depends);
    if (evaluate && depends) {
        if (message) *message = u"the expression depends on x";
        return nullptr;
    }
    return wrap(std::move(folded));
}

namespace {

void collectVariables(NodeABC const &node, unsigned int &mask) {
    if (VariableNodeC const *v = node.as<VariableNodeC>()) mask |= 1u << v->getIndex();
    if (ParentNodeABC const *parent = node.as<ParentNodeABC>())
        for (unsigned int i = 0; i < parent->getChildCount(); ++i) collectVariables(*parent->child(i), mask);
}

} // namespace

unsigned int AlgebraicExpressionC::getVariables() const {
    unsigned int mask = 0;
    if (root_) collectVariables(*root_, mask);
    return mask;
}

double AlgebraicExpressionC::evaluateAt(double x) const { return root_ ? root_->evaluate(x) : std::nan(""); }

std::u16string AlgebraicExpressionC::toPrefixString() const {
    std::string text;
    if (root_) root_->appendPrefix(text);
    return std::u16string(text.begin(), text.end());
}

} // namespace algexpr
} // namespace math
} // namespace qelt

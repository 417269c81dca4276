#include "collab/rel/ExpressionBoxFunctionC.h"

#include "collab/math/algexpr/VariableNodeC.h"

namespace qelt {
namespace mathapp {
namespace rel {

using math::IntervalC;
using math::algexpr::CompiledExpressionC;
using math::algexpr::NodeABC;
using math::algexpr::VariableNodeC;

ExpressionBoxFunctionC::ExpressionBoxFunctionC(NodeABC const *h) : h_(new CompiledExpressionC(h)) {}

ExpressionBoxFunctionC::~ExpressionBoxFunctionC() {}

IntervalC ExpressionBoxFunctionC::enclose(IntervalC const &x, IntervalC const &y) const {
    // Variables the relation does not use have no value.
    IntervalC values[] = {IntervalC::none(), IntervalC::none(), IntervalC::none(), IntervalC::none()};
    static_assert(sizeof values / sizeof values[0] == NodeABC::VARIABLE_COUNT, "one value per variable");
    values[VariableNodeC::X] = x;
    values[VariableNodeC::Y] = y;
    return h_->encloseWith(values);
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

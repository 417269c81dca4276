#include "collab/rel/ExpressionCurveFunctionC.h"

#include "collab/math/algexpr/VariableNodeC.h"

namespace qelt {
namespace mathapp {
namespace rel {

using math::IntervalC;
using math::algexpr::CompiledExpressionC;
using math::algexpr::NodeABC;
using math::algexpr::VariableNodeC;

ExpressionCurveFunctionC::ExpressionCurveFunctionC(NodeABC const *x, NodeABC const *y)
    : x_(new CompiledExpressionC(x)), y_(new CompiledExpressionC(y)) {}

ExpressionCurveFunctionC::~ExpressionCurveFunctionC() {}

void ExpressionCurveFunctionC::enclose(IntervalC const &t, IntervalC &x, IntervalC &y) const {
    // Variables the relation does not use have no value.
    IntervalC values[] = {IntervalC::none(), IntervalC::none(), IntervalC::none(), IntervalC::none()};
    static_assert(sizeof values / sizeof values[0] == NodeABC::VARIABLE_COUNT, "one value per variable");
    values[VariableNodeC::T] = t;
    x = x_->encloseWith(values);
    y = y_->encloseWith(values);
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

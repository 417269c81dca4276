#include "collab/rel/ExpressionParameterFunctionC.h"

#include "collab/math/algexpr/VariableNodeC.h"

namespace qelt {
namespace mathapp {
namespace rel {

using math::IntervalC;
using math::algexpr::CompiledExpressionC;
using math::algexpr::NodeABC;
using math::algexpr::VariableNodeC;

ExpressionParameterFunctionC::ExpressionParameterFunctionC(NodeABC const *r) : r_(new CompiledExpressionC(r)) {}

ExpressionParameterFunctionC::~ExpressionParameterFunctionC() {}

IntervalC ExpressionParameterFunctionC::enclose(IntervalC const &theta) const {
    // Variables the relation does not use have no value.
    IntervalC values[] = {IntervalC::none(), IntervalC::none(), IntervalC::none(), IntervalC::none()};
    static_assert(sizeof values / sizeof values[0] == NodeABC::VARIABLE_COUNT, "one value per variable");
    values[VariableNodeC::THETA] = theta;
    return r_->encloseWith(values);
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

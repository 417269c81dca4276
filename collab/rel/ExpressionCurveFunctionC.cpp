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
    CompiledExpressionC::VariableIntervalsT values = CompiledExpressionC::noValues();
    values[VariableNodeC::T] = t;
    x = x_->encloseWith(values.data());
    y = y_->encloseWith(values.data());
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

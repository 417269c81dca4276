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
    CompiledExpressionC::VariableIntervalsT values = CompiledExpressionC::noValues();
    values[VariableNodeC::THETA] = theta;
    return r_->encloseWith(values.data());
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

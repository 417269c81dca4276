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
    CompiledExpressionC::VariableIntervalsT values = CompiledExpressionC::noValues();
    values[VariableNodeC::X] = x;
    values[VariableNodeC::Y] = y;
    return h_->encloseWith(values.data());
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

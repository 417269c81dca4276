#ifndef QELT_REL_EXPRESSIONPARAMETERFUNCTIONC_H
#define QELT_REL_EXPRESSIONPARAMETERFUNCTIONC_H

#include <memory>

#include "collab/math/algexpr/CompiledExpressionC.h"
#include "collab/math/algexpr/NodeABC.h"
#include "collab/rel/ParameterFunctionIC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// r(θ) from an expression in θ, enclosed by its compiled program, run wide
// where doubles overflow.
// The program keeps working slots between runs: one function serves one
// evaluation at a time.
class ExpressionParameterFunctionC : public ParameterFunctionIC {
public:
    // A null node is a function without a value anywhere.
    explicit ExpressionParameterFunctionC(math::algexpr::NodeABC const *r);
    ~ExpressionParameterFunctionC() override;

    math::IntervalC enclose(math::IntervalC const &theta) const override;

private:
    std::unique_ptr<math::algexpr::CompiledExpressionC> r_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_REL_EXPRESSIONCURVEFUNCTIONC_H
#define QELT_REL_EXPRESSIONCURVEFUNCTIONC_H

#include <memory>

#include "collab/math/algexpr/CompiledExpressionC.h"
#include "collab/math/algexpr/NodeABC.h"
#include "collab/rel/CurveFunctionIC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// t -> (x(t), y(t)) from two expressions in t, enclosed by their compiled
// programs, run wide where doubles overflow.
// The program keeps working slots between runs: one function serves one
// evaluation at a time.
class ExpressionCurveFunctionC : public CurveFunctionIC {
public:
    // Null nodes have no value anywhere.
    ExpressionCurveFunctionC(math::algexpr::NodeABC const *x, math::algexpr::NodeABC const *y);
    ~ExpressionCurveFunctionC() override;

    void enclose(math::IntervalC const &t, math::IntervalC &x, math::IntervalC &y) const override;

private:
    std::unique_ptr<math::algexpr::CompiledExpressionC> x_;
    std::unique_ptr<math::algexpr::CompiledExpressionC> y_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

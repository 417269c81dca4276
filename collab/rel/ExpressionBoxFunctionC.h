#ifndef QELT_REL_EXPRESSIONBOXFUNCTIONC_H
#define QELT_REL_EXPRESSIONBOXFUNCTIONC_H

#include <memory>

#include "collab/math/algexpr/CompiledExpressionC.h"
#include "collab/math/algexpr/NodeABC.h"
#include "collab/rel/BoxFunctionIC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// h(x, y) from an expression in x and y (F - G for a relation typed F op G),
// enclosed by its compiled program, run wide where doubles overflow.
// The program keeps working slots between runs: one function serves one
// evaluation at a time.
class ExpressionBoxFunctionC : public BoxFunctionIC {
public:
    // A null node is a function without a value anywhere.
    explicit ExpressionBoxFunctionC(math::algexpr::NodeABC const *h);
    ~ExpressionBoxFunctionC() override;

    math::IntervalC enclose(math::IntervalC const &x, math::IntervalC const &y) const override;

private:
    std::unique_ptr<math::algexpr::CompiledExpressionC> h_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_REL_ARBITRARYFUNCTIONC_H
#define QELT_REL_ARBITRARYFUNCTIONC_H

#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/oss/PointerTC.h"
#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// y = an algebraic expression in x.
class ArbitraryFunctionC : public RelationC {
public:
    // A null expression is a function without values.
    explicit ArbitraryFunctionC(oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression);
    virtual ~ArbitraryFunctionC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    // The expression's value at x, by the tree walk, when it is a number.
    void getYValuesAt(double x, std::vector<double> &values) const override;

    oss::PointerTC<math::algexpr::AlgebraicExpressionC> getExpression() const { return expression_; }

private:
    oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

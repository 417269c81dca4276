#ifndef QELT_REL_IMPLICITRELATIONC_H
#define QELT_REL_IMPLICITRELATIONC_H

#include "collab/oss/PointerTC.h"
#include "collab/rel/BoxFunctionIC.h"
#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The points (x, y) where h(x, y) compares with 0 as op says: F = G is
// h = F - G with EQUAL, F < G is h < 0, and so on.
class ImplicitRelationC : public RelationC {
public:
    enum ComparisonE { EQUAL, LESS, LESS_EQUAL, GREATER, GREATER_EQUAL };

    // A null function is a relation that no point satisfies.
    ImplicitRelationC(oss::PointerTC<BoxFunctionIC> function, ComparisonE comparison);
    virtual ~ImplicitRelationC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    oss::PointerTC<BoxFunctionIC> getFunction() const { return function_; }
    ComparisonE getComparison() const { return comparison_; }

private:
    oss::PointerTC<BoxFunctionIC> function_;
    ComparisonE comparison_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_REL_IMPLICITRELATIONC_H
#define QELT_REL_IMPLICITRELATIONC_H

#include "collab/oss/PointerTC.h"
#include "collab/rel/BoxFunctionIC.h"
#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The points (x, y) where h(x, y) compares with 0 as op says: F = G is
// h = F - G with EQUAL, F < G is h < 0, and so on; or the points where two
// such relations both hold (AND) or either holds (OR).
class ImplicitRelationC : public RelationC {
public:
    enum ComparisonE { EQUAL, LESS, LESS_EQUAL, GREATER, GREATER_EQUAL };
    enum LogicE { COMPARISON, AND, OR };

    // A null function is a relation that no point satisfies.
    ImplicitRelationC(oss::PointerTC<BoxFunctionIC> function, ComparisonE comparison);
    // AND or OR of two relations; a null one is satisfied nowhere.
    ImplicitRelationC(LogicE logic, oss::PointerTC<ImplicitRelationC> left, oss::PointerTC<ImplicitRelationC> right);
    virtual ~ImplicitRelationC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    oss::PointerTC<BoxFunctionIC> getFunction() const { return function_; }
    ComparisonE getComparison() const { return comparison_; }
    LogicE getLogic() const { return logic_; }
    oss::PointerTC<ImplicitRelationC> getLeft() const { return left_; }
    oss::PointerTC<ImplicitRelationC> getRight() const { return right_; }

private:
    oss::PointerTC<BoxFunctionIC> function_;
    ComparisonE comparison_;
    LogicE logic_;
    oss::PointerTC<ImplicitRelationC> left_;
    oss::PointerTC<ImplicitRelationC> right_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

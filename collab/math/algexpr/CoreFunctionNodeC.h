#ifndef QELT_MATH_ALGEXPR_COREFUNCTIONNODEC_H
#define QELT_MATH_ALGEXPR_COREFUNCTIONNODEC_H

#include <cmath>
#include <string>

#include "collab/math/algexpr/FunctionTableC.h"
#include "collab/math/algexpr/ParentNodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// A function of the table applied to its operands (one or two). The code
// names the function; the codes, and the double rules, are the table's, which
// the node inherits so that CoreFunctionNodeC::SIN reads as before.
class CoreFunctionNodeC : public ParentNodeABC, public FunctionTableC {
public:
    CoreFunctionNodeC(int code, std::unique_ptr<NodeABC> operand);
    // As many operands as the function's arity, in order.
    CoreFunctionNodeC(int code, ChildrenT operands);
    ~CoreFunctionNodeC() override;

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    int getCode() const { return code_; }
    // The function's name ("sin", "log10", ...), or null for an unknown code.
    static char const *name(int code);
    // The number of operands of a code (0 for an unknown code).
    static unsigned int arity(int code);

    // The double rule of a function, shared by the tree walk and the
    // compiled program; a one-operand function ignores b.
    static double apply(int code, double a, double b = std::nan("")) {
        FunctionRowS const *r = row(code);
        return r ? r->point(a, b) : std::nan("");
    }

    double evaluateWith(double const *values) const override;
    std::unique_ptr<NodeABC> clone() const override;
    void appendPrefix(std::string &out) const override;

private:
    int code_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

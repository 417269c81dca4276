#ifndef QELT_MATH_ALGEXPR_OPERATORNODEC_H
#define QELT_MATH_ALGEXPR_OPERATORNODEC_H

#include <cmath>

#include "collab/math/algexpr/ParentNodeABC.h"
#include "collab/oss/IntegerConversionC.h"

namespace qelt {
namespace math {
namespace algexpr {

// An arithmetic operator: + - * / ^ on two operands, or unary minus on one.
//
// The double rule of each operator lives here, once, and both the tree walk
// and the compiled program call it, so the two agree to the bit.
class OperatorNodeC : public ParentNodeABC {
public:
    enum OperatorE { ADD = 0, SUBTRACT, MULTIPLY, DIVIDE, POWER, NEGATE };

    // Two children for the binary operators, one for NEGATE.
    OperatorNodeC(OperatorE op, ChildrenT children);
    ~OperatorNodeC() override;

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    OperatorE getOperator() const { return op_; }
    static unsigned int arity(OperatorE op) { return op == NEGATE ? 1 : 2; }
    // The prefix token: "+", "-", "*", "/", "^", "neg".
    static char const *symbol(OperatorE op);

    // base^n for a whole n of at most 64 in size, by repeated squaring:
    // faster than std::pow and exact for small powers of exact values.
    static double powerWhole(double base, int n) {
        unsigned int m = n < 0 ? static_cast<unsigned int>(-n) : static_cast<unsigned int>(n);
        double result = 1.0;
        double b = base;
        while (m != 0) {
            if (m & 1u) result = result * b;
            m >>= 1;
            if (m != 0) b = b * b;
        }
        return n < 0 ? 1.0 / result : result;
    }
    // The ^ rule: whole exponents up to 64 by powerWhole, the rest by std::pow.
    static double power(double base, double exponent) {
        if (std::fabs(exponent) <= 64 && std::floor(exponent) == exponent)
            return powerWhole(base, oss::IntegerConversionC::toInt32(exponent));
        return std::pow(base, exponent);
    }
    static double apply(OperatorE op, double a, double b) {
        switch (op) {
        case ADD: return a + b;
        case SUBTRACT: return a - b;
        case MULTIPLY: return a * b;
        case DIVIDE: return a / b;
        case POWER: return power(a, b);
        case NEGATE: return -a;
        }
        return a;
    }

    double evaluateWith(double const *values) const override;
    std::unique_ptr<NodeABC> clone() const override;
    void appendPrefix(std::string &out) const override;

private:
    OperatorE op_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

#ifndef QELT_MATH_ALGEXPR_SLOPEPROGRAMC_H
#define QELT_MATH_ALGEXPR_SLOPEPROGRAMC_H

#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// An expression in x compiled to give, over an interval X, an enclosure of
// its derivative: every value of f' on X where f is differentiable, and at a
// corner (|x| at 0) the slopes of both sides, so that for f continuous on X
//   f(X) lies within f(m) + f'(X) * (X - m)   for every m in X   (mean values)
// and f'(X) >= 0 proves f rising on X. Forward differentiation: each
// instruction carries its value and its derivative, both as outward-rounded
// intervals.
//
// Expressions with an operation it has no rule for (a power with a varying
// exponent) compile to a program that answers nothing (available() false).
// A program keeps its working slots between runs: one thread at a time.
class SlopeProgramC {
public:
    explicit SlopeProgramC(NodeABC const *root);

    bool available() const { return available_; }
    // The derivative's enclosure over x; whole() when nothing is known.
    IntervalC derivative(IntervalC const &x) const;

private:
    enum OpcodeE : unsigned char { ADD, SUB, MUL, DIV, NEG, POW_CONST, POW_INT, FUNCTION };
    struct InstructionS {
        OpcodeE op;
        int arg;         // the function code, or the whole exponent
        double exponent; // a constant exponent of POW_CONST
        unsigned int a;
        unsigned int b;
        unsigned int out;
    };
    struct PairS {
        IntervalC value;
        IntervalC slope;
    };

    unsigned int emit(NodeABC const &node);
    unsigned int constant(double value);

    bool available_;
    std::vector<InstructionS> program_;
    mutable std::vector<PairS> slots_;
    unsigned int result_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

#ifndef QELT_MATH_ALGEXPR_COMPILEDEXPRESSIONC_H
#define QELT_MATH_ALGEXPR_COMPILEDEXPRESSIONC_H

#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// An expression compiled into a flat program, to be run many times: on one
// double, on a batch of doubles, or on an interval.
//
// The tree is folded first (every part without x becomes its number), then
// laid out in operand order as three-address instructions over numbered
// slots: slot 0 holds x, the next slots the numbers, and each instruction
// writes its own slot from slots computed before it. Running the program is
// one pass over the instructions with no recursion and no virtual calls;
// the batch form runs each instruction over a block of samples at once.
//
// The double results are bit for bit those of the tree walk (the same
// double rules, OperatorNodeC::apply and CoreFunctionNodeC::apply, in the
// same order); the interval result encloses them (IntervalC).
//
// A program keeps its working slots between runs: one program must not be
// run from two threads at once.
class CompiledExpressionC {
public:
    // A null root, or one deeper than AlgebraicExpressionC::MAX_DEPTH, gives
    // a program without a value (NaN, an empty interval).
    explicit CompiledExpressionC(NodeABC const *root);
    ~CompiledExpressionC();

    double evaluate(double x) const;
    void evaluate(double const *xs, double *ys, unsigned int count) const;
    IntervalC evaluate(IntervalC const &x) const;

    unsigned int getInstructionCount() const { return static_cast<unsigned int>(program_.size()); }

private:
    enum OpcodeE : unsigned char { ADD, SUB, MUL, DIV, NEG, POW, POW_INT, FUNCTION };
    struct InstructionS {
        OpcodeE op;
        int arg; // the function code, or the whole exponent of POW_INT
        unsigned int a;
        unsigned int b;
    };
    static unsigned int const BLOCK = 64;

    unsigned int emit(NodeABC const &node);
    unsigned int constant(double value);
    void runBlock(unsigned int count) const;

    std::vector<double> constants_;
    std::vector<InstructionS> program_;
    unsigned int firstResult_;
    unsigned int resultSlot_;
    mutable std::vector<double> values_;
    mutable std::vector<double> block_;
    mutable std::vector<IntervalC> intervals_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

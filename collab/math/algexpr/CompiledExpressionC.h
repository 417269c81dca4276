#ifndef QELT_MATH_ALGEXPR_COMPILEDEXPRESSIONC_H
#define QELT_MATH_ALGEXPR_COMPILEDEXPRESSIONC_H

#include <array>
#include <vector>

#include "collab/math/IntervalC.h"
#include "collab/math/WideIntervalC.h"
#include "collab/math/algexpr/FunctionTableC.h"
#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// An expression compiled into a flat program, to be run many times: on one
// double, on a batch of doubles, or on an interval.
//
// The tree is folded first (every part without x becomes its number), then
// laid out in operand order as three-address instructions over numbered
// slots: slots 0 to 3 hold the variables (x, y, t, theta, in the order of
// VariableNodeC::IndexE), the next slots the numbers, and each instruction
// writes its own slot from slots computed before it. Running the program is
// one pass over the instructions with no recursion and no virtual calls;
// the batch form runs each instruction over a block of samples at once.
//
// The double results are bit for bit those of the tree walk (the same
// double rules, OperatorNodeC::apply and the rows of FunctionTableC, in the
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

    // At x; every other variable has no value (NaN, an empty interval).
    double evaluate(double x) const;
    void evaluate(double const *xs, double *ys, unsigned int count) const;
    IntervalC evaluate(IntervalC const &x) const;
    // At values for all the variables (NodeABC::VARIABLE_COUNT of them, in
    // the order of VariableNodeC::IndexE), for relations in x and y.
    double evaluateWith(double const *values) const;
    IntervalC evaluateWith(IntervalC const *values) const;

    // The interval run again over long double (WideIntervalC), for inputs
    // where the double run says overflow: a bound left the double range
    // somewhere inside, as in exp(x)/exp(x) near x = 710 or x^2/x^2 near
    // 1e155, and the double enclosure is far looser than the function. The
    // result encloses the real values (not the overflowed double rule), its
    // bounds rounded outward to doubles, and overflow is cleared when the
    // long double run stayed in range and its result fits in a double.
    IntervalC evaluateWide(IntervalC const &x) const;
    IntervalC evaluateWideWith(IntervalC const *values) const;
    // evaluateWith, run again wide where the double run overflowed.
    IntervalC encloseWith(IntervalC const *values) const;
    // Values for every variable, none of them with a value: a caller sets the
    // ones its relation uses.
    using VariableIntervalsT = std::array<IntervalC, NodeABC::VARIABLE_COUNT>;
    static VariableIntervalsT noValues();

    unsigned int getInstructionCount() const { return static_cast<unsigned int>(program_.size()); }

private:
    enum OpcodeE : unsigned char { ADD, SUB, MUL, DIV, NEG, POW, POW_INT, FUNCTION, FUNCTION2 };
    struct InstructionS {
        OpcodeE op;
        int arg; // the function code, or the whole exponent of POW_INT
        unsigned int a;
        unsigned int b;
        FunctionRowS const *function; // for FUNCTION and FUNCTION2
    };
    static unsigned int const BLOCK = 64;

    unsigned int emit(NodeABC const &node);
    unsigned int constant(double value);
    void runBlock(unsigned int count) const;
    double run() const;
    IntervalC runIntervals() const;
    IntervalC runWide() const;

    std::vector<double> constants_;
    std::vector<InstructionS> program_;
    unsigned int firstResult_;
    unsigned int resultSlot_;
    bool otherVariables_; // whether the program reads y, t or theta
    mutable std::vector<double> values_;
    mutable std::vector<double> block_;
    mutable std::vector<IntervalC> intervals_;
    mutable std::vector<WideIntervalC> wides_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

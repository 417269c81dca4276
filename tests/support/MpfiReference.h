#ifndef EVALG_TESTS_MPFIREFERENCE_H
#define EVALG_TESTS_MPFIREFERENCE_H

// An independent enclosure of an expression tree, computed with MPFI
// (multiple-precision intervals, 128 bits) straight from the tree: nothing of
// the library's interval arithmetic or compiled programs is used. It knows
// the real function, not the double evaluation: division by zero, ln of 0 and
// the like have no value. Functions it has no rule for enclose as the whole
// line, so checks built on it can only be weakened by them, never misled.
#include "collab/math/algexpr/NodeABC.h"

namespace evalgtest {

class MpfiReference {
public:
    // Where the function has values over the input interval.
    enum class Defined { EVERYWHERE, SOMEWHERE, NOWHERE };

    explicit MpfiReference(qelt::math::algexpr::NodeABC const *root) : root_(root) {}

    // Encloses the values over [a, b] (doubles, taken exactly) in [lo, hi],
    // rounded outward to doubles.
    Defined enclose(double a, double b, double &lo, double &hi) const;
    // Over the box [x0, x1] x [y0, y1], for an expression in x and y.
    Defined enclose(double x0, double x1, double y0, double y1, double &lo, double &hi) const;

private:
    qelt::math::algexpr::NodeABC const *root_;
};

} // namespace evalgtest

#endif

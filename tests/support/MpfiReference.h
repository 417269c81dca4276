#ifndef EVALG_TESTS_MPFIREFERENCE_H
#define EVALG_TESTS_MPFIREFERENCE_H

// An independent enclosure of an expression tree, computed with MPFI
// (multiple-precision intervals, 128 bits) straight from the tree: nothing of
// the library's interval arithmetic or compiled programs is used. It knows
// the real function, not the double evaluation: ln of 0, sqrt of -1 and the
// like have no value. Where the double rule gives a value the real function
// lacks it allows that value too: x^0 is 1 for a missing x, and a division
// by exact 0 (an infinity, which atan can carry back) encloses as the whole
// line, as functions it has no rule for do. Checks built on it can only be
// weakened by these, never misled.
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

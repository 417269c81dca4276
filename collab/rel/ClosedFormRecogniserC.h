#ifndef QELT_REL_CLOSEDFORMRECOGNISERC_H
#define QELT_REL_CLOSEDFORMRECOGNISERC_H

#include <string>
#include <vector>

#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// Finds the closed-form family of a typed relation from its expression
// trees, with the family's parameters read from the numbers as written:
// "3sin(2(x - 1)) + 1" is sin with a = 2, b = 3, h = 1, k = 1, the doubles
// the named kind would be given. Forms written another way are brought to the
// family's own by the fewest operations: "2x + 1" inside a sine gives
// h = -1/2, "ax^2 + bx + c" gives the vertex h = -b/(2a), k = c - b^2/(4a),
// and a conic's axes are square roots of what stands under its squares.
//
// Families and their parameters, named as the tool's kinds:
//   line (m, h, k)            y = m(x - h) + k, also a(y - k) + b(x - h) = c
//   quadratic (a, h, k)       y = a(x - h)^2 + k, y = ax^2 + bx + c
//   vparabola (h, k, a)       (x - h)^2 = 4a(y - k)
//   parabola (h, k, a)        (y - k)^2 = 4a(x - h), x = a(y - k)^2 + h
//   circle (h, k, r)          (x - h)^2 + (y - k)^2 = r^2
//   ellipse (h, k, a, b)      (x - h)^2/a^2 + (y - k)^2/b^2 = 1
//   hyperbola, vhyperbola     (x - h)^2/a^2 - (y - k)^2/b^2 = 1 and its turn
//   power (a, h, k, r)        y = a(x - h)^r + k, r whole (a/(x - h)^n too)
//   exp (b, r, k)             y = b e^(rx) + k, b exp(rx), b c^(rx)
//   log (a, b, h, k, base)    y = b log_base(a(x - h)) + k: ln, log, log2,
//                             log(base, ...)
//   sin, cos (a, b, h, k)     y = b sin(a(x - h)) + k
// A family whose parameters would not draw its curve (an infinite or NaN
// value, a zero axis, a log base of 1, an axis whose square overflows) is
// not chosen: the relation is then drawn as what it is, an expression.
class ClosedFormRecogniserC {
public:
    struct ParameterS {
        std::string name;
        double value;
    };
    struct FamilyS {
        std::string name; // empty: no closed form
        std::vector<ParameterS> parameters;
        double parameter(std::string const &n) const;
    };

    // y = f(x): the family of f, a tree in x alone.
    static FamilyS function(math::algexpr::NodeABC const &f);
    // left = right in x and y: the family of the curve.
    static FamilyS equation(math::algexpr::NodeABC const &left, math::algexpr::NodeABC const &right);
    // Whether n (a folded tree) is a(v - h) as written, or a v + c, v being a
    // VariableNodeC::IndexE.
    static bool linear(math::algexpr::NodeABC const &n, int variable, double &a, double &h);
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

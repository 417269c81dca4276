#ifndef QELT_EVALG_HYPERBOLAEVALC_H
#define QELT_EVALG_HYPERBOLAEVALC_H

#include "collab/rel/HyperbolaC.h"
#include "evalg/HyperbolaWalkBC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws the hyperbola (x - h)^2/a^2 - (y - k)^2/b^2 = 1 (transverse axis
// horizontal). Design:
//
// - Each branch is a function of y, x = h -+ |a| sqrt(1 + ((y - k)/b)^2), and is
//   walked row by row; a row contributes the horizontal span between the
//   branch's x at the row's lower and upper edges (in the vertex row: lower
//   edge, vertex, upper edge), clamped to the centres of the outermost columns
//   so that every point lies in the grid.
// - In pixel units (x - h)^2 is quadratic in y: the walk starts from an exact
//   value and steps it with its first and second differences, two additions
//   and a square root per row. The value is taken afresh every 32 rows so
//   that rounding cannot pile up over a tall window far from the centre.
// - The rows below the vertex row are walked downwards and prepended into a
//   (402, 401) set; the vertex row and those above are walked upwards and
//   appended into a (402, 0) set. Joined in that order, each branch reads from
//   its bottom end to its top end; the left branch comes first.
// - Only window rows are walked, and a half stops at the first row that misses
//   the window after one that met it: at most pixelRows steps per branch,
//   whatever the parameters (a centre 10^12 pixels out included).
// - Each visible stretch carries FIRST_VISIBLE on its first point and
//   LAST_VISIBLE on its last. The two halves of a branch are one stretch when
//   both meet the window next to the vertex; the branches are always separate
//   stretches, so a display never joins one to the other.
// - Degenerate parameters draw what the curve tends to: a = 0 the line x = h
//   (once); b = 0 the rays y = k beyond h -+ |a|; b infinite the lines
//   x = h -+ |a|. An infinite a, a = b = 0, both infinite, a NaN or an
//   infinite centre draw nothing.
//
// HyperbolaVertEvalC draws with the same walk, the axes exchanged.
class HyperbolaEvalC : public HyperbolaWalkBC {
public:
    HyperbolaEvalC();
    HyperbolaEvalC(HyperbolaEvalC const &other);
    HyperbolaEvalC &operator=(HyperbolaEvalC const &other);
    ~HyperbolaEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::HyperbolaC *relation, SetP set);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_EVALG_HYPERBOLAVERTEVALC_H
#define QELT_EVALG_HYPERBOLAVERTEVALC_H

#include "collab/rel/HyperbolaVertC.h"
#include "evalg/HyperbolaWalkBC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws the hyperbola (y - k)^2/b^2 - (x - h)^2/a^2 = 1 (transverse axis
// vertical). Design: the walk of HyperbolaEvalC with the axes exchanged.
//
// - Each branch is a function of x, y = k -+ |b| sqrt(1 + ((x - h)/a)^2), walked
//   column by column; a column contributes the vertical span between the
//   branch's y at the column's left and right edges (in the vertex column:
//   left edge, vertex, right edge), clamped to the centres of the outermost
//   rows.
// - (y - k)^2 is stepped from an exact start by its first and second
//   differences, taken afresh every 32 columns.
// - The columns left of the vertex column are walked leftwards and prepended
//   into a (402, 401) set, the vertex column and those right of it walked
//   rightwards and appended into a (402, 0) set, so each branch reads from left
//   to right; the lower branch comes first.
// - Only window columns are walked: at most pixelColumns steps per branch.
// - Each visible stretch carries FIRST_VISIBLE and LAST_VISIBLE at its ends;
//   the branches are separate stretches and are never joined.
// - Degenerate parameters: b = 0 the line y = k (once); a = 0 the rays x = h
//   beyond k -+ |b|; a infinite the lines y = k -+ |b|. An infinite b, a = b = 0,
//   both infinite, a NaN or an infinite centre draw nothing.
class HyperbolaVertEvalC : public HyperbolaWalkBC {
public:
    HyperbolaVertEvalC();
    HyperbolaVertEvalC(HyperbolaVertEvalC const &other);
    HyperbolaVertEvalC &operator=(HyperbolaVertEvalC const &other);
    ~HyperbolaVertEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::HyperbolaVertC *relation, SetP set);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_EVALG_HYPERBOLAWALKBC_H
#define QELT_EVALG_HYPERBOLAWALKBC_H

#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// The branch walk that both hyperbola evaluators share, written once for a
// walked axis w and a spanned axis f; HyperbolaEvalC walks rows, and
// HyperbolaVertEvalC columns (see HyperbolaEvalC.h for the design).
class HyperbolaWalkBC : public CartesianRelationGraphEvalHelperC {
public:
    HyperbolaWalkBC();
    HyperbolaWalkBC(HyperbolaWalkBC const &other);
    HyperbolaWalkBC &operator=(HyperbolaWalkBC const &other);
    ~HyperbolaWalkBC();

    // Cells walked by the last evaluation, a machine-independent measure of cost.
    unsigned long getStepCount() const { return stepCount; }

protected:
    // Two branches, each a run per cell of the walked axis.
    unsigned int pointsPerCell() const override;
    // The curve f = cf -+ |af| sqrt(1 + ((w - cw)/aw)^2) over the window, in the
    // walk's frame: w is the axis walked cell by cell, f the one spanned.
    struct BranchFrame {
        double cw, cf;          // centre
        double aw, af;          // semi-axes
        double wEdge, wStep;    // lower edge of cell 0, and the cell size, on w
        int cells;              // cells on w
        double fLo, fHi, fStep; // window edges, and the cell size, on f
    };

    // Both branches into target, as spans along axis. Sets stepCount to the
    // number of cells walked.
    void plotBranches(BranchFrame const &frame, AxisE axis, SetP target);

    unsigned long stepCount;

private:
    // One branch's numbers for a half walk: those of BranchFrame in pixels,
    // with the branch's side folded into the step on f.
    struct HalfS {
        double p, m;         // vertex offset, asymptote slope
        double fLo, fHi;     // window edges on f
        double fMin, fMax;   // centres of the outermost cells on f
        double cf, sStep;    // centre on f, and the signed cell size
        double wEdge, wStep; // lower edge of cell 0, and the cell size, on w
        double n0;           // edge 0, in cells from the centre
        int cells;           // cells on w
        AxisE axis;
    };
    bool walkHalf(HalfS const &half, int first, int d, EndE end, ds::GraphDataSetWinC *set);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_EVALG_CIRCLEANDELLIPSECOMMONEVALC_H
#define QELT_EVALG_CIRCLEANDELLIPSECOMMONEVALC_H

#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws an axis-parallel ellipse (centre h, k; semi-axes a along x, b along y)
// as one closed 4-connected path of pixels, clipped to the window.
//
// The curve is cut at its four slope points (slope +-1 in pixel units) and
// its four axis points into eight octants. Each octant is walked by an
// incremental midpoint method from its slope point towards its axis point:
// u advances one pixel per step, v one pixel when the decision value says the
// midpoint lies inside. Odd octants are prepended into a scratch set that is
// then appended, even ones appended directly; taking the eight in order gives a path
// that runs clockwise on the screen from the leftmost point over the top.
// When the visible part of the curve near its top, bottom or side lies in one
// pixel row or column, it is drawn as a straight run across the window instead.
//
// Cost at any zoom: an octant whose slope point lies far from the window
// (more than APPROACH_LIMIT steps before the arc nears it) starts instead just
// before the window, with its decision value computed afresh there; an octant
// whose arc never comes near the window is not walked, and a walk ends once
// it is past the window. So an evaluation takes at most
// 4 * APPROACH_LIMIT + 4 * (pixelColumns + pixelRows) + 64 loop steps (at
// most one octant per quadrant can have a long approach: if both come near
// the window, the window holds their common slope point).
class CircleAndEllipseCommonEvalC : public CartesianRelationGraphEvalHelperC {
public:
    CircleAndEllipseCommonEvalC();
    CircleAndEllipseCommonEvalC(CircleAndEllipseCommonEvalC const &other);
    CircleAndEllipseCommonEvalC &operator=(CircleAndEllipseCommonEvalC const &other);
    ~CircleAndEllipseCommonEvalC();

    // Loop steps taken by the last plot: octant walk steps plus the points of
    // straight runs. A measure of cost that does not depend on the machine.
    unsigned long getStepCount() const { return stepCount; }

    // Longest walk from a slope point to the window that is taken pixel by pixel.
    static constexpr long APPROACH_LIMIT = 65536;

protected:
    // A closed curve: its visible arcs are no longer than the window's
    // perimeter, about 2 (columns + rows) pixels along a 4-connected path.
    unsigned int pointsPerCell() const override;

    void plot(double a, double b, double h, double k, double xStep, double yStep, SetP target);

    // How far outside the window, in pixels, an arc still counts as near it.
    // The pixel path strays at most about a pixel and a half from the arc, so
    // no pixel of an arc that stays further out can be visible. An infinite
    // margin walks every octant whole, from its slope point, as the plain
    // method does: the same pixels, at full cost.
    double reachMargin;
    // Whether steps deep inside the window run without a branch on the
    // decision value (the same points; off only to compare the two).
    bool branchFreeSteps;

private:
    // The window's edges, and the range of y where a point may share a span.
    struct Box {
        double left, right, bottom, top;
        double pairLow, pairHigh;
    };
    // The point pushed last, as a span of its own; on: whether the next point
    // may join that span (it may be flushed by then: see extendLastSpan).
    struct Held {
        double y;
        bool on;
    };
    // Along one octant's walk, in walk order (w = u for a walk towards larger
    // u, w = -u otherwise): where its arc first and last lies within a few
    // pixels of the window.
    struct Reach {
        bool near;
        double in;
        double out;
    };

    bool plot_straight_runs(double a, double b, double h, double k, double hL, double hR, double wB, double wT,
                            SetP target);
    void plot_row_run(double y, SetP target);
    void plot_column_run(double x, SetP target);
    // One octant walked from its slope point; swap and prepend as in the octant table.
    template <bool swap, bool prepend>
    void plot_eighth(double au, double av, double cu, double cv, double du, double dv, double t,
                     SetP const &set);
    Reach window_reach(double au, double av, double cu, double cv, double du, double dv, double uStart,
                       double vStart, bool swap) const;
    // Offers one point of the walk; lastVisible is whether the previous one
    // lay in the window, box the window. True when the walk has just left it.
    // column: the point lies in the column of the one before it.
    template <bool swap, bool prepend, bool column>
    bool plot_point(double u, double v, Box const &box, Held &held, bool &lastVisible);
    bool approx_equal(double p, double q, double step, double origin) const;

    unsigned long stepCount;
    // Points the bound set held when the current octant began.
    long octantBase;
    // Where prepending octants are walked before they are appended.
    SetP scratch;
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

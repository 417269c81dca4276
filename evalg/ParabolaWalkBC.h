#ifndef QELT_EVALG_PARABOLAWALKBC_H
#define QELT_EVALG_PARABOLAWALKBC_H

#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// The walk that the quadratic and the two parabola evaluators share: the curve
// is split at its vertex, each half is walked away from the vertex by second
// differences from where it enters the window, and the vertex's own run is
// emitted between the halves. Adds no fields and no virtual operations.
//
// The steps are written once for a curve y = f(x) walked column by column. A
// curve x = f(y) walks rows through the same steps with the axes exchanged
// (rowWalk()), so inside them x is always the walked coordinate, y the curve's
// value, h the vertex's walked coordinate and k its value.
class ParabolaWalkBC : public CartesianRelationGraphEvalHelperC {
public:
    ParabolaWalkBC();
    ParabolaWalkBC(ParabolaWalkBC const &other);
    ParabolaWalkBC &operator=(ParabolaWalkBC const &other);
    ~ParabolaWalkBC();

protected:
    // One orientation of the walk, read off the window.
    struct AxisS {
        double step, halfStep;      // pixel pitch along the walk, and its half
        double min, max;            // outermost pixel centres along the walk
        double low, high;           // outer edges along the walk
        double valueLow, valueHigh; // outer edges across it, where the curve's value is tested
        AxisE along;                // the axis walked, and so the emission's orientation
    };
    AxisS columnWalk() const;
    AxisS rowWalk() const;

    // Chooses where each half starts and whether the vertex run is drawn, and
    // calls, always in this order, firstHalf(x0, y0, d2) for the half walked
    // towards lower x (prepended), vertex(yFar), secondHalf(x0, y0, d2). f is
    // the curve and c its leading coefficient; a relation whose own
    // coefficient is zero has been drawn as a constant line instead.
    template <class FunctionT, class FirstHalfT, class VertexT, class SecondHalfT>
    void drawFromVertex(AxisS const &axis, double c, double h, double k, FunctionT f, FirstHalfT firstHalf,
                        VertexT vertex, SecondHalfT secondHalf) {
        double fLow = f(axis.low);
        double fHigh = f(axis.high);
        double d2 = (axis.step * axis.step * c) * 2.0;
        double x0;
        // A start at an edge is (edge, fLow or fHigh); f(edge) gives that value again.
        if (firstHalfStart(axis, c, h, k, fLow, fHigh, x0)) firstHalf(x0, f(x0), d2);
        if (axis.low <= h && h < axis.high) {
            double yl = f(roundDown(axis, h));
            double yr = f(roundUp(axis, h));
            double yFar;
            if (vertexRunFar(axis, c, k, yl, yr, yFar)) vertex(yFar);
        }
        if (secondHalfStart(axis, c, h, k, fLow, fHigh, x0)) secondHalf(x0, f(x0), d2);
    }

    // One half from the edge x where the curve has value y: towards lower x
    // prepending (end FRONT), so the set keeps reading from low to high x, or
    // towards higher x appending (BACK).
    void walkHalf(AxisS const &axis, EndE end, double x, double y, double d2, double c, double h);
    // The run of the vertex's own pixel, from the far value yFar to k, clamped
    // to the window's outer edges.
    void emitVertexRun(AxisS const &axis, double yFar, double c, double h, double k);

private:
    bool firstHalfStart(AxisS const &axis, double c, double h, double k, double fLow, double fHigh,
                        double &x0) const;
    bool secondHalfStart(AxisS const &axis, double c, double h, double k, double fLow, double fHigh,
                         double &x0) const;
    static bool vertexRunFar(AxisS const &axis, double c, double k, double yl, double yr, double &yFar);
    double roundDown(AxisS const &axis, double v) const;
    double roundUp(AxisS const &axis, double v) const;
    void emitRun(AxisS const &axis, double at, double from, double to, bool prepend);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

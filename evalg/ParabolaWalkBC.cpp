#include "evalg/ParabolaWalkBC.h"

#include <cmath>

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

ParabolaWalkBC::ParabolaWalkBC() {}
ParabolaWalkBC::ParabolaWalkBC(ParabolaWalkBC const &) = default;
ParabolaWalkBC &ParabolaWalkBC::operator=(ParabolaWalkBC const &) = default;
ParabolaWalkBC::~ParabolaWalkBC() {}

ParabolaWalkBC::AxisS ParabolaWalkBC::columnWalk() const {
    return AxisS{xStep, xHalfStep, xMin, xMax, leftEdge, rightEdge, bottomEdge, topEdge, COLUMNS};
}

ParabolaWalkBC::AxisS ParabolaWalkBC::rowWalk() const {
    return AxisS{yStep, yHalfStep, yMin, yMax, bottomEdge, topEdge, leftEdge, rightEdge, ROWS};
}

bool ParabolaWalkBC::firstHalfStart(AxisS const &axis, double c, double h, double k, double fLow, double fHigh,
                                    double &x0) const {
    if (h >= axis.high && axis.valueLow <= fHigh && fHigh < axis.valueHigh) {
        // The vertex lies beyond the high edge: the whole visible curve is this half.
        x0 = axis.high;
    } else if (axis.low <= h && h < axis.high && axis.valueLow <= k && k < axis.valueHigh) {
        x0 = roundDown(axis, h);
    } else if (c > 0 && k < axis.valueLow && fLow >= axis.valueLow && (h < axis.high || fHigh < axis.valueLow)) {
        // The pixel edge on the vertex's side of where the branch rises through valueLow.
        x0 = roundUp(axis, h - std::sqrt((axis.valueLow - k) / c));
    } else if (c < 0 && k >= axis.valueHigh && fLow < axis.valueHigh &&
               !(h >= axis.high && fHigh < axis.valueHigh)) {
        x0 = roundUp(axis, h - std::sqrt((axis.valueHigh - k) / c));
    } else {
        return false;
    }
    // A crossing inside the window is rounded at most one pixel beyond it. A
    // start further out comes only from cancellation at extreme magnitudes
    // and would step through that many pixels outside, billions of them at
    // worst; such a start is taken back to the edge.
    if (x0 > axis.high + axis.step * 2.0) x0 = axis.high;
    return true;
}

bool ParabolaWalkBC::secondHalfStart(AxisS const &axis, double c, double h, double k, double fLow, double fHigh,
                                     double &x0) const {
    if (h < axis.low && axis.valueLow <= fLow && fLow < axis.valueHigh) {
        x0 = axis.low;
    } else if (axis.low <= h && h < axis.high && axis.valueLow <= k && k < axis.valueHigh) {
        x0 = roundUp(axis, h);
    } else if (c > 0 && k < axis.valueLow && fHigh >= axis.valueLow && (h >= axis.low || fLow < axis.valueLow)) {
        x0 = roundDown(axis, h + std::sqrt((axis.valueLow - k) / c));
    } else if (c < 0 && k >= axis.valueHigh && fHigh < axis.valueHigh && !(h < axis.low && fLow < axis.valueHigh)) {
        x0 = roundDown(axis, h + std::sqrt((axis.valueHigh - k) / c));
    } else {
        return false;
    }
    // The mirror of the first half's guard.
    if (x0 < axis.low - axis.step * 2.0) x0 = axis.low;
    return true;
}

bool ParabolaWalkBC::vertexRunFar(AxisS const &axis, double c, double k, double yl, double yr, double &yFar) {
    // The run reaches the value further from k at the pixel's two edges; a tie takes yr.
    yFar = c > 0 ? (yl > yr ? yl : yr) : (yl < yr ? yl : yr);
    if (c > 0 && k < axis.valueHigh && yFar >= axis.valueLow) return true;
    return c < 0 && k >= axis.valueLow && yFar < axis.valueHigh;
}

double ParabolaWalkBC::roundDown(AxisS const &axis, double v) const {
    return axis.along == ROWS ? round_to_bottom(v) : round_to_left(v);
}

double ParabolaWalkBC::roundUp(AxisS const &axis, double v) const {
    return axis.along == ROWS ? round_to_top(v) : round_to_right(v);
}

void ParabolaWalkBC::emitRun(AxisS const &axis, double at, double from, double to, bool prepend) {
    pushSpan(axis.along, prepend ? FRONT : BACK, at, from, to);
}

void ParabolaWalkBC::walkHalf(AxisS const &axis, EndE end, double x, double y, double d2, double c, double h) {
    // One loop for both directions: s = 1 walks towards higher x and
    // appends, s = -1 towards lower x and prepends. Negation is exact, so
    // s*(x - h) is h - x, x + s*step is x - step and s*x < -min is x > min,
    // bit for bit, as separate loops would compute them.
    bool front = end == FRONT;
    double s = front ? -1.0 : 1.0;
    if (front)
        // Slot 0, not the next slot: the prepending half marks the set's
        // current first point (on an empty set, the spare slot the next
        // append takes). This differs from the appending half on purpose.
        openStretchAt(0);
    else
        openStretch();
    // One d2 short of the first step's difference: the loop adds d2 first.
    double d1 = ((s * (x - h)) * 2.0 - axis.step) * axis.step * c;
    double const limit = front ? -axis.min : axis.max;
    double const stride = s * axis.step;
    // From the far edge of the new cell back to its centre.
    double const back = s * axis.halfStep;
    // The edge the curve heads for, in a local: the loop writes spans
    // straight into the buffer, and a value read through axis would be read
    // again after every such store.
    double const valueLow = axis.valueLow, valueHigh = axis.valueHigh;
    if (s * x < limit) {
        SpanCursorC spans(*this, axis.along, end);
        double xNext;
        do {
            // The curve has left the window through the edge it heads for
            // (a NaN value stops here too).
            if (c > 0 && !(y <= valueHigh)) break;
            if (c < 0 && !(y >= valueLow)) break;
            xNext = x + stride;
            if (xNext == x) break;
            d1 = d1 + d2;
            double yNext = d1 + y;
            spans.put(xNext - back, y, yNext);
            x = xNext;
            y = yNext;
        } while (s * xNext < limit);
        spans.close();
    }
    // The last point of the set either way: the prepending half's own end
    // point is its first-emitted one, next to the vertex.
    closeStretch();
}

void ParabolaWalkBC::emitVertexRun(AxisS const &axis, double yFar, double c, double h, double k) {
    openStretch();
    // The centre of the vertex's pixel by the column rounding, also when rows
    // are walked (then applied to a y): kept so, not the row rounding.
    double xc = round_to_hcentre(h);
    double from, to;
    if (c > 0) {
        from = yFar < axis.valueHigh ? yFar : axis.valueHigh;
        to = k > axis.valueLow ? k : axis.valueLow;
    } else {
        from = yFar > axis.valueLow ? yFar : axis.valueLow;
        to = k < axis.valueHigh ? k : axis.valueHigh;
    }
    emitRun(axis, xc, from, to, false);
    closeStretch();
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

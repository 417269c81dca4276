#include "evalg/LinearFunction1EvalC.h"

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

LinearFunction1EvalC::LinearFunction1EvalC() {}
LinearFunction1EvalC::LinearFunction1EvalC(LinearFunction1EvalC const &) = default;
LinearFunction1EvalC &LinearFunction1EvalC::operator=(LinearFunction1EvalC const &) = default;
LinearFunction1EvalC::~LinearFunction1EvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> LinearFunction1EvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::LinearFunction1C>(
        service, domain, 501, 0, [this](rel::LinearFunction1C *relation, SetP) { calculate(relation); });
}

void LinearFunction1EvalC::calculate(rel::LinearFunction1C *relation) {
    double m = relation->get_m();
    double h = relation->get_h();
    double k = relation->get_k();
    double b = k - h * m;
    double dy = xStep * m;
    double yLeft = leftEdge * m + b;
    double yRight = rightEdge * m + b;

    // Lines that miss the window, judged at the outer edges so that a line
    // grazing only the outer half pixel is still drawn.
    if (yLeft < bottomEdge && !(yRight >= bottomEdge)) return;
    if (yLeft > topEdge && yRight > topEdge) return;

    // The left edge of the column where the line enters: through the bottom
    // (m > 0), through the top (m < 0), or through the left edge. m == 0 never
    // gets here with yLeft outside, so there is no division by zero slope.
    double x;
    if (yLeft < bottomEdge)
        x = round_to_left((bottomEdge - b) / m);
    else if (yLeft > topEdge)
        x = round_to_left((topEdge - b) / m);
    else
        x = leftEdge;
    double y = x * m + b;

    // The window in locals: spans are stored through pointers.
    double const step = xStep, halfStep = xHalfStep, last = xMax, top = topEdge, bottom = bottomEdge;
    SpanCursorC spans(*this, COLUMNS, BACK);
    for (;;) {
        double xNext = step + x;
        if (xNext == x) break; // no progress: the scale is beyond double precision
        // Stepped, never recomputed from x.
        double yNext = y + dy;
        spans.put(xNext - halfStep, y, yNext);
        // The column of the exit is emitted before these tests, so the last
        // visible run is always there; clipping it is the emission's job.
        if (!(xNext < last)) break;
        if (m > 0) {
            if (!(yNext <= top)) break;
        } else if (yNext < bottom) {
            break;
        }
        x = xNext;
        y = yNext;
    }
    spans.close();
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#include "evalg/LogarithmicFunctionEvalC.h"

#include <cmath>

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

LogarithmicFunctionEvalC::LogarithmicFunctionEvalC() {}
LogarithmicFunctionEvalC::LogarithmicFunctionEvalC(LogarithmicFunctionEvalC const &) = default;
LogarithmicFunctionEvalC &LogarithmicFunctionEvalC::operator=(LogarithmicFunctionEvalC const &) = default;
LogarithmicFunctionEvalC::~LogarithmicFunctionEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> LogarithmicFunctionEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::LogarithmicFunctionC>(
        service, domain, 1002, 501,
        [this](rel::LogarithmicFunctionC *relation, SetP) { calculate(relation); });
}

void LogarithmicFunctionEvalC::calculate(rel::LogarithmicFunctionC *relation) {
    double B = relation->getBase();
    double a = relation->get_a();
    double b = relation->get_b();
    double h = relation->get_h();
    double k = relation->get_k();

    if (b == 0) {
        // The half-line y = k on the domain side of h. The top bound is strict.
        if (!(k >= bottomEdge) || !(k < topEdge) || (a > 0 && !(h < rightEdge)) || (a < 0 && !(h >= leftEdge)))
            return;
        double xFrom = xHalfStep + leftEdge;
        double xTo = rightEdge - xHalfStep;
        if (a > 0) {
            double hc = round_to_hcentre(h);
            if (!(xFrom > hc)) xFrom = hc;
        } else {
            // a = 0 (and a NaN) is drawn as a < 0: from the left up to h.
            double hc = round_to_hcentre(h);
            if (!(xTo < hc)) xTo = hc;
        }
        pushSpan(ROWS, BACK, k, xFrom, xTo);
        return;
    }

    double fLeft = relation->valueAt(leftEdge);
    double fRight = relation->valueAt(rightEdge);
    double yEnd = topEdge - yHalfStep;
    double yStart = bottomEdge + yHalfStep;
    if (a == 0) return;
    // The domain lies wholly beside the window.
    if ((a > 0 && h > rightEdge) || (a < 0 && h < leftEdge)) return;
    // A value that is not finite (outside the domain, or on the asymptote)
    // passes its half of the test.
    if ((a > 0 && b > 0) || (a < 0 && b < 0)) {
        if (!((!std::isfinite(fLeft) || fLeft <= topEdge) && (!std::isfinite(fRight) || !(fRight < bottomEdge))))
            return;
    } else if ((a > 0 && b < 0) || (a < 0 && b > 0)) {
        if (!((!std::isfinite(fRight) || fRight <= topEdge) && (!std::isfinite(fLeft) || !(fLeft < bottomEdge))))
            return;
    }

    double bInv = 1.0 / b;
    double aInv = 1.0 / a;

    // Upward walk from the row of k (or the bottom row), appending. Abscissae
    // are carried by the recurrence and never re-evaluated, as in the
    // exponential.
    double y = round_to_bottom(k > bottomEdge ? k : bottomEdge);
    double x = std::pow(B, (y - k) * bInv) * aInv + h;
    double E = std::pow(B, yStep * bInv);
    double D = h - E * h;
    // The window in locals: spans are stored through pointers.
    double const step = yStep, halfStep = yHalfStep;
    if (y < yEnd) {
        SpanCursorC spans(*this, ROWS, BACK);
        do {
            double yNext = y + step;
            if (yNext == y) break;
            double xNext = E * x + D;
            spans.put(yNext - halfStep, x, xNext);
            y = yNext;
            x = xNext;
        } while (y < yEnd);
        spans.close();
    }

    // Downward walk from the row of k (or the top row), prepending.
    y = round_to_bottom(k < topEdge ? k : topEdge);
    x = std::pow(B, (y - k) * bInv) * aInv + h;
    E = std::pow(B, -(yStep * bInv));
    D = h - E * h;
    if (y > yStart) {
        SpanCursorC spans(*this, ROWS, FRONT);
        do {
            // The sum is tested, not the difference used below: kept so.
            if (y + step == y) break;
            double yNext = y - step;
            // At a negative power of two the sum can move while the difference
            // rounds back to y; stop there rather than loop forever.
            if (yNext == y) break;
            double xNext = E * x + D;
            spans.put(halfStep + yNext, xNext, x);
            y = yNext;
            x = xNext;
        } while (y > yStart);
        spans.close();
    }
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

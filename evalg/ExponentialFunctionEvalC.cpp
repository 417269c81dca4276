#include "evalg/ExponentialFunctionEvalC.h"

#include <cmath>

#include "collab/math/Float64UtilC.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

ExponentialFunctionEvalC::ExponentialFunctionEvalC() {}
ExponentialFunctionEvalC::ExponentialFunctionEvalC(ExponentialFunctionEvalC const &) = default;
ExponentialFunctionEvalC &ExponentialFunctionEvalC::operator=(ExponentialFunctionEvalC const &) = default;
ExponentialFunctionEvalC::~ExponentialFunctionEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> ExponentialFunctionEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::ExponentialFunctionC>(
        service, domain, 1002, 501,
        [this](rel::ExponentialFunctionC *relation, SetP set) { calculate(relation, set); });
}

void ExponentialFunctionEvalC::calculate(rel::ExponentialFunctionC *relation, SetP set) {
    double r = relation->getCoefficient();
    double b = relation->get_b();
    double k = relation->get_k();
    if (math::Float64UtilC::isNaN(r)) return;
    // An infinite rate leaves only the asymptote visible.
    if (math::Float64UtilC::isInfinity(r)) {
        calculateConstant(k, set);
        return;
    }
    if (b == 0) {
        calculateConstant(k, set);
        return;
    }
    if (r == 0) {
        calculateConstant(k + b, set);
        return;
    }
    double fLeft = relation->valueAt(leftEdge);
    double fRight = relation->valueAt(rightEdge);
    double xEnd = rightEdge - xHalfStep;

    // Reject a graph that misses the window, judged at the end where it is
    // lowest and the end where it is highest.
    if ((b > 0 && r > 0) || (b < 0 && r < 0)) {
        if (!(fLeft <= topEdge && !(fRight < bottomEdge))) return;
    } else if ((b > 0 && r < 0) || (b < 0 && r > 0)) {
        if (!(fRight <= topEdge && !(fLeft < bottomEdge))) return;
    }

    // Right walk, appending. Heights are carried by the recurrence from here
    // on and never re-evaluated: speed over accuracy, kept so.
    double x = round_to_left(leftEdge > 0 ? leftEdge : 0.0);
    double y = relation->valueAt(x);
    double E = std::exp(xStep * r);
    double D = k - E * k;
    // The window in locals: spans are stored through pointers.
    double const step = xStep, halfStep = xHalfStep, first = xMin;
    if (x < xEnd) {
        SpanCursorC spans(*this, COLUMNS, BACK);
        do {
            double xNext = x + step;
            if (xNext == x) break;
            double yNext = y * E + D;
            spans.put(xNext - halfStep, y, yNext);
            x = xNext;
            y = yNext;
        } while (x < xEnd);
        spans.close();
    }

    // Left walk, prepending; it starts on the same column edge as the right
    // walk when 0 is inside, so no column is drawn twice.
    x = round_to_left(rightEdge < 0 ? rightEdge : 0.0);
    y = relation->valueAt(x);
    E = std::exp(-(xStep * r));
    D = k - E * k;
    if (x > first) {
        SpanCursorC spans(*this, COLUMNS, FRONT);
        do {
            double xNext = x - step;
            if (xNext == x) break;
            double yNext = y * E + D;
            // From the column's left edge height to its right edge height.
            spans.put(halfStep + xNext, yNext, y);
            x = xNext;
            y = yNext;
        } while (x > first);
        spans.close();
    }
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

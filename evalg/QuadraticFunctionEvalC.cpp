#include "evalg/QuadraticFunctionEvalC.h"

#include <cmath>

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

QuadraticFunctionEvalC::QuadraticFunctionEvalC() {}
QuadraticFunctionEvalC::QuadraticFunctionEvalC(QuadraticFunctionEvalC const &) = default;
QuadraticFunctionEvalC &QuadraticFunctionEvalC::operator=(QuadraticFunctionEvalC const &) = default;
QuadraticFunctionEvalC::~QuadraticFunctionEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> QuadraticFunctionEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::QuadraticFunctionC>(
        service, domain, 1001, 500,
        [this](rel::QuadraticFunctionC *relation, SetP set) { calculate(relation, set); });
}

void QuadraticFunctionEvalC::calculate(rel::QuadraticFunctionC *relation, SetP set) {
    double a = relation->get_a();
    double h = relation->get_h();
    double k = relation->get_k();
    if (a == 0) {
        calculateConstant(k, set);
        return;
    }
    double fL = relation->f(leftEdge);
    double fR = relation->f(rightEdge);
    double d2 = (xStep * xStep * a) * 2.0;

    // Left half: the first start that applies.
    if (h >= rightEdge && bottomEdge <= fR && fR < topEdge) {
        calculateLeftHalf(rightEdge, fR, d2, a, h, set);
    } else if (leftEdge <= h && h < rightEdge && bottomEdge <= k && k < topEdge) {
        double x0 = round_to_left(h);
        calculateLeftHalf(x0, relation->f(x0), d2, a, h, set);
    } else if (a > 0 && k < bottomEdge && fL >= bottomEdge && (h < rightEdge || fR < bottomEdge)) {
        // The column edge right of where the left branch rises through bottomEdge.
        double x0 = round_to_right(h - std::sqrt((bottomEdge - k) / a));
        calculateLeftHalf(x0, relation->f(x0), d2, a, h, set);
    } else if (a < 0 && k >= topEdge && fL < topEdge) {
        if (!(h >= rightEdge && fR < topEdge)) {
            double x0 = round_to_right(h - std::sqrt((topEdge - k) / a));
            calculateLeftHalf(x0, relation->f(x0), d2, a, h, set);
        }
    }

    // Vertex column.
    if (leftEdge <= h && h < rightEdge) {
        double xl = round_to_left(h);
        double xr = round_to_right(h);
        double yl = relation->f(xl);
        double yr = relation->f(xr);
        // The far end of the vertex run; a tie takes yr.
        double yFar = a > 0 ? (yl > yr ? yl : yr) : (yl < yr ? yl : yr);
        if (a > 0 && k < topEdge && yFar >= bottomEdge)
            calculateVertex(yFar, a, h, k, set);
        else if (a < 0 && k >= bottomEdge && yFar < topEdge)
            calculateVertex(yFar, a, h, k, set);
    }

    // Right half: the mirror of the left.
    if (h < leftEdge && bottomEdge <= fL && fL < topEdge) {
        calculateRightHalf(leftEdge, fL, d2, a, h, set);
    } else if (leftEdge <= h && h < rightEdge && bottomEdge <= k && k < topEdge) {
        double x0 = round_to_right(h);
        calculateRightHalf(x0, relation->f(x0), d2, a, h, set);
    } else if (a > 0 && k < bottomEdge && fR >= bottomEdge && (h >= leftEdge || fL < bottomEdge)) {
        double x0 = round_to_left(h + std::sqrt((bottomEdge - k) / a));
        calculateRightHalf(x0, relation->f(x0), d2, a, h, set);
    } else if (a < 0 && k >= topEdge && fR < topEdge) {
        if (!(h < leftEdge && fL < topEdge)) {
            double x0 = round_to_left(h + std::sqrt((topEdge - k) / a));
            calculateRightHalf(x0, relation->f(x0), d2, a, h, set);
        }
    }
}

void QuadraticFunctionEvalC::calculateRightHalf(double x, double y, double d2, double c, double h, SetP set) {
    addStartMarker(nextMarker(set));
    // One d2 short of the first step's difference: the loop adds d2 first.
    double d1 = ((x - h) * 2.0 - xStep) * xStep * c;
    if (x < xMax) {
        double xNext;
        do {
            // The curve has left the window through the edge it heads for.
            if (c > 0 && !(y <= topEdge)) break;
            if (c < 0 && !(y >= bottomEdge)) break;
            xNext = xStep + x;
            if (xNext == x) break;
            d1 = d1 + d2;
            double yNext = d1 + y;
            appendPixelPoints(xNext - xHalfStep, y, yNext, set);
            x = xNext;
            y = yNext;
        } while (xNext < xMax);
    }
    addEndMarker(lastMarker(set));
}

void QuadraticFunctionEvalC::calculateLeftHalf(double x, double y, double d2, double c, double h, SetP set) {
    // Slot 0, not the next slot: the prepending half marks the set's current
    // first point. This differs from the appending half on purpose.
    addStartMarker(firstMarker(set));
    double d1 = ((h - x) * 2.0 - xStep) * xStep * c;
    if (x > xMin) {
        double xNext;
        do {
            if (c > 0 && !(y <= topEdge)) break;
            if (c < 0 && !(y >= bottomEdge)) break;
            xNext = x - xStep;
            if (xNext == x) break;
            d1 = d1 + d2;
            double yNext = d1 + y;
            prependPixelPoints(xHalfStep + xNext, y, yNext, set);
            x = xNext;
            y = yNext;
        } while (xNext > xMin);
    }
    addEndMarker(lastMarker(set));
}

void QuadraticFunctionEvalC::calculateVertex(double yFar, double c, double h, double k, SetP set) {
    addStartMarker(nextMarker(set));
    double xc = round_to_hcentre(h);
    double from, to;
    if (c > 0) {
        from = yFar < topEdge ? yFar : topEdge;
        to = k > bottomEdge ? k : bottomEdge;
    } else {
        from = yFar > bottomEdge ? yFar : bottomEdge;
        to = k < topEdge ? k : topEdge;
    }
    appendPixelPoints(xc, from, to, set);
    addEndMarker(lastMarker(set));
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

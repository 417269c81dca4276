#include "evalg/PowerFunctionEvalC.h"

#include <cmath>

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

PowerFunctionEvalC::PowerFunctionEvalC() {}
PowerFunctionEvalC::PowerFunctionEvalC(PowerFunctionEvalC const &) = default;
PowerFunctionEvalC &PowerFunctionEvalC::operator=(PowerFunctionEvalC const &) = default;
PowerFunctionEvalC::~PowerFunctionEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> PowerFunctionEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::PowerFunctionC>(
        service, domain, 1001, 500,
        [this](rel::PowerFunctionC *relation, SetP) { calculate(relation); });
}

void PowerFunctionEvalC::calculate(rel::PowerFunctionC *relation) {
    double a = relation->get_a();
    double h = relation->get_h();
    double k = relation->get_k();
    long long r = relation->get_r();
    int restriction = relation->getDomainRestriction();
    double xl = round_to_left(h);
    double xc = round_to_hcentre(h);
    double xr = round_to_right(h);
    double fl = relation->f(xl);
    double fr = relation->f(xr);
    // Remainder, not a bit test: correct for negative r as well.
    bool odd = r % 2 != 0;
    bool hInside = leftEdge < h && h < rightEdge;

    if (r < 0 && hInside) {
        // A pole in the window: each branch runs along the asymptote to the
        // edge it escapes through, left branch first, so the set stays in
        // drawing order.
        if (restriction != rel::POWER_DOMAIN_RIGHT_OF_H) {
            plotf(leftEdge, xl, relation);
            bool down = (a > 0 && odd) || (a < 0 && !odd);
            if (!down) {
                if (std::isfinite(fl) && fl < topEdge) {
                    pushSpan(COLUMNS, BACK, xc, fl, topEdge);
                    closeStretch();
                }
            } else if (std::isfinite(fl) && fl > bottomEdge) {
                pushSpan(COLUMNS, BACK, xc, fl, bottomEdge);
                closeStretch();
            }
        }
        if (restriction != rel::POWER_DOMAIN_LEFT_OF_H) {
            // The right branch's run comes down (up) from the edge to the sample.
            if (a > 0) {
                if (std::isfinite(fr) && fr < topEdge) {
                    pushSpan(COLUMNS, BACK, xc, topEdge, fr);
                    closeStretch();
                }
            } else if (std::isfinite(fr) && fr > bottomEdge) {
                pushSpan(COLUMNS, BACK, xc, bottomEdge, fr);
                closeStretch();
            }
            plotf(xr, rightEdge, relation);
        }
    } else if (!odd && hInside && double(r) > 0) {
        // A turning point in the window; the restriction is not consulted here.
        plotf(leftEdge, xl, relation);
        // The nearer neighbour's far side: larger for a > 0, smaller otherwise;
        // a tie keeps fl. Not clamped here: the emission clips it.
        double yFar = a > 0 ? (fr > fl ? fr : fl) : (fr < fl ? fr : fl);
        pushSpan(COLUMNS, BACK, xc, k, yFar);
        closeStretch();
        plotf(xr, rightEdge, relation);
    } else if (!((h > rightEdge && restriction == rel::POWER_DOMAIN_RIGHT_OF_H) ||
                 (h < leftEdge && restriction == rel::POWER_DOMAIN_LEFT_OF_H))) {
        // One sweep. With h inside, the excluded side is drawn as f gives it.
        plotf(leftEdge, rightEdge, relation);
    }
}

void PowerFunctionEvalC::plotf(double from, double to, rel::PowerFunctionC *relation) {
    double y = relation->f(from);
    double x = from;
    // Finite samples are not required: whatever f returns goes to the emission.
    if (x < to - xStep * 0.5) {
        do {
            double xNext = xStep + x;
            // A step lost to rounding would never reach `to`.
            if (xNext == x) break;
            x = xNext;
            double yNext = relation->f(x);
            pushSpan(COLUMNS, BACK, x - xStep * 0.5, y, yNext);
            y = yNext;
        } while (x < to - xStep * 0.5);
    }
    closeStretch();
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

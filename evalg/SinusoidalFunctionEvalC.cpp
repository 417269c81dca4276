#include "evalg/SinusoidalFunctionEvalC.h"

#include <cmath>

#include "collab/math/Float64UtilC.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

SinusoidalFunctionEvalC::SinusoidalFunctionEvalC() {}
SinusoidalFunctionEvalC::SinusoidalFunctionEvalC(SinusoidalFunctionEvalC const &) = default;
SinusoidalFunctionEvalC &SinusoidalFunctionEvalC::operator=(SinusoidalFunctionEvalC const &) = default;
SinusoidalFunctionEvalC::~SinusoidalFunctionEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> SinusoidalFunctionEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::SinusoidalFunctionC>(
        service, domain, 500, 0,
        [this](rel::SinusoidalFunctionC *relation, SetP set) { calculate(relation, set); });
}

void SinusoidalFunctionEvalC::calculate(rel::SinusoidalFunctionC *relation, SetP set) {
    if (!set) return;
    // Bound here too: a caller may run the calculation without the driver.
    bindSpans(set.get());
    walk(relation);
    unbindSpans();
}

void SinusoidalFunctionEvalC::walk(rel::SinusoidalFunctionC *relation) {
    double b = relation->get_b();
    double k = relation->get_k();
    double h = relation->get_h();
    double a = relation->get_a();
    // A flat line exactly on an edge is not drawn.
    if (b == 0 && !(bottomEdge < k && k < topEdge)) return;
    // The band [k - |b|, k + |b|] must overlap the window.
    if (!(std::fabs(b) + k > bottomEdge)) return;
    if (!(k - std::fabs(b) < topEdge)) return;

    double x = leftEdge + xStep;
    double twoCos = std::cos(xStep * a) * 2.0;
    double kTerm = (2.0 - twoCos) * k;
    double yPrev = relation->valueAt(leftEdge);
    double yCur = relation->valueAt(leftEdge + xStep);
    double P = (2.0 / a) * math::Float64UtilC::pi;
    double phase;
    if (!relation->getSinOrCos()) {
        phase = h - leftEdge;
        if (a == 0 && !(bottomEdge < k + b && k + b < topEdge)) return;
    } else {
        // The sine's first crest lies a quarter period right of the cosine's.
        phase = (h - leftEdge) + P * 0.25;
        if (a == 0 && !(bottomEdge < k && k < topEdge)) return;
    }
    // A zero a that got here walks on with an infinite period: its crest is
    // passed at most once and its trough never. The walk is paced by x alone,
    // one column per turn, whatever P is (infinite, NaN, or far below a pixel).
    P = std::fabs(P);
    // fmod keeps the phase's sign: extremes left of the window are passed at once.
    double crestX = std::fmod(phase, P) + leftEdge;
    double troughX = std::fmod(P * 0.5 + phase, P) + leftEdge;

    // On the first byte before any point exists: the first point takes it.
    openStretch();
    bool outside = false;
    bool reentryPending = false;
    // The point that took the last end marker, kept as an index: the marker
    // array moves as points are appended.
    long exitIndex = -1;
    // The window in locals: spans are stored through pointers.
    double const step = xStep, halfStep = xHalfStep, end = rightEdge + xHalfStep;
    double const top = topEdge, bottom = bottomEdge;
    SpanCursorC spans(*this, COLUMNS, BACK);
    while (x < end) {
        // The column whose right edge is x.
        double xc = x - halfStep;
        if (x > crestX) {
            if (x > troughX) {
                // Both extremes in one column: a period shorter than a pixel.
                spans.put(xc, k - b, k + b);
                troughX += P;
                crestX += P;
            } else {
                spans.put(xc, yPrev < yCur ? yPrev : yCur, k + b);
                crestX += P;
            }
        } else if (x > troughX) {
            spans.put(xc, yPrev > yCur ? yPrev : yCur, k - b);
            troughX += P;
        } else {
            // Only ordinary columns keep the visibility bookkeeping; an
            // extreme column sets no marker even when the curve leaves in it.
            if (!(yPrev <= top) || !(yPrev >= bottom)) {
                if (outside) {
                    // Out for a second column: a start marker is due on return.
                    reentryPending = true;
                } else {
                    spans.close();
                    exitIndex = long(boundCount()) - 1;
                    closeStretchAt(exitIndex);
                    spans.reopen();
                    outside = true;
                }
            } else {
                if (reentryPending) {
                    // On the point that took the end marker, not on the new one.
                    spans.close();
                    openStretchAt(exitIndex);
                    spans.reopen();
                    reentryPending = false;
                }
                outside = false;
            }
            spans.put(xc, yPrev, yCur);
        }
        double xNext = x + step;
        // A step lost to rounding would never reach the right edge.
        if (xNext == x) break;
        x = xNext;
        double yNext = yCur * twoCos - yPrev + kTerm;
        yPrev = yCur;
        yCur = yNext;
    }
    spans.close();
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#include "evalg/GraphDomainEvalC.h"

#include <cmath>
#include <new>

#include "collab/oss/IntegerConversionC.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

GraphDomainEvalC::GraphDomainEvalC()
    : leftEdge(0), rightEdge(0), bottomEdge(0),
      topEdge(0), pixelColumns(0), pixelRows(0), xStep(0), yStep(0), xHalfStep(0), yHalfStep(0),
      xMax(0), xMin(0), yMax(0), yMin(0), xStepReciprocal(0), yStepReciprocal(0) {}

bool GraphDomainEvalC::setDomain(oss::PointerTC<ds::GraphicalDomainC> domain) {
    if (!domain) return false;
    if (!domain->isValid()) return false;
    pixelColumns = domain->getM();
    pixelRows = domain->getN();
    xMin = domain->getXMin();
    xMax = domain->getXMax();
    yMin = domain->getYMin();
    yMax = domain->getYMax();
    // The count minus one in integer arithmetic: one column gives 0, so an
    // infinite step.
    xStep = (xMax - xMin) / double(int(pixelColumns) - 1);
    // The y limits are asked of the domain again rather than read back.
    yStep = (domain->getYMax() - domain->getYMin()) / double(int(pixelRows) - 1);
    xStepReciprocal = oss::IntegerConversionC::quotientReciprocal(xStep);
    yStepReciprocal = oss::IntegerConversionC::quotientReciprocal(yStep);
    xHalfStep = xStep * 0.5;
    yHalfStep = yStep * 0.5;
    leftEdge = xMin - xHalfStep;
    rightEdge = xMax + xHalfStep;
    bottomEdge = domain->getYMin() - yHalfStep;
    topEdge = yHalfStep + domain->getYMax();
    windowSet();
    return true;
}

void GraphDomainEvalC::windowSet() {}

oss::PointerTC<ds::GraphDataSetWinC> GraphDomainEvalC::beginEvaluation(
    oss::PointerTC<ds::GraphicalDomainC> domain, unsigned int first, unsigned int second,
    bool &domainSet) {
    domainSet = setDomain(domain);
    if (domainSet) {
        // Sized from the window rather than by the fixed hints, so that a
        // walk never has to grow the set. Where the hints put room in front
        // (walks that prepend), as much again goes in front.
        unsigned int cells = pixelColumns > pixelRows ? pixelColumns : pixelRows;
        unsigned int room = pointsPerCell() * cells + 16;
        first = second != 0 ? 2 * room : room;
        second = second != 0 ? room : 0;
    }
    return oss::PointerTC<ds::GraphDataSetWinC>(new (std::nothrow) ds::GraphDataSetWinC(first, second, domain));
}

unsigned int GraphDomainEvalC::pointsPerCell() const { return 2; }

double GraphDomainEvalC::round_to_left(double v) const {
    double c = xStep * std::floor((v - leftEdge) / xStep) + leftEdge;
    // A value already on a boundary, and a NaN, come back unchanged.
    if (c < v) return xStep * std::floor((v - leftEdge) / xStep) + leftEdge;
    return v;
}

double GraphDomainEvalC::round_to_right(double v) const {
    double l = round_to_left(v);
    // Not the mirror of round_to_left: a value on a boundary moves a whole step
    // up, because round_to_left leaves it where it is.
    if (xStep + l > v) return xStep + round_to_left(v);
    return v;
}

double GraphDomainEvalC::round_to_bottom(double v) const {
    double c = yStep * std::floor((v - bottomEdge) / yStep) + bottomEdge;
    if (c < v) return yStep * std::floor((v - bottomEdge) / yStep) + bottomEdge;
    return v;
}

double GraphDomainEvalC::round_to_top(double v) const {
    double b = round_to_bottom(v);
    if (yStep + b > v) return yStep + round_to_bottom(v);
    return v;
}

double GraphDomainEvalC::round_to_hcentre(double v) const { return xHalfStep + round_to_left(v); }

double GraphDomainEvalC::round_to_vcentre(double v) const {
    // Built from the formula, not from round_to_bottom: a boundary value or a
    // NaN is treated differently from the horizontal centre on purpose.
    return (yStep * std::floor((v - bottomEdge) / yStep) + yHalfStep) + bottomEdge;
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#include "evalg/CartesianRelationGraphEvalHelperC.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "collab/ds/PixelPointC.h"
#include "collab/oss/IntegerConversionC.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

using oss::IntegerConversionC;

namespace {

// Walks the cell indices of one span from first to last, stepping by their
// whole distance so that a span yields its start cell and its end cell only.
// first is a signed 16-bit index and last an unsigned one, as the pixel
// arithmetic has them; rising is the comparison of the span's two ends.
// emit(index) writes one point.
template <class EmitT>
void emitSpan(bool rising, int16_t first, uint16_t last, EmitT emit) {
    // The whole distance, kept in 32 bits: within a grid of up to 32767
    // pixels it fits 16 bits anyway, and an end far outside the grid (a NaN
    // start with an unclamped end) would otherwise wrap the stride to a
    // negative or tiny value and emit every cell, or never stop.
    int stride = std::abs(int(last) - int(first));
    if (stride < 1) stride = 1;
    if (rising) {
        if (first > last) return;
        for (int i = first; i <= last; i += stride) emit(i);
    } else {
        if (first < last) return;
        for (int i = first; i >= last; i -= stride) emit(i);
    }
}

void put(ds::GraphDataSetWinC &set, long x, long y, bool prepend) {
    static unsigned char const none = 0;
    if (prepend)
        set.prependPixelPoint(x, y, none);
    else
        set.appendPixelPoint(x, y, none);
}

} // namespace

CartesianRelationGraphEvalHelperC::CartesianRelationGraphEvalHelperC() {}
CartesianRelationGraphEvalHelperC::CartesianRelationGraphEvalHelperC(
    CartesianRelationGraphEvalHelperC const &) = default;
CartesianRelationGraphEvalHelperC &CartesianRelationGraphEvalHelperC::operator=(
    CartesianRelationGraphEvalHelperC const &) = default;
CartesianRelationGraphEvalHelperC::~CartesianRelationGraphEvalHelperC() {}

void CartesianRelationGraphEvalHelperC::calculateConstant(double y, SetP set) {
    if (!set) return;
    if (!(y >= bottomEdge && y <= topEdge)) return;
    // One point per column, unlike a span.
    uint16_t row = IntegerConversionC::toUInt16(double(int(pixelRows) - 1) - std::floor((y - bottomEdge) / yStep));
    static unsigned char const none = 0;
    for (int c = 0; c < int(pixelColumns); ++c) {
        scratchPoint.x = c;
        scratchPoint.y = row;
        set->appendPixelPoint(scratchPoint, none);
    }
}

void CartesianRelationGraphEvalHelperC::appendPixelPoint(double x, double y, SetP set) {
    addPixelPoints(x, y, y, set.get(), false);
}

void CartesianRelationGraphEvalHelperC::prependPixelPoint(double x, double y, SetP set) {
    addPixelPoints(x, y, y, set.get(), true);
}

void CartesianRelationGraphEvalHelperC::appendPixelPoints(double x, double y1, double y2, SetP set) {
    addPixelPoints(x, y1, y2, set.get(), false);
}

void CartesianRelationGraphEvalHelperC::prependPixelPoints(double x, double y1, double y2, SetP set) {
    addPixelPoints(x, y1, y2, set.get(), true);
}

void CartesianRelationGraphEvalHelperC::appendPixelPointsXYSwapped(double y, double x1, double x2, SetP set) {
    addPixelPointsXYSwapped(y, x1, x2, set.get(), false);
}

void CartesianRelationGraphEvalHelperC::prependPixelPointsXYSwapped(double y, double x1, double x2, SetP set) {
    addPixelPointsXYSwapped(y, x1, x2, set.get(), true);
}

void CartesianRelationGraphEvalHelperC::addStartMarker(unsigned char *marker) {
    *marker |= ds::PixelPointC::FIRST_VISIBLE;
}

void CartesianRelationGraphEvalHelperC::addEndMarker(unsigned char *marker) {
    *marker |= ds::PixelPointC::LAST_VISIBLE;
}

unsigned char *CartesianRelationGraphEvalHelperC::markerSlot(ds::GraphDataSetWinC &set, long index) {
    unsigned int count = 0;
    return set.getPixelMarkers(count) + index;
}

void CartesianRelationGraphEvalHelperC::addPixelPoints(double x, double y1, double y2, ds::GraphDataSetWinC *set,
                                                       bool prepend) {
    if (!set) return;
    // Whole span below the grid (a NaN y2 with y1 below is dropped here too).
    if (y1 < bottomEdge && !(y2 >= bottomEdge)) return;
    if (y1 > topEdge && y2 > topEdge) return;
    // Clamp to the centres of the outermost rows, not to the edges.
    double lowCentre = yHalfStep + bottomEdge;
    double highCentre = topEdge - yHalfStep;
    double start, end;
    if (y1 < y2) {
        start = y1 > lowCentre ? y1 : lowCentre;
        end = y2 < highCentre ? y2 : highCentre;
    } else {
        start = !(y1 < highCentre) ? highCentre : y1;
        end = y2 > lowCentre ? y2 : lowCentre;
    }
    // x is not clamped: the caller passes an x inside the grid.
    long col = IntegerConversionC::floorQuotientToUInt16(x - leftEdge, xStep, xStepReciprocal);
    int16_t rowStart = IntegerConversionC::floorQuotientToInt16(start - bottomEdge, yStep, yStepReciprocal);
    // A single point (or a flat span) needs its row only once.
    uint16_t rowEnd = end == start ? uint16_t(rowStart)
                                   : IntegerConversionC::floorQuotientToUInt16(end - bottomEdge, yStep, yStepReciprocal);
    int rows = pixelRows;
    ds::GraphDataSetWinC &target = *set;
    emitSpan(start < end, rowStart, rowEnd, [&](int r) { put(target, col, long(rows - r - 1), prepend); });
}

void CartesianRelationGraphEvalHelperC::addPixelPointsXYSwapped(double y, double x1, double x2,
                                                                ds::GraphDataSetWinC *set, bool prepend) {
    if (!set) return;
    if (x1 < leftEdge && !(x2 >= leftEdge)) return;
    if (x1 > rightEdge && x2 > rightEdge) return;
    // Clamped to the edges, not to the outermost centres: a span clamped at
    // rightEdge lands in column pixelColumns, one past the last. Kept so.
    double start, end;
    if (x1 < x2) {
        start = x1 > leftEdge ? x1 : leftEdge;
        end = x2 < rightEdge ? x2 : rightEdge;
    } else {
        start = !(x1 < rightEdge) ? rightEdge : x1;
        end = x2 > leftEdge ? x2 : leftEdge;
    }
    uint16_t row = IntegerConversionC::floorQuotientToUInt16(y - bottomEdge, yStep, yStepReciprocal);
    int16_t colStart = IntegerConversionC::floorQuotientToInt16(start - leftEdge, xStep, xStepReciprocal);
    uint16_t colEnd = end == start ? uint16_t(colStart)
                                   : IntegerConversionC::floorQuotientToUInt16(end - leftEdge, xStep, xStepReciprocal);
    long screenRow = long(int(pixelRows) - int(row) - 1);
    ds::GraphDataSetWinC &target = *set;
    emitSpan(start < end, colStart, colEnd, [&](int c) { put(target, long(c), screenRow, prepend); });
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

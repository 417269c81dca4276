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

CartesianRelationGraphEvalHelperC::CartesianRelationGraphEvalHelperC()
    : spanTarget(nullptr), batchFrames(), framesReady(), spanMode(COLUMNS | BACK), spanCount(0),
      unboundMarker(0) {}
// A copy starts with an empty buffer: spans belong to the evaluation running
// in the source, not to the copy. Its frames are worked out again from the
// window it takes over.
CartesianRelationGraphEvalHelperC::CartesianRelationGraphEvalHelperC(CartesianRelationGraphEvalHelperC const &other)
    : CartesianRelationGraphEvalC(other), spanTarget(nullptr), batchFrames(), framesReady(),
      spanMode(COLUMNS | BACK), spanCount(0), unboundMarker(0) {}
CartesianRelationGraphEvalHelperC &CartesianRelationGraphEvalHelperC::operator=(
    CartesianRelationGraphEvalHelperC const &other) {
    CartesianRelationGraphEvalC::operator=(other);
    windowSet();
    return *this;
}
CartesianRelationGraphEvalHelperC::~CartesianRelationGraphEvalHelperC() {}

SpanEmissionC::FrameS CartesianRelationGraphEvalHelperC::spanFrame(AxisE axis) const {
    // Rows clamp to the edges, not to the outermost centres: a span clamped
    // at rightEdge lands in column pixelColumns, one past the last. Kept so.
    if (axis == ROWS)
        return SpanEmissionC::FrameS{leftEdge, rightEdge, leftEdge, rightEdge, bottomEdge, yStep, yStepReciprocal,
                                     leftEdge, xStep,     xStepReciprocal, int(pixelRows), true, false};
    // Columns clamp to the centres of the outermost rows.
    return SpanEmissionC::FrameS{bottomEdge, topEdge, yHalfStep + bottomEdge, topEdge - yHalfStep,
                                 leftEdge,   xStep,   xStepReciprocal,        bottomEdge,
                                 yStep,      yStepReciprocal, int(pixelRows), false, false};
}

void CartesianRelationGraphEvalHelperC::windowSet() { framesReady[0] = framesReady[1] = false; }

void CartesianRelationGraphEvalHelperC::bindSpans(ds::GraphDataSetWinC *set) {
    flushSpans();
    spanTarget = set;
}

void CartesianRelationGraphEvalHelperC::unbindSpans() {
    flushSpans();
    spanTarget = nullptr;
}

void CartesianRelationGraphEvalHelperC::startBatch(unsigned char mode) {
    flushSpans();
    spanMode = mode;
}

void CartesianRelationGraphEvalHelperC::emitBatch() {
    unsigned int n = spanCount;
    spanCount = 0;
    if (!spanTarget) return;
    // Each axis's frame is worked out at its first flush after the window is
    // set: most walks use one axis only.
    bool rows = (spanMode & ROWS) != 0;
    if (!framesReady[rows]) {
        batchFrames[rows] = spanFrame(rows ? ROWS : COLUMNS);
        SpanEmissionC::prepare(batchFrames[rows]);
        framesReady[rows] = true;
    }
    SpanEmissionC::emit(batchFrames[rows], spans, n, *spanTarget, (spanMode & FRONT) != 0);
}

void CartesianRelationGraphEvalHelperC::emitNow(AxisE axis, EndE end, double at, double from, double to,
                                                ds::GraphDataSetWinC *set) {
    if (!set) return;
    // Whatever is pending was pushed before this span.
    flushSpans();
    SpanEmissionC::PointsS points = SpanEmissionC::spanPoints(spanFrame(axis), at, from, to);
    static unsigned char const none = 0;
    for (int32_t i = 0; i < points.count; ++i) {
        if (end == FRONT)
            set->prependPixelPoint(long(points.p[i].x), long(points.p[i].y), none);
        else
            set->appendPixelPoint(points.p[i], none);
    }
}

void CartesianRelationGraphEvalHelperC::calculateConstant(double y, SetP set) {
    flushSpans();
    if (!set) return;
    if (!(y >= bottomEdge && y <= topEdge)) return;
    // One point per column, unlike a span.
    uint16_t row = IntegerConversionC::toUInt16(double(int(pixelRows) - 1) - std::floor((y - bottomEdge) / yStep));
    POINT *out = set->reserveAppend(pixelColumns);
    if (!out) return;
    for (int c = 0; c < int(pixelColumns); ++c) out[c] = POINT{c, row};
    set->commitAppend(pixelColumns);
}

void CartesianRelationGraphEvalHelperC::appendPixelPoint(double x, double y, SetP set) {
    emitNow(COLUMNS, BACK, x, y, y, set.get());
}

void CartesianRelationGraphEvalHelperC::prependPixelPoint(double x, double y, SetP set) {
    emitNow(COLUMNS, FRONT, x, y, y, set.get());
}

void CartesianRelationGraphEvalHelperC::appendPixelPoints(double x, double y1, double y2, SetP set) {
    emitNow(COLUMNS, BACK, x, y1, y2, set.get());
}

void CartesianRelationGraphEvalHelperC::prependPixelPoints(double x, double y1, double y2, SetP set) {
    emitNow(COLUMNS, FRONT, x, y1, y2, set.get());
}

void CartesianRelationGraphEvalHelperC::appendPixelPointsXYSwapped(double y, double x1, double x2, SetP set) {
    emitNow(ROWS, BACK, y, x1, x2, set.get());
}

void CartesianRelationGraphEvalHelperC::prependPixelPointsXYSwapped(double y, double x1, double x2, SetP set) {
    emitNow(ROWS, FRONT, y, x1, x2, set.get());
}

void CartesianRelationGraphEvalHelperC::addStartMarker(unsigned char *marker) {
    *marker |= ds::PixelPointC::FIRST_VISIBLE;
}

void CartesianRelationGraphEvalHelperC::addEndMarker(unsigned char *marker) {
    *marker |= ds::PixelPointC::LAST_VISIBLE;
}

unsigned char *CartesianRelationGraphEvalHelperC::markerSlot(ds::GraphDataSetWinC &set, long index) {
    // A marker read or set sees every span pushed before it.
    flushSpans();
    unsigned int count = 0;
    return set.getPixelMarkers(count) + index;
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

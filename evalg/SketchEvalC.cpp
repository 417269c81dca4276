#include "evalg/SketchEvalC.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include "collab/ds/FloatDataSetC.h"
#include "collab/ds/FloatPointC.h"
#include "collab/oss/IntegerConversionC.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

using oss::IntegerConversionC;

namespace {

// a - b in the 32-bit pixel arithmetic, wrapping as the hardware does rather
// than overflowing.
int32_t minus32(int64_t a, int64_t b) { return IntegerConversionC::narrow32(uint32_t(uint64_t(a - b))); }

} // namespace

SketchEvalC::SketchEvalC() {}
SketchEvalC::SketchEvalC(SketchEvalC const &) = default;
SketchEvalC &SketchEvalC::operator=(SketchEvalC const &) = default;
SketchEvalC::~SketchEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> SketchEvalC::evaluatePixels(esb::SketchServiceIC &service,
                                                                 oss::PointerTC<ds::GraphicalDomainC> domain) {
    bool domainSet = false;
    oss::PointerTC<ds::GraphDataSetWinC> set = beginEvaluation(domain, 1000, 0, domainSet);
    if (!domainSet || !set) return set;
    static unsigned char const none = 0;
    std::vector<ds::FloatPointC *> const &sketch = service.getValues();
    for (std::size_t i = 0; i < sketch.size(); ++i) {
        if (!sketch[i]) continue;
        long column = IntegerConversionC::toInt32(std::floor((sketch[i]->getX() - leftEdge) / xStep));
        // From pixelRows, not pixelRows - 1: a point at the centre of row r
        // lands in row r + 1, one below where createSketch took it from. Kept.
        int32_t rowsUp = IntegerConversionC::toInt32(std::floor((sketch[i]->getY() - bottomEdge) / yStep));
        long row = minus32(pixelRows, rowsUp);
        set->appendPixelPoint(column, row, none);
    }
    return set;
}

rel::SketchC *SketchEvalC::createSketch(oss::PointerTC<ds::GraphDataSetWinC> pixels) {
    if (!pixels) return nullptr;
    if (!setDomain(pixels->getDomain())) return nullptr;
    oss::PointerTC<ds::FloatDataSetC> points(new (std::nothrow) ds::FloatDataSetC());
    if (!points) return nullptr;

    unsigned int count = 0;
    POINT const *path = pixels->getPixelPoints(count);
    ds::FloatPointC *last = nullptr;
    double dy = 0;
    double dyPrev = 0; // the last non-zero difference: plateaus do not reset it
    for (unsigned int i = 0; i < count; ++i) {
        int32_t c = path[i].x;
        int32_t rowFromBottom = minus32(minus32(pixelRows, path[i].y), 1);
        // Only the right and top sides are tested: pixels left of or below the
        // grid become points outside the window.
        if (!(c < int32_t(pixelColumns) && rowFromBottom < int32_t(pixelRows))) continue;
        double X = double(c) * xStep + leftEdge + xHalfStep;
        double Y = double(rowFromBottom) * yStep + bottomEdge + yHalfStep;
        unsigned short marks = 0;
        // One-sided, no absolute value: every point at or left of x = xHalfStep
        // counts as on the y-axis, every point at or below y = yHalfStep as on
        // the x-axis. Kept so.
        if (X <= xHalfStep) marks |= ds::FloatPointC::Y_INTERCEPT;
        if (Y <= yHalfStep) marks |= ds::FloatPointC::X_INTERCEPT;
        if (last) dy = Y - last->getY();
        if ((dy > 0 && dyPrev < 0) || (dy < 0 && dyPrev > 0)) {
            if (last) last->addMark(ds::FloatPointC::TURNING_POINT);
        }
        ds::FloatPointC *point = new (std::nothrow) ds::FloatPointC(X, Y, marks);
        points->addPoint(point);
        // addPoint frees a point it could not store: keep only a stored one.
        if (point && !points->getPoints().empty() && points->getPoints().back() == point) last = point;
        if (dy != 0) dyPrev = dy;
    }
    return new (std::nothrow) rel::SketchC(points);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#include "GridLines.h"

#include <cmath>

namespace evalgtool {

namespace {

int const minimumSpacing = 8;

double roundStep(double lo, double hi, int pixels) {
    double target = (hi - lo) / double(pixels - 1) * minimumSpacing;
    if (!(target > 0) || !std::isfinite(target)) return 0;
    double base = std::pow(10.0, std::floor(std::log10(target)));
    for (double m : {1.0, 2.0, 5.0, 10.0})
        if (m * base >= target) return m * base;
    return 10.0 * base;
}

template <class PixelOf>
std::vector<GridLine> lines(double lo, double hi, int pixels, PixelOf pixelOf) {
    std::vector<GridLine> out;
    double step = roundStep(lo, hi, pixels);
    if (!(step > 0) || !std::isfinite(step)) return out;
    double first = std::ceil(lo / step);
    double last = std::floor(hi / step);
    // At most one line per eight pixels fits; the bound also ends the loop
    // where first + i stops changing in huge windows.
    for (int i = 0; i <= pixels && first + i <= last; ++i) {
        double value = (first + i) * step;
        int pixel = 0;
        if (pixelOf(value, pixel)) out.push_back(GridLine{pixel, value, first + i == 0, step, first + i});
    }
    return out;
}

} // namespace

std::vector<GridLine> verticalGridLines(Window const &w) {
    return lines(w.xMin, w.xMax, w.columns, [&w](double v, int &p) { return columnOf(w, v, p); });
}

std::vector<GridLine> horizontalGridLines(Window const &w) {
    return lines(w.yMin, w.yMax, w.rows, [&w](double v, int &p) { return screenRowOf(w, v, p); });
}

} // namespace evalgtool

#ifndef EVALG_TOOL_GRIDLINES_H
#define EVALG_TOOL_GRIDLINES_H

#include <vector>

#include "Window.h"

namespace evalgtool {

// A grid line at a round value, and the pixel column (or screen row) it
// falls on; the line at 0 is the axis.
struct GridLine {
    int pixel;
    double value;
    bool axis;
    double step;     // between neighbouring lines
    double multiple; // value / step, a whole number
};

// Lines at multiples of the smallest of 1, 2 and 5 times a power of ten that
// leaves at least eight pixels between them: unit lines on the default window.
std::vector<GridLine> verticalGridLines(Window const &w);
std::vector<GridLine> horizontalGridLines(Window const &w);

} // namespace evalgtool

#endif

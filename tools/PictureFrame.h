#ifndef EVALG_TOOL_PICTUREFRAME_H
#define EVALG_TOOL_PICTUREFRAME_H

#include <string>
#include <vector>

#include "GridLines.h"
#include "Picture.h"

namespace evalgtool {

// A grid value as the axes print it: as few characters as tell it among
// multiples of step, fixed unless an exponent is two characters shorter
// ("-5", "0.5", "0.002", "1e-4", "1e6", "2.5e-7").
std::string axisNumber(double value, double step);

// A number at a grid line: the line's pixel (column or screen row), where the
// text starts along the edge in picture pixels, and the text.
struct AxisLabel {
    int pixel;
    int at;
    std::string text;
};

// The picture around the window, in picture pixels (the window's pixels
// times the scale), shared by PNG and SVG. The window keeps its place at the
// top left. Unless the axes are off, a strip on its right holds the numbers
// of the horizontal grid lines and one below it those of the vertical lines,
// each with a tick at its line; under them the title, then for several
// relations a legend line each.
struct PictureFrame {
    int scale;
    int font;       // picture pixels per font pixel
    int charWidth;  // advance of one character
    int lineHeight; // of a title or legend line
    int margin;
    int tick;       // length of a tick
    int plotWidth, plotHeight;
    int rightStrip, bottomStrip; // 0 without axes
    std::vector<AxisLabel> xLabels; // along the bottom, left to right
    std::vector<AxisLabel> yLabels; // along the right, top to bottom
    int textTop;                    // where the title (or the first legend line) starts
    bool title;
    std::size_t legend; // lines of legend
    int width, height;
};

PictureFrame frameOf(Picture const &picture, int scale);

} // namespace evalgtool

#endif

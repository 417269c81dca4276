#ifndef EVALG_TOOL_PLOTFORMATS_H
#define EVALG_TOOL_PLOTFORMATS_H

#include <nlohmann/json.hpp>
#include <string>

#include "Output.h"
#include "Picture.h"

namespace evalgtool {

// The parameters as one JSON object, numbers as numbers.
nlohmann::ordered_json parametersJson(std::vector<ParamValue> const &parameters);

// The window and, for each relation, its evaluator and every pixel point
// with its marker bits, exactly as the library returned them; a pixel-run
// drawing has instead every pixel of its runs as [column, row, proven].
// Written as it is made, one point a line.
void writePlotJson(Picture const &picture, ByteSink &out);
std::string plotJson(Picture const &picture);

// One line per pixel point: relation, kind, point, column, row, markers and
// its bits, proven; a pixel-run drawing gives one line per pixel, the run's
// ends carrying its markers, and proven 1 or 0 (blank for other points).
void writePlotCsv(Picture const &picture, ByteSink &out);
std::string plotCsv(Picture const &picture);

// One polyline per visible stretch, clipped to the grid, over the grid and
// axes, and one rect per pixel run; with the numbers, title and legend laid
// out as in PNG. The drawing is scale times the pixel size. smooth rounds
// each stretch's pixel staircase off into a polyline near its pixel centres.
std::string plotSvg(Picture const &picture, int scale, bool smooth = false);

// The picture in braille characters (2x4 dots each), axes included, under
// the title and over a line for the window and one per relation; colour adds
// terminal colours. A picture more than twice width pixels wide is shrunk to
// width characters, the same factor both ways: each dot shows the strongest
// pixel of the block it covers.
std::string plotText(Picture const &picture, bool colour, int width);

// The window pixel for pixel, each pixel scale x scale; right of it and below
// it the grid's numbers with ticks (unless the axes are off), under them the
// title and, for several relations, a legend of colours and labels.
std::string plotPng(Picture const &picture, int scale);

struct PlotStyle {
    int scale = 4;       // PNG and SVG
    bool smooth = false; // SVG
    bool colour = false; // text
    int width = 80;      // text
};

// The picture in the format to out; JSON and CSV as they are made.
void writePlot(Picture const &picture, Format format, PlotStyle const &style, ByteSink &out);

} // namespace evalgtool

#endif

#ifndef EVALG_TOOL_PLOTFORMATS_H
#define EVALG_TOOL_PLOTFORMATS_H

#include <nlohmann/json.hpp>
#include <string>

#include "Picture.h"

namespace evalgtool {

// The parameters as one JSON object, numbers as numbers.
nlohmann::ordered_json parametersJson(std::vector<ParamValue> const &parameters);

// The window and, for each relation, its evaluator and every pixel point
// with its marker bits, exactly as the library returned them.
std::string plotJson(Picture const &picture);

// One line per pixel point: relation, kind, point, column, row, markers.
std::string plotCsv(Picture const &picture);

// One polyline per visible stretch, clipped to the grid, over the grid and
// axes; the drawing is scale times the pixel size.
std::string plotSvg(Picture const &picture, int scale);

// The picture in braille characters (2x4 dots each), axes included, and a
// line per relation; colour adds terminal colours. A picture more than twice
// width pixels wide is shrunk to width characters, the same factor both ways:
// each dot shows the strongest pixel of the block it covers.
std::string plotText(Picture const &picture, bool colour, int width);

// The window pixel for pixel, each pixel scale x scale; below it the title
// and, for several relations, a legend of colours and labels.
std::string plotPng(Picture const &picture, int scale);

} // namespace evalgtool

#endif

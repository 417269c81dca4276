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

// The picture in braille characters (2x4 pixels each), axes included, and a
// line per relation; colour adds terminal colours.
std::string plotText(Picture const &picture, bool colour);

std::string plotPng(Picture const &picture, int scale);

} // namespace evalgtool

#endif

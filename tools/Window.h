#ifndef EVALG_TOOL_WINDOW_H
#define EVALG_TOOL_WINDOW_H

#include <string>

#include "collab/ds/GraphicalDomainC.h"
#include "collab/oss/PointerTC.h"

namespace evalgtool {

// A graph window: the ranges spanned by the outermost pixel centres and the
// size in pixels. The default is the handheld's screen, 161x101 pixels over
// [-8, 8] x [-5, 5], so one pixel is 0.1 each way.
struct Window {
    double xMin = -8, xMax = 8, yMin = -5, yMax = 5;
    int columns = 161, rows = 101;
};

// From the --window "XMIN,XMAX,YMIN,YMAX" and --size "MxN" texts; an empty text
// keeps the default. Throws UsageError on anything the library would reject.
Window parseWindow(std::string const &window, std::string const &size);

qelt::oss::PointerTC<qelt::mathapp::ds::GraphicalDomainC> makeDomain(Window const &w);

// The pixel column holding x and the screen row (0 at the top) holding y, in
// the library's mapping: column c covers [xMin - xStep/2 + c*xStep, ...).
// False when the value lies outside the grid.
bool columnOf(Window const &w, double x, int &column);
bool screenRowOf(Window const &w, double y, int &row);

} // namespace evalgtool

#endif

#ifndef EVALG_TOOL_COMMANDS_H
#define EVALG_TOOL_COMMANDS_H

#include <string>
#include <vector>

namespace evalgtool {

// The window options every drawing command shares.
struct WindowOptions {
    std::string window; // XMIN,XMAX,YMIN,YMAX
    std::string size;   // MxN
};

struct PlotOptions {
    std::vector<std::string> relation;               // RELATION, or KIND NAME=VALUE...
    std::vector<std::vector<std::string>> others;    // each --and
    std::string tRange, thetaRange;                  // MIN,MAX of typed curves' parameters
    WindowOptions window;
    std::string output, format, scale = "4";
    std::string width; // of the text picture, in characters
    std::string title; // written under a PNG or SVG picture, over a text one
    bool noAxes = false;
    bool smooth = false; // SVG stretches rounded off rather than pixel for pixel
};
void runPlot(PlotOptions const &o);

struct TableOptions {
    std::vector<std::string> relation;
    std::string xs, from, to, step;
    std::string output, format;
    std::string digits; // significant digits of the values; empty for all that tell the double
};
void runTable(TableOptions const &o);

struct SketchOptions {
    std::string file;
    WindowOptions window;
    std::string output, format;
};
void runSketchToPixels(SketchOptions const &o);
void runSketchFromPixels(SketchOptions const &o);

struct GalleryOptions {
    std::string folder = "gallery";
};
void runGallery(GalleryOptions const &o);

// Whether the picture fits the size the raster formats accept; throws
// UsageError naming the limit when it does not.
void checkPictureSize(long long columns, long long rows, long long scale);

} // namespace evalgtool

#endif

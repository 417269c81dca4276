#include <algorithm>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

#include "Commands.h"
#include "Errors.h"
#include "Kinds.h"
#include "Numbers.h"
#include "Output.h"
#include "PlotFormats.h"

namespace evalgtool {

namespace {

// Pixels a raster picture may have after scaling: far above any screen, and
// small enough that the image always fits in memory.
long long const maxPicturePixels = 1LL << 26;

// Characters of a text picture's line when no terminal says otherwise, and
// the most --width takes.
int const defaultTextWidth = 80;
int const maxTextWidth = 10000;

int terminalWidth() {
    struct winsize size {};
    if (::ioctl(1, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return std::min(int(size.ws_col), maxTextWidth);
    return defaultTextWidth;
}

} // namespace

void checkPictureSize(long long columns, long long rows, long long scale) {
    if (columns * scale * rows * scale > maxPicturePixels)
        throw UsageError("a " + std::to_string(columns * scale) + "x" + std::to_string(rows * scale) +
                         " picture is too large; at most " + std::to_string(maxPicturePixels) +
                         " pixels, so use a smaller --size or --scale");
}

void runPlot(PlotOptions const &o) {
    // Everything is checked before anything is drawn or written.
    CurveRanges ranges{o.tRange, o.thetaRange};
    std::vector<RelationRequest> requests{parseRelation(o.relation, ranges)};
    for (std::vector<std::string> const &words : o.others) requests.push_back(parseRelation(words, ranges));
    Window w = parseWindow(o.window.window, o.window.size);
    Format format = chooseFormat(o.format, o.output,
                                 {Format::Png, Format::Svg, Format::Json, Format::Csv, Format::Text}, Format::Text);
    int scale = int(parseInteger(o.scale, "--scale", 1, 64));
    if (format == Format::Png) checkPictureSize(w.columns, w.rows, scale);
    if (format == Format::Text) checkPictureSize(w.columns, w.rows, 1);
    bool toTerminal = isStandardOutput(o.output) && ::isatty(1);
    if (format == Format::Png && toTerminal)
        throw UsageError("a PNG picture is binary and standard output is a terminal; write it to a file with "
                         "-o FILE.png, or pipe it on");
    int width = o.width.empty() ? (toTerminal ? terminalWidth() : defaultTextWidth)
                                : int(parseInteger(o.width, "--width", 1, maxTextWidth));

    Picture picture;
    picture.window = w;
    picture.axes = !o.noAxes;
    picture.title = o.title;
    for (RelationRequest const &request : requests) picture.curves.push_back(drawRelation(request, w));

    PlotStyle style;
    style.scale = scale;
    style.smooth = o.smooth;
    style.colour = toTerminal && !std::getenv("NO_COLOR");
    style.width = width;
    OutputFile out(o.output);
    writePlot(picture, format, style, out);
    out.commit();
}

} // namespace evalgtool

#include "Render.h"

#include "GridLines.h"

namespace evalgtool {

namespace {

// every: 1 for every pixel, 2 for every other one, those whose column and
// row add up to an even number plus offset (a checkerboard, so that a region
// shades the pixels under it rather than hiding them, and two regions one
// after the other take turns).
void fillRuns(Image &image, std::vector<PixelRun> const &runs, std::uint8_t colour, int every, int offset) {
    for (PixelRun const &r : runs) {
        std::uint8_t shade = r.undecided ? undecidedShade(colour) : colour;
        // Clipped first, so a run reaching far outside costs nothing.
        if (r.row < 0 || r.row >= image.height() || r.last < 0 || r.first >= image.width()) continue;
        int first = r.first < 0 ? 0 : int(r.first), last = r.last >= image.width() ? image.width() - 1 : int(r.last);
        for (int x = first; x <= last; ++x)
            if ((x + int(r.row) + offset) % every == 0) image.set(x, int(r.row), shade);
    }
}

} // namespace

Image renderPicture(Picture const &picture) {
    Window const &w = picture.window;
    Image image(w.columns, w.rows, Background);
    std::vector<RunLayers> layers(picture.curves.size());
    for (std::size_t i = 0; i < picture.curves.size(); ++i)
        if (picture.curves[i].drawing.pixelRuns) {
            layers[i] = runLayers(rowRuns(picture.curves[i].drawing.points), w);
            fillRuns(image, layers[i].inside, curveColour(i), 2, int(i % 2));
        }
    if (picture.axes) {
        std::vector<GridLine> vertical = verticalGridLines(w), horizontal = horizontalGridLines(w);
        // Grid first and axes after, so an axis is never cut by a grid line.
        for (bool axes : {false, true}) {
            for (GridLine const &g : vertical)
                if (g.axis == axes) image.line(g.pixel, 0, g.pixel, w.rows - 1, axes ? AxisColour : GridColour);
            for (GridLine const &g : horizontal)
                if (g.axis == axes) image.line(0, g.pixel, w.columns - 1, g.pixel, axes ? AxisColour : GridColour);
        }
    }
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        std::uint8_t colour = curveColour(i);
        if (picture.curves[i].drawing.pixelRuns) {
            fillRuns(image, layers[i].edge, colour, 1, 0);
            continue;
        }
        for (Stroke const &s : picture.curves[i].drawing.strokes) {
            for (ShadedPiece const &piece : shadedPieces(s)) {
                std::uint8_t shade = piece.undecided ? undecidedShade(colour) : colour;
                std::vector<PixelPoint> const &p = piece.points;
                image.line(p[0].column, p[0].row, p[0].column, p[0].row, shade);
                for (std::size_t j = 1; j < p.size(); ++j)
                    image.line(p[j - 1].column, p[j - 1].row, p[j].column, p[j].row, shade);
            }
            // An undecided point shows light even where a decided segment ends on it.
            for (PixelPoint const &p : s)
                if (isUndecided(p)) image.set(p.column, p.row, undecidedShade(colour));
        }
    }
    return image;
}

} // namespace evalgtool

#include "Render.h"

#include "GridLines.h"

namespace evalgtool {

Image renderPicture(Picture const &picture) {
    Window const &w = picture.window;
    Image image(w.columns, w.rows, Background);
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

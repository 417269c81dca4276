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
            image.line(s[0].column, s[0].row, s[0].column, s[0].row, colour);
            for (std::size_t j = 1; j < s.size(); ++j)
                image.line(s[j - 1].column, s[j - 1].row, s[j].column, s[j].row, colour);
        }
    }
    return image;
}

} // namespace evalgtool

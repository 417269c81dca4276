#ifndef EVALG_TOOL_IMAGE_H
#define EVALG_TOOL_IMAGE_H

#include <cstdint>
#include <string>
#include <vector>

namespace evalgtool {

// Palette indices of the pictures: the fixed colours, then one colour per
// relation, then each relation colour's lighter shade for undecided pixels.
enum : std::uint8_t { Background = 0, GridColour = 1, AxisColour = 2, Ink = 3, FirstCurveColour = 4 };
int const curveColourCount = 12;
int const paletteSize = FirstCurveColour + 2 * curveColourCount;

struct Rgb {
    std::uint8_t r, g, b;
};
Rgb paletteColour(std::uint8_t index);
// "#1f77b4": the same colour for SVG and HTML.
std::string hexColour(std::uint8_t index);
// The colour of the i-th relation of a picture. Twelve colours, told apart
// in ordinary vision and when simulated for protanopia, deuteranopia and
// tritanopia; after twelve they repeat.
std::uint8_t curveColour(std::size_t i);
// The lighter shade of a relation colour, for pixels that are neither
// excluded nor proven (the UNDECIDED marker).
std::uint8_t undecidedShade(std::uint8_t curveColour);
bool isCurveColour(std::uint8_t index);
bool isUndecidedShade(std::uint8_t index);
// Which of two overlapping palette colours a shrunk picture shows: a
// relation over its undecided shade over the axes and labels over the grid.
int prominence(std::uint8_t index);

// Calls visit(x, y) for every pixel of the straight line from one pixel to
// the other, both ends included, in order (Bresenham). 64-bit error terms:
// the ends may lie anywhere a 32-bit point can.
template <class Visit>
void linePixels(long long x0, long long y0, long long x1, long long y1, Visit visit) {
    long long dx = x1 > x0 ? x1 - x0 : x0 - x1, dy = -(y1 > y0 ? y1 - y0 : y0 - y1);
    long long sx = x0 < x1 ? 1 : -1, sy = y0 < y1 ? 1 : -1;
    long long err = dx + dy, x = x0, y = y0;
    while (true) {
        visit(x, y);
        if (x == x1 && y == y1) break;
        long long e2 = 2 * err;
        if (e2 >= dy) err += dy, x += sx;
        if (e2 <= dx) err += dx, y += sy;
    }
}

// A paletted picture, one byte per pixel, row 0 at the top. Drawing outside
// it is clipped.
class Image {
public:
    Image(int width, int height, std::uint8_t fill);
    int width() const { return width_; }
    int height() const { return height_; }
    std::uint8_t at(int x, int y) const { return pixels_[std::size_t(y) * std::size_t(width_) + std::size_t(x)]; }
    void set(int x, int y, std::uint8_t colour);
    // Every pixel of the straight line from one pixel to the other, both ends
    // included (Bresenham).
    void line(int x0, int y0, int x1, int y1, std::uint8_t colour);
    // Copies source enlarged by scale (nearest neighbour) with its top left
    // corner at (x, y).
    void paste(Image const &source, int x, int y, int scale);
    // Draws text in the 5x8 font, each font pixel scale x scale, top left at
    // (x, y); characters are six font pixels apart.
    void text(int x, int y, std::string const &s, std::uint8_t colour, int scale);

private:
    int width_;
    int height_;
    std::vector<std::uint8_t> pixels_;
};

} // namespace evalgtool

#endif

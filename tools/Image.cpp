#include "Image.h"

#include <cstdio>
#include <cstdlib>

#include "Font.h"

namespace evalgtool {

namespace {

Rgb const fixedColours[FirstCurveColour] = {
    {255, 255, 255}, // background
    {228, 228, 228}, // light grid
    {120, 120, 120}, // axes
    {20, 20, 20},    // labels
};

// Chosen by a search for the largest smallest CIELAB distance between any
// two, and from the axes, in ordinary vision and under the Machado et al.
// (2009) simulations of the three dichromacies; the tests check that
// distance. Each also keeps L* between 35 and 68, dark enough on white and
// light enough to lighten.
Rgb const relationColours[curveColourCount] = {
    {0x00, 0x77, 0x99}, {0xff, 0x00, 0x00}, {0x99, 0x44, 0xff}, {0x88, 0x44, 0x44},
    {0x88, 0xaa, 0x88}, {0xcc, 0x99, 0x55}, {0x99, 0x33, 0xbb}, {0xbb, 0x88, 0xff},
    {0x66, 0x00, 0xff}, {0x33, 0xaa, 0xcc}, {0x99, 0x33, 0x22}, {0xbb, 0x66, 0x55},
};

// Undecided pixels: the relation's colour taken most of the way to white,
// still darker than the grid.
std::uint8_t lighten(std::uint8_t c) { return std::uint8_t(c + (255 - c) * 11 / 20); }

} // namespace

Rgb paletteColour(std::uint8_t index) {
    if (index < FirstCurveColour) return fixedColours[index];
    if (index < FirstCurveColour + curveColourCount) return relationColours[index - FirstCurveColour];
    if (index < paletteSize) {
        Rgb c = relationColours[index - FirstCurveColour - curveColourCount];
        return Rgb{lighten(c.r), lighten(c.g), lighten(c.b)};
    }
    return fixedColours[Ink];
}

std::string hexColour(std::uint8_t index) {
    Rgb c = paletteColour(index);
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", c.r, c.g, c.b);
    return buffer;
}

std::uint8_t curveColour(std::size_t i) { return std::uint8_t(FirstCurveColour + i % curveColourCount); }

std::uint8_t undecidedShade(std::uint8_t colour) {
    return isCurveColour(colour) ? std::uint8_t(colour + curveColourCount) : colour;
}

bool isCurveColour(std::uint8_t index) {
    return index >= FirstCurveColour && index < FirstCurveColour + curveColourCount;
}

bool isUndecidedShade(std::uint8_t index) {
    return index >= FirstCurveColour + curveColourCount && index < paletteSize;
}

int prominence(std::uint8_t index) {
    if (isCurveColour(index)) return 4;
    if (isUndecidedShade(index)) return 3;
    if (index == AxisColour || index == Ink) return 2;
    return index == GridColour ? 1 : 0;
}

Image::Image(int width, int height, std::uint8_t fill)
    : width_(width), height_(height), pixels_(std::size_t(width) * std::size_t(height), fill) {}

void Image::set(int x, int y, std::uint8_t colour) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
    pixels_[std::size_t(y) * std::size_t(width_) + std::size_t(x)] = colour;
}

void Image::line(int x0, int y0, int x1, int y1, std::uint8_t colour) {
    linePixels(x0, y0, x1, y1, [&](long long x, long long y) {
        if (x >= 0 && y >= 0 && x < width_ && y < height_) set(int(x), int(y), colour);
    });
}

void Image::paste(Image const &source, int x, int y, int scale) {
    for (int sy = 0; sy < source.height(); ++sy)
        for (int sx = 0; sx < source.width(); ++sx)
            for (int j = 0; j < scale; ++j)
                for (int i = 0; i < scale; ++i) set(x + sx * scale + i, y + sy * scale + j, source.at(sx, sy));
}

void Image::text(int x, int y, std::string const &s, std::uint8_t colour, int scale) {
    for (std::size_t n = 0; n < s.size(); ++n) {
        int left = x + int(n) * (glyphWidth + 1) * scale;
        if (left >= width_) break;
        for (int gy = 0; gy < glyphHeight; ++gy)
            for (int gx = 0; gx < glyphWidth; ++gx)
                if (glyphPixel(s[n], gx, gy))
                    for (int j = 0; j < scale; ++j)
                        for (int i = 0; i < scale; ++i) set(left + gx * scale + i, y + gy * scale + j, colour);
    }
}

} // namespace evalgtool

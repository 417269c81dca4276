#include "Image.h"

#include <cstdio>
#include <cstdlib>

#include "Font.h"

namespace evalgtool {

namespace {

Rgb const palette[FirstCurveColour + curveColourCount] = {
    {255, 255, 255}, // background
    {228, 228, 228}, // light grid
    {120, 120, 120}, // axes
    {20, 20, 20},    // labels
    {31, 119, 180},  // blue
    {214, 39, 40},   // red
    {44, 160, 44},   // green
    {255, 127, 14},  // orange
    {148, 103, 189}, // purple
    {23, 170, 190},  // teal
    {140, 86, 75},   // brown
    {227, 80, 180},  // pink
};

} // namespace

Rgb paletteColour(std::uint8_t index) {
    return index < FirstCurveColour + curveColourCount ? palette[index] : palette[Ink];
}

std::string hexColour(std::uint8_t index) {
    Rgb c = paletteColour(index);
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", c.r, c.g, c.b);
    return buffer;
}

std::uint8_t curveColour(std::size_t i) { return std::uint8_t(FirstCurveColour + i % curveColourCount); }

Image::Image(int width, int height, std::uint8_t fill)
    : width_(width), height_(height), pixels_(std::size_t(width) * std::size_t(height), fill) {}

void Image::set(int x, int y, std::uint8_t colour) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
    pixels_[std::size_t(y) * std::size_t(width_) + std::size_t(x)] = colour;
}

void Image::line(int x0, int y0, int x1, int y1, std::uint8_t colour) {
    // 64-bit error terms: the ends may lie anywhere a 32-bit point can.
    long long dx = std::llabs((long long)x1 - x0), dy = -std::llabs((long long)y1 - y0);
    long long sx = x0 < x1 ? 1 : -1, sy = y0 < y1 ? 1 : -1;
    long long err = dx + dy, x = x0, y = y0;
    while (true) {
        if (x >= 0 && y >= 0 && x < width_ && y < height_) set(int(x), int(y), colour);
        if (x == x1 && y == y1) break;
        long long e2 = 2 * err;
        if (e2 >= dy) err += dy, x += sx;
        if (e2 <= dx) err += dx, y += sy;
    }
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

// What surrounds the window in PNG, SVG and text pictures: the grid's numbers
// and ticks, the title and the legend; and the smooth SVG.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <sstream>

#include "ToolRun.h"
#include "tools/PictureFrame.h"
#include "tools/PlotFormats.h"

namespace {

using namespace evalgtool;
using namespace tooltest;

struct NumberCase {
    double value, step;
    char const *text;
};

TEST(AxisNumbers, ShortAndRound) {
    NumberCase const cases[] = {
        {-5, 1, "-5"},         {0.5, 0.5, "0.5"},     {1e6, 1e6, "1e6"},         {0, 1, "0"},
        {-0.0, 2, "0"},        {100, 10, "100"},      {0.1 + 0.2, 0.1, "0.3"},   {-1500, 500, "-1500"},
        {2.5e-7, 5e-8, "2.5e-7"}, {1.2e21, 1e20, "1.2e21"}, {-4e-300, 2e-300, "-4e-300"}, {12, 2, "12"},
        {0.0001, 0.0001, "1e-4"}, {0.002, 0.001, "0.002"}, {3e15, 1e15, "3e15"},
    };
    for (NumberCase const &c : cases) EXPECT_EQ(axisNumber(c.value, c.step), c.text) << c.value << " " << c.step;
}

struct FrameCase {
    double xMin, xMax, yMin, yMax;
    int columns, rows, scale;
};

TEST(AxisNumbers, NeverOverlapAndStayInThePicture) {
    FrameCase const cases[] = {
        {-8, 8, -5, 5, 161, 101, 4},         {-8, 8, -5, 5, 161, 101, 1},     {-8e6, 8e6, -5e6, 5e6, 161, 101, 1},
        {-0.003, 0.002, -1e-5, 3e-5, 300, 200, 2}, {1e15, 1e15 + 64, 0, 1, 40, 30, 1}, {-1e300, 1e300, -1, 1, 200, 9, 3},
        {-100, 100, -100, 100, 2, 2, 1},     {-3, 3, -3, 3, 1000, 1000, 1},
    };
    for (FrameCase const &c : cases) {
        Picture p;
        p.window = {c.xMin, c.xMax, c.yMin, c.yMax, c.columns, c.rows};
        PictureFrame f = frameOf(p, c.scale);
        std::string at = std::to_string(c.xMin) + " " + std::to_string(c.columns);
        EXPECT_EQ(f.width, f.plotWidth + f.rightStrip) << at;
        EXPECT_GT(f.rightStrip, 0) << at;
        for (std::size_t i = 0; i < f.xLabels.size(); ++i) {
            AxisLabel const &l = f.xLabels[i];
            int width = int(l.text.size()) * f.charWidth;
            EXPECT_GE(l.at, 0) << at;
            EXPECT_LE(l.at + width - f.font, f.plotWidth) << at << " " << l.text;
            if (i) {
                EXPECT_GT(l.at, f.xLabels[i - 1].at + int(f.xLabels[i - 1].text.size()) * f.charWidth) << at;
            }
        }
        for (std::size_t i = 0; i < f.yLabels.size(); ++i) {
            EXPECT_GE(f.yLabels[i].at, 0) << at;
            EXPECT_LE(f.yLabels[i].at + 7 * f.font, f.plotHeight) << at;
            if (i) {
                EXPECT_GT(f.yLabels[i].at, f.yLabels[i - 1].at + 7 * f.font) << at;
            }
            EXPECT_LE(f.plotWidth + f.tick + int(f.yLabels[i].text.size()) * f.charWidth, f.width) << at;
        }
    }
    // Without axes nothing surrounds the window. (The default window's
    // numbers are checked through the SVG below.)
    Picture p;
    p.axes = false;
    PictureFrame f = frameOf(p, 4);
    EXPECT_TRUE(f.xLabels.empty() && f.yLabels.empty());
    EXPECT_EQ(f.width, 161 * 4);
    EXPECT_EQ(f.height, 101 * 4);
}

bool isInk(Rgb p) { return p.r < 100 && p.g < 100 && p.b < 100; }

TEST(PictureFrame, PngHasNumbersRightAndBelowTheTitleUnderAndTheWindowKeepsItsPixels) {
    Folder f;
    ASSERT_EQ(f.evalg({"plot", "line", "--scale=1", "--no-axes", "-o", "bare.png"}).status, 0);
    ASSERT_EQ(f.evalg({"plot", "line", "--scale=1", "-o", "axes.png"}).status, 0);
    ASSERT_EQ(f.evalg({"plot", "line", "--scale=1", "--no-axes", "--title", "A line", "-o", "titled.png"}).status, 0);
    Png bare = readPng(f.file("bare.png")), axes = readPng(f.file("axes.png")), titled = readPng(f.file("titled.png"));
    EXPECT_EQ(bare.width, 161u);
    EXPECT_EQ(bare.height, 101u);
    ASSERT_GT(axes.width, 161u);
    ASSERT_GT(axes.height, 101u);
    std::size_t right = 0, below = 0;
    for (unsigned y = 0; y < axes.height; ++y)
        for (unsigned x = 0; x < axes.width; ++x) {
            if (x < 161 && y < 101) {
                EXPECT_TRUE(bare.at(x, y) == axes.at(x, y) || !isInk(axes.at(x, y))) << x << "," << y;
                continue;
            }
            right += x >= 161 && isInk(axes.at(x, y));
            below += y >= 101 && isInk(axes.at(x, y));
        }
    EXPECT_GT(right, 11u * 5); // eleven numbers
    EXPECT_GT(below, 9u * 5);
    // A title alone adds rows under the window and leaves the window as it was.
    EXPECT_EQ(titled.width, 161u);
    ASSERT_GT(titled.height, 101u);
    EXPECT_EQ(std::vector<Rgb>(titled.pixels.begin(), titled.pixels.begin() + 161 * 101), bare.pixels);
    EXPECT_GT(std::count_if(titled.pixels.begin() + 161 * 101, titled.pixels.end(), isInk), 20); // the letters
}

TEST(PictureFrame, SvgAndTextHaveNumbersTitleAndLegend) {
    Folder f;
    ASSERT_EQ(f.evalg({"plot", "sin", "--and", "cos", "--title", "a <title>", "-o", "out.svg"}).status, 0);
    std::string svg = f.read("out.svg");
    std::vector<std::string> texts;
    for (std::size_t at = svg.find("\">", svg.find("<text")); at != std::string::npos;
         at = svg.find("<text", at), at = at == std::string::npos ? at : svg.find("\">", at)) {
        std::size_t end = svg.find("</text>", at);
        texts.push_back(svg.substr(at + 2, end - at - 2));
        at = end;
    }
    std::vector<std::string> expected{"-8", "-6", "-4", "-2", "0", "2", "4", "6", "8", "5", "4", "3",  "2",
                                      "1",  "0",  "-1", "-2", "-3", "-4", "-5", "a &lt;title&gt;", "sin", "cos"};
    EXPECT_EQ(texts, expected);
    EXPECT_NE(svg.find("<rect x=\"4\" y=\"" ), std::string::npos); // a legend swatch
    ASSERT_EQ(f.evalg({"plot", "sin", "--title", "waves", "--no-axes", "-o", "bare.svg"}).status, 0);
    EXPECT_EQ(quotedAfter(f.read("bare.svg"), "<svg xmlns=\"http://www.w3.org/2000/svg\" width=")[0], "644");
    EXPECT_EQ(f.read("bare.svg").find("<line"), std::string::npos);
    // Text: the title over the picture and a line per relation.
    Result r = f.evalg({"plot", "sin", "--and", "cos", "--title", "Two waves"});
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(r.out.substr(0, 10), "Two waves\n");
    EXPECT_NE(r.out.find("\nsin  (SinusoidalFunctionEvalC, "), std::string::npos);
    EXPECT_NE(r.out.find("\ncos  (SinusoidalFunctionEvalC, "), std::string::npos);
}

// Every vertex of a smooth polyline lies near the pixels the PNG draws, and
// the polylines have far fewer vertices than the pixel staircase.
TEST(SmoothSvg, FollowsThePixelsWithFewerVertices) {
    for (std::vector<std::string> relation :
         {std::vector<std::string>{"sin", "a=2", "b=3"}, {"circle", "r=3"}, {"expr", "f=tan(x)"}, {"quadratic", "a=4"}}) {
        Folder f;
        std::vector<std::string> args = with({"plot"}, relation);
        ASSERT_EQ(f.evalg(with(args, {"--no-axes", "--scale=1", "-o", "p.png"})).status, 0);
        ASSERT_EQ(f.evalg(with(args, {"-o", "exact.svg"})).status, 0);
        ASSERT_EQ(f.evalg(with(args, {"--smooth", "-o", "smooth.svg"})).status, 0);
        Png png = readPng(f.file("p.png"));
        auto vertices = [&](std::string const &file, bool check) {
            std::size_t n = 0;
            for (std::string const &line : quotedAfter(f.read(file), "<polyline points=")) {
                std::istringstream coords(line);
                char comma;
                for (double x, y; coords >> x >> comma >> y; ++n) {
                    if (!check) continue;
                    // A drawn pixel within a pixel and a half of the vertex.
                    bool near = false;
                    for (int dy = -2; dy <= 2 && !near; ++dy)
                        for (int dx = -2; dx <= 2 && !near; ++dx) {
                            int px = int(std::floor(x)) + dx, py = int(std::floor(y)) + dy;
                            near = px >= 0 && py >= 0 && px < 161 && py < 101 &&
                                   std::hypot(px + 0.5 - x, py + 0.5 - y) <= 1.5 &&
                                   !(png.at(unsigned(px), unsigned(py)) == Rgb{255, 255, 255});
                        }
                    EXPECT_TRUE(near) << relation[0] << " " << x << "," << y;
                }
            }
            return n;
        };
        std::size_t exact = vertices("exact.svg", false), smooth = vertices("smooth.svg", true);
        EXPECT_GT(smooth, 0u) << relation[0];
        EXPECT_LT(smooth, exact) << relation[0];
    }
}

} // namespace

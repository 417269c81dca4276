// The pictures' colours and the UNDECIDED marker, driven with data sets built
// by hand (no evaluator sets the marker yet).
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "collab/ds/PixelPointC.h"
#include "tools/Image.h"
#include "tools/PlotFormats.h"
#include "tools/Render.h"

namespace {

using namespace evalgtool;
using qelt::mathapp::ds::PixelPointC;

std::uint8_t const U = PixelPointC::UNDECIDED, F = PixelPointC::FIRST_VISIBLE, L = PixelPointC::LAST_VISIBLE;

// A 12x6 window with one relation: a decided run, then an undecided one.
Picture handMade() {
    Picture p;
    p.window.columns = 12;
    p.window.rows = 6;
    p.axes = false;
    Curve c;
    c.label = "by hand";
    c.kind = "expr";
    c.drawing.evaluator = "none";
    c.drawing.points = {{0, 1, F}, {3, 1, 0}, {6, 1, U}, {9, 1, U}, {11, 1, uint8_t(U | L)}, {5, 4, uint8_t(F | U | L)}};
    c.drawing.strokes = visibleStretches(c.drawing.points, p.window, false);
    p.curves.push_back(c);
    return p;
}

TEST(Undecided, DrawnInTheLighterShadeWherePointsAreUndecided) {
    Picture p = handMade();
    Image image = renderPicture(p);
    std::uint8_t full = curveColour(0), light = undecidedShade(full);
    ASSERT_NE(full, light);
    // Row 1: columns 0..5 decided (the segment 3 -> 6 has one decided end),
    // column 6 an undecided point, 7..11 between undecided points.
    for (int x = 0; x < 12; ++x) EXPECT_EQ(image.at(x, 1), x < 6 ? full : light) << x;
    EXPECT_EQ(image.at(5, 4), light); // a lone undecided point
    EXPECT_EQ(image.at(5, 3), Background);

    std::string csv = plotCsv(p);
    EXPECT_NE(csv.find("last_visible,undecided,proven\n"), std::string::npos);
    EXPECT_NE(csv.find("1,expr,5,5,4,7,1,1,1,\n"), std::string::npos) << csv;
    EXPECT_NE(csv.find("1,expr,1,3,1,0,0,0,0,\n"), std::string::npos) << csv;

    nlohmann::json doc = nlohmann::json::parse(plotJson(p));
    EXPECT_EQ(doc["markers"]["UNDECIDED"], 4);
    EXPECT_EQ(doc["relations"][0]["points"][5], nlohmann::json({5, 4, 7}));

    std::string svg = plotSvg(p, 1);
    std::string lightHex = hexColour(light);
    EXPECT_NE(svg.find("<polyline stroke=\"" + lightHex + "\" points=\"6.5,1.5 9.5,1.5 11.5,1.5\"/>"), std::string::npos)
        << svg;
    EXPECT_NE(svg.find("<polyline points=\"0.5,1.5 3.5,1.5 6.5,1.5\"/>"), std::string::npos) << svg;
    std::size_t rects = 0;
    for (std::size_t at = svg.find("<rect x="); at != std::string::npos; at = svg.find("<rect x=", at + 1)) ++rects;
    EXPECT_EQ(rects, 4u); // one per undecided point

    // The terminal dims the undecided cells and not the others.
    std::string text = plotText(p, true, 80);
    EXPECT_NE(text.find("\x1b[0m\x1b[2;38;5;"), std::string::npos);
    EXPECT_NE(text.find("\x1b[0m\x1b[38;5;"), std::string::npos);
}

// CIELAB of an sRGB colour, after an optional linear-RGB simulation matrix.
struct Lab {
    double l, a, b;
};

double linear(double c) {
    c /= 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

Lab lab(Rgb c, double const (&m)[3][3]) {
    double in[3] = {linear(c.r), linear(c.g), linear(c.b)}, v[3];
    for (int i = 0; i < 3; ++i) v[i] = std::clamp(m[i][0] * in[0] + m[i][1] * in[1] + m[i][2] * in[2], 0.0, 1.0);
    double X = 0.4124564 * v[0] + 0.3575761 * v[1] + 0.1804375 * v[2];
    double Y = 0.2126729 * v[0] + 0.7151522 * v[1] + 0.0721750 * v[2];
    double Z = 0.0193339 * v[0] + 0.1191920 * v[1] + 0.9503041 * v[2];
    auto f = [](double t) { return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116; };
    double fx = f(X / 0.95047), fy = f(Y), fz = f(Z / 1.08883);
    return Lab{116 * fy - 16, 500 * (fx - fy), 200 * (fy - fz)};
}

double distance(Lab p, Lab q) { return std::hypot(p.l - q.l, p.a - q.a, p.b - q.b); }

TEST(Palette, TwelveRelationColoursStayApartForColourBlindEyes) {
    // Machado, Oliveira and Fernandes (2009), severity 1, in linear RGB.
    double const visions[4][3][3] = {
        {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}},
        {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}},
        {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}},
    };
    ASSERT_EQ(curveColourCount, 12);
    for (auto const &m : visions) {
        for (int i = 0; i < curveColourCount; ++i) {
            Lab ci = lab(paletteColour(curveColour(i)), m);
            EXPECT_GE(distance(ci, lab(paletteColour(AxisColour), m)), 17.0) << i;
            EXPECT_GE(distance(ci, lab(paletteColour(Background), m)), 30.0) << i;
            for (int j = 0; j < i; ++j) EXPECT_GE(distance(ci, lab(paletteColour(curveColour(j)), m)), 17.0) << i << " " << j;
            // The undecided shade is lighter than its colour and darker than the grid.
            Lab shade = lab(paletteColour(undecidedShade(curveColour(i))), m);
            EXPECT_GT(shade.l, ci.l + 10) << i;
            EXPECT_LT(shade.l, lab(paletteColour(GridColour), m).l) << i;
        }
    }
    EXPECT_EQ(curveColour(12), curveColour(0));
}

} // namespace

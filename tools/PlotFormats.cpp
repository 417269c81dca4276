#include "PlotFormats.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "collab/ds/PixelPointC.h"
#include "Font.h"
#include "GridLines.h"
#include "Image.h"
#include "Numbers.h"
#include "Png.h"
#include "Render.h"

namespace evalgtool {

using qelt::mathapp::ds::PixelPointC;
using Json = nlohmann::ordered_json;

namespace {

} // namespace

Json parametersJson(std::vector<ParamValue> const &parameters) {
    Json out = Json::object();
    for (ParamValue const &p : parameters) {
        if (p.type == ParamValue::Text)
            out[p.name] = p.text;
        else if (p.type == ParamValue::Integer)
            out[p.name] = static_cast<long long>(p.number); // integral and in range: checked when parsed
        else
            out[p.name] = p.number;
    }
    return out;
}

namespace {

std::string xmlEscape(std::string const &s) {
    std::string out;
    for (char c : s) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        default: out += c;
        }
    }
    return out;
}

std::string csvField(std::string const &s) {
    if (s.find_first_of(",\"\n") == std::string::npos) return s;
    std::string out = "\"";
    for (char c : s) out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

// Braille dot bits of the pixel (x, y) inside a 2x4 cell.
unsigned brailleBit(int x, int y) {
    static unsigned const bits[4][2] = {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}};
    return bits[y][x];
}

std::string brailleChar(unsigned bits) {
    unsigned code = 0x2800 + bits; // three bytes of UTF-8
    std::string out;
    out += char(0xE0 | (code >> 12));
    out += char(0x80 | ((code >> 6) & 0x3F));
    out += char(0x80 | (code & 0x3F));
    return out;
}

// The terminal's 256-colour code nearest a palette colour; an undecided
// shade is its relation's colour, dimmed.
std::string ansiColour(std::uint8_t colour) {
    bool dim = isUndecidedShade(colour);
    Rgb c = paletteColour(dim ? std::uint8_t(colour - curveColourCount) : colour);
    auto level = [](std::uint8_t v) { return (int(v) * 5 + 127) / 255; };
    int code = 16 + 36 * level(c.r) + 6 * level(c.g) + level(c.b);
    return "\x1b[" + std::string(dim ? "2;" : "") + "38;5;" + std::to_string(code) + "m";
}

} // namespace

std::string plotJson(Picture const &picture) {
    Window const &w = picture.window;
    Json out;
    out["window"] = {{"xmin", w.xMin}, {"xmax", w.xMax}, {"ymin", w.yMin},
                     {"ymax", w.yMax}, {"columns", w.columns}, {"rows", w.rows}};
    out["markers"] = {{"FIRST_VISIBLE", PixelPointC::FIRST_VISIBLE},
                      {"LAST_VISIBLE", PixelPointC::LAST_VISIBLE},
                      {"UNDECIDED", PixelPointC::UNDECIDED}};
    out["relations"] = Json::array();
    for (Curve const &c : picture.curves) {
        Json points = Json::array();
        for (PixelPoint const &p : c.drawing.points) points.push_back({p.column, p.row, p.markers});
        out["relations"].push_back({{"label", c.label},
                                    {"kind", c.kind},
                                    {"parameters", parametersJson(c.parameters)},
                                    {"evaluator", c.drawing.evaluator},
                                    {"points", points}});
    }
    return out.dump(1) + "\n";
}

std::string plotCsv(Picture const &picture) {
    std::ostringstream out;
    out << "relation,kind,point,column,row,markers,first_visible,last_visible,undecided\n";
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        Curve const &c = picture.curves[i];
        for (std::size_t j = 0; j < c.drawing.points.size(); ++j) {
            PixelPoint const &p = c.drawing.points[j];
            out << i + 1 << ',' << csvField(c.kind) << ',' << j << ',' << p.column << ',' << p.row << ','
                << unsigned(p.markers) << ',' << ((p.markers & PixelPointC::FIRST_VISIBLE) ? 1 : 0) << ','
                << ((p.markers & PixelPointC::LAST_VISIBLE) ? 1 : 0) << ','
                << ((p.markers & PixelPointC::UNDECIDED) ? 1 : 0) << '\n';
        }
    }
    return out.str();
}

std::string plotSvg(Picture const &picture, int scale) {
    Window const &w = picture.window;
    std::ostringstream out;
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << long(w.columns) * scale << "\" height=\""
        << long(w.rows) * scale << "\" viewBox=\"0 0 " << w.columns << ' ' << w.rows << "\">\n"
        << "<rect width=\"" << w.columns << "\" height=\"" << w.rows << "\" fill=\"" << hexColour(Background)
        << "\"/>\n";
    if (picture.axes) {
        // Lines through pixel centres, as the PNG draws them.
        for (bool axes : {false, true}) {
            out << "<g stroke=\"" << hexColour(axes ? AxisColour : GridColour) << "\" stroke-width=\"1\">\n";
            for (GridLine const &g : verticalGridLines(w))
                if (g.axis == axes)
                    out << "<line x1=\"" << g.pixel + 0.5 << "\" y1=\"0\" x2=\"" << g.pixel + 0.5 << "\" y2=\""
                        << w.rows << "\"/>\n";
            for (GridLine const &g : horizontalGridLines(w))
                if (g.axis == axes)
                    out << "<line x1=\"0\" y1=\"" << g.pixel + 0.5 << "\" x2=\"" << w.columns << "\" y2=\""
                        << g.pixel + 0.5 << "\"/>\n";
            out << "</g>\n";
        }
    }
    out << "<clipPath id=\"grid\"><rect width=\"" << w.columns << "\" height=\"" << w.rows
        << "\"/></clipPath>\n<g clip-path=\"url(#grid)\" fill=\"none\" stroke-width=\"1\" "
           "stroke-linecap=\"square\" stroke-linejoin=\"round\">\n";
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        Curve const &c = picture.curves[i];
        out << "<g stroke=\"" << hexColour(curveColour(i)) << "\"><title>" << xmlEscape(c.label) << " ("
            << c.drawing.evaluator << ")</title>\n";
        std::string light = hexColour(undecidedShade(curveColour(i)));
        for (Stroke const &stroke : c.drawing.strokes) {
            for (ShadedPiece const &piece : shadedPieces(stroke)) {
                std::vector<PixelPoint> const &s = piece.points;
                out << "<polyline " << (piece.undecided ? "stroke=\"" + light + "\" " : "") << "points=\"";
                for (std::size_t j = 0; j < s.size(); ++j)
                    out << (j ? " " : "") << s[j].column + 0.5 << ',' << s[j].row + 0.5;
                // A lone point repeated: a zero-length line with square caps shows as its pixel.
                if (s.size() == 1) out << ' ' << s[0].column + 0.5 << ',' << s[0].row + 0.5;
                out << "\"/>\n";
            }
            // An undecided point shows light even where a decided segment ends on it.
            for (PixelPoint const &p : stroke)
                if (isUndecided(p))
                    out << "<rect x=\"" << p.column << "\" y=\"" << p.row << "\" width=\"1\" height=\"1\" fill=\""
                        << light << "\" stroke=\"none\"/>\n";
        }
        out << "</g>\n";
    }
    out << "</g>\n</svg>\n";
    return out.str();
}

std::string plotText(Picture const &picture, bool colour, int width) {
    Image image = renderPicture(picture);
    // Dots across and down: the picture shrunk by one factor both ways when
    // it is wider than the line.
    long long const W = image.width(), H = image.height();
    long long dotsX = std::min(W, 2LL * width);
    long long dotsY = dotsX == W ? H : std::max(1LL, (H * dotsX + W - 1) / W);
    auto strongest = [&](long long dx, long long dy) {
        long long x0 = dx * W / dotsX, x1 = std::max(x0 + 1, (dx + 1) * W / dotsX);
        long long y0 = dy * H / dotsY, y1 = std::max(y0 + 1, (dy + 1) * H / dotsY);
        std::uint8_t best = Background;
        for (long long y = y0; y < y1 && y < H; ++y)
            for (long long x = x0; x < x1 && x < W; ++x)
                if (prominence(image.at(int(x), int(y))) > prominence(best)) best = image.at(int(x), int(y));
        return best;
    };
    std::string out;
    for (long long cy = 0; cy < dotsY; cy += 4) {
        std::uint8_t current = Background;
        for (long long cx = 0; cx < dotsX; cx += 2) {
            unsigned bits = 0;
            std::uint8_t cellColour = Background;
            for (int y = 0; y < 4 && cy + y < dotsY; ++y)
                for (int x = 0; x < 2 && cx + x < dotsX; ++x) {
                    std::uint8_t p = strongest(cx + x, cy + y);
                    if (prominence(p) <= prominence(GridColour)) continue; // the grid is too busy in dots
                    bits |= brailleBit(x, y);
                    if (prominence(p) > prominence(cellColour)) cellColour = p;
                }
            if (prominence(cellColour) < prominence(undecidedShade(FirstCurveColour))) cellColour = Background;
            if (colour && cellColour != current) {
                out += cellColour == Background ? std::string("\x1b[0m") : "\x1b[0m" + ansiColour(cellColour);
                current = cellColour;
            }
            out += brailleChar(bits);
        }
        if (colour && current != Background) out += "\x1b[0m";
        out += '\n';
    }
    Window const &w = picture.window;
    out += "x " + formatNumber(w.xMin) + " .. " + formatNumber(w.xMax) + ", y " + formatNumber(w.yMin) + " .. " +
           formatNumber(w.yMax) + ", " + std::to_string(w.columns) + "x" + std::to_string(w.rows) + " pixels\n";
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        Curve const &c = picture.curves[i];
        std::string line = c.label + "  (" + c.drawing.evaluator + ", " + std::to_string(c.drawing.points.size()) +
                           " points)";
        if (colour) line = ansiColour(curveColour(i)) + line + "\x1b[0m";
        out += line + "\n";
    }
    return out;
}

std::string plotPng(Picture const &picture, int scale) {
    Image plot = renderPicture(picture);
    std::size_t legend = picture.curves.size() > 1 ? picture.curves.size() : 0;
    std::size_t lines = legend + (picture.title.empty() ? 0 : 1);
    if (lines == 0) return encodePng(plot, scale);
    // Below the window, so the window's pixels keep their place: the title,
    // then a swatch and the label of each relation.
    int font = scale >= 3 ? 2 : 1, lineHeight = (glyphHeight + 3) * font, margin = 4;
    int width = plot.width() * scale, top = plot.height() * scale;
    Image out(width, top + margin + int(lines) * lineHeight, Background);
    out.paste(plot, 0, 0, scale);
    int y = top + margin;
    if (!picture.title.empty()) {
        out.text(margin, y, picture.title, Ink, font);
        y += lineHeight;
    }
    for (std::size_t i = 0; i < legend; ++i) {
        for (int t = 0; t < 2 * font; ++t)
            out.line(margin, y + 3 * font + t, margin + 12 * font, y + 3 * font + t, curveColour(i));
        out.text(margin + 16 * font, y, picture.curves[i].label, Ink, font);
        y += lineHeight;
    }
    return encodePng(out, 1);
}

} // namespace evalgtool

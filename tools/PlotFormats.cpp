#include "PlotFormats.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "collab/ds/PixelPointC.h"
#include "Font.h"
#include "GridLines.h"
#include "Image.h"
#include "Numbers.h"
#include "PictureFrame.h"
#include "Png.h"
#include "Render.h"

namespace evalgtool {

using qelt::mathapp::ds::PixelPointC;
using Json = nlohmann::ordered_json;

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

namespace {

// "[12,-3,1]": the JSON of three integers, written without a JSON value.
void writeTriple(ByteSink &out, long long a, long long b, long long c, bool comma) {
    char buffer[80];
    int n = std::snprintf(buffer, sizeof buffer, "%s\n   [%lld,%lld,%lld]", comma ? "," : "", a, b, c);
    out.write(buffer, std::size_t(n));
}

} // namespace

void writePlotJson(Picture const &picture, ByteSink &out) {
    Window const &w = picture.window;
    // Everything but the points is made before the first byte goes out, so
    // a label that cannot be written as JSON fails with nothing written.
    Json window = {{"xmin", w.xMin}, {"xmax", w.xMax}, {"ymin", w.yMin},
                   {"ymax", w.yMax}, {"columns", w.columns}, {"rows", w.rows}};
    Json markers = {{"FIRST_VISIBLE", PixelPointC::FIRST_VISIBLE},
                    {"LAST_VISIBLE", PixelPointC::LAST_VISIBLE},
                    {"UNDECIDED", PixelPointC::UNDECIDED}};
    std::vector<std::string> heads;
    for (Curve const &c : picture.curves)
        heads.push_back("\n  {\n   \"label\": " + Json(c.label).dump() + ",\n   \"kind\": " + Json(c.kind).dump() +
                        ",\n   \"parameters\": " + parametersJson(c.parameters).dump() +
                        ",\n   \"evaluator\": " + Json(c.drawing.evaluator).dump() + ",\n   \"" +
                        (c.drawing.pixelRuns ? "pixels" : "points") + "\": [");
    out.write("{\n \"window\": " + window.dump() + ",\n \"markers\": " + markers.dump() + ",\n \"relations\": [");
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        Drawing const &d = picture.curves[i].drawing;
        out.write((i ? "," : "") + heads[i]);
        bool comma = false;
        if (d.pixelRuns) {
            for (PixelRun const &r : rowRuns(d.points))
                for (long long x = r.first; x <= r.last; ++x, comma = true)
                    writeTriple(out, x, r.row, r.undecided ? 0 : 1, comma);
        } else {
            for (PixelPoint const &p : d.points) {
                writeTriple(out, p.column, p.row, p.markers, comma);
                comma = true;
            }
        }
        out.write(comma ? "\n   ]\n  }" : "]\n  }");
    }
    out.write(picture.curves.empty() ? "]\n}\n" : "\n ]\n}\n");
}

std::string plotJson(Picture const &picture) {
    StringSink out;
    writePlotJson(picture, out);
    return out.text;
}

namespace {

void writeCsvLine(ByteSink &out, std::size_t relation, std::string const &kind, std::uint64_t n, long long column,
                  long long row, unsigned markers, char const *proven) {
    char buffer[160];
    int length = std::snprintf(buffer, sizeof buffer, ",%llu,%lld,%lld,%u,%d,%d,%d,%s\n", (unsigned long long)n,
                               column, row, markers, (markers & PixelPointC::FIRST_VISIBLE) ? 1 : 0,
                               (markers & PixelPointC::LAST_VISIBLE) ? 1 : 0, (markers & PixelPointC::UNDECIDED) ? 1 : 0,
                               proven);
    out.write(std::to_string(relation) + ',' + kind);
    out.write(buffer, std::size_t(length));
}

} // namespace

void writePlotCsv(Picture const &picture, ByteSink &out) {
    out.write("relation,kind,point,column,row,markers,first_visible,last_visible,undecided,proven\n");
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        Curve const &c = picture.curves[i];
        std::string kind = csvField(c.kind);
        std::uint64_t n = 0;
        if (!c.drawing.pixelRuns) {
            for (PixelPoint const &p : c.drawing.points) writeCsvLine(out, i + 1, kind, n++, p.column, p.row, p.markers, "");
            continue;
        }
        // Every pixel of a run, its ends carrying the run's markers.
        for (PixelRun const &r : rowRuns(c.drawing.points))
            for (long long x = r.first; x <= r.last; ++x) {
                unsigned markers = (r.undecided ? PixelPointC::UNDECIDED : 0) |
                                   (x == r.first ? PixelPointC::FIRST_VISIBLE : 0) |
                                   (x == r.last ? PixelPointC::LAST_VISIBLE : 0);
                writeCsvLine(out, i + 1, kind, n++, x, r.row, markers, r.undecided ? "0" : "1");
            }
    }
}

std::string plotCsv(Picture const &picture) {
    StringSink out;
    writePlotCsv(picture, out);
    return out.text;
}

namespace {

struct Point2 {
    double x, y;
};

// The pixel centres a stretch passes through, one pixel apart, as the PNG
// draws them.
std::vector<Point2> pixelChain(std::vector<PixelPoint> const &points) {
    std::vector<Point2> out;
    auto add = [&](long long x, long long y) {
        Point2 p{double(x) + 0.5, double(y) + 0.5};
        if (out.empty() || out.back().x != p.x || out.back().y != p.y) out.push_back(p);
    };
    if (!points.empty()) add(points[0].column, points[0].row);
    for (std::size_t j = 1; j < points.size(); ++j)
        linePixels(points[j - 1].column, points[j - 1].row, points[j].column, points[j].row, add);
    return out;
}

// The chain with its staircase rounded off. Each step of a staircase (the
// pixels of one column, or of one row, in a row) is replaced by its middle,
// through which the curve it rasterises passes; the ends stay. The middles
// are then each averaged with their neighbours, and every point dropped that
// lies within a fifth of a pixel of the line between the ones kept
// (Douglas-Peucker).
std::vector<Point2> smoothed(std::vector<Point2> const &chain) {
    if (chain.size() < 3) return chain;
    std::vector<Point2> middles{chain.front()};
    for (std::size_t i = 0; i < chain.size();) {
        std::size_t j = i + 1;
        bool column = j < chain.size() && chain[j].x == chain[i].x, row = j < chain.size() && chain[j].y == chain[i].y;
        while (j < chain.size() && ((column && chain[j].x == chain[i].x) || (row && chain[j].y == chain[i].y))) ++j;
        double x = 0, y = 0;
        for (std::size_t k = i; k < j; ++k) x += chain[k].x, y += chain[k].y;
        middles.push_back(Point2{x / double(j - i), y / double(j - i)});
        i = j;
    }
    middles.push_back(chain.back());
    std::size_t const n = middles.size();
    std::vector<Point2> mean(middles);
    for (std::size_t i = 1; i + 1 < n; ++i)
        mean[i] = Point2{(middles[i - 1].x + 2 * middles[i].x + middles[i + 1].x) / 4,
                         (middles[i - 1].y + 2 * middles[i].y + middles[i + 1].y) / 4};
    std::vector<bool> keep(n, false);
    keep[0] = keep[n - 1] = true;
    std::vector<std::pair<std::size_t, std::size_t>> pending{{0, n - 1}};
    while (!pending.empty()) {
        auto [a, b] = pending.back();
        pending.pop_back();
        double dx = mean[b].x - mean[a].x, dy = mean[b].y - mean[a].y, length = std::hypot(dx, dy);
        double worst = 0;
        std::size_t at = a;
        for (std::size_t i = a + 1; i < b; ++i) {
            double ex = mean[i].x - mean[a].x, ey = mean[i].y - mean[a].y;
            double d = length > 0 ? std::fabs(ex * dy - ey * dx) / length : std::hypot(ex, ey);
            if (d > worst) worst = d, at = i;
        }
        if (worst > 0.2) {
            keep[at] = true;
            pending.push_back({a, at});
            pending.push_back({at, b});
        }
    }
    std::vector<Point2> out;
    for (std::size_t i = 0; i < n; ++i)
        if (keep[i]) out.push_back(mean[i]);
    return out;
}

// Stretches that end and start on neighbouring pixels (a circle's arcs, a
// span and the next) as one, so that rounding each off leaves no notch
// where they meet; the pixels drawn are the same.
std::vector<Stroke> touchingJoined(std::vector<Stroke> const &strokes) {
    std::vector<Stroke> out;
    for (Stroke const &s : strokes) {
        if (!out.empty() && !s.empty() && std::labs(long(s[0].column) - out.back().back().column) <= 1 &&
            std::labs(long(s[0].row) - out.back().back().row) <= 1)
            out.back().insert(out.back().end(), s.begin(), s.end());
        else
            out.push_back(s);
    }
    return out;
}

std::string coordinate(double v) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.2f", v);
    std::string s = buffer;
    while (s.back() == '0') s.pop_back();
    if (s.back() == '.') s.pop_back();
    return s;
}

void svgRuns(std::ostringstream &out, std::vector<PixelRun> const &runs, std::string const &light) {
    for (PixelRun const &r : runs)
        out << "<rect x=\"" << r.first << "\" y=\"" << r.row << "\" width=\"" << r.length() << "\" height=\"1\""
            << (r.undecided ? " fill=\"" + light + "\"" : std::string()) << "/>\n";
}

void svgText(std::ostringstream &out, int x, int baseline, std::string const &text, PictureFrame const &f) {
    out << "<text x=\"" << x << "\" y=\"" << baseline << "\" font-size=\"" << 10 * f.font << "\">" << xmlEscape(text)
        << "</text>\n";
}

} // namespace

std::string plotSvg(Picture const &picture, int scale, bool smooth) {
    Window const &w = picture.window;
    PictureFrame const f = frameOf(picture, scale);
    std::ostringstream out;
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << f.width << "\" height=\"" << f.height
        << "\" viewBox=\"0 0 " << f.width << ' ' << f.height << "\">\n"
        << "<rect width=\"" << f.width << "\" height=\"" << f.height << "\" fill=\"" << hexColour(Background)
        << "\"/>\n";
    // The window in its own pixels: one unit a pixel.
    out << "<g transform=\"scale(" << scale << ")\">\n";
    std::vector<RunLayers> layers(picture.curves.size());
    for (std::size_t i = 0; i < picture.curves.size(); ++i)
        if (picture.curves[i].drawing.pixelRuns) {
            layers[i] = runLayers(rowRuns(picture.curves[i].drawing.points), w);
            // Half opaque, as the PNG shades every other pixel.
            out << "<g fill=\"" << hexColour(curveColour(i)) << "\" fill-opacity=\"0.5\">\n";
            svgRuns(out, layers[i].inside, hexColour(undecidedShade(curveColour(i))));
            out << "</g>\n";
        }
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
        << (smooth ? "stroke-linecap=\"round\"" : "stroke-linecap=\"square\"") << " stroke-linejoin=\"round\">\n";
    for (std::size_t i = 0; i < picture.curves.size(); ++i) {
        Curve const &c = picture.curves[i];
        out << "<g stroke=\"" << hexColour(curveColour(i)) << "\"><title>" << xmlEscape(c.label) << " ("
            << c.drawing.evaluator << ")</title>\n";
        std::string light = hexColour(undecidedShade(curveColour(i)));
        if (c.drawing.pixelRuns) {
            out << "<g fill=\"" << hexColour(curveColour(i)) << "\" stroke=\"none\">\n";
            svgRuns(out, layers[i].edge, light);
            out << "</g>\n</g>\n";
            continue;
        }
        for (Stroke const &stroke : smooth ? touchingJoined(c.drawing.strokes) : c.drawing.strokes) {
            for (ShadedPiece const &piece : shadedPieces(stroke)) {
                std::vector<PixelPoint> const &s = piece.points;
                out << "<polyline " << (piece.undecided ? "stroke=\"" + light + "\" " : "") << "points=\"";
                if (smooth) {
                    std::vector<Point2> line = smoothed(pixelChain(s));
                    for (std::size_t j = 0; j < line.size(); ++j)
                        out << (j ? " " : "") << coordinate(line[j].x) << ',' << coordinate(line[j].y);
                    if (line.size() == 1) out << ' ' << coordinate(line[0].x) << ',' << coordinate(line[0].y);
                    out << "\"/>\n";
                    continue;
                }
                for (std::size_t j = 0; j < s.size(); ++j)
                    out << (j ? " " : "") << s[j].column + 0.5 << ',' << s[j].row + 0.5;
                // A lone point repeated: a zero-length line with square caps shows as its pixel.
                if (s.size() == 1) out << ' ' << s[0].column + 0.5 << ',' << s[0].row + 0.5;
                out << "\"/>\n";
            }
            if (smooth) continue;
            // An undecided point shows light even where a decided segment ends on it.
            for (PixelPoint const &p : stroke)
                if (isUndecided(p))
                    out << "<rect x=\"" << p.column << "\" y=\"" << p.row << "\" width=\"1\" height=\"1\" fill=\""
                        << light << "\" stroke=\"none\"/>\n";
        }
        out << "</g>\n";
    }
    out << "</g>\n</g>\n";
    // Around the window, in picture pixels: ticks and numbers, title, legend.
    int const gap = 2 * f.font, capitals = (glyphHeight - 1) * f.font;
    if (!f.xLabels.empty() || !f.yLabels.empty()) {
        out << "<g stroke=\"" << hexColour(AxisColour) << "\" stroke-width=\"" << f.font << "\">\n";
        for (AxisLabel const &l : f.xLabels) {
            double x = (l.pixel + 0.5) * scale;
            out << "<line x1=\"" << x << "\" y1=\"" << f.plotHeight << "\" x2=\"" << x << "\" y2=\""
                << f.plotHeight + f.tick << "\"/>\n";
        }
        for (AxisLabel const &l : f.yLabels) {
            double y = (l.pixel + 0.5) * scale;
            out << "<line x1=\"" << f.plotWidth << "\" y1=\"" << y << "\" x2=\"" << f.plotWidth + f.tick
                << "\" y2=\"" << y << "\"/>\n";
        }
        out << "</g>\n";
    }
    out << "<g font-family=\"monospace\" fill=\"" << hexColour(Ink) << "\">\n";
    for (AxisLabel const &l : f.xLabels) svgText(out, l.at, f.plotHeight + f.tick + gap + capitals, l.text, f);
    for (AxisLabel const &l : f.yLabels) svgText(out, f.plotWidth + f.tick + gap, l.at + capitals, l.text, f);
    int y = f.textTop;
    if (f.title) {
        svgText(out, f.margin, y + capitals, picture.title, f);
        y += f.lineHeight;
    }
    for (std::size_t i = 0; i < f.legend; ++i, y += f.lineHeight) {
        out << "<rect x=\"" << f.margin << "\" y=\"" << y + 3 * f.font << "\" width=\"" << 12 * f.font
            << "\" height=\"" << 2 * f.font << "\" fill=\"" << hexColour(curveColour(i)) << "\"/>\n";
        svgText(out, f.margin + 16 * f.font, y + capitals, picture.curves[i].label, f);
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
    std::string out = picture.title.empty() ? std::string() : picture.title + "\n";
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
        std::string line = c.label + "  (" + c.drawing.evaluator + ", " + std::to_string(pixelCount(c.drawing)) +
                           (c.drawing.pixelRuns ? " pixels)" : " points)");
        if (colour) line = ansiColour(curveColour(i)) + line + "\x1b[0m";
        out += line + "\n";
    }
    return out;
}

std::string plotPng(Picture const &picture, int scale) {
    Image plot = renderPicture(picture);
    PictureFrame const f = frameOf(picture, scale);
    if (f.width == f.plotWidth && f.height == f.plotHeight) return encodePng(plot, scale);
    // Around the window, so the window's pixels keep their place: the numbers
    // right of it and below it, then the title, then a swatch and the label
    // of each relation.
    Image out(f.width, f.height, Background);
    out.paste(plot, 0, 0, scale);
    int const gap = 2 * f.font;
    for (AxisLabel const &l : f.xLabels) {
        int x = l.pixel * scale + scale / 2;
        for (int t = 0; t < f.font; ++t) out.line(x + t - f.font / 2, f.plotHeight, x + t - f.font / 2, f.plotHeight + f.tick - 1, AxisColour);
        out.text(l.at, f.plotHeight + f.tick + gap, l.text, Ink, f.font);
    }
    for (AxisLabel const &l : f.yLabels) {
        int y = l.pixel * scale + scale / 2;
        for (int t = 0; t < f.font; ++t) out.line(f.plotWidth, y + t - f.font / 2, f.plotWidth + f.tick - 1, y + t - f.font / 2, AxisColour);
        out.text(f.plotWidth + f.tick + gap, l.at, l.text, Ink, f.font);
    }
    int y = f.textTop;
    if (f.title) {
        out.text(f.margin, y, picture.title, Ink, f.font);
        y += f.lineHeight;
    }
    for (std::size_t i = 0; i < f.legend; ++i) {
        for (int t = 0; t < 2 * f.font; ++t)
            out.line(f.margin, y + 3 * f.font + t, f.margin + 12 * f.font, y + 3 * f.font + t, curveColour(i));
        out.text(f.margin + 16 * f.font, y, picture.curves[i].label, Ink, f.font);
        y += f.lineHeight;
    }
    return encodePng(out, 1);
}

void writePlot(Picture const &picture, Format format, PlotStyle const &style, ByteSink &out) {
    switch (format) {
    case Format::Png: out.write(plotPng(picture, style.scale)); break;
    case Format::Svg: out.write(plotSvg(picture, style.scale, style.smooth)); break;
    case Format::Json: writePlotJson(picture, out); break;
    case Format::Csv: writePlotCsv(picture, out); break;
    case Format::Text: out.write(plotText(picture, style.colour, style.width)); break;
    }
}

} // namespace evalgtool

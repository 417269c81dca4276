#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "collab/ds/FloatDataSetC.h"
#include "collab/rel/SketchC.h"
#include "Commands.h"
#include "Errors.h"
#include "evalg/SketchEvalC.h"
#include "Numbers.h"
#include "Output.h"
#include "Picture.h"
#include "SketchFile.h"

namespace evalgtool {

namespace ds = qelt::mathapp::ds;
using qelt::oss::PointerTC;
using Json = nlohmann::ordered_json;

namespace {

// One line of the output: a sketch point, its marks and (to-pixels) its pixel.
struct Row {
    double x, y;
    unsigned short marks;
    bool hasPixel;
    PixelPoint pixel;
};

std::string joined(std::vector<std::string> const &names, char separator) {
    std::string out;
    for (std::string const &n : names) out += (out.empty() ? "" : std::string(1, separator)) + n;
    return out;
}

std::string render(Window const &w, std::vector<Row> const &rows, Format format) {
    bool pixels = !rows.empty() && rows[0].hasPixel;
    std::ostringstream out;
    if (format == Format::Json) {
        Json doc;
        doc["window"] = {{"xmin", w.xMin}, {"xmax", w.xMax}, {"ymin", w.yMin},
                         {"ymax", w.yMax}, {"columns", w.columns}, {"rows", w.rows}};
        doc["points"] = Json::array();
        for (Row const &r : rows) {
            Json p = {{"x", r.x}, {"y", r.y}, {"marks", markNames(r.marks)}};
            if (r.hasPixel) p["column"] = r.pixel.column, p["row"] = r.pixel.row;
            doc["points"].push_back(p);
        }
        out << doc.dump(1) << "\n";
    } else if (format == Format::Csv) {
        out << "x,y,marks" << (pixels ? ",column,row" : "") << "\n";
        for (Row const &r : rows) {
            out << formatNumber(r.x) << ',' << formatNumber(r.y) << ',' << joined(markNames(r.marks), ' ');
            if (r.hasPixel) out << ',' << r.pixel.column << ',' << r.pixel.row;
            out << '\n';
        }
    } else {
        for (Row const &r : rows) {
            out << "x " << formatNumber(r.x) << "  y " << formatNumber(r.y);
            if (r.hasPixel) out << "  column " << r.pixel.column << "  row " << r.pixel.row;
            if (r.marks) out << "  " << joined(markNames(r.marks), ' ');
            out << '\n';
        }
    }
    return out.str();
}

} // namespace

void runSketchToPixels(SketchOptions const &o) {
    Window w = parseWindow(o.window.window, o.window.size);
    Format format = chooseFormat(o.format, o.output, {Format::Json, Format::Csv, Format::Text}, Format::Text);
    std::vector<FilePoint> file = readPointsFile(o.file, "x", "y");
    PointerTC<ds::FloatDataSetC> points(new ds::FloatDataSetC);
    for (FilePoint const &p : file) points->addPoint(new ds::FloatPointC(p.a, p.b, p.marks));
    PointerTC<qelt::mathapp::rel::SketchC> sketch(new qelt::mathapp::rel::SketchC(points));
    std::vector<PixelPoint> pixels =
        pixelPoints(qelt::mathapp::evalg::SketchEvalC().evaluatePixels(*sketch, makeDomain(w)));
    // One pixel per point, in the sketch's order: each row pairs them up.
    std::vector<Row> rows;
    for (std::size_t i = 0; i < file.size() && i < pixels.size(); ++i)
        rows.push_back(Row{file[i].a, file[i].b, file[i].marks, true, pixels[i]});
    writeOutput(o.output, render(w, rows, format));
}

void runSketchFromPixels(SketchOptions const &o) {
    Window w = parseWindow(o.window.window, o.window.size);
    Format format = chooseFormat(o.format, o.output, {Format::Json, Format::Csv, Format::Text}, Format::Text);
    std::vector<FilePoint> file = readPointsFile(o.file, "column", "row");
    PointerTC<ds::GraphDataSetWinC> pixels(new ds::GraphDataSetWinC(1000, 0, makeDomain(w)));
    for (FilePoint const &p : file) {
        // Pixel coordinates are whole numbers a POINT can hold.
        bool whole = std::floor(p.a) == p.a && std::floor(p.b) == p.b;
        if (!whole || p.a < -2147483648.0 || p.a > 2147483647.0 || p.b < -2147483648.0 || p.b > 2147483647.0)
            throw UsageError("points file '" + o.file + "': pixel " + formatNumber(p.a) + "," + formatNumber(p.b) +
                             " is not a pair of whole numbers column,row");
        pixels->appendPixelPoint(long(p.a), long(p.b), 0);
    }
    std::vector<Row> rows;
    // createSketch hands over a sketch nobody holds yet: the pointer takes it.
    PointerTC<qelt::mathapp::rel::SketchC> sketch(qelt::mathapp::evalg::SketchEvalC().createSketch(pixels));
    if (sketch)
        for (ds::FloatPointC const *p : sketch->getValues())
            rows.push_back(Row{p->getX(), p->getY(), p->getMarks(), false, PixelPoint{0, 0, 0}});
    writeOutput(o.output, render(w, rows, format));
}

} // namespace evalgtool

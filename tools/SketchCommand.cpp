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

// Writes the rows one by one as they come, so that a long sketch never sits
// in memory as a whole document.
class RowWriter {
public:
    RowWriter(OutputFile &out, Window const &w, Format format, bool pixels)
        : out_(out), format_(format), pixels_(pixels) {
        if (format_ == Format::Json)
            out_.write("{\n \"window\": {\"xmin\": " + formatNumber(w.xMin) + ", \"xmax\": " + formatNumber(w.xMax) +
                       ", \"ymin\": " + formatNumber(w.yMin) + ", \"ymax\": " + formatNumber(w.yMax) +
                       ", \"columns\": " + std::to_string(w.columns) + ", \"rows\": " + std::to_string(w.rows) +
                       "},\n \"points\": [");
        else if (format_ == Format::Csv)
            out_.write(std::string("x,y,marks") + (pixels_ ? ",column,row" : "") + "\n");
    }

    void row(Row const &r) {
        line_.clear();
        if (format_ == Format::Json) {
            Json marks = markNames(r.marks);
            line_ += std::string(first_ ? "\n  " : ",\n  ") + "{\"x\": " + formatNumber(r.x) + ", \"y\": " +
                     formatNumber(r.y) + ", \"marks\": " + marks.dump();
            if (r.hasPixel)
                line_ += ", \"column\": " + std::to_string(r.pixel.column) + ", \"row\": " + std::to_string(r.pixel.row);
            line_ += "}";
        } else if (format_ == Format::Csv) {
            line_ += formatNumber(r.x) + ',' + formatNumber(r.y) + ',' + joined(markNames(r.marks), ' ');
            if (r.hasPixel) line_ += ',' + std::to_string(r.pixel.column) + ',' + std::to_string(r.pixel.row);
            line_ += '\n';
        } else {
            line_ += "x " + formatNumber(r.x) + "  y " + formatNumber(r.y);
            if (r.hasPixel) line_ += "  column " + std::to_string(r.pixel.column) + "  row " + std::to_string(r.pixel.row);
            if (r.marks) line_ += "  " + joined(markNames(r.marks), ' ');
            line_ += '\n';
        }
        out_.write(line_);
        first_ = false;
    }

    void finish() {
        if (format_ == Format::Json) out_.write(first_ ? "]\n}\n" : "\n ]\n}\n");
        out_.commit();
    }

private:
    OutputFile &out_;
    Format format_;
    bool pixels_;
    bool first_ = true;
    std::string line_;
};

// Sketch points converted per batch: the library puts each point in its
// pixel on its own, so batches give the pixels the whole sketch would.
std::size_t const batchSize = 1 << 16;

} // namespace

void runSketchToPixels(SketchOptions const &o) {
    Window w = parseWindow(o.window.window, o.window.size);
    Format format = chooseFormat(o.format, o.output, {Format::Json, Format::Csv, Format::Text}, Format::Text);
    // A first reading checks the whole file, so that bad input writes nothing,
    // standard output included; the second converts it batch by batch.
    forEachPoint(o.file, "x", "y", [](FilePoint const &) {});
    OutputFile out(o.output);
    RowWriter writer(out, w, format, true);
    std::vector<FilePoint> batch;
    auto convert = [&]() {
        PointerTC<ds::FloatDataSetC> points(new ds::FloatDataSetC);
        for (FilePoint const &p : batch) points->addPoint(new ds::FloatPointC(p.a, p.b, p.marks));
        PointerTC<qelt::mathapp::rel::SketchC> sketch(new qelt::mathapp::rel::SketchC(points));
        std::vector<PixelPoint> pixels =
            pixelPoints(qelt::mathapp::evalg::SketchEvalC().evaluatePixels(*sketch, makeDomain(w)));
        // One pixel per point, in the sketch's order: each row pairs them up.
        for (std::size_t i = 0; i < batch.size() && i < pixels.size(); ++i)
            writer.row(Row{batch[i].a, batch[i].b, batch[i].marks, true, pixels[i]});
        batch.clear();
    };
    forEachPoint(o.file, "x", "y", [&](FilePoint const &p) {
        batch.push_back(p);
        if (batch.size() == batchSize) convert();
    });
    convert();
    writer.finish();
}

void runSketchFromPixels(SketchOptions const &o) {
    Window w = parseWindow(o.window.window, o.window.size);
    Format format = chooseFormat(o.format, o.output, {Format::Json, Format::Csv, Format::Text}, Format::Text);
    PointerTC<ds::GraphDataSetWinC> pixels(new ds::GraphDataSetWinC(1000, 0, makeDomain(w)));
    // The path is read straight into the data set: the sketch is made of the whole of it.
    forEachPoint(o.file, "column", "row", [&](FilePoint const &p) {
        // Pixel coordinates are whole numbers a POINT can hold.
        bool whole = std::floor(p.a) == p.a && std::floor(p.b) == p.b;
        if (!whole || p.a < -2147483648.0 || p.a > 2147483647.0 || p.b < -2147483648.0 || p.b > 2147483647.0)
            throw UsageError("points file '" + o.file + "': pixel " + formatNumber(p.a) + "," + formatNumber(p.b) +
                             " is not a pair of whole numbers column,row");
        pixels->appendPixelPoint(long(p.a), long(p.b), 0);
    });
    // createSketch hands over a sketch nobody holds yet: the pointer takes it.
    PointerTC<qelt::mathapp::rel::SketchC> sketch(qelt::mathapp::evalg::SketchEvalC().createSketch(pixels));
    OutputFile out(o.output);
    RowWriter writer(out, w, format, false);
    if (sketch)
        for (ds::FloatPointC const *p : sketch->getValues())
            writer.row(Row{p->getX(), p->getY(), p->getMarks(), false, PixelPoint{0, 0, 0}});
    writer.finish();
}

} // namespace evalgtool

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "Commands.h"
#include "Image.h"
#include "Kinds.h"
#include "Output.h"
#include "PlotFormats.h"
#include "Png.h"
#include "Render.h"
#include "Words.h"

namespace evalgtool {

namespace {

int const tileScale = 2;
int const tileMargin = 12;
int const labelHeight = 40;
int const sheetColumns = 4;
char const *const sampleSketchFile = "sketch-points.json";

// A hand-drawn-looking wave for the sketch kind, in the default window.
std::string sampleSketch() {
    nlohmann::json points = nlohmann::json::array();
    for (int i = 0; i <= 56; ++i) {
        double x = -7.0 + 0.25 * i;
        double y = 2.5 * std::sin(0.8 * x) + 0.25 * x + 0.15 * std::sin(5.0 * x);
        points.push_back({{"x", x}, {"y", y}});
    }
    return points.dump(1) + "\n";
}

std::string htmlEscape(std::string const &s) {
    std::string out;
    for (char c : s) {
        if (c == '&') out += "&amp;";
        else if (c == '<') out += "&lt;";
        else if (c == '>') out += "&gt;";
        else if (c == '"') out += "&quot;";
        else out += c;
    }
    return out;
}

struct Entry {
    KindEntry const *kind;
    std::string arguments; // as the user would type them
    std::string file;
    Picture picture;
    Image image;
};

} // namespace

void runGallery(GalleryOptions const &o) {
    std::string folder = o.folder.empty() ? "." : o.folder;
    Window w; // the default window
    makeDirectories(folder);
    std::vector<Entry> entries;
    for (KindEntry const &kind : kinds()) {
        std::vector<std::string> words{kind.name};
        std::string typed = kind.galleryArguments;
        for (std::string const &word : splitWords(kind.galleryArguments))
            words.push_back(word.compare(0, 5, "file=") == 0 ? "file=" + folder + "/" + word.substr(5) : word);
        Picture picture;
        picture.window = w;
        if (kind.name == "sketch") writeOutput(folder + "/" + sampleSketchFile, sampleSketch());
        picture.curves.push_back(drawRelation(parseRelation(words), w));
        entries.push_back(Entry{&kind, typed, kind.name + ".png", picture, renderPicture(picture)});
    }

    int tileWidth = w.columns * tileScale, tileHeight = labelHeight + w.rows * tileScale;
    int rows = int((entries.size() + sheetColumns - 1) / sheetColumns);
    Image sheet(tileMargin + sheetColumns * (tileWidth + tileMargin), tileMargin + rows * (tileHeight + tileMargin),
                Background);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        Entry const &e = entries[i];
        // As `evalg plot` draws it, numbers included; the sheet shows the bare window.
        writeOutput(folder + "/" + e.file, plotPng(e.picture, 4));
        int x = tileMargin + int(i % sheetColumns) * (tileWidth + tileMargin);
        int y = tileMargin + int(i / sheetColumns) * (tileHeight + tileMargin);
        // Labels are cut at the tile's edge rather than run into the next one.
        auto fit = [tileWidth](std::string const &s, int scale) { return s.substr(0, std::size_t(tileWidth / (6 * scale))); };
        sheet.text(x, y, fit(e.kind->name, 2), Ink, 2);
        sheet.text(x, y + 18, fit(e.kind->curve, 1), Ink, 1);
        sheet.text(x, y + 28, fit(e.arguments, 1), curveColour(0), 1);
        sheet.paste(e.image, x, y + labelHeight, tileScale);
    }
    writeOutput(folder + "/gallery.png", encodePng(sheet, 1));

    std::ostringstream html;
    html << "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>evalg gallery</title>\n"
         << "<style>body{font-family:sans-serif;margin:2em}figure{display:inline-block;margin:1em}"
            "img{image-rendering:pixelated;border:1px solid #ccc}code{font-size:90%}</style></head><body>\n"
         << "<h1>evalg gallery</h1>\n<p>Every relation kind of the evalg tool on the default window, 161x101 "
            "pixels over [-8, 8] x [-5, 5], drawn pixel for pixel from the library's output.</p>\n"
         << "<p><img src=\"gallery.png\" alt=\"contact sheet\"></p>\n";
    for (Entry const &e : entries) {
        std::string command = "evalg plot " + e.kind->name + (e.arguments.empty() ? "" : " " + e.arguments) +
                              " -o " + e.file;
        html << "<figure><img src=\"" << e.file << "\" alt=\"" << htmlEscape(e.kind->name) << "\"><figcaption><b>"
             << htmlEscape(e.kind->name) << "</b>: " << htmlEscape(e.kind->curve) << ", drawn by "
             << htmlEscape(e.kind->evaluator) << "<br><code>" << htmlEscape(command) << "</code></figcaption></figure>\n";
    }
    html << "</body></html>\n";
    writeOutput(folder + "/index.html", html.str());
}

} // namespace evalgtool

// evalg table, sketch and gallery, end to end, against the library.
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <sstream>

#include "collab/ds/FloatDataSetC.h"
#include "collab/ds/TableDataSet2C.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "collab/rel/SketchC.h"
#include "evalg/CartesianRelationTableEvalC.h"
#include "evalg/SketchEvalC.h"
#include "ToolRun.h"
#include "tools/PictureFrame.h"

namespace {

using namespace tooltest;

struct TableCase {
    char const *name;
    std::vector<std::string> args;
    PointerTC<rel::RelationC> relation;
    std::vector<double> xs;
};

void PrintTo(TableCase const &c, std::ostream *os) { *os << c.name; }

std::vector<TableCase> tableCases() {
    return {
        {"list", {"quadratic", "a=2", "h=1", "--x=-1,0,2.5"}, new rel::QuadraticFunctionC(2, 1, 0), {-1, 0, 2.5}},
        {"range", {"quadratic", "k=-1", "--from=-1", "--to=1", "--step=0.1"}, new rel::QuadraticFunctionC(1, 0, -1),
         {-1, -0.9, -0.8, -0.7, -0.6, -0.5, -0.4, -0.3, -0.2, -0.1, 0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1}},
        {"two values", {"circle", "r=2", "k=1", "--from=-3", "--to=3", "--step=0.5"}, new rel::CircleC(0, 1, 2),
         {-3, -2.5, -2, -1.5, -1, -0.5, 0, 0.5, 1, 1.5, 2, 2.5, 3}},
        {"sampled of a kind", {"sampled", "of=quadratic", "a=-1", "--x=3"}, new rel::QuadraticFunctionC(-1, 0, 0), {3}},
    };
}

class Tables : public ::testing::TestWithParam<TableCase> {};

TEST_P(Tables, RowsAreTheLibrarysWithGapsForMissingValues) {
    TableCase const &c = GetParam();
    qelt::mathapp::esb::CartesianRelationServiceC service(c.relation);
    PointerTC<ds::TableDataSet2C> table = evalg::CartesianRelationTableEvalC().evaluateTable2(service, c.xs);
    auto value = [](double v) { return std::isnan(v) ? json() : json(v); };
    json expected = json::array(), fromJson = json::array(), fromCsv = json::array();
    for (ds::FloatPoint2C const *e : table->getPoints())
        expected.push_back({value(e->getX()), value(e->getY1()), value(e->getY2())});
    Folder f;
    ASSERT_EQ(f.evalg(with(with({"table"}, c.args), {"-o", "t.json"})).status, 0);
    ASSERT_EQ(f.evalg(with(with({"table"}, c.args), {"-o", "t.csv"})).status, 0);
    json const doc = json::parse(f.read("t.json"));
    for (json const &row : doc["rows"]) fromJson.push_back({row["x"], row["y1"], row["y2"]});
    // CSV numbers read back exactly; a missing value is an empty field.
    std::istringstream in(f.read("t.csv"));
    std::string line, cell;
    std::getline(in, line);
    EXPECT_EQ(line, "x,y1,y2");
    while (std::getline(in, line)) {
        std::istringstream cells(line + ",");
        fromCsv.push_back(json::array());
        while (std::getline(cells, cell, ',')) fromCsv.back().push_back(value(cell.empty() ? NAN : std::stod(cell)));
    }
    EXPECT_EQ(fromJson, expected);
    EXPECT_EQ(fromCsv, expected);
}

INSTANTIATE_TEST_SUITE_P(Tool, Tables, ::testing::ValuesIn(tableCases()),
                         [](auto const &info) { return testName(info.param.name); });

struct SketchCase {
    char const *name;
    std::vector<std::string> window;
    double xMin, xMax, yMin, yMax;
    int m, n;
};

void PrintTo(SketchCase const &c, std::ostream *os) { *os << c.name; }

class Sketches : public ::testing::TestWithParam<SketchCase> {};

// A rise, a fall and a rise, crossing both axes, with one point off the window.
json const sketchPoints = json::parse(R"([{"x": -3, "y": -1, "marks": ["turning-point"]}, [-2, 0.5], [-1, 1.5],
    [-0.04, 2], [1, 0.5], [2, -1], [3, -0.02], [4, 1], [9, 7]])");

TEST_P(Sketches, BothDirectionsAreTheLibrarys) {
    SketchCase const &c = GetParam();
    PointerTC<ds::GraphicalDomainC> domain(new ds::GraphicalDomainC(c.xMin, c.xMax, c.yMin, c.yMax, c.m, c.n));
    Folder f;
    f.write("sketch.json", sketchPoints.dump());
    ASSERT_EQ(f.evalg(with({"sketch", "to-pixels", "sketch.json", "-o", "pixels.json"}, c.window)).status, 0);
    json pixels = json::parse(f.read("pixels.json"))["points"];

    PointerTC<ds::FloatDataSetC> points(new ds::FloatDataSetC);
    for (json const &p : sketchPoints)
        points->addPoint(p.is_array() ? new ds::FloatPointC(p[0], p[1], 0) : new ds::FloatPointC(p["x"], p["y"], 4));
    PointerTC<rel::SketchC> sketch(new rel::SketchC(points));
    json expected = pointsJson(evalg::SketchEvalC().evaluatePixels(*sketch, domain));
    ASSERT_EQ(pixels.size(), expected.size());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        EXPECT_EQ(json({pixels[i]["column"], pixels[i]["row"], 0}), expected[i]) << i;
        EXPECT_EQ(pixels[i]["x"], sketchPoints[i].is_array() ? sketchPoints[i][0] : sketchPoints[i]["x"]);
    }
    EXPECT_EQ(pixels[0]["marks"], json({"turning-point"}));

    // Back again: the pixels file the tool wrote is read as column,row.
    ASSERT_EQ(f.evalg(with({"sketch", "from-pixels", "pixels.json", "-o", "back.json"}, c.window)).status, 0);
    json back = json::parse(f.read("back.json"))["points"];
    PointerTC<ds::GraphDataSetWinC> set(new ds::GraphDataSetWinC(1000, 0, domain));
    for (json const &p : expected) set->appendPixelPoint(long(p[0]), long(p[1]), 0);
    PointerTC<rel::SketchC> made(evalg::SketchEvalC().createSketch(set));
    ASSERT_TRUE(made);
    ASSERT_EQ(back.size(), made->getValues().size());
    char const *names[] = {"x-intercept", "y-intercept", "turning-point"};
    for (std::size_t i = 0; i < back.size(); ++i) {
        ds::FloatPointC const *p = made->getValues()[i];
        json marks = json::array();
        for (int bit = 0; bit < 3; ++bit)
            if (p->getMarks() & (1 << bit)) marks.push_back(names[bit]);
        EXPECT_EQ(back[i], json({{"x", p->getX()}, {"y", p->getY()}, {"marks", marks}})) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Tool, Sketches,
                         ::testing::Values(SketchCase{"handheld", {}, -8, 8, -5, 5, 161, 101},
                                           SketchCase{"small", {"--window=-4,4,-2,2.5", "--size=33x19"}, -4, 4, -2, 2.5, 33, 19}),
                         [](auto const &info) { return std::string(info.param.name); });

// Long sketches are converted batch by batch: the pixels must be those of the
// whole sketch at once, across every batch boundary.
TEST(Sketches, ALongFileGivesTheWholeSketchsPixels) {
    std::mt19937_64 random(77);
    std::uniform_real_distribution<double> x(-9, 9), y(-6, 6);
    std::ostringstream csv;
    PointerTC<ds::FloatDataSetC> points(new ds::FloatDataSetC);
    csv.precision(17);
    csv << "x,y\n";
    for (int i = 0; i < 140000; ++i) {
        double a = x(random), b = y(random);
        csv << a << ',' << b << '\n';
        points->addPoint(new ds::FloatPointC(a, b, 0));
    }
    PointerTC<rel::SketchC> sketch(new rel::SketchC(points));
    PointerTC<ds::GraphicalDomainC> domain(new ds::GraphicalDomainC(-8, 8, -5, 5, 161, 101));
    json expected = pointsJson(evalg::SketchEvalC().evaluatePixels(*sketch, domain));
    Folder f;
    f.write("long.csv", csv.str());
    Result r = f.evalg({"sketch", "to-pixels", "long.csv", "--format=csv"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::istringstream in(r.out);
    std::string line;
    std::getline(in, line);
    EXPECT_EQ(line, "x,y,marks,column,row");
    json got = json::array();
    while (std::getline(in, line)) {
        std::size_t column = line.find(',', line.find(',', line.find(',') + 1) + 1) + 1;
        std::size_t row = line.find(',', column) + 1;
        got.push_back({std::stol(line.substr(column)), std::stol(line.substr(row)), 0});
    }
    EXPECT_EQ(got, expected);

    // A bad line at the very end: nothing at all on standard output.
    f.write("bad.csv", csv.str() + "1,oops\n");
    r = f.evalg({"sketch", "to-pixels", "bad.csv", "--format=csv"});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find("line 140002"), std::string::npos) << r.err;
}

TEST(Gallery, WritesEveryFileItPromises) {
    // Every kind of the tool, each with its picture.
    std::set<std::string> const kinds{"line", "quadratic", "vparabola", "parabola", "circle",  "ellipse",
                                      "hyperbola", "vhyperbola", "power", "exp", "log", "sin", "cos",
                                      "expr", "relation", "sampled", "sketch"};
    Folder f;
    Result r = f.evalg({"gallery", "-o", "shown"});
    ASSERT_EQ(r.status, 0) << r.err;
    ASSERT_EQ(f.entries(), std::vector<std::string>{"shown"});
    std::string html = f.read("shown/index.html");
    std::set<std::string> promised;
    for (std::string const &file : quotedAfter(html, "src=")) promised.insert(file);
    std::set<std::string> expected{"gallery.png"};
    for (std::string const &k : kinds) expected.insert(k + ".png");
    EXPECT_EQ(promised, expected);
    for (std::string const &file : promised) {
        Png png = readPng(f.file("shown/" + file));
        EXPECT_GT(png.width, 0u) << file;
        if (file != "gallery.png") {
            // As `evalg plot` draws the default window: numbers right and below.
            EXPECT_EQ(png.width, unsigned(evalgtool::frameOf(evalgtool::Picture{}, 4).width)) << file;
            EXPECT_EQ(png.height, unsigned(evalgtool::frameOf(evalgtool::Picture{}, 4).height)) << file;
            EXPECT_TRUE(html.find("evalg plot " + file.substr(0, file.size() - 4)) != std::string::npos) << file;
        }
    }
    EXPECT_GT(readPng(f.file("shown/gallery.png")).width, 4 * 322u);
    // Nothing else, no temporary file left: the page, its pictures and the
    // sketch's points, which its command line names.
    std::set<std::string> written = promised;
    written.insert({"index.html", "sketch-points.json"});
    std::vector<std::string> shown = f.entries("shown");
    EXPECT_EQ(std::set<std::string>(shown.begin(), shown.end()), written);
    EXPECT_NE(html.find("file=sketch-points.json"), std::string::npos);
}

} // namespace

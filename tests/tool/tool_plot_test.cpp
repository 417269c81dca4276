// evalg plot, end to end: every format against what the library returns for
// the same relation and window.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>

#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/ds/FloatDataSetC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/EllipseC.h"
#include "collab/rel/ExponentialFunctionC.h"
#include "collab/rel/HyperbolaC.h"
#include "collab/rel/HyperbolaVertC.h"
#include "collab/rel/LinearFunction1C.h"
#include "collab/rel/LogarithmicFunctionC.h"
#include "collab/rel/ParabolaC.h"
#include "collab/rel/ParabolaVertC.h"
#include "collab/rel/PowerFunctionC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "collab/rel/SinusoidalFunctionC.h"
#include "collab/rel/SketchC.h"
#include "evalg/ArbitraryFunctionFloat64EvalC.h"
#include "evalg/CircleEvalC.h"
#include "evalg/EllipseEvalC.h"
#include "evalg/ExponentialFunctionEvalC.h"
#include "evalg/HyperbolaEvalC.h"
#include "evalg/HyperbolaVertEvalC.h"
#include "evalg/LinearFunction1EvalC.h"
#include "evalg/GeneralEvalC.h"
#include "evalg/LogarithmicFunctionEvalC.h"
#include "evalg/ParabolaEvalC.h"
#include "evalg/ParabolaVertEvalC.h"
#include "evalg/PowerFunctionEvalC.h"
#include "evalg/QuadraticFunctionEvalC.h"
#include "evalg/SinusoidalFunctionEvalC.h"
#include "evalg/SketchEvalC.h"
#include "ToolRun.h"

namespace {

using namespace tooltest;
using SetP = PointerTC<ds::GraphDataSetWinC>;
using DomainP = PointerTC<ds::GraphicalDomainC>;

struct Win {
    double xMin, xMax, yMin, yMax;
    int m, n;
};
Win const handheld{-8, 8, -5, 5, 161, 101};

std::string num(double v) {
    char b[32];
    std::snprintf(b, sizeof b, "%.17g", v);
    return b;
}

std::vector<std::string> windowArgs(Win const &w) {
    return {"--window=" + num(w.xMin) + "," + num(w.xMax) + "," + num(w.yMin) + "," + num(w.yMax),
            "--size=" + std::to_string(w.m) + "x" + std::to_string(w.n)};
}

// The library's own drawing of one relation.
using Library = std::function<SetP(DomainP)>;
template <class EvaluatorT>
Library drawnBy(rel::RelationC *relation, EvaluatorT evaluator = EvaluatorT()) {
    PointerTC<rel::RelationC> r(relation);
    return [r, evaluator](DomainP domain) mutable {
        qelt::mathapp::esb::CartesianRelationServiceC service(r);
        return evaluator.evaluateGraph(service, domain);
    };
}
Library sampledBy(double subdivisions, rel::RelationC *relation) {
    return drawnBy(relation, evalg::GeneralEvalC(subdivisions));
}

struct PlotCase {
    char const *name;
    std::vector<std::string> relation;
    Win window;
    char const *evaluator;
    Library library;
    char const *fileName = nullptr, *fileText = nullptr; // an input the relation reads
};

// The sketch of sketchCsv: a zigzag that leaves the window on the right.
char const sketchCsv[] = "x,y\n-6,-4\n-3,4.5\n0,-2\n2.5,1\n7.9,4.9\n9,6\n12,0\n";
Library sketched() {
    return [](DomainP domain) {
        PointerTC<ds::FloatDataSetC> points(new ds::FloatDataSetC);
        double const xy[][2] = {{-6, -4}, {-3, 4.5}, {0, -2}, {2.5, 1}, {7.9, 4.9}, {9, 6}, {12, 0}};
        for (auto const &p : xy) points->addPoint(new ds::FloatPointC(p[0], p[1], 0));
        PointerTC<rel::SketchC> sketch(new rel::SketchC(points));
        return evalg::SketchEvalC().evaluatePixels(*sketch, domain);
    };
}

std::vector<PlotCase> plotCases() {
    using Q = evalg::QuadraticFunctionEvalC;
    auto expression = [](char const *f) {
        return new rel::ArbitraryFunctionC(qelt::math::algexpr::AlgebraicExpressionC::fromInfixString(f));
    };
    return {
        {"line", {"line", "m=-3", "k=2"}, handheld, "LinearFunction1EvalC",
         drawnBy<evalg::LinearFunction1EvalC>(new rel::LinearFunction1C(-3, 0, 2))},
        {"vparabola", {"vparabola", "h=2", "a=-0.25"}, handheld, "ParabolaVertEvalC",
         drawnBy<evalg::ParabolaVertEvalC>(new rel::ParabolaVertC(2, 0, -0.25))},
        {"parabola", {"parabola", "h=-4", "k=0.5", "a=1"}, handheld, "ParabolaEvalC",
         drawnBy<evalg::ParabolaEvalC>(new rel::ParabolaC(-4, 0.5, 1))},
        {"circle", {"circle", "h=-1", "k=0.5", "r=3.5"}, handheld, "CircleEvalC",
         drawnBy<evalg::CircleEvalC>(new rel::CircleC(-1, 0.5, 3.5))},
        {"circle cut by the window", {"circle", "h=6", "k=4", "r=3"}, handheld, "CircleEvalC",
         drawnBy<evalg::CircleEvalC>(new rel::CircleC(6, 4, 3))},
        {"ellipse", {"ellipse", "h=1", "a=6", "b=3"}, {-8, 8, -4, 4, 97, 49}, "EllipseEvalC",
         drawnBy<evalg::EllipseEvalC>(new rel::EllipseC(1, 0, 6, 3))},
        {"hyperbola", {"hyperbola", "a=2", "b=1.5"}, handheld, "HyperbolaEvalC",
         drawnBy<evalg::HyperbolaEvalC>(new rel::HyperbolaC(0, 0, 2, 1.5))},
        {"vhyperbola", {"vhyperbola", "h=1", "k=-0.5", "a=2", "b=1.5"}, handheld, "HyperbolaVertEvalC",
         drawnBy<evalg::HyperbolaVertEvalC>(new rel::HyperbolaVertC(1, -0.5, 2, 1.5))},
        {"expr with poles", {"expr", "f=tan(x)/2"}, handheld, "ArbitraryFunctionFloat64EvalC",
         drawnBy<evalg::ArbitraryFunctionFloat64EvalC>(expression("tan(x)/2"))},
        {"sampled two branches", {"sampled", "of=parabola", "h=-4", "k=0.5"}, handheld, "GeneralEvalC",
         sampledBy(100, new rel::ParabolaC(-4, 0.5, 1))},
        {"sampled expr", {"sampled", "of=expr", "f=1/x+1", "subdivisions=7"}, handheld, "GeneralEvalC",
         sampledBy(7, expression("1/x+1"))},
        {"quadratic with defaults", {"quadratic"}, handheld, "QuadraticFunctionEvalC",
         drawnBy<Q>(new rel::QuadraticFunctionC(1, 0, 0))},
        {"quadratic vertex below", {"quadratic", "a=0.25", "h=1", "k=-7"}, handheld, "QuadraticFunctionEvalC",
         drawnBy<Q>(new rel::QuadraticFunctionC(0.25, 1, -7))},
        {"quadratic flat", {"quadratic", "a=0", "k=2.5"}, handheld, "QuadraticFunctionEvalC",
         drawnBy<Q>(new rel::QuadraticFunctionC(0, 0, 2.5))},
        {"quadratic small window", {"quadratic", "a=-3", "h=0.3", "k=1"}, {-1, 1, -2, 2.5, 41, 31},
         "QuadraticFunctionEvalC", drawnBy<Q>(new rel::QuadraticFunctionC(-3, 0.3, 1))},
        {"power with a pole", {"power", "a=0.5", "h=1", "k=-1", "r=-1"}, handheld, "PowerFunctionEvalC",
         drawnBy<evalg::PowerFunctionEvalC>(new rel::PowerFunctionC(0.5, 1, -1, -1, rel::POWER_DOMAIN_UNRESTRICTED))},
        {"power restricted", {"power", "r=3", "a=-0.2", "restriction=2", "h=0.5"}, handheld, "PowerFunctionEvalC",
         drawnBy<evalg::PowerFunctionEvalC>(new rel::PowerFunctionC(-0.2, 0.5, 0, 3, rel::POWER_DOMAIN_LEFT_OF_H))},
        {"exp", {"exp", "b=-2", "r=0.3", "k=1"}, {-3, 12, -40, 2, 121, 81}, "ExponentialFunctionEvalC",
         drawnBy<evalg::ExponentialFunctionEvalC>(new rel::ExponentialFunctionC(-2, 0.3, 1))},
        {"log", {"log", "a=-1", "b=3", "h=2", "base=2.718281828459045"}, handheld, "LogarithmicFunctionEvalC",
         drawnBy<evalg::LogarithmicFunctionEvalC>(new rel::LogarithmicFunctionC(-1, 3, 2, 0, 2.718281828459045))},
        {"sin leaving the window", {"sin", "a=2", "b=7", "k=1"}, handheld, "SinusoidalFunctionEvalC",
         drawnBy<evalg::SinusoidalFunctionEvalC>(new rel::SinusoidalFunctionC(2, 7, 0, 1, true))},
        {"cos", {"cos", "h=-1", "a=0.75"}, {-10, 10, -1.5, 1.5, 200, 40}, "SinusoidalFunctionEvalC",
         drawnBy<evalg::SinusoidalFunctionEvalC>(new rel::SinusoidalFunctionC(0.75, 1, -1, 0, false))},
        {"sampled few subdivisions", {"sampled", "subdivisions=2.5", "of=quadratic", "a=-40"}, {-1, 1, -1, 1, 21, 21},
         "GeneralEvalC", sampledBy(2.5, new rel::QuadraticFunctionC(-40, 0, 0))},
        {"sketch", {"sketch", "file=s.csv"}, handheld, "SketchEvalC", sketched(), "s.csv", sketchCsv},
    };
}

void PrintTo(PlotCase const &c, std::ostream *os) { *os << c.name; }

json libraryPoints(PlotCase const &c) {
    Win const &w = c.window;
    return pointsJson(c.library(DomainP(new ds::GraphicalDomainC(w.xMin, w.xMax, w.yMin, w.yMax, w.m, w.n))));
}

// Runs evalg plot for the case, with its input file in place.
Result plot(Folder const &f, PlotCase const &c, std::vector<std::string> const &extra) {
    if (c.fileName) f.write(c.fileName, c.fileText);
    return f.evalg(with(with(with({"plot"}, c.relation), windowArgs(c.window)), extra));
}

bool isCurve(Rgb p) { return !(p.r == p.g && p.g == p.b); } // background, grid and axes are grey

bool inGrid(json const &p, Win const &w) { return p[0] >= 0 && p[0] < w.m && p[1] >= 0 && p[1] < w.n; }

class PlotFormats : public ::testing::TestWithParam<PlotCase> {};

TEST_P(PlotFormats, JsonAndCsvAreTheLibrarysOutput) {
    PlotCase const &c = GetParam();
    Folder f;
    Result r = plot(f, c, {"-o", "out.json"});
    ASSERT_EQ(r.status, 0) << r.err;
    ASSERT_EQ(plot(f, c, {"-o", "out.csv"}).status, 0);
    json out = json::parse(f.read("out.json")), expected = libraryPoints(c);
    EXPECT_EQ(out["window"], json({{"xmin", c.window.xMin}, {"xmax", c.window.xMax}, {"ymin", c.window.yMin},
                                   {"ymax", c.window.yMax}, {"columns", c.window.m}, {"rows", c.window.n}}));
    ASSERT_EQ(out["relations"].size(), 1u);
    EXPECT_EQ(out["relations"][0]["evaluator"], c.evaluator);
    EXPECT_EQ(out["relations"][0]["points"], expected);
    // CSV: a header, then relation,kind,point,column,row,markers,... per point.
    std::istringstream lines(f.read("out.csv"));
    json csv = json::array();
    std::string line;
    std::getline(lines, line);
    for (int column, row, markers; std::getline(lines, line);)
        if (std::sscanf(line.c_str(), "1,%*[^,],%*d,%d,%d,%d", &column, &row, &markers) == 3) csv.push_back({column, row, markers});
    EXPECT_EQ(csv, expected);
}

TEST_P(PlotFormats, PngHasCurvePixelsWhereTheJsonSaysAndNowhereElse) {
    PlotCase const &c = GetParam();
    unsigned const scale = 3;
    Folder f;
    ASSERT_EQ(plot(f, c, {"-o", "out.png", "--scale", std::to_string(scale)}).status, 0);
    Png png = readPng(f.file("out.png"));
    // The window at the top left, the grid's numbers right of it and below.
    ASSERT_GT(png.width, unsigned(c.window.m) * scale);
    ASSERT_GT(png.height, unsigned(c.window.n) * scale);
    // Nearest-neighbour scaling: every scale x scale block is one colour.
    for (unsigned y = 0; y < unsigned(c.window.n) * scale; ++y)
        for (unsigned x = 0; x < unsigned(c.window.m) * scale; ++x)
            ASSERT_EQ(png.at(x, y), png.at(x - x % scale, y - y % scale)) << x << "," << y;
    json points = libraryPoints(c);
    for (json const &p : points) {
        if (!inGrid(p, c.window)) continue;
        EXPECT_TRUE(isCurve(png.at(p[0].get<unsigned>() * scale, p[1].get<unsigned>() * scale))) << p;
    }
    // Any curve pixel lies between two consecutive points of one stretch.
    std::vector<json> runs = stretches(points, c.window.m, c.window.n);
    for (unsigned y = 0; y < unsigned(c.window.n); ++y)
        for (unsigned x = 0; x < unsigned(c.window.m); ++x) {
            if (!isCurve(png.at(x * scale, y * scale))) continue;
            bool covered = false;
            for (json const &run : runs)
                for (std::size_t i = 0; i < run.size() && !covered; ++i) {
                    json const &a = run[i], &b = run[i + 1 < run.size() ? i + 1 : i];
                    covered = int(x) >= std::min(a[0], b[0]) && int(x) <= std::max(a[0], b[0]) &&
                              int(y) >= std::min(a[1], b[1]) && int(y) <= std::max(a[1], b[1]);
                }
            EXPECT_TRUE(covered) << "curve colour at " << x << "," << y;
        }
}

TEST_P(PlotFormats, SvgHasOnePolylinePerStretch) {
    PlotCase const &c = GetParam();
    Folder f;
    ASSERT_EQ(plot(f, c, {"-o", "out.svg"}).status, 0);
    std::vector<json> drawn, expected = stretches(libraryPoints(c), c.window.m, c.window.n);
    for (std::string const &polyline : quotedAfter(f.read("out.svg"), "<polyline points=")) {
        std::istringstream coords(polyline);
        drawn.push_back(json::array());
        char comma;
        for (double x, y; coords >> x >> comma >> y;) drawn.back().push_back({x - 0.5, y - 0.5, 0});
    }
    for (json &run : expected) {
        for (json &p : run) p = {double(p[0]), double(p[1]), 0};
        if (run.size() == 1) run.push_back(run[0]); // a lone point is drawn as a zero-length line
    }
    if (std::string(c.evaluator) == "GeneralEvalC") {
        // It sets no markers: its stretches are its branches, and every point
        // near the window lies on exactly one of them.
        auto everyPoint = [](std::vector<json> const &runs) {
            std::vector<json> all;
            for (json const &run : runs) all.insert(all.end(), run.begin(), run.end() - (run.size() == 2 && run[0] == run[1]));
            std::sort(all.begin(), all.end());
            return all;
        };
        EXPECT_EQ(everyPoint(drawn), everyPoint(expected));
    } else {
        EXPECT_EQ(drawn, expected);
    }
}

TEST_P(PlotFormats, TextSetsADotAtEveryPoint) {
    PlotCase const &c = GetParam();
    Folder f;
    Result r = plot(f, c, {"--width=10000"}); // wide enough for one dot per pixel
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::u32string> lines;
    std::istringstream in(r.out);
    for (std::string line; std::getline(in, line) && lines.size() < unsigned(c.window.n + 3) / 4;) {
        std::u32string cells;
        for (std::size_t i = 0; i + 2 < line.size(); i += 3) // braille is three bytes of UTF-8
            cells += char32_t(((line[i] & 0x0F) << 12) | ((line[i + 1] & 0x3F) << 6) | (line[i + 2] & 0x3F));
        ASSERT_EQ(cells.size(), unsigned(c.window.m + 1) / 2) << line;
        lines.push_back(cells);
    }
    ASSERT_EQ(lines.size(), unsigned(c.window.n + 3) / 4);
    static unsigned const dot[4][2] = {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}};
    for (json const &p : libraryPoints(c)) {
        if (!inGrid(p, c.window)) continue;
        int x = p[0], y = p[1];
        EXPECT_TRUE((lines[y / 4][x / 2] - 0x2800) & dot[y % 4][x % 2]) << p;
    }
}

INSTANTIATE_TEST_SUITE_P(Tool, PlotFormats, ::testing::ValuesIn(plotCases()),
                         [](auto const &info) { return testName(info.param.name); });

TEST(PlotTool, AndDrawsEachRelationInItsOwnColour) {
    Folder f;
    std::vector<std::string> args{"plot", "quadratic", "a=0.5", "k=-4", "--and", "quadratic", "a=-0.5", "k=4", "-o"};
    ASSERT_EQ(f.evalg(with(args, {"two.json"})).status, 0);
    ASSERT_EQ(f.evalg(with(args, {"two.png", "--scale=1"})).status, 0);
    json out = json::parse(f.read("two.json"))["relations"];
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(out[0]["points"], pointsJson(drawnBy<evalg::QuadraticFunctionEvalC>(new rel::QuadraticFunctionC(
                                    0.5, 0, -4))(DomainP(new ds::GraphicalDomainC(-8, 8, -5, 5, 161, 101)))));
    EXPECT_EQ(out[1]["parameters"], json({{"a", -0.5}, {"h", 0.0}, {"k", 4.0}}));
    Png png = readPng(f.file("two.png"));
    ASSERT_GT(png.width, 161u); // the numbers of the grid on the right
    Rgb first = png.at(out[0]["points"][0][0], out[0]["points"][0][1]);
    Rgb second = png.at(out[1]["points"][0][0], out[1]["points"][0][1]);
    EXPECT_TRUE(isCurve(first) && isCurve(second) && !(first == second));
    // Under the window, a legend line per relation whose swatch is its colour.
    ASSERT_GT(png.height, 101u);
    std::vector<Rgb> swatches;
    for (unsigned y = 101; y < png.height; ++y)
        if (isCurve(png.at(6, y)) && (swatches.empty() || !(swatches.back() == png.at(6, y)))) swatches.push_back(png.at(6, y));
    EXPECT_EQ(swatches, (std::vector<Rgb>{first, second}));
}

TEST(PlotTool, NoAxesLeavesOutGridAndAxes) {
    Folder f;
    for (bool axes : {true, false}) {
        std::vector<std::string> args{"plot", "quadratic", "k=-3", "-o", "q.png", "--scale", "1"};
        if (!axes) args.push_back("--no-axes");
        ASSERT_EQ(f.evalg(args).status, 0);
        Png png = readPng(f.file("q.png"));
        // (5, 5) lies between grid lines, far from the curve; column 80 is x = 0,
        // row 50 y = 0, column and row 0 the grid lines at x = -8 and y = 5.
        Rgb blank = png.at(5, 5), axis = png.at(80, 5), grid = png.at(0, 5);
        EXPECT_EQ(blank, (Rgb{255, 255, 255}));
        EXPECT_EQ(axis == blank && grid == blank && png.at(5, 50) == axis && png.at(5, 0) == grid, !axes);
        EXPECT_EQ(axis == grid, !axes) << "the axis is darker than the grid";
    }
}

// The sampled evaluator writes both branches' runs column by column; joined
// as they come they would fill the inside of the parabola.
TEST(PlotTool, SampledBranchesAreNotJoinedToEachOther) {
    Folder f;
    ASSERT_EQ(f.evalg({"plot", "sampled", "of=parabola", "h=-4", "k=0.5", "--no-axes", "--scale=1", "-o", "p.png"}).status, 0);
    Png png = readPng(f.file("p.png"));
    ASSERT_EQ(png.width, 161u);
    int inside = 0;
    for (double x = -3; x <= 8; x += 0.5) {
        double s = 2 * std::sqrt(x + 4); // the branches are at 0.5 + s and 0.5 - s
        unsigned column = unsigned(std::lround((x + 8) * 10));
        for (double y = std::max(0.5 - s + 0.3, -5.0); y <= std::min(0.5 + s - 0.3, 5.0); y += 0.1, ++inside)
            ASSERT_EQ(png.at(column, unsigned(std::lround((5 - y) * 10))), (Rgb{255, 255, 255})) << x << "," << y;
    }
    EXPECT_GT(inside, 500);
}

} // namespace

// Pixel-run drawings (regions and implicit curves) in every output format,
// drawn by ImplicitRelationEvalC from the sample box functions.
#include <array>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

#include "collab/ds/GraphicalDomainC.h"
#include "collab/ds/PixelPointC.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/rel/ImplicitRelationC.h"
#include "evalg/ImplicitRelationEvalC.h"
#include "tests/support/SampleBoxFunctions.h"
#include "tools/Image.h"
#include "tools/PlotFormats.h"
#include "tools/Render.h"

namespace {

using namespace evalgtool;
using evalgtest::SampleBoxFunction;
using evalgtest::SampleCurve;
using qelt::mathapp::ds::PixelPointC;
using qelt::mathapp::rel::ImplicitRelationC;
using qelt::oss::PointerTC;
using json = nlohmann::json;

Curve implicitCurve(SampleCurve curve, double c, ImplicitRelationC::ComparisonE op, Window const &w) {
    PointerTC<qelt::mathapp::rel::BoxFunctionIC> h(new SampleBoxFunction(curve, c));
    PointerTC<qelt::mathapp::rel::RelationC> relation(new ImplicitRelationC(h, op));
    qelt::mathapp::esb::CartesianRelationServiceC service(relation);
    PointerTC<qelt::mathapp::ds::GraphicalDomainC> domain(
        new qelt::mathapp::ds::GraphicalDomainC(w.xMin, w.xMax, w.yMin, w.yMax, w.columns, w.rows));
    qelt::mathapp::evalg::ImplicitRelationEvalC evaluator;
    Curve out;
    out.label = "implicit";
    out.kind = "relation";
    out.drawing.evaluator = "ImplicitRelationEvalC";
    out.drawing.points = pixelPoints(evaluator.evaluateGraph(service, domain));
    out.drawing.pixelRuns = true;
    return out;
}

Window window(double reach, int pixels) { return {-reach, reach, -reach, reach, pixels, pixels}; }

// Every pixel of every run as [column, row, proven], read off the library's
// points on their own: a FIRST_VISIBLE point opens a run, the next
// LAST_VISIBLE point closes it.
json expectedPixels(std::vector<PixelPoint> const &points) {
    json out = json::array();
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_TRUE(points[i].markers & PixelPointC::FIRST_VISIBLE) << i;
        std::size_t j = i;
        while (!(points[j].markers & PixelPointC::LAST_VISIBLE)) ++j;
        EXPECT_LE(j, i + 1);
        EXPECT_EQ(points[i].row, points[j].row);
        for (int x = points[i].column; x <= points[j].column; ++x)
            out.push_back({x, points[i].row, (points[i].markers & PixelPointC::UNDECIDED) ? 0 : 1});
        i = j;
    }
    return out;
}

struct RegionCase {
    char const *name;
    SampleCurve curve;
    double c;
    ImplicitRelationC::ComparisonE op;
    double reach;
    bool region; // a filled area rather than a curve
};

RegionCase const cases[] = {
    {"circle", SampleCurve::CIRCLE, 9, ImplicitRelationC::EQUAL, 5, false},
    {"disc", SampleCurve::CIRCLE, 9, ImplicitRelationC::LESS, 5, true},
    {"outside", SampleCurve::CIRCLE, 9, ImplicitRelationC::GREATER_EQUAL, 5, true},
    {"sin_cos", SampleCurve::SIN_COS, 0, ImplicitRelationC::EQUAL, 12, false},
    {"pole", SampleCurve::POLE, 0.5, ImplicitRelationC::GREATER, 4, true},
};

class Regions : public ::testing::TestWithParam<RegionCase> {};

TEST_P(Regions, EveryFormatHasEveryPixelOfEveryRun) {
    RegionCase const &c = GetParam();
    Picture p;
    p.window = window(c.reach, 61);
    p.curves.push_back(implicitCurve(c.curve, c.c, c.op, p.window));
    std::vector<PixelPoint> const &points = p.curves[0].drawing.points;
    ASSERT_FALSE(points.empty());
    json pixels = expectedPixels(points);

    json doc = json::parse(plotJson(p));
    json const &relation = doc["relations"][0];
    EXPECT_FALSE(relation.contains("points"));
    EXPECT_EQ(relation["evaluator"], "ImplicitRelationEvalC");
    EXPECT_EQ(relation["label"], "implicit");
    EXPECT_EQ(relation["pixels"], pixels);

    // CSV: a line per pixel, the run's ends carrying its markers.
    std::istringstream csv(plotCsv(p));
    std::string line;
    std::getline(csv, line);
    EXPECT_EQ(line, "relation,kind,point,column,row,markers,first_visible,last_visible,undecided,proven");
    json fromCsv = json::array();
    std::size_t n = 0;
    for (unsigned point, column, row, markers, first, last, undecided, proven; std::getline(csv, line); ++n) {
        ASSERT_EQ(std::sscanf(line.c_str(), "1,relation,%u,%u,%u,%u,%u,%u,%u,%u", &point, &column, &row, &markers,
                              &first, &last, &undecided, &proven),
                  8)
            << line;
        EXPECT_EQ(point, n);
        EXPECT_EQ(undecided, 1 - proven);
        EXPECT_EQ(markers, first | last << 1 | undecided << 2);
        fromCsv.push_back({column, row, proven});
    }
    EXPECT_EQ(fromCsv, pixels);

    // The picture: every run pixel in the relation's colour or shade, or,
    // inside a region, what lies under it (every other pixel); nothing else.
    Image image = renderPicture(p);
    std::vector<std::uint8_t> drawn(std::size_t(61 * 61), 0);
    std::size_t throughRegion = 0;
    for (json const &px : pixels) {
        int x = px[0], y = px[1];
        drawn[std::size_t(y * 61 + x)] = 1;
        std::uint8_t at = image.at(x, y);
        std::uint8_t want = px[2] == 1 ? curveColour(0) : undecidedShade(curveColour(0));
        if (prominence(at) < 3)
            ++throughRegion;
        else
            EXPECT_EQ(at, want) << px;
    }
    if (c.region) {
        EXPECT_GT(throughRegion, pixels.size() / 4);
        // Half the inside, and the grid and axes under the rest; never the edge.
        EXPECT_LT(throughRegion, pixels.size() * 3 / 4);
    } else {
        EXPECT_EQ(throughRegion, 0u);
    }
    for (int y = 0; y < 61; ++y)
        for (int x = 0; x < 61; ++x)
            if (!drawn[std::size_t(y * 61 + x)]) {
                EXPECT_LT(prominence(image.at(x, y)), 3) << x << "," << y;
            }

    // SVG: the runs as rects, one per run piece, covering each pixel once.
    std::string svg = plotSvg(p, 2);
    EXPECT_EQ(svg.find("<polyline"), std::string::npos);
    std::size_t covered = 0;
    for (std::size_t at = svg.find("<rect x=\""); at != std::string::npos; at = svg.find("<rect x=\"", at + 1)) {
        int x = 0, y = 0, width = 0;
        if (std::sscanf(svg.c_str() + at, "<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"1\"", &x, &y, &width) == 3)
            covered += std::size_t(width);
    }
    EXPECT_EQ(covered, pixels.size());

    EXPECT_NE(plotText(p, false, 80).find("(ImplicitRelationEvalC, " + std::to_string(pixels.size()) + " pixels)"),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Tool, Regions, ::testing::ValuesIn(cases), [](auto const &info) { return std::string(info.param.name); });

TEST(Regions, ALaterCurveIsDrawnOverARegionAndAnEarlierOneShowsThrough) {
    Picture p;
    p.window = window(5, 61);
    Curve line;
    line.label = "line";
    line.drawing.evaluator = "by hand";
    line.drawing.points = {{0, 20, PixelPointC::FIRST_VISIBLE}, {60, 20, PixelPointC::LAST_VISIBLE}};
    line.drawing.strokes = visibleStretches(line.drawing.points, p.window, false);
    p.curves = {line, implicitCurve(SampleCurve::CIRCLE, 9, ImplicitRelationC::LESS, p.window), line};
    Image image = renderPicture(p);
    EXPECT_EQ(image.at(30, 20), curveColour(2)); // the third relation, over the disc
    p.curves.pop_back();
    EXPECT_EQ(renderPicture(p).at(30, 20), curveColour(0)); // the first, under the disc's inside
    image = renderPicture(p);
    EXPECT_EQ(image.at(34, 25), curveColour(1));
    EXPECT_EQ(image.at(33, 25), Background); // every other pixel of the inside
    EXPECT_EQ(image.at(30, 25), AxisColour); // the axis through the disc
    // A second region takes the pixels the first leaves.
    p.curves = {p.curves[1], p.curves[1]};
    image = renderPicture(p);
    EXPECT_EQ(image.at(33, 25), curveColour(0));
    EXPECT_EQ(image.at(34, 25), curveColour(1));
}

TEST(Regions, RunsPairFirstAndLastAndOddPointsStandAlone) {
    std::uint8_t const F = PixelPointC::FIRST_VISIBLE, L = PixelPointC::LAST_VISIBLE, U = PixelPointC::UNDECIDED;
    std::vector<PixelRun> runs = rowRuns({{2, 1, F}, {5, 1, L}, {7, 1, std::uint8_t(F | L | U)}, {3, 2, std::uint8_t(F | U)},
                                          {4, 2, std::uint8_t(L | U)}, {9, 3, F}, {1, 4, L}, {6, 5, 0}});
    std::vector<std::array<long, 4>> got;
    for (PixelRun const &r : runs) got.push_back({r.row, r.first, r.last, r.undecided});
    EXPECT_EQ(got, (std::vector<std::array<long, 4>>{
                       {1, 2, 5, 0}, {1, 7, 7, 1}, {2, 3, 4, 1}, {3, 9, 9, 0}, {4, 1, 1, 0}, {5, 6, 6, 0}}));
    // A 5x3 block: only its middle row's middle pixels are inside.
    Window w;
    w.columns = w.rows = 10;
    RunLayers layers = runLayers({{1, 1, 5, false}, {2, 1, 5, false}, {3, 1, 5, true}}, w);
    ASSERT_EQ(layers.inside.size(), 1u);
    EXPECT_EQ(layers.inside[0].row, 2);
    EXPECT_EQ(layers.inside[0].first, 2);
    EXPECT_EQ(layers.inside[0].last, 4);
    EXPECT_EQ(layers.edge.size(), 4u); // rows 1 and 3 whole, row 2's two ends
    // Along the window's edge a region has no edge: the top row is inside.
    layers = runLayers({{0, 0, 9, false}, {1, 0, 9, false}}, w);
    ASSERT_EQ(layers.inside.size(), 1u);
    EXPECT_EQ(layers.inside[0].row, 0);
    EXPECT_EQ(layers.inside[0].length(), 10);
    ASSERT_EQ(layers.edge.size(), 1u);
    EXPECT_EQ(layers.edge[0].row, 1);
}

} // namespace

#ifndef EVALG_TOOL_PICTURE_H
#define EVALG_TOOL_PICTURE_H

#include <cstdint>
#include <string>
#include <vector>

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/oss/PointerTC.h"
#include "Window.h"

namespace evalgtool {

// One pixel point of a data set: column from the left, screen row from the
// top, and its marker byte.
struct PixelPoint {
    std::int32_t column;
    std::int32_t row;
    std::uint8_t markers;
};

// Points that the display joins one after the other.
using Stroke = std::vector<PixelPoint>;

// What one evaluator made of one relation on one window.
struct Drawing {
    std::string evaluator;
    std::vector<PixelPoint> points; // the library's output, as it came
    std::vector<Stroke> strokes;    // the visible stretches drawn from it
    // The points are the pixels of a region or of an implicit curve, as row
    // runs (a run's first point FIRST_VISIBLE, its last LAST_VISIBLE, both
    // UNDECIDED where the run is undecided), not a path to join.
    bool pixelRuns = false;
};

// One parameter of a drawn relation, given or defaulted.
struct ParamValue {
    std::string name;
    enum { Number, Integer, Text } type;
    double number;
    std::string text;
};

// A drawn relation with what names it.
struct Curve {
    std::string label; // as typed: "quadratic a=2"
    std::string kind;  // "quadratic"
    std::vector<ParamValue> parameters;
    Drawing drawing;
};

struct Picture {
    Window window;
    std::vector<Curve> curves;
    bool axes = true;
    std::string title; // empty for none
};

std::vector<PixelPoint> pixelPoints(qelt::oss::PointerTC<qelt::mathapp::ds::GraphDataSetWinC> const &set);

// Splits a data set into the stretches the display joins: a stretch ends at a
// LAST_VISIBLE point and a new one starts at a FIRST_VISIBLE point. A point
// more than one pixel outside the grid is not drawn and ends its stretch, so
// a coordinate that came out wrapped (column 65535) never draws a line across
// the picture; one pixel outside is kept, because a span clamped to the
// grid's edge ends there, and the line to it is clipped. With columnWalk set,
// points more than one column apart are not joined either: an evaluator that
// only walks columns and sets no markers leaves such a jump where the curve
// has no points.
std::vector<Stroke> visibleStretches(std::vector<PixelPoint> const &points, Window const &w, bool columnWalk);

// A stroke cut where its shade changes. A segment between two UNDECIDED
// points is drawn in the relation's lighter shade, any other in its colour;
// neighbouring pieces share their end point. A one-point stroke is one piece.
struct ShadedPiece {
    std::vector<PixelPoint> points;
    bool undecided;
};
std::vector<ShadedPiece> shadedPieces(Stroke const &stroke);

bool isUndecided(PixelPoint const &p);

// One row run of a pixel-run drawing: columns first .. last of a screen row.
struct PixelRun {
    std::int32_t row;
    std::int32_t first;
    std::int32_t last;
    bool undecided;
    std::int64_t length() const { return std::int64_t(last) - first + 1; }
};

// The runs of a drawing whose points are pixel runs: a run goes from a point
// marked FIRST_VISIBLE to the next marked LAST_VISIBLE (the same point for a
// run of one pixel). A point that does not pair up that way, or whose partner
// lies on another row, is a run of its own pixel.
std::vector<PixelRun> rowRuns(std::vector<PixelPoint> const &points);

// A pixel-run drawing as the pictures draw it: the inside of a region (the
// pixels with a drawn pixel of the same drawing, or the window's edge, on all
// four sides), shaded every other pixel under the grid and axes so that they
// and other regions still show through it, and the rest (a region's edge, an
// implicit curve's pixels), drawn solid over them.
struct RunLayers {
    std::vector<PixelRun> inside;
    std::vector<PixelRun> edge;
};
RunLayers runLayers(std::vector<PixelRun> runs, Window const &w);

// The pixels a drawing shows: every pixel of every run for a pixel-run
// drawing, else its points.
std::uint64_t pixelCount(Drawing const &d);

} // namespace evalgtool

#endif

#ifndef EVALG_TESTS_TESTSUPPORT_H
#define EVALG_TESTS_TESTSUPPORT_H

// What the evaluator tests share: windows, the points of a result as plain
// values, and drawing a relation through a real service.
#include <ostream>
#include <string>
#include <vector>

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/ds/GraphicalDomainC.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/oss/PointerTC.h"
#include "collab/rel/RelationC.h"
#include "evalg/CartesianRelationGraphEvalC.h"

namespace evalgtest {

using qelt::oss::PointerTC;
using qelt::mathapp::ds::GraphDataSetWinC;
using qelt::mathapp::ds::GraphicalDomainC;

struct Window {
    double xMin, xMax, yMin, yMax;
    unsigned short m, n;
};

// The handheld's default screen: 161x101 over [-8, 8] x [-5, 5].
inline Window defaultWindow() { return Window{-8, 8, -5, 5, 161, 101}; }

// A window's pixel grid as the evaluators derive it: column c spans
// [columnEdge(c), columnEdge(c + 1)], row r (from the bottom) likewise.
struct Grid {
    double xStep, yStep, leftEdge, bottomEdge;
    explicit Grid(Window const &w)
        : xStep((w.xMax - w.xMin) / double(w.m - 1)), yStep((w.yMax - w.yMin) / double(w.n - 1)),
          leftEdge(w.xMin - xStep * 0.5), bottomEdge(w.yMin - yStep * 0.5) {}
    double columnEdge(int c) const { return leftEdge + xStep * double(c); }
    double rowEdge(int r) const { return bottomEdge + yStep * double(r); }
};

PointerTC<GraphicalDomainC> makeDomain(Window const &w);

// One pixel point with its marker byte.
struct Pt {
    int x, y;
    unsigned m;
    bool operator==(Pt const &o) const { return x == o.x && y == o.y && m == o.m; }
};
std::ostream &operator<<(std::ostream &os, Pt const &p);

// Points without markers, for comparisons that ignore them.
struct XY {
    int x, y;
    bool operator==(XY const &o) const { return x == o.x && y == o.y; }
};
std::ostream &operator<<(std::ostream &os, XY const &p);

std::vector<Pt> points(PointerTC<GraphDataSetWinC> const &set);
std::vector<XY> xys(std::vector<Pt> const &pts);
// Marker bytes in order, and the indices carrying a given bit.
std::vector<size_t> withMarker(std::vector<Pt> const &pts, unsigned bit);

// Draws relation on window with evaluator, through a CartesianRelationServiceC.
std::vector<Pt> draw(qelt::mathapp::evalg::CartesianRelationGraphEvalC &evaluator,
                     PointerTC<qelt::mathapp::rel::RelationC> relation, Window const &w);

// Deterministic generator for seeded random tests (same sequence everywhere).
class Rng {
public:
    explicit Rng(unsigned long long seed) : s_(seed * 0x9E3779B97F4A7C15ULL + 1) {}
    unsigned long long next();
    double uniform(double lo, double hi);
    // Mostly ordinary values in [-range, range], sometimes 0, NaN, the
    // infinities, 1e300, -1e300, 1e-300 and -1e-300.
    double wild(double range);
    int below(int n) { return int(next() % (unsigned long long)n); }

private:
    unsigned long long s_;
};

} // namespace evalgtest

#endif

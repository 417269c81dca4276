// Batched span emission against plain one-span-at-a-time emission, written
// here from the pixel rules with an IEEE division and std::floor per index
// (no reciprocal, no vector lanes): over a million seeded random spans per
// path, with NaN, infinities, signed zeros, denormals, huge values and values
// one ulp either side of pixel boundaries and centres, appended and
// prepended, along columns and rows, with markers pending in the spare slots.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <vector>

#include "ProbeEvalC.h"
#include "TestSupport.h"
#include "collab/ds/PixelPointC.h"
#include "evalg/SpanEmissionC.h"

using namespace evalgtest;
using qelt::mathapp::ds::PixelPointC;
using qelt::mathapp::evalg::SpanEmissionC;

namespace {

double const NaN = std::numeric_limits<double>::quiet_NaN();
double const Inf = std::numeric_limits<double>::infinity();

// Opens the buffered emission of the helper, besides what the probe opens.
class Emitter : public ProbeEvalC {
public:
    using CartesianRelationGraphEvalHelperC::AxisE;
    using CartesianRelationGraphEvalHelperC::EndE;
    using CartesianRelationGraphEvalHelperC::bindSpans;
    using CartesianRelationGraphEvalHelperC::unbindSpans;
    using CartesianRelationGraphEvalHelperC::pushSpan;
    using CartesianRelationGraphEvalHelperC::openStretch;
    using CartesianRelationGraphEvalHelperC::closeStretch;
    using CartesianRelationGraphEvalHelperC::closeStretchAt;
    using CartesianRelationGraphEvalHelperC::boundCount;
    using CartesianRelationGraphEvalHelperC::SpanCursorC;
};
Emitter::AxisE const COLUMNS = Emitter::AxisE(0), ROWS = Emitter::AxisE(2);
Emitter::EndE const BACK = Emitter::EndE(0), FRONT = Emitter::EndE(1);

// floor(n / d) kept to its low 16 bits through the 64-bit truncation: NaN,
// the infinities and |v| >= 2^63 give 0.
uint16_t floorIndex(double n, double d) {
    double v = std::floor(n / d);
    if (!(std::fabs(v) < 9223372036854775808.0)) return 0;
    return uint16_t(uint64_t(int64_t(v)));
}

// One span the plain way, straight into the reference set.
void referenceSpan(Emitter const &e, GraphDataSetWinC &ref, bool rows, bool front, double at, double v1, double v2) {
    double lo = rows ? e.leftEdge : e.bottomEdge, hi = rows ? e.rightEdge : e.topEdge;
    if (v1 < lo && !(v2 >= lo)) return;
    if (v1 > hi && v2 > hi) return;
    double cLo = rows ? lo : e.yHalfStep + e.bottomEdge, cHi = rows ? hi : e.topEdge - e.yHalfStep;
    double start, end;
    if (v1 < v2) {
        start = v1 > cLo ? v1 : cLo;
        end = v2 < cHi ? v2 : cHi;
    } else {
        start = !(v1 < cHi) ? cHi : v1;
        end = v2 > cLo ? v2 : cLo;
    }
    double atOrigin = rows ? e.bottomEdge : e.leftEdge, atStep = rows ? e.yStep : e.xStep;
    double runOrigin = rows ? e.leftEdge : e.bottomEdge, runStep = rows ? e.xStep : e.yStep;
    int cell = floorIndex(at - atOrigin, atStep);
    int first = int16_t(floorIndex(start - runOrigin, runStep));
    int last = floorIndex(end - runOrigin, runStep);
    int stride = std::abs(last - first) > 0 ? std::abs(last - first) : 1;
    bool up = start < end;
    if (up ? first > last : first < last) return;
    for (int r = first; up ? r <= last : r >= last; r += up ? stride : -stride) {
        long x = rows ? r : cell, y = rows ? int(e.pixelRows) - cell - 1 : int(e.pixelRows) - r - 1;
        if (front)
            ref.prependPixelPoint(x, y, 0);
        else
            ref.appendPixelPoint(x, y, 0);
    }
}

// A random window: scales from 1e-12 to 1e12, sizes from 1 to 32767.
Window randomWindow(Rng &rng) {
    double scale = std::pow(10.0, rng.uniform(-12, 12));
    double x0 = rng.uniform(-10, 10) * scale, y0 = rng.uniform(-10, 10) * scale;
    int sizes[] = {1, 2, 3, 5, 101, 161, 1080, 1920, 32767};
    auto size = [&] { return (unsigned short)(rng.below(3) ? 1 + rng.below(400) : sizes[rng.below(9)]); };
    return Window{x0, x0 + rng.uniform(0.01, 30) * scale, y0, y0 + rng.uniform(0.01, 30) * scale, size(), size()};
}

// A coordinate near the window on one axis: pixel boundaries and centres and
// one ulp either side, plain values inside and around, and the wild ones.
double randomCoordinate(Rng &rng, double edge, double step, int cells) {
    double const wild[] = {NaN, Inf, -Inf, 0.0, -0.0, 4.9e-324, -4.9e-324, 2.2250738585072014e-308,
                           1.7976931348623157e308, -1.7976931348623157e308, 1e300, -1e19, 9.3e18};
    switch (rng.below(8)) {
    case 0: return wild[rng.below(13)];
    case 1:
    case 2: {
        double b = edge + step * double(rng.below(cells + 3) - 1) + (rng.below(2) ? 0.5 * step : 0.0);
        int side = rng.below(3);
        return side == 0 ? b : std::nextafter(b, side == 1 ? Inf : -Inf);
    }
    case 3: return edge + step * rng.uniform(-1e6, 1e6);
    default: return edge + step * rng.uniform(-3, double(cells) + 3);
    }
}

// Runs ops random operations on a fresh set through the buffer and on a
// copy the plain way; returns the number of spans pushed.
long compareOneWindow(Rng &rng, int ops, long &mismatches) {
    Emitter e;
    Window w = randomWindow(rng);
    if (!e.setDomain(makeDomain(w))) return 0;
    unsigned hint = unsigned(rng.below(20));
    PointerTC<GraphDataSetWinC> set(new GraphDataSetWinC(hint, hint / 2, makeDomain(w)));
    PointerTC<GraphDataSetWinC> ref(new GraphDataSetWinC(0, 0, makeDomain(w)));
    e.bindSpans(set.get());
    unsigned char const firstBit = PixelPointC::FIRST_VISIBLE, lastBit = PixelPointC::LAST_VISIBLE;
    auto refMark = [&](long index, unsigned char bit) {
        unsigned int n = 0;
        ref->getPixelMarkers(n)[index] |= bit;
    };
    long spans = 0;
    // Runs of one orientation and end, as walks push them, so batches fill.
    bool rows = false, front = false;
    for (int i = 0; i < ops; ++i) {
        int op = rng.below(200);
        if (op < 4) {
            rows = rng.below(2);
            front = rng.below(2);
        } else if (op == 4) {
            e.openStretch();
            refMark(long(ref->getCount()), firstBit);
        } else if (op == 5) {
            e.closeStretch();
            refMark(long(ref->getCount()) - 1, lastBit);
        } else if (op == 6) {
            long index = long(rng.below(int(e.boundCount()) + 2)) - 1;
            e.closeStretchAt(index);
            refMark(index, lastBit);
        } else {
            double at = rows ? randomCoordinate(rng, e.bottomEdge, e.yStep, w.n)
                             : randomCoordinate(rng, e.leftEdge, e.xStep, w.m);
            double v1 = rows ? randomCoordinate(rng, e.leftEdge, e.xStep, w.m)
                             : randomCoordinate(rng, e.bottomEdge, e.yStep, w.n);
            double v2 = rng.below(6) == 0 ? v1
                        : rows          ? randomCoordinate(rng, e.leftEdge, e.xStep, w.m)
                                        : randomCoordinate(rng, e.bottomEdge, e.yStep, w.n);
            e.pushSpan(rows ? ROWS : COLUMNS, front ? FRONT : BACK, at, v1, v2);
            referenceSpan(e, *ref, rows, front, at, v1, v2);
            ++spans;
        }
    }
    e.unbindSpans();
    std::vector<Pt> got = points(set), want = points(ref);
    // The spare slots too: a marker left pending must be the same.
    unsigned int n = 0;
    bool sparesEqual = set->getPixelMarkers(n)[-1] == ref->getPixelMarkers(n)[-1] &&
                       set->getPixelMarkers(n)[n] == ref->getPixelMarkers(n)[n];
    if (got != want || !sparesEqual) {
        ++mismatches;
        if (mismatches <= 3) {
            ADD_FAILURE() << "window " << w.xMin << ".." << w.xMax << " x " << w.yMin << ".." << w.yMax << " "
                          << w.m << "x" << w.n << ": " << got.size() << " points, expected " << want.size();
        }
    }
    return spans;
}

void compareOnPath(SpanEmissionC::PathE path, unsigned long long seed) {
    SpanEmissionC::forcePath(path);
    Rng rng(seed);
    long spans = 0, mismatches = 0;
    while (spans < 1000000) spans += compareOneWindow(rng, 1 + rng.below(4000), mismatches);
    SpanEmissionC::unforcePath();
    EXPECT_EQ(mismatches, 0);
}

TEST(EmissionDifferential, ScalarFlushMatchesPlainEmission) { compareOnPath(SpanEmissionC::SCALAR, 11); }

// The vector paths where the CPU has them; elsewhere these repeat a slower one.
TEST(EmissionDifferential, TwoLaneFlushMatchesPlainEmission) {
    SpanEmissionC::forcePath(SpanEmissionC::SSE2);
    std::printf("flush path: %d\n", int(SpanEmissionC::path()));
    compareOnPath(SpanEmissionC::SSE2, 13);
}

TEST(EmissionDifferential, FourLaneFlushMatchesPlainEmission) {
    SpanEmissionC::forcePath(SpanEmissionC::AVX2);
    std::printf("flush path: %d\n", int(SpanEmissionC::path()));
    compareOnPath(SpanEmissionC::AVX2, 12);
}

// The walks' cursor against pushing span by span: runs of every length up to
// several buffers, both ends and both axes, some after spans of another kind
// are pending, with markers set between runs (the cursor closed around them).
TEST(EmissionDifferential, CursorMatchesPushing) {
    Rng rng(31);
    for (int trial = 0; trial < 300; ++trial) {
        Window w = randomWindow(rng);
        Emitter a, b;
        if (!a.setDomain(makeDomain(w)) || !b.setDomain(makeDomain(w))) continue;
        PointerTC<GraphDataSetWinC> viaCursor(new GraphDataSetWinC(0, 0, makeDomain(w)));
        PointerTC<GraphDataSetWinC> viaPush(new GraphDataSetWinC(0, 0, makeDomain(w)));
        a.bindSpans(viaCursor.get());
        b.bindSpans(viaPush.get());
        for (int run = 0; run < 4; ++run) {
            bool rows = rng.below(2), front = rng.below(2);
            Emitter::AxisE axis = rows ? ROWS : COLUMNS;
            Emitter::EndE end = front ? FRONT : BACK;
            int length = rng.below(3) ? rng.below(40) : rng.below(900);
            Emitter::SpanCursorC cursor(a, axis, end);
            for (int i = 0; i < length; ++i) {
                double at = rows ? randomCoordinate(rng, a.bottomEdge, a.yStep, w.n)
                                 : randomCoordinate(rng, a.leftEdge, a.xStep, w.m);
                double v1 = rows ? randomCoordinate(rng, a.leftEdge, a.xStep, w.m)
                                 : randomCoordinate(rng, a.bottomEdge, a.yStep, w.n);
                double v2 = rows ? randomCoordinate(rng, a.leftEdge, a.xStep, w.m)
                                 : randomCoordinate(rng, a.bottomEdge, a.yStep, w.n);
                cursor.put(at, v1, v2);
                b.pushSpan(axis, end, at, v1, v2);
            }
            cursor.close();
            if (rng.below(2)) {
                a.closeStretch();
                b.closeStretch();
            }
        }
        a.unbindSpans();
        b.unbindSpans();
        ASSERT_EQ(points(viaCursor), points(viaPush)) << "trial " << trial;
    }
}

// Batches of every length up to a full buffer and beyond, on the boundaries
// of the four-span groups: lengths 1..300 of in-grid spans, both ends.
TEST(EmissionDifferential, EveryBatchLength) {
    for (int front = 0; front < 2; ++front) {
        for (int length = 1; length <= 300; ++length) {
            Emitter e;
            Window w{0, 9, 0, 9, 10, 10};
            ASSERT_TRUE(e.setDomain(makeDomain(w)));
            PointerTC<GraphDataSetWinC> set(new GraphDataSetWinC(0, 0, makeDomain(w)));
            PointerTC<GraphDataSetWinC> ref(new GraphDataSetWinC(0, 0, makeDomain(w)));
            e.bindSpans(set.get());
            for (int i = 0; i < length; ++i) {
                double at = i % 10, v1 = (i * 7) % 11 - 0.4, v2 = (i * 3) % 12 - 1.2;
                e.pushSpan(COLUMNS, front ? FRONT : BACK, at, v1, v2);
                referenceSpan(e, *ref, false, front, at, v1, v2);
            }
            e.unbindSpans();
            ASSERT_EQ(points(set), points(ref)) << "length " << length << (front ? " prepended" : " appended");
        }
    }
}

} // namespace

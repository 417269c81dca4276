#ifndef QELT_EVALG_SPANEMISSIONC_H
#define QELT_EVALG_SPANEMISSIONC_H

#include <cstddef>
#include <cstdint>

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/ds/POINT.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Turns a batch of spans into pixel points, written straight into the room a
// data set reserves for them. A span is one cell along the walked axis (at)
// and a run across it (from, to); it yields its start cell and its end cell,
// at most two points. Four spans at a time where the CPU has AVX2 (chosen at
// run time), two at a time on other x86 CPUs (SSE2), one at a time elsewhere;
// all give the same points to the bit.
class SpanEmissionC {
public:
    // The numbers of one orientation, read off the window. For vertical runs
    // in a column, the walked axis is x and the run's axis y; for horizontal
    // runs in a row (the swapped form), the other way round.
    struct FrameS {
        double gateLow, gateHigh;   // a span wholly beyond these is dropped
        double clampLow, clampHigh; // run ends are clamped to these
        double atOrigin, atStep, atReciprocal;
        double runOrigin, runStep, runReciprocal;
        int pixelRows;
        bool rows; // runs lie along x, in the row of at
        // Set by prepare: every index the vector paths settle fits 0..32767.
        // A frame without it goes one span at a time.
        bool vectorReady;
    };

    // Works out vectorReady, once per frame rather than on every flush.
    static void prepare(FrameS &frame);

    // A batch of spans, one array per coordinate so that four load at once.
    struct BatchS {
        static unsigned const CAPACITY = 256;
        double at[CAPACITY];
        double from[CAPACITY];
        double to[CAPACITY];
    };

    // In order of speed: a CPU with one path has those before it.
    enum PathE { SCALAR, SSE2, AVX2 };

    // Appends (front false) or prepends the points of spans 0 .. n-1 to set,
    // exactly as emitting them one span after the other, each point with
    // marker 0. n is at most BatchS::CAPACITY.
    static void emit(FrameS const &frame, BatchS const &batch, unsigned n, ds::GraphDataSetWinC &set, bool front);

    // The path emit takes: the fastest the CPU runs, unless forced (for
    // tests comparing the paths). Forcing a path the CPU lacks is ignored.
    static PathE path();
    static void forcePath(PathE p);
    static void unforcePath();

    // The points of one span: count 0, 1 or 2, in emission order.
    struct PointsS {
        POINT p[2];
        int32_t count;
    };
    static PointsS spanPoints(FrameS const &frame, double at, double from, double to);

private:
    // Write the spans' points to out, out + dir, out + 2*dir, ... and return
    // how many they wrote; out must have room for 2n points that way.
    static std::size_t pointsScalar(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                    std::ptrdiff_t dir);
    static std::size_t points(PathE path, FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                              std::ptrdiff_t dir);
    static std::size_t pointsSse2(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                  std::ptrdiff_t dir);
    static std::size_t pointsAvx2(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                  std::ptrdiff_t dir);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif

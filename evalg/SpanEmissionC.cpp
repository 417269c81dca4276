#include "evalg/SpanEmissionC.h"

#include <cstdlib>

#include "collab/oss/IntegerConversionC.h"
#include "evalg/GraphDomainServiceNames.h"

#if defined(__x86_64__) && defined(__GNUC__) && !defined(EVALG_SCALAR_EMISSION)
#define EVALG_HAVE_AVX2_PATH 1
#include <immintrin.h>
#endif

namespace qelt {
namespace mathapp {
namespace evalg {

using oss::IntegerConversionC;

namespace {

// Writes the points of one span from its cell indices: its start cell, then
// its end cell when that is another. Stepping from first by the whole
// distance to last is what limits a span to two points; a span whose start
// lies beyond its end (after clamping) yields none. first is a signed 16-bit
// index and last an unsigned one, as the pixel arithmetic has them, and they
// are compared as such. Both slots are written whatever the count: the
// caller has room for two points per span. Returns the count.
inline int32_t place(SpanEmissionC::FrameS const &frame, bool rising, uint16_t at, int16_t first, uint16_t last,
                     POINT *p0, POINT *p1) {
    int f = first;
    int l = last;
    if (rising ? f > l : f < l) return 0;
    int cross = frame.pixelRows - int(at) - 1;
    if (frame.rows) {
        *p0 = POINT{f, cross};
        *p1 = POINT{l, cross};
    } else {
        *p0 = POINT{int32_t(at), frame.pixelRows - f - 1};
        *p1 = POINT{int32_t(at), frame.pixelRows - l - 1};
    }
    return f == l ? 1 : 2;
}

// The clamped run of one span in the order it is drawn; false when the span
// lies wholly beyond the gates.
inline bool clampRun(SpanEmissionC::FrameS const &frame, double y1, double y2, double &start, double &end) {
    // Wholly below (a NaN y2 with y1 below is dropped here too), or above.
    if (y1 < frame.gateLow && !(y2 >= frame.gateLow)) return false;
    if (y1 > frame.gateHigh && y2 > frame.gateHigh) return false;
    if (y1 < y2) {
        start = y1 > frame.clampLow ? y1 : frame.clampLow;
        end = y2 < frame.clampHigh ? y2 : frame.clampHigh;
    } else {
        start = !(y1 < frame.clampHigh) ? frame.clampHigh : y1;
        end = y2 > frame.clampLow ? y2 : frame.clampLow;
    }
    return true;
}

// One span, the reference way. out[0] and out[dir] receive its points.
inline int32_t scalarSpan(SpanEmissionC::FrameS const &frame, double at, double y1, double y2, POINT *p0,
                          POINT *p1) {
    double start, end;
    if (!clampRun(frame, y1, y2, start, end)) return 0;
    // at is not clamped: the walk passes a cell inside the grid.
    uint16_t cell = IntegerConversionC::floorQuotientToUInt16(at - frame.atOrigin, frame.atStep, frame.atReciprocal);
    int16_t first =
        IntegerConversionC::floorQuotientToInt16(start - frame.runOrigin, frame.runStep, frame.runReciprocal);
    // A single point (or a flat span) needs its index only once.
    uint16_t last = end == start ? uint16_t(first)
                                 : IntegerConversionC::floorQuotientToUInt16(end - frame.runOrigin, frame.runStep,
                                                                             frame.runReciprocal);
    return place(frame, start < end, cell, first, last, p0, p1);
}

// The path the CPU can run, found once; and a forced choice for tests.
SpanEmissionC::PathE detectPath() {
#ifdef EVALG_HAVE_AVX2_PATH
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2")) return SpanEmissionC::AVX2;
#endif
    return SpanEmissionC::SCALAR;
}
SpanEmissionC::PathE const bestPath = detectPath();
SpanEmissionC::PathE chosenPath = bestPath;

} // namespace

SpanEmissionC::PathE SpanEmissionC::path() { return chosenPath; }

void SpanEmissionC::forcePath(PathE p) {
    if (p == SCALAR || p == bestPath) chosenPath = p;
}

void SpanEmissionC::unforcePath() { chosenPath = bestPath; }

SpanEmissionC::PointsS SpanEmissionC::spanPoints(FrameS const &frame, double at, double from, double to) {
    PointsS r;
    r.count = scalarSpan(frame, at, from, to, &r.p[0], &r.p[1]);
    return r;
}

std::size_t SpanEmissionC::pointsScalar(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                        std::ptrdiff_t dir) {
    std::ptrdiff_t k = 0;
    for (unsigned i = 0; i < n; ++i)
        k += scalarSpan(frame, batch.at[i], batch.from[i], batch.to[i], out + k * dir, out + (k + 1) * dir);
    return std::size_t(k);
}

#ifdef EVALG_HAVE_AVX2_PATH

namespace {

// floorQuotient of four lanes at once: the product with the reciprocal
// where it provably floors to the same integer as the quotient (the bound of
// IntegerConversionC::floorQuotient, tested the same way), else the IEEE
// quotient and its floor. Lanes whose index does not fit 32 bits, NaN
// included, are flagged in bad and left to the scalar path.
__attribute__((target("avx2"))) inline __m128i floorQuotient4(__m256d n, __m256d d, __m256d inv, __m256d &bad) {
    __m256d const signBit = _mm256_set1_pd(-0.0);
    __m256d const limit = _mm256_set1_pd(2147483648.0);
    __m256d r = _mm256_mul_pd(n, inv);
    __m256d a = _mm256_andnot_pd(signBit, r);
    __m256d fl = _mm256_floor_pd(r);
    // Exact below 2^52, as the scalar fraction.
    __m256d frac = _mm256_sub_pd(r, fl);
    __m256d margin = _mm256_add_pd(_mm256_mul_pd(a, _mm256_set1_pd(0x1p-48)), _mm256_set1_pd(0x1p-1000));
    __m256d ok = _mm256_and_pd(_mm256_cmp_pd(a, limit, _CMP_LT_OQ),
                               _mm256_and_pd(_mm256_cmp_pd(frac, margin, _CMP_GT_OQ),
                                             _mm256_cmp_pd(frac, _mm256_sub_pd(_mm256_set1_pd(1.0), margin),
                                                           _CMP_LT_OQ)));
    if (_mm256_movemask_pd(ok) != 0xF) {
        __m256d q = _mm256_floor_pd(_mm256_div_pd(n, d));
        __m256d qFits = _mm256_cmp_pd(_mm256_andnot_pd(signBit, q), limit, _CMP_LT_OQ);
        bad = _mm256_or_pd(bad, _mm256_andnot_pd(ok, _mm256_andnot_pd(qFits, _mm256_castsi256_pd(
                                                                                _mm256_set1_epi64x(-1)))));
        fl = _mm256_blendv_pd(q, fl, ok);
        // A bad lane may hold NaN or a huge value: give the conversion a 0.
        fl = _mm256_andnot_pd(bad, fl);
    }
    return _mm256_cvttpd_epi32(fl);
}

// Four 64-bit lane masks as four 32-bit ones.
__attribute__((target("avx2"))) inline __m128i narrow(__m256d mask) {
    __m128 low = _mm256_castps256_ps128(_mm256_castpd_ps(mask));
    __m128 high = _mm256_extractf128_ps(_mm256_castpd_ps(mask), 1);
    return _mm_castps_si128(_mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0)));
}

// Four spans at a time. ROWS and FRONT are the frame's orientation and the
// set's end, fixed for a batch. A group with a lane the vector arithmetic
// cannot settle (an index beyond 32 bits, NaN) goes to the scalar path whole,
// so the points keep their order.
template <bool ROWS, bool FRONT>
__attribute__((target("avx2"))) std::size_t pointsAvx2Oriented(SpanEmissionC::FrameS const &frame,
                                                              SpanEmissionC::BatchS const &batch, unsigned n,
                                                              POINT *out) {
    std::ptrdiff_t const dir = FRONT ? -1 : 1;
    __m256d const gateLow = _mm256_set1_pd(frame.gateLow);
    __m256d const gateHigh = _mm256_set1_pd(frame.gateHigh);
    __m256d const clampLow = _mm256_set1_pd(frame.clampLow);
    __m256d const clampHigh = _mm256_set1_pd(frame.clampHigh);
    __m256d const atOrigin = _mm256_set1_pd(frame.atOrigin);
    __m256d const atStep = _mm256_set1_pd(frame.atStep);
    __m256d const atReciprocal = _mm256_set1_pd(frame.atReciprocal);
    __m256d const runOrigin = _mm256_set1_pd(frame.runOrigin);
    __m256d const runStep = _mm256_set1_pd(frame.runStep);
    __m256d const runReciprocal = _mm256_set1_pd(frame.runReciprocal);
    __m128i const lastRow = _mm_set1_epi32(frame.pixelRows - 1);
    __m128i const low16 = _mm_set1_epi32(0xFFFF);
    __m128i const two = _mm_set1_epi32(2);
    std::ptrdiff_t k = 0;
    unsigned i = 0;
    for (; i + 4 <= n; i += 4) {
        __m256d at = _mm256_loadu_pd(batch.at + i);
        __m256d y1 = _mm256_loadu_pd(batch.from + i);
        __m256d y2 = _mm256_loadu_pd(batch.to + i);
        // The gates and clamps of clampRun, with its NaN behaviour: ordered
        // comparisons are false for NaN, !(a >= b) and !(a < b) true.
        __m256d drop = _mm256_or_pd(
            _mm256_and_pd(_mm256_cmp_pd(y1, gateLow, _CMP_LT_OQ), _mm256_cmp_pd(y2, gateLow, _CMP_NGE_UQ)),
            _mm256_and_pd(_mm256_cmp_pd(y1, gateHigh, _CMP_GT_OQ), _mm256_cmp_pd(y2, gateHigh, _CMP_GT_OQ)));
        int dropped = _mm256_movemask_pd(drop);
        if (dropped == 0xF) continue;
        __m256d rising = _mm256_cmp_pd(y1, y2, _CMP_LT_OQ);
        __m256d startUp = _mm256_blendv_pd(clampLow, y1, _mm256_cmp_pd(y1, clampLow, _CMP_GT_OQ));
        __m256d endUp = _mm256_blendv_pd(clampHigh, y2, _mm256_cmp_pd(y2, clampHigh, _CMP_LT_OQ));
        __m256d startDown = _mm256_blendv_pd(y1, clampHigh, _mm256_cmp_pd(y1, clampHigh, _CMP_NLT_UQ));
        __m256d endDown = _mm256_blendv_pd(clampLow, y2, _mm256_cmp_pd(y2, clampLow, _CMP_GT_OQ));
        __m256d start = _mm256_blendv_pd(startDown, startUp, rising);
        __m256d end = _mm256_blendv_pd(endDown, endUp, rising);

        __m256d bad = _mm256_setzero_pd();
        __m128i cell = floorQuotient4(_mm256_sub_pd(at, atOrigin), atStep, atReciprocal, bad);
        __m128i first = floorQuotient4(_mm256_sub_pd(start, runOrigin), runStep, runReciprocal, bad);
        __m128i last = floorQuotient4(_mm256_sub_pd(end, runOrigin), runStep, runReciprocal, bad);
        if (_mm256_movemask_pd(bad) & ~dropped) {
            for (unsigned j = i; j < i + 4; ++j)
                k += scalarSpan(frame, batch.at[j], batch.from[j], batch.to[j], out + k * dir, out + (k + 1) * dir);
            continue;
        }
        // The indices as the scalar conversions keep them: the cell and the
        // last index unsigned 16 bits, the first signed 16 bits.
        cell = _mm_and_si128(cell, low16);
        first = _mm_srai_epi32(_mm_slli_epi32(first, 16), 16);
        last = _mm_and_si128(last, low16);

        // Count of points per lane, place()'s rule: none when the start
        // index lies beyond the end index (after clamping), one when they
        // are equal, else two. The 64-bit lane masks are narrowed to 32 bits.
        __m128i ascending = narrow(_mm256_cmp_pd(start, end, _CMP_LT_OQ));
        __m128i none = _mm_or_si128(_mm_or_si128(_mm_and_si128(ascending, _mm_cmpgt_epi32(first, last)),
                                                 _mm_andnot_si128(ascending, _mm_cmplt_epi32(first, last))),
                                    narrow(drop));
        __m128i count = _mm_andnot_si128(none, _mm_add_epi32(two, _mm_cmpeq_epi32(first, last)));

        // Both points of each lane, x then y, as place() forms them.
        __m128i x0, y0, x1, y1i;
        if (ROWS) {
            x0 = first;
            x1 = last;
            y0 = y1i = _mm_sub_epi32(lastRow, cell);
        } else {
            x0 = x1 = cell;
            y0 = _mm_sub_epi32(lastRow, first);
            y1i = _mm_sub_epi32(lastRow, last);
        }
        __m128i p0Low = _mm_unpacklo_epi32(x0, y0), p0High = _mm_unpackhi_epi32(x0, y0);
        __m128i p1Low = _mm_unpacklo_epi32(x1, y1i), p1High = _mm_unpackhi_epi32(x1, y1i);
        __m128i pairs[4];
        if (FRONT) {
            // Written downwards: the end point sits below the start point.
            pairs[0] = _mm_unpacklo_epi64(p1Low, p0Low);
            pairs[1] = _mm_unpackhi_epi64(p1Low, p0Low);
            pairs[2] = _mm_unpacklo_epi64(p1High, p0High);
            pairs[3] = _mm_unpackhi_epi64(p1High, p0High);
        } else {
            pairs[0] = _mm_unpacklo_epi64(p0Low, p1Low);
            pairs[1] = _mm_unpackhi_epi64(p0Low, p1Low);
            pairs[2] = _mm_unpacklo_epi64(p0High, p1High);
            pairs[3] = _mm_unpackhi_epi64(p0High, p1High);
        }
        alignas(16) int32_t counts[4];
        _mm_store_si128(reinterpret_cast<__m128i *>(counts), count);
        // Each lane writes both its slots; the next lane's points overwrite
        // what the count leaves out. The room holds two points per span.
        for (unsigned j = 0; j < 4; ++j) {
            POINT *slot = FRONT ? out - k - 1 : out + k;
            _mm_storeu_si128(reinterpret_cast<__m128i *>(slot), pairs[j]);
            k += counts[j];
        }
    }
    for (; i < n; ++i)
        k += scalarSpan(frame, batch.at[i], batch.from[i], batch.to[i], out + k * dir, out + (k + 1) * dir);
    return std::size_t(k);
}

} // namespace

std::size_t SpanEmissionC::pointsAvx2(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                      std::ptrdiff_t dir) {
    if (frame.rows) return dir < 0 ? pointsAvx2Oriented<true, true>(frame, batch, n, out)
                                   : pointsAvx2Oriented<true, false>(frame, batch, n, out);
    return dir < 0 ? pointsAvx2Oriented<false, true>(frame, batch, n, out)
                   : pointsAvx2Oriented<false, false>(frame, batch, n, out);
}

#else

std::size_t SpanEmissionC::pointsAvx2(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                      std::ptrdiff_t dir) {
    return pointsScalar(frame, batch, n, out, dir);
}

#endif

void SpanEmissionC::emit(FrameS const &frame, BatchS const &batch, unsigned n, ds::GraphDataSetWinC &set,
                         bool front) {
    if (n == 0) return;
    bool avx2 = chosenPath == AVX2;
    // Room for two points per span; the spans commit what they wrote.
    if (front) {
        POINT *base = set.reservePrepend(2 * std::size_t(n));
        if (!base) return;
        // Each point goes in front of the one before: the first lands at [-1].
        std::size_t k = avx2 ? pointsAvx2(frame, batch, n, base - 1, -1) : pointsScalar(frame, batch, n, base - 1, -1);
        set.commitPrepend(k);
    } else {
        POINT *base = set.reserveAppend(2 * std::size_t(n));
        if (!base) return;
        std::size_t k = avx2 ? pointsAvx2(frame, batch, n, base, 1) : pointsScalar(frame, batch, n, base, 1);
        set.commitAppend(k);
    }
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

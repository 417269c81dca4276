#include "evalg/SpanEmissionC.h"

#include <cmath>
#include <cstdlib>

#include "collab/oss/IntegerConversionC.h"
#include "evalg/GraphDomainServiceNames.h"

#if defined(__SSE2__) && !defined(EVALG_SCALAR_EMISSION)
#define EVALG_HAVE_SSE2_PATH 1
#include <emmintrin.h>
#endif
#if defined(EVALG_HAVE_SSE2_PATH) && defined(__x86_64__) && defined(__GNUC__)
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

// Whether every run end the vector path settles has its index in 0 .. 32767,
// where the signed and unsigned 16-bit forms of an index agree and never
// wrap. A span that is not dropped (and holds no NaN) has both clamped ends
// between the least and the greatest of the gates and clamps: its start is at
// least the low clamp and, not lying wholly beyond the high gate, at most
// that gate or the low clamp; its end the same way round. The index of a
// value is monotone in it (a subtraction, a division by a positive step, a
// floor), so it lies between the indices of those bounds.
bool indicesFitSixteenBits(SpanEmissionC::FrameS const &frame) {
    // A NaN bound would bound nothing: the scalar path.
    double const bounds[3] = {frame.gateHigh, frame.clampLow, frame.clampHigh};
    double low = frame.gateLow, high = frame.gateLow;
    for (double b : bounds) {
        low = b < low ? b : low;
        high = b > high ? b : high;
    }
    if (std::isnan(frame.gateLow + frame.gateHigh + frame.clampLow + frame.clampHigh)) return false;
    if (!(frame.runStep > 0)) return false;
    double first = std::floor((low - frame.runOrigin) / frame.runStep);
    double last = std::floor((high - frame.runOrigin) / frame.runStep);
    return first >= 0 && last <= 32767;
}

// The path the CPU can run, found once; and a forced choice for tests.
SpanEmissionC::PathE detectPath() {
#ifdef EVALG_HAVE_AVX2_PATH
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2")) return SpanEmissionC::AVX2;
#endif
#ifdef EVALG_HAVE_SSE2_PATH
    return SpanEmissionC::SSE2;
#else
    return SpanEmissionC::SCALAR;
#endif
}
SpanEmissionC::PathE const bestPath = detectPath();
SpanEmissionC::PathE chosenPath = bestPath;

} // namespace

SpanEmissionC::PathE SpanEmissionC::path() { return chosenPath; }

void SpanEmissionC::prepare(FrameS &frame) { frame.vectorReady = indicesFitSixteenBits(frame); }

void SpanEmissionC::forcePath(PathE p) {
    // A CPU with a path has the ones before it.
    if (p <= bestPath) chosenPath = p;
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

#ifdef EVALG_HAVE_SSE2_PATH

namespace {

// Calls the kernel built for the frame's orientation and the set's end, so
// that neither is tested per span.
template <class KernelT>
std::size_t runOriented(SpanEmissionC::FrameS const &frame, SpanEmissionC::BatchS const &batch, unsigned n,
                        POINT *out, std::ptrdiff_t dir) {
    if (frame.rows)
        return dir < 0 ? KernelT::template run<true, true>(frame, batch, n, out)
                       : KernelT::template run<true, false>(frame, batch, n, out);
    return dir < 0 ? KernelT::template run<false, true>(frame, batch, n, out)
                   : KernelT::template run<false, false>(frame, batch, n, out);
}

// The floor of two values that fit 32 bits: the truncation, one less where
// it rounded up (SSE2 has no rounding to minus infinity). A value beyond 32
// bits, or a NaN, gives -2^31 or one below, which no caller takes for an
// index.
inline __m128d floorSse2(__m128d r) {
    __m128d t = _mm_cvtepi32_pd(_mm_cvttpd_epi32(r));
    return _mm_sub_pd(t, _mm_and_pd(_mm_cmpgt_pd(t, r), _mm_set1_pd(1.0)));
}

// As flooredProduct below, two lanes at a time.
inline __m128d flooredProductSse2(__m128d r, __m128d &ok) {
    __m128d fl = floorSse2(r);
    __m128d off = _mm_andnot_pd(_mm_set1_pd(-0.0), _mm_sub_pd(_mm_sub_pd(r, fl), _mm_set1_pd(0.5)));
    ok = _mm_and_pd(ok, _mm_cmplt_pd(off, _mm_set1_pd(0.5 - 0x1p-17)));
    return fl;
}

inline __m128d selectSse2(__m128d mask, __m128d ifSet, __m128d ifClear) {
    return _mm_or_pd(_mm_and_pd(mask, ifSet), _mm_andnot_pd(mask, ifClear));
}

// Two spans at a time, the same way as the four-lane kernel below (see
// there), with the integer forms of the indices making the points. The two
// kernels stay apart because the wider one must be compiled for AVX2 alone
// (a function attribute): a body shared through a template would carry that
// attribute into the two-lane form too, which must run on any x86-64 CPU.
struct Sse2KernelS {
    template <bool ROWS, bool FRONT>
    static std::size_t run(SpanEmissionC::FrameS const &frame, SpanEmissionC::BatchS const &batch, unsigned n,
                           POINT *out) {
        std::ptrdiff_t const dir = FRONT ? -1 : 1;
        __m128d const gateLow = _mm_set1_pd(frame.gateLow);
        __m128d const gateHigh = _mm_set1_pd(frame.gateHigh);
        __m128d const clampLow = _mm_set1_pd(frame.clampLow);
        __m128d const clampHigh = _mm_set1_pd(frame.clampHigh);
        __m128d const atOrigin = _mm_set1_pd(frame.atOrigin);
        __m128d const atReciprocal = _mm_set1_pd(frame.atReciprocal);
        __m128d const runOrigin = _mm_set1_pd(frame.runOrigin);
        __m128d const runReciprocal = _mm_set1_pd(frame.runReciprocal);
        __m128d const zero = _mm_setzero_pd();
        __m128d const cells = _mm_set1_pd(65536.0);
        __m128i const lastRow = _mm_set1_epi32(frame.pixelRows - 1);
        std::ptrdiff_t k = 0;
        unsigned i = 0;
        for (; i + 2 <= n; i += 2) {
            __m128d at = _mm_loadu_pd(batch.at + i);
            __m128d y1 = _mm_loadu_pd(batch.from + i);
            __m128d y2 = _mm_loadu_pd(batch.to + i);
            __m128d nan = _mm_cmpunord_pd(y1, y2);
            __m128d lo = _mm_min_pd(y1, y2);
            __m128d hi = _mm_max_pd(y1, y2);
            __m128d drop =
                _mm_andnot_pd(nan, _mm_or_pd(_mm_cmplt_pd(hi, gateLow), _mm_cmpgt_pd(lo, gateHigh)));
            int dropped = _mm_movemask_pd(drop);
            if (dropped == 0x3) continue;
            __m128d rising = _mm_cmplt_pd(y1, y2);
            __m128d low = _mm_max_pd(lo, clampLow);
            __m128d high = _mm_min_pd(hi, clampHigh);
            __m128d start = selectSse2(rising, low, high);
            __m128d end = selectSse2(rising, high, low);

            __m128d atOffset = _mm_sub_pd(at, atOrigin);
            __m128d startOffset = _mm_sub_pd(start, runOrigin);
            __m128d endOffset = _mm_sub_pd(end, runOrigin);
            __m128d cellProduct = _mm_mul_pd(atOffset, atReciprocal);
            __m128d ok = _mm_and_pd(_mm_cmpge_pd(cellProduct, zero), _mm_cmplt_pd(cellProduct, cells));
            __m128d cellF = flooredProductSse2(cellProduct, ok);
            __m128d firstF = flooredProductSse2(_mm_mul_pd(startOffset, runReciprocal), ok);
            __m128d lastF = flooredProductSse2(_mm_mul_pd(endOffset, runReciprocal), ok);
            if (_mm_movemask_pd(_mm_or_pd(_mm_andnot_pd(nan, ok), drop)) != 0x3) {
                cellF = floorSse2(_mm_div_pd(atOffset, _mm_set1_pd(frame.atStep)));
                firstF = floorSse2(_mm_div_pd(startOffset, _mm_set1_pd(frame.runStep)));
                lastF = floorSse2(_mm_div_pd(endOffset, _mm_set1_pd(frame.runStep)));
                __m128d fits = _mm_and_pd(_mm_cmpge_pd(cellF, zero), _mm_cmplt_pd(cellF, cells));
                if (_mm_movemask_pd(_mm_or_pd(_mm_andnot_pd(nan, fits), drop)) != 0x3) {
                    for (unsigned j = i; j < i + 2; ++j)
                        k += scalarSpan(frame, batch.at[j], batch.from[j], batch.to[j], out + k * dir,
                                        out + (k + 1) * dir);
                    continue;
                }
            }
            // The indices are exact integers: their 32-bit forms make the
            // points, (x, y) pairs in the low half of each register.
            __m128i cell = _mm_cvttpd_epi32(cellF);
            __m128i first = _mm_cvttpd_epi32(firstF);
            __m128i last = _mm_cvttpd_epi32(lastF);
            __m128i p0, p1;
            if (ROWS) {
                __m128i row = _mm_sub_epi32(lastRow, cell);
                p0 = _mm_unpacklo_epi32(first, row);
                p1 = _mm_unpacklo_epi32(last, row);
            } else {
                p0 = _mm_unpacklo_epi32(cell, _mm_sub_epi32(lastRow, first));
                p1 = _mm_unpacklo_epi32(cell, _mm_sub_epi32(lastRow, last));
            }
            // Each lane's (start, end) pair, written downwards when
            // prepending; both slots are written, the next lane overwriting
            // what the count leaves out.
            __m128i lane0 = FRONT ? _mm_unpacklo_epi64(p1, p0) : _mm_unpacklo_epi64(p0, p1);
            __m128i lane1 = FRONT ? _mm_unpackhi_epi64(p1, p0) : _mm_unpackhi_epi64(p0, p1);
            int equal = _mm_movemask_pd(_mm_cmpeq_pd(firstF, lastF));
            std::ptrdiff_t count0 = (dropped & 1) ? 0 : 2 - (equal & 1);
            std::ptrdiff_t count1 = (dropped & 2) ? 0 : 2 - (equal >> 1 & 1);
            _mm_storeu_si128(reinterpret_cast<__m128i *>(FRONT ? out - k - 1 : out + k), lane0);
            k += count0;
            _mm_storeu_si128(reinterpret_cast<__m128i *>(FRONT ? out - k - 1 : out + k), lane1);
            k += count1;
        }
        for (; i < n; ++i)
            k += scalarSpan(frame, batch.at[i], batch.from[i], batch.to[i], out + k * dir, out + (k + 1) * dir);
        return std::size_t(k);
    }
};

} // namespace

std::size_t SpanEmissionC::pointsSse2(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                      std::ptrdiff_t dir) {
    // A frame wider than a window can be (32767 cells): one span at a time.
    if (!frame.vectorReady) return pointsScalar(frame, batch, n, out, dir);
    return runOriented<Sse2KernelS>(frame, batch, n, out, dir);
}

#else

std::size_t SpanEmissionC::pointsSse2(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                      std::ptrdiff_t dir) {
    return pointsScalar(frame, batch, n, out, dir);
}

#endif

#ifdef EVALG_HAVE_AVX2_PATH

namespace {

// For each set of dropped lanes (bits 0-3) and lanes whose two cells agree
// (bits 4-7): where lanes 1, 2 and 3 start writing, counted from lane 0, and
// how many points the four bring, one byte each.
struct LaneOffsetsS {
    uint32_t packed[256];
};
constexpr LaneOffsetsS makeLaneOffsets() {
    LaneOffsetsS t{};
    for (unsigned m = 0; m < 256; ++m) {
        uint32_t k = 0, packed = 0;
        for (unsigned j = 0; j < 4; ++j) {
            if (j > 0) packed |= k << (8 * (j - 1));
            k += (m >> j & 1) ? 0 : (m >> (4 + j) & 1) ? 1 : 2;
        }
        t.packed[m] = packed | k << 24;
    }
    return t;
}
constexpr LaneOffsetsS laneOffsets = makeLaneOffsets();

// The floored product r, clearing ok's lanes where it is not provably the
// floored quotient: within 2^-17 of an integer.
__attribute__((target("avx2"))) inline __m256d flooredProduct(__m256d r, __m256d &ok) {
    __m256d fl = _mm256_floor_pd(r);
    __m256d off = _mm256_andnot_pd(_mm256_set1_pd(-0.0), _mm256_sub_pd(_mm256_sub_pd(r, fl), _mm256_set1_pd(0.5)));
    ok = _mm256_and_pd(ok, _mm256_cmp_pd(off, _mm256_set1_pd(0.5 - 0x1p-17), _CMP_LT_OQ));
    return fl;
}

// Four spans at a time, for a frame whose run indices fit (see above). ROWS
// and FRONT are the frame's orientation and the set's end, fixed for a batch.
// With the indices in range, a span that is not dropped yields its start
// cell and, when that is another, its end cell: the start never lies beyond
// the end the wrong way. An index is the product with the reciprocal where
// that provably floors as the quotient does (within 2^-17 of no integer,
// for the products of indices in range, all below 2^16: wider than the
// scalar bound, so never a different index), else the IEEE quotient's floor
// for the whole group. A group with a NaN, or a cell outside 0 .. 65535 (the
// walks keep theirs in the grid), goes to the scalar path whole, so the
// points keep their order.
struct Avx2KernelS {
    template <bool ROWS, bool FRONT>
    __attribute__((target("avx2"))) static std::size_t run(SpanEmissionC::FrameS const &frame,
                                                           SpanEmissionC::BatchS const &batch, unsigned n, POINT *out) {
        std::ptrdiff_t const dir = FRONT ? -1 : 1;
        __m256d const gateLow = _mm256_set1_pd(frame.gateLow);
        __m256d const gateHigh = _mm256_set1_pd(frame.gateHigh);
        __m256d const clampLow = _mm256_set1_pd(frame.clampLow);
        __m256d const clampHigh = _mm256_set1_pd(frame.clampHigh);
        __m256d const atOrigin = _mm256_set1_pd(frame.atOrigin);
        __m256d const atReciprocal = _mm256_set1_pd(frame.atReciprocal);
        __m256d const runOrigin = _mm256_set1_pd(frame.runOrigin);
        __m256d const runReciprocal = _mm256_set1_pd(frame.runReciprocal);
        __m256d const zero = _mm256_setzero_pd();
        __m256d const cells = _mm256_set1_pd(65536.0);
        __m256d const lastRow = _mm256_set1_pd(double(frame.pixelRows - 1));
        __m256d const magic = _mm256_set1_pd(0x1.8p52);
        std::ptrdiff_t k = 0;
        unsigned i = 0;
        for (; i + 4 <= n; i += 4) {
            __m256d at = _mm256_loadu_pd(batch.at + i);
            __m256d y1 = _mm256_loadu_pd(batch.from + i);
            __m256d y2 = _mm256_loadu_pd(batch.to + i);
            // Without NaN, clampRun's gates drop a span whose greater end lies
            // below the low gate or whose lesser end lies above the high one, and
            // its clamps raise the lesser end to the low clamp and lower the
            // greater to the high one; the start is the lesser end when rising.
            __m256d nan = _mm256_cmp_pd(y1, y2, _CMP_UNORD_Q);
            __m256d lo = _mm256_min_pd(y1, y2);
            __m256d hi = _mm256_max_pd(y1, y2);
            __m256d drop = _mm256_andnot_pd(nan, _mm256_or_pd(_mm256_cmp_pd(hi, gateLow, _CMP_LT_OQ),
                                                              _mm256_cmp_pd(lo, gateHigh, _CMP_GT_OQ)));
            int dropped = _mm256_movemask_pd(drop);
            if (dropped == 0xF) continue;
            __m256d rising = _mm256_cmp_pd(y1, y2, _CMP_LT_OQ);
            __m256d low = _mm256_max_pd(lo, clampLow);
            __m256d high = _mm256_min_pd(hi, clampHigh);
            __m256d start = _mm256_blendv_pd(high, low, rising);
            __m256d end = _mm256_blendv_pd(low, high, rising);

            __m256d atOffset = _mm256_sub_pd(at, atOrigin);
            __m256d startOffset = _mm256_sub_pd(start, runOrigin);
            __m256d endOffset = _mm256_sub_pd(end, runOrigin);
            __m256d cellProduct = _mm256_mul_pd(atOffset, atReciprocal);
            // A cell within 16 bits, as the scalar conversion keeps it, without
            // wrapping: the walks' cells are in the grid.
            __m256d ok = _mm256_and_pd(_mm256_cmp_pd(cellProduct, zero, _CMP_GE_OQ),
                                       _mm256_cmp_pd(cellProduct, cells, _CMP_LT_OQ));
            __m256d cellF = flooredProduct(cellProduct, ok);
            __m256d firstF = flooredProduct(_mm256_mul_pd(startOffset, runReciprocal), ok);
            __m256d lastF = flooredProduct(_mm256_mul_pd(endOffset, runReciprocal), ok);
            // Dropped lanes write nothing: whatever they hold is not looked at.
            if (_mm256_movemask_pd(_mm256_or_pd(_mm256_andnot_pd(nan, ok), drop)) != 0xF) {
                cellF = _mm256_floor_pd(_mm256_div_pd(atOffset, _mm256_set1_pd(frame.atStep)));
                firstF = _mm256_floor_pd(_mm256_div_pd(startOffset, _mm256_set1_pd(frame.runStep)));
                lastF = _mm256_floor_pd(_mm256_div_pd(endOffset, _mm256_set1_pd(frame.runStep)));
                __m256d fits =
                    _mm256_and_pd(_mm256_cmp_pd(cellF, zero, _CMP_GE_OQ), _mm256_cmp_pd(cellF, cells, _CMP_LT_OQ));
                if (_mm256_movemask_pd(_mm256_or_pd(_mm256_andnot_pd(nan, fits), drop)) != 0xF) {
                    for (unsigned j = i; j < i + 4; ++j)
                        k += scalarSpan(frame, batch.at[j], batch.from[j], batch.to[j], out + k * dir,
                                        out + (k + 1) * dir);
                    continue;
                }
            }
            // Each lane's two points as 64-bit (x, y) pairs: an integer below
            // 2^51 plus 1.5 * 2^52 leaves it, two's complement, in the low 32
            // bits; y goes up into the high ones. The indices are exact, so the
            // rows are too.
            __m256d x0, y0, x1, y1d;
            if (ROWS) {
                x0 = _mm256_add_pd(firstF, magic);
                x1 = _mm256_add_pd(lastF, magic);
                y0 = y1d = _mm256_add_pd(_mm256_sub_pd(lastRow, cellF), magic);
            } else {
                x0 = x1 = _mm256_add_pd(cellF, magic);
                y0 = _mm256_add_pd(_mm256_sub_pd(lastRow, firstF), magic);
                y1d = _mm256_add_pd(_mm256_sub_pd(lastRow, lastF), magic);
            }
            __m256i p0 =
                _mm256_blend_epi32(_mm256_castpd_si256(x0), _mm256_slli_epi64(_mm256_castpd_si256(y0), 32), 0xAA);
            __m256i p1 =
                _mm256_blend_epi32(_mm256_castpd_si256(x1), _mm256_slli_epi64(_mm256_castpd_si256(y1d), 32), 0xAA);
            // Lanes 0 and 2, and 1 and 3, as (start, end) pairs; written
            // downwards when prepending, so the end point sits below the start.
            __m256i even = FRONT ? _mm256_unpacklo_epi64(p1, p0) : _mm256_unpacklo_epi64(p0, p1);
            __m256i odd = FRONT ? _mm256_unpackhi_epi64(p1, p0) : _mm256_unpackhi_epi64(p0, p1);
            // Where each lane's points go: two per lane, one when the cells
            // agree, none when dropped. Each lane writes both its slots, in lane
            // order, so the next lane's points overwrite what the count leaves
            // out; the room holds two points per span.
            int equal = _mm256_movemask_pd(_mm256_cmp_pd(firstF, lastF, _CMP_EQ_OQ));
            uint32_t offsets = laneOffsets.packed[unsigned(dropped) | unsigned(equal) << 4];
            std::ptrdiff_t const firstSlot[4] = {0, std::ptrdiff_t(offsets & 0xFF), std::ptrdiff_t(offsets >> 8 & 0xFF),
                                                 std::ptrdiff_t(offsets >> 16 & 0xFF)};
            __m128i const pairs[4] = {_mm256_castsi256_si128(even), _mm256_castsi256_si128(odd),
                                      _mm256_extracti128_si256(even, 1), _mm256_extracti128_si256(odd, 1)};
            for (unsigned j = 0; j < 4; ++j) {
                POINT *slot = FRONT ? out - (k + firstSlot[j]) - 1 : out + (k + firstSlot[j]);
                _mm_storeu_si128(reinterpret_cast<__m128i *>(slot), pairs[j]);
            }
            k += std::ptrdiff_t(offsets >> 24);
        }
        for (; i < n; ++i)
            k += scalarSpan(frame, batch.at[i], batch.from[i], batch.to[i], out + k * dir, out + (k + 1) * dir);
        return std::size_t(k);
    }
};

} // namespace

std::size_t SpanEmissionC::pointsAvx2(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                      std::ptrdiff_t dir) {
    // A frame wider than a window can be (32767 cells): one span at a time.
    if (!frame.vectorReady) return pointsScalar(frame, batch, n, out, dir);
    return runOriented<Avx2KernelS>(frame, batch, n, out, dir);
}

#else

std::size_t SpanEmissionC::pointsAvx2(FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                      std::ptrdiff_t dir) {
    return pointsScalar(frame, batch, n, out, dir);
}

#endif

std::size_t SpanEmissionC::points(PathE path, FrameS const &frame, BatchS const &batch, unsigned n, POINT *out,
                                  std::ptrdiff_t dir) {
    switch (path) {
    case AVX2: return pointsAvx2(frame, batch, n, out, dir);
    case SSE2: return pointsSse2(frame, batch, n, out, dir);
    default: return pointsScalar(frame, batch, n, out, dir);
    }
}

void SpanEmissionC::emit(FrameS const &frame, BatchS const &batch, unsigned n, ds::GraphDataSetWinC &set,
                         bool front) {
    if (n == 0) return;
    PathE const path = chosenPath;
    // Room for two points per span; the spans commit what they wrote.
    if (front) {
        POINT *base = set.reservePrepend(2 * std::size_t(n));
        if (!base) return;
        // Each point goes in front of the one before: the first lands at [-1].
        std::size_t k = points(path, frame, batch, n, base - 1, -1);
        set.commitPrepend(k);
    } else {
        POINT *base = set.reserveAppend(2 * std::size_t(n));
        if (!base) return;
        std::size_t k = points(path, frame, batch, n, base, 1);
        set.commitAppend(k);
    }
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt

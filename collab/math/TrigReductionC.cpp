#include "collab/math/TrigReductionC.h"

#include <cmath>
#include <cstdint>

namespace qelt {
namespace math {

namespace {

using Uint128 = unsigned __int128;

// The bits of 2/pi after the binary point, most significant first.
std::uint64_t const twoOverPi[20] = {
    0xa2f9836e4e441529ull, 0xfc2757d1f534ddc0ull, 0xdb6295993c439041ull, 0xfe5163abdebbc561ull,
    0xb7246e3a424dd2e0ull, 0x06492eea09d1921cull, 0xfe1deb1cb129a73eull, 0xe88235f52ebb4484ull,
    0xe99c7026b45f7e41ull, 0x3991d639835339f4ull, 0x9c845f8bbdf9283bull, 0x1ff897ffde05980full,
    0xef2f118b5a0a6d1full, 0x6d367ecf27cb09b7ull, 0x4f463f669e5fea2dull, 0x7527bac7ebe5f17bull,
    0x3d0739f78a5292eaull, 0x6bfb5fb11f8d5d08ull, 0x56033046fc7b6babull, 0xf0cfbc209af4361dull,
};

// pi/2 as a sum of two doubles.
double const halfPiHigh = 1.5707963267948966;
double const halfPiLow = 6.123233995736766e-17;

// 64 bits of 2/pi starting at bit k (k = 1 is the first bit after the
// binary point).
std::uint64_t wordOfTwoOverPi(int k) {
    int index = (k - 1) / 64;
    int offset = (k - 1) % 64;
    if (offset == 0) return twoOverPi[index];
    return (twoOverPi[index] << offset) | (twoOverPi[index + 1] >> (64 - offset));
}

// Bits [from, from + 64) of the 256-bit number p (four limbs, lowest first).
std::uint64_t bitsAt(std::uint64_t const p[4], int from) {
    int limb = from / 64;
    int shift = from % 64;
    std::uint64_t low = limb < 4 ? p[limb] >> shift : 0;
    std::uint64_t high = (shift != 0 && limb + 1 < 4) ? p[limb + 1] << (64 - shift) : 0;
    return low | high;
}

// |x| * 2/pi modulo 4 as a quadrant and a 128-bit fraction, for |x| >= 1.
void reduceMagnitude(double x, int &quadrant, Uint128 &fraction) {
    int exponent;
    double m = std::frexp(std::fabs(x), &exponent);
    // |x| = M * 2^e with M a 53-bit integer.
    std::uint64_t M = static_cast<std::uint64_t>(std::ldexp(m, 53));
    int e = exponent - 53;
    // Bits k of 2/pi with k <= e - 2 add multiples of 4 to M * 2^e * 2/pi:
    // they never change the result, so the window starts after them.
    int first = e - 1 > 1 ? e - 1 : 1;
    std::uint64_t window[3] = {wordOfTwoOverPi(first + 128), wordOfTwoOverPi(first + 64), wordOfTwoOverPi(first)};
    // p = M * window, a 245-bit number; its value is p * 2^-(first + 191 - e).
    std::uint64_t p[4] = {0, 0, 0, 0};
    Uint128 carry = 0;
    for (int i = 0; i < 3; ++i) {
        Uint128 t = static_cast<Uint128>(M) * window[i] + carry;
        p[i] = static_cast<std::uint64_t>(t);
        carry = t >> 64;
    }
    p[3] = static_cast<std::uint64_t>(carry);
    // The point sits s bits up, 190 <= s <= 244 for |x| >= 1; the bits of 2/pi
    // past the window add less than 2^-137.
    int s = first + 191 - e;
    quadrant = static_cast<int>(bitsAt(p, s) & 3u);
    fraction = (static_cast<Uint128>(bitsAt(p, s - 64)) << 64) | bitsAt(p, s - 128);
}

} // namespace

void TrigReductionC::reduce(double x, int &quadrant, double &reduced) {
    if (std::fabs(x) < 0.7853981633974483) {
        // Already within pi/4 (a bound slightly below pi/4, so exactly).
        quadrant = 0;
        reduced = x;
        return;
    }
    Uint128 f;
    reduceMagnitude(x, quadrant, f);
    bool negative = false;
    if (f >> 127) {
        // t = fraction - 1, toward the next quadrant.
        f = ~f + 1;
        negative = true;
        quadrant = (quadrant + 1) & 3;
    }
    // f as a sum of two doubles (the second exact), then times pi/2.
    double f1 = static_cast<double>(f);
    Uint128 f1Whole = static_cast<Uint128>(f1);
    double f2 = f1Whole > f ? -static_cast<double>(f1Whole - f) : static_cast<double>(f - f1Whole);
    double r = (f1 * halfPiHigh + (f1 * halfPiLow + f2 * halfPiHigh)) * 0x1p-128;
    if (negative) r = -r;
    if (x < 0) {
        r = -r;
        quadrant = (4 - quadrant) & 3;
    }
    reduced = r;
}

} // namespace math
} // namespace qelt

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

// pi/2 in four parts for the reduction in doubles. C1, C2 and C3 hold 33
// bits each (multiples of 2^-32, 2^-65 and 2^-98), so k * Ci is exact for
// |k| < 2^20; C4 is the nearest double to the rest, and what it leaves out
// is below 2^-159.
double const halfPiC1 = 0x1.921fb544p+0;
double const halfPiC2 = 0x1.0b4611a6p-34;
double const halfPiC3 = 0x1.3198a2ep-69;
double const halfPiC4 = 0x1.b839a252049c1p-104;
double const twoOverPiDouble = 0x1.45f306dc9c883p-1;
// The largest double below pi/4.
double const quarterPi = 0.7853981633974483;

// x - k pi/2 for a whole k with |k| < 2^20 and x within about pi/4 of k pi/2.
//
// Error, with r the true x - k pi/2: x - k C1 is exact (the two are within
// a factor of 2 of each other, or k is 0). a = (x - k C1) - k C2 is a
// multiple of 2^-65, so it is exact below 2^-12; above, it is off by at most
// 2^-53 |a|, and |a| <= |r| (1 + 2^-34) since a - r = k (C3 + C4 + tail) is
// below 2^-47. Likewise b = a - k C3, a multiple of 2^-98, is exact below
// 2^-45 and otherwise off by at most 2^-53 |b|, with b - r below 2^-82; the
// last subtraction rounds once more. Together at most 3 * 2^-53 (1 + 2^-30)
// |r|. Besides, k C4 rounds by at most 2^-136 and k times the dropped tail
// is below 2^-139: against the closest a double below 2^20 comes to a
// multiple of pi/2, 6.19e-19 > 2^-61 (x = 6411027962775774 * 2^-47, near
// 29 pi/2), those are at most 2^-74 |r|. The total stays below |r| * 2^-51,
// the bound the wide-product reduction keeps.
double minusHalfPis(double x, double k) {
    double a = (x - k * halfPiC1) - k * halfPiC2;
    double b = a - k * halfPiC3;
    return b - k * halfPiC4;
}

} // namespace

double const TrigReductionC::moderateLimit = 0x1p20;

void TrigReductionC::reduce(double x, int &quadrant, double &reduced) {
    if (std::fabs(x) < moderateLimit)
        reduceModerate(x, quadrant, reduced);
    else
        reduceExact(x, quadrant, reduced);
}

void TrigReductionC::reduceModerate(double x, int &quadrant, double &reduced) {
    if (std::fabs(x) < quarterPi) {
        quadrant = 0;
        reduced = x;
        return;
    }
    // The nearest whole number to x * 2/pi (by adding and taking away
    // 1.5 * 2^52); the product is off by less than 2^-31 for |x| < 2^20, so
    // k can be one off only where r comes out near +-pi/4, and one step
    // puts it right.
    double const round = 0x1.8p52;
    double k = (x * twoOverPiDouble + round) - round;
    double r = minusHalfPis(x, k);
    if (r > quarterPi) {
        k += 1;
        r = minusHalfPis(x, k);
    } else if (r < -quarterPi) {
        k -= 1;
        r = minusHalfPis(x, k);
    }
    quadrant = static_cast<int>(k) & 3;
    reduced = r;
}

void TrigReductionC::reduceExact(double x, int &quadrant, double &reduced) {
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

#ifndef QELT_OSS_INTEGERCONVERSIONC_H
#define QELT_OSS_INTEGERCONVERSIONC_H

#include <cmath>
#include <cstdint>

namespace qelt {
namespace oss {

// The truncating double-to-integer conversions of the pixel arithmetic,
// defined for every double. A raw cast of an out-of-range double is undefined;
// here NaN, the infinities and |v| >= 2^63 give 0, and everything else is
// truncated toward zero to 64 bits and then narrowed in two's complement, as
// the fixed-width hardware conversion it replaces would do (-1.0 -> 0xFFFFFFFF).
class IntegerConversionC {
public:
    static int64_t toInt64(double v) {
        // 2^63 is exact in double; the comparison is false for NaN.
        if (!(std::fabs(v) < 9223372036854775808.0)) return 0;
        return static_cast<int64_t>(v);
    }
    // toInt64(std::floor(v)) for every v, without the library call that
    // std::floor is on baseline x86-64: the pixel arithmetic floors three
    // times per span.
    static int64_t floorToInt64(double v) {
        if (!(std::fabs(v) < 9223372036854775808.0)) return 0;
        int64_t i = static_cast<int64_t>(v);
        // Truncation rounded a negative non-integer up; floor goes one lower.
        // (i > INT64_MIN here, since v > -2^63.)
        return static_cast<double>(i) > v ? i - 1 : i;
    }
    // The reciprocal of d for floorQuotient: 1 / d when that is a normal
    // double, else 0.
    static double quotientReciprocal(double d) {
        double inv = 1.0 / d;
        double a = std::fabs(inv);
        return a >= 2.2250738585072014e-308 && a <= 1.7976931348623157e308 ? inv : 0.0;
    }

    // floorToInt64(n / d), computed with inv = quotientReciprocal(d) where
    // that provably gives the same integer. n * inv and the rounded quotient
    // both lie within 2^-51 of the true n / d, relative to it; so when n * inv
    // is normal and lies further than 2^-48 of its size from any integer, the
    // quotient lies strictly between the same two integers. Otherwise divide.
    static int64_t floorQuotient(double n, double d, double inv) {
        double r = n * inv;
        double a = std::fabs(r);
        // The bound needs a normal reciprocal: pass 0 for any other, which
        // makes the product 0 (or NaN) and so always divides. NaN fails the
        // size test.
        if (a < 4503599627370496.0) {
            int64_t t = static_cast<int64_t>(r);
            if (static_cast<double>(t) > r) --t;
            double frac = r - static_cast<double>(t); // exact below 2^52
            // The constant keeps tiny and denormal products on the slow path.
            double margin = a * 0x1p-48 + 0x1p-1000;
            if (frac > margin && frac < 1.0 - margin) return t;
        }
        return floorToInt64(n / d);
    }
    static uint16_t floorQuotientToUInt16(double n, double d, double inv) {
        return static_cast<uint16_t>(static_cast<uint64_t>(floorQuotient(n, d, inv)));
    }
    static int16_t floorQuotientToInt16(double n, double d, double inv) {
        return narrow16(floorQuotientToUInt16(n, d, inv));
    }

    static uint32_t floorToUInt32(double v) { return static_cast<uint32_t>(static_cast<uint64_t>(floorToInt64(v))); }
    static uint16_t floorToUInt16(double v) { return static_cast<uint16_t>(floorToUInt32(v)); }
    static int16_t floorToInt16(double v) { return narrow16(static_cast<uint16_t>(floorToUInt32(v))); }
    static int32_t floorToInt32(double v) { return narrow32(floorToUInt32(v)); }

    static uint32_t toUInt32(double v) {
        return static_cast<uint32_t>(static_cast<uint64_t>(toInt64(v)));
    }
    static int32_t toInt32(double v) { return narrow32(toUInt32(v)); }
    static uint16_t toUInt16(double v) { return static_cast<uint16_t>(toUInt32(v)); }
    static int16_t toInt16(double v) { return narrow16(static_cast<uint16_t>(toUInt32(v))); }

    // Two's-complement narrowings written without implementation-defined casts.
    static int32_t narrow32(uint32_t u) {
        return u <= 0x7FFFFFFFu ? static_cast<int32_t>(u)
                                : static_cast<int32_t>(static_cast<int64_t>(u) - 4294967296LL);
    }
    static int16_t narrow16(uint16_t u) {
        return u <= 0x7FFFu ? static_cast<int16_t>(u) : static_cast<int16_t>(static_cast<int32_t>(u) - 65536);
    }
};

} // namespace oss
} // namespace qelt

#endif

#ifndef QELT_MATH_FLOAT64UTILC_H
#define QELT_MATH_FLOAT64UTILC_H

#include <string>

namespace qelt {
namespace math {

// How toString lays a number out.
enum NumberDisplayFormatE {
    NUMBER_DISPLAY_GENERAL = 0,    // shortest of fixed and scientific
    NUMBER_DISPLAY_FIXED = 1,      // precision digits after the point
    NUMBER_DISPLAY_SCIENTIFIC = 2, // one digit, point, precision digits, exponent
};

class Float64UtilC {
public:
    static const double NaN;
    static const double pi;
    // Significant decimal digits that round-trip a double.
    static const unsigned long max_internal_precision;

    static bool isNaN(double v);
    static bool isInfinity(double v);
    // "NaN", "Infinity" and "-Infinity" for the non-finite values; precision is
    // capped at max_internal_precision (general, scientific) or 340 (fixed).
    static std::u16string toString(double v, unsigned long precision, NumberDisplayFormatE format);
};

} // namespace math
} // namespace qelt

#endif

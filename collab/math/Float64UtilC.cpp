#include "collab/math/Float64UtilC.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace qelt {
namespace math {

const double Float64UtilC::NaN = std::numeric_limits<double>::quiet_NaN();
const double Float64UtilC::pi = 3.14159265358979323846;
const unsigned long Float64UtilC::max_internal_precision = 17;

bool Float64UtilC::isNaN(double v) { return std::isnan(v); }

bool Float64UtilC::isInfinity(double v) { return std::isinf(v); }

std::u16string Float64UtilC::toString(double v, unsigned long precision, NumberDisplayFormatE format) {
    if (std::isnan(v)) return u"NaN";
    if (std::isinf(v)) return v > 0 ? u"Infinity" : u"-Infinity";
    char buf[512];
    int p;
    switch (format) {
    case NUMBER_DISPLAY_FIXED:
        p = static_cast<int>(precision > 340 ? 340 : precision);
        std::snprintf(buf, sizeof buf, "%.*f", p, v);
        break;
    case NUMBER_DISPLAY_SCIENTIFIC:
        p = static_cast<int>(precision > max_internal_precision ? max_internal_precision : precision);
        std::snprintf(buf, sizeof buf, "%.*e", p, v);
        break;
    default:
        p = static_cast<int>(precision > max_internal_precision ? max_internal_precision : precision);
        std::snprintf(buf, sizeof buf, "%.*g", p < 1 ? 1 : p, v);
        break;
    }
    std::u16string out;
    for (char const *c = buf; *c; ++c) out.push_back(static_cast<char16_t>(static_cast<unsigned char>(*c)));
    return out;
}

} // namespace math
} // namespace qelt

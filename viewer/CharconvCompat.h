#ifndef EVALG_VIEWER_CHARCONVCOMPAT_H
#define EVALG_VIEWER_CHARCONVCOMPAT_H

// The expression code prints and reads numbers with the floating-point
// std::to_chars and std::from_chars, which the C++ library of Debian's
// emscripten does not have yet. The build includes this header ahead of every
// source only where a probe found them missing. Both keep the properties the
// expression code relies on: printing gives digits that read back as the same
// double, and reading takes the decimal forms from_chars takes, stopping
// where they end.

#include <cerrno>
#include <cmath>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace std {

inline to_chars_result to_chars(char *first, char *last, double value) {
    char text[64];
    // The fewest significant digits that read back as the same double.
    int digits = 1;
    for (; digits < 17; ++digits) {
        std::snprintf(text, sizeof text, "%.*g", digits, value);
        if (std::strtod(text, nullptr) == value) break;
    }
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    std::size_t n = std::strlen(text);
    if (std::ptrdiff_t(n) > last - first) return {last, errc::value_too_large};
    std::memcpy(first, text, n);
    return {first + n, errc()};
}

inline from_chars_result from_chars(char const *first, char const *last, double &value,
                                    chars_format = chars_format::general) {
    // A sign, digits with at most one point, then an optional exponent:
    // from_chars's general form, without strtod's blanks, '+' or hex.
    char const *p = first;
    if (p < last && *p == '-') ++p;
    char const *digitsStart = p;
    bool any = false;
    while (p < last && *p >= '0' && *p <= '9') ++p, any = true;
    if (p < last && *p == '.') {
        ++p;
        while (p < last && *p >= '0' && *p <= '9') ++p, any = true;
    }
    if (!any) {
        // inf, infinity and nan, as from_chars reads them.
        std::string rest(digitsStart, last);
        for (char &c : rest) c = char(c | 0x20);
        double const inf = HUGE_VAL;
        bool negative = digitsStart != first;
        if (rest.compare(0, 8, "infinity") == 0) return value = negative ? -inf : inf, from_chars_result{digitsStart + 8, errc()};
        if (rest.compare(0, 3, "inf") == 0) return value = negative ? -inf : inf, from_chars_result{digitsStart + 3, errc()};
        if (rest.compare(0, 3, "nan") == 0) return value = negative ? -NAN : NAN, from_chars_result{digitsStart + 3, errc()};
        return {first, errc::invalid_argument};
    }
    if (p < last && (*p == 'e' || *p == 'E')) {
        char const *q = p + 1;
        if (q < last && (*q == '+' || *q == '-')) ++q;
        if (q < last && *q >= '0' && *q <= '9') {
            while (q < last && *q >= '0' && *q <= '9') ++q;
            p = q;
        }
    }
    std::string text(first, p);
    errno = 0;
    double v = std::strtod(text.c_str(), nullptr);
    if (errno == ERANGE && (v == HUGE_VAL || v == -HUGE_VAL || v == 0.0)) return {p, errc::result_out_of_range};
    value = v;
    return {p, errc()};
}

} // namespace std

#endif

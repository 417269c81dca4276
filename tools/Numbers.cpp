#include "Numbers.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Errors.h"

namespace evalgtool {

namespace {

// Only the plain decimal form: strtod alone would also take "inf", "nan",
// hex floats and leading blanks, none of which a user means as a parameter.
bool isDecimal(std::string const &s) {
    std::size_t i = 0, n = s.size();
    if (i < n && (s[i] == '+' || s[i] == '-')) ++i;
    std::size_t digits = 0;
    while (i < n && s[i] >= '0' && s[i] <= '9') ++i, ++digits;
    if (i < n && s[i] == '.') {
        ++i;
        while (i < n && s[i] >= '0' && s[i] <= '9') ++i, ++digits;
    }
    if (digits == 0) return false;
    if (i < n && (s[i] == 'e' || s[i] == 'E')) {
        ++i;
        if (i < n && (s[i] == '+' || s[i] == '-')) ++i;
        std::size_t expDigits = 0;
        while (i < n && s[i] >= '0' && s[i] <= '9') ++i, ++expDigits;
        if (expDigits == 0) return false;
    }
    return i == n;
}

} // namespace

double parseNumber(std::string const &text, std::string const &what) {
    if (!isDecimal(text))
        throw UsageError(what + ": '" + text + "' is not a number (write it like 2, -0.5 or 1e-3)");
    errno = 0;
    double v = std::strtod(text.c_str(), nullptr);
    if (!std::isfinite(v))
        throw UsageError(what + ": '" + text + "' is too large; a finite number is needed");
    return v;
}

long long parseInteger(std::string const &text, std::string const &what, long long lo, long long hi) {
    double v = parseNumber(text, what);
    if (std::floor(v) != v || v < double(lo) || v > double(hi))
        throw UsageError(what + ": '" + text + "' is not a whole number from " + std::to_string(lo) + " to " +
                         std::to_string(hi));
    return static_cast<long long>(v); // integral and inside [lo, hi]: exact
}

std::vector<double> parseNumberList(std::string const &text, std::string const &what, std::size_t count,
                                    std::string const &form) {
    std::vector<double> out;
    std::size_t start = 0;
    while (true) {
        std::size_t comma = text.find(',', start);
        std::string item = text.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        if (item.empty() || !isDecimal(item))
            throw UsageError(what + ": '" + text + "' is not of the form " + form);
        out.push_back(parseNumber(item, what));
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    if (count != 0 && out.size() != count)
        throw UsageError(what + ": '" + text + "' has " + std::to_string(out.size()) + " numbers; the form is " +
                         form);
    return out;
}

double roundToDigits(double v, int digits) {
    if (!std::isfinite(v)) return v;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*g", digits, v);
    return std::strtod(buffer, nullptr);
}

std::string formatNumber(double v) {
    if (std::isnan(v)) return "nan";
    if (std::isinf(v)) return v > 0 ? "inf" : "-inf";
    char buffer[64];
    for (int precision = 1; precision <= 17; ++precision) {
        std::snprintf(buffer, sizeof buffer, "%.*g", precision, v);
        if (std::strtod(buffer, nullptr) == v) break;
    }
    // %g writes 10 as 1e+01; numbers of ordinary size read better without an exponent.
    if (std::strchr(buffer, 'e') && std::fabs(v) >= 1e-5 && std::fabs(v) < 1e15) {
        for (int decimals = 0; decimals <= 25; ++decimals) {
            std::snprintf(buffer, sizeof buffer, "%.*f", decimals, v);
            if (std::strtod(buffer, nullptr) == v) break;
        }
    }
    return buffer;
}

} // namespace evalgtool

#ifndef EVALG_TOOL_NUMBERS_H
#define EVALG_TOOL_NUMBERS_H

#include <string>
#include <vector>

namespace evalgtool {

// A finite decimal number such as 2, -0.5, .25 or 1e-3; "what" names the
// argument in the error message. Hex, "inf" and "nan" are refused.
double parseNumber(std::string const &text, std::string const &what);

// An integral number within [lo, hi].
long long parseInteger(std::string const &text, std::string const &what, long long lo, long long hi);

// Comma-separated numbers; with count > 0 exactly that many are required and
// "form" names the accepted shape in the message.
std::vector<double> parseNumberList(std::string const &text, std::string const &what, std::size_t count,
                                    std::string const &form);

// v rounded to the given number of significant digits (1 to 17).
double roundToDigits(double v, int digits);

// The shortest text that reads back as the same double ("0.1", "-3", "1e-300").
std::string formatNumber(double v);

} // namespace evalgtool

#endif

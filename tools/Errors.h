#ifndef EVALG_TOOL_ERRORS_H
#define EVALG_TOOL_ERRORS_H

#include <stdexcept>
#include <string>

namespace evalgtool {

// Bad input, from the command line or from a file it names: main prints the
// message as one line and exits with status 2.
struct UsageError : std::runtime_error {
    explicit UsageError(std::string const &message) : std::runtime_error(message) {}
};

// The input was fine but the output could not be written: exit status 1.
struct OutputError : std::runtime_error {
    explicit OutputError(std::string const &message) : std::runtime_error(message) {}
};

} // namespace evalgtool

#endif

#ifndef EVALG_TOOL_OUTPUT_H
#define EVALG_TOOL_OUTPUT_H

#include <string>
#include <vector>

namespace evalgtool {

enum class Format { Png, Svg, Json, Csv, Text };

std::string formatName(Format f);
std::string formatNames(std::vector<Format> const &formats); // "png|svg|json"

// The format named by --format; else the one the output file's extension
// names; else the fallback. Throws UsageError for a format outside allowed
// or a file extension that names none of them.
Format chooseFormat(std::string const &option, std::string const &path, std::vector<Format> const &allowed,
                    Format fallback);

// Writes data to path, or to standard output when path is empty or "-". A
// file is written whole to a temporary file beside it and renamed over path,
// so path never holds half an output. Throws OutputError.
void writeOutput(std::string const &path, std::string const &data);

// Creates the folder and its missing parents. Throws OutputError.
void makeDirectories(std::string const &path);

} // namespace evalgtool

#endif

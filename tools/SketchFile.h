#ifndef EVALG_TOOL_SKETCHFILE_H
#define EVALG_TOOL_SKETCHFILE_H

#include <functional>
#include <string>
#include <vector>

namespace evalgtool {

// One entry of a points file: two numbers and, from JSON, the marks.
struct FilePoint {
    double a, b;
    unsigned short marks;
};

// Reads a list of points from a JSON or CSV file (the extension decides,
// else the first character). JSON: an array, or an object whose "points" is
// one, of [a, b, ...] arrays or objects with the two named members. CSV: one
// point per line, a first line of names picking the columns (else the first
// two). first and second name the members ("x", "y" or "column", "row").
// Throws UsageError naming the file, the place and the accepted form.
std::vector<FilePoint> readPointsFile(std::string const &path, std::string const &first, std::string const &second);

// The same points handed to visit one by one, in the file's order. A CSV
// file is read line by line, holding one line at a time; a JSON file is
// parsed whole. Throws UsageError as readPointsFile, possibly after visiting
// the points before the bad one.
void forEachPoint(std::string const &path, std::string const &first, std::string const &second,
                  std::function<void(FilePoint const &)> const &visit);

// The names of the marks set in marks: "x-intercept", "y-intercept",
// "turning-point".
std::vector<std::string> markNames(unsigned short marks);

} // namespace evalgtool

#endif

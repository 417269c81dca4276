#ifndef EVALG_TESTS_TOOL_TOOLRUN_H
#define EVALG_TESTS_TOOL_TOOLRUN_H

// What the end-to-end tests share: running the built evalg in a fresh folder,
// reading its PNG files back, and the library's own output to compare with.
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/oss/PointerTC.h"

namespace qelt::mathapp::rel {}
namespace qelt::mathapp::evalg {}

namespace tooltest {

// The names every test file here uses, brought in by `using namespace tooltest`.
using nlohmann::json;
using qelt::oss::PointerTC;
namespace ds = qelt::mathapp::ds;
namespace rel = qelt::mathapp::rel;
namespace evalg = qelt::mathapp::evalg;

struct Result {
    int status;
    std::string out, err;
};

// A fresh empty folder for one test, removed with everything in it at the end.
class Folder {
public:
    Folder();
    ~Folder();
    std::string const &path() const { return path_; }
    std::string file(std::string const &name) const { return path_ + "/" + name; }
    std::vector<std::string> entries(std::string const &sub = "") const; // sorted names
    // Runs evalg with these arguments inside the folder. Standard output is
    // captured into Result::out, or, when standardOutput names a file, goes
    // to that file opened for writing (a device, a FIFO) and out stays empty.
    Result evalg(std::vector<std::string> const &args, std::string const &standardOutput = "") const;
    void write(std::string const &name, std::string const &content) const;
    std::string read(std::string const &name) const;

private:
    std::string path_;
};

struct Rgb {
    unsigned char r, g, b;
    bool operator==(Rgb const &o) const { return r == o.r && g == o.g && b == o.b; }
};

// A PNG file read with libpng as 8-bit RGB; width 0 when it does not decode.
struct Png {
    unsigned width = 0, height = 0;
    std::vector<Rgb> pixels;
    Rgb at(unsigned x, unsigned y) const { return pixels[std::size_t(y) * width + x]; }
};
Png readPng(std::string const &path);

// The words followed by more words.
std::vector<std::string> with(std::vector<std::string> words, std::vector<std::string> const &more);

// The text between the quotes of every prefix"..." in text, in order.
std::vector<std::string> quotedAfter(std::string const &text, std::string const &prefix);

// A case name as a test name: anything but letters and digits becomes '_'.
std::string testName(std::string name);

// Pixel points with their marker bytes, as [column, row, markers] arrays.
json pointsJson(PointerTC<ds::GraphDataSetWinC> const &set);

// The runs of consecutive points a display joins: split after LAST_VISIBLE
// and before FIRST_VISIBLE; a point more than one pixel outside the m x n
// grid is left out and splits too.
std::vector<json> stretches(json const &points, int m, int n);

} // namespace tooltest

#endif

// The command line as a person meets it: version, usage, text width, rounding
// and the refusal to put binary on a terminal.
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

#include "ToolRun.h"

namespace {

using namespace tooltest;

std::vector<std::string> lines(std::string const &text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

// Braille characters are three bytes each in UTF-8.
std::size_t brailleWidth(std::string const &line) { return line.size() / 3; }

TEST(CommandLine, VersionAndUsageNameTheProgramOnly) {
    Folder f;
    Result r = f.evalg({"--version"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.compare(0, 6, "evalg "), 0) << r.out;
    EXPECT_EQ(lines(r.out).size(), 1u);
    for (std::vector<std::string> help : {std::vector<std::string>{"--help"}, {"plot", "--help"}, {"table", "-h"}}) {
        r = f.evalg(help);
        EXPECT_EQ(r.status, 0);
        EXPECT_NE(r.out.find("Usage: evalg"), std::string::npos) << r.out;
        EXPECT_EQ(r.out.find("Usage: /"), std::string::npos) << r.out; // not the path it was run by
        if (help[0] == "table") continue;
        // A typed relation is the first example, on the program's help and plot's.
        std::size_t typed = r.out.find("evalg plot \"y = x^2\""), named = r.out.find("evalg plot circle");
        EXPECT_NE(typed, std::string::npos) << r.out;
        EXPECT_TRUE(named == std::string::npos || typed < named) << r.out;
    }
}

struct WidthCase {
    char const *name;
    std::vector<std::string> args;
    std::size_t characters, rows; // of the braille picture
};

void PrintTo(WidthCase const &c, std::ostream *os) { *os << c.name; }

class TextWidths : public ::testing::TestWithParam<WidthCase> {};

TEST_P(TextWidths, PictureFitsTheLine) {
    WidthCase const &c = GetParam();
    Result r = Folder().evalg(with({"plot", "sin", "b=3", "--and", "line"}, c.args));
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> got = lines(r.out);
    ASSERT_GE(got.size(), c.rows + 3);
    for (std::size_t i = 0; i < c.rows; ++i) EXPECT_EQ(brailleWidth(got[i]), c.characters) << i;
    // After the picture: the window line and one line per relation.
    EXPECT_EQ(got[c.rows].compare(0, 2, "x "), 0) << got[c.rows];
    EXPECT_EQ(got.size(), c.rows + 3);
}

INSTANTIATE_TEST_SUITE_P(
    Tool, TextWidths,
    ::testing::Values(
        // 161 columns shrink to 160 dots, 101 rows to 101 dots: 26 lines.
        WidthCase{"default 80 when not a terminal", {}, 80, 26},
        // 161 -> 80 dots, 101 * 80 / 161 -> 51 dots: 13 lines.
        WidthCase{"chosen width", {"--width", "40"}, 40, 13},
        WidthCase{"small window is not enlarged", {"--size=30x20"}, 15, 5},
        WidthCase{"wide enough", {"--width=200"}, 81, 26},
        WidthCase{"one character", {"--width=1", "--size=9x9"}, 1, 1}),
    [](auto const &info) { return testName(info.param.name); });

TEST(CommandLine, ShrunkPictureStillShowsTheCurve) {
    // A horizontal line at y = 2: whatever the width, one full row of dots.
    for (std::string width : {"80", "33", "7"}) {
        std::vector<std::string> got = lines(Folder().evalg({"plot", "line", "m=0", "k=2", "--no-axes", "--width", width}).out);
        std::size_t filled = 0;
        for (std::string const &line : got)
            if (line.find("\xe2\xa0\x80") == std::string::npos && line.compare(0, 1, "\xe2") == 0) ++filled;
        EXPECT_EQ(filled, 1u) << width;
    }
}

// The unrounded table is the library's (Tables checks that); --digits rounds it.
TEST(CommandLine, TableDigitsRoundTheFullValues) {
    Folder f;
    std::vector<std::string> const table{"table", "sin", "b=3", "--from=0", "--to=2", "--step=0.25", "--format=csv"};
    Result r = f.evalg(with(table, {"--digits=4"})), full = f.evalg(table);
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> got = lines(r.out), exact = lines(full.out);
    ASSERT_EQ(got.size(), 10u);
    ASSERT_EQ(exact.size(), got.size());
    auto y1 = [](std::string const &row) {
        std::string cell = row.substr(row.find(',') + 1);
        return cell.substr(0, cell.find(','));
    };
    for (std::size_t i = 1; i < got.size(); ++i) {
        double y = std::stod(y1(exact[i])), shown = std::stod(y1(got[i]));
        // Four significant digits: within half a unit of the fourth.
        double unit = y == 0 ? 0 : std::pow(10.0, std::floor(std::log10(std::fabs(y))) - 3);
        EXPECT_LE(std::fabs(shown - y), unit / 2 * (1 + 1e-12)) << got[i];
        EXPECT_LE(y1(got[i]).size(), 6u + (y < 0)) << got[i]; // at most four digits, a point and a sign
    }
}

TEST(CommandLine, BinaryIsRefusedOnATerminal) {
    int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(master, 0);
    ASSERT_EQ(::grantpt(master), 0);
    ASSERT_EQ(::unlockpt(master), 0);
    std::string terminal = ::ptsname(master);
    Folder f;
    // Small pictures: nobody reads the terminal, so its buffer must hold them.
    Result r = f.evalg({"plot", "line", "--size=9x9", "--format=png"}, terminal);
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("terminal"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("-o FILE.png"), std::string::npos) << r.err;
    // Text on the same terminal is fine, and so is PNG into a file.
    EXPECT_EQ(f.evalg({"plot", "line", "--size=9x9"}, terminal).status, 0);
    EXPECT_EQ(f.evalg({"plot", "line", "--size=9x9", "-o", "line.png"}, terminal).status, 0);
    ::close(master);
}

} // namespace

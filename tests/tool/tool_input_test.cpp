// Bad input, end to end: every class gives exit status 2, one line on
// standard error naming the problem with a --help hint, and no file.
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>

#include "ToolRun.h"

namespace {

using namespace tooltest;

struct BadInput {
    char const *name;
    std::vector<std::string> args;
    char const *message; // a piece of the one line on standard error
    char const *inputName = nullptr, *inputText = nullptr;
};

void PrintTo(BadInput const &c, std::ostream *os) { *os << c.name; }

std::vector<BadInput> badInputs() {
    return {
        {"unknown kind", {"plot", "quadratik", "-o", "out.png"}, "unknown kind 'quadratik'"},
        {"typed not reading", {"plot", "x^2 + = 3"}, "does not read as a relation: expected an operand at character 6"},
        {"typed without comparison", {"plot", "x^2 + y^2", "-o", "out.png"}, "needs a comparison"},
        {"theta range backwards", {"plot", "r = θ", "--theta", "3,1"}, "MIN must be below MAX"},
        {"table of a typed implicit", {"table", "x^2 + y^3 = 1", "--x", "1"}, "no y values to tabulate"},
        {"unknown parameter", {"plot", "quadratic", "q=1", "-o", "out.png"}, "unknown parameter 'q'"},
        {"not name=value", {"plot", "quadratic", "a", "-o", "out.png"}, "NAME=VALUE"},
        {"parameter twice", {"plot", "quadratic", "a=1", "a=2", "-o", "out.png"}, "'a' is given twice"},
        {"malformed number", {"plot", "quadratic", "a=1..2", "-o", "out.png"}, "'1..2' is not a number"},
        {"empty number", {"plot", "quadratic", "k=", "-o", "out.png"}, "'' is not a number"},
        {"infinity", {"plot", "quadratic", "a=inf", "-o", "out.png"}, "'inf' is not a number"},
        {"nan", {"plot", "quadratic", "a=nan", "-o", "out.png"}, "'nan' is not a number"},
        {"a failed run keeps the file there", {"plot", "quadratic", "a=nan", "-o", "out.png"}, "'nan' is not a number",
         "out.png", "earlier picture"},
        {"overflowing number", {"plot", "quadratic", "a=1e999", "-o", "out.png"}, "a finite number"},
        {"xmin equals xmax", {"plot", "quadratic", "--window=1,1,-5,5", "-o", "out.png"}, "XMIN must be less than XMAX"},
        {"ymin above ymax", {"plot", "quadratic", "--window=-1,1,5,-5", "-o", "out.png"}, "YMIN must be less than YMAX"},
        {"window of three", {"plot", "quadratic", "--window=1,2,3", "-o", "out.png"}, "XMIN,XMAX,YMIN,YMAX"},
        {"window not finite", {"plot", "quadratic", "--window=-1e999,1,0,1", "-o", "out.png"}, "a finite number"},
        {"window too wide", {"plot", "quadratic", "--window=-1e308,1e308,-1,1", "-o", "out.png"}, "a finite width"},
        {"no columns", {"plot", "quadratic", "--size=0x101", "-o", "out.png"}, "from 1 to 32767"},
        {"no rows", {"plot", "quadratic", "--size=161x0", "-o", "out.json"}, "from 1 to 32767"},
        {"too many columns", {"plot", "quadratic", "--size=32768x101", "-o", "out.png"}, "from 1 to 32767"},
        {"size without x", {"plot", "quadratic", "--size=161*101", "-o", "out.png"}, "MxN"},
        {"negative size", {"plot", "quadratic", "--size=-5x5", "-o", "out.png"}, "MxN"},
        {"scale 0", {"plot", "quadratic", "--scale=0", "-o", "out.png"}, "--scale"},
        {"picture too large", {"plot", "quadratic", "--size=32767x32767", "-o", "out.png"}, "too large"},
        {"unknown format", {"plot", "quadratic", "--format=gif", "-o", "out.png"}, "unknown format 'gif'"},
        {"unknown extension", {"plot", "quadratic", "-o", "out.gif"}, "cannot tell the format"},
        {"unknown option", {"plot", "quadratic", "--colour", "-o", "out.png"}, "--colour"},
        {"no relation", {"plot", "-o", "out.png"}, "relation"},
        {"unknown option instead of a command", {"--bogus"}, "unknown option '--bogus'; the commands are plot"},
        {"unknown option before a command", {"--bogus", "plot", "line", "-o", "out.png"}, "unknown option: --bogus"},
        {"unknown option of sketch", {"sketch", "--bogus"}, "unknown option '--bogus'; the commands are to-pixels"},
        {"unknown option of table", {"table", "line", "--x=1", "--round", "-o", "out.csv"}, "unknown option: --round"},
        {"digits out of range", {"table", "line", "--x=1", "--digits=18", "-o", "out.csv"}, "--digits"},
        {"width not a number", {"plot", "line", "--width=wide", "-o", "out.txt"}, "--width"},
        {"bad relation after --and", {"plot", "quadratic", "--and", "cubic", "-o", "out.png"}, "unknown kind 'cubic'"},
        {"fractional exponent", {"plot", "power", "r=1.5", "-o", "out.png"}, "'1.5' is not a whole number"},
        {"unknown restriction", {"plot", "power", "restriction=3", "-o", "out.png"}, "from 0 to 2"},
        {"log base negative", {"plot", "log", "base=-2", "-o", "out.png"}, "log base=-2 is not allowed: base must be above 0 and not 1"},
        {"log base one", {"table", "log", "base=1", "--x=2", "-o", "out.csv"}, "log base=1 is not allowed"},
        {"log factor zero", {"plot", "log", "a=0", "-o", "out.png"}, "log a=0 is not allowed: a must not be 0"},
        {"ellipse axis zero", {"plot", "ellipse", "a=0", "-o", "out.png"}, "ellipse a=0 is not allowed: |a| must be from"},
        {"hyperbola axis zero", {"plot", "hyperbola", "a=-0", "-o", "out.png"}, "hyperbola a=-0 is not allowed"},
        {"vhyperbola axis square underflows", {"plot", "vhyperbola", "b=1e-160", "-o", "out.png"}, "b^2 is a finite nonzero"},
        {"circle radius square overflows", {"plot", "circle", "r=-1e300", "-o", "out.png"}, "r^2 is finite"},
        {"parabola focal distance zero", {"plot", "vparabola", "a=0", "-o", "out.png"}, "vparabola a=0 is not allowed"},
        {"sampled conic axis zero", {"plot", "sampled", "of=ellipse", "b=0", "-o", "out.png"}, "b=0 is not allowed"},
        {"expression not parsing", {"plot", "expr", "f=x^2+", "-o", "out.png"}, "does not parse"},
        {"expression missing", {"plot", "line", "--and", "expr", "-o", "out.png"}, "f=\"EXPRESSION\" is required"},
        {"sampled expression not parsing", {"table", "sampled", "of=expr", "f=sin(", "--x=1", "-o", "out.csv"},
         "does not parse"},
        {"sampled without of", {"plot", "sampled", "-o", "out.png"}, "of=KIND is required"},
        {"sampled of itself", {"plot", "sampled", "of=sampled", "-o", "out.png"}, "of='sampled'"},
        {"subdivisions too many", {"plot", "sampled", "of=quadratic", "subdivisions=70000", "-o", "out.png"},
         "from 1 to 65535"},
        {"sketch file missing", {"plot", "sketch", "file=none.csv", "-o", "out.png"}, "cannot read"},
        {"sketch without file", {"plot", "sketch", "-o", "out.png"}, "file=FILE is required"},
        {"sketch csv malformed", {"plot", "sketch", "file=s.csv", "-o", "out.png"}, "line 3", "s.csv", "x,y\n1,2\n3,abc\n"},
        {"sketch json malformed", {"plot", "sketch", "file=s.json", "-o", "out.png"}, "not valid JSON", "s.json",
         "[[1,2],[3,4]"},
        {"sketch json not points", {"plot", "sketch", "file=s.json", "-o", "out.png"}, "point 2", "s.json",
         "[[1,2],{\"x\":1}]"},
        {"sketch file a folder", {"plot", "sketch", "file=.", "-o", "out.png"}, "cannot read"},
        {"to-pixels file missing", {"sketch", "to-pixels", "none.json", "-o", "out.json"}, "cannot read"},
        {"from-pixels not whole", {"sketch", "from-pixels", "p.csv", "-o", "out.json"}, "whole numbers", "p.csv",
         "column,row\n1.5,2\n"},
        {"from-pixels bad window", {"sketch", "from-pixels", "p.csv", "--window=0,0,0,1", "-o", "out.json"}, "XMIN",
         "p.csv", "1,2\n"},
        {"table without x", {"table", "quadratic", "-o", "out.csv"}, "needs its x values"},
        {"table with both", {"table", "quadratic", "--x=1", "--from=0", "--to=1", "--step=1", "-o", "out.csv"},
         "not both"},
        {"table step 0", {"table", "quadratic", "--from=0", "--to=1", "--step=0", "-o", "out.csv"}, "not positive"},
        {"table too many rows", {"table", "quadratic", "--from=0", "--to=1", "--step=1e-300", "-o", "out.csv"},
         "more than"},
        {"table of a sketch", {"table", "sketch", "file=s.csv", "--x=1", "-o", "out.csv"}, "no y values", "s.csv",
         "1,2\n"},
        {"table bad x", {"table", "quadratic", "--x=1,,2", "-o", "out.csv"}, "X1,X2"},
    };
}

class BadInputs : public ::testing::TestWithParam<BadInput> {};

TEST_P(BadInputs, ExitTwoWithOneLineAndNoFile) {
    BadInput const &c = GetParam();
    Folder f;
    if (c.inputName) f.write(c.inputName, c.inputText);
    std::vector<std::string> before = f.entries();
    Result r = f.evalg(c.args);
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("--help"), std::string::npos) << r.err;
    EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(f.entries(), before);
    if (c.inputName) {
        EXPECT_EQ(f.read(c.inputName), c.inputText); // a file there before is left as it was
    }
}

INSTANTIATE_TEST_SUITE_P(Tool, BadInputs, ::testing::ValuesIn(badInputs()),
                         [](auto const &info) { return testName(info.param.name); });

// Just inside each refusal the relation is drawn.
TEST(ParameterRules, ValuesJustInsideAreDrawn) {
    for (std::vector<std::string> relation :
         {std::vector<std::string>{"log", "base=0.5", "a=-1"}, {"log", "base=1.0000001"}, {"circle", "r=1.34e154"},
          {"ellipse", "a=1.5e-154", "b=-1.34e154"}, {"hyperbola", "a=-1e-150"}, {"vparabola", "a=-1e-300"},
          {"circle", "r=0"}}) {
        Folder f;
        Result r = f.evalg(with(with({"plot"}, relation), {"-o", "out.json"}));
        EXPECT_EQ(r.status, 0) << relation[0] << " " << relation[1] << ": " << r.err;
    }
}

// Seeded random command lines with extreme numbers and degenerate windows, a
// quarter of them with wrong words too: 60 runs, each must end with 0 (and a
// file that reads back) or 2 (and no file), never with a crash or a signal.
TEST(RandomArguments, EndWithZeroOrTwo) {
    using Words = std::vector<std::string>;
    Words const kinds{"line", "quadratic", "vparabola", "parabola", "circle", "ellipse", "hyperbola", "vhyperbola",
                      "power", "exp", "log", "sin", "cos", "expr f=x^3-1/x", "sampled of=parabola"};
    std::map<std::string, Words> const own{{"line", {"m", "h", "k"}},      {"circle", {"h", "k", "r"}},
                                           {"power", {"a", "h", "k", "r"}}, {"exp", {"b", "r", "k"}},
                                           {"log", {"a", "b", "h", "k", "base"}}, {"sampled", {"a", "h", "k", "subdivisions"}}};
    Words const names{"a", "b", "h", "k", "r", "base", "restriction", "subdivisions", "of", "zz"};
    Words const numbers{"0", "-0", "1", "-1", "1e300", "-1e300", "1e-300", "2.5", "-7", "2"};
    Words const values{"nan", "1e999", "abc", "", "65535", "quadratic", "1", "1e300", "0"};
    Words const windows{"", "-8,8,-5,5", "-1e300,1e300,-1,1", "0,1e-300,0,1", "-1,1,-1e-310,1e-310", "-1e-15,1e-15,-1,1"};
    Words const sizes{"", "1x1", "2x1", "1x2", "161x101", "3x300", "32767x2"}, formats{"json", "png", "svg", "csv", "txt"};
    std::mt19937_64 random(20240611);
    auto pick = [&random](Words const &from) { return from[random() % from.size()]; };
    int done = 0;
    for (int run = 0; run < 60; ++run) {
        Words args{"plot"};
        std::istringstream kind(pick(kinds));
        for (std::string word; kind >> word;) args.push_back(word);
        bool wild = random() % 4 == 0;
        Words const &mine = own.count(args[1]) ? own.at(args[1]) : Words{"a", "b", "h", "k"};
        for (int i = int(random() % 4); i > 0; --i)
            args.push_back(wild ? pick(names) + "=" + pick(values) : pick(mine) + "=" + pick(numbers));
        if (std::string w = pick(windows); !w.empty()) args.push_back("--window=" + w);
        if (std::string z = pick(sizes); !z.empty()) args.push_back("--size=" + z);
        std::string out = "out." + pick(formats), line;
        args.insert(args.end(), {"-o", out});
        for (std::string const &a : args) line += a + " ";
        Folder f;
        Result r = f.evalg(args);
        ASSERT_TRUE(r.status == 0 || r.status == 2) << line << "-> " << r.status << " " << r.err;
        EXPECT_EQ(f.entries(), r.status == 0 ? Words{out} : Words{}) << line;
        bool reads = out == "out.json" ? !json::parse(f.read(out), nullptr, false).is_discarded()
                                       : out != "out.png" || readPng(f.file(out)).width > 0;
        EXPECT_TRUE(r.status != 0 || reads) << line;
        done += r.status == 0;
    }
    EXPECT_GE(done, 20) << "a good share of the runs must get through to the drawing";
}

} // namespace

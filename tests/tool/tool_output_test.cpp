// Where -o writes: a regular file is replaced whole, everything else (links,
// FIFOs, devices, standard output) is written through and stays what it was.
// Devices are made with mknod inside the test's folder, never the real /dev.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "ToolRun.h"

namespace {

using namespace tooltest;

std::vector<std::string> const plot{"plot", "circle", "r=2", "--size=9x7", "--format=csv"};

char fileType(std::string const &path) {
    struct stat s;
    if (::lstat(path.c_str(), &s) != 0) return '-';
    return S_ISREG(s.st_mode) ? 'f' : S_ISLNK(s.st_mode) ? 'l' : S_ISFIFO(s.st_mode) ? 'p' : S_ISCHR(s.st_mode) ? 'c' : '?';
}

std::string expectedCsv() {
    static std::string const csv = Folder().evalg(plot).out;
    return csv;
}

struct Place {
    char const *name;
    std::string (*make)(Folder const &); // makes what -o names and returns that name
    char const *written;                 // the file that must hold the output, "" for standard output
    char type;                           // what -o's name must still be afterwards
    unsigned mode = 0;                   // the permissions the written file keeps, 0 for any
};

void PrintTo(Place const &c, std::ostream *os) { *os << c.name; }

// A symbolic link name -> to in the folder; its name, or "" when it cannot be made.
std::string link(Folder const &f, char const *to, char const *name) {
    return ::symlink(to, f.file(name).c_str()) == 0 ? name : "";
}

std::vector<Place> places() {
    return {
        {"new file", [](Folder const &) { return std::string("out.csv"); }, "out.csv", 'f'},
        {"existing file keeps its mode",
         [](Folder const &f) {
             f.write("out.csv", "earlier");
             return ::chmod(f.file("out.csv").c_str(), 0640) == 0 ? std::string("out.csv") : "";
         },
         "out.csv", 'f', 0640},
        {"link to a file", [](Folder const &f) { f.write("target.csv", "earlier"); return link(f, "target.csv", "link"); },
         "target.csv", 'l'},
        {"dangling link", [](Folder const &f) { return link(f, "made.csv", "link"); }, "made.csv", 'l'},
        {"link chain into a folder",
         [](Folder const &f) {
             ::mkdir(f.file("sub").c_str(), 0755);
             f.write("sub/target.csv", "earlier");
             return link(f, "sub/target.csv", "first").empty() ? "" : link(f, "first", "second");
         },
         "sub/target.csv", 'l'},
        {"dash", [](Folder const &) { return std::string("-"); }, "", '-'},
        {"link to standard output", [](Folder const &f) { return link(f, "/proc/self/fd/1", "stdout"); }, "", 'l'},
    };
}

class Places : public ::testing::TestWithParam<Place> {};

TEST_P(Places, GetTheOutputAndKeepWhatTheyAre) {
    Place const &c = GetParam();
    Folder f;
    std::string name = c.make(f);
    ASSERT_FALSE(name.empty());
    Result r = f.evalg(with(plot, {"-o", name}));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(std::string(c.written).empty() ? r.out : f.read(c.written), expectedCsv());
    if (name != "-") {
        EXPECT_EQ(fileType(f.file(name)), c.type);
    }
    for (std::string const &e : f.entries()) EXPECT_EQ(e.find(".tmp-"), std::string::npos) << e;
    if (c.mode) {
        struct stat s;
        ASSERT_EQ(::stat(f.file(c.written).c_str(), &s), 0);
        EXPECT_EQ(s.st_mode & 0777, c.mode);
    }
}

INSTANTIATE_TEST_SUITE_P(Tool, Places, ::testing::ValuesIn(places()),
                         [](auto const &info) { return testName(info.param.name); });

TEST(OutputPlaces, AFifoIsWrittenThroughWithoutAFormatFromItsName) {
    Folder f;
    ASSERT_EQ(::mkfifo(f.file("pipe").c_str(), 0600), 0);
    // Open for reading first, without waiting for a writer; the output is
    // small enough to sit in the pipe until the tool has ended.
    int reader = ::open(f.file("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    Result r = f.evalg({"plot", "circle", "r=2", "--size=9x7", "-o", "pipe"});
    std::string got;
    char buffer[4096];
    for (ssize_t n; (n = ::read(reader, buffer, sizeof buffer)) > 0;) got.append(buffer, std::size_t(n));
    ::close(reader);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(got, Folder().evalg({"plot", "circle", "r=2", "--size=9x7"}).out); // the text picture, as on a terminal
    EXPECT_EQ(fileType(f.file("pipe")), 'p');
}

// Copies of /dev/null's and /dev/full's device numbers, in the folder.
bool makeDevices(Folder const &f) {
    return ::mknod(f.file("null").c_str(), S_IFCHR | 0666, makedev(1, 3)) == 0 &&
           ::mknod(f.file("full").c_str(), S_IFCHR | 0666, makedev(1, 7)) == 0 &&
           ::symlink("full", f.file("to-full").c_str()) == 0;
}

TEST(OutputPlaces, DevicesAreWrittenInPlaceAndAFullOneFails) {
    Folder f;
    if (!makeDevices(f)) GTEST_SKIP() << "mknod needs root and a folder that allows devices";
    Result r = f.evalg(with(plot, {"-o", "null"}));
    EXPECT_EQ(r.status, 0) << r.err;
    // JSON and CSV are streamed, many writes for a wide window: the first
    // that fails ends the run the same way.
    for (char const *full : {"full", "to-full"})
        for (char const *format : {"text", "json", "csv"}) {
            r = f.evalg({"plot", "sin", "a=40", "--size=20000x50", "--format", format, "-o", full});
            EXPECT_EQ(r.status, 1) << full << " " << format;
            EXPECT_EQ(r.err, "evalg: cannot write '" + std::string(full) + "': No space left on device\n");
        }
    // Standard output itself full: the same failure, not a silent 0.
    r = f.evalg(plot, f.file("full"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "evalg: cannot write standard output: No space left on device\n");
    r = f.evalg({"table", "line", "--x=1", "-o", "-"}, f.file("full"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(fileType(f.file("null")), 'c');
    EXPECT_EQ(fileType(f.file("full")), 'c');
    EXPECT_EQ(fileType(f.file("to-full")), 'l');
    EXPECT_EQ(f.entries(), (std::vector<std::string>{"full", "null", "to-full"}));
}

TEST(OutputPlaces, AFolderOrAMissingOneIsStatusOne) {
    struct {
        char const *out, *message;
    } const cases[] = {{"dir", "'dir': Is a directory"}, {"missing/out.png", "'missing/out.png'"}};
    for (auto const &c : cases) {
        Folder f;
        ::mkdir(f.file("dir").c_str(), 0755);
        Result r = f.evalg(with(plot, {"-o", c.out}));
        EXPECT_EQ(r.status, 1) << c.out;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
        EXPECT_EQ(f.entries(), std::vector<std::string>{"dir"}) << c.out;
        EXPECT_TRUE(f.entries("dir").empty()) << c.out;
    }
}

// A streamed JSON replaces a regular file whole, as a string did.
TEST(OutputPlaces, AStreamedJsonReplacesAFileWhole) {
    Folder f;
    f.write("wide.json", "an earlier file");
    ASSERT_EQ(f.evalg({"plot", "sin", "a=40", "--and", "cos", "--size", "30000x300", "-o", "wide.json"}).status, 0);
    std::string text = f.read("wide.json");
    EXPECT_GT(text.size(), std::size_t(1) << 20); // many buffers' worth
    json doc = json::parse(text);
    ASSERT_EQ(doc["relations"].size(), 2u);
    EXPECT_EQ(doc["relations"][1]["label"], "cos");
    EXPECT_GT(doc["relations"][0]["points"].size(), 30000u);
    EXPECT_EQ(f.entries(), std::vector<std::string>{"wide.json"});
}

} // namespace

#include "SketchFile.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <sys/stat.h>

#include "collab/ds/FloatPointC.h"
#include "Errors.h"
#include "Numbers.h"

namespace evalgtool {

using qelt::mathapp::ds::FloatPointC;
using nlohmann::json;

namespace {

struct MarkName {
    unsigned short bit;
    char const *name;
};
MarkName const marks[] = {{FloatPointC::X_INTERCEPT, "x-intercept"},
                          {FloatPointC::Y_INTERCEPT, "y-intercept"},
                          {FloatPointC::TURNING_POINT, "turning-point"}};

class Reader {
public:
    Reader(std::string const &path, std::string const &first, std::string const &second)
        : path_(path), first_(first), second_(second) {}

    [[noreturn]] void fail(std::string const &where, std::string const &problem) const {
        throw UsageError("points file '" + path_ + "'" + (where.empty() ? "" : ", " + where) + ": " + problem +
                         "; write a JSON list of [" + first_ + ", " + second_ + "] or {\"" + first_ + "\": .., \"" +
                         second_ + "\": ..}, or CSV lines " + first_ + "," + second_);
    }

    double finite(json const &v, std::string const &where) const {
        if (!v.is_number()) fail(where, "expected a number");
        double d = v.get<double>();
        if (!std::isfinite(d)) fail(where, "expected a finite number");
        return d;
    }

    unsigned short jsonMarks(json const &v, std::string const &where) const {
        if (v.is_number_unsigned() && v.get<unsigned long long>() <= 0xFFFF) return v.get<unsigned short>();
        if (!v.is_array()) fail(where, "marks must be a list of names or a number");
        unsigned short bits = 0;
        for (json const &name : v) {
            bool known = false;
            for (MarkName const &m : marks)
                if (name.is_string() && name.get<std::string>() == m.name) bits |= m.bit, known = true;
            if (!known) fail(where, "unknown mark " + name.dump() + " (x-intercept, y-intercept, turning-point)");
        }
        return bits;
    }

    void fromJson(std::istream &in, std::function<void(FilePoint const &)> const &visit) const {
        json doc = json::parse(in, nullptr, false);
        if (doc.is_discarded()) fail("", "not valid JSON");
        if (doc.is_object() && doc.contains("points")) doc = doc["points"];
        if (!doc.is_array()) fail("", "expected a list of points");
        for (std::size_t i = 0; i < doc.size(); ++i) {
            json const &p = doc[i];
            std::string where = "point " + std::to_string(i + 1);
            if (p.is_array() && p.size() >= 2) {
                visit(FilePoint{finite(p[0], where), finite(p[1], where), 0});
            } else if (p.is_object() && p.contains(first_) && p.contains(second_)) {
                unsigned short m = p.contains("marks") ? jsonMarks(p["marks"], where) : 0;
                visit(FilePoint{finite(p[first_], where), finite(p[second_], where), m});
            } else {
                fail(where, "expected a point");
            }
        }
    }

    void fromCsv(std::istream &lines, std::function<void(FilePoint const &)> const &visit) const {
        std::size_t a = 0, b = 1, number = 0;
        bool first = true;
        for (std::string line; std::getline(lines, line);) {
            ++number;
            if (!line.empty() && line.back() == '\r') line.pop_back();
            if (line.find_first_not_of(" \t") == std::string::npos) continue;
            std::vector<std::string> fields;
            std::stringstream fieldStream(line);
            for (std::string field; std::getline(fieldStream, field, ',');) {
                std::size_t s = field.find_first_not_of(" \t"), e = field.find_last_not_of(" \t");
                fields.push_back(s == std::string::npos ? "" : field.substr(s, e - s + 1));
            }
            std::string where = "line " + std::to_string(number);
            if (first && !fields.empty() && !fields[0].empty() &&
                std::strchr("+-.0123456789", fields[0][0]) == nullptr) {
                // A header: pick the named columns when it has them.
                for (std::size_t i = 0; i < fields.size(); ++i) {
                    if (fields[i] == first_) a = i;
                    if (fields[i] == second_) b = i;
                }
                first = false;
                continue;
            }
            first = false;
            if (fields.size() <= std::max(a, b)) fail(where, "expected two numbers");
            FilePoint p{0, 0, 0};
            try {
                p = FilePoint{parseNumber(fields[a], first_), parseNumber(fields[b], second_), 0};
            } catch (UsageError const &e) {
                fail(where, e.what());
            }
            visit(p);
        }
        if (lines.bad()) fail("", std::string("cannot read it: ") + std::strerror(errno));
    }

private:
    std::string path_, first_, second_;
};

bool endsWith(std::string const &s, std::string const &end) {
    return s.size() >= end.size() && s.compare(s.size() - end.size(), end.size(), end) == 0;
}

} // namespace

void forEachPoint(std::string const &path, std::string const &first, std::string const &second,
                  std::function<void(FilePoint const &)> const &visit) {
    Reader reader(path, first, second);
    struct stat info;
    if (::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode))
        throw UsageError("points file '" + path + "': cannot read it: it is a folder");
    std::ifstream in(path, std::ios::binary);
    if (!in) throw UsageError("points file '" + path + "': cannot read it: " + std::strerror(errno));
    // The extension decides, else the first character that is not blank.
    bool isJson = endsWith(path, ".json");
    if (!isJson && !endsWith(path, ".csv")) {
        int c = in.peek();
        while (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            in.get();
            c = in.peek();
        }
        isJson = c == '[' || c == '{';
    }
    if (isJson)
        reader.fromJson(in, visit);
    else
        reader.fromCsv(in, visit);
}

std::vector<FilePoint> readPointsFile(std::string const &path, std::string const &first, std::string const &second) {
    std::vector<FilePoint> out;
    forEachPoint(path, first, second, [&out](FilePoint const &p) { out.push_back(p); });
    return out;
}

std::vector<std::string> markNames(unsigned short bits) {
    std::vector<std::string> out;
    for (MarkName const &m : marks)
        if (bits & m.bit) out.push_back(m.name);
    return out;
}

} // namespace evalgtool

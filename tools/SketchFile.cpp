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

    std::vector<FilePoint> fromJson(std::string const &text) const {
        json doc = json::parse(text, nullptr, false);
        if (doc.is_discarded()) fail("", "not valid JSON");
        if (doc.is_object() && doc.contains("points")) doc = doc["points"];
        if (!doc.is_array()) fail("", "expected a list of points");
        std::vector<FilePoint> out;
        for (std::size_t i = 0; i < doc.size(); ++i) {
            json const &p = doc[i];
            std::string where = "point " + std::to_string(i + 1);
            if (p.is_array() && p.size() >= 2) {
                out.push_back(FilePoint{finite(p[0], where), finite(p[1], where), 0});
            } else if (p.is_object() && p.contains(first_) && p.contains(second_)) {
                unsigned short m = p.contains("marks") ? jsonMarks(p["marks"], where) : 0;
                out.push_back(FilePoint{finite(p[first_], where), finite(p[second_], where), m});
            } else {
                fail(where, "expected a point");
            }
        }
        return out;
    }

    std::vector<FilePoint> fromCsv(std::string const &text) const {
        std::vector<FilePoint> out;
        std::istringstream lines(text);
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
            try {
                out.push_back(FilePoint{parseNumber(fields[a], first_), parseNumber(fields[b], second_), 0});
            } catch (UsageError const &e) {
                fail(where, e.what());
            }
        }
        return out;
    }

private:
    std::string path_, first_, second_;
};

bool endsWith(std::string const &s, std::string const &end) {
    return s.size() >= end.size() && s.compare(s.size() - end.size(), end.size(), end) == 0;
}

} // namespace

std::vector<FilePoint> readPointsFile(std::string const &path, std::string const &first, std::string const &second) {
    Reader reader(path, first, second);
    struct stat info;
    if (::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode))
        throw UsageError("points file '" + path + "': cannot read it: it is a folder");
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    if (in) text << in.rdbuf();
    if (!in || in.bad())
        throw UsageError("points file '" + path + "': cannot read it: " + std::strerror(errno));
    std::string const s = text.str();
    std::size_t start = s.find_first_not_of(" \t\r\n");
    bool isJson = endsWith(path, ".json") ||
                  (!endsWith(path, ".csv") && start != std::string::npos && (s[start] == '[' || s[start] == '{'));
    return isJson ? reader.fromJson(s) : reader.fromCsv(s);
}

std::vector<std::string> markNames(unsigned short bits) {
    std::vector<std::string> out;
    for (MarkName const &m : marks)
        if (bits & m.bit) out.push_back(m.name);
    return out;
}

} // namespace evalgtool

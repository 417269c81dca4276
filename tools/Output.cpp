#include "Output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Errors.h"

namespace evalgtool {

namespace {

struct FormatName {
    Format format;
    char const *name;
    char const *extension;
};

FormatName const names[] = {{Format::Png, "png", ".png"},
                            {Format::Svg, "svg", ".svg"},
                            {Format::Json, "json", ".json"},
                            {Format::Csv, "csv", ".csv"},
                            {Format::Text, "text", ".txt"}};

bool allows(std::vector<Format> const &allowed, Format f) {
    for (Format a : allowed)
        if (a == f) return true;
    return false;
}

std::string lowercase(std::string s) {
    for (char &c : s)
        if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
    return s;
}

std::string failure(std::string const &what, std::string const &path) {
    return "cannot " + what + " '" + path + "': " + std::strerror(errno);
}

// Removes the temporary file unless it was renamed into place.
struct TemporaryFile {
    std::string path;
    int fd = -1;
    bool kept = false;
    ~TemporaryFile() {
        if (fd >= 0) ::close(fd);
        if (!kept && !path.empty()) ::unlink(path.c_str());
    }
};

} // namespace

std::string formatName(Format f) {
    for (FormatName const &n : names)
        if (n.format == f) return n.name;
    return "?";
}

std::string formatNames(std::vector<Format> const &formats) {
    std::string out;
    for (Format f : formats) out += (out.empty() ? "" : "|") + formatName(f);
    return out;
}

Format chooseFormat(std::string const &option, std::string const &path, std::vector<Format> const &allowed,
                    Format fallback) {
    if (!option.empty()) {
        for (FormatName const &n : names)
            if (option == n.name && allows(allowed, n.format)) return n.format;
        throw UsageError("--format: unknown format '" + option + "'; the formats are " + formatNames(allowed));
    }
    if (path.empty() || path == "-") return fallback;
    std::size_t slash = path.find_last_of('/');
    std::size_t dot = path.find_last_of('.');
    if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) {
        std::string extension = lowercase(path.substr(dot));
        for (FormatName const &n : names)
            if (extension == n.extension && allows(allowed, n.format)) return n.format;
    }
    throw UsageError("-o: cannot tell the format of '" + path + "' from its extension; name it with --format " +
                     formatNames(allowed));
}

void writeOutput(std::string const &path, std::string const &data) {
    if (path.empty() || path == "-") {
        if (std::fwrite(data.data(), 1, data.size(), stdout) != data.size() || std::fflush(stdout) != 0)
            throw OutputError("cannot write to standard output");
        return;
    }
    std::size_t slash = path.find_last_of('/');
    std::string folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    TemporaryFile temp;
    std::string pattern = folder + "." + base + ".tmp-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    temp.fd = ::mkstemp(name.data());
    if (temp.fd < 0) throw OutputError(failure("write", path));
    temp.path = name.data();
    // mkstemp makes the file private; give it the mode a new file gets.
    mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(temp.fd, 0666 & ~mask);
    std::size_t done = 0;
    while (done < data.size()) {
        ssize_t n = ::write(temp.fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) throw OutputError(failure("write", path));
        done += std::size_t(n);
    }
    int fd = temp.fd;
    temp.fd = -1;
    if (::close(fd) != 0) throw OutputError(failure("write", path));
    if (::rename(temp.path.c_str(), path.c_str()) != 0) throw OutputError(failure("write", path));
    temp.kept = true;
}

void makeDirectories(std::string const &path) {
    std::string sofar;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t slash = path.find('/', start);
        std::size_t end = slash == std::string::npos ? path.size() : slash;
        sofar = path.substr(0, end);
        if (!sofar.empty() && ::mkdir(sofar.c_str(), 0777) != 0 && errno != EEXIST)
            throw OutputError(failure("create the folder", sofar));
        if (slash == std::string::npos) break;
        start = slash + 1;
    }
    struct stat info;
    if (::stat(path.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) {
        errno = ENOTDIR;
        throw OutputError(failure("create the folder", path));
    }
}

} // namespace evalgtool

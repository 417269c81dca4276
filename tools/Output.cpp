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
    // A device or FIFO (/dev/stdout, a named pipe) has no extension to tell
    // by: it gets what standard output would.
    struct stat info;
    if (::stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode)) return fallback;
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

namespace {

// Bytes gathered before each write call.
std::size_t const bufferSize = 1 << 16;

// A link whose text leads into /proc names an open file (/dev/stderr is
// /proc/self/fd/2), not a place in a folder: renaming onto it would detach
// the file from whoever holds it open.
bool isProcessLink(std::string const &linkText) { return linkText.compare(0, 6, "/proc/") == 0; }

} // namespace

bool isStandardOutput(std::string const &path) {
    if (path.empty() || path == "-") return true;
    struct stat given, standardOutput;
    return ::stat(path.c_str(), &given) == 0 && ::fstat(1, &standardOutput) == 0 &&
           given.st_dev == standardOutput.st_dev && given.st_ino == standardOutput.st_ino;
}

OutputFile::OutputFile(std::string const &path) : path_(path.empty() ? "-" : path) {
    // Written as standard output, whatever name it goes by; opening
    // /dev/stdout anew would start at its beginning, not where it stands.
    if (isStandardOutput(path_)) {
        fd_ = 1;
        return;
    }
    struct stat given;
    bool exists = ::stat(path_.c_str(), &given) == 0;
    if (exists && S_ISDIR(given.st_mode)) {
        errno = EISDIR;
        fail("write");
    }
    if (exists && !S_ISREG(given.st_mode)) {
        // A FIFO or a device: opened through any links, no truncation (it
        // means nothing to either), and written in place.
        fd_ = ::open(path_.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
        if (fd_ < 0) fail("open");
        ownsFd_ = true;
        return;
    }
    // Follow links by their text to the regular file (or the name a new one
    // takes), so that the link stays a link and its target is replaced.
    std::string target = path_;
    for (int hops = 0;; ++hops) {
        struct stat link;
        if (::lstat(target.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) break;
        if (hops == 40) {
            errno = ELOOP;
            fail("write");
        }
        std::vector<char> text(std::size_t(link.st_size > 0 ? link.st_size : 255) + 1);
        ssize_t n = ::readlink(target.c_str(), text.data(), text.size());
        if (n < 0) fail("write");
        std::string next(text.data(), std::size_t(n) < text.size() ? std::size_t(n) : text.size());
        if (isProcessLink(next)) {
            fd_ = ::open(path_.c_str(), O_WRONLY | O_APPEND | O_NOCTTY | O_CLOEXEC);
            if (fd_ < 0) fail("open");
            ownsFd_ = true;
            return;
        }
        std::size_t slash = target.find_last_of('/');
        target = next[0] == '/' || slash == std::string::npos ? next : target.substr(0, slash + 1) + next;
    }
    // Renaming needs only the folder's permission; a file the user may not
    // write to is refused as writing into it would be.
    if (exists && ::access(target.c_str(), W_OK) != 0) fail("write");

    std::size_t slash = target.find_last_of('/');
    std::string folder = slash == std::string::npos ? "" : target.substr(0, slash + 1);
    std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    std::string pattern = folder + "." + base + ".tmp-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    fd_ = ::mkstemp(name.data());
    if (fd_ < 0) fail("write");
    ownsFd_ = true;
    temporary_ = name.data();
    target_ = target;
    // mkstemp makes the file private: give it the mode (and owner) of the
    // file it replaces, or the mode a new file gets.
    if (exists) {
        // Set-id bits only for the same owner; chown clears them anyway.
        bool owned = ::fchown(fd_, given.st_uid, given.st_gid) == 0;
        ::fchmod(fd_, given.st_mode & (owned ? 07777 : 0777));
    } else {
        mode_t mask = ::umask(0);
        ::umask(mask);
        ::fchmod(fd_, 0666 & ~mask);
    }
}

OutputFile::~OutputFile() {
    if (ownsFd_ && fd_ >= 0) ::close(fd_);
    if (!committed_ && !temporary_.empty()) ::unlink(temporary_.c_str());
}

void OutputFile::fail(std::string const &what) const {
    throw OutputError("cannot " + what + " " + (path_ == "-" ? std::string("standard output") : "'" + path_ + "'") +
                      ": " + std::strerror(errno));
}

void OutputFile::write(char const *data, std::size_t size) {
    buffer_.append(data, size);
    if (buffer_.size() >= bufferSize) flush();
}

void OutputFile::flush() {
    std::size_t done = 0;
    while (done < buffer_.size()) {
        ssize_t n = ::write(fd_, buffer_.data() + done, buffer_.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n == 0) errno = EIO; // a write that takes nothing would repeat forever
        if (n <= 0) fail("write");
        done += std::size_t(n);
    }
    buffer_.clear();
}

void OutputFile::commit() {
    flush();
    if (ownsFd_) {
        int fd = fd_;
        fd_ = -1;
        // A full disk may first show here, when the last blocks are flushed.
        if (::close(fd) != 0) fail("write");
    }
    if (!temporary_.empty() && ::rename(temporary_.c_str(), target_.c_str()) != 0) fail("write");
    committed_ = true;
}

void writeOutput(std::string const &path, std::string const &data) {
    OutputFile out(path);
    out.write(data);
    out.commit();
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

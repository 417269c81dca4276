#ifndef EVALG_TOOL_OUTPUT_H
#define EVALG_TOOL_OUTPUT_H

#include <cstddef>
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

// Whether path names standard output: empty, "-", or any name of the file
// standard output already is (/dev/stdout, /dev/fd/1, the terminal's device).
bool isStandardOutput(std::string const &path);

// Where a format's bytes go as it makes them, so that a large output is
// never held whole.
class ByteSink {
public:
    virtual ~ByteSink() = default;
    virtual void write(char const *data, std::size_t size) = 0;
    void write(std::string const &data) { write(data.data(), data.size()); }
};

// Bytes kept in memory: for the tests, and for formats made whole anyway.
class StringSink : public ByteSink {
public:
    using ByteSink::write;
    void write(char const *data, std::size_t size) override { text.append(data, size); }
    std::string text;
};

// Where an output goes, opened before the first byte and finished by
// commit(). A regular file (or a link to one, or a name that does not exist
// yet) is written to a temporary file beside it and renamed over it on
// commit, so it never holds half an output; without commit the temporary is
// removed and an earlier file stays as it was. Anything else is written in
// place: standard output (an empty path, "-", or any name of the file
// standard output already is, such as /dev/stdout), a FIFO, a character
// device, or a link to one of them; replacing those would turn a device into
// a plain file. Every failure, a full disk included, throws OutputError.
class OutputFile : public ByteSink {
public:
    explicit OutputFile(std::string const &path);
    ~OutputFile();
    OutputFile(OutputFile const &) = delete;
    OutputFile &operator=(OutputFile const &) = delete;

    using ByteSink::write;
    void write(char const *data, std::size_t size) override;
    void commit();

private:
    void flush();
    [[noreturn]] void fail(std::string const &what) const;

    std::string path_;      // as given, for messages
    std::string target_;    // the file a commit renames onto; empty when written in place
    std::string temporary_; // the temporary beside target_
    int fd_ = -1;
    bool ownsFd_ = false;
    bool committed_ = false;
    std::string buffer_;
};

// The whole of data to path, through an OutputFile.
void writeOutput(std::string const &path, std::string const &data);

// Creates the folder and its missing parents. Throws OutputError.
void makeDirectories(std::string const &path);

} // namespace evalgtool

#endif

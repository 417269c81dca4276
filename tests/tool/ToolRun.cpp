#include "ToolRun.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fcntl.h>
#include <fstream>
#include <png.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

#include "collab/ds/PixelPointC.h"

namespace tooltest {

Folder::Folder() {
    char name[] = "/tmp/evalg-tool-test-XXXXXX";
    char *made = ::mkdtemp(name);
    path_ = made ? made : "";
}

Folder::~Folder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> Folder::entries(std::string const &sub) const {
    std::vector<std::string> out;
    std::error_code ignored;
    for (auto const &e : std::filesystem::directory_iterator(file(sub), ignored))
        out.push_back(e.path().filename().string());
    std::sort(out.begin(), out.end());
    return out;
}

void Folder::write(std::string const &name, std::string const &content) const {
    std::ofstream(file(name), std::ios::binary) << content;
}

namespace {

std::string slurp(std::string const &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

} // namespace

std::string Folder::read(std::string const &name) const { return slurp(file(name)); }

Result Folder::evalg(std::vector<std::string> const &args, std::string const &standardOutput) const {
    // Standard output and error go to files outside the folder, so they never
    // count as files the tool wrote.
    std::string out = path_ + ".out", err = path_ + ".err";
    pid_t pid = ::fork();
    if (pid == 0) {
        std::vector<char *> argv{const_cast<char *>(EVALG_TOOL_PATH)};
        for (std::string const &a : args) argv.push_back(const_cast<char *>(a.c_str()));
        argv.push_back(nullptr);
        int o = standardOutput.empty() ? ::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644)
                                       : ::open(standardOutput.c_str(), O_WRONLY);
        int e = ::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (o < 0 || e < 0 || ::chdir(path_.c_str()) != 0) ::_exit(127);
        ::dup2(o, 1);
        ::dup2(e, 2);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    Result r{WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), slurp(out), slurp(err)};
    ::unlink(out.c_str());
    ::unlink(err.c_str());
    return r;
}

Png readPng(std::string const &path) {
    Png out;
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return out;
    image.format = PNG_FORMAT_RGB;
    std::vector<Rgb> pixels(std::size_t(image.width) * image.height);
    if (!png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) return out;
    out.width = image.width;
    out.height = image.height;
    out.pixels = std::move(pixels);
    return out;
}

std::vector<std::string> with(std::vector<std::string> words, std::vector<std::string> const &more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

std::vector<std::string> quotedAfter(std::string const &text, std::string const &prefix) {
    std::vector<std::string> out;
    std::string const open = prefix + "\"";
    for (std::size_t at = text.find(open); at != std::string::npos; at = text.find(open, at)) {
        at += open.size();
        std::size_t close = text.find('"', at);
        if (close == std::string::npos) break;
        out.push_back(text.substr(at, close - at));
    }
    return out;
}

std::string testName(std::string name) {
    for (char &c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
}

nlohmann::json pointsJson(qelt::oss::PointerTC<qelt::mathapp::ds::GraphDataSetWinC> const &set) {
    nlohmann::json out = nlohmann::json::array();
    unsigned int count = 0;
    POINT const *p = set->getPixelPoints(count);
    unsigned char const *m = set->getPixelMarkers(count);
    for (unsigned int i = 0; i < count; ++i) out.push_back({p[i].x, p[i].y, m[i]});
    return out;
}

std::vector<nlohmann::json> stretches(nlohmann::json const &points, int m, int n) {
    using qelt::mathapp::ds::PixelPointC;
    std::vector<nlohmann::json> out;
    bool open = false;
    for (std::size_t i = 0; i < points.size(); ++i) {
        int x = points[i][0], y = points[i][1], marker = points[i][2];
        if (x < -1 || x > m || y < -1 || y > n) {
            open = false;
            continue;
        }
        if (!open || (marker & PixelPointC::FIRST_VISIBLE) || (int(points[i - 1][2]) & PixelPointC::LAST_VISIBLE))
            out.push_back(nlohmann::json::array());
        out.back().push_back(points[i]);
        open = true;
    }
    return out;
}

} // namespace tooltest

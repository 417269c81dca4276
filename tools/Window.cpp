#include "Window.h"

#include <cmath>
#include <vector>

#include "Errors.h"
#include "Numbers.h"

namespace evalgtool {

namespace {

int parseExtent(std::string const &text, std::string const &form) {
    std::string const what = "--size";
    bool digits = !text.empty();
    for (char c : text) digits = digits && c >= '0' && c <= '9';
    if (!digits) throw UsageError(what + ": '" + text + "' is not of the form " + form);
    // Strip leading zeros; anything longer than five digits is over the limit.
    std::size_t first = text.find_first_not_of('0');
    std::string significant = first == std::string::npos ? "0" : text.substr(first);
    long v = significant.size() > 5 ? 99999 : std::stol(significant);
    if (v < 1 || v > 32767)
        throw UsageError(what + ": " + text + " pixels is out of range; each side must be from 1 to 32767");
    return int(v);
}

// Index of v in a grid of n cells of width step starting at edge.
bool cellOf(double v, double edge, double step, int n, int &cell) {
    double c = std::floor((v - edge) / step);
    if (!(c >= 0 && c < n)) return false; // NaN fails here too
    cell = int(c);
    return true;
}

double stepOf(double lo, double hi, int n) { return (hi - lo) / double(n - 1); }

} // namespace

Window parseWindow(std::string const &window, std::string const &size) {
    Window w;
    if (!window.empty()) {
        std::string const form = "XMIN,XMAX,YMIN,YMAX, e.g. -8,8,-5,5";
        std::vector<double> v = parseNumberList(window, "--window", 4, form);
        if (!(v[0] < v[1])) throw UsageError("--window: XMIN must be less than XMAX; the form is " + form);
        if (!(v[2] < v[3])) throw UsageError("--window: YMIN must be less than YMAX; the form is " + form);
        if (!std::isfinite(v[1] - v[0]) || !std::isfinite(v[3] - v[2]))
            throw UsageError("--window: '" + window + "' is too wide; each range must have a finite width");
        w.xMin = v[0], w.xMax = v[1], w.yMin = v[2], w.yMax = v[3];
    }
    if (!size.empty()) {
        std::string const form = "MxN, e.g. 161x101";
        std::size_t x = size.find_first_of("xX");
        if (x == std::string::npos) throw UsageError("--size: '" + size + "' is not of the form " + form);
        w.columns = parseExtent(size.substr(0, x), form);
        w.rows = parseExtent(size.substr(x + 1), form);
    }
    return w;
}

qelt::oss::PointerTC<qelt::mathapp::ds::GraphicalDomainC> makeDomain(Window const &w) {
    return qelt::oss::PointerTC<qelt::mathapp::ds::GraphicalDomainC>(new qelt::mathapp::ds::GraphicalDomainC(
        w.xMin, w.xMax, w.yMin, w.yMax, static_cast<unsigned short>(w.columns), static_cast<unsigned short>(w.rows)));
}

bool columnOf(Window const &w, double x, int &column) {
    double step = stepOf(w.xMin, w.xMax, w.columns);
    return cellOf(x, w.xMin - step * 0.5, step, w.columns, column);
}

bool screenRowOf(Window const &w, double y, int &row) {
    double step = stepOf(w.yMin, w.yMax, w.rows);
    int fromBottom = 0;
    if (!cellOf(y, w.yMin - step * 0.5, step, w.rows, fromBottom)) return false;
    row = w.rows - fromBottom - 1;
    return true;
}

} // namespace evalgtool


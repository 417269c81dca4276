#include "PictureFrame.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Font.h"

namespace evalgtool {

namespace {

// "1.50000e+06" as "1.5e6".
std::string tidyExponent(std::string s) {
    std::size_t e = s.find('e');
    if (e == std::string::npos) return s;
    std::string mantissa = s.substr(0, e), exponent = s.substr(e + 1);
    if (mantissa.find('.') != std::string::npos) {
        while (mantissa.back() == '0') mantissa.pop_back();
        if (mantissa.back() == '.') mantissa.pop_back();
    }
    bool negative = exponent[0] == '-';
    std::size_t digits = exponent.find_first_not_of("+-0");
    return mantissa + "e" + (negative ? "-" : "") + (digits == std::string::npos ? "0" : exponent.substr(digits));
}

// The labels of every k-th line, k the smallest of 1, 2, 5, 10, 20, ... that
// leaves gap picture pixels between neighbouring labels; then, kept within
// [0, extent), any label that would still touch the one before is dropped.
template <class Size>
std::vector<AxisLabel> pickLabels(std::vector<GridLine> lines, int scale, int extent, int gap, Size size) {
    std::vector<AxisLabel> out;
    if (lines.empty()) return out;
    std::sort(lines.begin(), lines.end(), [](GridLine const &a, GridLine const &b) { return a.pixel < b.pixel; });
    // Each label centred on its line, moved inside [0, extent) where it would
    // stick out; none where it cannot fit.
    auto labelsEvery = [&](double k) {
        std::vector<AxisLabel> picked;
        for (GridLine const &g : lines)
            if (std::fmod(g.multiple, k) == 0) {
                std::string text = axisNumber(g.value, g.step * k);
                if (size(text) > extent) continue; // a window too small to hold it
                int at = g.pixel * scale + scale / 2 - size(text) / 2;
                picked.push_back(AxisLabel{g.pixel, std::max(0, std::min(at, extent - size(text))), text});
            }
        return picked;
    };
    auto fits = [&](std::vector<AxisLabel> const &picked) {
        for (std::size_t i = 1; i < picked.size(); ++i)
            if (picked[i].at < picked[i - 1].at + size(picked[i - 1].text) + gap) return false;
        return true;
    };
    // Ends: once k passes the number of lines at most one label is left; the
    // last k tried drops whatever still touches the label before it.
    double const limit = 10.0 * double(lines.size());
    for (double base = 1; base <= limit; base *= 10)
        for (double m : {1.0, 2.0, 5.0}) {
            std::vector<AxisLabel> picked = labelsEvery(m * base);
            if (fits(picked)) return picked;
            if (m * base * 2 <= limit) continue;
            for (AxisLabel const &l : picked)
                if (out.empty() || l.at >= out.back().at + size(out.back().text) + gap) out.push_back(l);
            return out;
        }
    return out;
}

} // namespace

std::string axisNumber(double value, double step) {
    if (value == 0 || !(step > 0)) return "0";
    char buffer[128];
    // Decimals that tell multiples of a 1, 2 or 5 step apart, and the
    // significant digits that keep them.
    int stepPower = int(std::floor(std::log10(step)));
    int decimals = std::max(0, -stepPower);
    int digits = std::max(1, std::min(17, int(std::floor(std::log10(std::fabs(value)))) - stepPower + 1));
    std::string fixed;
    if (std::fabs(value) < 1e21) {
        std::snprintf(buffer, sizeof buffer, "%.*f", std::min(decimals, 40), value);
        fixed = buffer;
    }
    std::snprintf(buffer, sizeof buffer, "%.*e", digits - 1, value);
    std::string exponent = tidyExponent(buffer);
    // "0.002" reads better than "2e-3", "1e-4" better than "0.0001".
    return !fixed.empty() && fixed.size() <= exponent.size() + 1 ? fixed : exponent;
}

PictureFrame frameOf(Picture const &picture, int scale) {
    PictureFrame f;
    Window const &w = picture.window;
    f.scale = scale;
    f.font = scale >= 3 ? 2 : 1;
    f.charWidth = (glyphWidth + 1) * f.font;
    f.lineHeight = (glyphHeight + 3) * f.font;
    f.margin = 4;
    f.tick = 3 * f.font;
    f.plotWidth = w.columns * scale;
    f.plotHeight = w.rows * scale;
    f.rightStrip = f.bottomStrip = 0;
    if (picture.axes) {
        int gap = 2 * f.font;
        f.xLabels = pickLabels(verticalGridLines(w), scale, f.plotWidth, 2 * f.charWidth,
                               [&](std::string const &t) { return int(t.size()) * f.charWidth - f.font; });
        f.yLabels = pickLabels(horizontalGridLines(w), scale, f.plotHeight, gap,
                               [&](std::string const &) { return (glyphHeight - 1) * f.font; });
        std::size_t widest = 0;
        for (AxisLabel const &l : f.yLabels) widest = std::max(widest, l.text.size());
        f.rightStrip = f.tick + gap + int(widest) * f.charWidth + f.margin;
        f.bottomStrip = f.tick + gap + glyphHeight * f.font + gap;
    }
    f.title = !picture.title.empty();
    f.legend = picture.curves.size() > 1 ? picture.curves.size() : 0;
    std::size_t lines = f.legend + (f.title ? 1 : 0);
    f.width = f.plotWidth + f.rightStrip;
    f.textTop = f.plotHeight + f.bottomStrip + f.margin;
    f.height = lines == 0 ? f.plotHeight + f.bottomStrip : f.textTop + int(lines) * f.lineHeight;
    return f;
}

} // namespace evalgtool

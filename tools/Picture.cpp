#include "Picture.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include "collab/ds/PixelPointC.h"

namespace evalgtool {

using qelt::mathapp::ds::PixelPointC;

std::vector<PixelPoint> pixelPoints(qelt::oss::PointerTC<qelt::mathapp::ds::GraphDataSetWinC> const &set) {
    std::vector<PixelPoint> out;
    if (!set) return out;
    unsigned int count = 0;
    POINT const *points = set->getPixelPoints(count);
    unsigned char const *markers = set->getPixelMarkers(count);
    out.reserve(count);
    for (unsigned int i = 0; i < count; ++i) out.push_back(PixelPoint{points[i].x, points[i].y, markers[i]});
    return out;
}

std::vector<Stroke> visibleStretches(std::vector<PixelPoint> const &points, Window const &w, bool columnWalk) {
    std::vector<Stroke> out;
    Stroke current;
    auto finish = [&]() {
        if (!current.empty()) out.push_back(std::move(current));
        current.clear();
    };
    for (PixelPoint const &p : points) {
        bool nearGrid = p.column >= -1 && p.column <= w.columns && p.row >= -1 && p.row <= w.rows;
        if (!nearGrid) {
            finish();
            continue;
        }
        if (!current.empty()) {
            PixelPoint const &q = current.back();
            bool jump = columnWalk && std::labs(long(p.column) - long(q.column)) > 1;
            if ((q.markers & PixelPointC::LAST_VISIBLE) || (p.markers & PixelPointC::FIRST_VISIBLE) || jump)
                finish();
        }
        current.push_back(p);
    }
    finish();
    return out;
}

bool isUndecided(PixelPoint const &p) { return (p.markers & PixelPointC::UNDECIDED) != 0; }

std::vector<ShadedPiece> shadedPieces(Stroke const &stroke) {
    std::vector<ShadedPiece> out;
    if (stroke.size() == 1) out.push_back(ShadedPiece{stroke, isUndecided(stroke[0])});
    for (std::size_t j = 1; j < stroke.size(); ++j) {
        bool undecided = isUndecided(stroke[j - 1]) && isUndecided(stroke[j]);
        if (out.empty() || out.back().undecided != undecided) out.push_back(ShadedPiece{{stroke[j - 1]}, undecided});
        out.back().points.push_back(stroke[j]);
    }
    return out;
}

std::vector<PixelRun> rowRuns(std::vector<PixelPoint> const &points) {
    std::vector<PixelRun> out;
    for (std::size_t i = 0; i < points.size(); ++i) {
        PixelPoint const &p = points[i];
        std::size_t end = i;
        bool paired = (p.markers & PixelPointC::FIRST_VISIBLE) && !(p.markers & PixelPointC::LAST_VISIBLE) &&
                      i + 1 < points.size() && (points[i + 1].markers & PixelPointC::LAST_VISIBLE) &&
                      !(points[i + 1].markers & PixelPointC::FIRST_VISIBLE) && points[i + 1].row == p.row;
        if (paired) end = i + 1;
        PixelPoint const &q = points[end];
        out.push_back(PixelRun{p.row, std::min(p.column, q.column), std::max(p.column, q.column),
                               isUndecided(p) && isUndecided(q)});
        i = end;
    }
    return out;
}

namespace {

using Span = std::pair<std::int32_t, std::int32_t>; // first, last

// The parts of the sorted, disjoint spans a that lie inside some span of b.
std::vector<Span> intersect(std::vector<Span> const &a, std::vector<Span> const &b) {
    std::vector<Span> out;
    std::size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        std::int32_t lo = std::max(a[i].first, b[j].first), hi = std::min(a[i].second, b[j].second);
        if (lo <= hi) out.emplace_back(lo, hi);
        if (a[i].second < b[j].second)
            ++i;
        else
            ++j;
    }
    return out;
}

} // namespace

RunLayers runLayers(std::vector<PixelRun> runs, Window const &w) {
    std::sort(runs.begin(), runs.end(), [](PixelRun const &a, PixelRun const &b) {
        return a.row != b.row ? a.row < b.row : a.first < b.first;
    });
    // Each row's drawn pixels as merged spans, whatever their state.
    std::vector<std::int32_t> rows;
    std::vector<std::vector<Span>> covered;
    for (PixelRun const &r : runs) {
        if (rows.empty() || rows.back() != r.row) {
            rows.push_back(r.row);
            covered.emplace_back();
        }
        std::vector<Span> &c = covered.back();
        if (!c.empty() && std::int64_t(r.first) <= std::int64_t(c.back().second) + 1)
            c.back().second = std::max(c.back().second, r.last);
        else
            c.emplace_back(r.first, r.last);
    }
    // Beyond the window counts as drawn: a region reaching the window's edge
    // has no edge there.
    std::vector<Span> const beyond{Span(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max())};
    auto row = [&](std::int64_t y) -> std::vector<Span> const * {
        if (y < 0 || y >= w.rows) return &beyond;
        auto at = std::lower_bound(rows.begin(), rows.end(), y);
        return at != rows.end() && *at == y ? &covered[std::size_t(at - rows.begin())] : nullptr;
    };
    RunLayers out;
    for (PixelRun const &r : runs) {
        std::vector<Span> const *above = row(std::int64_t(r.row) - 1), *below = row(std::int64_t(r.row) + 1);
        std::vector<Span> inside;
        if (above && below) {
            // Left and right neighbours: inside the row's own merged span.
            std::vector<Span> const &own = *row(r.row);
            std::vector<Span> shrunk;
            for (Span const &s : own) {
                std::int32_t first = s.first > 0 ? s.first + 1 : s.first;
                std::int32_t last = s.second < w.columns - 1 ? s.second - 1 : s.second;
                if (first <= last) shrunk.emplace_back(first, last);
            }
            inside = intersect(intersect(intersect({Span(r.first, r.last)}, shrunk), *above), *below);
        }
        std::int64_t next = r.first;
        for (Span const &s : inside) {
            if (s.first > next) out.edge.push_back(PixelRun{r.row, std::int32_t(next), s.first - 1, r.undecided});
            out.inside.push_back(PixelRun{r.row, s.first, s.second, r.undecided});
            next = std::int64_t(s.second) + 1;
        }
        if (next <= r.last) out.edge.push_back(PixelRun{r.row, std::int32_t(next), r.last, r.undecided});
    }
    return out;
}

std::uint64_t pixelCount(Drawing const &d) {
    if (!d.pixelRuns) return d.points.size();
    std::uint64_t n = 0;
    for (PixelRun const &r : rowRuns(d.points)) n += std::uint64_t(r.length());
    return n;
}

} // namespace evalgtool

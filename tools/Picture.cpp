#include "Picture.h"

#include <cstdlib>

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

} // namespace evalgtool

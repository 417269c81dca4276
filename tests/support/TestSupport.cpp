#include "TestSupport.h"

#include <limits>

#include "collab/ds/PixelPointC.h"

namespace evalgtest {

PointerTC<GraphicalDomainC> makeDomain(Window const &w) {
    return PointerTC<GraphicalDomainC>(new GraphicalDomainC(w.xMin, w.xMax, w.yMin, w.yMax, w.m, w.n));
}

std::ostream &operator<<(std::ostream &os, Pt const &p) {
    os << "(" << p.x << ", " << p.y;
    if (p.m & qelt::mathapp::ds::PixelPointC::FIRST_VISIBLE) os << " F";
    if (p.m & qelt::mathapp::ds::PixelPointC::LAST_VISIBLE) os << " L";
    return os << ")";
}

std::ostream &operator<<(std::ostream &os, XY const &p) { return os << "(" << p.x << ", " << p.y << ")"; }

std::vector<Pt> points(PointerTC<GraphDataSetWinC> const &set) {
    std::vector<Pt> out;
    if (!set) return out;
    unsigned int count = 0;
    POINT const *p = set->getPixelPoints(count);
    unsigned char const *m = set->getPixelMarkers(count);
    for (unsigned int i = 0; i < count; ++i) out.push_back(Pt{p[i].x, p[i].y, m[i]});
    return out;
}

std::vector<XY> xys(std::vector<Pt> const &pts) {
    std::vector<XY> out;
    for (Pt const &p : pts) out.push_back(XY{p.x, p.y});
    return out;
}

std::vector<size_t> withMarker(std::vector<Pt> const &pts, unsigned bit) {
    std::vector<size_t> out;
    for (size_t i = 0; i < pts.size(); ++i)
        if (pts[i].m & bit) out.push_back(i);
    return out;
}

std::vector<Pt> draw(qelt::mathapp::evalg::CartesianRelationGraphEvalC &evaluator,
                     PointerTC<qelt::mathapp::rel::RelationC> relation, Window const &w) {
    qelt::mathapp::esb::CartesianRelationServiceC service(relation);
    return points(evaluator.evaluateGraph(service, makeDomain(w)));
}

unsigned long long Rng::next() {
    // splitmix64
    unsigned long long z = (s_ += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

double Rng::uniform(double lo, double hi) { return lo + (hi - lo) * (double(next() >> 11) * 0x1.0p-53); }

double Rng::wild(double range) {
    static double const specials[] = {0.0,     std::numeric_limits<double>::quiet_NaN(),
                                      std::numeric_limits<double>::infinity(),
                                      -std::numeric_limits<double>::infinity(),
                                      1e300,   -1e300, 1e-300, -1e-300};
    if (below(4) == 0) return specials[below(8)];
    return uniform(-range, range);
}

} // namespace evalgtest

#include "collab/ds/FloatDataSetC.h"

#include <cstdio>

namespace qelt {
namespace mathapp {
namespace ds {

FloatDataSetC::~FloatDataSetC() {
    for (FloatPointC *p : points_) delete p;
}

void FloatDataSetC::addPoint(FloatPointC *point) {
    if (!point) return;
    try {
        points_.push_back(point);
    } catch (...) {
        delete point; // ownership was handed over; nothing may leak
    }
}

void FloatDataSetC::trace() const {
    std::fprintf(stderr, "FloatDataSetC: %zu points\n", points_.size());
    for (FloatPointC const *p : points_)
        std::fprintf(stderr, "  (%.17g, %.17g) marks 0x%x\n", p->getX(), p->getY(),
                     static_cast<unsigned>(p->getMarks()));
}

} // namespace ds
} // namespace mathapp
} // namespace qelt

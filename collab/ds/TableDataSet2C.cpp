#include "collab/ds/TableDataSet2C.h"

namespace qelt {
namespace mathapp {
namespace ds {

TableDataSet2C::~TableDataSet2C() {
    for (FloatPoint2C *p : points_) delete p;
}

void TableDataSet2C::addPoint(FloatPoint2C *point) {
    if (!point) return;
    try {
        points_.push_back(point);
    } catch (...) {
        delete point;
    }
}

} // namespace ds
} // namespace mathapp
} // namespace qelt

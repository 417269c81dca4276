#ifndef QELT_DS_TABLEDATASET2C_H
#define QELT_DS_TABLEDATASET2C_H

#include <vector>

#include "collab/ds/FloatPoint2C.h"
#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace ds {

// The rows of a table of values, in order; the set owns them.
class TableDataSet2C : public oss::RefCountedBC {
public:
    TableDataSet2C() {}
    virtual ~TableDataSet2C();

    // Takes ownership; a null row is ignored.
    void addPoint(FloatPoint2C *point);
    std::vector<FloatPoint2C *> const &getPoints() const { return points_; }

private:
    TableDataSet2C(TableDataSet2C const &) = delete;
    TableDataSet2C &operator=(TableDataSet2C const &) = delete;

    std::vector<FloatPoint2C *> points_;
};

} // namespace ds
} // namespace mathapp
} // namespace qelt

#endif

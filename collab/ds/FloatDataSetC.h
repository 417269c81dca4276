#ifndef QELT_DS_FLOATDATASETC_H
#define QELT_DS_FLOATDATASETC_H

#include <vector>

#include "collab/ds/FloatPointC.h"
#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace ds {

// An ordered list of sketch points; the set owns them.
class FloatDataSetC : public oss::RefCountedBC {
public:
    FloatDataSetC() {}
    virtual ~FloatDataSetC();

    // Takes ownership; a null point is ignored.
    void addPoint(FloatPointC *point);
    std::vector<FloatPointC *> const &getPoints() const { return points_; }

    virtual void trace() const;

private:
    FloatDataSetC(FloatDataSetC const &) = delete;
    FloatDataSetC &operator=(FloatDataSetC const &) = delete;

    std::vector<FloatPointC *> points_;
};

} // namespace ds
} // namespace mathapp
} // namespace qelt

#endif

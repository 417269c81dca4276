#ifndef QELT_REL_SKETCHC_H
#define QELT_REL_SKETCHC_H

#include <vector>

#include "collab/ds/FloatDataSetC.h"
#include "collab/esb/SketchServiceIC.h"
#include "collab/oss/PointerTC.h"
#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// A free-hand sketch: an ordered list of points. It is also its own sketch
// service. A sketch has no y values at x: it is drawn point by point.
class SketchC : public RelationC, public esb::SketchServiceIC {
public:
    explicit SketchC(oss::PointerTC<ds::FloatDataSetC> points);
    virtual ~SketchC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    std::vector<ds::FloatPointC *> const &getValues() const override;
    oss::PointerTC<ds::FloatDataSetC> getPoints() const { return points_; }

private:
    oss::PointerTC<ds::FloatDataSetC> points_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

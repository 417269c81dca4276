#ifndef QELT_REL_BOXFUNCTIONIC_H
#define QELT_REL_BOXFUNCTIONIC_H

#include "collab/math/IntervalC.h"
#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// A function h(x, y) of the plane, known only by its enclosures: the values
// it takes over a box [x] x [y], with the flags of math::IntervalC (no value,
// a domain edge inside, a possible jump inside). A point is the degenerate
// box [v, v] x [w, w]. An implicit relation F op G holds h = F - G.
class BoxFunctionIC : public oss::RefCountedBC {
public:
    virtual ~BoxFunctionIC() {}
    virtual math::IntervalC enclose(math::IntervalC const &x, math::IntervalC const &y) const = 0;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

#ifndef QELT_REL_CURVEFUNCTIONIC_H
#define QELT_REL_CURVEFUNCTIONIC_H

#include "collab/math/IntervalC.h"
#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// A plane curve t -> (x(t), y(t)), known only by its enclosures: the x and y
// values over a parameter interval [t], each with the flags of
// math::IntervalC. A point of the curve is the degenerate interval [t, t].
class CurveFunctionIC : public oss::RefCountedBC {
public:
    virtual ~CurveFunctionIC() {}
    virtual void enclose(math::IntervalC const &t, math::IntervalC &x, math::IntervalC &y) const = 0;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

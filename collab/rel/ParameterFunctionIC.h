#ifndef QELT_REL_PARAMETERFUNCTIONIC_H
#define QELT_REL_PARAMETERFUNCTIONIC_H

#include "collab/math/IntervalC.h"
#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// A function of one parameter (a polar radius r(θ)), known only by its
// enclosures over parameter intervals, with the flags of math::IntervalC.
class ParameterFunctionIC : public oss::RefCountedBC {
public:
    virtual ~ParameterFunctionIC() {}
    virtual math::IntervalC enclose(math::IntervalC const &t) const = 0;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

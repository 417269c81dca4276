#ifndef QELT_REL_PARAMETRICCURVEC_H
#define QELT_REL_PARAMETRICCURVEC_H

#include "collab/oss/PointerTC.h"
#include "collab/rel/CurveFunctionIC.h"
#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The curve (x(t), y(t)) for t from tMin to tMax.
class ParametricCurveC : public RelationC {
public:
    // A null curve has no points; so has a range that is not tMin <= tMax
    // with both ends finite.
    ParametricCurveC(oss::PointerTC<CurveFunctionIC> curve, double tMin, double tMax);
    virtual ~ParametricCurveC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    oss::PointerTC<CurveFunctionIC> getCurve() const { return curve_; }
    double getTMin() const { return tMin_; }
    double getTMax() const { return tMax_; }

private:
    oss::PointerTC<CurveFunctionIC> curve_;
    double tMin_;
    double tMax_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

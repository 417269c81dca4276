#ifndef QELT_REL_POLARCURVEC_H
#define QELT_REL_POLARCURVEC_H

#include "collab/oss/PointerTC.h"
#include "collab/rel/ParameterFunctionIC.h"
#include "collab/rel/ParametricCurveC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The polar curve r = r(θ) for θ from thetaMin to thetaMax: the parametric
// curve x = r(θ) cos θ, y = r(θ) sin θ, drawn by the same evaluator.
class PolarCurveC : public ParametricCurveC {
public:
    // One turn unless told otherwise.
    explicit PolarCurveC(oss::PointerTC<ParameterFunctionIC> radius);
    PolarCurveC(oss::PointerTC<ParameterFunctionIC> radius, double thetaMin, double thetaMax);
    virtual ~PolarCurveC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    oss::PointerTC<ParameterFunctionIC> getRadius() const { return radius_; }

private:
    oss::PointerTC<ParameterFunctionIC> radius_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif

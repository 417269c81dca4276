#include "collab/rel/PolarCurveC.h"

#include "collab/math/Float64UtilC.h"

namespace qelt {
namespace mathapp {
namespace rel {

namespace {

using math::IntervalC;

// x = r(θ) cos θ, y = r(θ) sin θ, each enclosed from r's enclosure.
class PolarToCartesian : public CurveFunctionIC {
public:
    explicit PolarToCartesian(oss::PointerTC<ParameterFunctionIC> radius) : radius_(radius) {}
    void enclose(IntervalC const &theta, IntervalC &x, IntervalC &y) const override {
        IntervalC r = radius_->enclose(theta);
        x = IntervalC::mul(r, IntervalC::cos(theta));
        y = IntervalC::mul(r, IntervalC::sin(theta));
    }

private:
    oss::PointerTC<ParameterFunctionIC> radius_;
};

oss::PointerTC<CurveFunctionIC> cartesian(oss::PointerTC<ParameterFunctionIC> radius) {
    if (!radius) return oss::PointerTC<CurveFunctionIC>();
    return oss::PointerTC<CurveFunctionIC>(new PolarToCartesian(radius));
}

} // namespace

PolarCurveC::PolarCurveC(oss::PointerTC<ParameterFunctionIC> radius)
    : PolarCurveC(radius, 0.0, 2.0 * math::Float64UtilC::pi) {}

PolarCurveC::PolarCurveC(oss::PointerTC<ParameterFunctionIC> radius, double thetaMin, double thetaMax)
    : ParametricCurveC(cartesian(radius), thetaMin, thetaMax), radius_(radius) {}

PolarCurveC::~PolarCurveC() {}

unsigned short const *PolarCurveC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::PolarCurveC";
    return castableId(id);
}

void *PolarCurveC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : ParametricCurveC::lookUpBase(id);
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

#include "collab/math/algexpr/Float64ValueC.h"

namespace qelt {
namespace math {
namespace algexpr {

Float64ValueC::Float64ValueC(double value) : value_(value) {}
Float64ValueC::~Float64ValueC() {}

double Float64ValueC::toDouble() const { return value_; }

std::unique_ptr<FloatValueABC> Float64ValueC::clone() const {
    return std::unique_ptr<FloatValueABC>(new Float64ValueC(value_));
}

} // namespace algexpr
} // namespace math
} // namespace qelt

#ifndef QELT_MATH_ALGEXPR_FLOAT64VALUEC_H
#define QELT_MATH_ALGEXPR_FLOAT64VALUEC_H

#include "collab/math/algexpr/FloatValueABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// A value that is one IEEE double.
class Float64ValueC : public FloatValueABC {
public:
    explicit Float64ValueC(double value);
    ~Float64ValueC() override;

    double toDouble() const override;
    std::unique_ptr<FloatValueABC> clone() const override;

private:
    double value_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

#ifndef QELT_MATH_ALGEXPR_FLOATVALUEABC_H
#define QELT_MATH_ALGEXPR_FLOATVALUEABC_H

#include <memory>

namespace qelt {
namespace math {
namespace algexpr {

// A numeric value held by a number node. Expressions compute in doubles, so
// every value can give itself as one.
class FloatValueABC {
public:
    FloatValueABC();
    virtual ~FloatValueABC();

    virtual double toDouble() const = 0;
    virtual std::unique_ptr<FloatValueABC> clone() const = 0;

private:
    FloatValueABC(FloatValueABC const &) = delete;
    FloatValueABC &operator=(FloatValueABC const &) = delete;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

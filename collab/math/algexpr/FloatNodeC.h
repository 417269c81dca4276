#ifndef QELT_MATH_ALGEXPR_FLOATNODEC_H
#define QELT_MATH_ALGEXPR_FLOATNODEC_H

#include <memory>

#include "collab/math/algexpr/FloatValueABC.h"
#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// A number.
class FloatNodeC : public NodeABC {
public:
    explicit FloatNodeC(double value);
    explicit FloatNodeC(std::unique_ptr<FloatValueABC> value);
    ~FloatNodeC() override;

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    FloatValueABC const *getValue() const { return value_.get(); }

    double evaluateWith(double const *values) const override;
    std::unique_ptr<NodeABC> clone() const override;
    // The shortest decimal text that reads back as the same double
    // ("0.1", "-2", "1e+300", "inf", "nan").
    void appendPrefix(std::string &out) const override;

private:
    std::unique_ptr<FloatValueABC> value_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

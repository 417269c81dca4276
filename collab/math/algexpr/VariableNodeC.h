#ifndef QELT_MATH_ALGEXPR_VARIABLENODEC_H
#define QELT_MATH_ALGEXPR_VARIABLENODEC_H

#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// A variable: x, y, t or theta, by its place in the values of an evaluation.
class VariableNodeC : public NodeABC {
public:
    enum IndexE { X = 0, Y, T, THETA };

    explicit VariableNodeC(IndexE index = X);
    ~VariableNodeC() override;

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    IndexE getIndex() const { return index_; }
    // The prefix token: "x", "y", "t", "theta".
    static char const *name(IndexE index);

    double evaluateWith(double const *values) const override;
    std::unique_ptr<NodeABC> clone() const override;
    void appendPrefix(std::string &out) const override;

private:
    IndexE index_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

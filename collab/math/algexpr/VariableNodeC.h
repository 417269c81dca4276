#ifndef QELT_MATH_ALGEXPR_VARIABLENODEC_H
#define QELT_MATH_ALGEXPR_VARIABLENODEC_H

#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// The variable x.
class VariableNodeC : public NodeABC {
public:
    VariableNodeC();
    ~VariableNodeC() override;

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    double evaluate(double x) const override;
    std::unique_ptr<NodeABC> clone() const override;
    void appendPrefix(std::string &out) const override;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

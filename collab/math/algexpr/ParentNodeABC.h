#ifndef QELT_MATH_ALGEXPR_PARENTNODEABC_H
#define QELT_MATH_ALGEXPR_PARENTNODEABC_H

#include <memory>
#include <vector>

#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// A node with operands: an operator or a function.
class ParentNodeABC : public NodeABC {
public:
    using ChildrenT = std::vector<std::unique_ptr<NodeABC>>;

    explicit ParentNodeABC(ChildrenT children);
    ~ParentNodeABC() override;

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    // The operand at index, or null past the last one.
    NodeABC *child(unsigned int index) const;
    unsigned int getChildCount() const override;

protected:
    ChildrenT cloneChildren() const;
    void appendChildrenPrefix(std::string &out) const;

private:
    ChildrenT children_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

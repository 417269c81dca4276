#ifndef QELT_MATH_ALGEXPR_NODEABC_H
#define QELT_MATH_ALGEXPR_NODEABC_H

#include <memory>
#include <string>

namespace qelt {
namespace math {
namespace algexpr {

// A node of an expression tree in the variables x, y, t and theta. A node
// owns its children; trees are immutable once built.
//
// Every node knows its height (1 for a leaf), so that the parsers can refuse
// trees whose recursive walks (evaluation, printing, destruction) would run
// deep; see AlgebraicExpressionC::MAX_DEPTH.
class NodeABC {
public:
    NodeABC();
    virtual ~NodeABC();

    // The node seen as the class named by id (a class's getCastableId), or
    // null when it is not one.
    static unsigned short const *getCastableId();
    virtual void *lookUpBase(unsigned short const *id) const;
    template <class T>
    T *as() const {
        return static_cast<T *>(lookUpBase(T::getCastableId()));
    }

    // The number of variables, and their places in a values array.
    static unsigned int const VARIABLE_COUNT = 4;

    // The value for the variables' values (VARIABLE_COUNT of them, in the
    // order of VariableNodeC::IndexE) by walking the tree: the reference
    // evaluation; a graph runs a CompiledExpressionC instead.
    virtual double evaluateWith(double const *values) const = 0;
    // The value at x, the other variables without a value (NaN).
    double evaluate(double x) const;
    virtual std::unique_ptr<NodeABC> clone() const = 0;
    // Appends the node in prefix form, tokens separated by single spaces.
    virtual void appendPrefix(std::string &out) const = 0;

    virtual unsigned int getChildCount() const;
    unsigned int getHeight() const { return height_; }

protected:
    static unsigned short const *castableId(char16_t const *name) {
        return reinterpret_cast<unsigned short const *>(name);
    }
    void *self() const { return const_cast<void *>(static_cast<void const *>(this)); }

    unsigned int height_;

private:
    NodeABC(NodeABC const &) = delete;
    NodeABC &operator=(NodeABC const &) = delete;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

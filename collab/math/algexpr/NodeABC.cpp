#include "collab/math/algexpr/NodeABC.h"

#include <limits>

namespace qelt {
namespace math {
namespace algexpr {

NodeABC::NodeABC() : height_(1) {}
NodeABC::~NodeABC() {}

unsigned short const *NodeABC::getCastableId() {
    static char16_t const id[] = u"qelt::math::algexpr::NodeABC";
    return castableId(id);
}

void *NodeABC::lookUpBase(unsigned short const *id) const { return id == getCastableId() ? self() : nullptr; }

unsigned int NodeABC::getChildCount() const { return 0; }

double NodeABC::evaluate(double x) const {
    double const none = std::numeric_limits<double>::quiet_NaN();
    double const values[VARIABLE_COUNT] = {x, none, none, none};
    return evaluateWith(values);
}

} // namespace algexpr
} // namespace math
} // namespace qelt

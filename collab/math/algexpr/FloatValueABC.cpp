#include "collab/math/algexpr/FloatValueABC.h"

namespace qelt {
namespace math {
namespace algexpr {

FloatValueABC::FloatValueABC() {}
FloatValueABC::~FloatValueABC() {}

} // namespace algexpr
} // namespace math
} // namespace qelt

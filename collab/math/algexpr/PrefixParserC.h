#ifndef QELT_MATH_ALGEXPR_PREFIXPARSERC_H
#define QELT_MATH_ALGEXPR_PREFIXPARSERC_H

#include <memory>
#include <string>

#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// Reads the prefix form documented at AlgebraicExpressionC::fromPrefixString.
// Works with an explicit stack of operators still waiting for operands, so
// that no input, however deep, recurses.
class PrefixParserC {
public:
    // The tree, or null with *error (when given) saying what was expected at
    // which character (counted from 1).
    static std::unique_ptr<NodeABC> parse(std::u16string const &text, std::string *error);

    // Reads a whole token as a double ("2", "-0.5", "1e-3", "inf", "nan");
    // false when the token is not a number. outOfRange is set for numbers too
    // large or too small for a double.
    static bool readNumber(std::string const &token, double &value, bool &outOfRange);
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

#ifndef QELT_MATH_ALGEXPR_INFIXPARSERC_H
#define QELT_MATH_ALGEXPR_INFIXPARSERC_H

#include <memory>
#include <string>

#include "collab/math/algexpr/NodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// Reads the ordinary notation documented at
// AlgebraicExpressionC::fromInfixString, by recursive descent. The descent
// counts its nesting and stops at AlgebraicExpressionC::MAX_DEPTH, so deep
// input ends in an error rather than in a stack overflow.
class InfixParserC {
public:
    // The tree, or null with *error (when given) saying what was expected at
    // which character (counted from 1, a UTF-8 sequence counting as one).
    static std::unique_ptr<NodeABC> parse(std::string const &text, std::string *error);

private:
    InfixParserC(std::string const &text, std::string *error);

    std::unique_ptr<NodeABC> parseSum();
    std::unique_ptr<NodeABC> parseProduct();
    std::unique_ptr<NodeABC> parseSigned();
    std::unique_ptr<NodeABC> parsePower();
    std::unique_ptr<NodeABC> parsePostfix();
    std::unique_ptr<NodeABC> parsePrimary();
    std::unique_ptr<NodeABC> parseNumber();
    std::unique_ptr<NodeABC> parseName();
    std::unique_ptr<NodeABC> parseFunction(int code, std::string const &name);
    std::unique_ptr<NodeABC> parseSimpleOperand();
    std::unique_ptr<NodeABC> parseExponentSuffix(std::unique_ptr<NodeABC> base, bool allowCaret);

    void skipSpace();
    // Whether the text at the current place starts with token (bytes); accept
    // also steps over it.
    bool at(char const *token) const;
    bool accept(char const *token);
    bool startsPrimary() const;
    // A run of superscript digits with an optional leading superscript minus
    // (x², x⁻¹): true, with its value, when one starts here.
    bool acceptSuperscript(int &value);
    // The longest known name (function, variable, constant) at this place.
    std::string matchName() const;
    bool enter();
    // Checks a new node's height; false (with the error set) when too deep.
    bool heightOk(NodeABC const &node);
    std::nullptr_t fail(std::string const &what);
    std::nullptr_t failAt(std::string const &what, std::size_t offset);

    std::string const &text_;
    std::string *error_;
    std::size_t pos_;
    unsigned int depth_;
    unsigned int bars_; // absolute-value bars open around this place
    bool failed_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

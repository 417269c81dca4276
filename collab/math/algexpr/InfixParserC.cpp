#include "collab/math/algexpr/InfixParserC.h"

#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/FloatNodeC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/PrefixParserC.h"
#include "collab/math/algexpr/VariableNodeC.h"
#include "collab/math/Float64UtilC.h"

namespace qelt {
namespace math {
namespace algexpr {

namespace {

double const eulerE = 2.718281828459045235360287;

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::unique_ptr<NodeABC> binary(OperatorNodeC::OperatorE op, std::unique_ptr<NodeABC> a, std::unique_ptr<NodeABC> b) {
    ParentNodeABC::ChildrenT children;
    children.push_back(std::move(a));
    children.push_back(std::move(b));
    return std::unique_ptr<NodeABC>(new OperatorNodeC(op, std::move(children)));
}

} // namespace

InfixParserC::InfixParserC(std::string const &text, std::string *error)
    : text_(text), error_(error), pos_(0), depth_(0), failed_(false) {}

std::unique_ptr<NodeABC> InfixParserC::parse(std::string const &text, std::string *error) {
    InfixParserC parser(text, error);
    std::unique_ptr<NodeABC> root = parser.parseSum();
    if (!root) return nullptr;
    parser.skipSpace();
    if (parser.pos_ < text.size()) {
        if (text[parser.pos_] == ')') return parser.fail("unmatched ')'");
        return parser.fail("expected an operator or the end of the expression");
    }
    return root;
}

std::nullptr_t InfixParserC::failAt(std::string const &what, std::size_t offset) {
    if (!failed_ && error_) {
        // Characters, not bytes: continuation bytes of UTF-8 do not count.
        std::size_t character = 1;
        for (std::size_t i = 0; i < offset && i < text_.size(); ++i)
            if ((static_cast<unsigned char>(text_[i]) & 0xC0) != 0x80) ++character;
        *error_ = what + " at character " + std::to_string(character);
    }
    failed_ = true;
    return nullptr;
}

std::nullptr_t InfixParserC::fail(std::string const &what) { return failAt(what, pos_); }

void InfixParserC::skipSpace() {
    while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t' || text_[pos_] == '\n' || text_[pos_] == '\r'))
        ++pos_;
}

bool InfixParserC::heightOk(NodeABC const &node) {
    if (node.getHeight() <= AlgebraicExpressionC::MAX_DEPTH) return true;
    fail("expression nested deeper than " + std::to_string(AlgebraicExpressionC::MAX_DEPTH) + " levels");
    return false;
}

// sum := product { ("+" | "-") product }
std::unique_ptr<NodeABC> InfixParserC::parseSum() {
    std::unique_ptr<NodeABC> left = parseProduct();
    while (left) {
        skipSpace();
        if (pos_ >= text_.size() || (text_[pos_] != '+' && text_[pos_] != '-')) break;
        OperatorNodeC::OperatorE op = text_[pos_] == '+' ? OperatorNodeC::ADD : OperatorNodeC::SUBTRACT;
        ++pos_;
        std::unique_ptr<NodeABC> right = parseProduct();
        if (!right) return nullptr;
        left = binary(op, std::move(left), std::move(right));
        if (!heightOk(*left)) return nullptr;
    }
    return left;
}

// product := signed { ("*" | "/") signed | power }, the bare power being
// implicit multiplication ("2x", "3sin(x)", "(x+1)(x-1)").
std::unique_ptr<NodeABC> InfixParserC::parseProduct() {
    std::unique_ptr<NodeABC> left = parseSigned();
    while (left) {
        skipSpace();
        if (pos_ >= text_.size()) break;
        char c = text_[pos_];
        std::unique_ptr<NodeABC> right;
        OperatorNodeC::OperatorE op = OperatorNodeC::MULTIPLY;
        if (c == '*' || c == '/') {
            op = c == '*' ? OperatorNodeC::MULTIPLY : OperatorNodeC::DIVIDE;
            ++pos_;
            right = parseSigned();
        } else if (startsPrimary()) {
            right = parsePower();
        } else {
            break;
        }
        if (!right) return nullptr;
        left = binary(op, std::move(left), std::move(right));
        if (!heightOk(*left)) return nullptr;
    }
    return left;
}

// signed := ("-" | "+") signed | power. Every descent passes here, so the
// nesting is counted here.
std::unique_ptr<NodeABC> InfixParserC::parseSigned() {
    if (depth_ >= AlgebraicExpressionC::MAX_DEPTH)
        return fail("expression nested deeper than " + std::to_string(AlgebraicExpressionC::MAX_DEPTH) + " levels");
    ++depth_;
    std::unique_ptr<NodeABC> result;
    skipSpace();
    if (pos_ < text_.size() && (text_[pos_] == '-' || text_[pos_] == '+')) {
        bool minus = text_[pos_] == '-';
        ++pos_;
        std::unique_ptr<NodeABC> operand = parseSigned();
        if (operand && minus) {
            ParentNodeABC::ChildrenT children;
            children.push_back(std::move(operand));
            result.reset(new OperatorNodeC(OperatorNodeC::NEGATE, std::move(children)));
            if (!heightOk(*result)) result.reset();
        } else {
            result = std::move(operand);
        }
    } else {
        result = parsePower();
    }
    --depth_;
    return result;
}

// power := primary [ "^" signed ]: right-associative, and binding tighter than
// a leading minus (-x^2 is -(x^2)).
std::unique_ptr<NodeABC> InfixParserC::parsePower() {
    std::unique_ptr<NodeABC> base = parsePrimary();
    if (!base) return nullptr;
    skipSpace();
    if (pos_ >= text_.size() || text_[pos_] != '^') return base;
    ++pos_;
    std::unique_ptr<NodeABC> exponent = parseSigned();
    if (!exponent) return nullptr;
    std::unique_ptr<NodeABC> node = binary(OperatorNodeC::POWER, std::move(base), std::move(exponent));
    return heightOk(*node) ? std::move(node) : nullptr;
}

bool InfixParserC::startsPrimary() {
    char c = text_[pos_];
    return isDigit(c) || c == '.' || c == '(' || isLetter(c);
}

// primary := number | name | function "(" sum ")" | "(" sum ")"
std::unique_ptr<NodeABC> InfixParserC::parsePrimary() {
    skipSpace();
    if (pos_ >= text_.size()) return fail("expected an operand");
    char c = text_[pos_];
    if (isDigit(c) || c == '.') return parseNumber();
    if (isLetter(c)) return parseName();
    if (c == '(') {
        ++pos_;
        std::unique_ptr<NodeABC> inner = parseSum();
        if (!inner) return nullptr;
        skipSpace();
        if (pos_ >= text_.size() || text_[pos_] != ')') return fail("expected ')'");
        ++pos_;
        return inner;
    }
    if (c == ')' || c == '*' || c == '/' || c == '^') return fail("expected an operand");
    if (static_cast<unsigned char>(c) >= 0x80) return fail("unexpected character");
    return fail(std::string("unexpected character '") + c + "'");
}

// number := digits [ "." digits ] [ ("e" | "E") [sign] digits ]; an e not
// followed by digits is Euler's number, multiplied in ("2e" is 2*e).
std::unique_ptr<NodeABC> InfixParserC::parseNumber() {
    std::size_t start = pos_;
    std::size_t i = pos_;
    while (i < text_.size() && isDigit(text_[i])) ++i;
    if (i < text_.size() && text_[i] == '.') {
        ++i;
        while (i < text_.size() && isDigit(text_[i])) ++i;
    }
    if (i < text_.size() && (text_[i] == 'e' || text_[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < text_.size() && (text_[j] == '+' || text_[j] == '-')) ++j;
        if (j < text_.size() && isDigit(text_[j])) {
            i = j;
            while (i < text_.size() && isDigit(text_[i])) ++i;
        }
    }
    std::string token = text_.substr(start, i - start);
    double value = 0;
    bool outOfRange = false;
    if (token == "." || !PrefixParserC::readNumber(token, value, outOfRange)) return fail("expected a number");
    if (outOfRange) return fail("number out of range");
    pos_ = i;
    return std::unique_ptr<NodeABC>(new FloatNodeC(value));
}

std::string InfixParserC::matchName() const {
    std::string best;
    std::size_t end = pos_;
    while (end < text_.size() && (isLetter(text_[end]) || isDigit(text_[end]))) ++end;
    for (std::size_t len = 1; pos_ + len <= end; ++len) {
        std::string candidate = text_.substr(pos_, len);
        if (candidate == "x" || candidate == "pi" || candidate == "e" || CoreFunctionNodeC::codeOf(candidate) != 0)
            best = candidate;
    }
    return best;
}

// A name is the longest known one at this place, so "xsin(x)" is x*sin(x)
// and "exp" is never e*x*p.
std::unique_ptr<NodeABC> InfixParserC::parseName() {
    std::string name = matchName();
    if (name.empty()) {
        std::size_t end = pos_;
        while (end < text_.size() && isLetter(text_[end])) ++end;
        return fail("unknown name '" + text_.substr(pos_, end - pos_) + "'");
    }
    pos_ += name.size();
    if (name == "x") return std::unique_ptr<NodeABC>(new VariableNodeC());
    if (name == "pi") return std::unique_ptr<NodeABC>(new FloatNodeC(Float64UtilC::pi));
    if (name == "e") return std::unique_ptr<NodeABC>(new FloatNodeC(eulerE));
    skipSpace();
    if (pos_ >= text_.size() || text_[pos_] != '(') return fail("expected '(' after " + name);
    ++pos_;
    std::unique_ptr<NodeABC> operand = parseSum();
    if (!operand) return nullptr;
    skipSpace();
    if (pos_ >= text_.size() || text_[pos_] != ')') return fail("expected ')'");
    ++pos_;
    std::unique_ptr<NodeABC> node(new CoreFunctionNodeC(CoreFunctionNodeC::codeOf(name), std::move(operand)));
    return heightOk(*node) ? std::move(node) : nullptr;
}

} // namespace algexpr
} // namespace math
} // namespace qelt

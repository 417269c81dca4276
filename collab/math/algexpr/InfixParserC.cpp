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

// The symbols people paste, in UTF-8.
char const *const PI = "\xcf\x80";             // π
char const *const THETA = "\xce\xb8";          // θ
char const *const ROOT2 = "\xe2\x88\x9a";      // √
char const *const ROOT3 = "\xe2\x88\x9b";      // ∛
char const *const TIMES = "\xc3\x97";          // ×
char const *const DOT = "\xc2\xb7";            // ·
char const *const DIVIDE = "\xc3\xb7";         // ÷
char const *const MINUS = "\xe2\x88\x92";      // −
char const *const SUPER_MINUS = "\xe2\x81\xbb"; // ⁻
// Superscript digits 0 to 9.
char const *const superDigits[10] = {"\xe2\x81\xb0", "\xc2\xb9", "\xc2\xb2", "\xc2\xb3", "\xe2\x81\xb4",
                                     "\xe2\x81\xb5", "\xe2\x81\xb6", "\xe2\x81\xb7", "\xe2\x81\xb8", "\xe2\x81\xb9"};

std::unique_ptr<NodeABC> binary(OperatorNodeC::OperatorE op, std::unique_ptr<NodeABC> a, std::unique_ptr<NodeABC> b) {
    ParentNodeABC::ChildrenT children;
    children.push_back(std::move(a));
    children.push_back(std::move(b));
    return std::unique_ptr<NodeABC>(new OperatorNodeC(op, std::move(children)));
}

std::unique_ptr<NodeABC> number(double v) { return std::unique_ptr<NodeABC>(new FloatNodeC(v)); }

std::unique_ptr<NodeABC> function(int code, std::unique_ptr<NodeABC> operand) {
    return std::unique_ptr<NodeABC>(new CoreFunctionNodeC(code, std::move(operand)));
}

// The variable or constant a name stands for, or null.
std::unique_ptr<NodeABC> leafOf(std::string const &name) {
    if (name == "x") return std::unique_ptr<NodeABC>(new VariableNodeC(VariableNodeC::X));
    if (name == "y") return std::unique_ptr<NodeABC>(new VariableNodeC(VariableNodeC::Y));
    if (name == "t") return std::unique_ptr<NodeABC>(new VariableNodeC(VariableNodeC::T));
    if (name == "theta" || name == THETA) return std::unique_ptr<NodeABC>(new VariableNodeC(VariableNodeC::THETA));
    if (name == "pi" || name == PI) return number(Float64UtilC::pi);
    if (name == "e") return number(eulerE);
    return nullptr;
}

// The inverse that f^-1 names (sin^-1 is asin), or 0.
int inverseOf(int code) {
    switch (code) {
    case FunctionTableC::SIN: return FunctionTableC::ASIN;
    case FunctionTableC::COS: return FunctionTableC::ACOS;
    case FunctionTableC::TAN: return FunctionTableC::ATAN;
    case FunctionTableC::SINH: return FunctionTableC::ASINH;
    case FunctionTableC::COSH: return FunctionTableC::ACOSH;
    case FunctionTableC::TANH: return FunctionTableC::ATANH;
    }
    return 0;
}

bool usesY(NodeABC const &node) {
    if (VariableNodeC const *v = node.as<VariableNodeC>()) return v->getIndex() == VariableNodeC::Y;
    ParentNodeABC const *parent = node.as<ParentNodeABC>();
    for (unsigned int i = 0; parent && i < parent->getChildCount(); ++i)
        if (usesY(*parent->child(i))) return true;
    return false;
}

} // namespace

InfixParserC::InfixParserC(std::string const &text, std::string *error)
    : text_(text), error_(error), pos_(0), depth_(0), bars_(0), failed_(false) {}

// input := [ "y" "=" ] sum. After "y =" the right side is a function of x
// and must not use y.
std::unique_ptr<NodeABC> InfixParserC::parse(std::string const &text, std::string *error) {
    InfixParserC parser(text, error);
    parser.skipSpace();
    bool function = false;
    if (parser.at("y")) {
        std::size_t start = parser.pos_;
        ++parser.pos_;
        parser.skipSpace();
        if (parser.accept("="))
            function = true;
        else
            parser.pos_ = start;
    }
    parser.skipSpace();
    std::size_t rightSide = parser.pos_;
    std::unique_ptr<NodeABC> root = parser.parseSum();
    if (!root) return nullptr;
    parser.skipSpace();
    if (parser.pos_ < text.size()) {
        if (text[parser.pos_] == ')') return parser.fail("unmatched ')'");
        if (text[parser.pos_] == '|') return parser.fail("unmatched '|'");
        if (text[parser.pos_] == '=') return parser.fail("'=' only after a leading y");
        return parser.fail("expected an operator or the end of the expression");
    }
    if (function && usesY(*root)) return parser.failAt("expected an expression in x after 'y =', not one in y", rightSide);
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

// The first byte alone settles most calls: the parser asks for many tokens at
// every place.
bool InfixParserC::at(char const *token) const {
    return pos_ < text_.size() && text_[pos_] == token[0] &&
           text_.compare(pos_, std::char_traits<char>::length(token), token) == 0;
}

bool InfixParserC::accept(char const *token) {
    if (!at(token)) return false;
    pos_ += std::char_traits<char>::length(token);
    return true;
}

bool InfixParserC::heightOk(NodeABC const &node) {
    if (node.getHeight() <= AlgebraicExpressionC::MAX_DEPTH) return true;
    fail("expression nested deeper than " + std::to_string(AlgebraicExpressionC::MAX_DEPTH) + " levels");
    return false;
}

// Every recursive descent passes a signed or a primary, which count their
// nesting here.
bool InfixParserC::enter() {
    if (depth_ < AlgebraicExpressionC::MAX_DEPTH) return true;
    fail("expression nested deeper than " + std::to_string(AlgebraicExpressionC::MAX_DEPTH) + " levels");
    return false;
}

// sum := product { ("+" | "-" | "−") product }
std::unique_ptr<NodeABC> InfixParserC::parseSum() {
    std::unique_ptr<NodeABC> left = parseProduct();
    while (left) {
        skipSpace();
        OperatorNodeC::OperatorE op;
        if (accept("+"))
            op = OperatorNodeC::ADD;
        else if (accept("-") || accept(MINUS))
            op = OperatorNodeC::SUBTRACT;
        else
            break;
        std::unique_ptr<NodeABC> right = parseProduct();
        if (!right) return nullptr;
        left = binary(op, std::move(left), std::move(right));
        if (!heightOk(*left)) return nullptr;
    }
    return left;
}

// product := signed { ("*" | "×" | "·" | "/" | "÷") signed | power }, the
// bare power being implicit multiplication ("2x", "3sin(x)", "(x+1)(x-1)",
// "2|x|").
std::unique_ptr<NodeABC> InfixParserC::parseProduct() {
    std::unique_ptr<NodeABC> left = parseSigned();
    while (left) {
        skipSpace();
        if (pos_ >= text_.size()) break;
        std::unique_ptr<NodeABC> right;
        OperatorNodeC::OperatorE op = OperatorNodeC::MULTIPLY;
        if (!at("**") && (accept("*") || accept(TIMES) || accept(DOT))) {
            right = parseSigned();
        } else if (accept("/") || accept(DIVIDE)) {
            op = OperatorNodeC::DIVIDE;
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

// signed := ("-" | "−" | "+") signed | power
std::unique_ptr<NodeABC> InfixParserC::parseSigned() {
    if (!enter()) return nullptr;
    ++depth_;
    std::unique_ptr<NodeABC> result;
    skipSpace();
    bool minus = accept("-") || accept(MINUS);
    if (minus || accept("+")) {
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

bool InfixParserC::acceptSuperscript(int &value) {
    std::size_t start = pos_;
    bool negative = accept(SUPER_MINUS);
    bool any = false;
    value = 0;
    for (;;) {
        int digit = -1;
        for (int d = 0; d < 10 && digit < 0; ++d)
            if (accept(superDigits[d])) digit = d;
        if (digit < 0) break;
        any = true;
        // Past 10^6 the power is infinite or 0 for any base but +-1 anyway.
        if (value < 1000000) value = value * 10 + digit;
    }
    if (!any) {
        pos_ = start;
        return false;
    }
    if (negative) value = -value;
    return true;
}

// The exponent after a base: superscript digits ("x²", "x⁻¹"), or, where
// allowed, "^" or "**" and a signed operand (right-associative, binding
// tighter than a leading minus: -x^2 is -(x^2), 2^-x is allowed).
std::unique_ptr<NodeABC> InfixParserC::parseExponentSuffix(std::unique_ptr<NodeABC> base, bool allowCaret) {
    skipSpace();
    int super = 0;
    std::unique_ptr<NodeABC> exponent;
    if (acceptSuperscript(super)) {
        exponent = number(super);
    } else if (allowCaret && (accept("^") || accept("**"))) {
        exponent = parseSigned();
        if (!exponent) return nullptr;
    } else {
        return base;
    }
    std::unique_ptr<NodeABC> node = binary(OperatorNodeC::POWER, std::move(base), std::move(exponent));
    return heightOk(*node) ? std::move(node) : nullptr;
}

// power := postfix [ superscript | ("^" | "**") signed ]
std::unique_ptr<NodeABC> InfixParserC::parsePower() {
    std::unique_ptr<NodeABC> base = parsePostfix();
    if (!base) return nullptr;
    return parseExponentSuffix(std::move(base), true);
}

// postfix := primary { "!" }: the factorial binds tighter than a power, so
// x!^2 is (x!)^2 and 3x! is 3(x!).
std::unique_ptr<NodeABC> InfixParserC::parsePostfix() {
    std::unique_ptr<NodeABC> operand = parsePrimary();
    while (operand) {
        skipSpace();
        if (!accept("!")) break;
        operand = function(FunctionTableC::FACTORIAL, std::move(operand));
        if (!heightOk(*operand)) return nullptr;
    }
    return operand;
}

bool InfixParserC::startsPrimary() const {
    if (pos_ >= text_.size()) return false;
    char c = text_[pos_];
    // An open bar where an operator could stand starts an operand ("2|x|")
    // unless a bar is open and this one closes it.
    if (c == '|') return bars_ == 0;
    return isDigit(c) || c == '.' || c == '(' || isLetter(c) || at(PI) || at(THETA) || at(ROOT2) || at(ROOT3);
}

// primary := number | name | "(" sum ")" | "|" sum "|" | ("√" | "∛") postfix
std::unique_ptr<NodeABC> InfixParserC::parsePrimary() {
    skipSpace();
    if (pos_ >= text_.size()) return fail("expected an operand");
    if (!enter()) return nullptr;
    ++depth_;
    std::unique_ptr<NodeABC> result;
    char c = text_[pos_];
    if (isDigit(c) || c == '.') {
        result = parseNumber();
    } else if (isLetter(c) || at(PI) || at(THETA)) {
        result = parseName();
    } else if (c == '(' || c == '|') {
        ++pos_;
        if (c == '|') ++bars_;
        // A bar closes only its own pair: inside parentheses a bar opens.
        unsigned int outerBars = bars_;
        if (c == '(') bars_ = 0;
        result = parseSum();
        if (c == '(') bars_ = outerBars;
        if (result) {
            skipSpace();
            if (!accept(c == '(' ? ")" : "|")) result = fail(c == '(' ? "expected ')'" : "expected '|'");
        }
        if (c == '|') {
            --bars_;
            if (result) result = function(FunctionTableC::ABS, std::move(result));
        }
    } else if (accept(ROOT2) || accept(ROOT3)) {
        bool square = text_.compare(pos_ - 3, 3, ROOT2) == 0;
        std::unique_ptr<NodeABC> operand = parsePostfix();
        if (operand) result = function(square ? FunctionTableC::SQRT : FunctionTableC::CBRT, std::move(operand));
    } else if (c == ')' || c == '*' || c == '/' || c == '^' || c == ',' || c == '!') {
        result = fail("expected an operand");
    } else if (static_cast<unsigned char>(c) >= 0x80) {
        result = fail("unexpected character");
    } else {
        result = fail(std::string("unexpected character '") + c + "'");
    }
    --depth_;
    if (result && !heightOk(*result)) return nullptr;
    return result;
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
    return number(value);
}

std::string InfixParserC::matchName() const {
    if (at(PI)) return PI;
    if (at(THETA)) return THETA;
    std::string best;
    std::size_t end = pos_;
    while (end < text_.size() && (isLetter(text_[end]) || isDigit(text_[end]))) ++end;
    for (std::size_t len = 1; pos_ + len <= end; ++len) {
        std::string candidate = text_.substr(pos_, len);
        if (leafOf(candidate) || FunctionTableC::codeOf(candidate) != 0) best = candidate;
    }
    return best;
}

// A name is the longest known one at this place, so "xsin(x)" is x*sin(x),
// "exp" is never e*x*p and "asinh" is not asin then h.
std::unique_ptr<NodeABC> InfixParserC::parseName() {
    std::string name = matchName();
    if (name.empty()) {
        std::size_t end = pos_;
        while (end < text_.size() && isLetter(text_[end])) ++end;
        return fail("unknown name '" + text_.substr(pos_, end - pos_) + "'");
    }
    pos_ += name.size();
    if (std::unique_ptr<NodeABC> leaf = leafOf(name)) return leaf;
    return parseFunction(FunctionTableC::codeOf(name), name);
}

// function := name [ power ] ( "(" sum { "," sum } ")" | simple )
//
// A power right after the name applies to the value (sin^2(x) and sin²x are
// (sin x)^2), except -1, which names the inverse (sin^-1(x) is asin x).
// "log" takes one operand (base 10) or two (log(b, x), base b).
std::unique_ptr<NodeABC> InfixParserC::parseFunction(int code, std::string const &name) {
    skipSpace();
    std::unique_ptr<NodeABC> power;
    int super = 0;
    std::size_t powerAt = pos_;
    if (acceptSuperscript(super)) {
        power = number(super);
    } else if (accept("^") || accept("**")) {
        power = parseSigned();
        if (!power) return nullptr;
    }
    if (power) {
        FloatNodeC const *p = power->as<FloatNodeC>();
        OperatorNodeC const *negated = power->as<OperatorNodeC>();
        bool minusOne = (p && p->getValue()->toDouble() == -1) ||
                        (negated && negated->getOperator() == OperatorNodeC::NEGATE && negated->child(0)->as<FloatNodeC>() &&
                         negated->child(0)->as<FloatNodeC>()->getValue()->toDouble() == 1);
        if (minusOne) {
            if (!inverseOf(code)) return failAt("no inverse function for " + name + "^-1", powerAt);
            code = inverseOf(code);
            power.reset();
        }
    }
    unsigned int arity = CoreFunctionNodeC::arity(code);
    skipSpace();
    std::unique_ptr<NodeABC> node;
    if (accept("(")) {
        unsigned int outerBars = bars_;
        bars_ = 0;
        ParentNodeABC::ChildrenT operands;
        for (;;) {
            std::unique_ptr<NodeABC> operand = parseSum();
            if (!operand) return nullptr;
            operands.push_back(std::move(operand));
            skipSpace();
            if (!accept(",")) break;
        }
        bars_ = outerBars;
        if (!accept(")")) return fail("expected ')'");
        if (code == FunctionTableC::LOG10 && name == "log" && operands.size() == 2) {
            code = FunctionTableC::LOG_BASE;
            arity = 2;
        }
        // Told at the closing parenthesis.
        if (operands.size() < arity) return failAt("expected ',' after the first operand of " + name, pos_ - 1);
        if (operands.size() > arity)
            return failAt(name + " takes " + std::to_string(arity) + " operand" + (arity == 1 ? "" : "s"), pos_ - 1);
        node.reset(new CoreFunctionNodeC(code, std::move(operands)));
    } else if (arity == 1 && startsPrimary() && !at("|")) {
        std::unique_ptr<NodeABC> operand = parseSimpleOperand();
        if (!operand) return nullptr;
        node = function(code, std::move(operand));
    } else {
        return fail(arity == 1 ? "expected '(' or an operand after " + name : "expected '(' after " + name);
    }
    if (!heightOk(*node)) return nullptr;
    if (power) {
        node = binary(OperatorNodeC::POWER, std::move(node), std::move(power));
        if (!heightOk(*node)) return nullptr;
    }
    return node;
}

// The operand of a function written without parentheses: a simple operand,
// that is an optional number and then variables and constants multiplied
// together, each with an optional power and factorial: "sin x", "sin 2x",
// "sin πx", "sin x^2" (sin(x^2)), "sin 2πt". It ends at anything else, so
// "sin x + 1" is sin(x) + 1 and "sin x cos x" is sin(x) cos(x).
std::unique_ptr<NodeABC> InfixParserC::parseSimpleOperand() {
    std::unique_ptr<NodeABC> product;
    for (;;) {
        skipSpace();
        if (pos_ >= text_.size()) break;
        std::unique_ptr<NodeABC> factor;
        if (!product && (isDigit(text_[pos_]) || text_[pos_] == '.')) {
            factor = parseNumber();
        } else {
            std::string name = matchName();
            factor = leafOf(name);
            if (!factor) break;
            pos_ += name.size();
        }
        if (!factor) return nullptr;
        skipSpace();
        while (factor && accept("!")) factor = function(FunctionTableC::FACTORIAL, std::move(factor));
        factor = parseExponentSuffix(std::move(factor), true);
        if (!factor) return nullptr;
        product = product ? binary(OperatorNodeC::MULTIPLY, std::move(product), std::move(factor)) : std::move(factor);
        if (!heightOk(*product)) return nullptr;
    }
    if (!product) return fail("expected an operand");
    return product;
}

} // namespace algexpr
} // namespace math
} // namespace qelt

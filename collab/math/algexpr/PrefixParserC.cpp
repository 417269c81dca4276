#include "collab/math/algexpr/PrefixParserC.h"

#include <charconv>
#include <system_error>
#include <vector>

#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/FloatNodeC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/VariableNodeC.h"

namespace qelt {
namespace math {
namespace algexpr {

namespace {

// An operator or function that has not yet got all its operands.
struct PendingS {
    bool isFunction;
    int code;
    unsigned int arity;
    ParentNodeABC::ChildrenT operands;
};

bool fail(std::string *error, std::string const &what, std::size_t position) {
    if (error) *error = what + " at character " + std::to_string(position);
    return false;
}

bool isSpace(char16_t c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r'; }

bool operatorOf(std::string const &token, OperatorNodeC::OperatorE &op) {
    static char const *const symbols[] = {"+", "-", "*", "/", "^", "neg"};
    for (int i = 0; i <= OperatorNodeC::NEGATE; ++i)
        if (token == symbols[i]) {
            op = static_cast<OperatorNodeC::OperatorE>(i);
            return true;
        }
    return false;
}

// The index of a variable's token, or -1.
int variableOf(std::string const &token) {
    for (int i = VariableNodeC::X; i <= VariableNodeC::THETA; ++i)
        if (token == VariableNodeC::name(static_cast<VariableNodeC::IndexE>(i))) return i;
    return -1;
}

std::unique_ptr<NodeABC> build(PendingS &p) {
    if (p.isFunction) return std::unique_ptr<NodeABC>(new CoreFunctionNodeC(p.code, std::move(p.operands)));
    return std::unique_ptr<NodeABC>(
        new OperatorNodeC(static_cast<OperatorNodeC::OperatorE>(p.code), std::move(p.operands)));
}

} // namespace

bool PrefixParserC::readNumber(std::string const &token, double &value, bool &outOfRange) {
    outOfRange = false;
    if (token.empty()) return false;
    char const *first = token.data();
    char const *last = first + token.size();
    // from_chars takes no leading '+'; the sign is the number's own.
    std::from_chars_result r = std::from_chars(first, last, value, std::chars_format::general);
    if (r.ptr != last) return false;
    if (r.ec == std::errc::result_out_of_range) outOfRange = true;
    return r.ec == std::errc() || outOfRange;
}

std::unique_ptr<NodeABC> PrefixParserC::parse(std::u16string const &text, std::string *error) {
    std::vector<PendingS> pending;
    std::unique_ptr<NodeABC> root;
    std::size_t i = 0;
    std::size_t const n = text.size();
    while (i < n) {
        if (isSpace(text[i])) {
            ++i;
            continue;
        }
        std::size_t start = i;
        std::string token;
        while (i < n && !isSpace(text[i])) {
            if (text[i] > 0x7E) {
                fail(error, "unexpected character", i + 1);
                return nullptr;
            }
            token.push_back(static_cast<char>(text[i]));
            ++i;
        }
        if (root) {
            fail(error, "expected the end of the expression", start + 1);
            return nullptr;
        }
        std::unique_ptr<NodeABC> leaf;
        OperatorNodeC::OperatorE op;
        int code = CoreFunctionNodeC::codeOf(token);
        double value = 0;
        bool outOfRange = false;
        int variable = variableOf(token);
        if (variable >= 0) {
            leaf.reset(new VariableNodeC(static_cast<VariableNodeC::IndexE>(variable)));
        } else if (code != 0 || operatorOf(token, op)) {
            // Every waiting operator adds a level to the tree.
            if (pending.size() >= AlgebraicExpressionC::MAX_DEPTH - 1) {
                fail(error, "expression nested deeper than " + std::to_string(AlgebraicExpressionC::MAX_DEPTH) +
                                " levels",
                     start + 1);
                return nullptr;
            }
            if (code != 0)
                pending.push_back(PendingS{true, code, CoreFunctionNodeC::arity(code), {}});
            else
                pending.push_back(PendingS{false, static_cast<int>(op), OperatorNodeC::arity(op), {}});
            continue;
        } else if (readNumber(token, value, outOfRange)) {
            if (outOfRange) {
                fail(error, "number out of range", start + 1);
                return nullptr;
            }
            leaf.reset(new FloatNodeC(value));
        } else {
            fail(error, "expected a number, a variable, an operator or a function name but found '" + token + "'",
                 start + 1);
            return nullptr;
        }
        // Hand the finished operand up until an operator still waits for more.
        while (leaf) {
            if (pending.empty()) {
                root = std::move(leaf);
                break;
            }
            PendingS &top = pending.back();
            top.operands.push_back(std::move(leaf));
            if (top.operands.size() < top.arity) break;
            leaf = build(top);
            pending.pop_back();
        }
    }
    if (!root) {
        fail(error, "expected an operand", n + 1);
        return nullptr;
    }
    return root;
}

} // namespace algexpr
} // namespace math
} // namespace qelt

#ifndef EVALG_TESTS_RANDOMEXPRESSION_H
#define EVALG_TESTS_RANDOMEXPRESSION_H

// Random expressions in prefix form, for the expression and graph tests.
#include <string>

#include "TestSupport.h"
#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/OperatorNodeC.h"

namespace evalgtest {

// Grows prefix text token by token, keeping count of the operands still owed;
// past maxOwed only operands are drawn, so the text always completes. Leaves
// are x or one of a few numbers (whole ones too, for the power rule).
// Functions are drawn from the first `functions` codes (the original
// seventeen by default; every function of the table at most).
inline std::string randomPrefix(Rng &rng, int maxOwed = 6, int functions = 17) {
    using qelt::math::algexpr::CoreFunctionNodeC;
    using qelt::math::algexpr::OperatorNodeC;
    static char const *const leaves[] = {"x ", "x ", "2.5 ", "-1e-3 ", "3 ", "-2 ", "0.5 "};
    std::string text;
    int owed = 1;
    while (owed > 0) {
        int pick = rng.below(owed > maxOwed ? 7 : 20);
        if (pick < 7) {
            text += leaves[pick];
            --owed;
        } else if (pick < 13) {
            OperatorNodeC::OperatorE op = OperatorNodeC::OperatorE(pick - 7);
            text += std::string(OperatorNodeC::symbol(op)) + " ";
            owed += int(OperatorNodeC::arity(op)) - 1;
        } else {
            int code = CoreFunctionNodeC::FIRST_CODE + rng.below(functions);
            text += std::string(CoreFunctionNodeC::name(code)) + " ";
            owed += int(CoreFunctionNodeC::arity(code)) - 1;
        }
    }
    return text;
}

inline std::u16string toU16(std::string const &s) { return std::u16string(s.begin(), s.end()); }

} // namespace evalgtest

#endif

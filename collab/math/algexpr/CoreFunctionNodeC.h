#ifndef QELT_MATH_ALGEXPR_COREFUNCTIONNODEC_H
#define QELT_MATH_ALGEXPR_COREFUNCTIONNODEC_H

#include <cmath>
#include <string>

#include "collab/math/algexpr/ParentNodeABC.h"

namespace qelt {
namespace math {
namespace algexpr {

// One of the core functions applied to one operand. The code names the
// function; codes are stable and dense from SIN to SIGN.
class CoreFunctionNodeC : public ParentNodeABC {
public:
    enum CodeE {
        SIN = 1, COS, TAN, ASIN, ACOS, ATAN, SINH, COSH, TANH,
        EXP, LN, LOG10, SQRT, ABS, FLOOR, CEIL, SIGN
    };
    static int const FIRST_CODE = SIN;
    static int const LAST_CODE = SIGN;

    CoreFunctionNodeC(int code, std::unique_ptr<NodeABC> operand);
    ~CoreFunctionNodeC() override;

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    int getCode() const { return code_; }
    // The function's name ("sin", "log10", ...), or null for an unknown code.
    static char const *name(int code);
    // The code of a name, or 0 when it names no core function.
    static int codeOf(std::string const &name);

    // The double rule of each function, shared by the tree walk and the
    // compiled program. sign gives -1, 0 or 1 (NaN for NaN).
    static double sign(double v) { return v > 0 ? 1.0 : (v < 0 ? -1.0 : (v == 0 ? 0.0 : v)); }
    static double apply(int code, double v) {
        switch (code) {
        case SIN: return std::sin(v);
        case COS: return std::cos(v);
        case TAN: return std::tan(v);
        case ASIN: return std::asin(v);
        case ACOS: return std::acos(v);
        case ATAN: return std::atan(v);
        case SINH: return std::sinh(v);
        case COSH: return std::cosh(v);
        case TANH: return std::tanh(v);
        case EXP: return std::exp(v);
        case LN: return std::log(v);
        case LOG10: return std::log10(v);
        case SQRT: return std::sqrt(v);
        case ABS: return std::fabs(v);
        case FLOOR: return std::floor(v);
        case CEIL: return std::ceil(v);
        case SIGN: return sign(v);
        }
        return std::nan("");
    }

    double evaluate(double x) const override;
    std::unique_ptr<NodeABC> clone() const override;
    void appendPrefix(std::string &out) const override;

private:
    int code_;
};

} // namespace algexpr
} // namespace math
} // namespace qelt

#endif

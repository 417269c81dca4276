#include "collab/math/algexpr/FunctionTableC.h"

#include <cmath>

namespace qelt {
namespace math {
namespace algexpr {

namespace {

using I = IntervalC;

// Unary rows ignore their second operand.
#define UNARY_POINT(expr) [](double v, double) { return expr; }
#define UNARY_INTERVAL(fn) [](I const &a, I const &) { return I::fn(a); }
#define UNARY_WIDE(fn) [](WideIntervalC const &a, WideIntervalC const &) { return WideIntervalC::fn(a); }

FunctionRowS const rows[] = {
    {FunctionTableC::SIN, "sin", 1, UNARY_POINT(std::sin(v)), UNARY_INTERVAL(sin), nullptr},
    {FunctionTableC::COS, "cos", 1, UNARY_POINT(std::cos(v)), UNARY_INTERVAL(cos), nullptr},
    {FunctionTableC::TAN, "tan", 1, UNARY_POINT(std::tan(v)), UNARY_INTERVAL(tan), nullptr},
    {FunctionTableC::ASIN, "asin", 1, UNARY_POINT(std::asin(v)), UNARY_INTERVAL(asin), nullptr},
    {FunctionTableC::ACOS, "acos", 1, UNARY_POINT(std::acos(v)), UNARY_INTERVAL(acos), nullptr},
    {FunctionTableC::ATAN, "atan", 1, UNARY_POINT(std::atan(v)), UNARY_INTERVAL(atan), nullptr},
    {FunctionTableC::SINH, "sinh", 1, UNARY_POINT(std::sinh(v)), UNARY_INTERVAL(sinh), UNARY_WIDE(sinh)},
    {FunctionTableC::COSH, "cosh", 1, UNARY_POINT(std::cosh(v)), UNARY_INTERVAL(cosh), UNARY_WIDE(cosh)},
    {FunctionTableC::TANH, "tanh", 1, UNARY_POINT(std::tanh(v)), UNARY_INTERVAL(tanh), nullptr},
    {FunctionTableC::EXP, "exp", 1, UNARY_POINT(std::exp(v)), UNARY_INTERVAL(exp), UNARY_WIDE(exp)},
    {FunctionTableC::LN, "ln", 1, UNARY_POINT(std::log(v)), UNARY_INTERVAL(ln), UNARY_WIDE(ln)},
    {FunctionTableC::LOG10, "log10", 1, UNARY_POINT(std::log10(v)), UNARY_INTERVAL(log10), nullptr},
    {FunctionTableC::SQRT, "sqrt", 1, UNARY_POINT(std::sqrt(v)), UNARY_INTERVAL(sqrt), UNARY_WIDE(sqrt)},
    {FunctionTableC::ABS, "abs", 1, UNARY_POINT(std::fabs(v)), UNARY_INTERVAL(abs), UNARY_WIDE(abs)},
    {FunctionTableC::FLOOR, "floor", 1, UNARY_POINT(std::floor(v)), UNARY_INTERVAL(floor), nullptr},
    {FunctionTableC::CEIL, "ceil", 1, UNARY_POINT(std::ceil(v)), UNARY_INTERVAL(ceil), nullptr},
    {FunctionTableC::SIGN, "sign", 1, UNARY_POINT(FunctionTableC::sign(v)), UNARY_INTERVAL(sign), nullptr},
    {FunctionTableC::SEC, "sec", 1, UNARY_POINT(1.0 / std::cos(v)), UNARY_INTERVAL(sec), nullptr},
    {FunctionTableC::CSC, "csc", 1, UNARY_POINT(1.0 / std::sin(v)), UNARY_INTERVAL(csc), nullptr},
    {FunctionTableC::COT, "cot", 1, UNARY_POINT(1.0 / std::tan(v)), UNARY_INTERVAL(cot), nullptr},
    {FunctionTableC::ASINH, "asinh", 1, UNARY_POINT(std::asinh(v)), UNARY_INTERVAL(asinh), nullptr},
    {FunctionTableC::ACOSH, "acosh", 1, UNARY_POINT(std::acosh(v)), UNARY_INTERVAL(acosh), nullptr},
    {FunctionTableC::ATANH, "atanh", 1, UNARY_POINT(std::atanh(v)), UNARY_INTERVAL(atanh), nullptr},
    {FunctionTableC::LOG2, "log2", 1, UNARY_POINT(std::log2(v)), UNARY_INTERVAL(log2), nullptr},
    {FunctionTableC::LOG_BASE, "logbase", 2, [](double b, double x) { return std::log(x) / std::log(b); },
     [](I const &b, I const &x) { return I::logBase(b, x); }, nullptr},
    {FunctionTableC::CBRT, "cbrt", 1, UNARY_POINT(std::cbrt(v)), UNARY_INTERVAL(cbrt), nullptr},
    {FunctionTableC::ROOT, "root", 2, [](double n, double x) { return FunctionTableC::root(n, x); },
     [](I const &n, I const &x) { return I::root(n, x); }, nullptr},
    {FunctionTableC::ROUND, "round", 1, UNARY_POINT(std::round(v)), UNARY_INTERVAL(round), nullptr},
    {FunctionTableC::TRUNC, "trunc", 1, UNARY_POINT(std::trunc(v)), UNARY_INTERVAL(trunc), nullptr},
    // NaN when either operand is (an undefined operand leaves no minimum).
    {FunctionTableC::MIN, "min", 2,
     [](double a, double b) { return std::isnan(a) || std::isnan(b) ? a + b : (b < a ? b : a); },
     [](I const &a, I const &b) { return I::min(a, b); }, nullptr},
    {FunctionTableC::MAX, "max", 2,
     [](double a, double b) { return std::isnan(a) || std::isnan(b) ? a + b : (b > a ? b : a); },
     [](I const &a, I const &b) { return I::max(a, b); }, nullptr},
    {FunctionTableC::MOD, "mod", 2, [](double x, double y) { return FunctionTableC::mod(x, y); },
     [](I const &x, I const &y) { return I::mod(x, y); }, nullptr},
    {FunctionTableC::GAMMA, "gamma", 1, UNARY_POINT(std::tgamma(v)), UNARY_INTERVAL(gamma), nullptr},
    {FunctionTableC::FACTORIAL, "factorial", 1, UNARY_POINT(FunctionTableC::factorial(v)), UNARY_INTERVAL(factorial), nullptr},
    {FunctionTableC::ERF, "erf", 1, UNARY_POINT(std::erf(v)), UNARY_INTERVAL(erf), nullptr},
    {FunctionTableC::ERFC, "erfc", 1, UNARY_POINT(std::erfc(v)), UNARY_INTERVAL(erfc), nullptr},
};

#undef UNARY_POINT
#undef UNARY_INTERVAL
#undef UNARY_WIDE

static_assert(sizeof rows / sizeof rows[0] == FunctionTableC::LAST_CODE - FunctionTableC::FIRST_CODE + 1,
              "one row per code");

// Other spellings people type.
struct AliasS {
    char const *name;
    int code;
};

AliasS const aliases[] = {
    {"arcsin", FunctionTableC::ASIN},   {"arccos", FunctionTableC::ACOS},   {"arctan", FunctionTableC::ATAN},
    {"arsinh", FunctionTableC::ASINH},  {"arcsinh", FunctionTableC::ASINH}, {"arcosh", FunctionTableC::ACOSH},
    {"arccosh", FunctionTableC::ACOSH}, {"artanh", FunctionTableC::ATANH},  {"arctanh", FunctionTableC::ATANH},
    {"sgn", FunctionTableC::SIGN},      {"log", FunctionTableC::LOG10},     {"fact", FunctionTableC::FACTORIAL},
};

} // namespace

FunctionRowS const *FunctionTableC::row(int code) {
    if (code < FIRST_CODE || code > LAST_CODE) return nullptr;
    return &rows[code - FIRST_CODE];
}

int FunctionTableC::codeOf(std::string const &name) {
    for (FunctionRowS const &r : rows)
        if (name == r.name) return r.code;
    for (AliasS const &a : aliases)
        if (name == a.name) return a.code;
    return 0;
}

double FunctionTableC::mod(double x, double y) {
    double r = std::fmod(x, y);
    if (r != 0 && (r < 0) != (y < 0)) r += y;
    return r;
}

double FunctionTableC::factorial(double x) {
    if (x >= 0 && x <= 22 && std::floor(x) == x) {
        // Every partial product up to 22! is a double exactly.
        double product = 1;
        for (double k = 2; k <= x; ++k) product *= k;
        return product;
    }
    return std::tgamma(x + 1);
}

double FunctionTableC::root(double n, double x) {
    double e = 1.0 / n;
    if (x < 0 && std::floor(n) == n && std::fmod(n, 2.0) != 0) return -std::pow(-x, e);
    return std::pow(x, e);
}

} // namespace algexpr
} // namespace math
} // namespace qelt

#include "collab/math/algexpr/SlopeProgramC.h"

#include <cmath>
#include <limits>
#include <memory>

#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/FloatNodeC.h"
#include "collab/math/algexpr/FunctionTableC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/VariableNodeC.h"
#include "collab/oss/IntegerConversionC.h"

namespace qelt {
namespace math {
namespace algexpr {

namespace {

IntervalC mul(IntervalC const &a, IntervalC const &b) { return IntervalC::mul(a, b); }
IntervalC div(IntervalC const &a, IntervalC const &b) { return IntervalC::div(a, b); }
IntervalC one() { return IntervalC::point(1.0); }

// The slopes of |u|, sign(u) and the like at a corner: the hull of both
// sides' slopes, by the sign of u over the interval.
IntervalC signHull(IntervalC const &u) {
    if (u.lo >= 0) return one();
    if (u.hi <= 0) return IntervalC::point(-1.0);
    return IntervalC(-1.0, 1.0);
}

// d/du of each function at u (with v = f(u) already known), or whole() where
// there is no rule.
IntervalC derivativeAt(int code, IntervalC const &u, IntervalC const &v) {
    switch (code) {
    case CoreFunctionNodeC::SIN: return IntervalC::cos(u);
    case CoreFunctionNodeC::COS: return IntervalC::neg(IntervalC::sin(u));
    case CoreFunctionNodeC::TAN: return IntervalC::add(one(), IntervalC::powInt(v, 2));
    case CoreFunctionNodeC::ASIN: return div(one(), IntervalC::sqrt(IntervalC::sub(one(), IntervalC::powInt(u, 2))));
    case CoreFunctionNodeC::ACOS:
        return IntervalC::neg(div(one(), IntervalC::sqrt(IntervalC::sub(one(), IntervalC::powInt(u, 2)))));
    case CoreFunctionNodeC::ATAN: return div(one(), IntervalC::add(one(), IntervalC::powInt(u, 2)));
    case CoreFunctionNodeC::SINH: return IntervalC::cosh(u);
    case CoreFunctionNodeC::COSH: return IntervalC::sinh(u);
    case CoreFunctionNodeC::TANH: return IntervalC::sub(one(), IntervalC::powInt(v, 2));
    case CoreFunctionNodeC::EXP: return v;
    case CoreFunctionNodeC::LN: return div(one(), u);
    case CoreFunctionNodeC::LOG10: return div(one(), mul(u, IntervalC::ln(IntervalC::point(10.0))));
    case CoreFunctionNodeC::SQRT: return div(one(), mul(IntervalC::point(2.0), v));
    case CoreFunctionNodeC::ABS: return signHull(u);
    // Steps are flat wherever they are continuous; where they jump the value
    // pass says so, and no slope is asked for.
    case CoreFunctionNodeC::FLOOR:
    case CoreFunctionNodeC::CEIL:
    case CoreFunctionNodeC::SIGN: return IntervalC::point(0.0);
    }
    return IntervalC::whole();
}

// A function's value over u, by the function table's own interval rule.
IntervalC valueAt(int code, IntervalC const &u) {
    FunctionRowS const *row = FunctionTableC::row(code);
    return row && row->arity == 1 ? row->interval(u, u) : IntervalC::whole();
}

} // namespace

SlopeProgramC::SlopeProgramC(NodeABC const *root) : available_(false), result_(0) {
    if (!root || root->getHeight() > AlgebraicExpressionC::MAX_DEPTH) return;
    bool depends = false;
    std::unique_ptr<NodeABC> folded = foldConstants(*root, depends);
    available_ = true;
    // Slot 0 is x; constants are appended as instructions of their own kind
    // would be, so every operand names a slot.
    slots_.push_back(PairS{IntervalC(), one()});
    result_ = emit(*folded);
    if (!available_) program_.clear();
}

unsigned int SlopeProgramC::constant(double value) {
    slots_.push_back(PairS{IntervalC::point(value), IntervalC::point(0.0)});
    return static_cast<unsigned int>(slots_.size() - 1);
}

unsigned int SlopeProgramC::emit(NodeABC const &node) {
    if (!available_) return 0;
    if (FloatNodeC const *f = node.as<FloatNodeC>()) return constant(f->getValue()->toDouble());
    if (node.as<VariableNodeC>()) return 0;
    InstructionS in{NEG, 0, 0.0, 0, 0, 0};
    if (OperatorNodeC const *op = node.as<OperatorNodeC>()) {
        in.a = emit(*op->child(0));
        switch (op->getOperator()) {
        case OperatorNodeC::ADD: in.op = ADD; break;
        case OperatorNodeC::SUBTRACT: in.op = SUB; break;
        case OperatorNodeC::MULTIPLY: in.op = MUL; break;
        case OperatorNodeC::DIVIDE: in.op = DIV; break;
        case OperatorNodeC::NEGATE: in.op = NEG; break;
        case OperatorNodeC::POWER: {
            FloatNodeC const *e = op->child(1)->as<FloatNodeC>();
            if (!e) {
                available_ = false;
                return 0;
            }
            double ev = e->getValue()->toDouble();
            in.exponent = ev;
            if (std::fabs(ev) <= 64 && std::floor(ev) == ev) {
                in.op = POW_INT;
                in.arg = oss::IntegerConversionC::toInt32(ev);
            } else {
                in.op = POW_CONST;
            }
            break;
        }
        }
        if (in.op == ADD || in.op == SUB || in.op == MUL || in.op == DIV) in.b = emit(*op->child(1));
    } else if (CoreFunctionNodeC const *fn = node.as<CoreFunctionNodeC>()) {
        in.op = FUNCTION;
        in.arg = fn->getCode();
        in.a = emit(*fn->child(0));
    } else {
        available_ = false;
        return 0;
    }
    if (!available_) return 0;
    slots_.push_back(PairS{});
    in.out = static_cast<unsigned int>(slots_.size() - 1);
    program_.push_back(in);
    return in.out;
}

IntervalC SlopeProgramC::derivative(IntervalC const &x) const {
    if (!available_) return IntervalC::whole();
    PairS *s = slots_.data();
    s[0].value = x;
    for (InstructionS const &in : program_) {
        PairS const &a = s[in.a];
        PairS const &b = s[in.b];
        PairS r;
        switch (in.op) {
        case ADD: r = PairS{IntervalC::add(a.value, b.value), IntervalC::add(a.slope, b.slope)}; break;
        case SUB: r = PairS{IntervalC::sub(a.value, b.value), IntervalC::sub(a.slope, b.slope)}; break;
        case NEG: r = PairS{IntervalC::neg(a.value), IntervalC::neg(a.slope)}; break;
        case MUL:
            r = PairS{mul(a.value, b.value), IntervalC::add(mul(a.slope, b.value), mul(a.value, b.slope))};
            break;
        case DIV: {
            IntervalC q = div(a.value, b.value);
            r = PairS{q, div(IntervalC::sub(a.slope, mul(q, b.slope)), b.value)};
            break;
        }
        case POW_INT:
            r.value = IntervalC::powInt(a.value, in.arg);
            r.slope = in.arg == 0 ? IntervalC::point(0.0)
                                  : mul(mul(IntervalC::point(double(in.arg)), IntervalC::powInt(a.value, in.arg - 1)),
                                        a.slope);
            break;
        case POW_CONST: {
            IntervalC e = IntervalC::point(in.exponent);
            r.value = IntervalC::pow(a.value, e);
            r.slope = mul(mul(e, IntervalC::pow(a.value, IntervalC::point(in.exponent - 1.0))), a.slope);
            break;
        }
        case FUNCTION: {
            IntervalC v = valueAt(in.arg, a.value);
            r = PairS{v, mul(derivativeAt(in.arg, a.value, v), a.slope)};
            break;
        }
        }
        s[in.out] = r;
    }
    IntervalC d = s[result_].slope;
    if (d.empty || std::isnan(d.lo) || std::isnan(d.hi)) return IntervalC::whole();
    return d;
}

} // namespace algexpr
} // namespace math
} // namespace qelt

#include "collab/math/algexpr/CompiledExpressionC.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/FloatNodeC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/VariableNodeC.h"

namespace qelt {
namespace math {
namespace algexpr {

namespace {

// Runs f over a block: out[i] = f(in[i]).
template <class F>
void each(double const *in, double *out, unsigned int n, F f) {
    for (unsigned int i = 0; i < n; ++i) out[i] = f(in[i]);
}

template <class F>
void each2(double const *a, double const *b, double *out, unsigned int n, F f) {
    for (unsigned int i = 0; i < n; ++i) out[i] = f(a[i], b[i]);
}

// One function over a block, the switch outside the loop. Each case is the
// matching case of CoreFunctionNodeC::apply.
void applyFunction(int code, double const *in, double *out, unsigned int n) {
    switch (code) {
    case CoreFunctionNodeC::SIN: each(in, out, n, [](double v) { return std::sin(v); }); return;
    case CoreFunctionNodeC::COS: each(in, out, n, [](double v) { return std::cos(v); }); return;
    case CoreFunctionNodeC::TAN: each(in, out, n, [](double v) { return std::tan(v); }); return;
    case CoreFunctionNodeC::EXP: each(in, out, n, [](double v) { return std::exp(v); }); return;
    case CoreFunctionNodeC::SQRT: each(in, out, n, [](double v) { return std::sqrt(v); }); return;
    case CoreFunctionNodeC::ABS: each(in, out, n, [](double v) { return std::fabs(v); }); return;
    default: each(in, out, n, [code](double v) { return CoreFunctionNodeC::apply(code, v); }); return;
    }
}

IntervalC applyFunction(int code, IntervalC const &a) {
    switch (code) {
    case CoreFunctionNodeC::SIN: return IntervalC::sin(a);
    case CoreFunctionNodeC::COS: return IntervalC::cos(a);
    case CoreFunctionNodeC::TAN: return IntervalC::tan(a);
    case CoreFunctionNodeC::ASIN: return IntervalC::asin(a);
    case CoreFunctionNodeC::ACOS: return IntervalC::acos(a);
    case CoreFunctionNodeC::ATAN: return IntervalC::atan(a);
    case CoreFunctionNodeC::SINH: return IntervalC::sinh(a);
    case CoreFunctionNodeC::COSH: return IntervalC::cosh(a);
    case CoreFunctionNodeC::TANH: return IntervalC::tanh(a);
    case CoreFunctionNodeC::EXP: return IntervalC::exp(a);
    case CoreFunctionNodeC::LN: return IntervalC::ln(a);
    case CoreFunctionNodeC::LOG10: return IntervalC::log10(a);
    case CoreFunctionNodeC::SQRT: return IntervalC::sqrt(a);
    case CoreFunctionNodeC::ABS: return IntervalC::abs(a);
    case CoreFunctionNodeC::FLOOR: return IntervalC::floor(a);
    case CoreFunctionNodeC::CEIL: return IntervalC::ceil(a);
    case CoreFunctionNodeC::SIGN: return IntervalC::sign(a);
    }
    return IntervalC::none();
}

} // namespace

namespace {

// Operand references while the program is laid out: x, the c-th number or
// the i-th instruction; resolved to slots once the number count is known.
unsigned int const CONSTANT_TAG = 0x80000000u;
unsigned int const RESULT_TAG = 0x40000000u;

} // namespace

CompiledExpressionC::CompiledExpressionC(NodeABC const *root) : firstResult_(1), resultSlot_(0) {
    unsigned int result;
    if (!root || root->getHeight() > AlgebraicExpressionC::MAX_DEPTH) {
        result = constant(std::numeric_limits<double>::quiet_NaN());
    } else {
        bool depends = false;
        std::unique_ptr<NodeABC> folded = foldConstants(*root, depends);
        result = emit(*folded);
    }
    firstResult_ = 1 + static_cast<unsigned int>(constants_.size());
    auto slot = [this](unsigned int ref) {
        if (ref & CONSTANT_TAG) return 1 + (ref & ~CONSTANT_TAG);
        if (ref & RESULT_TAG) return firstResult_ + (ref & ~RESULT_TAG);
        return 0u;
    };
    for (InstructionS &in : program_) {
        in.a = slot(in.a);
        in.b = slot(in.b);
    }
    resultSlot_ = slot(result);
    unsigned int slots = firstResult_ + static_cast<unsigned int>(program_.size());
    values_.assign(slots, 0.0);
    intervals_.assign(slots, IntervalC());
    for (unsigned int i = 0; i < constants_.size(); ++i) {
        values_[1 + i] = constants_[i];
        intervals_[1 + i] = IntervalC::point(constants_[i]);
    }
}

CompiledExpressionC::~CompiledExpressionC() {}

unsigned int CompiledExpressionC::constant(double value) {
    constants_.push_back(value);
    return CONSTANT_TAG | static_cast<unsigned int>(constants_.size() - 1);
}

unsigned int CompiledExpressionC::emit(NodeABC const &node) {
    if (FloatNodeC const *f = node.as<FloatNodeC>()) return constant(f->getValue()->toDouble());
    if (node.as<VariableNodeC>()) return 0;
    InstructionS in{NEG, 0, 0, 0};
    if (OperatorNodeC const *op = node.as<OperatorNodeC>()) {
        in.a = emit(*op->child(0));
        switch (op->getOperator()) {
        case OperatorNodeC::ADD: in.op = ADD; break;
        case OperatorNodeC::SUBTRACT: in.op = SUB; break;
        case OperatorNodeC::MULTIPLY: in.op = MUL; break;
        case OperatorNodeC::DIVIDE: in.op = DIV; break;
        case OperatorNodeC::POWER: in.op = POW; break;
        case OperatorNodeC::NEGATE: in.op = NEG; break;
        }
        if (in.op != NEG) {
            FloatNodeC const *e = op->child(1)->as<FloatNodeC>();
            double ev = e ? e->getValue()->toDouble() : 0.5;
            if (in.op == POW && std::fabs(ev) <= 64 && std::floor(ev) == ev) {
                // A whole constant exponent: the repeated squaring of the
                // power rule, chosen once here instead of at every sample.
                in.op = POW_INT;
                in.arg = oss::IntegerConversionC::toInt32(ev);
            } else {
                in.b = emit(*op->child(1));
            }
        }
    } else if (CoreFunctionNodeC const *fn = node.as<CoreFunctionNodeC>()) {
        in.op = FUNCTION;
        in.arg = fn->getCode();
        in.a = emit(*fn->child(0));
    } else {
        return constant(std::numeric_limits<double>::quiet_NaN());
    }
    program_.push_back(in);
    return RESULT_TAG | static_cast<unsigned int>(program_.size() - 1);
}

double CompiledExpressionC::evaluate(double x) const {
    double *v = values_.data();
    v[0] = x;
    unsigned int slot = firstResult_;
    for (InstructionS const &in : program_) {
        double a = v[in.a];
        double r;
        switch (in.op) {
        case ADD: r = a + v[in.b]; break;
        case SUB: r = a - v[in.b]; break;
        case MUL: r = a * v[in.b]; break;
        case DIV: r = a / v[in.b]; break;
        case NEG: r = -a; break;
        case POW: r = OperatorNodeC::power(a, v[in.b]); break;
        case POW_INT: r = OperatorNodeC::powerWhole(a, in.arg); break;
        default: r = CoreFunctionNodeC::apply(in.arg, a); break;
        }
        v[slot++] = r;
    }
    return v[resultSlot_];
}

void CompiledExpressionC::runBlock(unsigned int n) const {
    double *base = block_.data();
    unsigned int slot = firstResult_;
    for (InstructionS const &in : program_) {
        double const *a = base + std::size_t(in.a) * BLOCK;
        double const *b = base + std::size_t(in.b) * BLOCK;
        double *out = base + std::size_t(slot) * BLOCK;
        switch (in.op) {
        case ADD: each2(a, b, out, n, [](double p, double q) { return p + q; }); break;
        case SUB: each2(a, b, out, n, [](double p, double q) { return p - q; }); break;
        case MUL: each2(a, b, out, n, [](double p, double q) { return p * q; }); break;
        case DIV: each2(a, b, out, n, [](double p, double q) { return p / q; }); break;
        case NEG: each(a, out, n, [](double p) { return -p; }); break;
        case POW: each2(a, b, out, n, [](double p, double q) { return OperatorNodeC::power(p, q); }); break;
        case POW_INT: {
            int e = in.arg;
            // Squares and cubes written out in powerWhole's own product order.
            if (e == 2)
                each(a, out, n, [](double p) { return p * p; });
            else if (e == 3)
                each(a, out, n, [](double p) { return p * (p * p); });
            else
                each(a, out, n, [e](double p) { return OperatorNodeC::powerWhole(p, e); });
            break;
        }
        default: applyFunction(in.arg, a, out, n); break;
        }
        ++slot;
    }
}

void CompiledExpressionC::evaluate(double const *xs, double *ys, unsigned int count) const {
    std::size_t slots = firstResult_ + program_.size();
    if (block_.size() != slots * BLOCK) {
        block_.assign(slots * BLOCK, 0.0);
        for (unsigned int c = 0; c < constants_.size(); ++c)
            for (unsigned int i = 0; i < BLOCK; ++i) block_[(1 + c) * BLOCK + i] = constants_[c];
    }
    for (unsigned int done = 0; done < count; done += BLOCK) {
        unsigned int n = count - done < BLOCK ? count - done : BLOCK;
        std::memcpy(block_.data(), xs + done, n * sizeof(double));
        runBlock(n);
        std::memcpy(ys + done, block_.data() + std::size_t(resultSlot_) * BLOCK, n * sizeof(double));
    }
}

IntervalC CompiledExpressionC::evaluate(IntervalC const &x) const {
    IntervalC *v = intervals_.data();
    v[0] = x;
    unsigned int slot = firstResult_;
    for (InstructionS const &in : program_) {
        IntervalC const &a = v[in.a];
        switch (in.op) {
        case ADD: v[slot] = IntervalC::add(a, v[in.b]); break;
        case SUB: v[slot] = IntervalC::sub(a, v[in.b]); break;
        case MUL: v[slot] = IntervalC::mul(a, v[in.b]); break;
        case DIV: v[slot] = IntervalC::div(a, v[in.b]); break;
        case NEG: v[slot] = IntervalC::neg(a); break;
        case POW: v[slot] = IntervalC::pow(a, v[in.b]); break;
        case POW_INT: v[slot] = IntervalC::powInt(a, in.arg); break;
        default: v[slot] = applyFunction(in.arg, a); break;
        }
        ++slot;
    }
    return v[resultSlot_];
}

} // namespace algexpr
} // namespace math
} // namespace qelt

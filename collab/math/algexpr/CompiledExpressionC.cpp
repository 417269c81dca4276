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

// One function over a block, the switch outside the loop. The hot
// functions are written out so that the loop calls the library directly;
// each is its table row's rule.
void applyFunction(FunctionRowS const &f, double const *in, double *out, unsigned int n) {
    switch (f.code) {
    case FunctionTableC::SIN: each(in, out, n, [](double v) { return std::sin(v); }); return;
    case FunctionTableC::COS: each(in, out, n, [](double v) { return std::cos(v); }); return;
    case FunctionTableC::TAN: each(in, out, n, [](double v) { return std::tan(v); }); return;
    case FunctionTableC::EXP: each(in, out, n, [](double v) { return std::exp(v); }); return;
    case FunctionTableC::SQRT: each(in, out, n, [](double v) { return std::sqrt(v); }); return;
    case FunctionTableC::ABS: each(in, out, n, [](double v) { return std::fabs(v); }); return;
    default: {
        double (*point)(double, double) = f.point;
        double const none = std::numeric_limits<double>::quiet_NaN();
        each(in, out, n, [point, none](double v) { return point(v, none); });
        return;
    }
    }
}

} // namespace

namespace {

// Operand references while the program is laid out: a variable, the c-th
// number or the i-th instruction; resolved to slots once the number count is
// known.
unsigned int const CONSTANT_TAG = 0x80000000u;
unsigned int const RESULT_TAG = 0x40000000u;

} // namespace

CompiledExpressionC::CompiledExpressionC(NodeABC const *root)
    : firstResult_(NodeABC::VARIABLE_COUNT), resultSlot_(0), otherVariables_(false) {
    unsigned int result;
    if (!root || root->getHeight() > AlgebraicExpressionC::MAX_DEPTH) {
        result = constant(std::numeric_limits<double>::quiet_NaN());
    } else {
        bool depends = false;
        std::unique_ptr<NodeABC> folded = foldConstants(*root, depends);
        result = emit(*folded);
    }
    unsigned int const vars = NodeABC::VARIABLE_COUNT;
    firstResult_ = vars + static_cast<unsigned int>(constants_.size());
    auto slot = [this](unsigned int ref) {
        if (ref & CONSTANT_TAG) return NodeABC::VARIABLE_COUNT + (ref & ~CONSTANT_TAG);
        if (ref & RESULT_TAG) return firstResult_ + (ref & ~RESULT_TAG);
        return ref;
    };
    for (InstructionS &in : program_) {
        in.a = slot(in.a);
        in.b = slot(in.b);
    }
    resultSlot_ = slot(result);
    unsigned int slots = firstResult_ + static_cast<unsigned int>(program_.size());
    // Variables without a value until a run gives them one.
    values_.assign(slots, std::numeric_limits<double>::quiet_NaN());
    intervals_.assign(slots, IntervalC::none());
    for (unsigned int i = 0; i < constants_.size(); ++i) {
        values_[vars + i] = constants_[i];
        intervals_[vars + i] = IntervalC::point(constants_[i]);
    }
}

CompiledExpressionC::~CompiledExpressionC() {}

unsigned int CompiledExpressionC::constant(double value) {
    constants_.push_back(value);
    return CONSTANT_TAG | static_cast<unsigned int>(constants_.size() - 1);
}

unsigned int CompiledExpressionC::emit(NodeABC const &node) {
    if (FloatNodeC const *f = node.as<FloatNodeC>()) return constant(f->getValue()->toDouble());
    if (VariableNodeC const *v = node.as<VariableNodeC>()) {
        if (v->getIndex() != VariableNodeC::X) otherVariables_ = true;
        return static_cast<unsigned int>(v->getIndex());
    }
    InstructionS in{NEG, 0, 0, 0, nullptr};
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
        in.function = FunctionTableC::row(fn->getCode());
        if (!in.function || fn->getChildCount() != in.function->arity)
            return constant(std::numeric_limits<double>::quiet_NaN());
        in.op = in.function->arity == 2 ? FUNCTION2 : FUNCTION;
        in.arg = fn->getCode();
        in.a = emit(*fn->child(0));
        if (in.op == FUNCTION2) in.b = emit(*fn->child(1));
    } else {
        return constant(std::numeric_limits<double>::quiet_NaN());
    }
    program_.push_back(in);
    return RESULT_TAG | static_cast<unsigned int>(program_.size() - 1);
}

double CompiledExpressionC::evaluate(double x) const {
    double *v = values_.data();
    v[0] = x;
    if (otherVariables_) v[1] = v[2] = v[3] = std::numeric_limits<double>::quiet_NaN();
    return run();
}

double CompiledExpressionC::evaluateWith(double const *values) const {
    for (unsigned int i = 0; i < NodeABC::VARIABLE_COUNT; ++i) values_[i] = values[i];
    return run();
}

double CompiledExpressionC::run() const {
    double *v = values_.data();
    double const none = std::numeric_limits<double>::quiet_NaN();
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
        case FUNCTION: r = in.function->point(a, none); break;
        default: r = in.function->point(a, v[in.b]); break;
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
        case FUNCTION: applyFunction(*in.function, a, out, n); break;
        default: {
            double (*point)(double, double) = in.function->point;
            each2(a, b, out, n, point);
            break;
        }
        }
        ++slot;
    }
}

void CompiledExpressionC::evaluate(double const *xs, double *ys, unsigned int count) const {
    std::size_t slots = firstResult_ + program_.size();
    if (block_.size() != slots * BLOCK) {
        // The other variables have no value in a batch over x.
        block_.assign(slots * BLOCK, std::numeric_limits<double>::quiet_NaN());
        for (unsigned int c = 0; c < constants_.size(); ++c)
            for (unsigned int i = 0; i < BLOCK; ++i) block_[(NodeABC::VARIABLE_COUNT + c) * BLOCK + i] = constants_[c];
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
    if (otherVariables_) v[1] = v[2] = v[3] = IntervalC::none();
    return runIntervals();
}

IntervalC CompiledExpressionC::evaluateWith(IntervalC const *values) const {
    for (unsigned int i = 0; i < NodeABC::VARIABLE_COUNT; ++i) intervals_[i] = values[i];
    return runIntervals();
}

CompiledExpressionC::VariableIntervalsT CompiledExpressionC::noValues() {
    VariableIntervalsT values;
    values.fill(IntervalC::none());
    return values;
}

IntervalC CompiledExpressionC::encloseWith(IntervalC const *values) const {
    IntervalC v = evaluateWith(values);
    return v.overflow ? evaluateWideWith(values) : v;
}

IntervalC CompiledExpressionC::runIntervals() const {
    IntervalC *v = intervals_.data();
    IntervalC const none = IntervalC::none();
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
        case FUNCTION: v[slot] = in.function->interval(a, none); break;
        default: v[slot] = in.function->interval(a, v[in.b]); break;
        }
        ++slot;
    }
    return v[resultSlot_];
}

IntervalC CompiledExpressionC::evaluateWide(IntervalC const &x) const {
    IntervalC values[NodeABC::VARIABLE_COUNT] = {x, IntervalC::none(), IntervalC::none(), IntervalC::none()};
    return evaluateWideWith(values);
}

IntervalC CompiledExpressionC::evaluateWideWith(IntervalC const *values) const {
    if (wides_.size() != intervals_.size()) {
        wides_.assign(intervals_.size(), WideIntervalC());
        for (unsigned int i = 0; i < constants_.size(); ++i)
            wides_[NodeABC::VARIABLE_COUNT + i] = WideIntervalC::fromDouble(IntervalC::point(constants_[i]));
    }
    for (unsigned int i = 0; i < NodeABC::VARIABLE_COUNT; ++i) wides_[i] = WideIntervalC::fromDouble(values[i]);
    // The double run's notes do not carry into the wide one.
    for (unsigned int i = 0; i < NodeABC::VARIABLE_COUNT; ++i) wides_[i].overflow = false;
    return runWide();
}

IntervalC CompiledExpressionC::runWide() const {
    using W = WideIntervalC;
    W *v = wides_.data();
    W const none = W::fromDouble(IntervalC::none());
    unsigned int slot = firstResult_;
    for (InstructionS const &in : program_) {
        W const &a = v[in.a];
        W const &b = in.op == FUNCTION ? none : v[in.b];
        switch (in.op) {
        case ADD: v[slot] = W::add(a, b); break;
        case SUB: v[slot] = W::sub(a, b); break;
        case MUL: v[slot] = W::mul(a, b); break;
        case DIV: v[slot] = W::div(a, b); break;
        case NEG: v[slot] = W::neg(a); break;
        case POW: v[slot] = W::pow(a, b); break;
        case POW_INT: v[slot] = W::powInt(a, in.arg); break;
        default:
            // A function with no long double version runs on doubles: sound,
            // as its inputs' bounds are rounded outward.
            v[slot] = in.function->wide ? in.function->wide(a, b)
                                        : W::fromDouble(in.function->interval(a.toDouble(), b.toDouble()));
            break;
        }
        ++slot;
    }
    return v[resultSlot_].toDouble();
}

} // namespace algexpr
} // namespace math
} // namespace qelt

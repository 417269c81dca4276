#include "collab/rel/ClosedFormRecogniserC.h"

#include <cfloat>
#include <cmath>
#include <memory>

#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/FloatNodeC.h"
#include "collab/math/algexpr/FloatValueABC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/VariableNodeC.h"

namespace qelt {
namespace mathapp {
namespace rel {

using math::algexpr::CoreFunctionNodeC;
using math::algexpr::FloatNodeC;
using math::algexpr::FunctionTableC;
using math::algexpr::NodeABC;
using math::algexpr::OperatorNodeC;
using math::algexpr::VariableNodeC;
using FamilyS = ClosedFormRecogniserC::FamilyS;

double ClosedFormRecogniserC::FamilyS::parameter(std::string const &n) const {
    for (ParameterS const &p : parameters)
        if (p.name == n) return p.value;
    return 0.0;
}

namespace {

// Trees are walked as the parser built them, at most
// AlgebraicExpressionC::MAX_DEPTH deep, so recursion here stays shallow.

bool constant(NodeABC const *n, double &value) {
    FloatNodeC const *f = n ? n->as<FloatNodeC>() : nullptr;
    if (!f) return false;
    value = f->getValue()->toDouble();
    return true;
}

bool variable(NodeABC const *n, VariableNodeC::IndexE index) {
    VariableNodeC const *v = n ? n->as<VariableNodeC>() : nullptr;
    return v && v->getIndex() == index;
}

OperatorNodeC const *operatorNode(NodeABC const *n, OperatorNodeC::OperatorE op) {
    OperatorNodeC const *o = n ? n->as<OperatorNodeC>() : nullptr;
    return o && o->getOperator() == op ? o : nullptr;
}

int functionCode(NodeABC const *n) {
    CoreFunctionNodeC const *f = n ? n->as<CoreFunctionNodeC>() : nullptr;
    return f ? f->getCode() : 0;
}

NodeABC const *child(NodeABC const *n, unsigned int i) { return n->as<math::algexpr::ParentNodeABC>()->child(i); }

// v, v - c, v + c, c + v: the shift h of (v - h).
bool shifted(NodeABC const *n, VariableNodeC::IndexE v, double &h) {
    double c;
    if (variable(n, v)) {
        h = 0.0;
        return true;
    }
    if (OperatorNodeC const *o = operatorNode(n, OperatorNodeC::SUBTRACT))
        if (variable(o->child(0), v) && constant(o->child(1), c)) {
            h = c;
            return true;
        }
    if (OperatorNodeC const *o = operatorNode(n, OperatorNodeC::ADD)) {
        if (variable(o->child(0), v) && constant(o->child(1), c)) {
            h = -c;
            return true;
        }
        if (constant(o->child(0), c) && variable(o->child(1), v)) {
            h = -c;
            return true;
        }
    }
    return false;
}

// A sum laid out as signed terms.
struct TermS {
    double sign;
    NodeABC const *node;
};

void terms(NodeABC const *n, double sign, std::vector<TermS> &out) {
    if (OperatorNodeC const *o = n->as<OperatorNodeC>()) {
        switch (o->getOperator()) {
        case OperatorNodeC::ADD:
            terms(o->child(0), sign, out);
            terms(o->child(1), sign, out);
            return;
        case OperatorNodeC::SUBTRACT:
            terms(o->child(0), sign, out);
            terms(o->child(1), -sign, out);
            return;
        case OperatorNodeC::NEGATE:
            terms(o->child(0), -sign, out);
            return;
        default: break;
        }
    }
    out.push_back(TermS{sign, n});
}

// A term as numerator / denominator times one factor, which stands above
// the line (up) or below it. Constants are kept apart as written, so that a
// lone 3 in "3sin(x)" is 3 and "(x - 1)^2/16" has 16 below the line.
struct ProductS {
    double numerator = 1.0;
    double denominator = 1.0;
    NodeABC const *factor = nullptr;
    bool up = true;
    bool single = true; // false: more than one factor
    double coefficient(double sign) const { return sign * numerator / denominator; }
};

void product(NodeABC const *n, bool up, ProductS &p) {
    double c;
    if (constant(n, c)) {
        (up ? p.numerator : p.denominator) *= c;
        return;
    }
    if (OperatorNodeC const *o = n->as<OperatorNodeC>()) {
        switch (o->getOperator()) {
        case OperatorNodeC::MULTIPLY:
            product(o->child(0), up, p);
            product(o->child(1), up, p);
            return;
        case OperatorNodeC::DIVIDE:
            product(o->child(0), up, p);
            product(o->child(1), !up, p);
            return;
        case OperatorNodeC::NEGATE:
            p.numerator = -p.numerator;
            product(o->child(0), up, p);
            return;
        default: break;
        }
    }
    if (p.factor) p.single = false;
    p.factor = n;
    p.up = up;
}

// A whole exponent that the power rasteriser takes as written.
bool wholeExponent(NodeABC const *n, long long &r) {
    double c;
    if (!constant(n, c) || !(std::fabs(c) <= 64) || std::floor(c) != c) return false;
    r = static_cast<long long>(c);
    return true;
}

// (v - h)^n, n whole; n = 1 for (v - h) itself.
bool shiftedPower(NodeABC const *n, VariableNodeC::IndexE v, double &h, long long &r) {
    if (shifted(n, v, h)) {
        r = 1;
        return true;
    }
    OperatorNodeC const *o = operatorNode(n, OperatorNodeC::POWER);
    return o && shifted(o->child(0), v, h) && wholeExponent(o->child(1), r);
}

// a(v - h) as written: a product with the shift as its one factor, or
// a v + c (h = -c/a), or v alone.
bool linearIn(NodeABC const *n, VariableNodeC::IndexE v, double &a, double &h) {
    if (shifted(n, v, h)) {
        a = 1.0;
        return true;
    }
    ProductS p;
    product(n, true, p);
    if (p.single && p.factor && p.up && p.factor != n && shifted(p.factor, v, h)) {
        a = p.coefficient(1.0);
        return true;
    }
    std::vector<TermS> ts;
    terms(n, 1.0, ts);
    double c = 0.0, m = 0.0;
    int slopes = 0, constants = 0;
    for (TermS const &t : ts) {
        double value;
        if (constant(t.node, value)) {
            c = t.sign * value;
            ++constants;
            continue;
        }
        ProductS q;
        product(t.node, true, q);
        if (!q.single || !q.up || !variable(q.factor, v)) return false;
        m = q.coefficient(t.sign);
        ++slopes;
    }
    if (slopes != 1 || constants > 1) return false;
    a = m;
    h = constants == 0 ? 0.0 : -c / m;
    return true;
}

bool linearArgument(NodeABC const *n, double &a, double &h) { return linearIn(n, VariableNodeC::X, a, h); }

bool finite(FamilyS const &f) {
    for (ClosedFormRecogniserC::ParameterS const &p : f.parameters)
        if (!std::isfinite(p.value)) return false;
    return true;
}

FamilyS family(std::string name, std::vector<ClosedFormRecogniserC::ParameterS> parameters) {
    FamilyS f{std::move(name), std::move(parameters)};
    return finite(f) ? f : FamilyS{};
}

// An axis the conic rasterisers square: its square must be a finite,
// normal double, as it is where it came from.
bool goodAxisSquare(double square) { return square >= DBL_MIN && square <= DBL_MAX; }

FamilyS oneTermFunction(double coefficient, ProductS const &p, double k) {
    NodeABC const *f = p.factor;
    double h, a;
    long long r;
    if (shiftedPower(f, VariableNodeC::X, h, r)) {
        if (!p.up) return family("power", {{"a", coefficient}, {"h", h}, {"k", k}, {"r", double(-r)}, {"restriction", 0}});
        if (r == 1) return family("line", {{"m", coefficient}, {"h", h}, {"k", k}});
        if (r == 2) return family("quadratic", {{"a", coefficient}, {"h", h}, {"k", k}});
        if (r != 0) return family("power", {{"a", coefficient}, {"h", h}, {"k", k}, {"r", double(r)}, {"restriction", 0}});
        return FamilyS{};
    }
    if (!p.up) return FamilyS{};
    int code = functionCode(f);
    if ((code == FunctionTableC::SIN || code == FunctionTableC::COS) && linearArgument(child(f, 0), a, h))
        return family(code == FunctionTableC::SIN ? "sin" : "cos", {{"a", a}, {"b", coefficient}, {"h", h}, {"k", k}});
    // e^(rx), exp(rx), c^(rx): the exponent a multiple of x.
    NodeABC const *exponent = nullptr;
    double base = 0.0;
    if (code == FunctionTableC::EXP) {
        exponent = child(f, 0);
        base = std::exp(1.0);
    } else if (OperatorNodeC const *o = operatorNode(f, OperatorNodeC::POWER)) {
        if (constant(o->child(0), base) && base > 0 && base != 1) exponent = o->child(1);
    }
    if (exponent && linearArgument(exponent, a, h) && h == 0) {
        double rate = base == std::exp(1.0) ? a : a * std::log(base);
        return family("exp", {{"b", coefficient}, {"r", rate}, {"k", k}});
    }
    NodeABC const *argument = nullptr;
    switch (code) {
    case FunctionTableC::LN: base = std::exp(1.0); argument = child(f, 0); break;
    case FunctionTableC::LOG10: base = 10.0; argument = child(f, 0); break;
    case FunctionTableC::LOG2: base = 2.0; argument = child(f, 0); break;
    case FunctionTableC::LOG_BASE:
        if (constant(child(f, 0), base)) argument = child(f, 1);
        break;
    default: break;
    }
    if (argument && base > 0 && base != 1 && linearArgument(argument, a, h) && a != 0)
        return family("log", {{"a", a}, {"b", coefficient}, {"h", h}, {"k", k}, {"base", base}});
    return FamilyS{};
}

} // namespace

bool ClosedFormRecogniserC::linear(NodeABC const &n, int variable, double &a, double &h) {
    return linearIn(&n, static_cast<VariableNodeC::IndexE>(variable), a, h);
}

FamilyS ClosedFormRecogniserC::function(NodeABC const &f) {
    bool depends = false;
    std::unique_ptr<NodeABC> folded = math::algexpr::foldConstants(f, depends);
    std::vector<TermS> ts;
    terms(folded.get(), 1.0, ts);
    // The constant terms make k; a single one keeps its double as written.
    double k = 0.0;
    std::vector<TermS> variable;
    for (TermS const &t : ts) {
        double c;
        if (constant(t.node, c))
            k += t.sign * c;
        else
            variable.push_back(t);
    }
    if (variable.empty()) return family("line", {{"m", 0.0}, {"h", 0.0}, {"k", k}});
    if (variable.size() == 1) {
        ProductS p;
        product(variable[0].node, true, p);
        if (!p.single || !p.factor) return FamilyS{};
        return oneTermFunction(p.coefficient(variable[0].sign), p, k);
    }
    // ax^2 + bx + c, each at most once.
    double a = 0.0, b = 0.0;
    bool square = false, slope = false;
    for (TermS const &t : variable) {
        ProductS p;
        product(t.node, true, p);
        double h;
        long long r;
        if (!p.single || !p.up || !shiftedPower(p.factor, VariableNodeC::X, h, r) || h != 0) return FamilyS{};
        if (r == 2 && !square) {
            a = p.coefficient(t.sign);
            square = true;
        } else if (r == 1 && !slope) {
            b = p.coefficient(t.sign);
            slope = true;
        } else {
            return FamilyS{};
        }
    }
    if (!square || a == 0) return FamilyS{};
    return family("quadratic", {{"a", a}, {"h", -b / (2 * a)}, {"k", k - b * b / (4 * a)}});
}

FamilyS ClosedFormRecogniserC::equation(NodeABC const &left, NodeABC const &right) {
    bool depends = false;
    std::unique_ptr<NodeABC> l = math::algexpr::foldConstants(left, depends);
    std::unique_ptr<NodeABC> r = math::algexpr::foldConstants(right, depends);
    std::vector<TermS> ts;
    terms(l.get(), 1.0, ts);
    terms(r.get(), -1.0, ts);
    // Everything on the left: c2x (x - h)^2 + c2y (y - k)^2 + c1x (x - h) +
    // c1y (y - k) = rhs, each part at most once. A coefficient is kept as
    // sign, numerator and denominator, so that 1/16 stays 16 below the line.
    struct PartS {
        bool present = false;
        double shift = 0.0;
        double sign = 1.0;
        double numerator = 1.0;
        double denominator = 1.0;
        double value() const { return sign * numerator / denominator; }
        // What stands under the square where the part equals rhs: rhs / value.
        double under(double rhs) const { return rhs * denominator / (sign * numerator); }
    };
    PartS x2, y2, x1, y1;
    double rhs = 0.0;
    for (TermS const &t : ts) {
        double c;
        if (constant(t.node, c)) {
            rhs -= t.sign * c;
            continue;
        }
        ProductS p;
        product(t.node, true, p);
        if (!p.single || !p.up || !p.factor) return FamilyS{};
        double h;
        long long n;
        PartS *part = nullptr;
        if (shiftedPower(p.factor, VariableNodeC::X, h, n))
            part = n == 2 ? &x2 : (n == 1 ? &x1 : nullptr);
        else if (shiftedPower(p.factor, VariableNodeC::Y, h, n))
            part = n == 2 ? &y2 : (n == 1 ? &y1 : nullptr);
        if (!part || part->present) return FamilyS{};
        *part = PartS{true, h, t.sign, p.numerator, p.denominator};
    }
    if (x2.present && y2.present && !x1.present && !y1.present) {
        if (rhs == 0) return FamilyS{};
        double a2 = x2.under(rhs), b2 = y2.under(rhs);
        if (!goodAxisSquare(std::fabs(a2)) || !goodAxisSquare(std::fabs(b2))) return FamilyS{};
        double h = x2.shift, k = y2.shift;
        if (a2 > 0 && b2 > 0) {
            if (a2 == b2) return family("circle", {{"h", h}, {"k", k}, {"r", std::sqrt(a2)}});
            return family("ellipse", {{"h", h}, {"k", k}, {"a", std::sqrt(a2)}, {"b", std::sqrt(b2)}});
        }
        if (a2 > 0 && b2 < 0) return family("hyperbola", {{"h", h}, {"k", k}, {"a", std::sqrt(a2)}, {"b", std::sqrt(-b2)}});
        if (a2 < 0 && b2 > 0)
            return family("vhyperbola", {{"h", h}, {"k", k}, {"a", std::sqrt(-a2)}, {"b", std::sqrt(b2)}});
        return FamilyS{};
    }
    // c2x (x - h)^2 + c1y (y - k) = rhs: (x - h)^2 = -(c1y/c2x)(y - (k + rhs/c1y)).
    if (x2.present && y1.present && !y2.present && !x1.present) {
        double focal = -y1.value() / x2.value() / 4;
        if (focal == 0) return FamilyS{};
        double k = rhs == 0 ? y1.shift : y1.shift + rhs / y1.value();
        return family("vparabola", {{"h", x2.shift}, {"k", k}, {"a", focal}});
    }
    if (y2.present && x1.present && !x2.present && !y1.present) {
        double focal = -x1.value() / y2.value() / 4;
        if (focal == 0) return FamilyS{};
        double h = rhs == 0 ? x1.shift : x1.shift + rhs / x1.value();
        return family("parabola", {{"h", h}, {"k", y2.shift}, {"a", focal}});
    }
    // c1y (y - k) + c1x (x - h) = rhs: y = -(c1x/c1y)(x - h) + k + rhs/c1y.
    if (y1.present && !x2.present && !y2.present) {
        double m = x1.present ? -x1.value() / y1.value() : 0.0;
        double k = rhs == 0 ? y1.shift : y1.shift + rhs / y1.value();
        return family("line", {{"m", m}, {"h", x1.present ? x1.shift : 0.0}, {"k", k}});
    }
    return FamilyS{};
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

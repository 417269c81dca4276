#include "collab/rel/TypedRelationC.h"

#include <cmath>
#include <memory>

#include "collab/math/Float64UtilC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/math/algexpr/CoreFunctionNodeC.h"
#include "collab/math/algexpr/OperatorNodeC.h"
#include "collab/math/algexpr/VariableNodeC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/EllipseC.h"
#include "collab/rel/ExponentialFunctionC.h"
#include "collab/rel/ExpressionBoxFunctionC.h"
#include "collab/rel/ExpressionCurveFunctionC.h"
#include "collab/rel/ExpressionParameterFunctionC.h"
#include "collab/rel/HyperbolaC.h"
#include "collab/rel/HyperbolaVertC.h"
#include "collab/rel/ImplicitRelationC.h"
#include "collab/rel/LinearFunction1C.h"
#include "collab/rel/LogarithmicFunctionC.h"
#include "collab/rel/ParabolaC.h"
#include "collab/rel/ParabolaVertC.h"
#include "collab/rel/ParametricCurveC.h"
#include "collab/rel/PolarCurveC.h"
#include "collab/rel/PowerFunctionC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "collab/rel/SinusoidalFunctionC.h"

namespace qelt {
namespace mathapp {
namespace rel {

using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CoreFunctionNodeC;
using math::algexpr::FunctionTableC;
using math::algexpr::NodeABC;
using math::algexpr::OperatorNodeC;
using math::algexpr::ParentNodeABC;
using math::algexpr::VariableNodeC;
using ExpressionP = oss::PointerTC<AlgebraicExpressionC>;

namespace {

unsigned int const X_BIT = 1u << VariableNodeC::X, Y_BIT = 1u << VariableNodeC::Y, T_BIT = 1u << VariableNodeC::T,
                   THETA_BIT = 1u << VariableNodeC::THETA;

// A stretch of the text, in bytes.
struct SpanS {
    std::size_t begin;
    std::size_t end;
};

bool wordByte(unsigned char c) { return std::isalnum(c) || c == '_' || c >= 0x80; }

std::size_t characterCount(std::string const &text, std::size_t bytes) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < bytes && i < text.size(); ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) ++n;
    return n;
}

SpanS trimmed(std::string const &text, SpanS s) {
    while (s.begin < s.end && std::isspace(static_cast<unsigned char>(text[s.begin]))) ++s.begin;
    while (s.end > s.begin && std::isspace(static_cast<unsigned char>(text[s.end - 1]))) --s.end;
    return s;
}

// The places where s splits at the word (surrounded by non-word bytes,
// outside parentheses): each piece between them.
std::vector<SpanS> splitAtWord(std::string const &text, SpanS s, char const *word) {
    std::vector<SpanS> pieces;
    std::size_t const n = std::char_traits<char>::length(word);
    int depth = 0;
    std::size_t start = s.begin;
    for (std::size_t i = s.begin; i < s.end; ++i) {
        char c = text[i];
        if (c == '(') ++depth;
        if (c == ')') --depth;
        if (depth != 0 || c != word[0] || i + n > s.end || text.compare(i, n, word) != 0) continue;
        bool before = i == s.begin || !wordByte(static_cast<unsigned char>(text[i - 1]));
        bool after = i + n == s.end || !wordByte(static_cast<unsigned char>(text[i + n]));
        if (!before || !after) continue;
        pieces.push_back(SpanS{start, i});
        start = i + n;
        i += n - 1;
    }
    pieces.push_back(SpanS{start, s.end});
    return pieces;
}

// A comparison token at text[i], outside parentheses: its length, and which.
std::size_t comparisonAt(std::string const &text, std::size_t i, std::size_t end,
                         ImplicitRelationC::ComparisonE &op) {
    char const c = text[i];
    if (c != '<' && c != '>' && c != '=' && c != '\xE2') return 0;
    auto at = [&](char const *token) {
        std::size_t n = std::char_traits<char>::length(token);
        return i + n <= end && text.compare(i, n, token) == 0 ? n : 0;
    };
    std::size_t n;
    if ((n = at("<=")) || (n = at("\xE2\x89\xA4"))) return op = ImplicitRelationC::LESS_EQUAL, n;
    if ((n = at(">=")) || (n = at("\xE2\x89\xA5"))) return op = ImplicitRelationC::GREATER_EQUAL, n;
    if ((n = at("=="))) return op = ImplicitRelationC::EQUAL, n;
    if ((n = at("<"))) return op = ImplicitRelationC::LESS, n;
    if ((n = at(">"))) return op = ImplicitRelationC::GREATER, n;
    if ((n = at("="))) return op = ImplicitRelationC::EQUAL, n;
    return 0;
}

// One clause: sides separated by comparisons.
struct ClauseS {
    std::vector<SpanS> sides;
    std::vector<ImplicitRelationC::ComparisonE> comparisons;
    std::vector<std::size_t> at; // where each comparison stands
};

ClauseS clauseOf(std::string const &text, SpanS s) {
    ClauseS c;
    int depth = 0;
    std::size_t start = s.begin;
    for (std::size_t i = s.begin; i < s.end; ++i) {
        if (text[i] == '(') ++depth;
        if (text[i] == ')') --depth;
        ImplicitRelationC::ComparisonE op;
        std::size_t n = depth == 0 ? comparisonAt(text, i, s.end, op) : 0;
        if (!n) continue;
        c.sides.push_back(SpanS{start, i});
        c.comparisons.push_back(op);
        c.at.push_back(i);
        start = i + n;
        i += n - 1;
    }
    c.sides.push_back(SpanS{start, s.end});
    return c;
}

// The reading of a relation's text, failing at the first error.
class ReaderS {
public:
    ReaderS(std::string const &text, std::string *error) : text_(text), error_(error) {}

    // The side's expression; its errors count characters in the whole text.
    ExpressionP side(SpanS s) {
        SpanS t = trimmed(text_, s);
        if (t.begin == t.end) {
            fail("expected an expression", s.begin);
            return ExpressionP();
        }
        // The side alone, behind one space per character before it.
        std::string masked(characterCount(text_, t.begin), ' ');
        masked.append(text_, t.begin, t.end - t.begin);
        std::string message;
        ExpressionP e = AlgebraicExpressionC::fromInfixString(masked, &message);
        if (!e) fail(message);
        return e;
    }

    bool fail(std::string const &what, std::size_t byte) {
        return fail(what + " at character " + std::to_string(characterCount(text_, byte) + 1));
    }
    bool fail(std::string const &message) {
        if (error_ && error_->empty()) *error_ = message;
        failed_ = true;
        return false;
    }
    bool failed() const { return failed_; }
    std::string const &text() const { return text_; }

private:
    std::string const &text_;
    std::string *error_;
    bool failed_ = false;
};

bool isVariable(ExpressionP const &e, VariableNodeC::IndexE index) {
    VariableNodeC const *v = e->getNode() ? e->getNode()->as<VariableNodeC>() : nullptr;
    return v && v->getIndex() == index;
}

std::unique_ptr<NodeABC> difference(NodeABC const &left, NodeABC const &right) {
    ParentNodeABC::ChildrenT children;
    children.push_back(left.clone());
    children.push_back(right.clone());
    return std::unique_ptr<NodeABC>(new OperatorNodeC(OperatorNodeC::SUBTRACT, std::move(children)));
}

long long gcd(long long a, long long b) { return b == 0 ? a : gcd(b, a % b); }

// Turns of the parameter v after which every periodic function in the tree
// repeats: for sin(p/q v) a curve closes after q turns. One turn where a
// coefficient is no small fraction, and never more than MAX_TURNS.
long long const MAX_TURNS = 24;

// Turns after which both a and b repeat, or a where that is too many.
long long bothTurns(long long a, long long b) {
    long long l = a / gcd(a, b) * b;
    return l > MAX_TURNS ? a : l;
}

long long turnsOf(NodeABC const &n, VariableNodeC::IndexE v, bool &periodic) {
    long long turns = 1;
    int code = 0;
    if (CoreFunctionNodeC const *f = n.as<CoreFunctionNodeC>()) code = f->getCode();
    bool trig = code == FunctionTableC::SIN || code == FunctionTableC::COS || code == FunctionTableC::TAN ||
                code == FunctionTableC::SEC || code == FunctionTableC::CSC || code == FunctionTableC::COT;
    if (trig) {
        bool depends = false;
        std::unique_ptr<NodeABC> argument =
            math::algexpr::foldConstants(*n.as<ParentNodeABC>()->child(0), depends);
        double a, h;
        if (ClosedFormRecogniserC::linear(*argument, v, a, h)) {
            periodic = true;
            for (long long q = 1; q <= MAX_TURNS; ++q)
                if (std::fabs(a * double(q) - std::round(a * double(q))) < 1e-9) {
                    turns = q;
                    break;
                }
        }
    }
    if (ParentNodeABC const *p = n.as<ParentNodeABC>())
        for (unsigned int i = 0; i < p->getChildCount(); ++i) turns = bothTurns(turns, turnsOf(*p->child(i), v, periodic));
    return turns;
}

// The range the options give, or from the expressions: whole turns for
// periodic curves, -10 to 10 for the rest.
bool rangeFor(TypedRelationC::RangeS const &given, std::vector<NodeABC const *> const &nodes,
              VariableNodeC::IndexE v, bool alwaysTurns, double &min, double &max) {
    if (given.given) {
        min = given.min;
        max = given.max;
        return std::isfinite(min) && std::isfinite(max) && min < max;
    }
    bool periodic = false;
    long long turns = 1;
    for (NodeABC const *n : nodes) turns = bothTurns(turns, turnsOf(*n, v, periodic));
    if (periodic || alwaysTurns) {
        min = 0.0;
        max = 2.0 * math::Float64UtilC::pi * double(turns);
    } else {
        min = -10.0;
        max = 10.0;
    }
    return true;
}

RelationC *closedForm(ClosedFormRecogniserC::FamilyS const &f) {
    auto p = [&f](char const *name) { return f.parameter(name); };
    std::string const &k = f.name;
    if (k == "line") return new LinearFunction1C(p("m"), p("h"), p("k"));
    if (k == "quadratic") return new QuadraticFunctionC(p("a"), p("h"), p("k"));
    if (k == "vparabola") return new ParabolaVertC(p("h"), p("k"), p("a"));
    if (k == "parabola") return new ParabolaC(p("h"), p("k"), p("a"));
    if (k == "circle") return new CircleC(p("h"), p("k"), p("r"));
    if (k == "ellipse") return new EllipseC(p("h"), p("k"), p("a"), p("b"));
    if (k == "hyperbola") return new HyperbolaC(p("h"), p("k"), p("a"), p("b"));
    if (k == "vhyperbola") return new HyperbolaVertC(p("h"), p("k"), p("a"), p("b"));
    if (k == "power")
        return new PowerFunctionC(p("a"), p("h"), p("k"), static_cast<long long>(p("r")), PowerFunctionDomainRestrictionE(0));
    if (k == "exp") return new ExponentialFunctionC(p("b"), p("r"), p("k"));
    if (k == "log") return new LogarithmicFunctionC(p("a"), p("b"), p("h"), p("k"), p("base"));
    if (k == "sin" || k == "cos") return new SinusoidalFunctionC(p("a"), p("b"), p("h"), p("k"), k == "sin");
    return nullptr;
}

} // namespace

TypedRelationC::TypedRelationC() : form_(FUNCTION) {}
TypedRelationC::~TypedRelationC() {}

std::string TypedRelationC::evaluatorOf(std::string const &kind) {
    static char const *const names[][2] = {
        {"line", "LinearFunction1EvalC"},   {"quadratic", "QuadraticFunctionEvalC"},
        {"vparabola", "ParabolaVertEvalC"}, {"parabola", "ParabolaEvalC"},
        {"circle", "CircleEvalC"},          {"ellipse", "EllipseEvalC"},
        {"hyperbola", "HyperbolaEvalC"},    {"vhyperbola", "HyperbolaVertEvalC"},
        {"power", "PowerFunctionEvalC"},    {"exp", "ExponentialFunctionEvalC"},
        {"log", "LogarithmicFunctionEvalC"}, {"sin", "SinusoidalFunctionEvalC"},
        {"cos", "SinusoidalFunctionEvalC"}, {"expr", "ArbitraryFunctionFloat64EvalC"},
        {"implicit", "ImplicitRelationEvalC"}, {"polar", "ParametricCurveEvalC"},
        {"parametric", "ParametricCurveEvalC"}};
    for (auto const &n : names)
        if (kind == n[0]) return n[1];
    return std::string();
}

oss::PointerTC<TypedRelationC> TypedRelationC::fromText(std::string const &text, std::string *error) {
    return fromText(text, error, OptionsS());
}

oss::PointerTC<TypedRelationC> TypedRelationC::fromText(std::string const &text, std::string *error,
                                                        OptionsS const &options) {
    if (error) error->clear();
    ReaderS reader(text, error);
    oss::PointerTC<TypedRelationC> result(new TypedRelationC());
    TypedRelationC &r = *result;
    SpanS whole = trimmed(text, SpanS{0, text.size()});
    if (whole.begin == whole.end) {
        reader.fail("expected a relation, such as y = x^2 or x^2 + y^2 = 9");
        return nullptr;
    }

    // (x(t), y(t)): parentheses around the whole text with a comma inside.
    if (text[whole.begin] == '(' && text[whole.end - 1] == ')') {
        int depth = 0;
        std::size_t comma = 0, close = 0;
        for (std::size_t i = whole.begin; i < whole.end && !close; ++i) {
            if (text[i] == '(') ++depth;
            if (text[i] == ')' && --depth == 0) close = i;
            if (text[i] == ',' && depth == 1 && !comma) comma = i;
        }
        if (comma && close == whole.end - 1) {
            ExpressionP x = reader.side(SpanS{whole.begin + 1, comma});
            ExpressionP y = x ? reader.side(SpanS{comma + 1, close}) : ExpressionP();
            if (!x || !y) return nullptr;
            if (((x->getVariables() | y->getVariables()) & ~T_BIT) != 0) {
                reader.fail("a curve (x(t), y(t)) is written in t alone");
                return nullptr;
            }
            double min, max;
            if (!rangeFor(options.t, {x->getNode(), y->getNode()}, VariableNodeC::T, false, min, max)) {
                reader.fail("the t range must run from a finite start up to a finite end");
                return nullptr;
            }
            r.form_ = PARAMETRIC;
            r.family_ = ClosedFormRecogniserC::FamilyS{"parametric", {{"t min", min}, {"t max", max}}};
            r.relation_ = new ParametricCurveC(new ExpressionCurveFunctionC(x->getNode(), y->getNode()), min, max);
            r.evaluator_ = evaluatorOf("parametric");
            return result;
        }
    }

    // "or" of "and"s of comparison chains.
    std::vector<std::vector<ClauseS>> alternatives;
    unsigned int comparisons = 0;
    for (SpanS any : splitAtWord(text, whole, "or")) {
        alternatives.emplace_back();
        for (SpanS all : splitAtWord(text, any, "and")) {
            alternatives.back().push_back(clauseOf(text, all));
            comparisons += static_cast<unsigned int>(alternatives.back().back().comparisons.size());
        }
    }
    if (comparisons > MAX_COMPARISONS) {
        reader.fail("at most " + std::to_string(MAX_COMPARISONS) + " comparisons in one relation");
        return nullptr;
    }
    ClauseS const &first = alternatives[0][0];
    bool single = alternatives.size() == 1 && alternatives[0].size() == 1;

    // A bare expression in x is y = f(x).
    if (single && first.comparisons.empty()) {
        ExpressionP f = reader.side(first.sides[0]);
        if (!f) return nullptr;
        if ((f->getVariables() & ~X_BIT) != 0) {
            reader.fail("expected a relation: an expression in y, t or θ needs a comparison such as "
                        "x^2 + y^2 = 9, r = 1 + cos(θ), or (cos(t), sin(t)) for a curve");
            return nullptr;
        }
        ClosedFormRecogniserC::FamilyS family = ClosedFormRecogniserC::function(*f->getNode());
        r.form_ = family.name.empty() ? FUNCTION : CLOSED_FORM;
        r.family_ = family.name.empty() ? ClosedFormRecogniserC::FamilyS{"expr", {}} : family;
        r.relation_ = family.name.empty() ? static_cast<RelationC *>(new ArbitraryFunctionC(f)) : closedForm(family);
        r.evaluator_ = evaluatorOf(r.family_.name);
        return result;
    }

    // r = f(θ).
    if (single && first.comparisons.size() == 1 && first.comparisons[0] == ImplicitRelationC::EQUAL) {
        SpanS left = trimmed(text, first.sides[0]);
        if (left.end - left.begin == 1 && text[left.begin] == 'r') {
            ExpressionP radius = reader.side(first.sides[1]);
            if (!radius) return nullptr;
            if ((radius->getVariables() & ~THETA_BIT) != 0) {
                reader.fail("a polar curve r = f(θ) is written in θ alone");
                return nullptr;
            }
            double min, max;
            if (!rangeFor(options.theta, {radius->getNode()}, VariableNodeC::THETA, true, min, max)) {
                reader.fail("the θ range must run from a finite start up to a finite end");
                return nullptr;
            }
            r.form_ = POLAR;
            r.family_ = ClosedFormRecogniserC::FamilyS{"polar", {{"θ min", min}, {"θ max", max}}};
            r.relation_ = new PolarCurveC(new ExpressionParameterFunctionC(radius->getNode()), min, max);
            r.evaluator_ = evaluatorOf("polar");
            return result;
        }
    }

    // Every side of every comparison, read and checked.
    oss::PointerTC<ImplicitRelationC> any;
    for (std::vector<ClauseS> const &alternative : alternatives) {
        oss::PointerTC<ImplicitRelationC> all;
        for (ClauseS const &clause : alternative) {
            std::vector<ExpressionP> sides;
            for (SpanS s : clause.sides) {
                sides.push_back(reader.side(s));
                if (!sides.back()) return nullptr;
            }
            if (clause.comparisons.empty()) {
                reader.fail("expected a comparison (=, <, <=, >, >=) between two sides", clause.sides[0].end);
                return nullptr;
            }
            for (std::size_t i = 0; i < sides.size(); ++i) {
                if ((sides[i]->getVariables() & ~(X_BIT | Y_BIT)) != 0) {
                    reader.fail("a relation in x and y does not use t or θ; a curve is written (x(t), y(t)) or "
                                "r = f(θ)");
                    return nullptr;
                }
                if (sides[i]->getNode()->getHeight() >= AlgebraicExpressionC::MAX_DEPTH) {
                    reader.fail("the expression is nested too deeply", clause.sides[i].begin);
                    return nullptr;
                }
            }
            for (std::size_t i = 0; i < clause.comparisons.size(); ++i) {
                NodeABC const &left = *sides[i]->getNode(), &right = *sides[i + 1]->getNode();
                if (single && clause.comparisons.size() == 1 && clause.comparisons[0] == ImplicitRelationC::EQUAL) {
                    // y = f(x) (or f(x) = y) is a function; then a closed-form curve.
                    ExpressionP const *f = isVariable(sides[0], VariableNodeC::Y) && (sides[1]->getVariables() & Y_BIT) == 0
                                               ? &sides[1]
                                               : (isVariable(sides[1], VariableNodeC::Y) &&
                                                          (sides[0]->getVariables() & Y_BIT) == 0
                                                      ? &sides[0]
                                                      : nullptr);
                    ClosedFormRecogniserC::FamilyS family =
                        f ? ClosedFormRecogniserC::function(*(*f)->getNode())
                          : ClosedFormRecogniserC::equation(left, right);
                    if (!family.name.empty() || f) {
                        r.form_ = family.name.empty() ? FUNCTION : CLOSED_FORM;
                        r.family_ = family.name.empty() ? ClosedFormRecogniserC::FamilyS{"expr", {}} : family;
                        r.relation_ =
                            family.name.empty() ? static_cast<RelationC *>(new ArbitraryFunctionC(*f)) : closedForm(family);
                        r.evaluator_ = evaluatorOf(r.family_.name);
                        return result;
                    }
                }
                std::unique_ptr<NodeABC> h = difference(left, right);
                oss::PointerTC<ImplicitRelationC> c(
                    new ImplicitRelationC(new ExpressionBoxFunctionC(h.get()), clause.comparisons[i]));
                all = all ? oss::PointerTC<ImplicitRelationC>(new ImplicitRelationC(ImplicitRelationC::AND, all, c)) : c;
            }
        }
        any = any ? oss::PointerTC<ImplicitRelationC>(new ImplicitRelationC(ImplicitRelationC::OR, any, all)) : all;
    }
    r.form_ = IMPLICIT;
    r.family_ = ClosedFormRecogniserC::FamilyS{"implicit", {}};
    r.relation_ = any;
    r.evaluator_ = evaluatorOf("implicit");
    return result;
}

} // namespace rel
} // namespace mathapp
} // namespace qelt

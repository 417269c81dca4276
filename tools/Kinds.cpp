#include "Kinds.h"

#include <cfloat>
#include <cmath>
#include <set>
#include <sstream>

#include "collab/ds/FloatDataSetC.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
#include "collab/rel/ArbitraryFunctionC.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/EllipseC.h"
#include "collab/rel/ExponentialFunctionC.h"
#include "collab/rel/HyperbolaC.h"
#include "collab/rel/HyperbolaVertC.h"
#include "collab/rel/LinearFunction1C.h"
#include "collab/rel/LogarithmicFunctionC.h"
#include "collab/rel/ParabolaC.h"
#include "collab/rel/ParabolaVertC.h"
#include "collab/rel/PowerFunctionC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "collab/rel/SinusoidalFunctionC.h"
#include "collab/rel/SketchC.h"
#include "Errors.h"
#include "evalg/ArbitraryFunctionFloat64EvalC.h"
#include "evalg/CircleEvalC.h"
#include "evalg/EllipseEvalC.h"
#include "evalg/ExponentialFunctionEvalC.h"
#include "evalg/HyperbolaEvalC.h"
#include "evalg/HyperbolaVertEvalC.h"
#include "evalg/LinearFunction1EvalC.h"
#include "evalg/LogarithmicFunctionEvalC.h"
#include "evalg/ParabolaEvalC.h"
#include "evalg/ParabolaVertEvalC.h"
#include "evalg/PowerFunctionEvalC.h"
#include "evalg/QuadraticFunctionEvalC.h"
#include "evalg/SinusoidalFunctionEvalC.h"
#include "evalg/SketchEvalC.h"
#include "evalg/TypedRelationEvalC.h"
#include "Numbers.h"
#include "SampledDrawing.h"
#include "SketchFile.h"

namespace evalgtool {

namespace ds = qelt::mathapp::ds;
namespace esb = qelt::mathapp::esb;
namespace evalg = qelt::mathapp::evalg;
namespace rel = qelt::mathapp::rel;
using qelt::oss::PointerTC;
using RelationP = PointerTC<rel::RelationC>;

double Arguments::number(std::string const &name) const {
    auto it = numbers.find(name);
    return it == numbers.end() ? 0.0 : it->second;
}

std::string const &Arguments::text(std::string const &name) const {
    static std::string const none;
    auto it = texts.find(name);
    return it == texts.end() ? none : it->second;
}

namespace {

ParamDef number(std::string name, double def, std::string meaning) {
    return ParamDef{std::move(name), ParamType::Number, def, "", std::move(meaning), -DBL_MAX, DBL_MAX};
}

ParamDef text(std::string name, std::string def, std::string meaning) {
    return ParamDef{std::move(name), ParamType::Text, 0.0, std::move(def), std::move(meaning), 0.0, 0.0};
}

ParamDef integer(std::string name, double def, double lo, double hi, std::string meaning) {
    return ParamDef{std::move(name), ParamType::Integer, def, "", std::move(meaning), lo, hi};
}

ParamDef ruled(ParamDef p, unsigned rules) {
    p.rules = rules;
    return p;
}

// Draws with a closed-form evaluator: the visible stretches follow its markers.
template <class EvaluatorT>
Drawing drawPath(RelationP relation, Window const &w, std::string const &evaluatorName) {
    esb::CartesianRelationServiceC service(relation);
    EvaluatorT evaluator;
    Drawing d;
    d.evaluator = evaluatorName;
    d.points = pixelPoints(evaluator.evaluateGraph(service, makeDomain(w)));
    d.strokes = visibleStretches(d.points, w, false);
    return d;
}

// A kind drawn by one closed-form evaluator from one relation class.
template <class EvaluatorT>
KindEntry graphKind(std::string name, std::string curve, std::vector<ParamDef> params, std::string evaluatorName,
                   std::function<rel::RelationC *(Arguments const &)> build, std::string gallery) {
    KindEntry k;
    k.name = std::move(name);
    k.curve = std::move(curve);
    k.params = std::move(params);
    k.evaluator = evaluatorName;
    k.relation = [build](Arguments const &a) { return RelationP(build(a)); };
    k.draw = [build, evaluatorName](Arguments const &a, Window const &w) {
        return drawPath<EvaluatorT>(RelationP(build(a)), w, evaluatorName);
    };
    k.galleryArguments = std::move(gallery);
    return k;
}

// The relation y = f(x) of the expression f=, which must parse.
rel::RelationC *expression(Arguments const &a) {
    std::string const &f = a.text("f");
    std::string error;
    PointerTC<qelt::math::algexpr::AlgebraicExpressionC> parsed =
        qelt::math::algexpr::AlgebraicExpressionC::fromInfixString(f, &error);
    if (f.empty()) throw UsageError("expr: f=\"EXPRESSION\" is required, an expression in x such as f=\"x^2 - 2\"");
    if (!parsed)
        throw UsageError("expr f: '" + f + "' does not parse: " + error +
                         "; write it in ordinary notation, such as f=\"2x^2 - sin(x)/x\"");
    return new rel::ArbitraryFunctionC(parsed);
}

// Any other kind's relation, drawn by the general sampled evaluator.
KindEntry sampledKind() {
    KindEntry k;
    k.name = "sampled";
    k.curve = "the relation of=KIND, sampled column by column";
    k.params = {text("of", "", "KIND"),
                number("subdivisions", 100, "samples per column where the branch count jumps by 2 or more, 1 to 65535")};
    // The sampled evaluator's refinement loop counts in 16 bits: more
    // subdivisions than that would never end.
    k.params[1].lo = 1;
    k.params[1].hi = 65535;
    k.evaluator = "GeneralEvalC";
    k.wrapsKind = true;
    k.draw = [](Arguments const &a, Window const &w) {
        return drawSampled(findKind(a.text("of"))->relation(a), a.number("subdivisions"), w);
    };
    k.galleryArguments = "of=hyperbola a=1.5 b=2 k=0.5";
    return k;
}

// A free-hand sketch read from a file, one pixel per point.
KindEntry sketchKind() {
    KindEntry k;
    k.name = "sketch";
    k.curve = "the points of file=FILE, a JSON or CSV list of x,y";
    k.params = {text("file", "", "FILE")};
    k.evaluator = "SketchEvalC";
    k.draw = [](Arguments const &a, Window const &w) {
        std::string const &file = a.text("file");
        if (file.empty()) throw UsageError("sketch: file=FILE is required, a JSON or CSV list of points x,y");
        PointerTC<ds::FloatDataSetC> points(new ds::FloatDataSetC);
        for (FilePoint const &p : readPointsFile(file, "x", "y")) points->addPoint(new ds::FloatPointC(p.a, p.b, p.marks));
        PointerTC<rel::SketchC> sketch(new rel::SketchC(points));
        Drawing d;
        d.evaluator = "SketchEvalC";
        d.points = pixelPoints(qelt::mathapp::evalg::SketchEvalC().evaluatePixels(*sketch, makeDomain(w)));
        d.strokes = visibleStretches(d.points, w, false);
        return d;
    };
    k.galleryArguments = "file=sketch-points.json";
    return k;
}

// "MIN,MAX" of a curve's parameter; an empty text leaves it to the relation.
rel::TypedRelationC::RangeS parseRange(std::string const &text, std::string const &what) {
    rel::TypedRelationC::RangeS r;
    if (text.empty()) return r;
    std::size_t comma = text.find(',');
    if (comma == std::string::npos || text.find(',', comma + 1) != std::string::npos)
        throw UsageError(what + ": '" + text + "' is not of the form MIN,MAX");
    r.given = true;
    r.min = parseNumber(text.substr(0, comma), what + " MIN");
    r.max = parseNumber(text.substr(comma + 1), what + " MAX");
    if (!(r.min < r.max)) throw UsageError(what + ": MIN must be below MAX, as in 0,6.28");
    return r;
}

PointerTC<rel::TypedRelationC> readTyped(Arguments const &a) {
    std::string const &text = a.text("text");
    if (text.empty())
        throw UsageError("relation: text=\"RELATION\" is required, such as text=\"x^2 + y^2 = 9\"");
    rel::TypedRelationC::OptionsS options;
    options.t = parseRange(a.text("t"), "relation t");
    options.theta = parseRange(a.text("theta"), "relation theta");
    std::string error;
    PointerTC<rel::TypedRelationC> typed = rel::TypedRelationC::fromText(text, &error, options);
    if (!typed)
        throw UsageError("'" + text + "' does not read as a relation: " + error +
                         "; type one such as \"y = x^2\", \"x^2 + y^2 = 9\", \"y < sin(x)\", \"r = 1 + cos(θ)\" or "
                         "\"(cos(t), sin(2t))\", or name a kind: " + kindNames());
    return typed;
}

Drawing drawTyped(rel::TypedRelationC const &typed, Window const &w) {
    Drawing d;
    d.evaluator = typed.getEvaluatorName();
    d.points = pixelPoints(evalg::TypedRelationEvalC::evaluateGraph(typed, makeDomain(w)));
    d.pixelRuns = typed.drawsPixels();
    d.strokes = visibleStretches(d.points, w, false);
    return d;
}

// A relation as a person types it, routed by the library's recogniser.
KindEntry typedKind() {
    KindEntry k;
    k.name = "relation";
    k.curve = "a relation as typed: y = 2x + 3, x^2 + y^2 = 9, y < sin(x) and x > 0, r = 1 + cos(θ),\n"
              "              (cos(3t), sin(2t)); a closed form goes to its family's evaluator, anything else is\n"
              "              drawn with proven pixels; plain \"evalg plot 'RELATION'\" is the same";
    k.params = {text("text", "", "\"RELATION\""), text("t", "", "MIN,MAX"), text("theta", "", "MIN,MAX")};
    k.params[1].meaning = "MIN,MAX: the t range of a curve (x(t), y(t)); from the expression when absent";
    k.params[2].meaning = "MIN,MAX: the θ range of r = f(θ); whole turns from the expression when absent";
    k.evaluator = "the one its recognition chooses";
    k.relation = [](Arguments const &a) {
        PointerTC<rel::TypedRelationC> typed = readTyped(a);
        rel::TypedRelationC::FormE form = typed->getForm();
        if (form != rel::TypedRelationC::CLOSED_FORM && form != rel::TypedRelationC::FUNCTION)
            throw UsageError("'" + a.text("text") + "' is " + (form == rel::TypedRelationC::IMPLICIT ? "an implicit relation" : "a curve") +
                             ", not y as a function of x, so it has no y values to tabulate");
        return typed->getRelation();
    };
    k.draw = [](Arguments const &a, Window const &w) { return drawTyped(*readTyped(a), w); };
    k.galleryArguments = "'text=x^3 + y^3 = 3xy or x^2 + y^2 < 1'";
    return k;
}

std::vector<KindEntry> makeKinds() {
    ParamDef const a1 = number("a", 1, "");
    ParamDef const b1 = number("b", 1, "");
    ParamDef const h0 = number("h", 0, "");
    ParamDef const k0 = number("k", 0, "");
    // A zero focal distance is no parabola (the library draws y = k).
    ParamDef const focal = ruled(a1, NotZero);
    // Conic axes are squared, and a zero axis is no conic.
    ParamDef const axisA = ruled(a1, FiniteSquare | NormalSquare);
    ParamDef const axisB = ruled(b1, FiniteSquare | NormalSquare);
    // Exponents are whole numbers that a double holds exactly.
    double const exactInteger = 9007199254740992.0;
    std::vector<KindEntry> table;
    table.push_back(graphKind<evalg::LinearFunction1EvalC>(
        "line", "y = m(x - h) + k", {number("m", 1, ""), h0, k0}, "LinearFunction1EvalC",
        [](Arguments const &a) { return new rel::LinearFunction1C(a.number("m"), a.number("h"), a.number("k")); },
        "m=0.5 h=-2 k=1"));
    table.push_back(graphKind<evalg::QuadraticFunctionEvalC>(
        "quadratic", "y = a(x - h)^2 + k", {a1, h0, k0}, "QuadraticFunctionEvalC",
        [](Arguments const &a) { return new rel::QuadraticFunctionC(a.number("a"), a.number("h"), a.number("k")); },
        "a=0.25 h=1 k=-4"));
    table.push_back(graphKind<evalg::ParabolaVertEvalC>(
        "vparabola", "(x - h)^2 = 4a(y - k), vertical axis", {h0, k0, focal}, "ParabolaVertEvalC",
        [](Arguments const &a) { return new rel::ParabolaVertC(a.number("h"), a.number("k"), a.number("a")); },
        "h=-1 k=-3 a=0.5"));
    table.push_back(graphKind<evalg::ParabolaEvalC>(
        "parabola", "(y - k)^2 = 4a(x - h), horizontal axis", {h0, k0, focal}, "ParabolaEvalC",
        [](Arguments const &a) { return new rel::ParabolaC(a.number("h"), a.number("k"), a.number("a")); },
        "h=-4 k=0.5 a=1"));
    table.push_back(graphKind<evalg::CircleEvalC>(
        "circle", "(x - h)^2 + (y - k)^2 = r^2", {h0, k0, ruled(number("r", 1, ""), FiniteSquare)}, "CircleEvalC",
        [](Arguments const &a) { return new rel::CircleC(a.number("h"), a.number("k"), a.number("r")); },
        "h=-1 k=0.5 r=3.5"));
    table.push_back(graphKind<evalg::EllipseEvalC>(
        "ellipse", "(x - h)^2/a^2 + (y - k)^2/b^2 = 1", {h0, k0, axisA, axisB}, "EllipseEvalC",
        [](Arguments const &a) {
            return new rel::EllipseC(a.number("h"), a.number("k"), a.number("a"), a.number("b"));
        },
        "h=1 a=6 b=3"));
    table.push_back(graphKind<evalg::HyperbolaEvalC>(
        "hyperbola", "(x - h)^2/a^2 - (y - k)^2/b^2 = 1", {h0, k0, axisA, axisB}, "HyperbolaEvalC",
        [](Arguments const &a) {
            return new rel::HyperbolaC(a.number("h"), a.number("k"), a.number("a"), a.number("b"));
        },
        "a=2 b=1.5"));
    table.push_back(graphKind<evalg::HyperbolaVertEvalC>(
        "vhyperbola", "(y - k)^2/b^2 - (x - h)^2/a^2 = 1", {h0, k0, axisA, axisB}, "HyperbolaVertEvalC",
        [](Arguments const &a) {
            return new rel::HyperbolaVertC(a.number("h"), a.number("k"), a.number("a"), a.number("b"));
        },
        "h=1 k=-0.5 a=2 b=1.5"));
    table.push_back(graphKind<evalg::PowerFunctionEvalC>(
        "power", "y = a(x - h)^r + k, r a whole number",
        {a1, h0, k0, integer("r", 1, -exactInteger, exactInteger, ""),
         integer("restriction", 0, 0, 2,
                 "0 every x, 1 only x >= h, 2 only x <= h, as tables and sampled of=power keep it;\n"
                 "              the plot keeps it only for r < 0 (the branch beyond the pole) and where the whole\n"
                 "              window lies on the excluded side: for r > 0 with h in the window it draws every x")},
        "PowerFunctionEvalC",
        [](Arguments const &a) {
            return new rel::PowerFunctionC(a.number("a"), a.number("h"), a.number("k"),
                                           static_cast<long long>(a.number("r")), // whole and in range: checked
                                           static_cast<rel::PowerFunctionDomainRestrictionE>(int(a.number("restriction"))));
        },
        "a=0.5 h=1 k=-1 r=-1"));
    table.push_back(graphKind<evalg::ExponentialFunctionEvalC>(
        "exp", "y = b e^(r x) + k", {b1, number("r", 1, ""), k0}, "ExponentialFunctionEvalC",
        [](Arguments const &a) { return new rel::ExponentialFunctionC(a.number("b"), a.number("r"), a.number("k")); },
        "b=0.5 r=0.5 k=-3"));
    table.push_back(graphKind<evalg::LogarithmicFunctionEvalC>(
        "log", "y = b log_base(a(x - h)) + k",
        {ruled(a1, NotZero), b1, h0, k0, ruled(number("base", 10, ""), Positive | NotOne)},
        "LogarithmicFunctionEvalC",
        [](Arguments const &a) {
            return new rel::LogarithmicFunctionC(a.number("a"), a.number("b"), a.number("h"), a.number("k"),
                                                 a.number("base"));
        },
        "b=2 h=-7 k=-3 base=2"));
    for (bool sine : {true, false})
        table.push_back(graphKind<evalg::SinusoidalFunctionEvalC>(
            sine ? "sin" : "cos", sine ? "y = b sin(a(x - h)) + k" : "y = b cos(a(x - h)) + k", {a1, b1, h0, k0},
            "SinusoidalFunctionEvalC",
            [sine](Arguments const &a) {
                return new rel::SinusoidalFunctionC(a.number("a"), a.number("b"), a.number("h"), a.number("k"), sine);
            },
            sine ? "a=1.5 b=3 h=0.5" : "a=0.5 b=4 k=-0.5"));
    table.push_back(graphKind<evalg::ArbitraryFunctionFloat64EvalC>(
        "expr", "y = f(x), f in ordinary notation: 2x^2 - 3, sin(x)/x", {text("f", "", "\"EXPRESSION\"")},
        "ArbitraryFunctionFloat64EvalC", expression, "f='tan(x)/2'"));
    table.push_back(typedKind());
    table.push_back(sampledKind());
    table.push_back(sketchKind());
    return table;
}

std::string joinNames(std::vector<ParamDef> const &params) {
    std::string out;
    for (ParamDef const &p : params) out += (out.empty() ? "" : ", ") + p.name;
    return out;
}

// A text parameter without a default shows what it takes instead.
std::string formatDefault(ParamDef const &p) {
    if (p.type != ParamType::Text) return formatNumber(p.number);
    return p.text.empty() ? p.meaning : p.text;
}

} // namespace

std::vector<KindEntry> const &kinds() {
    static std::vector<KindEntry> const table = makeKinds();
    return table;
}

KindEntry const *findKind(std::string const &name) {
    for (KindEntry const &k : kinds())
        if (k.name == name) return &k;
    return nullptr;
}

std::string kindNames() {
    std::string out;
    for (KindEntry const &k : kinds()) out += (out.empty() ? "" : ", ") + k.name;
    return out;
}

void refuseMisspeltKind(std::vector<std::string> const &words) {
    bool parameters = words.size() > 1;
    for (std::size_t i = 1; i < words.size(); ++i) {
        std::size_t eq = words[i].find('=');
        parameters = parameters && eq != std::string::npos && eq > 0 &&
                     words[i].find_first_not_of("abcdefghijklmnopqrstuvwxyz") == eq;
    }
    if (parameters && words[0].find_first_not_of("abcdefghijklmnopqrstuvwxyz") == std::string::npos)
        throw UsageError("unknown kind '" + words[0] + "'; kinds: " + kindNames());
    // One word of letters that reads as nothing was meant as a kind.
    if (words.size() == 1 && words[0].find_first_not_of("abcdefghijklmnopqrstuvwxyz") == std::string::npos) {
        std::string error;
        if (!rel::TypedRelationC::fromText(words[0], &error))
            throw UsageError("unknown kind '" + words[0] + "', and as a relation: " + error + "; kinds: " + kindNames());
    }
}

namespace {

// Words that name no kind: one typed relation, the words joined again.
RelationRequest parseTyped(std::vector<std::string> const &words, CurveRanges const &ranges) {
    RelationRequest request;
    request.kind = request.drawnKind = findKind("relation");
    std::string text;
    for (std::string const &w : words) text += (text.empty() ? "" : " ") + w;
    request.args.texts = {{"text", text}, {"t", ranges.t}, {"theta", ranges.theta}};
    refuseMisspeltKind(words);
    request.typed = readTyped(request.args);
    request.label = text;
    return request;
}

} // namespace

RelationRequest parseRelation(std::vector<std::string> const &words, CurveRanges const &ranges) {
    if (words.empty()) throw UsageError("a relation needs a KIND or a typed relation; kinds: " + kindNames());
    if (!findKind(words[0])) return parseTyped(words, ranges);
    RelationRequest request;
    request.kind = findKind(words[0]);
    request.drawnKind = request.kind;
    std::string const &kindName = request.kind->name;

    // Split NAME=VALUE words first, so a wrapping kind can see its "of".
    std::vector<std::pair<std::string, std::string>> given;
    std::set<std::string> seen;
    for (std::size_t i = 1; i < words.size(); ++i) {
        std::size_t eq = words[i].find('=');
        if (eq == std::string::npos || eq == 0)
            throw UsageError(kindName + ": '" + words[i] + "' is not of the form NAME=VALUE");
        std::string name = words[i].substr(0, eq);
        if (!seen.insert(name).second) throw UsageError(kindName + ": parameter '" + name + "' is given twice");
        given.emplace_back(name, words[i].substr(eq + 1));
    }

    std::vector<ParamDef> accepted = request.kind->params;
    if (request.kind->wrapsKind) {
        std::string of;
        for (auto const &g : given)
            if (g.first == "of") of = g.second;
        if (of.empty()) of = request.kind->params.front().text;
        KindEntry const *inner = findKind(of);
        if (!inner || inner->wrapsKind || !inner->relation) {
            std::string drawable;
            for (KindEntry const &k : kinds())
                if (!k.wrapsKind && k.relation) drawable += (drawable.empty() ? "" : ", ") + k.name;
            throw UsageError(kindName + (of.empty() ? ": of=KIND is required" : ": of='" + of + "' is not a kind it can draw") +
                             "; of= takes " + drawable);
        }
        request.drawnKind = inner;
        accepted.insert(accepted.end(), inner->params.begin(), inner->params.end());
    }

    for (ParamDef const &p : accepted) {
        if (p.type == ParamType::Text)
            request.args.texts[p.name] = p.text;
        else
            request.args.numbers[p.name] = p.number;
    }
    for (auto const &g : given) {
        ParamDef const *p = nullptr;
        for (ParamDef const &candidate : accepted)
            if (candidate.name == g.first) p = &candidate;
        if (!p)
            throw UsageError(kindName + ": unknown parameter '" + g.first + "'; its parameters are " +
                             joinNames(accepted));
        std::string what = kindName + " " + p->name;
        if (p->type == ParamType::Text) {
            request.args.texts[p->name] = g.second;
        } else if (p->type == ParamType::Integer) {
            request.args.numbers[p->name] =
                double(parseInteger(g.second, what, static_cast<long long>(p->lo), static_cast<long long>(p->hi)));
        } else {
            double v = parseNumber(g.second, what);
            if (v < p->lo || v > p->hi)
                throw UsageError(what + ": " + g.second + " is out of range; it must be from " +
                                 formatNumber(p->lo) + " to " + formatNumber(p->hi));
            std::string refused = ruleViolation(*p, v);
            if (!refused.empty()) throw UsageError(what + "=" + g.second + " is not allowed: " + refused);
            request.args.numbers[p->name] = v;
        }
    }

    request.label = words[0];
    for (std::size_t i = 1; i < words.size(); ++i) request.label += " " + words[i];
    if (request.kind->name == "relation") request.typed = readTyped(request.args);
    return request;
}

std::string allowedValues(ParamDef const &p) {
    std::string const &n = p.name;
    std::string out;
    auto add = [&out](std::string const &text) { out += (out.empty() ? "" : "; ") + text; };
    if (p.rules & Positive) add(n + " must be above 0" + (p.rules & NotOne ? " and not 1" : ""));
    else if (p.rules & NotOne) add(n + " must not be 1");
    if (p.rules & NotZero) add(n + " must not be 0");
    if ((p.rules & FiniteSquare) && (p.rules & NormalSquare))
        add("|" + n + "| must be from about 1.49e-154 to 1.34e154, so that " + n + "^2 is a finite nonzero number");
    else if (p.rules & FiniteSquare)
        add("|" + n + "| must be at most about 1.34e154, so that " + n + "^2 is finite");
    return out;
}

std::string ruleViolation(ParamDef const &p, double v) {
    double square = v * v;
    bool refused = ((p.rules & Positive) && !(v > 0)) || ((p.rules & NotOne) && v == 1) ||
                   ((p.rules & NotZero) && v == 0) || ((p.rules & FiniteSquare) && !std::isfinite(square)) ||
                   ((p.rules & NormalSquare) && square < DBL_MIN);
    return refused ? allowedValues(p) : "";
}

std::vector<ParamValue> parameterValues(RelationRequest const &request) {
    std::vector<ParamDef> params = request.kind->params;
    if (request.drawnKind != request.kind)
        params.insert(params.end(), request.drawnKind->params.begin(), request.drawnKind->params.end());
    std::vector<ParamValue> out;
    for (ParamDef const &p : params) {
        if (p.type == ParamType::Text)
            out.push_back(ParamValue{p.name, ParamValue::Text, 0.0, request.args.text(p.name)});
        else
            out.push_back(ParamValue{p.name, p.type == ParamType::Integer ? ParamValue::Integer : ParamValue::Number,
                                     request.args.number(p.name), ""});
    }
    return out;
}

Curve drawRelation(RelationRequest const &request, Window const &w) {
    Curve c;
    c.label = request.label;
    if (request.typed) {
        // What the relation was read as: its family and the family's numbers.
        c.kind = request.typed->getKind();
        for (auto const &p : request.typed->getParameters())
            c.parameters.push_back(ParamValue{p.name, ParamValue::Number, p.value, ""});
        c.drawing = drawTyped(*request.typed, w);
        return c;
    }
    c.kind = request.kind->name;
    c.parameters = parameterValues(request);
    c.drawing = request.kind->draw(request.args, w);
    return c;
}

std::string kindsHelp() {
    std::ostringstream out;
    out << "Kinds and their parameters (defaults shown):\n";
    for (KindEntry const &k : kinds()) {
        std::string params, meanings;
        for (ParamDef const &p : k.params) {
            params += " " + p.name + "=" + formatDefault(p);
            if (p.type != ParamType::Text && !p.meaning.empty()) meanings += "\n              " + p.name + ": " + p.meaning;
            if (p.rules) meanings += "\n              " + allowedValues(p);
        }
        if (k.wrapsKind) params += " and the parameters of KIND";
        out << "  " << k.name << std::string(k.name.size() < 11 ? 11 - k.name.size() : 1, ' ') << k.curve << "   ("
            << k.evaluator << ")\n             " << params << meanings << "\n";
    }
    return out.str();
}

} // namespace evalgtool

// Typed relations: what each text is read as, that a closed form typed draws
// exactly what the family's evaluator draws from the same numbers, the
// refusals, and the implicit relations checked pixel by pixel against MPFI.
#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "MpfiReference.h"
#include "TestSupport.h"
#include "collab/ds/PixelPointC.h"
#include "collab/math/algexpr/AlgebraicExpressionC.h"
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
#include "collab/rel/TypedRelationC.h"
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
#include "evalg/TypedRelationEvalC.h"

using namespace evalgtest;
namespace rel = qelt::mathapp::rel;
namespace evalg = qelt::mathapp::evalg;
using qelt::mathapp::ds::PixelPointC;
using rel::TypedRelationC;

namespace {

double const pi = 3.14159265358979323846;

PointerTC<TypedRelationC> read(std::string const &text, std::string *error = nullptr) {
    std::string e;
    PointerTC<TypedRelationC> r = TypedRelationC::fromText(text, &e);
    EXPECT_TRUE(r) << text << ": " << e;
    if (error) *error = e;
    return r;
}

std::vector<Pt> drawTyped(TypedRelationC const &r, Window const &w) {
    return points(evalg::TypedRelationEvalC::evaluateGraph(r, makeDomain(w)));
}

struct FormCase {
    char const *text;
    char const *kind;
    std::vector<std::pair<char const *, double>> parameters;
};

} // namespace

// The families in the forms people write, with the numbers as written.
TEST(TypedRelation, ReadsClosedFormsWithTheirNumbers) {
    double const e = std::exp(1.0);
    FormCase const cases[] = {
        {"y = 2x + 3", "line", {{"m", 2}, {"h", 0}, {"k", 3}}},
        {"2x + 3", "line", {{"m", 2}, {"h", 0}, {"k", 3}}},
        {"3 + 2x = y", "line", {{"m", 2}, {"h", 0}, {"k", 3}}},
        {"y = -0.5(x - 1.25) - 7", "line", {{"m", -0.5}, {"h", 1.25}, {"k", -7}}},
        {"y - 3 = 2(x - 1)", "line", {{"m", 2}, {"h", 1}, {"k", 3}}},
        {"y = 5", "line", {{"m", 0}, {"h", 0}, {"k", 5}}},
        {"y = x/3", "line", {{"m", 1.0 / 3}, {"h", 0}, {"k", 0}}},
        {"y = x^2", "quadratic", {{"a", 1}, {"h", 0}, {"k", 0}}},
        {"y = -0.25(x + 1)² - 4", "quadratic", {{"a", -0.25}, {"h", -1}, {"k", -4}}},
        {"y = 2x^2 - 4x + 1", "quadratic", {{"a", 2}, {"h", 1}, {"k", -1}}},
        {"(x - 1)^2 = 8(y + 2)", "vparabola", {{"h", 1}, {"k", -2}, {"a", 2}}},
        {"x = y^2", "parabola", {{"h", 0}, {"k", 0}, {"a", 0.25}}},
        {"y^2 = 4x", "parabola", {{"h", 0}, {"k", 0}, {"a", 1}}},
        {"x = 2(y - 1)^2 + 3", "parabola", {{"h", 3}, {"k", 1}, {"a", 0.125}}},
        {"x^2 + y^2 = 9", "circle", {{"h", 0}, {"k", 0}, {"r", 3}}},
        {"(x - 1)^2 + (y + 2)^2 = 2", "circle", {{"h", 1}, {"k", -2}, {"r", std::sqrt(2.0)}}},
        {"x^2 + y^2 - 16 = 0", "circle", {{"h", 0}, {"k", 0}, {"r", 4}}},
        {"(x - 1)^2/16 + (y + 2)^2/9 = 1", "ellipse", {{"h", 1}, {"k", -2}, {"a", 4}, {"b", 3}}},
        {"4x^2 + 9y^2 = 36", "ellipse", {{"h", 0}, {"k", 0}, {"a", 3}, {"b", 2}}},
        {"x^2/4 - y^2/9 = 1", "hyperbola", {{"h", 0}, {"k", 0}, {"a", 2}, {"b", 3}}},
        {"(y - 1)^2/2.25 - (x + 1)^2/4 = 1", "vhyperbola", {{"h", -1}, {"k", 1}, {"a", 2}, {"b", 1.5}}},
        {"y = x^3", "power", {{"a", 1}, {"h", 0}, {"k", 0}, {"r", 3}}},
        {"y = 2/(x - 1) + 3", "power", {{"a", 2}, {"h", 1}, {"k", 3}, {"r", -1}}},
        {"y = -1/(x + 2)^2", "power", {{"a", -1}, {"h", -2}, {"k", 0}, {"r", -2}}},
        {"y = 2e^(0.5x) - 3", "exp", {{"b", 2}, {"r", 0.5}, {"k", -3}}},
        {"y = exp(-x)", "exp", {{"b", 1}, {"r", -1}, {"k", 0}}},
        {"y = 3·2^x", "exp", {{"b", 3}, {"r", std::log(2.0)}, {"k", 0}}},
        {"y = 3sin(2(x - 1)) + 1", "sin", {{"a", 2}, {"b", 3}, {"h", 1}, {"k", 1}}},
        {"y = cos(2x + 1)", "cos", {{"a", 2}, {"b", 1}, {"h", -0.5}, {"k", 0}}},
        {"sin x", "sin", {{"a", 1}, {"b", 1}, {"h", 0}, {"k", 0}}},
        {"y = 2ln(3(x + 1)) - 1", "log", {{"a", 3}, {"b", 2}, {"h", -1}, {"k", -1}, {"base", e}}},
        {"y = log(x)", "log", {{"a", 1}, {"b", 1}, {"h", 0}, {"k", 0}, {"base", 10}}},
        {"y = log2(x - 4)", "log", {{"a", 1}, {"b", 1}, {"h", 4}, {"k", 0}, {"base", 2}}},
        {"y = log(3, x)", "log", {{"a", 1}, {"b", 1}, {"h", 0}, {"k", 0}, {"base", 3}}},
    };
    for (FormCase const &c : cases) {
        PointerTC<TypedRelationC> r = read(c.text);
        if (!r) continue;
        EXPECT_EQ(r->getForm(), TypedRelationC::CLOSED_FORM) << c.text;
        EXPECT_EQ(r->getKind(), c.kind) << c.text;
        for (auto const &p : c.parameters) EXPECT_EQ(r->getParameter(p.first), p.second) << c.text << " " << p.first;
    }
}

// What is no closed form (or one whose numbers would not draw it) is drawn as
// what it is.
TEST(TypedRelation, RoutesEverythingElseToTheGeneralEvaluators) {
    struct {
        char const *text;
        TypedRelationC::FormE form;
        char const *evaluator;
    } const cases[] = {
        {"y = sin(x)/x", TypedRelationC::FUNCTION, "ArbitraryFunctionFloat64EvalC"},
        {"y = e^(x - 1)", TypedRelationC::FUNCTION, "ArbitraryFunctionFloat64EvalC"},
        {"y = log(1, x)", TypedRelationC::FUNCTION, "ArbitraryFunctionFloat64EvalC"},
        {"y = 2x + 1e308 + 1e308", TypedRelationC::FUNCTION, "ArbitraryFunctionFloat64EvalC"},
        {"y = x^2 + x^2", TypedRelationC::FUNCTION, "ArbitraryFunctionFloat64EvalC"},
        {"x^2 + y^2 + 2x = 0", TypedRelationC::IMPLICIT, "ImplicitRelationEvalC"},
        {"x^2 + y^2 = 0", TypedRelationC::IMPLICIT, "ImplicitRelationEvalC"},
        {"x^2 + y^2 = -1", TypedRelationC::IMPLICIT, "ImplicitRelationEvalC"},
        {"x^2/1e-320 + y^2 = 1", TypedRelationC::IMPLICIT, "ImplicitRelationEvalC"},
        {"x = 3", TypedRelationC::IMPLICIT, "ImplicitRelationEvalC"},
        {"y = x^2 + y", TypedRelationC::IMPLICIT, "ImplicitRelationEvalC"},
        {"y < sin(x)", TypedRelationC::IMPLICIT, "ImplicitRelationEvalC"},
        {"0 < y < x and x <= 3 or y >= 4", TypedRelationC::IMPLICIT, "ImplicitRelationEvalC"},
        {"r = 1 + cos(θ)", TypedRelationC::POLAR, "ParametricCurveEvalC"},
        {"(cos(3t), sin(2t))", TypedRelationC::PARAMETRIC, "ParametricCurveEvalC"},
    };
    for (auto const &c : cases) {
        PointerTC<TypedRelationC> r = read(c.text);
        if (!r) continue;
        EXPECT_EQ(r->getForm(), c.form) << c.text;
        EXPECT_EQ(r->getEvaluatorName(), c.evaluator) << c.text;
    }
}

// Typed or built from the same numbers, a closed form gives the same points
// and markers.
TEST(TypedRelation, TypedAndNamedDrawTheSamePixels) {
    using Make = std::function<std::vector<Pt>(Window const &)>;
    auto named = [](auto evaluator, rel::RelationC *relation) {
        PointerTC<rel::RelationC> held(relation);
        return Make([evaluator, held](Window const &w) mutable { return draw(evaluator, held, w); });
    };
    std::vector<std::pair<char const *, Make>> const cases = {
        {"y = 0.3(x - 1.7) + 0.1", named(evalg::LinearFunction1EvalC(), new rel::LinearFunction1C(0.3, 1.7, 0.1))},
        {"y = 0.25(x - 1)^2 - 4", named(evalg::QuadraticFunctionEvalC(), new rel::QuadraticFunctionC(0.25, 1, -4))},
        {"(x + 1)^2 = 2(y + 3)", named(evalg::ParabolaVertEvalC(), new rel::ParabolaVertC(-1, -3, 0.5))},
        {"(y - 0.5)^2 = 4(x + 4)", named(evalg::ParabolaEvalC(), new rel::ParabolaC(-4, 0.5, 1))},
        {"(x + 1)^2 + (y - 0.5)^2 = 12.25", named(evalg::CircleEvalC(), new rel::CircleC(-1, 0.5, 3.5))},
        {"(x - 1)^2/36 + y^2/9 = 1", named(evalg::EllipseEvalC(), new rel::EllipseC(1, 0, 6, 3))},
        {"x^2/4 - y^2/2.25 = 1", named(evalg::HyperbolaEvalC(), new rel::HyperbolaC(0, 0, 2, 1.5))},
        {"(y + 0.5)^2/2.25 - (x - 1)^2/4 = 1", named(evalg::HyperbolaVertEvalC(), new rel::HyperbolaVertC(1, -0.5, 2, 1.5))},
        {"y = 0.5/(x - 1) - 1",
         named(evalg::PowerFunctionEvalC(), new rel::PowerFunctionC(0.5, 1, -1, -1, rel::PowerFunctionDomainRestrictionE(0)))},
        {"y = 0.5e^(0.5x) - 3", named(evalg::ExponentialFunctionEvalC(), new rel::ExponentialFunctionC(0.5, 0.5, -3))},
        {"y = 2log(2, x + 7) - 3", named(evalg::LogarithmicFunctionEvalC(), new rel::LogarithmicFunctionC(1, 2, -7, -3, 2))},
        {"y = 3sin(1.5(x - 0.5))", named(evalg::SinusoidalFunctionEvalC(), new rel::SinusoidalFunctionC(1.5, 3, 0.5, 0, true))},
        {"y = 4cos(0.5x) - 0.5", named(evalg::SinusoidalFunctionEvalC(), new rel::SinusoidalFunctionC(0.5, 4, 0, -0.5, false))},
    };
    Window const windows[] = {defaultWindow(), Window{-3.3, 7.1, -6.2, 2.9, 317, 211},
                              Window{-20, 20, -12, 12, 1920, 1080}};
    for (auto const &c : cases) {
        PointerTC<TypedRelationC> r = read(c.first);
        if (!r) continue;
        for (Window const &w : windows) {
            std::vector<Pt> typed = drawTyped(*r, w), direct = c.second(w);
            EXPECT_FALSE(direct.empty()) << c.first;
            EXPECT_EQ(typed, direct) << c.first << " on " << w.m << "x" << w.n;
        }
    }
}

// Errors say what was expected, counting characters of the whole text.
TEST(TypedRelation, RefusesWithWhatWasExpectedAndWhere) {
    struct {
        char const *text;
        char const *message;
    } const cases[] = {
        {"  ", "expected a relation"},
        {"x^2 + y^2", "needs a comparison"},
        {"y = ", "expected an expression at character 4"},
        {"y = 2x +", "at character 9"},
        {"θ² + y = (x", "at character 12"},
        {"x^2 + y^2 = 9 and x", "expected a comparison"},
        {"y > 0 and", "expected an expression"},
        {"r = x", "θ alone"},
        {"(cos(t), y)", "t alone"},
        {"x < t", "does not use t"},
    };
    for (auto const &c : cases) {
        std::string error;
        PointerTC<TypedRelationC> r = TypedRelationC::fromText(c.text, &error);
        EXPECT_FALSE(r) << c.text;
        EXPECT_NE(error.find(c.message), std::string::npos) << c.text << ": " << error;
    }
    std::string many = "x > 0";
    for (int i = 0; i < 70; ++i) many += " and x > " + std::to_string(i);
    std::string error;
    EXPECT_FALSE(TypedRelationC::fromText(many, &error));
    EXPECT_NE(error.find("at most"), std::string::npos) << error;
}

// Curves get whole turns where they are periodic, or the range given.
TEST(TypedRelation, CurveRanges) {
    struct {
        char const *text;
        double min, max;
    } const cases[] = {
        {"r = 1 + cos(θ)", 0, 2 * pi},
        {"r = θ", 0, 2 * pi},
        {"r = cos(θ/2)", 0, 4 * pi},
        {"r = sin(5θ/3)", 0, 6 * pi},
        {"r = sin(0.4θ) + cos(0.5θ)", 0, 20 * pi},
        {"(cos(3t), sin(2t))", 0, 2 * pi},
        {"(t, t^2)", -10, 10},
    };
    for (auto const &c : cases) {
        PointerTC<TypedRelationC> r = read(c.text);
        if (!r) continue;
        std::vector<rel::ClosedFormRecogniserC::ParameterS> const &p = r->getParameters();
        ASSERT_EQ(p.size(), 2u) << c.text;
        EXPECT_NEAR(p[0].value, c.min, 1e-12) << c.text;
        EXPECT_NEAR(p[1].value, c.max, 1e-12) << c.text;
    }
    TypedRelationC::OptionsS given;
    given.theta = TypedRelationC::RangeS{true, -1, 1};
    PointerTC<TypedRelationC> r = TypedRelationC::fromText("r = 2", nullptr, given);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->getParameter("θ max"), 1.0);
    given.theta = TypedRelationC::RangeS{true, 1, NAN};
    EXPECT_FALSE(TypedRelationC::fromText("r = 2", nullptr, given));

    // Every pixel of the polar circle r = 2 lies within a pixel of it.
    PointerTC<TypedRelationC> circle = read("r = 2");
    Window const w = defaultWindow();
    Grid g(w);
    std::vector<Pt> pts = drawTyped(*circle, w);
    EXPECT_GT(pts.size(), 40u);
    for (Pt const &p : pts) {
        double x = g.columnEdge(p.x) + g.xStep / 2, y = g.rowEdge(int(w.n) - 1 - p.y) + g.yStep / 2;
        EXPECT_NEAR(std::hypot(x, y), 2.0, std::hypot(g.xStep, g.yStep)) << p;
    }
}

namespace {

// A comparison h op 0 of the reference, and how they combine.
struct Comparison {
    char const *h; // the left side minus the right, in x and y
    char op;       // '=', '<', 'l' (<=), '>', 'g' (>=)
};
struct ImplicitCase {
    char const *text;
    std::vector<Comparison> parts;
    bool any; // OR of the parts; otherwise AND
};

// What a box's enclosure [lo, hi] of h proves about h op 0.
bool provenTrue(char op, double lo, double hi) {
    return op == '<' ? hi < 0 : op == 'l' ? hi <= 0 : op == '>' ? lo > 0 : op == 'g' && lo >= 0;
}
bool provenFalse(char op, double lo, double hi) {
    return op == '=' ? lo > 0 || hi < 0 : op == '<' ? lo >= 0 : op == 'l' ? lo > 0 : op == '>' ? hi <= 0 : hi < 0;
}

} // namespace

// Seeded random windows: a pixel where fine samples prove the relation holds
// is drawn, and a pixel whose box MPFI proves outside it is not.
TEST(TypedRelation, ImplicitAgreesWithMpfiPixelByPixel) {
    std::vector<ImplicitCase> const cases = {
        {"x^3 + y^3 = 3xy", {{"x^3 + y^3 - 3x y", '='}}, false},
        {"sin(x) + cos(y) = 0.5", {{"sin(x) + cos(y) - 0.5", '='}}, false},
        {"|x| + |y| = 3", {{"abs(x) + abs(y) - 3", '='}}, false},
        {"y^2 = x^3 - x", {{"y^2 - x^3 + x", '='}}, false},
        {"y < sin(x)", {{"y - sin(x)", '<'}}, false},
        {"x^2 + y^2 <= 9 and y > x", {{"x^2 + y^2 - 9", 'l'}, {"y - x", '>'}}, false},
        {"y >= x^2 or y < -2", {{"y - x^2", 'g'}, {"y + 2", '<'}}, true},
        {"y = x^2 or x = y^2", {{"y - x^2", '='}, {"x - y^2", '='}}, true},
        {"-1 < x y < 1", {{"-1 - x y", '<'}, {"x y - 1", '<'}}, false},
        // Empty: every pixel where both parts are open must end excluded or undecided.
        {"y > x + 0.05 and y < x", {{"y - x - 0.05", '>'}, {"y - x", '<'}}, false},
    };
    Rng rng(23);
    int const samples = 6;
    for (ImplicitCase const &c : cases) {
        PointerTC<TypedRelationC> r = read(c.text);
        if (!r) continue;
        ASSERT_EQ(r->getForm(), TypedRelationC::IMPLICIT) << c.text;
        std::vector<PointerTC<qelt::math::algexpr::AlgebraicExpressionC>> trees;
        std::vector<MpfiReference> refs;
        for (Comparison const &p : c.parts) {
            trees.push_back(qelt::math::algexpr::AlgebraicExpressionC::fromInfixString(p.h));
            ASSERT_TRUE(trees.back()) << p.h;
            refs.emplace_back(trees.back()->getNode());
        }
        std::size_t const parts = refs.size();
        // Excluded: every part (OR) or some part (AND) proven false over the box.
        auto excludedBox = [&](double bx0, double bx1, double by0, double by1) {
            std::size_t falseParts = 0;
            for (std::size_t k = 0; k < parts; ++k) {
                double lo, hi;
                falseParts += refs[k].enclose(bx0, bx1, by0, by1, lo, hi) == MpfiReference::Defined::NOWHERE ||
                              provenFalse(c.parts[k].op, lo, hi);
            }
            return c.any ? falseParts == parts : falseParts > 0;
        };
        for (int round = 0; round < 4; ++round) {
            double cx = rng.uniform(-2, 2), cy = rng.uniform(-2, 2), half = rng.uniform(1.5, 6);
            Window w{cx - half, cx + half, cy - half * 0.7, cy + half * 0.7, (unsigned short)(41 + rng.below(60)),
                     (unsigned short)(31 + rng.below(40))};
            std::map<std::pair<int, int>, bool> drawn; // pixel -> undecided
            std::vector<Pt> pts = drawTyped(*r, w);
            for (size_t i = 0; i < pts.size(); ++i) {
                Pt a = pts[i], b = a;
                if (!(a.m & PixelPointC::LAST_VISIBLE) && i + 1 < pts.size()) b = pts[++i];
                for (int x = a.x; x <= b.x; ++x) drawn[{x, a.y}] = (a.m & PixelPointC::UNDECIDED) != 0;
            }
            Grid g(w);
            for (int row = 0; row < int(w.n); ++row)
                for (int col = 0; col < int(w.m); ++col) {
                    double x0 = g.columnEdge(col), x1 = g.columnEdge(col + 1);
                    double y0 = g.rowEdge(int(w.n) - 1 - row), y1 = g.rowEdge(int(w.n) - row);
                    bool isDrawn = drawn.count({col, row}) != 0, excluded = excludedBox(x0, x1, y0, y1);
                    EXPECT_FALSE(excluded && isDrawn) << c.text << " drew excluded pixel " << col << "," << row;
                    if (isDrawn && !excluded && !drawn[{col, row}]) {
                        // A proven pixel: its box is not empty of solutions piece by piece either.
                        int const n = 8;
                        bool allExcluded = true;
                        for (int i = 0; i < n * n && allExcluded; ++i)
                            allExcluded = excludedBox(x0 + (x1 - x0) * (i / n) / n, x0 + (x1 - x0) * (i / n + 1) / n,
                                                      y0 + (y1 - y0) * (i % n) / n, y0 + (y1 - y0) * (i % n + 1) / n);
                        EXPECT_FALSE(allExcluded) << c.text << " proved empty pixel " << col << "," << row;
                    }
                    if (excluded || isDrawn) continue;
                    // Held: a sample point where every part (AND) or some part
                    // (OR) is proven true, or an equation's proven sign change
                    // between neighbouring samples of a continuous function.
                    bool held = false;
                    for (int i = 0; i <= samples && !held; ++i)
                        for (int j = 0; j <= samples && !held; ++j) {
                            double x = x0 + (x1 - x0) * i / samples, y = y0 + (y1 - y0) * j / samples;
                            std::size_t trueParts = 0;
                            for (std::size_t k = 0; k < parts; ++k) {
                                double lo, hi, x2 = x0 + (x1 - x0) * (i + 1) / samples, lo2, hi2;
                                if (refs[k].enclose(x, x, y, y, lo, hi) != MpfiReference::Defined::EVERYWHERE) continue;
                                if (c.parts[k].op != '=' || i == samples)
                                    trueParts += provenTrue(c.parts[k].op, lo, hi);
                                else
                                    trueParts += refs[k].enclose(x2, x2, y, y, lo2, hi2) == MpfiReference::Defined::EVERYWHERE &&
                                                 ((hi < 0 && lo2 > 0) || (lo > 0 && hi2 < 0));
                            }
                            held = c.any ? trueParts > 0 : trueParts == parts;
                        }
                    EXPECT_FALSE(held) << c.text << " left out pixel " << col << "," << row << " of " << w.m << "x" << w.n;
                }
        }
    }
}

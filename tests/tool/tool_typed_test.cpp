// evalg plot "RELATION": a closed form typed is the named kind with the same
// numbers, to the point; everything else says which evaluator drew it.
#include <gtest/gtest.h>

#include "ToolRun.h"

namespace {

using namespace tooltest;

json plotJson(Folder const &f, std::vector<std::string> const &relation) {
    Result r = f.evalg(with(with({"plot"}, relation), {"--format", "json"}));
    EXPECT_EQ(r.status, 0) << r.err;
    return r.status == 0 ? json::parse(r.out) : json();
}

} // namespace

// Pixel for pixel the library's typed_relation_test compares the families on
// several windows; here the tool's reading of the words and its report.
TEST(TypedRelations, AreTheNamedKindWithTheSameNumbers) {
    struct {
        std::vector<std::string> typed, named;
    } const cases[] = {
        {{"x^2 + y^2 = 9"}, {"circle", "r=3"}},
        {{"y", "=", "0.25(x", "-", "1)^2", "-", "4"}, {"quadratic", "a=0.25", "h=1", "k=-4"}},
        {{"y = 2log(2, x + 7) - 3"}, {"log", "b=2", "h=-7", "k=-3", "base=2"}},
        {{"relation", "text=y = 0.5e^(0.5x) - 3"}, {"exp", "b=0.5", "r=0.5", "k=-3"}},
    };
    Folder f;
    for (auto const &c : cases) {
        json typed = plotJson(f, c.typed)["relations"][0], named = plotJson(f, c.named)["relations"][0];
        EXPECT_EQ(typed["kind"], named["kind"]) << c.named[0];
        EXPECT_EQ(typed["evaluator"], named["evaluator"]) << c.named[0];
        EXPECT_EQ(typed["points"], named["points"]) << c.named[0];
        for (auto const &p : typed["parameters"].items()) EXPECT_EQ(p.value(), named["parameters"][p.key()]) << p.key();
    }
}

TEST(TypedRelations, SayWhatDrewThem) {
    struct {
        std::vector<std::string> words;
        char const *kind, *evaluator;
    } const cases[] = {
        {{"sin(x)/x"}, "expr", "ArbitraryFunctionFloat64EvalC"},
        {{"y < sin(x) and x > 0"}, "implicit", "ImplicitRelationEvalC"},
        {{"r = 1 + cos(θ)"}, "polar", "ParametricCurveEvalC"},
        {{"(cos(3t), sin(2t))"}, "parametric", "ParametricCurveEvalC"},
    };
    Folder f;
    for (auto const &c : cases) {
        json rel = plotJson(f, c.words)["relations"][0];
        EXPECT_EQ(rel["kind"], c.kind) << c.words[0];
        EXPECT_EQ(rel["evaluator"], c.evaluator) << c.words[0];
        EXPECT_EQ(rel["label"], c.words[0]);
    }
    json spiral = plotJson(f, {"r = θ", "--theta", "0,12.5"})["relations"][0];
    EXPECT_EQ(spiral["parameters"]["θ max"], 12.5);
}

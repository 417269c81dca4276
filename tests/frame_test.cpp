// The evaluation frame: window set-up and rounding, span emission, markers,
// the driver and its reference counting.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ProbeEvalC.h"
#include "TestSupport.h"
#include "collab/ds/PixelPointC.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/LinearFunction1C.h"

using namespace evalgtest;
using qelt::mathapp::ds::PixelPointC;
using qelt::mathapp::esb::CartesianRelationServiceC;

namespace {

double const NaN = std::numeric_limits<double>::quiet_NaN();
double const Inf = std::numeric_limits<double>::infinity();

// 5x5 over [0, 4] x [0, 4]: steps 1, edges -0.5 and 4.5.
Window const five{0, 4, 0, 4, 5, 5};

struct Probe {
    ProbeEvalC eval;
    PointerTC<GraphDataSetWinC> set{new GraphDataSetWinC(10, 5, makeDomain(five))};
    explicit Probe(Window const &w = five) { EXPECT_TRUE(eval.setDomain(makeDomain(w))); }
};

// Steps and outer edges; one column gives an infinite step, not an error.
TEST(Domain, StepsAndEdges) {
    struct {
        Window w;
        double xStep, leftEdge, rightEdge, yStep, bottomEdge, topEdge;
    } const cases[] = {{five, 1, -0.5, 4.5, 1, -0.5, 4.5},
                       {defaultWindow(), 0.1, -8.05, 8.05, 0.1, -5.05, 5.05},
                       {{0, 4, 0, 4, 1, 5}, Inf, -Inf, Inf, 1, -0.5, 4.5}};
    for (auto const &c : cases) {
        Probe p(c.w);
        EXPECT_DOUBLE_EQ(p.eval.xStep, c.xStep);
        EXPECT_DOUBLE_EQ(p.eval.xHalfStep, c.xStep / 2);
        EXPECT_DOUBLE_EQ(p.eval.leftEdge, c.leftEdge);
        EXPECT_DOUBLE_EQ(p.eval.rightEdge, c.rightEdge);
        EXPECT_DOUBLE_EQ(p.eval.yStep, c.yStep);
        EXPECT_DOUBLE_EQ(p.eval.bottomEdge, c.bottomEdge);
        EXPECT_DOUBLE_EQ(p.eval.topEdge, c.topEdge);
    }
}

// A boundary rounds left to itself and right a whole step up; NaN passes
// through every rounding. The vertical boundary roundings follow the same
// rules as the horizontal.
TEST(DomainRounding, FiveByFive) {
    struct {
        double v, left, right, hcentre, vcentre;
    } const cases[] = {{1.7, 1.5, 2.5, 2.0, 2.0},     {1.5, 1.5, 2.5, 2.0, 2.0},     {-0.5, -0.5, 0.5, 0.0, 0.0},
                       {-3.2, -3.5, -2.5, -3.0, -3.0}, {4.49, 3.5, 4.5, 4.0, 4.0}, {NaN, NaN, NaN, NaN, NaN}};
    auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    Probe p;
    for (auto const &r : cases) {
        EXPECT_PRED2(same, p.eval.round_to_left(r.v), r.left) << r.v;
        EXPECT_PRED2(same, p.eval.round_to_right(r.v), r.right) << r.v;
        EXPECT_PRED2(same, p.eval.round_to_hcentre(r.v), r.hcentre) << r.v;
        EXPECT_PRED2(same, p.eval.round_to_vcentre(r.v), r.vcentre) << r.v;
        EXPECT_PRED2(same, p.eval.round_to_bottom(r.v), r.left) << r.v;
        EXPECT_PRED2(same, p.eval.round_to_top(r.v), r.right) << r.v;
    }
}

TEST(Domain, RejectedWindowsLeaveTheFieldsAndGiveTheReferenceBack) {
    Probe p;
    Window const bad[] = {{1, 1, 0, 4, 5, 5},  {0, 4, 0, NaN, 5, 5}, {0, Inf, 0, 4, 5, 5},
                          {0, 4, 0, 4, 0, 5},  {0, 4, 0, 4, 5, 32768}, {4, 0, 0, 4, 5, 5}};
    for (Window const &w : bad) {
        PointerTC<GraphicalDomainC> d = makeDomain(w);
        EXPECT_FALSE(p.eval.setDomain(d));
        EXPECT_EQ(d->getReferenceCount(), 1u);
        EXPECT_EQ(p.eval.xStep, 1.0);
    }
    EXPECT_FALSE(p.eval.setDomain(PointerTC<GraphicalDomainC>()));
    EXPECT_TRUE(makeDomain(Window{0, 1, 0, 1, 32767, 1})->isValid());
}

// Each row: a call on the 5x5 window and the points it must emit, in order.
enum Call { APPEND, PREPEND, APPEND_SWAPPED, PREPEND_SWAPPED, ONE_POINT, CONSTANT };
struct Emission {
    char const *what;
    Call call;
    double at, v1, v2;
    std::vector<XY> expected;
};

TEST(Emit, FiveByFive) {
    Emission const cases[] = {
        {"rising span: start row then end row", APPEND, 2.0, 0.2, 3.1, {{2, 4}, {2, 1}}},
        {"prepended span lands end first", PREPEND, 2.0, 0.2, 3.1, {{2, 1}, {2, 4}}},
        {"clamped to the outermost row centres", APPEND, 1.0, -3, 9, {{1, 4}, {1, 0}}},
        {"falling span clamped from the top", APPEND, 3.0, 9, 2.2, {{3, 0}, {3, 2}}},
        {"wholly below", APPEND, 1.0, -3, -1, {}},
        {"wholly above", APPEND, 1.0, 5, 6, {}},
        {"NaN end with the start below is dropped", APPEND, 1.0, -3, NaN, {}},
        {"one row, one point", APPEND, 0.0, 2.1, 2.4, {{0, 2}}},
        {"single point", ONE_POINT, 3.0, 2.0, 0, {{3, 2}}},
        {"swapped span clamps to the edges: column 5 is one past the grid", APPEND_SWAPPED, 2.0, -9, 9, {{0, 2}, {5, 2}}},
        {"swapped falling span", APPEND_SWAPPED, 1.0, 3.2, 0.9, {{3, 3}, {1, 3}}},
        {"swapped prepend", PREPEND_SWAPPED, 1.0, 0.9, 3.2, {{3, 3}, {1, 3}}},
        {"swapped span wholly right", APPEND_SWAPPED, 1.0, 5, 7, {}},
        {"constant line: one point per column", CONSTANT, 1.0, 0, 0, {{0, 3}, {1, 3}, {2, 3}, {3, 3}, {4, 3}}},
        {"constant exactly on the top edge: row -1 kept to 16 bits", CONSTANT, 4.5, 0, 0,
         {{0, 65535}, {1, 65535}, {2, 65535}, {3, 65535}, {4, 65535}}},
        {"constant on the bottom edge", CONSTANT, -0.5, 0, 0, {{0, 4}, {1, 4}, {2, 4}, {3, 4}, {4, 4}}},
        {"constant above the window", CONSTANT, 4.6, 0, 0, {}},
        {"constant NaN", CONSTANT, NaN, 0, 0, {}},
    };
    for (Emission const &c : cases) {
        SCOPED_TRACE(c.what);
        Probe p;
        switch (c.call) {
        case APPEND: p.eval.appendPixelPoints(c.at, c.v1, c.v2, p.set); break;
        case PREPEND: p.eval.prependPixelPoints(c.at, c.v1, c.v2, p.set); break;
        case APPEND_SWAPPED: p.eval.appendPixelPointsXYSwapped(c.at, c.v1, c.v2, p.set); break;
        case PREPEND_SWAPPED: p.eval.prependPixelPointsXYSwapped(c.at, c.v1, c.v2, p.set); break;
        case ONE_POINT: p.eval.appendPixelPoint(c.at, c.v1, p.set); break;
        case CONSTANT: p.eval.calculateConstant(c.at, p.set); break;
        }
        std::vector<Pt> pts = points(p.set);
        EXPECT_EQ(xys(pts), c.expected);
        for (Pt const &q : pts) EXPECT_EQ(q.m, 0u);
    }
}

TEST(Driver, InvalidWindowOrOtherRelationGivesAnEmptySet) {
    ProbeEvalC eval;
    CartesianRelationServiceC line(new qelt::mathapp::rel::LinearFunction1C(1, 0, 0));
    CartesianRelationServiceC circle(new qelt::mathapp::rel::CircleC(0, 0, 1));

    PointerTC<GraphDataSetWinC> s = eval.evaluateGraph(line, makeDomain(Window{0, 0, 0, 1, 5, 5}));
    ASSERT_TRUE(s);
    EXPECT_EQ(s->getCount(), 0u);
    s = eval.evaluateGraph(line, PointerTC<GraphicalDomainC>());
    ASSERT_TRUE(s);
    s = eval.evaluateGraph(circle, makeDomain(five));
    ASSERT_TRUE(s);
    EXPECT_EQ(eval.calculations, 0);

    s = eval.evaluateGraph(line, makeDomain(five));
    EXPECT_EQ(eval.calculations, 1);
    EXPECT_EQ(static_cast<void *>(eval.lastRelation), line.lookUpBase(qelt::mathapp::rel::RelationC::getCastableId()));
}

TEST(Driver, ReferencesAreGivenBack) {
    ProbeEvalC eval;
    CartesianRelationServiceC line(new qelt::mathapp::rel::LinearFunction1C(1, 0, 0));
    PointerTC<GraphicalDomainC> domain = makeDomain(five);
    PointerTC<GraphDataSetWinC> s = eval.evaluateGraph(line, domain);
    // The caller holds the only reference to the set; the set holds one to its
    // domain, and nothing else kept any.
    EXPECT_EQ(s->getReferenceCount(), 1u);
    EXPECT_EQ(domain->getReferenceCount(), 2u);
    EXPECT_GE(eval.setCountDuringCalculation, 2u);
    s.reset();
    EXPECT_EQ(domain->getReferenceCount(), 1u);
    EXPECT_TRUE(eval.setDomain(domain));
    EXPECT_EQ(domain->getReferenceCount(), 1u);
}

TEST(Driver, CopiesCarryTheWholeStateIncludingTheCount) {
    ProbeEvalC eval;
    eval.reference();
    eval.setDomain(makeDomain(five));
    ProbeEvalC copy(eval);
    EXPECT_EQ(copy.getReferenceCount(), 1u);
    EXPECT_EQ(copy.rightEdge, 4.5);
    ProbeEvalC assigned;
    assigned = eval;
    EXPECT_EQ(assigned.getReferenceCount(), 1u);
    EXPECT_EQ(assigned.topEdge, 4.5);
}

} // namespace

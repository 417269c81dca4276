#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "collab/rel/CircleC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "evalg/CartesianRelationTableEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using qelt::mathapp::evalg::CartesianRelationTableEvalC;
using qelt::mathapp::rel::RelationC;
using Row = std::array<double, 3>;

namespace {

// Three values at every x: only the first two reach the table.
struct ThreeValues : qelt::mathapp::rel::RelationC {
    void getYValuesAt(double x, std::vector<double> &values) const override {
        values.insert(values.end(), {x + 1, x + 2, x + 3});
    }
};

bool same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

} // namespace

TEST(TableEval, OneRowPerXWithNaNForMissingValues) {
    double const N = std::nan(""), inf = std::numeric_limits<double>::infinity();
    struct Case {
        char const *name;
        RelationC *relation;
        std::vector<double> xs;
        std::vector<Row> rows;
    } const cases[] = {
        {"y = x^2", new qelt::mathapp::rel::QuadraticFunctionC(1, 0, 0), {-1, 0, 2}, {{-1, 1, N}, {0, 0, N}, {2, 4, N}}},
        {"unit circle, k + s first", new qelt::mathapp::rel::CircleC(0, 0, 1), {0, 5}, {{0, 1, -1}, {5, N, N}}},
        {"no xs: empty table", new qelt::mathapp::rel::CircleC(0, 0, 1), {}, {}},
        {"NaN and infinite x: NaN rows", new qelt::mathapp::rel::QuadraticFunctionC(1, 0, 0), {N, inf},
         {{N, N, N}, {inf, N, N}}},
        {"three values: first two kept", new ThreeValues, {1, 0}, {{1, 2, 3}, {0, 1, 2}}},
    };
    for (Case const &c : cases) {
        qelt::mathapp::esb::CartesianRelationServiceC service{PointerTC<RelationC>(c.relation)};
        PointerTC<qelt::mathapp::ds::TableDataSet2C> table = CartesianRelationTableEvalC().evaluateTable2(service, c.xs);
        ASSERT_TRUE(table) << c.name;
        EXPECT_EQ(table->getReferenceCount(), 1u) << c.name;
        ASSERT_EQ(table->getPoints().size(), c.rows.size()) << c.name;
        for (size_t i = 0; i < c.rows.size(); ++i) {
            auto const *p = table->getPoints()[i];
            EXPECT_TRUE(same(p->getX(), c.rows[i][0]) && same(p->getY1(), c.rows[i][1]) &&
                        same(p->getY2(), c.rows[i][2]))
                << c.name << " row " << i << ": " << p->getX() << " " << p->getY1() << " " << p->getY2();
        }
    }
}

TEST(TableEval, NaNAndZeroConstants) {
    EXPECT_NE(CartesianRelationTableEvalC::nan_value, CartesianRelationTableEvalC::nan_value);
    EXPECT_EQ(CartesianRelationTableEvalC::zero_value, 0.0);
    EXPECT_FALSE(std::signbit(CartesianRelationTableEvalC::zero_value));
}

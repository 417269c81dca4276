#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "collab/rel/CircleC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "evalg/CartesianRelationTableEvalC.h"
#include "tests/support/TestSupport.h"

using namespace evalgtest;
using qelt::mathapp::evalg::CartesianRelationTableEvalC;
using qelt::mathapp::rel::RelationC;

namespace {

// Three values at every x: only the first two reach the table.
struct ThreeValues : RelationC {
    void getYValuesAt(double x, std::vector<double> &values) const override {
        values.insert(values.end(), {x, 2 * x, 3 * x});
    }
};

} // namespace

TEST(TableEval, OneRowPerXWithNaNWhereAValueIsMissing) {
    struct Case { RelationC *relation; std::vector<double> xs; char const *rows; };
    Case const cases[] = {
        {new qelt::mathapp::rel::QuadraticFunctionC(1, 0, 0), {-1, 0, 2}, "(-1 1 nan) (0 0 nan) (2 4 nan) "},
        {new qelt::mathapp::rel::CircleC(0, 0, 1), {0, 5}, "(0 1 -1) (5 nan nan) "}, // k + s first
        {new qelt::mathapp::rel::CircleC(0, 0, 1), {}, ""},
        {new qelt::mathapp::rel::QuadraticFunctionC(1, 0, 0), {NAN, -HUGE_VAL}, "(nan nan nan) (-inf nan nan) "},
        {new ThreeValues, {1, -2}, "(1 1 2) (-2 -2 -4) "},
    };
    for (Case const &c : cases) {
        qelt::mathapp::esb::CartesianRelationServiceC service{PointerTC<RelationC>(c.relation)};
        PointerTC<qelt::mathapp::ds::TableDataSet2C> table =
            CartesianRelationTableEvalC().evaluateTable2(service, c.xs);
        ASSERT_TRUE(table);
        EXPECT_EQ(table->getReferenceCount(), 1u); // the caller's is the only reference
        std::string rows;
        char row[100];
        auto g = [](double v) { return std::isnan(v) ? std::fabs(v) : v; }; // "nan" whatever its sign bit
        for (auto const *p : table->getPoints()) {
            std::snprintf(row, sizeof row, "(%g %g %g) ", g(p->getX()), g(p->getY1()), g(p->getY2()));
            rows += row;
        }
        EXPECT_EQ(rows, c.rows);
    }
}

TEST(TableEval, NaNAndZeroConstants) {
    EXPECT_NE(CartesianRelationTableEvalC::nan_value, CartesianRelationTableEvalC::nan_value);
    // The processor's own 0/0, bit for bit, not a NaN constant of a library.
    volatile double zero = 0.0;
    double quotient = zero / zero;
    EXPECT_EQ(std::memcmp(&quotient, &CartesianRelationTableEvalC::nan_value, sizeof quotient), 0);
    EXPECT_EQ(CartesianRelationTableEvalC::zero_value, 0.0);
    EXPECT_FALSE(std::signbit(CartesianRelationTableEvalC::zero_value));
}

// Collaborators: the integer conversions, reference counting, relations.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "TestSupport.h"
#include "collab/math/Float64UtilC.h"
#include "collab/oss/IntegerConversionC.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/ConicRelationC.h"
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

using namespace evalgtest;
using namespace qelt::mathapp::rel;
using qelt::oss::IntegerConversionC;

namespace {

double const NaN = std::numeric_limits<double>::quiet_NaN();
double const Inf = std::numeric_limits<double>::infinity();

TEST(Convert, TruncatesAndNarrowsWithoutUndefinedBehaviour) {
    struct {
        double v;
        uint32_t u32;
        int32_t i32;
        uint16_t u16;
        int16_t i16;
    } const cases[] = {{-1.0, 0xFFFFFFFFu, -1, 65535, -1}, {65535.9, 65535, 65535, 65535, -1},
                       {65536.0, 65536, 65536, 0, 0}, {4294967296.0, 0, 0, 0, 0},
                       {-2147483648.0, 0x80000000u, -2147483647 - 1, 0, 0}, {-0.9, 0, 0, 0, 0}, {1e30, 0, 0, 0, 0},
                       {NaN, 0, 0, 0, 0}, {Inf, 0, 0, 0, 0}, {-Inf, 0, 0, 0, 0},
                       {9223372036854774784.0, 0xFFFFFC00u, -1024, 0xFC00, -1024}};
    for (auto const &c : cases) {
        EXPECT_EQ(IntegerConversionC::toUInt32(c.v), c.u32) << c.v;
        EXPECT_EQ(IntegerConversionC::toInt32(c.v), c.i32) << c.v;
        EXPECT_EQ(IntegerConversionC::toUInt16(c.v), c.u16) << c.v;
        EXPECT_EQ(IntegerConversionC::toInt16(c.v), c.i16) << c.v;
    }
}

TEST(Convert, InlineFloorAgreesWithTheLibraryFloor) {
    Rng rng(3);
    std::vector<double> vs = {-0.0, -0.5, -1.0, -1.5, 0.5, 65535.5, -65536.5, 9223372036854774784.0,
                              -9223372036854774784.0, 9223372036854775808.0, 4503599627370495.5,
                              -4503599627370495.5, 1e-320, -1e-320, NaN, Inf, -Inf};
    for (int i = 0; i < 100000; ++i) vs.push_back(rng.wild(i % 2 ? 1e6 : 1e20));
    for (double v : vs) {
        EXPECT_EQ(IntegerConversionC::floorToInt64(v), IntegerConversionC::toInt64(std::floor(v))) << v;
        EXPECT_EQ(IntegerConversionC::floorToInt16(v), IntegerConversionC::toInt16(std::floor(v))) << v;
    }
}

TEST(Convert, ReciprocalQuotientFloorsLikeTheDivision) {
    // Steps of real windows, and numerators on, near and between multiples.
    Rng rng(5);
    double const steps[] = {0.1, 1.0 / 3, 16.0 / 1919, 10.0 / 100, 1e-300, 3e-308, 1e300, 4.9e-324, 7.0, 1e308, Inf};
    for (double d : steps) {
        double inv = IntegerConversionC::quotientReciprocal(d);
        for (int i = 0; i < 20000; ++i) {
            double n;
            switch (i % 4) {
            case 0: n = d * rng.below(70000) - d * 35000; break;      // on a multiple, as rounded
            case 1: n = std::nextafter(d * rng.below(2000), -Inf); break; // just below one
            case 2: n = rng.uniform(-5000, 5000) * d; break;
            default: n = rng.wild(1e6); break;
            }
            EXPECT_EQ(IntegerConversionC::floorQuotient(n, d, inv), IntegerConversionC::floorToInt64(n / d))
                << n << " / " << d;
        }
    }
}

struct Deleted : qelt::oss::RefCountedBC {
    explicit Deleted(int *flag) : flag_(flag) {}
    virtual ~Deleted() { ++*flag_; }
    int *flag_;
};

TEST(Pointer, CountsCopiesMovesAndSelfAssignment) {
    int deleted = 0;
    {
        PointerTC<Deleted> a(new Deleted(&deleted));
        PointerTC<Deleted> b = a;
        EXPECT_EQ(a->getReferenceCount(), 2u);
        b = a;
        a = std::move(b);
        EXPECT_EQ(a->getReferenceCount(), 1u);
        PointerTC<Deleted> c(std::move(a));
        EXPECT_FALSE(a);
        EXPECT_EQ(c->getReferenceCount(), 1u);
        c = PointerTC<Deleted>(new Deleted(&deleted));
        EXPECT_EQ(deleted, 1);
    }
    EXPECT_EQ(deleted, 2);
}

// Each relation's y values at x, in branch order, without NaN or infinities,
// appended after what the vector already holds.
TEST(Relations, YValuesAtX) {
    struct {
        char const *what;
        PointerTC<RelationC> relation;
        double x;
        std::vector<double> expected;
    } const cases[] = {
        {"line", new LinearFunction1C(2, 1, 3), 4, {9}},
        {"quadratic", new QuadraticFunctionC(2, 1, 3), 4, {21}},
        {"vertical parabola", new ParabolaVertC(1, 3, 0.5), 3, {5}},
        {"horizontal parabola", new ParabolaC(1, 3, 1), 2, {5, 1}},
        {"horizontal parabola at its vertex", new ParabolaC(1, 3, 1), 1, {3}},
        {"horizontal parabola outside", new ParabolaC(1, 3, 1), 0, {}},
        {"circle", new CircleC(1, 2, 5), 4, {6, -2}},
        {"circle, negative radius keeps branch order", new CircleC(0, 0, -5), 3, {4, -4}},
        {"circle outside", new CircleC(0, 0, 1), 5, {}},
        {"ellipse", new EllipseC(0, 0, 2, 3), 0, {3, -3}},
        {"hyperbola", new HyperbolaC(0, 0, 1, 4), 1.25, {3, -3}},
        {"hyperbola inside its gap", new HyperbolaC(0, 0, 3, 4), 1, {}},
        {"vertical hyperbola", new HyperbolaVertC(0, 1, 1, 2), 0, {3, -1}},
        {"power", new PowerFunctionC(2, 1, 3, -1, POWER_DOMAIN_UNRESTRICTED), 2, {5}},
        {"power at its pole", new PowerFunctionC(2, 1, 3, -1, POWER_DOMAIN_UNRESTRICTED), 1, {}},
        {"power excluded left of h", new PowerFunctionC(1, 1, 0, 2, POWER_DOMAIN_RIGHT_OF_H), 0, {}},
        {"power excluded right of h", new PowerFunctionC(1, 1, 0, 2, POWER_DOMAIN_LEFT_OF_H), 2, {}},
        {"power, unknown restriction", new PowerFunctionC(1, 1, 0, 2, PowerFunctionDomainRestrictionE(7)), 2, {1}},
        {"exponential", new ExponentialFunctionC(2, 0, 1), 5, {3}},
        {"logarithm", new LogarithmicFunctionC(1, 2, 0, 1, 10), 100, {5}},
        {"logarithm outside its domain", new LogarithmicFunctionC(1, 2, 0, 1, 10), -1, {}},
        {"cosine", new SinusoidalFunctionC(1, 2, 0, 1, false), 0, {3}},
        {"sine", new SinusoidalFunctionC(1, 2, 0, 1, true), 0, {1}},
    };
    for (auto const &c : cases) {
        std::vector<double> v{42.0};
        c.relation->getYValuesAt(c.x, v);
        ASSERT_FALSE(v.empty()) << c.what;
        EXPECT_EQ(v[0], 42.0) << c.what;
        v.erase(v.begin());
        EXPECT_EQ(v, c.expected) << c.what;
    }
}

TEST(Relations, LookUpBaseNamesTheClassAndItsBases) {
    PointerTC<CircleC> c(new CircleC(1, 2, 3));
    EXPECT_EQ(c->lookUpBase(CircleC::getCastableId()), static_cast<void *>(c.get()));
    EXPECT_EQ(static_cast<ConicRelationC *>(c->lookUpBase(ConicRelationC::getCastableId()))->get_k(), 2);
    EXPECT_NE(c->lookUpBase(RelationC::getCastableId()), nullptr);
    EXPECT_EQ(c->lookUpBase(EllipseC::getCastableId()), nullptr);
    EXPECT_NE(CircleC::getCastableId(), EllipseC::getCastableId());

    PointerTC<qelt::mathapp::ds::FloatDataSetC> pts(new qelt::mathapp::ds::FloatDataSetC);
    pts->addPoint(new qelt::mathapp::ds::FloatPointC(1, 2, 0));
    PointerTC<SketchC> s(new SketchC(pts));
    auto *service = static_cast<qelt::mathapp::esb::SketchServiceIC *>(
        s->lookUpBase(qelt::mathapp::esb::SketchServiceIC::getCastableId()));
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->getValues().size(), 1u);
    EXPECT_EQ(service->getValues()[0]->getY(), 2);
}

TEST(Float64Util, TextOfNumbers) {
    using qelt::math::Float64UtilC;
    EXPECT_EQ(Float64UtilC::toString(1.5, 3, qelt::math::NUMBER_DISPLAY_FIXED), u"1.500");
    EXPECT_EQ(Float64UtilC::toString(0.1, 17, qelt::math::NUMBER_DISPLAY_GENERAL), u"0.10000000000000001");
    EXPECT_EQ(Float64UtilC::toString(-Inf, 3, qelt::math::NUMBER_DISPLAY_GENERAL), u"-Infinity");
    EXPECT_TRUE(Float64UtilC::isNaN(Float64UtilC::NaN));
    EXPECT_TRUE(Float64UtilC::isInfinity(-Inf));
    EXPECT_FALSE(Float64UtilC::isInfinity(NaN));
}

} // namespace

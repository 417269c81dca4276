// The pixel data set: spare marker slots, marker merging, growth at both ends.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "collab/ds/GraphDataSetWinC.h"
#include "collab/ds/PixelPointC.h"

using namespace evalgtest;
using qelt::mathapp::ds::PixelPointC;

namespace {

PointerTC<GraphDataSetWinC> makeSet(unsigned capacity, unsigned front) {
    return PointerTC<GraphDataSetWinC>(new GraphDataSetWinC(capacity, front, makeDomain(defaultWindow())));
}

// Any capacity and front hints, also ones past what the points need.
TEST(DataSet, SpareSlotsAreZeroWritableAndMergeIntoTheNextPoint) {
    struct {
        unsigned capacity, front;
    } const hints[] = {{0, 0}, {1, 1}, {1001, 500}, {402, 401}, {402, 0}, {5, 9}, {4000000000u, 7}};
    for (auto const &h : hints) {
        SCOPED_TRACE(::testing::Message() << h.capacity << "," << h.front);
        PointerTC<GraphDataSetWinC> set = makeSet(h.capacity, h.front);
        unsigned int n = 99;
        unsigned char *m = set->getPixelMarkers(n);
        ASSERT_EQ(n, 0u);
        EXPECT_EQ(m[-1], 0);
        EXPECT_EQ(m[0], 0);
        // A marker on slot count lands on the next appended point, merged with its own.
        m[0] = PixelPointC::FIRST_VISIBLE;
        set->appendPixelPoint(1L, 2L, PixelPointC::LAST_VISIBLE);
        // A marker on slot -1 lands on the next prepended point.
        m = set->getPixelMarkers(n);
        m[-1] = PixelPointC::LAST_VISIBLE;
        set->prependPixelPoint(0L, 5L, 0);
        // Grow well past every hint; the pending marker on slot count travels along.
        m = set->getPixelMarkers(n);
        m[n] = PixelPointC::FIRST_VISIBLE;
        for (long i = 0; i < 100; ++i) set->prependPixelPoint(-i, i, 0);
        for (long i = 0; i < 100; ++i) set->appendPixelPoint(100 + i, i, 0);

        std::vector<Pt> pts = points(set);
        ASSERT_EQ(pts.size(), 202u);
        EXPECT_EQ(pts[100], (Pt{0, 5, PixelPointC::LAST_VISIBLE}));
        EXPECT_EQ(pts[101], (Pt{1, 2, PixelPointC::FIRST_VISIBLE | PixelPointC::LAST_VISIBLE}));
        EXPECT_EQ(pts[102], (Pt{100, 0, PixelPointC::FIRST_VISIBLE}));
        EXPECT_EQ(pts[0], (Pt{-99, 99, 0}));
        EXPECT_EQ(pts[201], (Pt{199, 99, 0}));
        m = set->getPixelMarkers(n);
        EXPECT_EQ(m[-1], 0);
        EXPECT_EQ(m[n], 0);
    }
}

TEST(DataSet, PointsAndMarkersAreParallelAndOutOfGridPointsAreKept) {
    PointerTC<GraphDataSetWinC> set = makeSet(4, 2);
    set->appendPixelPoint(65535L, -1L, 1);
    POINT p{161, 7};
    set->appendPixelPoint(p, 2);
    set->prependPixelPoint(-3L, 4294967297L, 3); // keeps the low 32 bits
    unsigned int n1 = 0, n2 = 0;
    POINT *pts = set->getPixelPoints(n1);
    unsigned char *m = set->getPixelMarkers(n2);
    ASSERT_EQ(n1, 3u);
    ASSERT_EQ(n2, 3u);
    EXPECT_EQ((std::vector<Pt>{{pts[0].x, pts[0].y, m[0]}, {pts[1].x, pts[1].y, m[1]}, {pts[2].x, pts[2].y, m[2]}}),
              (std::vector<Pt>{{-3, 1, 3}, {65535, -1, 1}, {161, 7, 2}}));
}

TEST(DataSet, MillionsOfPrependsAndAppendsReallocateLogarithmically) {
    PointerTC<GraphDataSetWinC> set = makeSet(0, 0);
    for (long i = 0; i < 1000000; ++i) {
        set->prependPixelPoint(-i, 0, 0);
        set->appendPixelPoint(i, 0, 0);
    }
    EXPECT_EQ(set->getCount(), 2000000u);
    // Doubling growth: about log2(10^6) reallocations per end, far from 10^6.
    EXPECT_LE(set->getReallocationCount(), 60u);
    unsigned int n = 0;
    POINT *p = set->getPixelPoints(n);
    EXPECT_EQ(p[0].x, -999999);
    EXPECT_EQ(p[n - 1].x, 999999);
}

TEST(DataSet, AppendingAnotherSetMergesPendingMarkersOrJoinsPaths) {
    PointerTC<GraphDataSetWinC> a = makeSet(2, 0), b = makeSet(2, 0);
    a->appendPixelPoint(1L, 1L, 0);
    b->appendPixelPoint(1L, 1L, PixelPointC::FIRST_VISIBLE);
    b->appendPixelPoint(2L, 1L, PixelPointC::LAST_VISIBLE);
    unsigned int n = 0;
    b->getPixelMarkers(n)[n] = PixelPointC::FIRST_VISIBLE; // b's spare slot is not copied
    a->getPixelMarkers(n)[n] = PixelPointC::LAST_VISIBLE;  // a's pending marker merges

    PointerTC<GraphDataSetWinC> plain = makeSet(0, 0);
    plain->appendPixelPoints(a, false);
    plain->appendPixelPoints(b, false);
    EXPECT_EQ(points(plain), (std::vector<Pt>{{1, 1, 0}, {1, 1, 1}, {2, 1, 2}}));

    a->appendPixelPoints(b, true); // the shared point is not repeated
    EXPECT_EQ(points(a), (std::vector<Pt>{{1, 1, 1}, {2, 1, 2}}));
    a->appendPixelPoints(a, false); // appending a set to itself doubles it
    EXPECT_EQ(points(a).size(), 4u);
    EXPECT_FALSE(a->appendPixelPoints(PointerTC<GraphDataSetWinC>(), false));
}

// Bulk writes, reserve and clear against the same points appended and
// prepended one by one, with markers pending in the spare slots, on seeded
// random runs from small hints (so the bulk room must grow).
TEST(DataSet, BulkWritesMatchOneByOneWrites) {
    Rng rng(5);
    for (int trial = 0; trial < 300; ++trial) {
        PointerTC<GraphDataSetWinC> bulk = makeSet(unsigned(rng.below(4)), unsigned(rng.below(3)));
        PointerTC<GraphDataSetWinC> single = makeSet(0, 0);
        if (trial % 7 == 0) {
            bulk->appendPixelPoint(9L, 9L, PixelPointC::LAST_VISIBLE);
            bulk->clear(unsigned(rng.below(5))); // as good as new
        }
        for (int step = 0; step < 20; ++step) {
            unsigned int n = 0;
            unsigned char mark = (unsigned char)(1 + rng.below(2));
            long slot = rng.below(2) ? -1 : long(single->getCount());
            bulk->getPixelMarkers(n)[slot] |= mark;
            single->getPixelMarkers(n)[slot] |= mark;
            if (rng.below(4) == 0) bulk->reserve(std::size_t(rng.below(50)), std::size_t(rng.below(50)));
            bool front = rng.below(2);
            std::size_t count = std::size_t(rng.below(40)), wanted = count + std::size_t(rng.below(3));
            POINT *room = front ? bulk->reservePrepend(wanted) : bulk->reserveAppend(wanted);
            ASSERT_NE(room, nullptr);
            for (std::size_t i = 0; i < count; ++i) {
                POINT p{int(rng.below(1000)) - 10, int(rng.below(1000))};
                room[front ? -1 - std::ptrdiff_t(i) : std::ptrdiff_t(i)] = p;
                if (front)
                    single->prependPixelPoint(long(p.x), long(p.y), 0);
                else
                    single->appendPixelPoint(p, 0);
            }
            if (front)
                bulk->commitPrepend(count);
            else
                bulk->commitAppend(count);
        }
        ASSERT_EQ(points(bulk), points(single)) << "trial " << trial;
        unsigned int n = 0, m = 0;
        unsigned char *bm = bulk->getPixelMarkers(n), *sm = single->getPixelMarkers(m);
        EXPECT_EQ(bm[-1], sm[-1]);
        EXPECT_EQ(bm[n], sm[m]);
    }
}

} // namespace

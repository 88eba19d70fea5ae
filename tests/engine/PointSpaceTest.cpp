// Reuse of the point array: holes left by deleted polygons.

#include "engine/EngineTestUtil.h"
#include "engine/PointSpace.h"
#include "engine/SceneStore.h"

using namespace enginetest;
using engine::PointSpace;

namespace {

TEST(PointSpace, GrowsInPlaceAndMergesFreedRuns) {
    PointSpace sp(4);  // polygons of at most 4 points: holes of 5 can take one
    const std::uint32_t a = sp.startGrowing();
    EXPECT_EQ(a, 1u);
    EXPECT_EQ(sp.extend(a, 1), 2u);
    EXPECT_EQ(sp.extend(a, 2), 3u);
    const std::uint32_t b = sp.take(3);  // behind a
    EXPECT_EQ(b, 4u);
    EXPECT_EQ(sp.extend(a, 3), 0u);  // a can no longer grow in place
    EXPECT_EQ(sp.top(), 7u);
    sp.release(a, 3);
    sp.release(b, 2);  // [1, 6) merged: a hole of 5
    EXPECT_EQ(sp.freeSlots(), 5u);
    // The next polygon starts in the hole and grows there.
    const std::uint32_t c = sp.startGrowing();
    EXPECT_EQ(c, 1u);
    EXPECT_EQ(sp.extend(c, 1), 2u);
    EXPECT_EQ(sp.extend(c, 2), 3u);
    EXPECT_EQ(sp.extend(c, 3), 4u);
    EXPECT_EQ(sp.top(), 7u);
    // One slot is left in the hole: too little for a new polygon, which goes to the top.
    const std::uint32_t d = sp.startGrowing();
    EXPECT_EQ(d, 7u);
    EXPECT_EQ(sp.extend(d, 1), 8u);
    EXPECT_EQ(sp.freeSlots(), 1u);  // slot 5 went back to the free list
}

TEST(PointSpace, APolygonStartedAtTheTopKeepsGrowingThereWhenAHoleOpens) {
    PointSpace sp(4);
    const std::uint32_t first = sp.take(5);
    const std::uint32_t a = sp.startGrowing();  // at the top, slot 6
    EXPECT_EQ(a, 6u);
    sp.release(first, 5);                // a hole opens
    const std::uint32_t b = sp.take(2);  // known-size: goes into the hole
    EXPECT_EQ(b, 1u);
    EXPECT_EQ(sp.extend(a, 1), 7u);  // a is still the last run at the top
    EXPECT_EQ(sp.extend(a, 2), 8u);
}

TEST(PointSpace, EngineReusesSpaceOfDeletedPolygons) {
    Engine e;
    const engine::SceneStore& st = e.store();
    auto build = [&](double z) {
        std::vector<Handle> out;
        for (int i = 0; i < 30000; ++i)
            out.push_back(addPolygon(e, {{0, 0, z}, {0, 1, z}, {1, 1, z}}));
        return out;
    };
    std::vector<Handle> first = build(0);
    const std::uint32_t used = st.pointSlotEnd();
    EXPECT_GE(used, 90000u);
    for (int round = 1; round <= 4; ++round) {
        for (Handle h : first) e.polygon_delete(h);
        first = build(round);
    }
    // Four loads and deletes later the array is not much longer than one load.
    EXPECT_LT(st.pointSlotEnd(), used + 70000u);
    // And every polygon still reads its own points.
    for (std::size_t i = 0; i < first.size(); i += 997)
        EXPECT_EQ(pointsOf(e, first[i]), (std::vector<Point3>{{0, 0, 4}, {0, 1, 4}, {1, 1, 4}}));
    EXPECT_EQ(e.polygon_count(), 30000u);
}

TEST(PointSpace, HandlesKeptWhileBuildingInAHole) {
    Engine e;
    std::vector<Handle> old;
    for (int i = 0; i < 30000; ++i) old.push_back(addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}));
    for (Handle h : old) e.polygon_delete(h);
    // A ring built point by point, handles kept, as the builders do.
    const Handle ring = e.polygon_create();
    std::vector<Handle> pts;
    for (int i = 0; i < 8; ++i)
        pts.push_back(e.polygon_add_point(ring, Point3{double(i), double(i % 3), 0}));
    ASSERT_EQ(e.polygon_rotate_z(ring, 30), 0);
    const auto now = pointsOf(e, ring);
    for (int i = 0; i < 8; ++i) {
        Point3 p;
        ASSERT_EQ(e.point_get_xyz(pts[i], p), 0);
        EXPECT_EQ(p, now[i]);
    }
    EXPECT_LT(e.store().firstPoint(e.store().polygonSlot(ring)),
              e.store().pointSlotEnd() - 8);  // in the hole
}

}  // namespace

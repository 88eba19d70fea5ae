// polygon_split: two free pieces, the original untouched.

#include <algorithm>
#include <cmath>

#include "engine/EngineTestUtil.h"
#include "engine/Geometry.h"

using namespace enginetest;
using engine::Plane;

namespace {

double areaOf(const Engine& e, Handle h) {
    const auto p = pointsOf(e, h);
    return engine::geom::area(p.data(), p.size());
}

bool contains(const std::vector<Point3>& pts, Point3 q) {
    return std::any_of(pts.begin(), pts.end(), [&](const Point3& p) {
        return std::abs(p.x - q.x) < 1e-12 && std::abs(p.y - q.y) < 1e-12 &&
               std::abs(p.z - q.z) < 1e-12;
    });
}

TEST(EngineSplit, SquareCutAcrossGivesTwoRectangles) {
    Engine e;
    // A 4 x 2 square in z = 0 facing up, cut by the plane x = 1 (front is x > 1).
    const Handle sq = addPolygon(e, {{0, 0, 0}, {0, 2, 0}, {4, 2, 0}, {4, 0, 0}});
    ASSERT_EQ(e.polygon_set_color_fill(sq, {10, 20, 30}), 0);
    ASSERT_EQ(e.polygon_set_name(sq, "Face"), 0);
    const Handle g = e.group_create("G");
    ASSERT_EQ(e.polygon_set_group(sq, g), 0);
    Handle front = 0, back = 0;
    ASSERT_EQ(e.polygon_split(sq, Plane{{1, 0, 0}, -1}, front, back), 0);
    ASSERT_NE(front, 0u);
    ASSERT_NE(back, 0u);
    EXPECT_NEAR(areaOf(e, front), 6, 1e-12);  // 3 x 2
    EXPECT_NEAR(areaOf(e, back), 2, 1e-12);   // 1 x 2
    EXPECT_NEAR(areaOf(e, front) + areaOf(e, back), areaOf(e, sq), 1e-12);
    const auto fp = pointsOf(e, front), bp = pointsOf(e, back);
    for (const Point3& cut : {Point3{1, 0, 0}, Point3{1, 2, 0}}) {
        EXPECT_TRUE(contains(fp, cut));
        EXPECT_TRUE(contains(bp, cut));
    }
    for (const Point3& p : fp) EXPECT_GE(p.x, 1 - 1e-12);
    for (const Point3& p : bp) EXPECT_LE(p.x, 1 + 1e-12);
    // Pieces face the same way, keep the look and the group, and are free.
    Plane a, b;
    ASSERT_EQ(e.polygon_get_plane(front, a), 0);
    ASSERT_EQ(e.polygon_get_plane(back, b), 0);
    expectNear(a.n, {0, 0, 1});
    expectNear(b.n, {0, 0, 1});
    EXPECT_EQ(e.polygon_get_color(front), (engine::Rgb{10, 20, 30}));
    EXPECT_EQ(e.entity_get_name(back), "Face");
    EXPECT_EQ(e.polygon_get_group(front), g);
    EXPECT_FALSE(e.polygon_is_in_world(front));
    EXPECT_FALSE(e.polygon_is_in_world(back));
    // The original stays as it was.
    EXPECT_TRUE(e.polygon_is_in_world(sq));
    EXPECT_EQ(pointsOf(e, sq).size(), 4u);
    EXPECT_EQ(e.engine_add_polygon(front), 0);
    EXPECT_EQ(e.engine_add_polygon(back), 0);
}

TEST(EngineSplit, PointsOnThePlaneGoToBothPieces) {
    Engine e;
    // A square cut along its diagonal: two corners lie on the plane.
    const Handle sq = addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}});
    const double r = 1 / std::sqrt(2.0);
    Handle front = 0, back = 0;
    ASSERT_EQ(e.polygon_split(sq, Plane{{r, -r, 0}, 0}, front, back), 0);
    const auto fp = pointsOf(e, front), bp = pointsOf(e, back);
    ASSERT_EQ(fp.size(), 3u);
    ASSERT_EQ(bp.size(), 3u);
    for (const Point3& on : {Point3{0, 0, 0}, Point3{1, 1, 0}}) {
        EXPECT_TRUE(contains(fp, on));
        EXPECT_TRUE(contains(bp, on));
    }
    EXPECT_TRUE(contains(fp, {1, 0, 0}));
    EXPECT_TRUE(contains(bp, {0, 1, 0}));
    EXPECT_NEAR(areaOf(e, front), 0.5, 1e-12);
    EXPECT_NEAR(areaOf(e, back), 0.5, 1e-12);
}

TEST(EngineSplit, PlaneMissingGivesNoPieces) {
    Engine e;
    const Handle t = addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    Handle front = 77, back = 77;
    EXPECT_EQ(e.polygon_split(t, Plane{{0, 0, 1}, 100}, front, back), 0);  // z = -100
    EXPECT_EQ(front, 0u);
    EXPECT_EQ(back, 0u);
    // Touching along an edge, or lying in the plane, does not cut either.
    EXPECT_EQ(e.polygon_split(t, Plane{{1, 0, 0}, 0}, front, back), 0);
    EXPECT_EQ(front + back, 0u);
    EXPECT_EQ(e.polygon_split(t, Plane{{0, 0, 1}, 0}, front, back), 0);
    EXPECT_EQ(front + back, 0u);
    EXPECT_EQ(e.polygon_count(), 1u);
}

TEST(EngineSplit, BadInputFails) {
    Engine e;
    const Handle t = addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    Handle front = 5, back = 5;
    EXPECT_EQ(e.polygon_split(0, Plane{{1, 0, 0}, 0}, front, back), -1);
    EXPECT_EQ(front + back, 0u);
    EXPECT_EQ(e.polygon_split(t, Plane{{0, 0, 0}, 0}, front, back), -1);
    EXPECT_EQ(e.polygon_split(t, Plane{{NAN, 0, 0}, 0}, front, back), -1);
    const Handle two = makePolygon(e, {{0, 0, 0}, {1, 0, 0}});
    EXPECT_EQ(e.polygon_split(two, Plane{{1, 0, 0}, -0.5}, front, back), -1);
    e.polygon_delete(t);
    EXPECT_EQ(e.polygon_split(t, Plane{{1, 0, 0}, 0}, front, back), -1);
}

TEST(EngineSplit, UnnormalisedPlaneCutsAtTheSamePlace) {
    Engine e;
    const Handle sq = addPolygon(e, {{0, 0, 0}, {0, 2, 0}, {4, 2, 0}, {4, 0, 0}});
    Handle front = 0, back = 0;
    ASSERT_EQ(e.polygon_split(sq, Plane{{2, 0, 0}, -2}, front, back), 0);  // still x = 1
    EXPECT_NEAR(areaOf(e, back), 2, 1e-12);
}

TEST(EngineSplit, ConcavePolygonKeepsItsArea) {
    Engine e;
    const Handle l =
        addPolygon(e, {{0, 0, 0}, {0, 2, 0}, {1, 2, 0}, {1, 1, 0}, {2, 1, 0}, {2, 0, 0}});
    Handle front = 0, back = 0;
    ASSERT_EQ(e.polygon_split(l, Plane{{0, 1, 0}, -0.5}, front, back), 0);  // y = 0.5
    EXPECT_NEAR(areaOf(e, front), 2, 1e-12);  // L of area 3 above y = 0.5 keeps 2
    EXPECT_NEAR(areaOf(e, back), 1, 1e-12);
}

}  // namespace

// Walk order, the refusal rules of engine_add_polygon and the plane rule.

#include <cmath>
#include <limits>

#include "engine/EngineTestUtil.h"

using namespace enginetest;
using engine::Plane;

namespace {

Handle tri(Engine& e, double x) { return addPolygon(e, {{x, 0, 0}, {x, 1, 0}, {x + 1, 1, 0}}); }

TEST(EngineWalk, FollowsAddOrderNotCreationOrder) {
    Engine e;
    const Handle a = makePolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    const Handle b = makePolygon(e, {{2, 0, 0}, {2, 1, 0}, {3, 1, 0}});
    const Handle c = makePolygon(e, {{4, 0, 0}, {4, 1, 0}, {5, 1, 0}});
    EXPECT_TRUE(walk(e).empty());  // free polygons are not walked
    ASSERT_EQ(e.engine_add_polygon(c), 0);
    ASSERT_EQ(e.engine_add_polygon(a), 0);
    ASSERT_EQ(e.engine_add_polygon(b), 0);
    EXPECT_EQ(walk(e), (std::vector<Handle>{c, a, b}));
    EXPECT_EQ(e.engine_add_polygon(a), -1);  // already in
    EXPECT_EQ(e.polygon_count(), 3u);
}

TEST(EngineWalk, DeletesUnlinkAndNewPolygonsGoToTheEnd) {
    Engine e;
    std::vector<Handle> h;
    for (int i = 0; i < 6; ++i) h.push_back(tri(e, 2.0 * i));
    ASSERT_EQ(e.polygon_delete(h[0]), 0);  // head
    ASSERT_EQ(e.polygon_delete(h[3]), 0);  // middle
    ASSERT_EQ(e.polygon_delete(h[5]), 0);  // tail
    EXPECT_EQ(walk(e), (std::vector<Handle>{h[1], h[2], h[4]}));
    const Handle n1 = tri(e, 20), n2 = tri(e, 22);
    EXPECT_EQ(walk(e), (std::vector<Handle>{h[1], h[2], h[4], n1, n2}));
    // A deleted handle is dead for the walk too.
    EXPECT_EQ(e.polygon_get_next(h[3]), 0u);
    EXPECT_EQ(e.polygon_delete(h[3]), -1);
    for (Handle x : walk(e)) e.polygon_delete(x);
    EXPECT_TRUE(walk(e).empty());
    EXPECT_EQ(e.polygon_get_first_polygon(), 0u);
    const Handle again = tri(e, 30);
    EXPECT_EQ(walk(e), (std::vector<Handle>{again}));
}

TEST(EngineWalk, DisabledPolygonsAreWalked) {
    Engine e;
    const Handle a = tri(e, 0), b = tri(e, 2);
    ASSERT_EQ(e.polygon_disable(a), 0);
    EXPECT_TRUE(e.polygon_is_disabled(a));
    EXPECT_EQ(walk(e), (std::vector<Handle>{a, b}));
}

TEST(EngineWalk, CrossesStorageBlocksAndSurvivesManyDeletes) {
    // More polygons than one storage block holds, then every third deleted.
    Engine e;
    constexpr int kCount = 70000;
    std::vector<Handle> all;
    all.reserve(kCount);
    for (int i = 0; i < kCount; ++i) all.push_back(tri(e, 2.0 * i));
    std::vector<Handle> kept;
    for (int i = 0; i < kCount; ++i) {
        if (i % 3 == 0)
            e.polygon_delete(all[i]);
        else
            kept.push_back(all[i]);
    }
    EXPECT_EQ(walk(e), kept);
    // Freed slots come back into use; the walk stays in adding order.
    std::vector<Handle> added;
    for (int i = 0; i < 5000; ++i) added.push_back(tri(e, -2.0 * i - 4));
    std::vector<Handle> expected = kept;
    expected.insert(expected.end(), added.begin(), added.end());
    EXPECT_EQ(walk(e), expected);
    EXPECT_EQ(e.polygon_count(), expected.size());
}

TEST(EngineRefusal, TooFewOrCollinearOrDuplicatePoints) {
    Engine e;
    const Handle two = makePolygon(e, {{0, 0, 0}, {1, 0, 0}});
    EXPECT_EQ(e.engine_add_polygon(two), -1);
    const Handle line = makePolygon(e, {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}});
    EXPECT_EQ(e.engine_add_polygon(line), -1);
    const Handle dup = makePolygon(e, {{0, 0, 0}, {1, 0, 0}, {1, 0, 0}});
    EXPECT_EQ(e.engine_add_polygon(dup), -1);
    const Handle same = makePolygon(e, {{5, 5, 5}, {5, 5, 5}, {5, 5, 5}, {5, 5, 5}});
    EXPECT_EQ(e.engine_add_polygon(same), -1);
    // Far from the origin a collinear triple must still be seen as one.
    const Handle farLine =
        makePolygon(e, {{6e6, 1e6, 500}, {6e6 + 3, 1e6 + 4, 500}, {6e6 + 6, 1e6 + 8, 500}});
    EXPECT_EQ(e.engine_add_polygon(farLine), -1);
    for (Handle h : {two, line, dup, same, farLine}) {
        EXPECT_FALSE(e.polygon_is_in_world(h));
        EXPECT_FALSE(e.polygon_is_valid(h));
        EXPECT_EQ(e.polygon_delete(h), 0);  // the caller deletes a refused polygon
    }
    EXPECT_EQ(e.polygon_count(), 0u);
}

TEST(EngineRefusal, ARepeatedPointIsFineWhenThreeDistinctRemain) {
    Engine e;
    const Handle quad = makePolygon(e, {{0, 0, 0}, {0, 1, 0}, {0, 1, 0}, {1, 1, 0}});
    EXPECT_EQ(e.engine_add_polygon(quad), 0);
    EXPECT_EQ(e.polygon_count_redundant_points(quad), 1);
}

TEST(EngineRefusal, NonFinitePointsAreNotTaken) {
    Engine e;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const Handle p = e.polygon_create();
    EXPECT_NE(e.polygon_add_point(p, Point3{0, 0, 0}), 0u);
    EXPECT_EQ(e.polygon_add_point(p, Point3{nan, 1, 0}), 0u);
    EXPECT_EQ(e.polygon_add_point(p, Point3{1, inf, 0}), 0u);
    EXPECT_EQ(e.polygon_get_num_of_points(p), 1);
    EXPECT_EQ(e.engine_add_polygon(p), -1);
    // Moving a point to NaN is refused as well, so a polygon in the world stays finite.
    const Handle q = addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    EXPECT_EQ(e.point_set_xyz(e.polygon_get_first_point(q), Point3{nan, 0, 0}), -1);
    EXPECT_EQ(e.polygon_move(q, Point3{0, nan, 0}), -1);
    EXPECT_EQ(pointsOf(e, q)[0], (Point3{0, 0, 0}));
}

TEST(EnginePlane, ClockwiseTriangleFacesTheViewer) {
    Engine e;
    // Clockwise seen from above (+z): (0,0), (0,1), (1,1).
    const Handle t = addPolygon(e, {{0, 0, 5}, {0, 1, 5}, {1, 1, 5}});
    Plane pl;
    ASSERT_EQ(e.polygon_get_plane(t, pl), 0);
    expectNear(pl.n, {0, 0, 1});
    EXPECT_NEAR(pl.d, -5, 1e-12);
    // Flipping reverses the order and so the side.
    ASSERT_EQ(e.polygon_flip_visible_side(t), 0);
    ASSERT_EQ(e.polygon_get_plane(t, pl), 0);
    expectNear(pl.n, {0, 0, -1});
    EXPECT_NEAR(pl.d, 5, 1e-12);
    EXPECT_EQ(pointsOf(e, t), (std::vector<Point3>{{1, 1, 5}, {0, 1, 5}, {0, 0, 5}}));
    // The math helper follows the same rule.
    Plane mp;
    ASSERT_EQ(Engine::math_points_to_plane(mp, {0, 0, 5}, {0, 1, 5}, {1, 1, 5}), 0);
    expectNear(mp.n, {0, 0, 1});
    EXPECT_EQ(Engine::math_points_to_plane(mp, {0, 0, 0}, {1, 1, 1}, {3, 3, 3}), -1);
}

TEST(EnginePlane, CubeTopFaceFromTheLayoutIsSeenFromAbove) {
    Engine e;
    const double hx = 2, hy = 3, hz = 4;
    const Handle top = addPolygon(e, {{hx, hy, hz}, {hx, -hy, hz}, {-hx, -hy, hz}, {-hx, hy, hz}});
    Plane pl;
    ASSERT_EQ(e.polygon_get_plane(top, pl), 0);
    expectNear(pl.n, {0, 0, 1});
    EXPECT_NEAR(pl.d, -hz, 1e-12);
}

TEST(EnginePlane, NewellNormalForAWarpedQuad) {
    Engine e;
    const std::vector<Point3> q{{0, 0, 0}, {0, 1, 0}, {1, 1, 1}, {1, 0, 0}};
    const Handle h = makePolygon(e, q);
    // Newell's sums written out, then negated for the clockwise-front rule.
    Point3 nw{0, 0, 0};
    for (std::size_t i = 0; i < q.size(); ++i) {
        const Point3 a = q[i], b = q[(i + 1) % q.size()];
        nw.x += (a.y - b.y) * (a.z + b.z);
        nw.y += (a.z - b.z) * (a.x + b.x);
        nw.z += (a.x - b.x) * (a.y + b.y);
    }
    EXPECT_EQ(nw, (Point3{1, 1, -2}));
    const double len = std::sqrt(6.0);
    Plane pl;
    ASSERT_EQ(e.polygon_get_plane(h, pl), 0);
    expectNear(pl.n, {-1 / len, -1 / len, 2 / len}, 1e-12);
    // Through the mean point (0.5, 0.5, 0.25).
    EXPECT_NEAR(pl.d, 0.5 / len, 1e-12);
    EXPECT_FALSE(e.polygon_are_all_points_on_one_plane(h));
}

TEST(EnginePlane, DegeneratePolygonLeavesThePlaneAlone) {
    Engine e;
    const Handle line = makePolygon(e, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}});
    Plane pl{{7, 8, 9}, 10};
    EXPECT_EQ(e.polygon_get_plane(line, pl), -1);
    EXPECT_EQ(pl.n, (Point3{7, 8, 9}));
    EXPECT_EQ(pl.d, 10);
}

TEST(EngineShape, ConvexityCentreAndInsideTests) {
    Engine e;
    // An L shape, clockwise seen from above.
    const Handle l =
        addPolygon(e, {{0, 0, 0}, {0, 2, 0}, {1, 2, 0}, {1, 1, 0}, {2, 1, 0}, {2, 0, 0}});
    EXPECT_FALSE(e.polygon_is_convex(l));
    EXPECT_TRUE(e.polygon_are_all_points_on_one_plane(l));
    expectNear(e.polygon_get_center(l), {1, 1, 0});                     // mean of the six points
    EXPECT_TRUE(e.polygon_is_point_inside_polygon(l, {0.5, 1.5, 3}));   // above the arm
    EXPECT_FALSE(e.polygon_is_point_inside_polygon(l, {1.5, 1.5, 0}));  // the notch
    const Handle sq = addPolygon(e, {{0, 0, 1}, {0, 1, 1}, {1, 1, 1}, {1, 0, 1}});
    EXPECT_TRUE(e.polygon_is_convex(sq));
    // A pentagram turns one way at every corner but is not convex.
    std::vector<Point3> star;
    for (int i = 0; i < 5; ++i) {
        const double a = -2 * i * 2 * M_PI / 5;  // clockwise, every second corner
        star.push_back({std::cos(a), std::sin(a), 0});
    }
    EXPECT_FALSE(e.polygon_is_convex(makePolygon(e, star)));
    // Closest point is a handle of the nearest corner.
    Point3 c;
    ASSERT_EQ(e.point_get_xyz(e.polygon_get_closest_point(l, {2.2, 1.3, 0}), c), 0);
    EXPECT_EQ(c, (Point3{2, 1, 0}));
}

TEST(EngineShape, PlacementAndRotation) {
    Engine e;
    const Handle t = addPolygon(e, {{0, 0, 0}, {0, 2, 0}, {4, 2, 0}});
    ASSERT_EQ(e.polygon_set_location(t, {10, 10, 10}), 0);  // box centre (2, 1, 0) goes there
    EXPECT_EQ(pointsOf(e, t), (std::vector<Point3>{{8, 9, 10}, {8, 11, 10}, {12, 11, 10}}));
    // Right-handed about z through the mean (28/3, 31/3, 10): +90 takes +x to +y.
    const Handle r = addPolygon(e, {{1, 0, 0}, {0, 0, 0}, {0, 1, 0}});
    const Point3 m = e.polygon_get_center(r);
    ASSERT_EQ(e.polygon_rotate_z(r, 90), 0);
    const auto p = pointsOf(e, r);
    expectNear(p[0], {m.x - (0 - m.y), m.y + (1 - m.x), 0}, 1e-12);
    expectNear(e.polygon_get_center(r), m, 1e-12);
    // About y, +90 takes +z to +x: a ring in z = 0 facing up ends facing +x.
    const Handle ring = addPolygon(e, {{1, 0, 0}, {0, -1, 0}, {-1, 0, 0}, {0, 1, 0}});
    ASSERT_EQ(e.polygon_rotate_y(ring, 90), 0);
    Plane pl;
    ASSERT_EQ(e.polygon_get_plane(ring, pl), 0);
    expectNear(pl.n, {1, 0, 0}, 1e-12);
}

}  // namespace

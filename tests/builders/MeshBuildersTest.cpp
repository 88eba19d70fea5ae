// The origin meshes: sphere counts and shape, cube faces and their move vectors.
#include <cmath>

#include "BuilderTestUtil.h"
#include "builders/Meshes.h"

namespace {

using namespace buildertest;
using builders::P_fncCreateCube;
using builders::P_fncCreateSphere;

const engine::Rgb kColour{10, 200, 30};

struct SphereCount {
    short n, m;
    int polygons;  // 2m + 2m(n - 2), worked out by hand
};

class SphereCounts : public BuilderTest, public ::testing::WithParamInterface<SphereCount> {};

TEST_P(SphereCounts, CapsAndBandsGiveTwoMPlusTwoMTimesNMinusTwoTriangles) {
    const SphereCount c = GetParam();
    const Handle g = P_fncCreateSphere(e, 10.0, c.n, c.m, kColour);
    ASSERT_NE(g, 0u);
    EXPECT_EQ(groupName(g), "Sphere");
    const auto polys = polygonsOf(e, g);
    EXPECT_EQ(int(polys.size()), c.polygons);
    for (const Poly& p : polys) {
        EXPECT_EQ(p.pts.size(), 3u) << "a band is two triangles, never a quadrilateral";
        EXPECT_TRUE(e.polygon_is_in_world(p.handle));
    }
    EXPECT_EQ(freePolygons(e), 0);
}

INSTANTIATE_TEST_SUITE_P(Resolutions, SphereCounts,
                         ::testing::Values(SphereCount{2, 4, 8},     // quick marker
                                           SphereCount{2, 8, 16},    // the rendered sphere
                                           SphereCount{4, 8, 48},    // low
                                           SphereCount{8, 8, 112},   // medium
                                           SphereCount{8, 16, 224},  // high
                                           SphereCount{3, 5, 20}));

TEST_F(BuilderTest, SpherePointsLieOnTheRadiusAndEveryFaceLooksOutwards) {
    const double R = 25.0;
    const Handle g = P_fncCreateSphere(e, R, 4, 8, kColour);
    for (const Poly& p : polygonsOf(e, g)) {
        for (const Point3& q : p.pts) EXPECT_NEAR(engine::length(q), R, 1e-9);
        const Point3 c = mean(p.pts);
        EXPECT_GT(engine::dot(frontNormal(p.pts), unit(c)), 0.5);
        EXPECT_EQ(e.polygon_get_color(p.handle), kColour);
        EXPECT_EQ(e.polygon_get_brightness(p.handle), 100);
        EXPECT_EQ(e.entity_get_name(p.handle), "");
    }
}

TEST_F(BuilderTest, QuickMarkerSphereIsADoublePyramidStartingAtTheNorthPole) {
    const Handle g = P_fncCreateSphere(e, 10.0, 2, 4, kColour);
    const auto polys = polygonsOf(e, g);
    ASSERT_EQ(polys.size(), 8u);
    // north cap j = 0: pole, P(1, 1), P(0, 1) on the equator at 90 and 0 degrees
    EXPECT_POINT_NEAR(polys[0].pts[0], (Point3{0, 0, 10}), 1e-12);
    EXPECT_POINT_NEAR(polys[0].pts[1], (Point3{0, 10, 0}), 1e-9);
    EXPECT_POINT_NEAR(polys[0].pts[2], (Point3{10, 0, 0}), 1e-9);
    // south cap j = 0: pole, P(0, 1), P(1, 1)
    EXPECT_POINT_NEAR(polys[4].pts[0], (Point3{0, 0, -10}), 1e-12);
    EXPECT_POINT_NEAR(polys[4].pts[1], (Point3{10, 0, 0}), 1e-9);
    EXPECT_POINT_NEAR(polys[4].pts[2], (Point3{0, 10, 0}), 1e-9);
    // the last north triangle closes the seam at j = m, back to the x axis
    EXPECT_POINT_NEAR(polys[3].pts[1], (Point3{10, 0, 0}), 1e-9);
}

TEST_F(BuilderTest, DegenerateSpheresKeepTheirGroupAndLeaveNothingBehind) {
    for (auto [n, m] : {std::pair<short, short>{1, 8}, {0, 8}, {-3, 4}, {4, 0}, {4, -2}}) {
        const Handle g = P_fncCreateSphere(e, 10.0, n, m, kColour);
        ASSERT_NE(g, 0u) << n << " " << m;
        EXPECT_EQ(e.group_get_number_of_polygons(g), 0) << n << " " << m;
    }
    // zero and not-a-number radius: every triangle is refused and deleted
    const Handle zero = P_fncCreateSphere(e, 0.0, 4, 8, kColour);
    const Handle nan = P_fncCreateSphere(e, std::nan(""), 4, 8, kColour);
    EXPECT_NE(zero, 0u);
    EXPECT_NE(nan, 0u);
    EXPECT_EQ(e.group_get_number_of_polygons(zero), 0);
    EXPECT_EQ(e.group_get_number_of_polygons(nan), 0);
    EXPECT_EQ(e.polygon_count(), 0u);
    EXPECT_EQ(freePolygons(e), 0);
}

TEST_F(BuilderTest, CubeFacesComeInPairsZThenXThenY) {
    const Handle g = P_fncCreateCube(e, {2.0f, 4.0f, 6.0f}, kColour);
    ASSERT_NE(g, 0u);
    EXPECT_EQ(groupName(g), "CubeGroup");
    const auto f = polygonsOf(e, g);
    ASSERT_EQ(f.size(), 6u);
    // first faces exactly as listed, half sizes 1, 2, 3
    const std::vector<Point3> top{{1, 2, 3}, {1, -2, 3}, {-1, -2, 3}, {-1, 2, 3}};
    const std::vector<Point3> east{{1, 2, 3}, {1, 2, -3}, {1, -2, -3}, {1, -2, 3}};
    const std::vector<Point3> north{{1, 2, 3}, {-1, 2, 3}, {-1, 2, -3}, {1, 2, -3}};
    // opposite faces: reversed and moved by (0, 0, -6), (-2, 0, 0), (0, -4, 0)
    const std::vector<Point3> bottom{{-1, 2, -3}, {-1, -2, -3}, {1, -2, -3}, {1, 2, -3}};
    const std::vector<Point3> west{{-1, -2, 3}, {-1, -2, -3}, {-1, 2, -3}, {-1, 2, 3}};
    const std::vector<Point3> south{{1, -2, -3}, {-1, -2, -3}, {-1, -2, 3}, {1, -2, 3}};
    const std::vector<Point3>* want[6] = {&top, &bottom, &east, &west, &north, &south};
    const Point3 outward[6] = {{0, 0, 1}, {0, 0, -1}, {1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}};
    for (int i = 0; i < 6; ++i) {
        ASSERT_EQ(f[i].pts.size(), 4u) << i;
        for (int k = 0; k < 4; ++k) EXPECT_POINT_NEAR(f[i].pts[k], (*want[i])[k], 1e-12);
        EXPECT_POINT_NEAR(frontNormal(f[i].pts), outward[i], 1e-12);
        EXPECT_EQ(e.polygon_get_color(f[i].handle), kColour);
        EXPECT_EQ(e.polygon_get_translucent(f[i].handle), 0);
        EXPECT_TRUE(e.polygon_is_in_world(f[i].handle));
    }
}

TEST_F(BuilderTest, FlatCubeLosesOnlyTheFacesWithoutArea) {
    // no height: the x and y pairs have no area; top and bottom coincide, back to back
    const Handle g = P_fncCreateCube(e, {2.0f, 2.0f, 0.0f}, kColour);
    const auto f = polygonsOf(e, g);
    ASSERT_EQ(f.size(), 2u);
    EXPECT_POINT_NEAR(frontNormal(f[0].pts), (Point3{0, 0, 1}), 1e-12);
    EXPECT_POINT_NEAR(frontNormal(f[1].pts), (Point3{0, 0, -1}), 1e-12);
    EXPECT_EQ(freePolygons(e), 0);

    const Handle none = P_fncCreateCube(e, {0.0f, 0.0f, 0.0f}, kColour);
    const Handle nan = P_fncCreateCube(e, {std::nanf(""), 1.0f, 1.0f}, kColour);
    EXPECT_NE(none, 0u);
    EXPECT_NE(nan, 0u);
    EXPECT_EQ(e.group_get_number_of_polygons(none), 0);
    EXPECT_EQ(e.group_get_number_of_polygons(nan), 0);
    EXPECT_EQ(freePolygons(e), 0);
}

}  // namespace

// Tunnels, strings, drill lines, the flat disc, and finding a tube's ends again.
#include <cmath>

#include "BuilderTestUtil.h"
#include "builders/Meshes.h"
#include "builders/TubeCentreLine.h"
#include "builders/Tubes.h"

namespace {

using namespace buildertest;
using namespace builders;

const engine::Rgb kColour{126, 126, 253};

TEST_F(BuilderTest, HorizontalTunnelStandsItsHeightUpright) {
    // Width 40 and height 20 along +x: the box is the line widened sideways by the
    // width and up and down by the height.
    const Handle g = P_fncCreate3DExcavation(e, false, {0, 0, 0}, {100, 0, 0}, 40, 20, kColour);
    ASSERT_EQ(groupName(g), "ExcPolyGroup");
    ASSERT_EQ(e.group_get_number_of_polygons(g), 6);
    Point3 lo, hi;
    ASSERT_TRUE(e.group_bounding_box(g, lo, hi));
    EXPECT_POINT_NEAR(lo, (Point3{0, -20, -10}), 1e-9);
    EXPECT_POINT_NEAR(hi, (Point3{100, 20, 10}), 1e-9);

    // Any horizontal direction keeps the height vertical.
    const Handle d = P_fncCreate3DExcavation(e, false, {5, 5, 0}, {-25, 45, 0}, 40, 20, kColour);
    ASSERT_TRUE(e.group_bounding_box(d, lo, hi));
    EXPECT_NEAR(hi.z - lo.z, 20, 1e-9);
}

TEST_F(BuilderTest, TunnelWithoutEndsIsItsFourSides) {
    const Point3 F{0, 0, 0}, T{0, 50, -10};
    const Handle g = P_fncCreate3DExcavation(e, true, F, T, 30, 20, kColour);
    const auto polys = polygonsOf(e, g);
    ASSERT_EQ(polys.size(), 4u);
    for (const Poly& p : polys) {
        ASSERT_EQ(p.pts.size(), 4u);
        EXPECT_POINT_NEAR(p.pts[1] - p.pts[0], T - F, 1e-9);
    }
    EXPECT_EQ(freePolygons(e), 0) << "the deleted ends must not stay behind";
}

TEST_F(BuilderTest, StringIsTwoCrossedRibbonsSeenFromBothSidesAndUnlit) {
    const Point3 F{0, 0, 0}, T{0, 0, 100};
    const Handle g = P_fncCreate3DString(e, F, T, 10, kColour);
    ASSERT_EQ(groupName(g), "StringPolyGroup");
    const auto polys = polygonsOf(e, g);
    ASSERT_EQ(polys.size(), 4u);
    for (const Poly& p : polys) {
        EXPECT_EQ(e.polygon_get_brightness(p.handle), 0);
        EXPECT_EQ(e.polygon_get_color(p.handle), kColour);
        ASSERT_EQ(p.pts.size(), 4u);
        // across the square's diagonal: 2h * sqrt(2) for h = 5
        EXPECT_NEAR(engine::length(p.pts[0] - p.pts[3]), 10 * std::sqrt(2.0), 1e-9);
        EXPECT_NEAR(p.pts[1].z - p.pts[0].z, 100, 1e-9);
    }
    // 2 and 4, 3 and 5 are the same ribbon from its two sides; the two ribbons cross
    EXPECT_POINT_NEAR(frontNormal(polys[0].pts), frontNormal(polys[2].pts) * -1.0, 1e-12);
    EXPECT_POINT_NEAR(frontNormal(polys[1].pts), frontNormal(polys[3].pts) * -1.0, 1e-12);
    EXPECT_NEAR(engine::dot(frontNormal(polys[0].pts), frontNormal(polys[1].pts)), 0, 1e-12);
    EXPECT_EQ(freePolygons(e), 0) << "both rings are deleted";
}

TEST_F(BuilderTest, DrillLineSegmentsShareTwoRingsUntilReleased) {
    DrillLineRings rings;
    P_subPrepareDrillLine(e, rings, 6);
    ASSERT_TRUE(rings.prepared());
    const Handle r1 = rings.ring1.polygon, r2 = rings.ring2.polygon;
    EXPECT_FALSE(e.polygon_is_in_world(r1));
    EXPECT_FALSE(e.polygon_is_in_world(r2));

    const Point3 pts[] = {{0, 0, 0}, {0, 0, -100}, {20, 10, -180}, {20, 10, -180}};
    std::vector<Handle> segments;
    for (int i = 0; i < 3; ++i)
        segments.push_back(P_fncCreateDrillLine(e, rings, pts[i], pts[i + 1], 6, kColour));
    EXPECT_EQ(rings.ring1.polygon, r1) << "rings are reused, not made again";
    EXPECT_EQ(rings.ring2.polygon, r2);
    EXPECT_EQ(freePolygons(e), 2);

    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(groupName(segments[i]), "3WedgePolyGroup");
        const auto polys = polygonsOf(e, segments[i]);
        ASSERT_EQ(polys.size(), 3u) << "three sides, open ends";
        for (const Poly& p : polys) {
            EXPECT_POINT_NEAR(p.pts[1] - p.pts[0], pts[i + 1] - pts[i], 1e-9);
            EXPECT_NEAR(engine::dot(p.pts[0] - pts[i], unit(pts[i + 1] - pts[i])), 0, 1e-9);
        }
    }
    // A segment of no length keeps its group but no sides.
    EXPECT_EQ(e.group_get_number_of_polygons(segments[2]), 0);

    P_subReleaseDrillLine(e, rings);
    EXPECT_FALSE(rings.prepared());
    EXPECT_EQ(rings.ring1.polygon, 0u);
    EXPECT_EQ(freePolygons(e), 0);
    P_subReleaseDrillLine(e, rings);  // twice is harmless
}

TEST_F(BuilderTest, DrillLineWithoutPreparationPreparesItself) {
    DrillLineRings rings;
    const Handle g = P_fncCreateDrillLine(e, rings, {0, 0, 0}, {10, 0, 0}, 4, kColour);
    EXPECT_EQ(e.group_get_number_of_polygons(g), 3);
    EXPECT_TRUE(rings.prepared());
    P_subReleaseDrillLine(e, rings);
    EXPECT_EQ(freePolygons(e), 0);
}

TEST_F(BuilderTest, DrillLineFollowsTheDiameterOfEachSegment) {
    DrillLineRings rings;
    P_subPrepareDrillLine(e, rings, 2);
    const Handle g = P_fncCreateDrillLine(e, rings, {0, 0, 0}, {0, 0, -50}, 20, kColour);
    for (const Poly& p : polygonsOf(e, g))
        EXPECT_NEAR(std::hypot(p.pts[0].x, p.pts[0].y), 10, 1e-9);
    P_subReleaseDrillLine(e, rings);
}

TEST_F(BuilderTest, FlatCircleIsASixteenSidedDiscWithBothFaces) {
    const Handle g = P_fncCreateFlatCircle(e, 20, kColour);
    ASSERT_EQ(groupName(g), "CircleGroup");
    const auto polys = polygonsOf(e, g);
    ASSERT_EQ(polys.size(), 2u);
    ASSERT_EQ(polys[0].pts.size(), 16u);
    EXPECT_POINT_NEAR(frontNormal(polys[0].pts), (Point3{0, 0, 1}), 1e-12);
    EXPECT_POINT_NEAR(frontNormal(polys[1].pts), (Point3{0, 0, -1}), 1e-12);
    EXPECT_POINT_NEAR(polys[0].pts[1], (Point3{9.239, -3.827, 0}), 1e-12);
    EXPECT_POINT_NEAR(polys[0].pts[14], (Point3{7.07, 7.07, 0}), 1e-12);
}

// ---- the centre line ------------------------------------------------------------

TEST_F(BuilderTest, EveryTubeGivesBackItsTwoEnds) {
    const Point3 F{10, -20, 5}, T{70, 40, -25};
    DrillLineRings rings;
    const Handle tubes[] = {
        P_fncCreate3DExcavation(e, false, F, T, 30, 20, kColour),
        P_fncCreate3DExcavation(e, true, F, T, 30, 20, kColour),
        P_fncCreateCylinder(e, F, T, 8, kColour),
        P_fncCreateWedge(e, F, T, 8, kColour),
        P_fncCreate3DString(e, F, T, 8, kColour),
        P_fncCreateDrillLine(e, rings, F, T, 8, kColour),
    };
    for (Handle g : tubes) {
        for (const Poly& p : polygonsOf(e, g)) {
            Point3 a{-1, -1, -1}, b{-1, -1, -1};
            bool isTube = false;
            EXPECT_TRUE(P_fncTubeCentreLine(e, p.handle, a, b, isTube)) << groupName(g);
            EXPECT_TRUE(isTube);
            EXPECT_POINT_NEAR(a, F, 1e-9);
            EXPECT_POINT_NEAR(b, T, 1e-9);
        }
    }
    P_subReleaseDrillLine(e, rings);
}

TEST_F(BuilderTest, ZeroLengthTubeHasBothEndsAtItsPoint) {
    const Point3 P{1, 2, 3};
    const Handle g = P_fncCreateCylinder(e, P, P, 8, kColour);
    Point3 a, b;
    bool isTube = false;
    ASSERT_TRUE(P_fncTubeCentreLine(e, e.group_get_first_polygon(g), a, b, isTube));
    EXPECT_POINT_NEAR(a, P, 1e-9);
    EXPECT_POINT_NEAR(b, P, 1e-9);
}

TEST_F(BuilderTest, MarkersConesAndLoosePolygonsAreNoTubes) {
    const Handle notTubes[] = {
        P_fncCreateSphere(e, 5, 4, 8, kColour),
        P_fncCreateCube(e, {4, 4, 4}, kColour),
        fncCreateCone(e, {0, 0, 0}, {0, 0, 10}, 4, kColour),
        P_fncCreate4Cone(e, false, {0, 0, 0}, {0, 0, 10}, 4, 4, kColour),
    };
    for (Handle g : notTubes) {
        Point3 a{7, 7, 7}, b{8, 8, 8};
        bool isTube = true;
        EXPECT_FALSE(P_fncTubeCentreLine(e, e.group_get_first_polygon(g), a, b, isTube));
        EXPECT_FALSE(isTube);
        EXPECT_EQ(a, (Point3{7, 7, 7})) << "ends are left as they were";
        EXPECT_EQ(b, (Point3{8, 8, 8}));
    }
    Point3 a, b;
    bool isTube = true;
    EXPECT_FALSE(P_fncTubeCentreLine(e, 0, a, b, isTube));
    EXPECT_FALSE(isTube);
    // a tube's group renamed is no longer recognised
    const Handle renamed = P_fncCreateCylinder(e, {0, 0, 0}, {10, 0, 0}, 4, kColour);
    e.group_set_name(renamed, "My cable");
    EXPECT_FALSE(P_fncTubeCentreLine(e, e.group_get_first_polygon(renamed), a, b, isTube));
}

}  // namespace

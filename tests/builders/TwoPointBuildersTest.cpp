// The two-point meshes: ring orientation for lines along every axis, vertical
// and equal points, the two y rules, counts, ring shapes and outward faces.
#include <cmath>
#include <functional>

#include "BuilderTestUtil.h"
#include "builders/Meshes.h"
#include "builders/Tubes.h"

namespace {

using namespace buildertest;

const engine::Rgb kColour{90, 80, 70};

// Every builder with a ring at the first point, as (engine, F, T) -> group.
struct Named {
    const char* group;
    int polygons;        // for a line of some length
    bool octagonFamily;  // negates the z turn only for T.y > F.y
    std::function<Handle(Engine&, Point3, Point3)> build;
};

std::vector<Named> ringBuilders() {
    using namespace builders;
    return {
        {"8ConePolyGroup", 9, true,
         [](Engine& e, Point3 f, Point3 t) { return fncCreateCone(e, f, t, 8.0, kColour); }},
        {"4ConePolyGroup", 5, false,
         [](Engine& e, Point3 f, Point3 t) {
             return P_fncCreate4Cone(e, false, f, t, 6.0, 4.0, kColour);
         }},
        {"3ConePolyGroup", 4, false,
         [](Engine& e, Point3 f, Point3 t) { return P_fncCreate3Cone(e, f, t, 8.0, kColour); }},
        {"CylPolyGroup", 10, true,
         [](Engine& e, Point3 f, Point3 t) { return P_fncCreateCylinder(e, f, t, 8.0, kColour); }},
        {"3WedgePolyGroup", 5, false,
         [](Engine& e, Point3 f, Point3 t) { return P_fncCreateWedge(e, f, t, 8.0, kColour); }},
        {"ExcPolyGroup", 6, false,
         [](Engine& e, Point3 f, Point3 t) {
             return P_fncCreate3DExcavation(e, false, f, t, 6.0, 4.0, kColour);
         }},
    };
}

const Point3 kStarts[] = {{0, 0, 0}, {12.5, -7, 3}};
const Point3 kDirections[] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0},   {0, -1, 0},
                              {0, 0, 1}, {0, 0, -1}, {3, -4, 12}, {-2, 5, -1}};

TEST_F(BuilderTest, TheRingAtTheFirstPointFacesAwayFromTheSecond) {
    for (const Named& b : ringBuilders()) {
        for (const Point3& F : kStarts) {
            for (const Point3& d : kDirections) {
                const Point3 T = F + d * 30.0;
                const Handle g = b.build(e, F, T);
                SCOPED_TRACE(std::string(b.group) + " towards " + std::to_string(d.x) + "," +
                             std::to_string(d.y) + "," + std::to_string(d.z));
                ASSERT_NE(g, 0u);
                EXPECT_EQ(groupName(g), b.group);
                const auto polys = polygonsOf(e, g);
                ASSERT_EQ(int(polys.size()), b.polygons);
                EXPECT_POINT_NEAR(mean(polys[0].pts), F, 1e-9);
                EXPECT_POINT_NEAR(frontNormal(polys[0].pts), unit(d) * -1.0, 1e-9);
                for (const Point3& p : polys[0].pts)
                    EXPECT_NEAR(engine::dot(p - F, unit(d)), 0.0, 1e-9)
                        << "ring not square to the line";
            }
        }
    }
    EXPECT_EQ(freePolygons(e), 0);
}

TEST_F(BuilderTest, EveryFaceOfAClosedSolidLooksOutwards) {
    for (const Named& b : ringBuilders()) {
        const Point3 F{5, 5, 5}, T{-20, 35, 10};
        const auto polys = polygonsOf(e, b.build(e, F, T));
        Point3 centre;
        int n = 0;
        for (const Poly& p : polys)
            for (const Point3& q : p.pts) centre = centre + q, ++n;
        centre = centre * (1.0 / n);
        for (const Poly& p : polys)
            EXPECT_GT(engine::dot(frontNormal(p.pts), mean(p.pts) - centre), 0) << b.group;
    }
}

TEST_F(BuilderTest, VerticalLinesTurnTheRingByTheYRule) {
    // Up from the origin: rotY 180, rotZ +90 for the octagon family (equal y is not
    // negated there) and -90 for the others. Worked by hand on the first vertex:
    // (r, 0, 0) -> (-r, 0, 0) -> (0, -r, 0) with +90, (0, r, 0) with -90.
    const Point3 F{0, 0, 0}, T{0, 0, 50};
    auto firstVertex = [&](Handle g) { return polygonsOf(e, g)[0].pts[0]; };
    EXPECT_POINT_NEAR(firstVertex(builders::fncCreateCone(e, F, T, 8, kColour)), (Point3{0, -4, 0}),
                      1e-12);
    EXPECT_POINT_NEAR(firstVertex(builders::P_fncCreateCylinder(e, F, T, 8, kColour)),
                      (Point3{0, -4, 0}), 1e-12);
    EXPECT_POINT_NEAR(firstVertex(builders::P_fncCreate3Cone(e, F, T, 8, kColour)),
                      (Point3{0, 4, 0}), 1e-12);
    EXPECT_POINT_NEAR(firstVertex(builders::P_fncCreateWedge(e, F, T, 8, kColour)),
                      (Point3{0, 4, 0}), 1e-12);
    // rectangle (a, b) = (height / 2, width / 2) -> (-a, b, 0) -> (b, a, 0)
    EXPECT_POINT_NEAR(firstVertex(builders::P_fncCreate4Cone(e, false, F, T, 6, 4, kColour)),
                      (Point3{3, 2, 0}), 1e-12);
    // Down: rotY 0, so only the z turn: (r, 0, 0) -> (0, r, 0) or (0, -r, 0).
    const Point3 D{0, 0, -50};
    EXPECT_POINT_NEAR(firstVertex(builders::fncCreateCone(e, F, D, 8, kColour)), (Point3{0, 4, 0}),
                      1e-12);
    EXPECT_POINT_NEAR(firstVertex(builders::P_fncCreate3Cone(e, F, D, 8, kColour)),
                      (Point3{0, -4, 0}), 1e-12);
}

TEST_F(BuilderTest, HorizontalLinesPutTheRingsFirstVertexBelowTheLine) {
    // rotY 90 takes (r, 0, 0) to (0, 0, -r); the z turn leaves it there.
    for (const Point3& d : {Point3{1, 0, 0}, Point3{-1, 0, 0}, Point3{0, 1, 0}, Point3{0, -1, 0}}) {
        const Point3 F{1, 2, 3};
        const Handle g = builders::fncCreateCone(e, F, F + d * 10.0, 8, kColour);
        EXPECT_POINT_NEAR(polygonsOf(e, g)[0].pts[0], (F + Point3{0, 0, -4}), 1e-12);
    }
    // Along +x the octagon's second vertex (0.707r, -0.707r) lands at y +0.707r.
    const Handle g = builders::fncCreateCone(e, {0, 0, 0}, {10, 0, 0}, 8, kColour);
    EXPECT_POINT_NEAR(polygonsOf(e, g)[0].pts[1], (Point3{0, 0.707 * 4, -0.707 * 4}), 1e-12);
}

TEST_F(BuilderTest, EqualPointsStillBuildAndTheTwoFamiliesFaceOppositeWays) {
    // D = 0: rotY = 90, rotZ = 90, negated in the >= family: the ring's normal
    // (0, 0, 1) -> (1, 0, 0) -> (0, 1, 0), or (0, -1, 0) when negated.
    const Point3 P{3, 4, 5};
    for (const Named& b : ringBuilders()) {
        const Handle g = b.build(e, P, P);
        ASSERT_NE(g, 0u) << b.group;
        const auto polys = polygonsOf(e, g);
        ASSERT_FALSE(polys.empty()) << b.group;
        EXPECT_POINT_NEAR(mean(polys[0].pts), P, 1e-9);
        SCOPED_TRACE(b.group);
        const Point3 want = b.octagonFamily ? Point3{0, 1, 0} : Point3{0, -1, 0};
        EXPECT_POINT_NEAR(frontNormal(polys[0].pts), want, 1e-12);
    }
    // Prisms lose their zero-length sides and keep both ends, back to back.
    const auto cyl = polygonsOf(e, builders::P_fncCreateCylinder(e, P, P, 8, kColour));
    ASSERT_EQ(cyl.size(), 2u);
    EXPECT_POINT_NEAR(frontNormal(cyl[1].pts), (Point3{0, -1, 0}), 1e-12);
    // Pyramids flatten into the ring: the base and its k triangles all remain.
    EXPECT_EQ(polygonsOf(e, builders::fncCreateCone(e, P, P, 8, kColour)).size(), 9u);
    EXPECT_EQ(freePolygons(e), 0);
}

TEST_F(BuilderTest, RingShapesKeepTheirLiteralFactors) {
    const Point3 F{0, 0, 0}, T{0, 0, -10};  // rotY 0: the ring turns in the z = 0 plane
    const double r = 10;
    auto dist = [&](const Point3& p) { return std::hypot(p.x, p.y); };
    const auto oct = polygonsOf(e, builders::fncCreateCone(e, F, T, 2 * r, kColour))[0].pts;
    ASSERT_EQ(oct.size(), 8u);
    for (int i = 0; i < 8; ++i)
        EXPECT_NEAR(dist(oct[i]), i % 2 == 0 ? r : 0.707 * std::sqrt(2.0) * r, 1e-12) << i;
    const auto tri = polygonsOf(e, builders::P_fncCreate3Cone(e, F, T, 2 * r, kColour))[0].pts;
    ASSERT_EQ(tri.size(), 3u);
    for (const Point3& p : tri) EXPECT_NEAR(dist(p), r, 1e-9);
    EXPECT_NEAR(engine::length(tri[1] - tri[2]), 2 * 0.866025403778 * r, 1e-9);
}

TEST_F(BuilderTest, PyramidsRunFromTheBaseToTheApex) {
    const Point3 F{0, 0, 0}, A{10, 20, 30};
    const auto polys = polygonsOf(e, builders::fncCreateCone(e, F, A, 8, kColour));
    ASSERT_EQ(polys.size(), 9u);
    for (std::size_t i = 1; i < 9; ++i) {
        ASSERT_EQ(polys[i].pts.size(), 3u);
        EXPECT_POINT_NEAR(polys[i].pts[1], A, 1e-12);  // v(i), apex, v(i + 1)
        EXPECT_POINT_NEAR(polys[i].pts[0], polys[0].pts[i - 1], 1e-12);
        EXPECT_POINT_NEAR(polys[i].pts[2], polys[0].pts[i % 8], 1e-12);
    }
}

TEST_F(BuilderTest, FourSidedPyramidWithoutItsBaseHasFourTriangles) {
    const Point3 F{0, 0, 0}, A{0, 0, 40};
    const Handle g = builders::P_fncCreate4Cone(e, true, F, A, 6, 4, kColour);
    const auto polys = polygonsOf(e, g);
    ASSERT_EQ(polys.size(), 4u);
    for (const Poly& p : polys) EXPECT_EQ(p.pts.size(), 3u);
    EXPECT_EQ(freePolygons(e), 0);
    // The base spans width along one side and height along the other.
    Point3 lo{1e9, 1e9, 1e9}, hi{-1e9, -1e9, -1e9};
    ASSERT_TRUE(e.group_bounding_box(g, lo, hi));
    EXPECT_NEAR(hi.x - lo.x, 6, 1e-9);
    EXPECT_NEAR(hi.y - lo.y, 4, 1e-9);
}

TEST_F(BuilderTest, PrismSidesJoinTheRingToItsDuplicateAtTheEnd) {
    const Point3 F{1, 1, 1}, T{31, -9, 21};
    for (bool wedge : {false, true}) {
        const Handle g = wedge ? builders::P_fncCreateWedge(e, F, T, 8, kColour)
                               : builders::P_fncCreateCylinder(e, F, T, 8, kColour);
        const auto polys = polygonsOf(e, g);
        const std::size_t k = wedge ? 3 : 8;
        ASSERT_EQ(polys.size(), k + 2);
        EXPECT_POINT_NEAR(mean(polys[1].pts), T, 1e-9);
        EXPECT_POINT_NEAR(frontNormal(polys[1].pts), unit(T - F), 1e-9);
        for (std::size_t s = 0; s < k; ++s) {
            const auto& q = polys[2 + s].pts;
            ASSERT_EQ(q.size(), 4u);
            EXPECT_POINT_NEAR(q[0], polys[0].pts[s], 1e-12);
            EXPECT_POINT_NEAR(q[3], polys[0].pts[(s + 1) % k], 1e-12);
            EXPECT_POINT_NEAR(q[1] - q[0], T - F, 1e-9);  // w(s) is v(s) carried to T
            EXPECT_POINT_NEAR(q[2] - q[3], T - F, 1e-9);
        }
    }
}

TEST_F(BuilderTest, ZeroSizesAndBadNumbersGiveTheGroupAndNothingElse) {
    const double nan = std::nan("");
    const double inf = HUGE_VAL;
    for (const Named& b : ringBuilders()) {
        const Handle bad1 = b.build(e, {nan, 0, 0}, {1, 1, 1});
        const Handle bad2 = b.build(e, {0, 0, 0}, {1, inf, 1});
        EXPECT_EQ(groupName(bad1), b.group);
        EXPECT_EQ(e.group_get_number_of_polygons(bad1), 0) << b.group;
        EXPECT_EQ(e.group_get_number_of_polygons(bad2), 0) << b.group;
    }
    const Point3 F{0, 0, 0}, T{0, 10, 0};
    EXPECT_EQ(e.group_get_number_of_polygons(builders::fncCreateCone(e, F, T, 0, kColour)), 0);
    EXPECT_EQ(e.group_get_number_of_polygons(builders::P_fncCreateCylinder(e, F, T, 0, kColour)),
              0);
    EXPECT_EQ(e.group_get_number_of_polygons(builders::P_fncCreateWedge(e, F, T, nan, kColour)), 0);
    EXPECT_EQ(e.polygon_count(), 0u);
    EXPECT_EQ(freePolygons(e), 0);
}

}  // namespace

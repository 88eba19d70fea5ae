// The polygon and group measures over the engine.
#include <gtest/gtest.h>

#include <array>

#include "builders/Geometry.h"
#include "engine/Engine.h"

namespace {

using engine::Point3;

class GeometryScene : public ::testing::Test {
protected:
    GeometryScene() { eng.engine_load_world("", "", "", 4); }

    engine::Handle polygon(std::initializer_list<Point3> pts, engine::Handle group = 0) {
        engine::Handle p = eng.polygon_create();
        for (Point3 q : pts) eng.polygon_add_point(p, q);
        EXPECT_EQ(eng.engine_add_polygon(p), 0);
        if (group != 0) eng.polygon_set_group(p, group);
        return p;
    }

    // A closed cube of side s about centre c, each face as two triangles.
    engine::Handle cube(Point3 c, double s) {
        engine::Handle g = eng.group_create("cube");
        double h = s / 2;
        auto v = [&](int i) {
            return c + Point3{(i & 1) ? h : -h, (i & 2) ? h : -h, (i & 4) ? h : -h};
        };
        // corners of each face in order round it
        const std::array<std::array<int, 4>, 6> faces{{
            {0, 1, 3, 2},
            {4, 6, 7, 5},
            {0, 4, 5, 1},
            {2, 3, 7, 6},
            {0, 2, 6, 4},
            {1, 5, 7, 3},
        }};
        for (const auto& f : faces) {
            polygon({v(f[0]), v(f[1]), v(f[2])}, g);
            polygon({v(f[0]), v(f[2]), v(f[3])}, g);
        }
        return g;
    }

    engine::Engine eng;
};

TEST_F(GeometryScene, UnitCubeOfTrianglesHoldsOneCubicMetre) {
    // side 10 scene units is 1 m; each face: two triangles of 0.5 m2 at 0.5 m from
    // the centre, 2 x 1/3 x 0.5 x 0.5 = 1/6, six faces make 1.
    engine::Handle g = cube({0, 0, 0}, 10);
    EXPECT_NEAR(builders::P_fncGroupVolume(eng, g), 1.0, 1e-9);
}

TEST_F(GeometryScene, VolumeIsIndependentOfWhereTheCubeIs) {
    // Far from the origin the plane's d is large: it must be scaled with the points.
    engine::Handle g = cube({12345, -6789, 250}, 20);
    EXPECT_NEAR(builders::P_fncGroupVolume(eng, g), 8.0, 1e-6);
}

TEST_F(GeometryScene, GroupVolumeCountsOnlyTheGroupOrTheWholeScene) {
    engine::Handle a = cube({0, 0, 0}, 10);
    cube({1000, 0, 0}, 10);
    EXPECT_NEAR(builders::P_fncGroupVolume(eng, a), 1.0, 1e-9);
    // Whole scene: the centre of mass is (500, 0, 0), outside both, and the cones
    // count unsigned. Per cube: the x faces (1 m2 each) at 50.5 m and 49.5 m give
    // 100/3, the four others at 0.5 m give 4 x 1/6; 34 a cube, 68 in all.
    EXPECT_NEAR(builders::P_fncGroupVolume(eng, 0), 68.0, 1e-6);
    EXPECT_EQ(builders::P_fncGroupVolume(eng, eng.group_create("empty")), 0.0);
}

TEST_F(GeometryScene, CornerAreaAndRadius) {
    // edges 30 (first to second) and 40 (second to third): 600
    engine::Handle t = polygon({{0, 0, 0}, {0, 30, 0}, {40, 30, 0}});
    EXPECT_NEAR(builders::P_fncPolygonCornerArea(eng, t), 600.0, 1e-9);
    // square about the origin, corner (10,10): sqrt(200) = 14.142 units, 1.4142 m
    engine::Handle sq = polygon({{10, 10, 0}, {10, -10, 0}, {-10, -10, 0}, {-10, 10, 0}});
    EXPECT_NEAR(builders::P_fncPolygonCornerRadius(eng, sq), std::sqrt(200.0) * 0.1, 1e-12);
    EXPECT_NEAR(builders::P_fncPolygonCornerArea(eng, sq), 20.0 * 20.0 * 0.5, 1e-9);
    EXPECT_EQ(builders::P_fncPolygonCornerArea(eng, 0), 0.0);
    EXPECT_EQ(builders::P_fncPolygonCornerRadius(eng, 0), 0.0);
}

}  // namespace

// The renderer's matrices against the engine's own projection and picking: what
// is drawn at a pixel must be what a click there picks.
#include <gtest/gtest.h>

#include <cmath>

#include "engine/Engine.h"
#include "render/ViewMath.h"

namespace {

using engine::Point3;

struct CameraCase {
    Point3 eye, dir, up;
    double zoom;
    int w, h;
};

class ProjectionAgreement : public ::testing::TestWithParam<CameraCase> {};

TEST_P(ProjectionAgreement, WindowPositionsMatchTheEngine) {
    const CameraCase c = GetParam();
    engine::Engine e;
    e.engine_load_world("", "", "", 0);
    const auto cam = e.camera_get_default_camera();
    ASSERT_EQ(e.camera_set_location(cam, c.eye), 0);
    ASSERT_EQ(e.camera_set_axis_system(cam, c.dir, c.up), 0);
    ASSERT_EQ(e.camera_set_zoom(cam, c.zoom), 0);
    e.set_window_size(c.w, c.h);

    int compared = 0;
    for (int i = -3; i <= 3; ++i)
        for (int j = -3; j <= 3; ++j)
            for (int k = 1; k <= 3; ++k) {
                // Points spread in front of the eye.
                const Point3 p = c.eye + e.camera().direction * (100.0 * k) +
                                 Point3{7.0 * i, 5.0 * j, 3.0 * (i - j)};
                double ex = 0, ey = 0, rx = 0, ry = 0;
                const int r = e.engine_3D_point_to_2D(p, ex, ey);
                if (r == 3) continue;
                ASSERT_TRUE(render::projectToWindow(e.camera(), c.w, c.h, p, rx, ry));
                EXPECT_NEAR(rx, ex, 1e-6 * (1 + std::fabs(ex)));
                EXPECT_NEAR(ry, ey, 1e-6 * (1 + std::fabs(ey)));
                ++compared;
            }
    EXPECT_GT(compared, 100);
}

TEST_P(ProjectionAgreement, PickingRayLandsOnItsPixel) {
    const CameraCase c = GetParam();
    engine::Engine e;
    e.engine_load_world("", "", "", 0);
    const auto cam = e.camera_get_default_camera();
    ASSERT_EQ(e.camera_set_location(cam, c.eye), 0);
    ASSERT_EQ(e.camera_set_axis_system(cam, c.dir, c.up), 0);
    ASSERT_EQ(e.camera_set_zoom(cam, c.zoom), 0);
    e.set_window_size(c.w, c.h);
    for (double px : {0.0, 0.5, c.w * 0.25, c.w * 0.5, c.w - 1.0})
        for (double py : {0.0, c.h * 0.3, c.h * 0.5, c.h - 0.5}) {
            Point3 o, d;
            e.pixel_ray(px, py, o, d);
            double x = 0, y = 0;
            ASSERT_TRUE(render::projectToWindow(e.camera(), c.w, c.h, o + d * 250.0, x, y));
            EXPECT_NEAR(x, px, 1e-6);
            EXPECT_NEAR(y, py, 1e-6);
        }
}

INSTANTIATE_TEST_SUITE_P(
    Cameras, ProjectionAgreement,
    ::testing::Values(CameraCase{{0, 0, 100}, {0, 0, -1}, {0, 1, 0}, 24, 800, 600},
                      CameraCase{{10, -20, 5}, {1, 0, 0}, {0, 0, 1}, 24, 640, 480},
                      CameraCase{{-5, 3, 40}, {1, 1, -1}, {0, 0, 1}, 24, 300, 700},
                      // the long lens that reads as orthographic
                      CameraCase{{0, -2400, 0}, {0, 1, 0}, {0, 0, 1}, 1, 800, 600},
                      // far from the origin, a mine grid in decimetres
                      CameraCase{
                          {5.0e7, 7.1e7, 3000}, {0.3, -0.8, -0.5}, {0, 0, 1}, 24, 1024, 768}));

TEST(Projection, HorizontalFieldOfViewFollowsTheZoom) {
    // tan(half angle) = 0.5 * zoom / 24: zoom 24 sees half the distance each side.
    for (double zoom : {24.0, 12.0, 1.0}) {
        const auto p = render::projection(zoom, 800, 400, 1, 100, render::DepthMode::Standard);
        const double halfWidthAtOne = 0.5 * zoom / 24;
        EXPECT_NEAR(p.at(0, 0), 1 / halfWidthAtOne, 1e-12);
        // the vertical comes from the aspect: half as tall a window, half the tangent
        EXPECT_NEAR(p.at(1, 1), 1 / (halfWidthAtOne * 0.5), 1e-12);
    }
}

double depthOf(const render::Mat4& p, double eyeDistance) {
    const double z = -eyeDistance;
    const double clipZ = p.at(2, 2) * z + p.at(2, 3);
    const double clipW = p.at(3, 2) * z;
    return clipZ / clipW;
}

TEST(Projection, ReversedDepthPutsNearAtOneAndFarAtZero) {
    const auto p = render::projection(24, 100, 100, 2, 1000, render::DepthMode::Reversed);
    EXPECT_NEAR(depthOf(p, 2), 1.0, 1e-12);
    EXPECT_NEAR(depthOf(p, 1000), 0.0, 1e-12);
    EXPECT_GT(depthOf(p, 10), depthOf(p, 11));
    const auto inf = render::projection(24, 100, 100, 2, HUGE_VAL, render::DepthMode::Reversed);
    EXPECT_NEAR(depthOf(inf, 2), 1.0, 1e-12);
    EXPECT_NEAR(depthOf(inf, 2e9), 0.0, 1e-8);
}

TEST(Projection, StandardDepthPutsNearAtMinusOneAndFarAtOne) {
    const auto p = render::projection(24, 100, 100, 0.5, 300, render::DepthMode::Standard);
    EXPECT_NEAR(depthOf(p, 0.5), -1.0, 1e-12);
    EXPECT_NEAR(depthOf(p, 300), 1.0, 1e-12);
}

TEST(DepthRange, CutOffIsNearAndFogDepthIsFar) {
    engine::CameraState cam;
    cam.distanceFromEye = 25;
    engine::FogState fog;
    fog.on = true;
    fog.farDepth = 5000;
    auto r = render::depthRangeOf(cam, fog);
    EXPECT_EQ(r.nearPlane, 25);
    EXPECT_EQ(r.farPlane, 5000);
    fog.on = false;  // picking then sees to infinity, and so does the picture
    EXPECT_TRUE(std::isinf(render::depthRangeOf(cam, fog).farPlane));
}

TEST(DepthRange, UnusablePlanesAreMadeUsable) {
    engine::CameraState cam;
    engine::FogState fog;
    fog.on = true;
    cam.distanceFromEye = 0;  // a zero near plane has no perspective depth
    fog.farDepth = 100;
    EXPECT_GT(render::depthRangeOf(cam, fog).nearPlane, 0);
    cam.distanceFromEye = 500;  // far in front of near
    auto r = render::depthRangeOf(cam, fog);
    EXPECT_GT(r.farPlane, r.nearPlane);
    cam.distanceFromEye = std::nan("");
    r = render::depthRangeOf(cam, fog);
    EXPECT_TRUE(std::isfinite(r.nearPlane));
    EXPECT_GT(r.nearPlane, 0);
}

TEST(ViewRotation, LooksDownMinusZWithUpAlongY) {
    const auto v = render::viewRotation({0, 0, -1}, {0, 1, 0});
    // world +x is to the right, +y up, and the line of sight is eye -z
    EXPECT_NEAR(v.at(0, 0), 1, 1e-12);
    EXPECT_NEAR(v.at(1, 1), 1, 1e-12);
    EXPECT_NEAR(v.at(2, 2), 1, 1e-12);
}

TEST(ViewRotation, UpAlongTheLineOfSightStillGivesAFrame) {
    const auto v = render::viewRotation({0, 0, -1}, {0, 0, 1});
    for (int r = 0; r < 3; ++r) {
        const double len =
            std::sqrt(v.at(r, 0) * v.at(r, 0) + v.at(r, 1) * v.at(r, 1) + v.at(r, 2) * v.at(r, 2));
        EXPECT_NEAR(len, 1, 1e-12) << "row " << r;
    }
}

}  // namespace

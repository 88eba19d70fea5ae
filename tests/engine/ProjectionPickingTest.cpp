// Camera, projection and picking at a camera whose pixels are worked out by hand.
//
// Camera at the origin looking along +x with z up, window 800 x 600, zoom 24:
// tan(half field) = 0.5, so the focal length is 400 / 0.5 = 800 pixels; screen
// right is -y. A point (X, Y, Z) with X > 0 lands at x = 400 - 800 Y / X,
// y = 300 - 800 Z / X.

#include <random>

#include "engine/EngineTestUtil.h"

using namespace enginetest;
using engine::Plane;

namespace {

class Projection : public ::testing::Test {
protected:
    void SetUp() override {
        cam = e.camera_get_default_camera();
        ASSERT_NE(cam, 0u);
        ASSERT_EQ(e.camera_set_location(cam, {0, 0, 0}), 0);
        ASSERT_EQ(e.camera_set_axis_system(cam, {1, 0, 0}, {0, 0, 1}), 0);
        ASSERT_EQ(e.camera_set_zoom(cam, 24), 0);
        ASSERT_EQ(e.camera_set_distance_from_eye(cam, 1), 0);
        e.set_window_size(800, 600);
    }
    Engine e;
    Handle cam = 0;
};

TEST_F(Projection, PixelsAtAKnownCamera) {
    double x = 0, y = 0;
    EXPECT_EQ(e.engine_3D_point_to_2D({10, 0, 0}, x, y), 0);
    EXPECT_DOUBLE_EQ(x, 400);
    EXPECT_DOUBLE_EQ(y, 300);
    EXPECT_EQ(e.engine_3D_point_to_2D({10, -2, 1}, x, y), 0);
    EXPECT_DOUBLE_EQ(x, 560);
    EXPECT_DOUBLE_EQ(y, 220);
    EXPECT_EQ(e.engine_3D_point_to_2D({10, 5, 0}, x, y), 0);  // left edge
    EXPECT_DOUBLE_EQ(x, 0);
    EXPECT_EQ(e.engine_3D_point_to_2D({10, 6, 0}, x, y), 2);  // off the window
    EXPECT_DOUBLE_EQ(x, -80);
    EXPECT_EQ(e.engine_3D_point_to_2D({-1, 0, 0}, x, y), 3);   // behind
    EXPECT_EQ(e.engine_3D_point_to_2D({0.5, 0, 0}, x, y), 1);  // nearer than the cut-off
    e.engine_set_fog(true, 100, 0);
    EXPECT_EQ(e.engine_3D_point_to_2D({200, 0, 0}, x, y), 1);  // beyond the fog
    EXPECT_EQ(e.engine_3D_point_to_2D({99, 0, 0}, x, y), 0);
    // A long lens: zoom 1 narrows the field 24 times.
    e.engine_set_fog(false, 100, 0);
    ASSERT_EQ(e.camera_set_zoom(cam, 1), 0);
    EXPECT_EQ(e.engine_3D_point_to_2D({1000, -1, 0}, x, y), 0);
    EXPECT_DOUBLE_EQ(x, 400 + 19200.0 / 1000);
}

TEST_F(Projection, ProjectAndRayAreInverses) {
    // A camera in a general pose; points projected and cast back lie on the ray.
    ASSERT_EQ(e.camera_set_location(cam, {120, -40, 35}), 0);
    Point3 dir{-0.6, 0.7, -0.3}, up{0.1, 0.2, 1};
    ASSERT_EQ(e.camera_set_axis_system(cam, dir, up), 0);
    ASSERT_EQ(e.camera_set_zoom(cam, 13), 0);
    e.set_window_size(1024, 700);
    const Point3 d = e.camera_get_direction(cam), u = e.camera_get_up(cam);
    EXPECT_NEAR(engine::length(d), 1, 1e-12);
    EXPECT_NEAR(engine::dot(d, u), 0, 1e-12);
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> px(0, 1024), py(0, 700), dist(2, 500);
    for (int i = 0; i < 200; ++i) {
        const double x0 = px(rng), y0 = py(rng);
        Point3 o, r;
        e.pixel_ray(x0, y0, o, r);
        EXPECT_NEAR(engine::length(r), 1, 1e-12);
        const Point3 p = o + r * dist(rng);
        double x = 0, y = 0;
        ASSERT_EQ(e.engine_3D_point_to_2D(p, x, y), 0);
        EXPECT_NEAR(x, x0, 1e-7);
        EXPECT_NEAR(y, y0, 1e-7);
    }
}

TEST_F(Projection, PickingAPointsPixelGivesThePointBack) {
    // 3D to 2D to 3D through picking, on a tilted face in front of a turned camera.
    ASSERT_EQ(e.camera_set_location(cam, {-3, 2, 1}), 0);
    ASSERT_EQ(e.camera_set_axis_system(cam, {1, -0.2, -0.1}, {0, 0, 1}), 0);
    const Handle face = addPolygon(e, {{10, 3, 3}, {12, -3, 3}, {12, -3, -3}, {10, 3, -3}});
    engine::Plane pl;
    ASSERT_EQ(e.polygon_get_plane(face, pl), 0);
    ASSERT_LT(engine::dot(pl.n, e.camera_get_direction(cam)), 0);  // facing the camera
    for (const Point3 p : {Point3{11, 0, 0}, Point3{10.5, 1.5, 2.5}, Point3{11.9, -2.7, -1}}) {
        double x = 0, y = 0;
        ASSERT_EQ(e.engine_3D_point_to_2D(p, x, y), 0);
        const engine::PickHit hit = e.engine_2D_point_to_3D(x, y);
        EXPECT_EQ(hit.polygon, face);
        expectNear(hit.point, p, 1e-9);
        EXPECT_NEAR(hit.distance, engine::length(p - Point3{-3, 2, 1}), 1e-9);
    }
}

TEST_F(Projection, PointOnPlaneAndSphere) {
    Point3 out;
    ASSERT_EQ(e.engine_2D_point_to_3D_point_on_plane(400, 300, Plane{{1, 0, 0}, -5}, out), 0);
    expectNear(out, {5, 0, 0});
    // A plane behind the eye or along the ray is not met.
    EXPECT_EQ(e.engine_2D_point_to_3D_point_on_plane(400, 300, Plane{{1, 0, 0}, 5}, out), -1);
    EXPECT_EQ(e.engine_2D_point_to_3D_point_on_plane(400, 300, Plane{{0, 0, 1}, 5}, out), -1);
    ASSERT_EQ(e.engine_2D_point_to_3D_point_on_sphere(400, 300, {10, 0, 0}, 2, out), 0);
    expectNear(out, {8, 0, 0});
    // The eye inside the sphere: where the ray leaves it.
    ASSERT_EQ(e.engine_2D_point_to_3D_point_on_sphere(400, 300, {0, 0, 0}, 3, out), 0);
    expectNear(out, {3, 0, 0});
    EXPECT_EQ(e.engine_2D_point_to_3D_point_on_sphere(400, 300, {10, 5, 0}, 2, out), -1);
}

TEST_F(Projection, PicksTheNearestFrontFace) {
    const Handle nearSq = addSquareFacingMinusX(e, {10, 0, 0});
    const Handle farSq = addSquareFacingMinusX(e, {20, 0, 0});
    engine::PickHit hit = e.engine_2D_point_to_3D(400, 300);
    EXPECT_EQ(hit.polygon, nearSq);
    expectNear(hit.point, {10, 0, 0});
    EXPECT_DOUBLE_EQ(hit.distance, 10);
    // y = -0.9 at x = 10 is inside the near square (pixel 400 + 72); -1.1 is not.
    EXPECT_EQ(e.engine_2D_point_to_3D(472, 300).polygon, nearSq);
    hit = e.engine_2D_point_to_3D(488, 300);  // y = -1.1 at 10, -2.2 at 20: outside both
    EXPECT_EQ(hit.polygon, 0u);
    // Seen from behind, a face is not picked: the far one shows through.
    ASSERT_EQ(e.polygon_flip_visible_side(nearSq), 0);
    EXPECT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, farSq);
    ASSERT_EQ(e.polygon_flip_visible_side(nearSq), 0);
    // Disabled polygons are not picked.
    ASSERT_EQ(e.polygon_disable(nearSq), 0);
    EXPECT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, farSq);
    ASSERT_EQ(e.polygon_disable(farSq), 0);
    EXPECT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, 0u);
    ASSERT_EQ(e.polygon_enable(nearSq), 0);
    EXPECT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, nearSq);
}

TEST_F(Projection, PickFollowsChangesWithoutAskingForARebuild) {
    const Handle sq = addSquareFacingMinusX(e, {10, 0, 0});
    ASSERT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, sq);
    ASSERT_EQ(e.polygon_move(sq, {0, 3, 0}), 0);  // centre now at y = 3: pixel 160
    EXPECT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, 0u);
    EXPECT_EQ(e.engine_2D_point_to_3D(160, 300).polygon, sq);
    // Moving one point by its handle is seen too: the top left corner (10, 4, 1)
    // pulled out to y = 8 makes the face cover y = 4.5 at z = 0 (pixel 40).
    EXPECT_EQ(e.engine_2D_point_to_3D(40, 300).polygon, 0u);
    const Handle first = e.polygon_get_first_point(sq);
    Point3 p;
    ASSERT_EQ(e.point_get_xyz(first, p), 0);
    expectNear(p, {10, 4, 1});
    ASSERT_EQ(e.point_set_xyz(first, {10, 8, 1}), 0);
    EXPECT_EQ(e.engine_2D_point_to_3D(40, 300).polygon, sq);
    EXPECT_EQ(e.engine_2D_point_to_3D(160, 300).polygon, sq);
    // Deleted and newly added polygons.
    ASSERT_EQ(e.polygon_delete(sq), 0);
    EXPECT_EQ(e.engine_2D_point_to_3D(160, 300).polygon, 0u);
    const Handle again = addSquareFacingMinusX(e, {30, 0, 0});
    const engine::PickHit hit = e.engine_2D_point_to_3D(400, 300);
    EXPECT_EQ(hit.polygon, again);
    EXPECT_DOUBLE_EQ(hit.distance, 30);
}

TEST_F(Projection, CutOffAndFogLimitPicking) {
    const Handle sq = addSquareFacingMinusX(e, {10, 0, 0});
    ASSERT_EQ(e.camera_set_distance_from_eye(cam, 12), 0);
    EXPECT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, 0u);
    ASSERT_EQ(e.camera_set_distance_from_eye(cam, 1), 0);
    e.engine_set_fog(true, 9, 0);
    EXPECT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, 0u);
    e.engine_set_fog(false, 9, 0);
    EXPECT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, sq);
}

TEST_F(Projection, CollisionsCountFrontsAndBacks) {
    addSquareFacingMinusX(e, {10, 0, 0});  // met from the front
    const Handle back = addSquareFacingMinusX(e, {20, 0, 0});
    ASSERT_EQ(e.polygon_flip_visible_side(back), 0);  // met from behind
    const Handle off = addSquareFacingMinusX(e, {25, 0, 0});
    EXPECT_EQ(e.engine_get_number_of_collisions({0, 0, 0}, {30, 0, 0}), 3);
    EXPECT_EQ(e.engine_get_number_of_collisions({0, 0, 0}, {15, 0, 0}), 1);
    EXPECT_EQ(e.engine_get_number_of_collisions({0, 5, 0}, {30, 5, 0}), 0);
    ASSERT_EQ(e.polygon_disable(off), 0);
    EXPECT_EQ(e.engine_get_number_of_collisions({0, 0, 0}, {30, 0, 0}), 2);
    e.engine_ignore_back_faced_polygons_for_collision_detection(true);
    EXPECT_EQ(e.engine_get_number_of_collisions({0, 0, 0}, {30, 0, 0}), 1);
    // From the other end the first square is the back one.
    EXPECT_EQ(e.engine_get_number_of_collisions({30, 0, 0}, {0, 0, 0}), 1);
    EXPECT_EQ(e.engine_get_number_of_collisions({5, 0, 0}, {5, 0, 0}), 0);
}

TEST_F(Projection, CameraRefusesBadValues) {
    EXPECT_EQ(e.camera_set_axis_system(cam, {0, 0, 0}, {0, 0, 1}), -1);
    EXPECT_EQ(e.camera_set_axis_system(cam, {0, 0, 2}, {0, 0, 1}), -1);  // up along the view
    EXPECT_EQ(e.camera_set_zoom(cam, 0), -1);
    EXPECT_EQ(e.camera_set_zoom(cam + 1, 5), -1);
    EXPECT_EQ(e.camera_get_zoom(cam), 24);
    expectNear(e.camera_get_direction(cam), {1, 0, 0});
    // Up is squared to the direction.
    ASSERT_EQ(e.camera_set_axis_system(cam, {0, 2, 0}, {0, 1, 1}), 0);
    expectNear(e.camera_get_direction(cam), {0, 1, 0});
    expectNear(e.camera_get_up(cam), {0, 0, 1});
}

}  // namespace

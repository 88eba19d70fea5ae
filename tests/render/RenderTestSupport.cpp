#include "render/RenderTestSupport.h"

#include <algorithm>
#include <cstdlib>

namespace rendertest {

render::OffscreenRenderer* offscreen(std::string* why) {
    static std::string error;
    static render::OffscreenRenderer* r = [] {
        auto* o = new render::OffscreenRenderer;  // lives as long as the program
        if (!o->start(&error)) {
            delete o;
            return static_cast<render::OffscreenRenderer*>(nullptr);
        }
        return o;
    }();
    if (why) *why = error;
    return r;
}

std::unique_ptr<engine::Engine> emptyWorld() {
    auto e = std::make_unique<engine::Engine>();
    e->engine_load_world("", "", "", 0);
    return e;
}

engine::Handle addPolygon(engine::Engine& e, std::initializer_list<engine::Point3> pts,
                          engine::Rgb fill) {
    const engine::Handle p = e.polygon_create();
    for (const auto& q : pts) e.polygon_add_point(p, q);
    EXPECT_EQ(e.engine_add_polygon(p), 0) << "the engine refused a test polygon";
    e.polygon_set_color_fill(p, fill);
    return p;
}

engine::Handle addSquare(engine::Engine& e, double cx, double cy, double z0, double h,
                         engine::Rgb fill, bool facingUp) {
    if (facingUp)
        return addPolygon(e,
                          {{cx + h, cy + h, z0},
                           {cx + h, cy - h, z0},
                           {cx - h, cy - h, z0},
                           {cx - h, cy + h, z0}},
                          fill);
    return addPolygon(
        e, {{cx - h, cy + h, z0}, {cx - h, cy - h, z0}, {cx + h, cy - h, z0}, {cx + h, cy + h, z0}},
        fill);
}

void aimCamera(engine::Engine& e, engine::Point3 eye, engine::Point3 dir, engine::Point3 up,
               double nearPlane) {
    const engine::Handle cam = e.camera_get_default_camera();
    ASSERT_EQ(e.camera_set_location(cam, eye), 0);
    ASSERT_EQ(e.camera_set_axis_system(cam, dir, up), 0);
    ASSERT_EQ(e.camera_set_zoom(cam, 24.0), 0);
    ASSERT_EQ(e.camera_set_distance_from_eye(cam, nearPlane), 0);
    e.engine_set_fog(false, 4.0e6, nearPlane);
}

render::Image draw(engine::Engine& e, int w, int h) {
    e.set_window_size(w, h);
    auto* r = offscreen();
    if (!r) {
        ADD_FAILURE() << "no renderer";
        return {};
    }
    // A new test's engine may sit where the last one was: start its scene afresh.
    static const ::testing::TestInfo* lastTest = nullptr;
    static const engine::Engine* lastEngine = nullptr;
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    if (test != lastTest || &e != lastEngine) r->resetScene();
    lastTest = test;
    lastEngine = &e;
    auto img = r->render(e, w, h, e.take_queued_texts());
    if (!img) {
        ADD_FAILURE() << "the renderer drew nothing";
        return {};
    }
    return *img;
}

int colourDistance(engine::Rgb a, engine::Rgb b) {
    return std::max({std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b)});
}

}  // namespace rendertest

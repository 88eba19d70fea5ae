// Lights baked into polygons: grey = round(255 / 4 x (ambient + diffuse max(0, n.L)
// + specular max(0, r.v)^shining)), each channel kept within 0..255.

#include <cmath>

#include "engine/EngineTestUtil.h"

using namespace enginetest;
using engine::Rgb;

namespace {

constexpr int kDirectional = 58, kPoint = 59;

struct Scene {
    Engine e;
    Handle up = 0, down = 0, side = 0, light = 0;
    Scene() {
        // Unit triangles round the origin facing +z, -z and +x.
        up = addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
        down = addPolygon(e, {{1, 1, -2}, {0, 1, -2}, {0, 0, -2}});
        side = addPolygon(e, {{3, 0, 1}, {3, 1, 1}, {3, 1, 0}});
        light = e.light_create("Light", {0, 0, 100});
        e.light_point_at(light, {0, 0, 0});
        e.light_set_type_of_light(light, kDirectional);
        e.light_set_ambient(light, 0.5);
        e.light_set_diffuse(light, 1.0);
        e.light_set_specular(light, 0);
    }
    int grey(Handle p) const {
        const auto l = e.polygon_get_light(p);
        EXPECT_TRUE(l.has_value());
        if (!l) return -1;
        EXPECT_EQ(l->r, l->g);
        EXPECT_EQ(l->g, l->b);
        return l->r;
    }
};

TEST(EngineLight, DirectionalAmbientAndDiffuse) {
    Scene s;
    ASSERT_EQ(s.e.light_activate(s.light, 0), 0);
    EXPECT_EQ(s.grey(s.up), 96);    // 63.75 x (0.5 + 1) = 95.6
    EXPECT_EQ(s.grey(s.down), 32);  // 63.75 x 0.5 = 31.9
    EXPECT_EQ(s.grey(s.side), 32);  // n.L = 0
}

TEST(EngineLight, SecondPassAddsAndClamps) {
    Scene s;
    ASSERT_EQ(s.e.light_activate(s.light, 0), 0);
    // From below, no ambient: the down face gains 63.75, the up face nothing.
    s.e.light_set_location(s.light, {0, 0, -100});
    s.e.light_set_ambient(s.light, 0);
    ASSERT_EQ(s.e.light_activate(s.light, 1), 0);
    EXPECT_EQ(s.grey(s.up), 96);
    EXPECT_EQ(s.grey(s.down), 32 + 64);
    // Strong ambient saturates at 255 when added.
    s.e.light_set_ambient(s.light, 3);
    ASSERT_EQ(s.e.light_activate(s.light, 1), 0);
    EXPECT_EQ(s.grey(s.up), 255);
    // Flag 0 replaces what was there.
    s.e.light_set_ambient(s.light, 0);
    ASSERT_EQ(s.e.light_activate(s.light, 0), 0);
    EXPECT_EQ(s.grey(s.up), 0);
    EXPECT_EQ(s.grey(s.down), 64);
}

TEST(EngineLight, PointLightWithSpecular) {
    Scene s;
    // A point light on the side face's normal through its centre (3, 2/3, 2/3),
    // the camera at the light: n.L = 1 and r.v = 1.
    const Point3 c{3, 2.0 / 3, 2.0 / 3};
    s.e.light_set_type_of_light(s.light, kPoint);
    s.e.light_set_location(s.light, {c.x + 10, c.y, c.z});
    s.e.light_set_ambient(s.light, 0.2);
    s.e.light_set_diffuse(s.light, 1.0);
    s.e.light_set_specular(s.light, 1.5);
    s.e.light_set_specular_shining(s.light, 2);
    const Handle cam = s.e.camera_get_default_camera();
    s.e.camera_set_location(cam, {c.x + 10, c.y, c.z});
    ASSERT_EQ(s.e.light_activate(s.light, 0), 0);
    EXPECT_EQ(s.grey(s.side), 172);  // 63.75 x (0.2 + 1 + 1.5) = 172.1
    // The up face sees the light low over its edge, from its centre.
    const Point3 uc{1.0 / 3, 2.0 / 3, 0};
    Point3 L = Point3{c.x + 10, c.y, c.z} - uc;
    const double nl = L.z / engine::length(L);
    // Viewer and light lie together, so r.v = cos(2 angle) = 2 nl^2 - 1 (here < 0).
    const double rv = std::max(0.0, 2 * nl * nl - 1);
    const int expected = int(std::lround(63.75 * (0.2 + nl + 1.5 * rv * rv)));
    EXPECT_EQ(s.grey(s.up), expected);
}

TEST(EngineLight, SkipsUnlitDisabledAndOtherGroups) {
    Scene s;
    ASSERT_EQ(s.e.polygon_set_brightness(s.side, 0), 0);
    ASSERT_EQ(s.e.polygon_disable(s.down), 0);
    ASSERT_EQ(s.e.light_activate(s.light, 0), 0);
    EXPECT_FALSE(s.e.polygon_get_light(s.side).has_value());
    EXPECT_FALSE(s.e.polygon_get_light(s.down).has_value());
    EXPECT_EQ(s.grey(s.up), 96);
    // Only the entity (and its descendants) when one is set.
    Engine& e = s.e;
    ASSERT_EQ(e.polygon_enable(s.down), 0);
    const Handle g = e.group_create("G"), c = e.group_create("C");
    ASSERT_EQ(e.group_set_father_group(c, g), 0);
    ASSERT_EQ(e.polygon_set_group(s.down, c), 0);
    ASSERT_EQ(e.polygon_remove_light(s.up), 0);
    ASSERT_EQ(e.light_set_entity_to_light(s.light, g), 0);
    ASSERT_EQ(e.light_activate(s.light, 0), 0);
    EXPECT_EQ(s.grey(s.down), 32);
    EXPECT_FALSE(e.polygon_get_light(s.up).has_value());
    // Removing works on the same set.
    ASSERT_EQ(e.polygon_set_light(s.up, {1, 2, 3}), 0);
    ASSERT_EQ(e.light_remove_light(s.light), 0);
    EXPECT_FALSE(e.polygon_get_light(s.down).has_value());
    EXPECT_EQ(e.polygon_get_light(s.up), (Rgb{1, 2, 3}));
    ASSERT_EQ(e.light_set_entity_to_light(s.light, 0), 0);
    ASSERT_EQ(e.light_remove_light(s.light), 0);
    EXPECT_FALSE(e.polygon_get_light(s.up).has_value());
}

TEST(EngineLight, SetLightKeepsTheLowByte) {
    Engine e;
    const Handle p = addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    EXPECT_FALSE(e.polygon_get_light(p).has_value());
    ASSERT_EQ(e.polygon_set_light(p, {300, 255, -1}), 0);
    EXPECT_EQ(e.polygon_get_light(p), (Rgb{44, 255, 255}));
    EXPECT_EQ(e.polygon_get_brightness(p), 100);
}

TEST(EngineLight, BadLightHandles) {
    Scene s;
    const Handle g = s.e.group_create("G");
    EXPECT_EQ(s.e.light_activate(0, 0), -1);
    EXPECT_EQ(s.e.light_activate(g, 0), -1);
    EXPECT_EQ(s.e.light_set_ambient(s.light + 1, 1), -1);
    EXPECT_EQ(s.e.light_set_entity_to_light(s.light, s.up), -1);  // a polygon is no group
    EXPECT_EQ(s.e.light_set_location(s.light, {NAN, 0, 0}), -1);
    // An entity deleted since it was set lights nothing.
    ASSERT_EQ(s.e.light_set_entity_to_light(s.light, g), 0);
    ASSERT_EQ(s.e.group_ungroup(g), 0);
    EXPECT_EQ(s.e.light_activate(s.light, 0), -1);
    EXPECT_FALSE(s.e.polygon_get_light(s.up).has_value());
}

}  // namespace

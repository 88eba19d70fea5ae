#include "render/DemoScene.h"

#include <algorithm>
#include <cmath>

namespace render {

using engine::Handle;
using engine::Point3;
using engine::Rgb;

namespace {

Point3 unit(Point3 v) {
    const double l = engine::length(v);
    return l > 0 ? v * (1 / l) : v;
}

// Light towards the scene from high in the south-west, with some ambient.
Rgb sunLight(Point3 normal) {
    const Point3 toSun = unit(Point3{-0.45, -0.6, 0.75});
    const double k = 0.38 + 0.62 * std::max(0.0, engine::dot(unit(normal), toSun));
    const int v = static_cast<int>(std::lround(255 * std::min(k, 1.0)));
    return {v, v, v};
}

bool addQuad(engine::Engine& e, Handle group, Point3 c, Point3 a, Point3 b, Rgb colour,
             int translucent) {
    const Handle p = e.polygon_create();
    if (p == 0) return false;
    // Clockwise seen from the side a x b points to.
    for (Point3 q : {c + a + b, c + a - b, c - a - b, c - a + b}) e.polygon_add_point(p, q);
    if (e.engine_add_polygon(p) != 0) {
        e.polygon_delete(p);
        return false;
    }
    e.polygon_set_color_fill(p, colour);
    if (translucent) e.polygon_set_translucent(p, translucent);
    e.polygon_set_light(p, sunLight(engine::cross(a, b)));
    if (group) e.polygon_set_group(p, group);
    return true;
}

}  // namespace

int addShadedBox(engine::Engine& e, Handle group, Point3 c, Point3 ex, Point3 ey, Point3 ez,
                 Rgb colour, int translucent) {
    int n = 0;
    n += addQuad(e, group, c + ez, ex, ey, colour, translucent);
    n += addQuad(e, group, c - ez, ex, ey * -1, colour, translucent);
    n += addQuad(e, group, c + ex, ey, ez, colour, translucent);
    n += addQuad(e, group, c - ex, ey * -1, ez, colour, translucent);
    n += addQuad(e, group, c + ey, ex * -1, ez, colour, translucent);
    n += addQuad(e, group, c - ey, ex, ez, colour, translucent);
    return n;
}

namespace {

// A straight drive or ramp leg from a to b, width w and height h, as a box.
void addDrive(engine::Engine& e, Handle group, Point3 a, Point3 b, double w, double h, Rgb colour) {
    const Point3 along = b - a;
    const Point3 t = unit(along);
    Point3 s = engine::cross(t, Point3{0, 0, 1});
    if (engine::length(s) < 1e-9) s = {1, 0, 0};
    s = unit(s);
    const Point3 u = engine::cross(s, t);
    addShadedBox(e, group, (a + b) * 0.5, s * (w / 2), along * 0.5, u * (h / 2), colour);
}

}  // namespace

Handle buildDemoScene(engine::Engine& e) {
    if (e.engine_is_engine_empty() && e.engine_load_world("", "", "", 0) != 0) return 0;
    const Handle top = e.group_create("Demo Mine");
    if (top == 0) return 0;
    auto child = [&](const char* name) {
        const Handle g = e.group_create(name);
        e.group_set_father_group(g, top);
        return g;
    };
    // Laid out in metres, stored in decimetres, the program's unit.
    constexpr double kDm = 10.0;
    auto dm = [](Point3 p) { return p * kDm; };
    auto box = [&](Handle g, Point3 c, Point3 half, Rgb colour, int translucent = 0) {
        addShadedBox(e, g, dm(c), {half.x * kDm, 0, 0}, {0, half.y * kDm, 0}, {0, 0, half.z * kDm},
                     colour, translucent);
    };
    auto drive = [&](Handle g, Point3 a, Point3 b, double w, double h, Rgb colour) {
        addDrive(e, g, dm(a), dm(b), w * kDm, h * kDm, colour);
    };

    // Shaft with its headframe at the surface.
    const Handle shaft = child("Shaft");
    box(shaft, {-60, 40, -260}, {5, 5, 270}, {150, 150, 160});
    box(shaft, {-60, 40, 15}, {9, 9, 15}, {200, 60, 40});

    // Decline: a rectangular spiral from the portal down, 22 m a leg.
    const Handle decline = child("Decline");
    const Point3 corners[4] = {{0, 0, 0}, {120, 0, 0}, {120, 80, 0}, {0, 80, 0}};
    constexpr double kLegDrop = 22.0;
    Point3 from = corners[0];
    for (int leg = 0; leg < 22; ++leg) {
        Point3 to = corners[(leg + 1) % 4];
        to.z = -kLegDrop * (leg + 1);
        drive(decline, from, to, 6, 5, {110, 170, 220});
        from = to;
    }

    // Four levels leave the decline half way along its eastern legs, each with
    // crosscuts to a row of stopes.
    const Handle levels = child("Levels");
    const Handle stopes = child("Stopes");
    const Rgb stopeColours[4] = {{230, 70, 50}, {240, 150, 40}, {240, 220, 60}, {120, 200, 80}};
    const Rgb rock{170, 170, 170};
    for (int level = 1; level <= 4; ++level) {
        const int leg = 4 * level + 1;  // legs 5, 9, 13, 17 run north along x = 120
        const double lz = -kLegDrop * leg - kLegDrop / 2;
        drive(levels, {120, 40, lz}, {300, 40, lz}, 5, 5, rock);
        for (int k = 0; k < 4; ++k) {
            const double x = 180 + 30.0 * k;
            drive(levels, {x, 40, lz}, {x, 90, lz}, 4, 4, rock);
            // the top stope of the last row is drawn see-through
            box(stopes, {x, 110, lz + 18}, {10, 18, 22}, stopeColours[(level + k) % 4],
                level == 1 && k == 3 ? 1 : 0);
        }
    }

    // The surface outline and a north arrow as lines.
    const Rgb grey{90, 110, 90};
    const Point3 s0{-150, -100, 0}, s1{380, -100, 0}, s2{380, 220, 0}, s3{-150, 220, 0};
    e.line_draw3D(dm(s0), dm(s1), grey, grey);
    e.line_draw3D(dm(s1), dm(s2), grey, grey);
    e.line_draw3D(dm(s2), dm(s3), grey, grey);
    e.line_draw3D(dm(s3), dm(s0), grey, grey);
    const Rgb white{255, 255, 255};
    e.line_draw3D(dm({-120, 150, 0}), dm({-120, 200, 0}), white, white);
    e.line_draw3D(dm({-120, 200, 0}), dm({-128, 185, 0}), white, white);
    e.line_draw3D(dm({-120, 200, 0}), dm({-112, 185, 0}), white, white);
    return top;
}

}  // namespace render

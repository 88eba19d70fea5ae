#pragma once
// Reading back what a builder made: the group's polygons in join order, their
// points and front normals worked out from the points (not from the engine's plane).

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/SceneStore.h"

namespace buildertest {

using engine::Engine;
using engine::Handle;
using engine::Point3;

struct Poly {
    Handle handle = 0;
    std::vector<Point3> pts;
};

inline std::vector<Poly> polygonsOf(const Engine& e, Handle group) {
    std::vector<Poly> out;
    for (Handle p = e.group_get_first_polygon(group); p; p = e.group_get_next_polygon(group, p)) {
        Poly poly{p, {}};
        for (Handle pt = e.polygon_get_first_point(p); pt; pt = e.point_get_next_point(pt)) {
            Point3 q;
            e.point_get_xyz(pt, q);
            poly.pts.push_back(q);
        }
        out.push_back(poly);
    }
    return out;
}

inline Point3 mean(const std::vector<Point3>& pts) {
    Point3 m;
    for (const Point3& p : pts) m = m + p;
    return pts.empty() ? m : m * (1.0 / double(pts.size()));
}

inline Point3 unit(Point3 v) {
    const double l = engine::length(v);
    return l > 0 ? v * (1.0 / l) : v;
}

// Points run clockwise seen from the front: Newell's sum gives the back normal for
// counter-clockwise, so the front is its negative.
inline Point3 frontNormal(const std::vector<Point3>& pts) {
    Point3 n;
    for (std::size_t i = 0; i < pts.size(); ++i) {
        const Point3& a = pts[i];
        const Point3& b = pts[(i + 1) % pts.size()];
        n.x += (a.y - b.y) * (a.z + b.z);
        n.y += (a.z - b.z) * (a.x + b.x);
        n.z += (a.x - b.x) * (a.y + b.y);
    }
    return unit(n * -1.0);
}

// Free polygons still alive (made but never added, or left behind).
inline int freePolygons(const Engine& e) {
    const engine::SceneStore& st = e.store();
    int n = 0;
    for (std::uint32_t s = 1; s < st.polygonSlotEnd(); ++s)
        if (st.isAlive(s) && !st.inWorld(s)) ++n;
    return n;
}

#define EXPECT_POINT_NEAR(a, b, tol)               \
    do {                                           \
        const engine::Point3 pa_ = (a), pb_ = (b); \
        EXPECT_NEAR(pa_.x, pb_.x, tol) << "x";     \
        EXPECT_NEAR(pa_.y, pb_.y, tol) << "y";     \
        EXPECT_NEAR(pa_.z, pb_.z, tol) << "z";     \
    } while (0)

struct BuilderTest : ::testing::Test {
    BuilderTest() { e.engine_load_world("", "", "", 4); }
    std::string groupName(Handle g) const { return e.entity_get_name(g); }
    Engine e;
};

}  // namespace buildertest

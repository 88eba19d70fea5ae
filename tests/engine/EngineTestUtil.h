#pragma once
// Small helpers shared by the engine tests.

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "engine/Engine.h"

namespace enginetest {

using engine::Engine;
using engine::Handle;
using engine::Point3;

// A free polygon with the given points (not added).
inline Handle makePolygon(Engine& e, std::initializer_list<Point3> pts) {
    const Handle p = e.polygon_create();
    for (const Point3& q : pts) e.polygon_add_point(p, q);
    return p;
}

inline Handle makePolygon(Engine& e, const std::vector<Point3>& pts) {
    const Handle p = e.polygon_create();
    for (const Point3& q : pts) e.polygon_add_point(p, q);
    return p;
}

// A polygon added to the world; fails the test when it is refused.
inline Handle addPolygon(Engine& e, std::initializer_list<Point3> pts) {
    const Handle p = makePolygon(e, pts);
    EXPECT_EQ(e.engine_add_polygon(p), 0);
    return p;
}

inline std::vector<Point3> pointsOf(const Engine& e, Handle polygon) {
    std::vector<Point3> out;
    for (Handle h = e.polygon_get_first_point(polygon); h; h = e.point_get_next_point(h)) {
        Point3 p;
        e.point_get_xyz(h, p);
        out.push_back(p);
    }
    return out;
}

inline std::vector<Handle> walk(const Engine& e) {
    std::vector<Handle> out;
    for (Handle h = e.polygon_get_first_polygon(); h; h = e.polygon_get_next(h)) out.push_back(h);
    return out;
}

// A square of side 2 centred at c in the plane x = c.x, facing -x (towards a
// camera on the -x side looking along +x with z up).
inline Handle addSquareFacingMinusX(Engine& e, Point3 c) {
    // Seen from -x, screen right is -y: top left, top right, bottom right, bottom left.
    return addPolygon(e, {{c.x, c.y + 1, c.z + 1},
                          {c.x, c.y - 1, c.z + 1},
                          {c.x, c.y - 1, c.z - 1},
                          {c.x, c.y + 1, c.z - 1}});
}

inline void expectNear(Point3 a, Point3 b, double tol = 1e-9) {
    EXPECT_NEAR(a.x, b.x, tol);
    EXPECT_NEAR(a.y, b.y, tol);
    EXPECT_NEAR(a.z, b.z, tol);
}

}  // namespace enginetest

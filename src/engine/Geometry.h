#pragma once
// Polygon geometry on plain point lists: the plane rule, area, point in polygon,
// ray hits and the cut by a plane. No handles here, so the store, the picking
// index and the tests share one implementation.

#include <cstddef>
#include <vector>

#include "engine/Types.h"

namespace engine::geom {

// Twice the area vector out of the front of the polygon (points clockwise seen
// from the front): for a triangle (p3 - p1) x (p2 - p1), for more points the
// sum over the fan from p1, which is Newell's normal with that sign.
Point3 frontAreaVector(const Point3* p, std::size_t n);

// Length below which a polygon of this size counts as flat (zero area).
double degenerateTolerance(const Point3* p, std::size_t n);

// Unit front normal and d = -n.p through the mean of the points; false when
// the polygon has no area (the plane is then left as it was).
bool planeOf(const Point3* p, std::size_t n, Plane& plane);

double area(const Point3* p, std::size_t n);
std::size_t distinctCount(const Point3* p, std::size_t n);
bool allFinite(const Point3* p, std::size_t n);

// The rule for entering the world: three distinct points, finite, some area.
bool acceptable(const Point3* p, std::size_t n);

// Mean of the points; the centre of their bounding box.
Point3 mean(const Point3* p, std::size_t n);
Point3 boxCentre(const Point3* p, std::size_t n);

bool isConvex(const Point3* p, std::size_t n);
bool allOnOnePlane(const Point3* p, std::size_t n);
// Points equal to the one before (cyclically) or lying on the segment between their neighbours.
std::size_t redundantCount(const Point3* p, std::size_t n);

// q (taken onto the polygon's plane) inside the polygon; even-odd rule, in the
// projection that drops the normal's largest component.
bool containsProjected(const Point3* p, std::size_t n, Point3 normal, Point3 q);

// Ray o + t d against the polygon. On a hit within [tMin, tMax] gives t and
// whether the ray meets the front (travels against the front normal).
bool rayHit(const Point3* p, std::size_t n, Point3 o, Point3 d, double tMin, double tMax, double& t,
            bool& front);

// Cut by a plane: points on the positive side go to front, the rest to back,
// points on the plane to both. cut is false when the plane leaves the polygon
// wholly on one side (the lists are then empty).
struct SplitResult {
    bool cut = false;
    std::vector<Point3> front, back;
};
SplitResult split(const Point3* p, std::size_t n, const Plane& plane);

// Rotation of v about a coordinate axis (0 x, 1 y, 2 z) through centre,
// right-handed, by an angle in degrees.
Point3 rotateAboutAxis(Point3 v, Point3 centre, int axis, double degrees);

}  // namespace engine::geom

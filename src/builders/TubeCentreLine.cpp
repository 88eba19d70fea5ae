#include "builders/TubeCentreLine.h"

#include <string>
#include <string_view>
#include <vector>

#include "builders/Meshes.h"
#include "builders/Tubes.h"
#include "engine/Engine.h"

namespace builders {

using engine::Engine;
using engine::Handle;
using engine::Point3;

bool isTubeGroupName(std::string_view name) {
    return name == kExcavationGroup || name == kCylinderGroup || name == kWedgeGroup ||
           name == kDrillLineGroup || name == kStringGroup;
}

bool P_fncTubeCentreLine(const Engine& eng, Handle hPolygon, Point3& endA, Point3& endB,
                         bool& bolIsTube) {
    bolIsTube = false;
    const Handle group = eng.polygon_get_group(hPolygon);
    if (group == 0) return false;
    const std::string name = eng.entity_get_name(group);
    if (!isTubeGroupName(name)) return false;

    std::vector<Handle> polygons;
    std::vector<std::vector<Point3>> quads;
    for (Handle p = eng.group_get_first_polygon(group); p != 0;
         p = eng.group_get_next_polygon(group, p)) {
        polygons.push_back(p);
        if (eng.polygon_get_num_of_points(p) != 4) continue;
        std::vector<Point3> q;
        for (Handle pt = eng.polygon_get_first_point(p); pt != 0;
             pt = eng.point_get_next_point(pt)) {
            Point3 xyz;
            eng.point_get_xyz(pt, xyz);
            q.push_back(xyz);
        }
        quads.push_back(std::move(q));
    }
    std::size_t first = 0;
    if (name == kExcavationGroup && quads.size() >= 6) first = 2;  // the end faces

    Point3 a, b;
    std::size_t sides = 0;
    for (std::size_t i = first; i < quads.size(); ++i) {
        const auto& q = quads[i];
        a = a + q[0] + q[3];
        b = b + q[1] + q[2];
        ++sides;
    }
    if (sides > 0) {
        a = a * (0.5 / double(sides));
        b = b * (0.5 / double(sides));
    } else if (polygons.size() >= 2) {
        a = eng.polygon_get_center(polygons[0]);
        b = eng.polygon_get_center(polygons[1]);
    } else {
        return false;
    }
    endA = a;
    endB = b;
    bolIsTube = true;
    return true;
}

}  // namespace builders

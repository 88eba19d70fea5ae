#pragma once
// A polygon's corners in their order, as the exports read them.

#include <vector>

#include "engine/Engine.h"

namespace persistence {

inline std::vector<engine::Point3> polygonCorners(const engine::Engine& eng, engine::Handle h) {
    std::vector<engine::Point3> out;
    for (engine::Handle p = eng.polygon_get_first_point(h); p != 0;
         p = eng.point_get_next_point(p)) {
        engine::Point3 xyz;
        if (eng.point_get_xyz(p, xyz) != 0) continue;
        out.push_back(xyz);
    }
    return out;
}

}  // namespace persistence

#pragma once
// "Every polygon of the group": the group's own polygons, then those of its
// descendants depth first in creation order; group 0 stands for the whole world in
// its walk order. Disabled polygons are visited too: the caller decides.

#include <unordered_set>
#include <vector>

#include "engine/Engine.h"

namespace core {

// fn(hPolygon) returns false to stop the walk. Returns false when it was stopped.
template <class Fn>
bool forEachGroupPolygon(const engine::Engine& eng, engine::Handle hGroup, Fn&& fn) {
    if (hGroup == 0) {
        for (engine::Handle p = eng.polygon_get_first_polygon(); p != 0;
             p = eng.polygon_get_next(p)) {
            if (!fn(p)) return false;
        }
        return true;
    }
    if (!eng.group_is_group(hGroup)) return true;
    std::vector<engine::Handle> stack{hGroup};
    std::unordered_set<engine::Handle> seen;  // a father loop must not walk forever
    while (!stack.empty()) {
        engine::Handle g = stack.back();
        stack.pop_back();
        if (!seen.insert(g).second) continue;
        for (engine::Handle p = eng.group_get_first_polygon(g); p != 0;
             p = eng.group_get_next_polygon(g, p)) {
            if (!fn(p)) return false;
        }
        std::vector<engine::Handle> children;
        for (engine::Handle c = eng.group_get_first_included_group(g); c != 0;
             c = eng.group_get_next_included_group(g, c)) {
            children.push_back(c);
        }
        // Pushed in reverse so the first child is walked first.
        for (auto it = children.rbegin(); it != children.rend(); ++it) stack.push_back(*it);
    }
    return true;
}

}  // namespace core

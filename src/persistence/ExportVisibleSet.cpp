#include "persistence/ExportVisibleSet.h"

#include "engine/Engine.h"

namespace persistence {

using engine::Handle;

std::vector<Handle> visibleGroups(const engine::Engine& eng) {
    std::vector<Handle> out;
    for (Handle g = eng.group_get_first_group(); g != 0; g = eng.group_get_next(g)) {
        const Handle first = eng.group_get_first_polygon(g);
        if (first != 0 && !eng.polygon_is_disabled(first)) out.push_back(g);
    }
    return out;
}

Handle P_fncGroupAllVisible(engine::Engine& eng) {
    const std::vector<Handle> groups = visibleGroups(eng);
    if (groups.empty()) return 0;
    const Handle all = eng.group_create(kVisibleSetGroup);
    for (Handle g : groups) eng.group_set_father_group(g, all);
    return all;
}

VisibleSet::VisibleSet(engine::Engine& eng) : eng_(eng) {
    const std::vector<Handle> groups = visibleGroups(eng);
    if (groups.empty()) return;
    for (Handle g : groups) fathers_.emplace_back(g, eng.group_get_father_group(g));
    group_ = P_fncGroupAllVisible(eng);
    for (Handle c = eng.group_get_first_included_group(group_); c != 0;
         c = eng.group_get_next_included_group(group_, c)) {
        members_.push_back(c);
    }
}

VisibleSet::~VisibleSet() {
    if (group_ == 0) return;
    for (const auto& [g, father] : fathers_) eng_.group_set_father_group(g, father);
    // Empty by now: removing it leaves nothing behind.
    eng_.group_ungroup(group_);
}

}  // namespace persistence

#pragma once
// The visible set: every group whose first polygon is enabled. The tube and
// entity exports gather it under one new group, walk that group's members and
// then give every member its own father back.

#include <utility>
#include <vector>

#include "engine/Types.h"

namespace engine {
class Engine;
}

namespace persistence {

inline constexpr const char* kVisibleSetGroup = "All visible groups";

// Groups in creation order whose own first polygon is enabled.
std::vector<engine::Handle> visibleGroups(const engine::Engine& eng);

// Puts every group of the visible set into one new group and returns it (0 when
// the set is empty, no group is then made).
engine::Handle P_fncGroupAllVisible(engine::Engine& eng);

// P_fncGroupAllVisible for the length of an export: the members go back to the
// fathers they had and the combined group is removed at the end.
class VisibleSet {
public:
    explicit VisibleSet(engine::Engine& eng);
    ~VisibleSet();
    VisibleSet(const VisibleSet&) = delete;
    VisibleSet& operator=(const VisibleSet&) = delete;

    engine::Handle group() const { return group_; }
    // The members in the order they joined.
    const std::vector<engine::Handle>& members() const { return members_; }

private:
    engine::Engine& eng_;
    engine::Handle group_ = 0;
    std::vector<engine::Handle> members_;
    std::vector<std::pair<engine::Handle, engine::Handle>> fathers_;
};

}  // namespace persistence

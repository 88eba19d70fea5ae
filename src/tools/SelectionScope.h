#pragma once
// What one click of a selection action takes: the polygon, its entity, the
// entity's father group, the topmost group, or a walk over the whole scene by
// colour, visibility or data type.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Types.h"

namespace core {
class AppContext;
}
namespace engine {
class Engine;
}

namespace tools {

enum class Scope {
    Entity,
    Polygon,
    Group,
    File,
    Colour,
    Visible,
    Invisible,
    DataType,
    Rubberband,
    None
};

// "Entity", "Polygon", ... as cboSelection holds them; None for anything else.
Scope scopeFromText(std::string_view text);
// Scopes that walk the whole scene rather than one group.
bool isSceneScope(Scope s);
// Scopes that do not depend on the clicked polygon: a click that meets nothing
// still acts on them.
bool scopeNeedsNoHit(Scope s);

// The group a group scope takes for the clicked polygon: its entity ("Entity"),
// the entity's father ("Group"; 0 when it has none) or the topmost group above
// the entity ("File"; the entity itself when it has no father). 0 for other scopes.
engine::Handle scopeGroup(const engine::Engine& eng, Scope s, engine::Handle hPolygon);

// The group and every group below it, the group first.
std::vector<engine::Handle> groupTree(const engine::Engine& eng, engine::Handle hGroup);
// The polygons of the group and of every group below it.
std::vector<engine::Handle> treePolygons(const engine::Engine& eng, engine::Handle hGroup);

// The data type of a name, as "DataType" compares it: the colour-map code of a
// "CM_" record, the type code of a "PR_" or "UP_" record (protected or not), the
// first three characters of any other name; every name without information
// shares one type.
std::string dataTypeKey(std::string_view name);

// Whether a scene scope takes the polygon. `hidden` turns the walk to disabled
// polygons (unhide): "Colour" and "DataType" then look among the hidden ones.
struct SceneFilter {
    Scope scope = Scope::Visible;
    bool hidden = false;
    engine::Rgb colour;    // "Colour": that of the clicked polygon
    std::string dataType;  // "DataType": that of the clicked polygon
};
SceneFilter sceneFilterFor(const engine::Engine& eng, Scope s, engine::Handle hPolygon,
                           bool hidden);
bool sceneFilterTakes(const engine::Engine& eng, const SceneFilter& f, engine::Handle hPolygon);

// Walks every polygon of the scene, fetching the next one before `act` may delete
// the current one; `act` runs on each polygon the filter takes. Every polygon
// tested steps the progress; the walk stops at once when bolInterruptProcess is
// set. Returns how many polygons `act` ran on.
long walkScene(core::AppContext& ctx, const SceneFilter& f,
               const std::function<void(engine::Handle)>& act);

// The progress step: counts calls; every `every`-th call writes the text, adds
// `step` to the bar and lets events run. A bar within `step` of 100 goes back to
// 0 with a frame and the hourglass.
void P_subProgressStep(core::AppContext& ctx, double step, long every, const std::string& text);

}  // namespace tools

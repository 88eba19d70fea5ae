#pragma once
// The world files' access to the engine's insides: reading what a save needs,
// building a world aside, and putting a built world into an engine in one step.
// Only the world-file code of src/engine uses it (see WorldFormat.h).

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/WorldData.h"

namespace engine {

class WorldIO {
public:
    // ---- reading an engine ----------------------------------------------------------
    static world::SceneSettings scene(const Engine& e);
    // The lights with their entity group as a store group slot (0 for everything).
    static std::vector<world::LightEntry> lights(const Engine& e,
                                                 std::vector<std::uint32_t>& entitySlots);

    // ---- building aside -----------------------------------------------------------------
    static std::unique_ptr<Engine> makeStaging();
    static std::uint32_t acquireName(SceneStore& st, std::string_view name);
    static void retainName(SceneStore& st, std::uint32_t id);
    static void releaseName(SceneStore& st, std::uint32_t id);
    // A polygon in the world at the end of the walk, in group slot g; 0 when the
    // store is full.
    static std::uint32_t appendPolygon(SceneStore& st, const world::PolygonHead& head,
                                       std::uint32_t nameId, std::uint32_t g, const Point3* pts);

    // ---- putting a built world into an engine -------------------------------------------------
    struct Placement {
        std::filesystem::path baseDir;    // the world file's folder (relative bitmap references)
        std::filesystem::path bitmapDir;  // searched by file name when a reference fails
        std::vector<std::string>* notes = nullptr;
    };
    // Replaces the scene: polygons, groups, camera, fog, background; lights of the
    // file take the places of the engine's lights by index (handles held elsewhere
    // stay good), the rest are added.
    static void commitReplace(Engine& target, world::WorldBuilder& built, const Placement& where);
    // Adds the world under a new group named groupName, moved by `offset`; lights
    // whose name the engine already has are left out. Returns the new group.
    static Handle commitAdd(Engine& target, world::WorldBuilder& built, const Placement& where,
                            Point3 offset, std::string_view groupName);

private:
    static std::vector<Handle> resolveBitmaps(Engine& target, const world::Tables& t,
                                              const Placement& where);
    static void placeLights(Engine& target, const world::Tables& t,
                            const std::vector<Handle>& groupHandles, bool replace);
};

}  // namespace engine

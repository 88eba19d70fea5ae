#pragma once
// The world as the file formats see it: small tables (names, groups, bitmaps,
// lights, the scene settings) and a stream of polygons. A writer walks a
// WorldSource taken from an engine; a reader feeds a WorldBuilder that builds
// aside and touches the engine only when the whole file has been read and checked.
// Not for use outside src/engine (see WorldFormat.h).

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/SceneStore.h"

namespace engine {
class WorldIO;
}

namespace engine::world {

// Per-polygon flags as the files store them.
constexpr std::uint8_t kDisabled = 1;
constexpr std::uint8_t kLit = 2;
constexpr std::uint8_t kRotated = 4;
constexpr std::uint8_t kHasExtra = 8;
constexpr std::uint8_t kKnownFlags = kDisabled | kLit | kRotated | kHasExtra;

struct SceneSettings {
    CameraState camera;
    FogState fog;
    Rgb background;
    double normalsAngle = 50;
};

// Indexes of names, groups and bitmaps are the file's own: names from 0 (0 is
// the empty name), groups and bitmaps from 1 (0 is none).
struct GroupEntry {
    std::uint32_t name = 0;
    std::uint32_t father = 0;
    bool hasReference = false;
    Point3 reference;
};

struct LightEntry {
    std::string name;
    Point3 location;
    Point3 target;
    int type = 59;
    double ambient = 0, diffuse = 1, specular = 0, shining = 1;
    std::uint32_t entity = 0;  // group, 0 everything, kGoneGroup a group no longer there
};

// A light's entity that has been deleted (or was left out of the save): it lights nothing.
constexpr std::uint32_t kGoneGroup = 0xFFFFFFFFu;

struct Tables {
    SceneSettings scene;
    std::vector<std::string> names{std::string()};
    std::vector<GroupEntry> groups;
    std::vector<std::string> bitmaps;  // references: a path, relative to the file's folder or not
    std::vector<LightEntry> lights;
};

struct PolygonHead {
    std::uint32_t name = 0;
    std::uint32_t group = 0;
    std::uint32_t fill = 0x00FFFFFF;  // 0xTTRRGGBB, T the translucency mode
    std::uint32_t light = 0;          // 0x00RRGGBB when lit
    std::uint32_t points = 0;
    std::uint8_t brightness = 100;
    std::uint8_t flags = 0;
};

struct ExtraEntry {
    std::uint32_t polygon = 0;  // index in the file's polygon order
    std::uint32_t bitmap = 0;
    double rotation = 0;
    std::vector<Patch> patches;
    std::vector<PointExtra> points;  // empty or one per point of the polygon
};

// A group whose members joined it in another order than the polygons' order.
struct OrderEntry {
    std::uint32_t group = 0;
    std::vector<std::uint32_t> polygons;
};

inline std::uint32_t packRgb(Rgb c) {
    return (std::uint32_t(c.r & 255) << 16) | (std::uint32_t(c.g & 255) << 8) |
           std::uint32_t(c.b & 255);
}
inline Rgb unpackRgb(std::uint32_t v) {
    return Rgb{int((v >> 16) & 255), int((v >> 8) & 255), int(v & 255)};
}

// What a save writes: the engine's world, or one group and its descendants.
class WorldSource {
public:
    // group 0: the whole world. False (with error) for a group that does not exist.
    bool capture(const Engine& e, Handle group, std::string& error);

    Tables tables;
    std::vector<ExtraEntry> extras;
    std::vector<OrderEntry> orders;

    std::size_t polygonCount() const { return slots_.size(); }
    std::uint64_t pointCount() const { return points_; }
    PolygonHead head(std::size_t i) const;
    // The polygon's points, in order (they may cross a storage block: ask point by point).
    std::uint32_t firstPoint(std::size_t i) const { return store_->firstPoint(slots_[i]); }
    std::uint32_t pointsOf(std::size_t i) const { return store_->pointCount(slots_[i]); }
    const Point3& point(std::uint32_t p) const { return store_->point(p); }
    // The bitmap files behind the references, to copy them ("" when unknown).
    std::vector<std::string> bitmapFiles;

private:
    const SceneStore* store_ = nullptr;
    std::vector<std::uint32_t> slots_;    // polygon slots in walk order
    std::vector<std::uint32_t> nameOf_;   // store name id -> file name
    std::vector<std::uint32_t> groupOf_;  // store group slot -> file group
    std::uint64_t points_ = 0;
};

// Builds a world read from a file aside from the engine. Every call checks what
// it is given against what came before; the first failure sets `error` and all
// later calls fail.
class WorldBuilder {
public:
    WorldBuilder();
    ~WorldBuilder();

    bool begin(Tables tables, std::uint64_t polygonCount, std::uint64_t pointCount);
    bool addPolygon(const PolygonHead& head, const Point3* points);
    bool addExtra(ExtraEntry extra);
    bool addOrder(OrderEntry order);
    // After the last polygon: counts must match what begin announced.
    bool finish();
    bool fail(std::string message);

    bool failed() const { return !error.empty(); }
    // Points of a polygon added so far (index in the file's order), 0 for none.
    std::uint32_t pointsOf(std::uint64_t polygon) const;
    std::uint64_t polygonsAdded() const { return added_; }
    std::string error;

private:
    friend class ::engine::WorldIO;
    Tables tables_;
    std::unique_ptr<Engine> staging_;
    std::vector<std::uint32_t> nameIds_;        // file name -> staging name id
    std::vector<std::uint32_t> groupPolygons_;  // polygons per file group
    std::vector<bool> reordered_;               // per file group
    std::vector<bool> hasExtra_;                // per polygon, once one has data
    std::uint64_t expectedPolygons_ = 0, expectedPoints_ = 0;
    std::uint64_t added_ = 0, pointsAdded_ = 0;
    std::uint64_t flaggedExtras_ = 0, extrasAdded_ = 0;
    std::uint32_t lastExtra_ = 0;
    bool anyExtra_ = false;
    bool begun_ = false, finished_ = false;
};

}  // namespace engine::world

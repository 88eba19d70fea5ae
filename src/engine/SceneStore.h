#pragma once
// engine::SceneStore — the storage behind engine::Engine, read directly by the
// renderer and the world files.
//
// Layout (all per-slot data in ChunkedArray blocks, structure of arrays):
//  * Polygon slot s (1..slotEnd-1) is the polygon whose handle has index bits s;
//    slot 0 is never used. Freed slots are reused oldest first, and only once
//    a backlog has built up, so a stale handle rarely names a new polygon soon.
//  * Points are one shared array of Point3; polygon s owns [firstPoint, +count).
//    A point slot p is the point whose handle has index bits p, and owner(p)
//    names its polygon (0 for a free point). Point handles stay valid while
//    their polygon lives, with one exception: a polygon that gets a point after
//    another polygon has taken points behind it (building two polygons point by
//    point in turn) is moved, which changes the handles of its earlier points.
//    Space freed by deleted polygons is used again (see PointSpace.h).
//  * Walk order (world only) and group membership are doubly linked lists in
//    slot arrays, so removal is O(1).
//  * Rarely used data (point colours, alpha, bitmap coordinates, patches, the
//    bitmap) lives in a side table for the polygons that have it.
//  * Every change to a polygon bumps the version of its chunk of 4096 slots, so
//    a renderer re-uploads only the chunks that changed.
//  * A polygon has at most 65535 points.
//
// The store keeps data consistent but does not judge it: validation of
// arguments, refusal rules and the meaning of operations are the engine's.

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "engine/ChunkedArray.h"
#include "engine/NameTable.h"
#include "engine/PointSpace.h"
#include "engine/Types.h"
#include "engine/WalkList.h"

namespace engine {

namespace polyflag {
constexpr std::uint8_t kAlive = 1;
constexpr std::uint8_t kInWorld = 2;
constexpr std::uint8_t kDisabled = 4;
constexpr std::uint8_t kLit = 8;  // has a light colour
constexpr std::uint8_t kRotated = 16;
constexpr std::uint8_t kExtra = 32;  // has an entry in the side table
}  // namespace polyflag

// Per point, for the polygons that use any of it.
struct PointExtra {
    bool hasRgb = false;
    Rgb rgb;
    int alpha = 255;
    double bx = 0, by = 0;
};

struct Patch {
    std::vector<Point3> points;
    Rgb colour;
    int type = 0;
};

struct PolygonExtra {
    Handle bitmap = 0;
    double bitmapRotation = 0;  // degrees
    std::vector<Patch> patches;
    std::vector<PointExtra> points;  // empty, or one per point in order
};

struct GroupRecord {
    bool alive = false;
    std::uint32_t name = 0;    // NameTable id
    std::uint32_t father = 0;  // group slots below; 0 none
    std::uint32_t firstChild = 0, lastChild = 0, prevSibling = 0, nextSibling = 0;
    std::uint32_t firstPolygon = 0, lastPolygon = 0;  // polygon slots, in join order
    std::uint32_t polygonCount = 0;                   // members, in the world or not
    std::uint32_t prev = 0, next = 0;                 // creation order
    std::uint64_t serial = 0;                         // creation order of children
    bool hasRotateReference = false;
    Point3 rotateReference;
};

class SceneStore {
public:
    static constexpr unsigned kVersionChunkBits = 12;
    static constexpr std::uint32_t kMaxPointsPerPolygon = 65535;

    SceneStore();
    ~SceneStore();
    SceneStore(const SceneStore&) = delete;
    SceneStore& operator=(const SceneStore&) = delete;

    // ---- handles and slots ------------------------------------------------------
    static std::uint32_t slotOf(Handle h, Kind k) {
        return handleKind(h) == k ? (h & kIndexMask) : 0;
    }
    static Handle polygonHandle(std::uint32_t slot) {
        return slot ? makeHandle(Kind::Polygon, slot - 1) : 0;
    }
    static Handle pointHandle(std::uint32_t p) { return p ? makeHandle(Kind::Point, p - 1) : 0; }
    static Handle groupHandle(std::uint32_t g) { return g ? makeHandle(Kind::Group, g - 1) : 0; }

    // Slot of a live polygon, else 0.
    std::uint32_t polygonSlot(Handle h) const {
        const std::uint32_t s = slotOf(h, Kind::Polygon);
        return (s && s < walk_.slotEnd && (flags_[s] & polyflag::kAlive)) ? s : 0;
    }
    // Slot of a live point (its polygon is alive and the point within its range), else 0.
    std::uint32_t pointSlot(Handle h) const;
    // Slot of a live group, else 0.
    std::uint32_t groupSlot(Handle h) const {
        const std::uint32_t g = slotOf(h, Kind::Group);
        return (g && g < groups_.size() && groups_[g].alive) ? g : 0;
    }

    // ---- polygons: read ----------------------------------------------------------
    std::uint32_t polygonSlotEnd() const { return walk_.slotEnd; }  // slots [1, end)
    std::uint8_t flags(std::uint32_t s) const { return flags_[s]; }
    bool isAlive(std::uint32_t s) const {
        return s && s < walk_.slotEnd && (flags_[s] & polyflag::kAlive);
    }
    bool inWorld(std::uint32_t s) const { return flags_[s] & polyflag::kInWorld; }
    bool disabled(std::uint32_t s) const { return flags_[s] & polyflag::kDisabled; }
    bool rotated(std::uint32_t s) const { return flags_[s] & polyflag::kRotated; }
    std::uint32_t firstPoint(std::uint32_t s) const { return first_[s]; }
    std::uint32_t pointCount(std::uint32_t s) const { return count_[s]; }
    const Point3& point(std::uint32_t p) const { return points_[p]; }
    std::uint32_t owner(std::uint32_t p) const { return owner_[p]; }
    std::uint32_t pointSlotEnd() const { return space_.top(); }
    // Points of a polygon copied out in order.
    void copyPoints(std::uint32_t s, std::vector<Point3>& out) const;
    Rgb fill(std::uint32_t s) const { return unpack(fill_[s]); }
    int translucent(std::uint32_t s) const { return int(fill_[s] >> 24); }
    std::optional<Rgb> light(std::uint32_t s) const {
        if (!(flags_[s] & polyflag::kLit)) return std::nullopt;
        return unpack(light_[s]);
    }
    int brightness(std::uint32_t s) const { return bright_[s]; }
    std::uint32_t groupOf(std::uint32_t s) const { return group_[s]; }  // group slot
    std::uint32_t nameId(std::uint32_t s) const { return name_[s]; }
    const std::string& name(std::uint32_t s) const { return names_.text(name_[s]); }
    const PolygonExtra* extra(std::uint32_t s) const;

    // ---- walk (world only, in the order of adding) ----------------------------------
    const WalkList& walk() const { return walk_; }
    std::uint32_t firstInWorld() const { return walk_.head & kIndexMask; }
    std::uint32_t nextInWorld(std::uint32_t s) const { return walk_.next[s] & kIndexMask; }
    std::size_t worldCount() const { return walk_.count; }
    std::size_t liveCount() const { return live_; }

    // ---- versions -------------------------------------------------------------------
    std::size_t versionChunkCount() const { return versions_.size(); }
    std::uint64_t chunkVersion(std::size_t chunk) const { return versions_[chunk]; }
    std::uint64_t revision() const { return revision_; }
    // Bumps the version of the chunk of slot s (and the revision).
    void touch(std::uint32_t s) { versions_[s >> kVersionChunkBits] = ++revision_; }
    void touchScene() { ++revision_; }
    // As touch, for a change of shape or place: spatial indexes compare this.
    void touchGeometry(std::uint32_t s) {
        touch(s);
        if (flags_[s] & polyflag::kInWorld) ++geometryRevision_;
    }
    // Bumped when a polygon's points change while it is in the world, or when one enters it.
    std::uint64_t geometryRevision() const { return geometryRevision_; }
    // Polygons that have left / entered the world so far.
    std::uint64_t removals() const { return removals_; }
    std::uint64_t additions() const { return additions_; }

    // ---- groups: read ------------------------------------------------------------------
    const GroupRecord* group(std::uint32_t g) const {
        return (g && g < groups_.size() && groups_[g].alive) ? &groups_[g] : nullptr;
    }
    std::uint32_t groupSlotEnd() const { return static_cast<std::uint32_t>(groups_.size()); }
    std::uint32_t firstGroup() const { return groupHead_; }
    std::size_t groupCount() const { return liveGroups_; }
    const std::string& groupName(std::uint32_t g) const { return names_.text(groups_[g].name); }
    // Polygon slot after s in its group, 0 at the end.
    std::uint32_t nextInGroup(std::uint32_t s) const { return gnext_[s]; }

    const NameTable& names() const { return names_; }

    // ---- polygons: change -----------------------------------------------------------
    // A new empty polygon outside the world; 0 when the slots are exhausted.
    std::uint32_t createPolygon();
    // Frees the polygon, its points and side data; takes it out of world and group.
    void destroyPolygon(std::uint32_t s);
    // Appends a point; returns its point slot, 0 when full.
    std::uint32_t appendPoint(std::uint32_t s, Point3 p);
    // Gives the polygon n points copied from pts (a polygon with no points yet).
    bool assignPoints(std::uint32_t s, const Point3* pts, std::uint32_t n);
    void setPoint(std::uint32_t p, Point3 v) {
        points_[p] = v;
        touchGeometry(owner_[p]);
    }
    // For bulk edits of one polygon: write points, then touchGeometry(s) once.
    Point3& pointRef(std::uint32_t p) { return points_[p]; }
    void reversePoints(std::uint32_t s);
    bool addToWorld(std::uint32_t s);  // at the end of the walk
    // Room for `polygons` more new slots and `points` more points at the top, the
    // memory brought in at once on every core (a reader about to add millions).
    void reserve(std::size_t polygons, std::size_t points);
    // Up to `count` triangles (corners[3i..3i+2]) made, given their points, put at
    // the end of the walk, filled and put in group g (0: none), with what
    // createPolygon, assignPoints, addToWorld, setFill and setPolygonGroup would
    // leave for each; their slots follow one another from `first`. Returns how
    // many: 0 where the next one would not take the next new slot and points in a
    // row (a slot or a hole to reuse, the end of the arrays): make it alone.
    std::uint32_t appendTriangles(const Point3* corners, const Rgb* fills, std::uint32_t count,
                                  std::uint32_t g, std::uint32_t& first);
    void removeFromWorld(std::uint32_t s);
    void setFlag(std::uint32_t s, std::uint8_t flag, bool on);
    void setFill(std::uint32_t s, Rgb c);
    void setTranslucent(std::uint32_t s, int mode);
    void setLight(std::uint32_t s, std::optional<Rgb> c);
    void setBrightness(std::uint32_t s, int b);
    void setName(std::uint32_t s, std::string_view name);
    void setNameId(std::uint32_t s, std::uint32_t id);  // a name already held elsewhere
    PolygonExtra& extraFor(std::uint32_t s);            // made on first use
    // Copies everything but points, world and group membership from one polygon to another.
    void copyAttributes(std::uint32_t from, std::uint32_t to);

    // ---- groups: change ----------------------------------------------------------------
    std::uint32_t createGroup(std::string_view name);
    // Frees a group; its polygons leave it and its children lose their father.
    void destroyGroup(std::uint32_t g);
    void setGroupName(std::uint32_t g, std::string_view name);
    void setFather(std::uint32_t g, std::uint32_t father);   // no cycle check here
    void setPolygonGroup(std::uint32_t s, std::uint32_t g);  // 0: no group
    void setRotateReference(std::uint32_t g, Point3 p);

    // Drops everything.
    void clear();

private:
    friend class WorldIO;  // bulk loading of world files (WorldIO.h)
    static Rgb unpack(std::uint32_t v) {
        return Rgb{int((v >> 16) & 255), int((v >> 8) & 255), int(v & 255)};
    }
    static std::uint32_t pack(Rgb c) {
        return (std::uint32_t(c.r & 255) << 16) | (std::uint32_t(c.g & 255) << 8) |
               std::uint32_t(c.b & 255);
    }
    bool holdSlots(std::size_t n);  // the polygon arrays hold slots [0, n)
    bool holdPoints();              // the arrays hold every slot handed out
    void freePoints(std::uint32_t first, std::uint32_t n);
    void unlinkFromGroup(std::uint32_t s);
    void linkAtWalkEnd(std::uint32_t s);                   // links only, no count
    void linkAtGroupEnd(std::uint32_t s, std::uint32_t g);  // g a live group
    void unlinkChild(std::uint32_t g);

    WalkList walk_;
    ChunkedArray<std::uint32_t> first_;
    ChunkedArray<std::uint16_t> count_;
    ChunkedArray<std::uint8_t> flags_;
    ChunkedArray<std::uint8_t> bright_;
    ChunkedArray<std::uint32_t> group_, gnext_, gprev_;
    ChunkedArray<std::uint32_t> name_;
    ChunkedArray<std::uint32_t> fill_;   // 0xTTRRGGBB, T the translucency mode
    ChunkedArray<std::uint32_t> light_;  // 0x00RRGGBB
    ChunkedArray<Point3> points_;
    ChunkedArray<std::uint32_t> owner_;
    PointSpace space_{kMaxPointsPerPolygon};
    std::deque<std::uint32_t> freeSlots_;
    std::size_t live_ = 0;
    std::unordered_map<std::uint32_t, PolygonExtra> extras_;
    std::vector<std::uint64_t> versions_;
    std::uint64_t revision_ = 1;
    std::uint64_t geometryRevision_ = 1;
    std::uint64_t removals_ = 0;
    std::uint64_t additions_ = 0;

    std::vector<GroupRecord> groups_;  // [0] unused
    std::deque<std::uint32_t> freeGroups_;
    std::uint32_t groupHead_ = 0, groupTail_ = 0;
    std::uint64_t groupSerial_ = 0;
    std::size_t liveGroups_ = 0;

    NameTable names_;
};

}  // namespace engine

// WorldBuilder: a world read from a file, checked piece by piece and built in an
// engine of its own, so that a file that fails half-way leaves the scene alone.

#include <algorithm>
#include <cmath>

#include "engine/WorldData.h"
#include "engine/WorldIO.h"

namespace engine::world {

namespace {

constexpr char kDamaged[] = "The world file is damaged: ";

bool finite(double v) { return std::isfinite(v); }
bool channelsOk(Rgb c) {
    return c.r >= 0 && c.r <= 255 && c.g >= 0 && c.g <= 255 && c.b >= 0 && c.b <= 255;
}

std::string checkTables(const Tables& t) {
    if (t.names.empty() || !t.names[0].empty()) return "the name table does not start empty";
    const std::size_t ng = t.groups.size();
    if (ng > kIndexMask) return "too many groups";
    for (std::size_t i = 0; i < ng; ++i) {
        const GroupEntry& g = t.groups[i];
        if (g.name >= t.names.size()) return "a group names a name that is not there";
        if (g.father > ng || g.father == i + 1) return "a group has a father that is not there";
        if (g.hasReference && !g.reference.finite()) return "a group has a bad reference point";
    }
    // Fathers must not form a loop: every chain ends within the number of groups.
    for (std::size_t i = 0; i < ng; ++i) {
        std::uint32_t f = t.groups[i].father;
        std::size_t steps = 0;
        while (f && steps <= ng) {
            f = t.groups[f - 1].father;
            ++steps;
        }
        if (f) return "the groups' fathers form a loop";
    }
    for (const LightEntry& l : t.lights) {
        if (l.entity > ng && l.entity != kGoneGroup)
            return "a light names a group that is not there";
        if (!l.location.finite() || !l.target.finite() || !finite(l.ambient) ||
            !finite(l.diffuse) || !finite(l.specular) || !finite(l.shining))
            return "a light has a value that is not a number";
    }
    const SceneSettings& s = t.scene;
    const CameraState& c = s.camera;
    if (!c.location.finite() || !c.direction.finite() || !c.up.finite() || !finite(c.zoom) ||
        !(c.zoom > 0) || !finite(c.distanceFromEye) || c.distanceFromEye < 0 ||
        length(c.direction) == 0 || length(c.up) == 0)
        return "the camera is not usable";
    if (!finite(s.fog.farDepth) || !finite(s.fog.nearDepth)) return "the fog has a bad depth";
    if (!channelsOk(s.background)) return "the background colour is out of range";
    if (!finite(s.normalsAngle)) return "the normals angle is not a number";
    return {};
}

}  // namespace

WorldBuilder::WorldBuilder() = default;
WorldBuilder::~WorldBuilder() = default;

bool WorldBuilder::fail(std::string message) {
    if (error.empty()) error = kDamaged + message;
    return false;
}

bool WorldBuilder::begin(Tables tables, std::uint64_t polygonCount, std::uint64_t pointCount) {
    if (failed()) return false;
    if (begun_) return fail("the tables come twice");
    if (std::string why = checkTables(tables); !why.empty()) return fail(why);
    if (polygonCount > kIndexMask) return fail("too many polygons");
    if (pointCount >= PointSpace::kLimit) return fail("too many points");
    if (pointCount < polygonCount * 3) return fail("too few points for the polygons");
    tables_ = std::move(tables);
    // The scene is built aside only once the tables have passed.
    staging_ = WorldIO::makeStaging();
    expectedPolygons_ = polygonCount;
    expectedPoints_ = pointCount;
    begun_ = true;

    SceneStore& st = staging_->store();
    const std::size_t ng = tables_.groups.size();
    for (std::size_t i = 0; i < ng; ++i) {
        const std::uint32_t g = st.createGroup(tables_.names[tables_.groups[i].name]);
        if (g != i + 1) return fail("too many groups");
        if (tables_.groups[i].hasReference) st.setRotateReference(g, tables_.groups[i].reference);
    }
    for (std::size_t i = 0; i < ng; ++i)
        if (tables_.groups[i].father) st.setFather(std::uint32_t(i + 1), tables_.groups[i].father);
    nameIds_.assign(tables_.names.size(), 0);
    groupPolygons_.assign(ng + 1, 0);
    reordered_.assign(ng + 1, false);
    return true;
}

bool WorldBuilder::addPolygon(const PolygonHead& h, const Point3* pts) {
    if (failed()) return false;
    if (!begun_ || finished_) return fail("a polygon stands outside its section");
    if (added_ >= expectedPolygons_) return fail("more polygons than announced");
    if (h.name >= tables_.names.size()) return fail("a polygon names a name that is not there");
    if (h.group > tables_.groups.size()) return fail("a polygon names a group that is not there");
    if (h.flags & ~kKnownFlags) return fail("a polygon has unknown flags");
    if (h.points < 3 || h.points > SceneStore::kMaxPointsPerPolygon)
        return fail("a polygon has a wrong number of points");
    if (h.points > expectedPoints_ - pointsAdded_) return fail("more points than announced");
    for (std::uint32_t i = 0; i < h.points; ++i)
        if (!pts[i].finite()) return fail("a point is not a number");
    if ((h.flags & kHasExtra) && !anyExtra_) {
        anyExtra_ = true;
        hasExtra_.assign(expectedPolygons_, false);
    }
    if (h.flags & kHasExtra) {
        hasExtra_[added_] = true;
        ++flaggedExtras_;
    }

    SceneStore& st = staging_->store();
    std::uint32_t id = nameIds_[h.name];
    if (h.name && !id) {
        id = WorldIO::acquireName(st, tables_.names[h.name]);  // the polygon's reference
        nameIds_[h.name] = id;
    } else if (id) {
        WorldIO::retainName(st, id);
    }
    const std::uint32_t s = WorldIO::appendPolygon(st, h, id, h.group, pts);
    if (s != added_ + 1) {
        if (s == 0) WorldIO::releaseName(st, id);
        error = "The world is too large for the engine";
        return false;
    }
    ++groupPolygons_[h.group];
    ++added_;
    pointsAdded_ += h.points;
    return true;
}

std::uint32_t WorldBuilder::pointsOf(std::uint64_t polygon) const {
    return polygon < added_ ? staging_->store().pointCount(std::uint32_t(polygon + 1)) : 0;
}

bool WorldBuilder::addExtra(ExtraEntry x) {
    if (failed()) return false;
    if (!begun_ || finished_) return fail("polygon data stands outside its section");
    if (x.polygon >= added_ || !anyExtra_ || !hasExtra_[x.polygon])
        return fail("polygon data for a polygon that has none");
    if (extrasAdded_ > 0 && x.polygon <= lastExtra_) return fail("polygon data out of order");
    if (x.bitmap > tables_.bitmaps.size())
        return fail("a polygon names a bitmap that is not there");
    if (!finite(x.rotation)) return fail("a bitmap rotation is not a number");
    for (const Patch& p : x.patches) {
        if (p.points.size() < 3 || p.points.size() > SceneStore::kMaxPointsPerPolygon)
            return fail("a patch has too few points");
        for (const Point3& q : p.points)
            if (!q.finite()) return fail("a patch point is not a number");
        if (!channelsOk(p.colour)) return fail("a patch colour is out of range");
    }
    SceneStore& st = staging_->store();
    const std::uint32_t s = x.polygon + 1;
    if (!x.points.empty() && x.points.size() != st.pointCount(s))
        return fail("point data does not match the polygon's points");
    for (const PointExtra& pe : x.points)
        if (!channelsOk(pe.rgb) || pe.alpha < 0 || pe.alpha > 255 || !finite(pe.bx) ||
            !finite(pe.by))
            return fail("point data is out of range");
    PolygonExtra& ex = st.extraFor(s);
    ex.bitmap = x.bitmap;  // the file's bitmap number until the world is placed
    ex.bitmapRotation = x.rotation;
    ex.patches = std::move(x.patches);
    ex.points = std::move(x.points);
    lastExtra_ = x.polygon;
    ++extrasAdded_;
    return true;
}

bool WorldBuilder::addOrder(OrderEntry o) {
    if (failed()) return false;
    if (!begun_ || finished_) return fail("a group order stands outside its section");
    if (o.group == 0 || o.group > tables_.groups.size() || reordered_[o.group])
        return fail("a group order names a wrong group");
    if (o.polygons.size() != groupPolygons_[o.group])
        return fail("a group order does not list the group's polygons");
    SceneStore& st = staging_->store();
    std::vector<std::uint32_t> sorted = o.polygons;
    std::sort(sorted.begin(), sorted.end());
    for (std::size_t i = 0; i < sorted.size(); ++i)
        if (sorted[i] >= added_ || (i && sorted[i] == sorted[i - 1]) ||
            st.groupOf(sorted[i] + 1) != o.group)
            return fail("a group order does not list the group's polygons");
    for (std::uint32_t p : o.polygons) st.setPolygonGroup(p + 1, 0);
    for (std::uint32_t p : o.polygons) st.setPolygonGroup(p + 1, o.group);
    reordered_[o.group] = true;
    return true;
}

bool WorldBuilder::finish() {
    if (failed()) return false;
    if (!begun_) return fail("the tables are missing");
    if (added_ != expectedPolygons_) return fail("fewer polygons than announced");
    if (pointsAdded_ != expectedPoints_) return fail("fewer points than announced");
    if (extrasAdded_ != flaggedExtras_) return fail("polygon data is missing");
    finished_ = true;
    return true;
}

}  // namespace engine::world

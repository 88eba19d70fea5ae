// The world files and the engine's insides: what a save reads, how a world is
// built aside, and how a built world goes into an engine in one step.

#include "engine/WorldIO.h"

#include <algorithm>
#include <system_error>

#include "engine/Bvh.h"
#include "engine/EngineInternal.h"

namespace engine {

namespace fs = std::filesystem;

// ---- reading an engine --------------------------------------------------------------------

world::SceneSettings WorldIO::scene(const Engine& e) {
    world::SceneSettings s;
    s.camera = e.camera_;
    s.fog = e.fog_;
    s.background = e.background_;
    s.normalsAngle = e.normalsAngle_;
    return s;
}

std::vector<world::LightEntry> WorldIO::lights(const Engine& e,
                                               std::vector<std::uint32_t>& entitySlots) {
    std::vector<world::LightEntry> out;
    entitySlots.clear();
    for (const auto& l : e.lights_) {
        world::LightEntry L;
        L.name = l->name;
        L.location = l->location;
        L.target = l->target;
        L.type = l->type;
        L.ambient = l->ambient;
        L.diffuse = l->diffuse;
        L.specular = l->specular;
        L.shining = l->shining;
        out.push_back(std::move(L));
        std::uint32_t g = 0;
        if (l->entity) {
            g = e.store_->groupSlot(l->entity);
            if (!g) g = world::kGoneGroup;
        }
        entitySlots.push_back(g);
    }
    return out;
}

// ---- building aside ---------------------------------------------------------------------------

std::unique_ptr<Engine> WorldIO::makeStaging() {
    auto e = std::make_unique<Engine>();
    e->loaded_ = true;
    return e;
}

std::uint32_t WorldIO::acquireName(SceneStore& st, std::string_view name) {
    return st.names_.acquire(name);
}

void WorldIO::retainName(SceneStore& st, std::uint32_t id) { st.names_.retain(id); }
void WorldIO::releaseName(SceneStore& st, std::uint32_t id) { st.names_.release(id); }

std::uint32_t WorldIO::appendPolygon(SceneStore& st, const world::PolygonHead& h,
                                     std::uint32_t nameId, std::uint32_t g, const Point3* pts) {
    const std::uint32_t s = st.createPolygon();
    if (!s) return 0;
    if (!st.assignPoints(s, pts, h.points)) {
        st.destroyPolygon(s);
        return 0;
    }
    // The attributes go straight into their slots: createPolygon has set every
    // field to its default and one touch of the chunk is enough.
    const bool lit = h.flags & world::kLit;
    st.fill_[s] = h.fill;
    st.light_[s] = lit ? (h.light & 0x00FFFFFFu) : 0;
    st.bright_[s] = h.brightness;
    std::uint8_t f = polyflag::kAlive;
    if (lit) f |= polyflag::kLit;
    if (h.flags & world::kDisabled) f |= polyflag::kDisabled;
    if (h.flags & world::kRotated) f |= polyflag::kRotated;
    st.flags_[s] = f;
    st.name_[s] = nameId;  // the caller holds the reference for it
    if (g) st.setPolygonGroup(s, g);
    st.addToWorld(s);
    return s;
}

// ---- putting a built world into an engine
// ---------------------------------------------------------

namespace {

bool isFile(const fs::path& p) {
    std::error_code ec;
    return !p.empty() && fs::is_regular_file(p, ec);
}

// Where a bitmap reference points: the path itself, the path from the world's
// folder, or its file name in the bitmap folder.
fs::path locateBitmap(const std::string& ref, const WorldIO::Placement& where, bool& found) {
    const fs::path r(ref);
    std::vector<fs::path> tries;
    if (r.is_absolute()) {
        tries.push_back(r);
    } else if (!where.baseDir.empty()) {
        tries.push_back(where.baseDir / r);
    } else {
        tries.push_back(r);
    }
    if (!where.bitmapDir.empty() && r.has_filename())
        tries.push_back(where.bitmapDir / r.filename());
    for (const auto& t : tries)
        if (isFile(t)) {
            found = true;
            return t.lexically_normal();
        }
    found = false;
    return tries.front().lexically_normal();
}

}  // namespace

std::vector<Handle> WorldIO::resolveBitmaps(Engine& target, const world::Tables& t,
                                            const Placement& where) {
    std::vector<Handle> out;
    out.reserve(t.bitmaps.size());
    for (const std::string& ref : t.bitmaps) {
        bool found = false;
        const std::string path = locateBitmap(ref, where, found).string();
        Handle h = found ? target.bitmap_load(path) : 0;
        if (!h) {
            // Kept by reference (drawn in its fill colour) so that saving again keeps it.
            if (where.notes)
                where.notes->push_back(found ? "Bitmap cannot be read: " + ref
                                             : "Bitmap not found: " + ref);
            for (std::size_t i = 0; i < target.bitmaps_.size() && !h; ++i)
                if (target.bitmaps_[i]->path == path)
                    h = makeHandle(Kind::Bitmap, std::uint32_t(i));
            if (!h) {
                auto b = std::make_unique<Engine::BitmapObj>();
                b->path = path;
                target.bitmaps_.push_back(std::move(b));
                h = makeHandle(Kind::Bitmap, std::uint32_t(target.bitmaps_.size() - 1));
            }
        }
        out.push_back(h);
    }
    return out;
}

void WorldIO::placeLights(Engine& target, const world::Tables& t,
                          const std::vector<Handle>& groupHandles, bool replace) {
    for (std::size_t i = 0; i < t.lights.size(); ++i) {
        const world::LightEntry& L = t.lights[i];
        if (!replace) {
            bool known = false;
            for (const auto& l : target.lights_) known = known || l->name == L.name;
            if (known) continue;
        }
        Engine::LightObj obj;
        obj.name = L.name;
        obj.location = L.location;
        obj.target = L.target;
        obj.type = L.type;
        obj.ambient = L.ambient;
        obj.diffuse = L.diffuse;
        obj.specular = L.specular;
        obj.shining = L.shining;
        if (L.entity == world::kGoneGroup)
            obj.entity = makeHandle(Kind::Group, kIndexMask - 1);  // names no group
        else
            obj.entity = L.entity ? groupHandles[L.entity - 1] : 0;
        if (replace && i < target.lights_.size())
            *target.lights_[i] = std::move(obj);
        else
            target.lights_.push_back(std::make_unique<Engine::LightObj>(std::move(obj)));
    }
}

void WorldIO::commitReplace(Engine& target, world::WorldBuilder& built, const Placement& where) {
    Engine& src = *built.staging_;
    SceneStore& ns = *src.store_;
    const SceneStore& os = *target.store_;
    // The new store carries on the old one's counters, so that a renderer or an
    // index that compares versions sees every chunk as changed.
    const std::uint64_t rev = std::max(ns.revision_, os.revision_) + 1;
    ns.revision_ = rev;
    std::fill(ns.versions_.begin(), ns.versions_.end(), rev);
    ns.geometryRevision_ = std::max(ns.geometryRevision_, os.geometryRevision_) + 1;
    ns.removals_ = std::max(ns.removals_, os.removals_) + 1;
    ns.additions_ = std::max(ns.additions_, os.additions_) + 1;

    std::swap(target.store_, src.store_);
    for (Engine* e : {&target, &src}) {
        e->walk_ = &e->store_->walk();
        e->walkNext_ = e->walk_->next.table();
    }
    target.bvh_->clear();
    target.lines_.clear();
    target.texts_.clear();

    const world::Tables& t = built.tables_;
    target.camera_ = t.scene.camera;
    target.fog_ = t.scene.fog;
    target.background_ = t.scene.background;
    target.normalsAngle_ = t.scene.normalsAngle;
    target.loaded_ = true;

    const std::vector<Handle> bitmaps = resolveBitmaps(target, t, where);
    for (auto& [slot, ex] : target.store_->extras_)
        if (ex.bitmap) ex.bitmap = bitmaps[ex.bitmap - 1];

    // Groups were made in file order in a fresh store: file group i is slot i.
    std::vector<Handle> groups(t.groups.size());
    for (std::size_t i = 0; i < groups.size(); ++i)
        groups[i] = SceneStore::groupHandle(std::uint32_t(i + 1));
    placeLights(target, t, groups, true);
    target.store_->touchScene();
}

Handle WorldIO::commitAdd(Engine& target, world::WorldBuilder& built, const Placement& where,
                          Point3 offset, std::string_view groupName) {
    SceneStore& ts = *target.store_;
    const SceneStore& ss = *built.staging_->store_;
    const world::Tables& t = built.tables_;

    const std::uint32_t model = ts.createGroup(groupName);
    if (!model) return 0;
    std::vector<std::uint32_t> gmap(t.groups.size() + 1, 0);
    for (std::size_t i = 0; i < t.groups.size(); ++i) {
        gmap[i + 1] = ts.createGroup(t.names[t.groups[i].name]);
        if (!gmap[i + 1]) gmap[i + 1] = model;  // out of group slots: keep the polygons together
    }
    for (std::size_t i = 0; i < t.groups.size(); ++i) {
        const world::GroupEntry& G = t.groups[i];
        const std::uint32_t g = gmap[i + 1];
        if (g == model) continue;
        if (G.hasReference) ts.setRotateReference(g, G.reference + offset);
        ts.setFather(g, G.father ? gmap[G.father] : model);
    }

    const std::vector<Handle> bitmaps = resolveBitmaps(target, t, where);
    const bool moved = !(offset == Point3{});
    std::vector<std::uint32_t> pmap(ss.polygonSlotEnd(), 0);
    std::vector<Point3> pts;
    for (std::uint32_t s = ss.firstInWorld(); s; s = ss.nextInWorld(s)) {
        const std::uint32_t c = ts.createPolygon();
        if (!c) break;
        ss.copyPoints(s, pts);
        if (moved)
            for (Point3& p : pts) p = p + offset;
        if (!ts.assignPoints(c, pts.data(), std::uint32_t(pts.size()))) {
            ts.destroyPolygon(c);
            break;
        }
        ts.setFill(c, ss.fill(s));
        ts.setTranslucent(c, ss.translucent(s));
        ts.setLight(c, ss.light(s));
        ts.setBrightness(c, ss.brightness(s));
        ts.setFlag(c, polyflag::kDisabled, ss.disabled(s));
        ts.setFlag(c, polyflag::kRotated, ss.rotated(s));
        ts.setName(c, ss.name(s));
        if (const PolygonExtra* ex = ss.extra(s)) {
            PolygonExtra copy = *ex;
            if (copy.bitmap) copy.bitmap = bitmaps[copy.bitmap - 1];
            if (moved)
                for (Patch& patch : copy.patches)
                    for (Point3& p : patch.points) p = p + offset;
            ts.extraFor(c) = std::move(copy);
        }
        const std::uint32_t g = ss.groupOf(s);
        ts.setPolygonGroup(c, g ? gmap[g] : model);
        ts.addToWorld(c);
        pmap[s] = c;
    }
    // Groups whose members joined in another order than the walk get that order back.
    for (std::size_t i = 0; i < t.groups.size(); ++i) {
        if (!built.reordered_[i + 1]) continue;
        const std::uint32_t g = gmap[i + 1];
        std::vector<std::uint32_t> members;
        for (std::uint32_t s = ss.group(std::uint32_t(i + 1))->firstPolygon; s;
             s = ss.nextInGroup(s))
            if (pmap[s]) members.push_back(pmap[s]);
        for (std::uint32_t c : members) ts.setPolygonGroup(c, 0);
        for (std::uint32_t c : members) ts.setPolygonGroup(c, g);
    }

    std::vector<Handle> groups(t.groups.size());
    for (std::size_t i = 0; i < groups.size(); ++i)
        groups[i] = SceneStore::groupHandle(gmap[i + 1]);
    placeLights(target, t, groups, false);
    target.loaded_ = true;
    ts.touchScene();
    return SceneStore::groupHandle(model);
}

// ---- the source of a save
// -------------------------------------------------------------------------

bool world::WorldSource::capture(const Engine& e, Handle group, std::string& error) {
    const SceneStore& st = e.store();
    store_ = &st;
    tables = Tables{};
    extras.clear();
    orders.clear();
    bitmapFiles.clear();
    slots_.clear();
    nameOf_.clear();
    points_ = 0;
    tables.scene = WorldIO::scene(e);

    // Groups in creation order: all of them, or the group and its descendants.
    std::vector<std::uint32_t> gslots;
    groupOf_.assign(st.groupSlotEnd(), 0);
    if (group == 0) {
        for (std::uint32_t g = st.firstGroup(); g; g = st.group(g)->next) gslots.push_back(g);
    } else {
        const std::uint32_t top = st.groupSlot(group);
        if (!top) {
            error = "The group to save does not exist";
            return false;
        }
        std::vector<std::uint32_t> tree{top};
        std::vector<bool> inTree(st.groupSlotEnd(), false);
        inTree[top] = true;
        for (std::size_t i = 0; i < tree.size(); ++i)
            for (std::uint32_t c = st.group(tree[i])->firstChild; c; c = st.group(c)->nextSibling) {
                tree.push_back(c);
                inTree[c] = true;
            }
        for (std::uint32_t g = st.firstGroup(); g; g = st.group(g)->next)
            if (inTree[g]) gslots.push_back(g);
    }
    for (std::size_t i = 0; i < gslots.size(); ++i) groupOf_[gslots[i]] = std::uint32_t(i + 1);

    auto fileName = [&](std::uint32_t id) -> std::uint32_t {
        if (id == 0) return 0;
        if (id >= nameOf_.size())
            nameOf_.resize(std::max<std::size_t>(id + 1, nameOf_.size() * 2), 0);
        if (!nameOf_[id]) {
            nameOf_[id] = std::uint32_t(tables.names.size());
            tables.names.push_back(st.names().text(id));
        }
        return nameOf_[id];
    };

    // Polygons in walk order; their names are numbered as they come, so that a
    // run of distinct names is a run of consecutive numbers in the file.
    for (std::uint32_t s = st.firstInWorld(); s; s = st.nextInWorld(s)) {
        if (group != 0) {
            const std::uint32_t g = st.groupOf(s);
            if (!g || !groupOf_[g]) continue;
        }
        slots_.push_back(s);
        points_ += st.pointCount(s);
        fileName(st.nameId(s));
    }
    for (std::uint32_t g : gslots) {
        const GroupRecord& G = *st.group(g);
        GroupEntry entry;
        entry.name = fileName(G.name);
        entry.father = G.father < groupOf_.size() ? groupOf_[G.father] : 0;
        entry.hasReference = G.hasRotateReference;
        entry.reference = G.rotateReference;
        tables.groups.push_back(entry);
    }

    // Bitmaps, patches and point data of the polygons that have them.
    std::vector<Handle> bitmapHandles;
    for (std::size_t i = 0; i < slots_.size(); ++i) {
        const PolygonExtra* ex = st.extra(slots_[i]);
        if (!ex) continue;
        ExtraEntry x;
        x.polygon = std::uint32_t(i);
        if (ex->bitmap) {
            auto it = std::find(bitmapHandles.begin(), bitmapHandles.end(), ex->bitmap);
            if (it == bitmapHandles.end()) {
                const std::string path = e.bitmap_get_path(ex->bitmap);
                if (!path.empty()) {
                    bitmapHandles.push_back(ex->bitmap);
                    tables.bitmaps.push_back(path);
                    bitmapFiles.push_back(path);
                    x.bitmap = std::uint32_t(bitmapHandles.size());
                }
            } else {
                x.bitmap = std::uint32_t(it - bitmapHandles.begin() + 1);
            }
        }
        x.rotation = ex->bitmapRotation;
        x.patches = ex->patches;
        const std::uint32_t n = st.pointCount(slots_[i]);
        if (!ex->points.empty()) {
            x.points = ex->points;
            x.points.resize(n);
        }
        extras.push_back(std::move(x));
    }

    // Members of a group in the order they joined it, where that is not the walk's.
    std::vector<std::uint32_t> indexOf(st.polygonSlotEnd(), 0);
    for (std::size_t i = 0; i < slots_.size(); ++i) indexOf[slots_[i]] = std::uint32_t(i + 1);
    for (std::size_t gi = 0; gi < gslots.size(); ++gi) {
        OrderEntry order;
        order.group = std::uint32_t(gi + 1);
        bool sorted = true;
        for (std::uint32_t s = st.group(gslots[gi])->firstPolygon; s; s = st.nextInGroup(s)) {
            const std::uint32_t idx = indexOf[s];
            if (!idx) continue;
            if (!order.polygons.empty() && idx - 1 < order.polygons.back()) sorted = false;
            order.polygons.push_back(idx - 1);
        }
        if (!sorted) orders.push_back(std::move(order));
    }

    std::vector<std::uint32_t> entitySlots;
    tables.lights = WorldIO::lights(e, entitySlots);
    for (std::size_t i = 0; i < tables.lights.size(); ++i) {
        const std::uint32_t g = entitySlots[i];
        std::uint32_t entity = 0;
        if (g) entity = g < groupOf_.size() && groupOf_[g] ? groupOf_[g] : kGoneGroup;
        tables.lights[i].entity = entity;
    }
    return true;
}

world::PolygonHead world::WorldSource::head(std::size_t i) const {
    const SceneStore& st = *store_;
    const std::uint32_t s = slots_[i];
    PolygonHead h;
    const std::uint32_t id = st.nameId(s);
    h.name = id ? nameOf_[id] : 0;
    const std::uint32_t g = st.groupOf(s);
    h.group = g < groupOf_.size() ? groupOf_[g] : 0;
    h.fill = packRgb(st.fill(s)) | (std::uint32_t(st.translucent(s)) << 24);
    h.points = st.pointCount(s);
    h.brightness = std::uint8_t(st.brightness(s));
    const std::uint8_t f = st.flags(s);
    h.flags = 0;
    if (f & polyflag::kDisabled) h.flags |= kDisabled;
    if (f & polyflag::kRotated) h.flags |= kRotated;
    if (auto l = st.light(s)) {
        h.flags |= kLit;
        h.light = packRgb(*l);
    }
    if (st.extra(s)) h.flags |= kHasExtra;
    return h;
}

}  // namespace engine

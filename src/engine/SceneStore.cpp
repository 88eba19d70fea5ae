#include "engine/SceneStore.h"

#include <sys/mman.h>
#include <tbb/parallel_for.h>

#include <algorithm>

namespace engine {

namespace {
// Freed slots and point runs wait in line until this many have gathered, so a
// handle kept after a delete does not at once name something new.
constexpr std::size_t kSlotBacklog = 1024;
constexpr std::uint32_t kWhite = 0x00FFFFFFu;
constexpr std::uint8_t kDefaultBrightness = 100;
}  // namespace

SceneStore::SceneStore() { clear(); }

SceneStore::~SceneStore() = default;

void SceneStore::clear() {
    walk_.next.clear();
    walk_.prev.clear();
    first_.clear();
    count_.clear();
    flags_.clear();
    bright_.clear();
    group_.clear();
    gnext_.clear();
    gprev_.clear();
    name_.clear();
    fill_.clear();
    light_.clear();
    points_.clear();
    owner_.clear();
    extras_.clear();
    space_.clear();
    freeSlots_.clear();
    live_ = 0;
    walk_.slotEnd = 1;
    walk_.head = walk_.tail = 0;
    walk_.count = 0;
    versions_.assign(1, ++revision_);
    ++geometryRevision_;
    ++removals_;
    ++additions_;
    groups_.assign(1, GroupRecord{});
    freeGroups_.clear();
    groupHead_ = groupTail_ = 0;
    liveGroups_ = 0;
    names_.clear();

    // Slot 0 and point 0 exist so that 0 can mean "none" in every link.
    walk_.next.ensure(1);
    walk_.prev.ensure(1);
    first_.ensure(1);
    count_.ensure(1);
    flags_.ensure(1);
    bright_.ensure(1);
    group_.ensure(1);
    gnext_.ensure(1);
    gprev_.ensure(1);
    name_.ensure(1);
    fill_.ensure(1);
    light_.ensure(1);
    walk_.next[0] = walk_.prev[0] = 0;
    first_[0] = 0;
    count_[0] = 0;
    flags_[0] = 0;
    bright_[0] = 0;
    group_[0] = gnext_[0] = gprev_[0] = 0;
    name_[0] = 0;
    fill_[0] = light_[0] = 0;
    points_.ensure(1);
    owner_.ensure(1);
    points_[0] = Point3{};
    owner_[0] = 0;
}

// ---- polygons ---------------------------------------------------------------------

std::uint32_t SceneStore::createPolygon() {
    std::uint32_t s = 0;
    if (freeSlots_.size() > kSlotBacklog) {
        s = freeSlots_.front();
        freeSlots_.pop_front();
    } else if (walk_.slotEnd <= kIndexMask) {
        s = walk_.slotEnd;
        if (s >= first_.capacity()) {
            const std::size_t n = std::size_t(s) + 1;
            if (!holdSlots(n)) return 0;
        }
        ++walk_.slotEnd;
        if ((s >> kVersionChunkBits) >= versions_.size()) versions_.push_back(revision_);
    } else if (!freeSlots_.empty()) {
        s = freeSlots_.front();
        freeSlots_.pop_front();
    } else {
        return 0;
    }
    walk_.next[s] = walk_.prev[s] = 0;
    first_[s] = 0;
    count_[s] = 0;
    flags_[s] = polyflag::kAlive;
    bright_[s] = kDefaultBrightness;
    group_[s] = gnext_[s] = gprev_[s] = 0;
    name_[s] = 0;
    fill_[s] = kWhite;
    light_[s] = 0;
    ++live_;
    touch(s);
    return s;
}

void SceneStore::destroyPolygon(std::uint32_t s) {
    if (!isAlive(s)) return;
    removeFromWorld(s);
    unlinkFromGroup(s);
    names_.release(name_[s]);
    name_[s] = 0;
    if (flags_[s] & polyflag::kExtra) extras_.erase(s);
    freePoints(first_[s], count_[s]);
    first_[s] = 0;
    count_[s] = 0;
    flags_[s] = 0;
    --live_;
    touch(s);
    freeSlots_.push_back(s);
}

std::uint32_t SceneStore::pointSlot(Handle h) const {
    const std::uint32_t p = slotOf(h, Kind::Point);
    if (!p || p >= space_.top()) return 0;
    const std::uint32_t o = owner_[p];
    if (!o) return 0;
    return (p >= first_[o] && p < first_[o] + count_[o]) ? p : 0;
}

bool SceneStore::holdSlots(std::size_t n) {
    return walk_.next.ensure(n) && walk_.prev.ensure(n) && first_.ensure(n) && count_.ensure(n) &&
           flags_.ensure(n) && bright_.ensure(n) && group_.ensure(n) && gnext_.ensure(n) &&
           gprev_.ensure(n) && name_.ensure(n) && fill_.ensure(n) && light_.ensure(n);
}

bool SceneStore::holdPoints() {
    const std::size_t n = space_.top();
    return points_.ensure(n) && owner_.ensure(n);
}

void SceneStore::freePoints(std::uint32_t first, std::uint32_t n) {
    if (n == 0 || first == 0) return;
    for (std::uint32_t i = 0; i < n; ++i) owner_[first + i] = 0;
    space_.release(first, n);
}

std::uint32_t SceneStore::appendPoint(std::uint32_t s, Point3 p) {
    const std::uint32_t n = count_[s];
    if (n >= kMaxPointsPerPolygon) return 0;
    const std::uint32_t first = first_[s];
    std::uint32_t at = n ? space_.extend(first, n) : space_.startGrowing();
    if (n && !at) {
        // Another polygon took the place behind this one: move it where it can grow.
        const std::uint32_t moved = space_.take(n + 1);
        if (!moved) return 0;
        if (!holdPoints()) {
            space_.release(moved, n + 1);
            return 0;
        }
        at = moved + n;
        for (std::uint32_t i = 0; i < n; ++i) {
            points_[moved + i] = points_[first + i];
            owner_[moved + i] = s;
        }
        freePoints(first, n);
        first_[s] = moved;
    } else if (!at || !holdPoints()) {
        if (at) space_.release(at, 1);
        return 0;
    } else if (n == 0) {
        first_[s] = at;
    }
    points_[at] = p;
    owner_[at] = s;
    count_[s] = static_cast<std::uint16_t>(n + 1);
    if (flags_[s] & polyflag::kExtra) {
        auto& ex = extras_[s];
        if (!ex.points.empty()) ex.points.resize(n + 1);
    }
    touchGeometry(s);
    return at;
}

bool SceneStore::assignPoints(std::uint32_t s, const Point3* pts, std::uint32_t n) {
    if (count_[s] != 0 || n > kMaxPointsPerPolygon) return false;
    if (n == 0) return true;
    const std::uint32_t first = space_.take(n);
    if (!first) return false;
    if (!holdPoints()) {
        space_.release(first, n);
        return false;
    }
    for (std::uint32_t i = 0; i < n; ++i) {
        points_[first + i] = pts[i];
        owner_[first + i] = s;
    }
    first_[s] = first;
    count_[s] = static_cast<std::uint16_t>(n);
    touchGeometry(s);
    return true;
}

void SceneStore::copyPoints(std::uint32_t s, std::vector<Point3>& out) const {
    const std::uint32_t f = first_[s], n = count_[s];
    out.resize(n);
    for (std::uint32_t i = 0; i < n; ++i) out[i] = points_[f + i];
}

void SceneStore::reversePoints(std::uint32_t s) {
    const std::uint32_t f = first_[s], n = count_[s];
    for (std::uint32_t i = 0, j = n ? n - 1 : 0; i < j; ++i, --j)
        std::swap(points_[f + i], points_[f + j]);
    if (flags_[s] & polyflag::kExtra) {
        auto& pts = extras_[s].points;
        std::reverse(pts.begin(), pts.end());
    }
    touchGeometry(s);
}

void SceneStore::linkAtWalkEnd(std::uint32_t s) {
    const Handle h = polygonHandle(s);
    walk_.prev[s] = walk_.tail;
    walk_.next[s] = 0;
    if (walk_.tail)
        walk_.next[walk_.tail & kIndexMask] = h;
    else
        walk_.head = h;
    walk_.tail = h;
}

void SceneStore::linkAtGroupEnd(std::uint32_t s, std::uint32_t g) {
    GroupRecord& G = groups_[g];
    group_[s] = g;
    gprev_[s] = G.lastPolygon;
    gnext_[s] = 0;
    if (G.lastPolygon)
        gnext_[G.lastPolygon] = s;
    else
        G.firstPolygon = s;
    G.lastPolygon = s;
    ++G.polygonCount;
}

bool SceneStore::addToWorld(std::uint32_t s) {
    if (flags_[s] & polyflag::kInWorld) return false;
    linkAtWalkEnd(s);
    ++walk_.count;
    flags_[s] |= polyflag::kInWorld;
    touch(s);
    ++geometryRevision_;
    ++additions_;
    return true;
}

namespace {

// Has the system back the pages of [p, p + bytes) now, with what they hold, as a
// first write would one page at a time.
void populate(void* p, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
    constexpr std::uintptr_t kPage = 4096;
    const std::uintptr_t a = (reinterpret_cast<std::uintptr_t>(p) + kPage - 1) & ~(kPage - 1);
    const std::uintptr_t b = (reinterpret_cast<std::uintptr_t>(p) + bytes) & ~(kPage - 1);
    if (b > a) madvise(reinterpret_cast<void*>(a), b - a, MADV_POPULATE_WRITE);
#else
    (void)p;
    (void)bytes;
#endif
}

}  // namespace

void SceneStore::reserve(std::size_t polygons, std::size_t points) {
    const std::size_t s0 = walk_.slotEnd, s1 = std::min(s0 + polygons, std::size_t(kIndexMask) + 1);
    const std::size_t p0 = space_.top(), p1 = std::min(p0 + points, std::size_t(PointSpace::kLimit));
    if (!(holdSlots(s1) && points_.ensure(p1) && owner_.ensure(p1)))
        return;  // the adds will find out for themselves
    std::vector<std::pair<void*, std::size_t>> pieces;
    auto collect = [&](auto& array, std::size_t from, std::size_t to) {
        array.forEachPiece(from, to, [&](auto* first, std::size_t n) {
            pieces.emplace_back(first, n * sizeof(*first));
        });
    };
    auto slots = [&](auto&... arrays) { (collect(arrays, s0, s1), ...); };
    slots(walk_.next, walk_.prev, first_, count_, flags_, bright_, group_, gnext_, gprev_, name_,
          fill_, light_);
    collect(points_, p0, p1);
    collect(owner_, p0, p1);
    tbb::parallel_for(std::size_t(0), pieces.size(),
                      [&](std::size_t i) { populate(pieces[i].first, pieces[i].second); });
}

std::uint32_t SceneStore::appendTriangles(const Point3* corners, const Rgb* fills,
                                          std::uint32_t count, std::uint32_t g,
                                          std::uint32_t& first) {
    if (count == 0 || freeSlots_.size() > kSlotBacklog || walk_.slotEnd > kIndexMask) return 0;
    const std::uint32_t s0 = walk_.slotEnd;
    count = std::min<std::uint32_t>(count, kIndexMask - s0 + 1);
    const std::size_t end = std::size_t(s0) + count;
    if (!holdSlots(end)) return 0;
    std::uint32_t p = 0;
    count = space_.takeRuns(3, count, p);
    if (count == 0) return 0;
    if (!holdPoints()) {
        space_.release(p, 3 * count);
        return 0;
    }
    // Touches per triangle: made, points, world, fill, and group when it has one.
    const std::uint64_t touches = g ? 5 : 4;
    for (std::uint32_t i = 0; i < count; ++i, p += 3) {
        const std::uint32_t s = s0 + i;
        if ((s >> kVersionChunkBits) >= versions_.size()) versions_.push_back(revision_);
        linkAtWalkEnd(s);
        for (std::uint32_t c = 0; c < 3; ++c) {
            points_[p + c] = corners[3 * i + c];
            owner_[p + c] = s;
        }
        first_[s] = p;
        count_[s] = 3;
        flags_[s] = polyflag::kAlive | polyflag::kInWorld;
        bright_[s] = kDefaultBrightness;
        name_[s] = 0;
        fill_[s] = pack(fills[i]);
        light_[s] = 0;
        group_[s] = gnext_[s] = gprev_[s] = 0;
        if (g) linkAtGroupEnd(s, g);
        revision_ += touches;
        versions_[s >> kVersionChunkBits] = revision_;
    }
    first = s0;
    walk_.slotEnd = s0 + count;
    walk_.count += count;
    live_ += count;
    geometryRevision_ += count;
    additions_ += count;
    return count;
}

void SceneStore::removeFromWorld(std::uint32_t s) {
    if (!(flags_[s] & polyflag::kInWorld)) return;
    const Handle p = walk_.prev[s], n = walk_.next[s];
    if (p)
        walk_.next[p & kIndexMask] = n;
    else
        walk_.head = n;
    if (n)
        walk_.prev[n & kIndexMask] = p;
    else
        walk_.tail = p;
    walk_.next[s] = walk_.prev[s] = 0;
    --walk_.count;
    flags_[s] &= static_cast<std::uint8_t>(~polyflag::kInWorld);
    touch(s);
    ++removals_;
}

void SceneStore::setFlag(std::uint32_t s, std::uint8_t flag, bool on) {
    const std::uint8_t old = flags_[s];
    const std::uint8_t now = on ? (old | flag) : (old & static_cast<std::uint8_t>(~flag));
    if (now == old) return;
    flags_[s] = now;
    touch(s);
}

void SceneStore::setFill(std::uint32_t s, Rgb c) {
    fill_[s] = (fill_[s] & 0xFF000000u) | pack(c);
    touch(s);
}

void SceneStore::setTranslucent(std::uint32_t s, int mode) {
    const std::uint32_t m = static_cast<std::uint32_t>(std::clamp(mode, 0, 255));
    fill_[s] = (fill_[s] & 0x00FFFFFFu) | (m << 24);
    touch(s);
}

void SceneStore::setLight(std::uint32_t s, std::optional<Rgb> c) {
    if (c) {
        light_[s] = pack(*c);
        flags_[s] |= polyflag::kLit;
    } else {
        light_[s] = 0;
        flags_[s] &= static_cast<std::uint8_t>(~polyflag::kLit);
    }
    touch(s);
}

void SceneStore::setBrightness(std::uint32_t s, int b) {
    bright_[s] = static_cast<std::uint8_t>(std::clamp(b, 0, 255));
    touch(s);
}

void SceneStore::setName(std::uint32_t s, std::string_view name) {
    const std::uint32_t id = names_.acquire(name);
    names_.release(name_[s]);
    name_[s] = id;
    touch(s);
}

void SceneStore::setNameId(std::uint32_t s, std::uint32_t id) {
    names_.retain(id);
    names_.release(name_[s]);
    name_[s] = id;
    touch(s);
}

const PolygonExtra* SceneStore::extra(std::uint32_t s) const {
    if (!(flags_[s] & polyflag::kExtra)) return nullptr;
    auto it = extras_.find(s);
    return it == extras_.end() ? nullptr : &it->second;
}

PolygonExtra& SceneStore::extraFor(std::uint32_t s) {
    flags_[s] |= polyflag::kExtra;
    touch(s);
    return extras_[s];
}

void SceneStore::copyAttributes(std::uint32_t from, std::uint32_t to) {
    fill_[to] = fill_[from];
    light_[to] = light_[from];
    bright_[to] = bright_[from];
    constexpr std::uint8_t kCopied = polyflag::kLit | polyflag::kRotated | polyflag::kDisabled;
    flags_[to] = static_cast<std::uint8_t>((flags_[to] & ~kCopied) | (flags_[from] & kCopied));
    setNameId(to, name_[from]);
    if (const PolygonExtra* ex = extra(from)) {
        PolygonExtra copy = *ex;
        if (copy.points.size() != count_[to]) copy.points.clear();
        extraFor(to) = std::move(copy);
    }
    touch(to);
}

// ---- groups -------------------------------------------------------------------------

void SceneStore::unlinkFromGroup(std::uint32_t s) {
    const std::uint32_t g = group_[s];
    if (!g) return;
    GroupRecord& G = groups_[g];
    const std::uint32_t p = gprev_[s], n = gnext_[s];
    if (p)
        gnext_[p] = n;
    else
        G.firstPolygon = n;
    if (n)
        gprev_[n] = p;
    else
        G.lastPolygon = p;
    --G.polygonCount;
    group_[s] = gnext_[s] = gprev_[s] = 0;
}

void SceneStore::setPolygonGroup(std::uint32_t s, std::uint32_t g) {
    if (group_[s] == g) return;
    unlinkFromGroup(s);
    if (g) linkAtGroupEnd(s, g);
    touch(s);
}

std::uint32_t SceneStore::createGroup(std::string_view name) {
    std::uint32_t g;
    if (freeGroups_.size() > kSlotBacklog) {
        g = freeGroups_.front();
        freeGroups_.pop_front();
    } else if (groups_.size() <= kIndexMask) {
        g = static_cast<std::uint32_t>(groups_.size());
        groups_.emplace_back();
    } else if (!freeGroups_.empty()) {
        g = freeGroups_.front();
        freeGroups_.pop_front();
    } else {
        return 0;
    }
    GroupRecord& G = groups_[g];
    G = GroupRecord{};
    G.alive = true;
    G.name = names_.acquire(name);
    G.serial = ++groupSerial_;
    G.prev = groupTail_;
    if (groupTail_)
        groups_[groupTail_].next = g;
    else
        groupHead_ = g;
    groupTail_ = g;
    ++liveGroups_;
    touchScene();
    return g;
}

void SceneStore::unlinkChild(std::uint32_t g) {
    GroupRecord& G = groups_[g];
    if (!G.father) return;
    GroupRecord& F = groups_[G.father];
    if (G.prevSibling)
        groups_[G.prevSibling].nextSibling = G.nextSibling;
    else
        F.firstChild = G.nextSibling;
    if (G.nextSibling)
        groups_[G.nextSibling].prevSibling = G.prevSibling;
    else
        F.lastChild = G.prevSibling;
    G.father = G.prevSibling = G.nextSibling = 0;
}

void SceneStore::setFather(std::uint32_t g, std::uint32_t father) {
    if (groups_[g].father == father) return;
    unlinkChild(g);
    if (father) {
        GroupRecord& G = groups_[g];
        GroupRecord& F = groups_[father];
        G.father = father;
        // Children are listed in the order the groups were made.
        std::uint32_t after = F.lastChild;
        while (after && groups_[after].serial > G.serial) after = groups_[after].prevSibling;
        G.prevSibling = after;
        G.nextSibling = after ? groups_[after].nextSibling : F.firstChild;
        if (G.prevSibling)
            groups_[G.prevSibling].nextSibling = g;
        else
            F.firstChild = g;
        if (G.nextSibling)
            groups_[G.nextSibling].prevSibling = g;
        else
            F.lastChild = g;
    }
    touchScene();
}

void SceneStore::destroyGroup(std::uint32_t g) {
    if (!group(g)) return;
    while (groups_[g].firstPolygon) setPolygonGroup(groups_[g].firstPolygon, 0);
    while (groups_[g].firstChild) unlinkChild(groups_[g].firstChild);
    unlinkChild(g);
    GroupRecord& G = groups_[g];
    if (G.prev)
        groups_[G.prev].next = G.next;
    else
        groupHead_ = G.next;
    if (G.next)
        groups_[G.next].prev = G.prev;
    else
        groupTail_ = G.prev;
    names_.release(G.name);
    G = GroupRecord{};
    --liveGroups_;
    freeGroups_.push_back(g);
    touchScene();
}

void SceneStore::setGroupName(std::uint32_t g, std::string_view name) {
    const std::uint32_t id = names_.acquire(name);
    names_.release(groups_[g].name);
    groups_[g].name = id;
    touchScene();
}

void SceneStore::setRotateReference(std::uint32_t g, Point3 p) {
    groups_[g].hasRotateReference = true;
    groups_[g].rotateReference = p;
    touchScene();
}

}  // namespace engine

// The ".STATE" binary world format.
//
//   file header  magic (8) | version u32 | flags u32 (0) | file size u64 | crc u32
//   sections     tag u32 | flags u32 (0) | length u64 | header crc u32 | payload | payload crc u32
//
// Sections come in a fixed order: SCEN NAME GRUP BITM LITE POLY PNTS XTRA ORDR END_.
// All numbers are little-endian; counts and indexes are LEB128 varints. Per-polygon
// fields are columns of runs (a value repeated, or counting up by one), so a
// scene of millions of polygons that share a few names, groups and colours costs
// a few bytes beyond its coordinates, which are stored as they are (PNTS).

#include <condition_variable>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

#include "engine/WorldChecksum.h"
#include "engine/WorldCodec.h"

namespace engine::world {

namespace {

constexpr std::uint32_t tag(const char (&s)[5]) {
    return std::uint32_t(std::uint8_t(s[0])) | (std::uint32_t(std::uint8_t(s[1])) << 8) |
           (std::uint32_t(std::uint8_t(s[2])) << 16) | (std::uint32_t(std::uint8_t(s[3])) << 24);
}

constexpr std::uint32_t kScene = tag("SCEN"), kNames = tag("NAME"), kGroups = tag("GRUP"),
                        kBitmaps = tag("BITM"), kLights = tag("LITE"), kPolygons = tag("POLY"),
                        kPoints = tag("PNTS"), kExtras = tag("XTRA"), kOrders = tag("ORDR"),
                        kEnd = tag("END_");

std::string tagName(std::uint32_t t) {
    std::string s(4, ' ');
    for (int i = 0; i < 4; ++i) s[i] = char((t >> (8 * i)) & 0xFF);
    return s;
}

constexpr std::size_t kFileHeader = 28;
constexpr std::size_t kSectionHeader = 20;
constexpr std::size_t kSectionOverhead = kSectionHeader + 4;
constexpr std::size_t kChunkBytes = std::size_t(1) << 20;
constexpr std::size_t kChunkPoints = std::size_t(1) << 17;  // more than a polygon can have

// ---- columns of runs ----------------------------------------------------------------

class RunEncoder {
public:
    void push(std::uint32_t v) {
        if (len_ == 1 && v == last_) {
            len_ = 2;
        } else if (len_ == 1 && std::uint64_t(v) == std::uint64_t(last_) + 1) {
            len_ = 2;
            step_ = true;
            last_ = v;
        } else if (len_ >= 2 && !step_ && v == last_) {
            ++len_;
        } else if (len_ >= 2 && step_ && std::uint64_t(v) == std::uint64_t(last_) + 1) {
            ++len_;
            last_ = v;
        } else {
            flush();
            first_ = last_ = v;
            len_ = 1;
            step_ = false;
        }
    }
    std::vector<std::uint8_t> finish() {
        flush();
        return std::move(out_.bytes);
    }

private:
    void flush() {
        if (!len_) return;
        out_.varint((len_ << 1) | (step_ ? 1 : 0));
        out_.varint(first_);
        len_ = 0;
        step_ = false;
    }
    Encoder out_;
    std::uint32_t first_ = 0, last_ = 0;
    std::uint64_t len_ = 0;
    bool step_ = false;
};

class RunCursor {
public:
    RunCursor() = default;
    explicit RunCursor(Decoder d) : d_(d) {}
    // Checks that the runs cover exactly `count` values and every value fits.
    static bool valid(Decoder d, std::uint64_t count) {
        std::uint64_t total = 0;
        while (!d.atEnd()) {
            const std::uint64_t h = d.varint();
            const std::uint64_t len = h >> 1;
            const std::uint64_t v = d.varint();
            if (!d.ok() || len == 0 || len > count - total || v > 0xFFFFFFFFu) return false;
            if ((h & 1) && len - 1 > 0xFFFFFFFFu - v) return false;
            total += len;
        }
        return d.ok() && total == count;
    }
    std::uint32_t next() {
        if (!left_) {
            const std::uint64_t h = d_.varint();
            left_ = h >> 1;
            step_ = h & 1;
            value_ = d_.varint();
        }
        const std::uint32_t v = std::uint32_t(value_);
        if (step_) ++value_;
        --left_;
        return v;
    }

private:
    Decoder d_;
    std::uint64_t left_ = 0, value_ = 0;
    bool step_ = false;
};

// ---- writing ------------------------------------------------------------------------------

class Writer {
public:
    explicit Writer(ByteSink& out) : out_(out) {}
    bool ok() const { return ok_; }
    void raw(const void* p, std::size_t n) {
        if (ok_ && n) ok_ = out_.write(p, n);
    }
    void header(std::uint32_t t, std::uint64_t length) {
        Encoder e;
        e.u32(t);
        e.u32(0);
        e.u64(length);
        e.u32(crc32c(0, e.bytes.data(), e.bytes.size()));
        raw(e.bytes.data(), e.bytes.size());
    }
    void section(std::uint32_t t, const std::vector<std::uint8_t>& payload) {
        header(t, payload.size());
        raw(payload.data(), payload.size());
        trailer(crc32c(0, payload.data(), payload.size()));
    }
    void trailer(std::uint32_t crc) {
        Encoder e;
        e.u32(crc);
        raw(e.bytes.data(), e.bytes.size());
    }

private:
    ByteSink& out_;
    bool ok_ = true;
};

std::vector<std::uint8_t> sceneBytes(const SceneSettings& s) {
    Encoder e;
    e.point(s.camera.location);
    e.point(s.camera.direction);
    e.point(s.camera.up);
    e.f64(s.camera.zoom);
    e.f64(s.camera.distanceFromEye);
    e.u8(s.fog.on ? 1 : 0);
    e.f64(s.fog.farDepth);
    e.f64(s.fog.nearDepth);
    e.u32(packRgb(s.background));
    e.f64(s.normalsAngle);
    return std::move(e.bytes);
}

std::vector<std::uint8_t> extraBytes(const std::vector<ExtraEntry>& extras) {
    Encoder e;
    e.varint(extras.size());
    std::int64_t prev = -1;
    for (const ExtraEntry& x : extras) {
        e.varint(std::uint64_t(std::int64_t(x.polygon) - prev - 1));
        prev = x.polygon;
        e.varint(x.bitmap);
        e.f64(x.rotation);
        e.varint(x.patches.size());
        for (const Patch& p : x.patches) {
            e.u32(packRgb(p.colour));
            e.svarint(p.type);
            e.varint(p.points.size());
            for (const Point3& q : p.points) e.point(q);
        }
        e.u8(x.points.empty() ? 0 : 1);
        for (const PointExtra& pe : x.points) {
            const bool uv = std::bit_cast<std::uint64_t>(pe.bx) != 0 ||
                            std::bit_cast<std::uint64_t>(pe.by) != 0;
            const std::uint8_t bits =
                std::uint8_t((pe.hasRgb ? 1 : 0) | (pe.alpha != 255 ? 2 : 0) | (uv ? 4 : 0));
            e.u8(bits);
            if (bits & 1) e.u32(packRgb(pe.rgb));
            if (bits & 2) e.u8(std::uint8_t(std::clamp(pe.alpha, 0, 255)));
            if (bits & 4) {
                e.f64(pe.bx);
                e.f64(pe.by);
            }
        }
    }
    return std::move(e.bytes);
}

}  // namespace

bool writeState(const WorldSource& src, ByteSink& out, std::string& error) {
    const Tables& t = src.tables;
    std::vector<std::vector<std::uint8_t>> early;  // SCEN .. POLY
    early.push_back(sceneBytes(t.scene));
    {
        Encoder e;
        e.varint(t.names.size());
        for (const std::string& n : t.names) e.text(n);
        early.push_back(std::move(e.bytes));
    }
    {
        Encoder e;
        e.varint(t.groups.size());
        for (const GroupEntry& g : t.groups) {
            e.varint(g.name);
            e.varint(g.father);
            e.u8(g.hasReference ? 1 : 0);
            if (g.hasReference) e.point(g.reference);
        }
        early.push_back(std::move(e.bytes));
    }
    {
        Encoder e;
        e.varint(t.bitmaps.size());
        for (const std::string& b : t.bitmaps) e.text(b);
        early.push_back(std::move(e.bytes));
    }
    {
        Encoder e;
        e.varint(t.lights.size());
        for (const LightEntry& l : t.lights) {
            e.text(l.name);
            e.point(l.location);
            e.point(l.target);
            e.svarint(l.type);
            e.f64(l.ambient);
            e.f64(l.diffuse);
            e.f64(l.specular);
            e.f64(l.shining);
            e.varint(l.entity);
        }
        early.push_back(std::move(e.bytes));
    }
    {
        RunEncoder points, names, groups, fills, attrs, lights;
        std::uint64_t lit = 0;
        for (std::size_t i = 0; i < src.polygonCount(); ++i) {
            const PolygonHead h = src.head(i);
            points.push(h.points);
            names.push(h.name);
            groups.push(h.group);
            fills.push(h.fill);
            attrs.push(std::uint32_t(h.brightness) | (std::uint32_t(h.flags) << 8));
            if (h.flags & kLit) {
                lights.push(h.light);
                ++lit;
            }
        }
        Encoder e;
        e.varint(src.polygonCount());
        e.varint(src.pointCount());
        e.varint(lit);
        for (RunEncoder* c : {&points, &names, &groups, &fills, &attrs, &lights}) {
            const std::vector<std::uint8_t> col = c->finish();
            e.varint(col.size());
            e.append(col);
        }
        early.push_back(std::move(e.bytes));
    }
    const std::vector<std::uint8_t> extras = extraBytes(src.extras);
    std::vector<std::uint8_t> orders;
    {
        Encoder e;
        e.varint(src.orders.size());
        for (const OrderEntry& o : src.orders) {
            e.varint(o.group);
            e.varint(o.polygons.size());
            for (std::uint32_t p : o.polygons) e.varint(p);
        }
        orders = std::move(e.bytes);
    }

    const std::uint64_t pointBytes = src.pointCount() * sizeof(Point3);
    // Ten sections: the six above, PNTS, XTRA, ORDR and END_.
    std::uint64_t total = kFileHeader + 10 * kSectionOverhead;
    for (const auto& section : early) total += section.size();
    total += pointBytes + extras.size() + orders.size();

    Writer w(out);
    {
        Encoder e;
        for (char c : kStateMagic) e.u8(std::uint8_t(c));
        e.u32(kStateVersion);
        e.u32(0);
        e.u64(total);
        e.u32(crc32c(0, e.bytes.data(), e.bytes.size()));
        w.raw(e.bytes.data(), e.bytes.size());
    }
    const std::uint32_t earlyTags[] = {kScene, kNames, kGroups, kBitmaps, kLights, kPolygons};
    for (std::size_t i = 0; i < early.size(); ++i) w.section(earlyTags[i], early[i]);

    // The coordinates go out as they are stored, a block at a time.
    w.header(kPoints, pointBytes);
    std::vector<std::uint8_t> buf(kChunkBytes);
    std::size_t used = 0;
    std::uint32_t crc = 0;
    auto flush = [&] {
        crc = crc32c(crc, buf.data(), used);
        w.raw(buf.data(), used);
        used = 0;
    };
    for (std::size_t i = 0; i < src.polygonCount() && w.ok(); ++i) {
        const std::uint32_t first = src.firstPoint(i), n = src.pointsOf(i);
        for (std::uint32_t k = 0; k < n; ++k) {
            if (used + sizeof(Point3) > buf.size()) flush();
            Point3 p = src.point(first + k);
            if constexpr (std::endian::native == std::endian::big) {
                for (int a = 0; a < 3; ++a)
                    p[a] = std::bit_cast<double>(fromLittle(std::bit_cast<std::uint64_t>(p[a])));
            }
            std::memcpy(buf.data() + used, &p, sizeof(Point3));
            used += sizeof(Point3);
        }
    }
    flush();
    w.trailer(crc);
    w.section(kExtras, extras);
    w.section(kOrders, orders);
    w.section(kEnd, {});
    if (!w.ok()) {
        error = "The world file could not be written";
        return false;
    }
    return true;
}

// ---- reading --------------------------------------------------------------------------------

namespace {

class Reader {
public:
    Reader(ByteSource& in, WorldBuilder& b) : in_(in), b_(b), size_(in.size()) {}

    bool fail(const std::string& why) { return b_.fail(why); }
    bool cutShort() {
        const std::string f = in_.failure();
        if (!f.empty()) {
            if (b_.error.empty()) b_.error = f;
            return false;
        }
        return fail("it is cut short");
    }
    bool read(void* p, std::size_t n) {
        if (in_.read(p, n) != n) return cutShort();
        pos_ += n;
        return true;
    }
    std::uint64_t left() const { return size_ - pos_; }

    bool fileHeader() {
        std::uint8_t h[kFileHeader];
        const std::size_t got = in_.read(h, sizeof h);
        pos_ = got;
        if (got < sizeof kStateMagic || std::memcmp(h, kStateMagic, sizeof kStateMagic) != 0) {
            b_.error = foreignMessage();
            return false;
        }
        if (got < sizeof h) return cutShort();
        Decoder d(h + 8, sizeof h - 8);
        const std::uint32_t version = d.u32();
        const std::uint32_t flags = d.u32();
        const std::uint64_t declared = d.u64();
        const std::uint32_t crc = d.u32();
        if (crc != crc32c(0, h, sizeof h - 4)) return fail("its header fails its check");
        if (version > kStateVersion) {
            b_.error = newerMessage(version, kStateVersion);
            return false;
        }
        if (version == 0 || flags != 0) return fail("its header is not valid");
        if (declared > size_) return fail("it is cut short");
        if (declared < size_) return fail("it has bytes after its end");
        return true;
    }

    // A section's header: its tag must be the expected one.
    bool sectionHeader(std::uint32_t expected, std::uint64_t& length) {
        std::uint8_t h[kSectionHeader];
        if (!read(h, sizeof h)) return false;
        Decoder d(h, sizeof h);
        const std::uint32_t t = d.u32();
        const std::uint32_t flags = d.u32();
        length = d.u64();
        if (d.u32() != crc32c(0, h, sizeof h - 4))
            return fail("the header of section " + tagName(expected) + " fails its check");
        if (t != expected) return fail("section " + tagName(expected) + " is missing");
        if (flags != 0) return fail("section " + tagName(expected) + " has unknown flags");
        if (length > left() || left() - length < 4) return fail("it is cut short");
        return true;
    }

    bool trailer(std::uint32_t crc, std::uint32_t t) {
        std::uint8_t c[4];
        if (!read(c, 4)) return false;
        Decoder d(c, 4);
        if (d.u32() != crc) return fail("section " + tagName(t) + " fails its check");
        return true;
    }

    // A whole small section, checked.
    bool section(std::uint32_t t, std::vector<std::uint8_t>& payload) {
        std::uint64_t length = 0;
        if (!sectionHeader(t, length)) return false;
        payload.resize(std::size_t(length));
        if (!read(payload.data(), payload.size())) return false;
        return trailer(crc32c(0, payload.data(), payload.size()), t);
    }

    bool run();

private:
    bool decodeTables(Tables& t);
    bool readPoints();
    bool decodeExtras(const std::vector<std::uint8_t>& bytes);
    bool decodeOrders(const std::vector<std::uint8_t>& bytes);

    ByteSource& in_;
    WorldBuilder& b_;
    std::uint64_t size_;
    std::uint64_t pos_ = 0;
    std::vector<std::uint8_t> scene_, names_, groups_, bitmaps_, lights_, poly_;
    std::uint64_t polygons_ = 0, points_ = 0, lit_ = 0;
    RunCursor cPoints_, cNames_, cGroups_, cFills_, cAttrs_, cLights_;
};

bool Reader::decodeTables(Tables& t) {
    {
        Decoder d(scene_.data(), scene_.size());
        SceneSettings& s = t.scene;
        s.camera.location = d.point();
        s.camera.direction = d.point();
        s.camera.up = d.point();
        s.camera.zoom = d.f64();
        s.camera.distanceFromEye = d.f64();
        const std::uint8_t fog = d.u8();
        s.fog.on = fog != 0;
        s.fog.farDepth = d.f64();
        s.fog.nearDepth = d.f64();
        const std::uint32_t bg = d.u32();
        s.background = unpackRgb(bg);
        s.normalsAngle = d.f64();
        if (!d.ok() || !d.atEnd() || fog > 1 || bg > 0xFFFFFFu)
            return fail("section SCEN is not valid");
    }
    {
        Decoder d(names_.data(), names_.size());
        const std::uint64_t n = d.count(1);
        t.names.clear();
        t.names.reserve(std::size_t(n));
        for (std::uint64_t i = 0; i < n && d.ok(); ++i) t.names.push_back(d.text());
        if (!d.ok() || !d.atEnd() || n == 0 || n > 0xFFFFFFFFu)
            return fail("section NAME is not valid");
    }
    {
        Decoder d(groups_.data(), groups_.size());
        const std::uint64_t n = d.count(3);
        for (std::uint64_t i = 0; i < n && d.ok(); ++i) {
            GroupEntry g;
            const std::uint64_t name = d.varint(), father = d.varint();
            const std::uint8_t ref = d.u8();
            if (name > 0xFFFFFFFFu || father > 0xFFFFFFFFu || ref > 1) d.fail();
            g.name = std::uint32_t(name);
            g.father = std::uint32_t(father);
            g.hasReference = ref == 1;
            if (g.hasReference) g.reference = d.point();
            t.groups.push_back(g);
        }
        if (!d.ok() || !d.atEnd()) return fail("section GRUP is not valid");
    }
    {
        Decoder d(bitmaps_.data(), bitmaps_.size());
        const std::uint64_t n = d.count(1);
        for (std::uint64_t i = 0; i < n && d.ok(); ++i) t.bitmaps.push_back(d.text());
        if (!d.ok() || !d.atEnd()) return fail("section BITM is not valid");
    }
    {
        Decoder d(lights_.data(), lights_.size());
        const std::uint64_t n = d.count(83);  // the smallest a light can be
        for (std::uint64_t i = 0; i < n && d.ok(); ++i) {
            LightEntry l;
            l.name = d.text();
            l.location = d.point();
            l.target = d.point();
            const std::int64_t type = d.svarint();
            l.ambient = d.f64();
            l.diffuse = d.f64();
            l.specular = d.f64();
            l.shining = d.f64();
            const std::uint64_t entity = d.varint();
            if (type < INT32_MIN || type > INT32_MAX || entity > 0xFFFFFFFFu) d.fail();
            l.type = int(type);
            l.entity = std::uint32_t(entity);
            t.lights.push_back(std::move(l));
        }
        if (!d.ok() || !d.atEnd()) return fail("section LITE is not valid");
    }
    {
        Decoder d(poly_.data(), poly_.size());
        polygons_ = d.varint();
        points_ = d.varint();
        lit_ = d.varint();
        RunCursor* cursors[] = {&cPoints_, &cNames_, &cGroups_, &cFills_, &cAttrs_, &cLights_};
        for (int c = 0; c < 6 && d.ok(); ++c) {
            const Decoder col = d.sub(d.varint());
            if (!RunCursor::valid(col, c == 5 ? lit_ : polygons_)) d.fail();
            *cursors[c] = RunCursor(col);
        }
        if (!d.ok() || !d.atEnd() || lit_ > polygons_) return fail("section POLY is not valid");
        // The coordinates must fit in what is left of the file.
        if (points_ > left() / sizeof(Point3)) return fail("it is cut short");
    }
    return true;
}

// The coordinates of whole polygons, a chunk at a time, with the running check.
// It reads ahead of the polygons' other columns with its own cursor over the
// point counts, so that it can run on a thread of its own while the scene is built.
class PointFeeder {
public:
    struct Chunk {
        std::vector<Point3> points = std::vector<Point3>(kChunkPoints);
        std::size_t used = 0;
        std::uint64_t polygons = 0;
    };

    PointFeeder(ByteSource& in, RunCursor counts, std::uint64_t polygons, std::uint64_t points)
        : in_(in), counts_(counts), polygonsLeft_(polygons), pointsLeft_(points) {}

    // The next chunk; false at the end or when reading failed (why() says).
    bool fill(Chunk& c) {
        c.used = 0;
        c.polygons = 0;
        while (polygonsLeft_ > 0) {
            if (!pending_) {
                pending_ = counts_.next();
                if (pending_ > kChunkPoints || pending_ > pointsLeft_) {
                    why_ = "the polygons need more points than there are";
                    return false;
                }
            }
            if (c.used + pending_ > c.points.size()) break;
            c.used += pending_;
            pointsLeft_ -= pending_;
            pending_ = 0;
            ++c.polygons;
            --polygonsLeft_;
        }
        if (c.polygons == 0) return false;
        auto* dst = reinterpret_cast<std::uint8_t*>(c.points.data());
        const std::size_t bytes = c.used * sizeof(Point3);
        if (in_.read(dst, bytes) != bytes) {
            why_ = in_.failure().empty() ? "it is cut short" : in_.failure();
            return false;
        }
        bytesRead_ += bytes;
        crc_ = crc32c(crc_, dst, bytes);
        if constexpr (std::endian::native == std::endian::big) {
            for (std::size_t k = 0; k < c.used; ++k)
                for (int a = 0; a < 3; ++a)
                    c.points[k][a] =
                        std::bit_cast<double>(fromLittle(std::bit_cast<std::uint64_t>(c.points[k][a])));
        }
        return true;
    }
    const std::string& why() const { return why_; }
    std::uint32_t crc() const { return crc_; }
    std::uint64_t bytesRead() const { return bytesRead_; }
    std::uint64_t pointsLeft() const { return pointsLeft_; }

private:
    ByteSource& in_;
    RunCursor counts_;
    std::uint64_t polygonsLeft_, pointsLeft_;
    std::uint32_t pending_ = 0;
    std::uint32_t crc_ = 0;
    std::uint64_t bytesRead_ = 0;
    std::string why_;
};

// Chunks handed from the reading thread to the building one.
class ChunkQueue {
public:
    using Chunk = PointFeeder::Chunk;
    explicit ChunkQueue(std::size_t buffers) {
        for (std::size_t i = 0; i < buffers; ++i) free_.push_back(std::make_unique<Chunk>());
    }
    // Reader side.
    std::unique_ptr<Chunk> takeFree() {
        std::unique_lock<std::mutex> lock(m_);
        cv_.wait(lock, [&] { return !free_.empty() || stop_; });
        if (stop_) return nullptr;
        auto c = std::move(free_.back());
        free_.pop_back();
        return c;
    }
    void putFull(std::unique_ptr<Chunk> c) {
        std::lock_guard<std::mutex> lock(m_);
        full_.push_back(std::move(c));
        cv_.notify_all();
    }
    void finish() {
        std::lock_guard<std::mutex> lock(m_);
        done_ = true;
        cv_.notify_all();
    }
    // Builder side: nullptr when the reader has finished and nothing is left.
    std::unique_ptr<Chunk> takeFull() {
        std::unique_lock<std::mutex> lock(m_);
        cv_.wait(lock, [&] { return !full_.empty() || done_; });
        if (full_.empty()) return nullptr;
        auto c = std::move(full_.front());
        full_.pop_front();
        return c;
    }
    void giveBack(std::unique_ptr<Chunk> c) {
        std::lock_guard<std::mutex> lock(m_);
        free_.push_back(std::move(c));
        cv_.notify_all();
    }
    void stop() {
        std::lock_guard<std::mutex> lock(m_);
        stop_ = true;
        cv_.notify_all();
    }

private:
    std::mutex m_;
    std::condition_variable cv_;
    std::vector<std::unique_ptr<Chunk>> free_;
    std::deque<std::unique_ptr<Chunk>> full_;
    bool done_ = false, stop_ = false;
};

// Files this large read their coordinates on a second thread while the first builds.
constexpr std::uint64_t kThreadedBytes = std::uint64_t(16) << 20;

bool Reader::readPoints() {
    std::uint64_t length = 0;
    if (!sectionHeader(kPoints, length)) return false;
    if (length != points_ * sizeof(Point3)) return fail("section PNTS has the wrong length");
    PointFeeder feeder(in_, cPoints_, polygons_, points_);

    // Builds the polygons of one chunk from the other columns.
    auto build = [&](const PointFeeder::Chunk& c) {
        std::size_t pos = 0;
        for (std::uint64_t k = 0; k < c.polygons; ++k) {
            PolygonHead h;
            h.points = cPoints_.next();
            h.name = cNames_.next();
            h.group = cGroups_.next();
            h.fill = cFills_.next();
            const std::uint32_t attr = cAttrs_.next();
            if (attr > 0xFFFF) return fail("a polygon has unknown flags");
            h.brightness = std::uint8_t(attr & 0xFF);
            h.flags = std::uint8_t(attr >> 8);
            if (h.flags & kLit) {
                if (lit_ == 0) return fail("section POLY is not valid");
                --lit_;
                h.light = cLights_.next();
                if (h.light > 0xFFFFFFu) return fail("a light colour is out of range");
            }
            if (!b_.addPolygon(h, c.points.data() + pos)) return false;
            pos += h.points;
        }
        return true;
    };

    bool built = true;
    if (length < kThreadedBytes) {
        PointFeeder::Chunk c;
        while (built && feeder.fill(c)) built = build(c);
    } else {
        ChunkQueue queue(3);
        std::thread reader([&] {
            while (auto c = queue.takeFree()) {
                if (!feeder.fill(*c)) {
                    queue.giveBack(std::move(c));
                    break;
                }
                queue.putFull(std::move(c));
            }
            queue.finish();
        });
        while (auto c = queue.takeFull()) {
            if (built) built = build(*c);
            if (!built) queue.stop();
            queue.giveBack(std::move(c));
        }
        queue.stop();
        reader.join();
    }
    pos_ += feeder.bytesRead();
    if (!built) return false;
    if (!feeder.why().empty()) return fail(feeder.why());
    if (feeder.bytesRead() != length || lit_)
        return fail("the polygons use fewer points than there are");
    return trailer(feeder.crc(), kPoints);
}

bool Reader::decodeExtras(const std::vector<std::uint8_t>& bytes) {
    Decoder d(bytes.data(), bytes.size());
    const std::uint64_t n = d.count(11);
    std::uint64_t next = 0;
    for (std::uint64_t k = 0; k < n && d.ok(); ++k) {
        ExtraEntry x;
        const std::uint64_t delta = d.varint();
        if (delta >= polygons_ || next + delta >= polygons_) return fail("section XTRA is not valid");
        x.polygon = std::uint32_t(next + delta);
        next = x.polygon + 1;
        const std::uint64_t bitmap = d.varint();
        if (bitmap > 0xFFFFFFFFu) d.fail();
        x.bitmap = std::uint32_t(bitmap);
        x.rotation = d.f64();
        const std::uint64_t patches = d.count(6);
        for (std::uint64_t p = 0; p < patches && d.ok(); ++p) {
            Patch patch;
            const std::uint32_t colour = d.u32();
            const std::int64_t type = d.svarint();
            if (colour > 0xFFFFFFu || type < INT32_MIN || type > INT32_MAX) d.fail();
            patch.colour = unpackRgb(colour);
            patch.type = int(type);
            const std::uint64_t m = d.count(sizeof(Point3));
            patch.points.reserve(std::size_t(m));
            for (std::uint64_t q = 0; q < m && d.ok(); ++q) patch.points.push_back(d.point());
            x.patches.push_back(std::move(patch));
        }
        const std::uint8_t present = d.u8();
        if (present > 1) d.fail();
        if (present == 1 && d.ok()) {
            const std::uint32_t m = b_.pointsOf(x.polygon);
            if (m > d.left()) return fail("section XTRA is not valid");
            x.points.resize(m);
            for (PointExtra& pe : x.points) {
                const std::uint8_t bits = d.u8();
                if (bits > 7) d.fail();
                if (bits & 1) {
                    const std::uint32_t rgb = d.u32();
                    if (rgb > 0xFFFFFFu) d.fail();
                    pe.hasRgb = true;
                    pe.rgb = unpackRgb(rgb);
                }
                if (bits & 2) pe.alpha = d.u8();
                if (bits & 4) {
                    pe.bx = d.f64();
                    pe.by = d.f64();
                }
            }
        }
        if (!d.ok()) break;
        if (!b_.addExtra(std::move(x))) return false;
    }
    if (!d.ok() || !d.atEnd()) return fail("section XTRA is not valid");
    return true;
}

bool Reader::decodeOrders(const std::vector<std::uint8_t>& bytes) {
    Decoder d(bytes.data(), bytes.size());
    const std::uint64_t n = d.count(2);
    for (std::uint64_t k = 0; k < n && d.ok(); ++k) {
        OrderEntry o;
        const std::uint64_t g = d.varint();
        const std::uint64_t m = d.count(1);
        if (g > 0xFFFFFFFFu) d.fail();
        o.group = std::uint32_t(g);
        o.polygons.reserve(std::size_t(m));
        for (std::uint64_t i = 0; i < m && d.ok(); ++i) {
            const std::uint64_t p = d.varint();
            if (p > 0xFFFFFFFFu) d.fail();
            o.polygons.push_back(std::uint32_t(p));
        }
        if (!d.ok()) break;
        if (!b_.addOrder(std::move(o))) return false;
    }
    if (!d.ok() || !d.atEnd()) return fail("section ORDR is not valid");
    return true;
}

bool Reader::run() {
    if (!fileHeader()) return false;
    if (!section(kScene, scene_) || !section(kNames, names_) || !section(kGroups, groups_) ||
        !section(kBitmaps, bitmaps_) || !section(kLights, lights_) || !section(kPolygons, poly_))
        return false;
    Tables t;
    if (!decodeTables(t)) return false;
    if (!b_.begin(std::move(t), polygons_, points_)) return false;
    if (!readPoints()) return false;
    std::vector<std::uint8_t> bytes;
    if (!section(kExtras, bytes) || !decodeExtras(bytes)) return false;
    if (!section(kOrders, bytes) || !decodeOrders(bytes)) return false;
    if (!section(kEnd, bytes)) return false;
    if (!bytes.empty()) return fail("section END_ is not valid");
    if (left() != 0) return fail("it has bytes after its end");
    return b_.finish();
}

}  // namespace

bool readState(ByteSource& in, WorldBuilder& b) {
    Reader r(in, b);
    return r.run();
}

}  // namespace engine::world

// Reading the ".STATE" binary world format (see WorldStateLayout.h). Every
// section is checked before it is used, except the coordinates: they stream
// into the scene being built aside and their check is compared at the end.

#include <condition_variable>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

#include "engine/WorldChecksum.h"
#include "engine/WorldCodec.h"
#include "engine/WorldStateLayout.h"

namespace engine::world {

using namespace state;

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
        // Room for the largest polygon there can be, and no more than the file has.
        explicit Chunk(std::uint64_t filePoints)
            : points(std::size_t(std::clamp<std::uint64_t>(filePoints, 1, kChunkPoints))) {}
        std::vector<Point3> points;
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
                if (pending_ > c.points.size() || pending_ > pointsLeft_) {
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
                    c.points[k][a] = std::bit_cast<double>(
                        fromLittle(std::bit_cast<std::uint64_t>(c.points[k][a])));
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
    ChunkQueue(std::size_t buffers, std::uint64_t filePoints) {
        for (std::size_t i = 0; i < buffers; ++i)
            free_.push_back(std::make_unique<Chunk>(filePoints));
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
        PointFeeder::Chunk c(points_);
        while (built && feeder.fill(c)) built = build(c);
    } else {
        ChunkQueue queue(3, points_);
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
        if (delta >= polygons_ || next + delta >= polygons_)
            return fail("section XTRA is not valid");
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

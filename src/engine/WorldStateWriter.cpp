// Writing the ".STATE" binary world format (see WorldStateLayout.h).

#include <cstring>

#include "engine/WorldChecksum.h"
#include "engine/WorldCodec.h"
#include "engine/WorldStateLayout.h"

namespace engine::world {

using namespace state;

namespace {

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

}  // namespace engine::world

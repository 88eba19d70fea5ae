#include "render/SceneCache.h"

#include <algorithm>
#include <cmath>

#include "engine/SceneStore.h"

namespace render {

using engine::Point3;
using engine::Rgb;
using engine::SceneStore;

namespace {

std::uint8_t clampByte(int v) { return static_cast<std::uint8_t>(std::clamp(v, 0, 255)); }

int mulByte(int a, int b) { return (clampByte(a) * clampByte(b) + 127) / 255; }

// Origins on a coarse grid keep the offsets small without depending on which
// polygon happens to come first.
Point3 gridOrigin(Point3 p) {
    constexpr double kCell = 1024.0;
    return {std::floor(p.x / kCell) * kCell, std::floor(p.y / kCell) * kCell,
            std::floor(p.z / kCell) * kCell};
}

Point3 newellNormal(const std::vector<Point3>& pts) {
    Point3 n;
    for (std::size_t i = 0; i < pts.size(); ++i) {
        const Point3& a = pts[i];
        const Point3& b = pts[(i + 1) % pts.size()];
        n.x += (a.y - b.y) * (a.z + b.z);
        n.y += (a.z - b.z) * (a.x + b.x);
        n.z += (a.x - b.x) * (a.y + b.y);
    }
    return n;
}

struct Builder {
    Chunk& c;
    bool originSet = false;

    Vertex vertex(Point3 p, Rgb col, int alpha) {
        if (!originSet) {
            c.origin = gridOrigin(p);
            originSet = true;
        }
        const Point3 d = p - c.origin;
        return Vertex{static_cast<float>(d.x), static_cast<float>(d.y), static_cast<float>(d.z),
                      clampByte(col.r),        clampByte(col.g),        clampByte(col.b),
                      clampByte(alpha)};
    }
    static void fan(std::vector<std::uint32_t>& out, std::uint32_t base, std::size_t n,
                    bool reversed = false) {
        for (std::uint32_t i = 1; i + 1 < n; ++i) {
            out.push_back(base);
            out.push_back(reversed ? base + i + 1 : base + i);
            out.push_back(reversed ? base + i : base + i + 1);
        }
    }
};

void addTextured(Builder& b, const SceneStore& store, std::uint32_t s,
                 const engine::PolygonExtra& extra, const std::vector<Point3>& pts, int alpha) {
    Chunk& c = b.c;
    // The bitmap is seen in the polygon's light: white light shows it as it is.
    const Rgb light = shadedColour({255, 255, 255}, store.light(s), store.brightness(s));
    auto run = std::find_if(c.textured.begin(), c.textured.end(), [&](const TexturedRun& r) {
        return r.bitmap == extra.bitmap && r.blended == (alpha < 255);
    });
    if (run == c.textured.end()) {
        c.textured.push_back(TexturedRun{extra.bitmap, alpha < 255, {}});
        run = c.textured.end() - 1;
    }
    const auto base = static_cast<std::uint32_t>(c.texVertices.size());
    for (std::size_t i = 0; i < pts.size(); ++i) {
        const Vertex v = b.vertex(pts[i], light, alpha);
        TexVertex t;
        t.x = v.x, t.y = v.y, t.z = v.z;
        t.r = v.r, t.g = v.g, t.b = v.b, t.a = v.a;
        if (i < extra.points.size()) {
            t.u = static_cast<float>(extra.points[i].bx);
            t.v = static_cast<float>(extra.points[i].by);
        }
        c.texVertices.push_back(t);
    }
    Builder::fan(run->indices, base, pts.size());
}

bool allFinite(const std::vector<Point3>& pts) {
    return std::all_of(pts.begin(), pts.end(), [](const Point3& p) { return p.finite(); });
}

}  // namespace

Rgb shadedColour(Rgb fill, const std::optional<Rgb>& light, int brightness) {
    if (!light || brightness == 0) return {clampByte(fill.r), clampByte(fill.g), clampByte(fill.b)};
    return {mulByte(fill.r, light->r & 0xFF), mulByte(fill.g, light->g & 0xFF),
            mulByte(fill.b, light->b & 0xFF)};
}

void SceneCache::reset() {
    chunks_.clear();
    versions_.clear();
    revision_.reset();
}

std::size_t SceneCache::triangleCount() const {
    std::size_t n = 0;
    for (const auto& c : chunks_) n += c.triangles();
    return n;
}

void SceneCache::rebuild(const engine::Engine& e, std::size_t chunkIndex, Chunk& c) const {
    const SceneStore& store = e.store();
    c = Chunk{};
    Builder b{c};
    const std::uint64_t first = std::max<std::uint64_t>(1, static_cast<std::uint64_t>(chunkIndex)
                                                               << SceneStore::kVersionChunkBits);
    const std::uint64_t end =
        std::min<std::uint64_t>(store.polygonSlotEnd(), static_cast<std::uint64_t>(chunkIndex + 1)
                                                            << SceneStore::kVersionChunkBits);
    std::vector<Point3> pts;
    for (std::uint64_t slot = first; slot < end; ++slot) {
        const auto s = static_cast<std::uint32_t>(slot);
        if (!store.isAlive(s) || !store.inWorld(s) || store.disabled(s)) continue;
        store.copyPoints(s, pts);
        if (pts.size() < 3 || !allFinite(pts)) continue;
        const engine::PolygonExtra* extra = store.extra(s);
        const int polygonAlpha = store.translucent(s) != 0 ? kTranslucentAlpha : 255;
        if (extra && extra->bitmap != 0 && e.bitmap_get_width(extra->bitmap) > 0) {
            addTextured(b, store, s, *extra, pts, polygonAlpha);
            continue;
        }
        const Rgb colour = shadedColour(store.fill(s), store.light(s), store.brightness(s));
        bool blended = polygonAlpha < 255;
        const auto base = static_cast<std::uint32_t>(c.vertices.size());
        for (std::size_t i = 0; i < pts.size(); ++i) {
            Rgb col = colour;
            int alpha = polygonAlpha;
            if (extra && i < extra->points.size()) {
                const auto& pe = extra->points[i];
                if (pe.hasRgb) col = pe.rgb;
                alpha = std::min(alpha, pe.alpha);
            }
            blended = blended || alpha < 255;
            c.vertices.push_back(b.vertex(pts[i], col, alpha));
        }
        Builder::fan(blended ? c.translucent : c.opaque, base, pts.size());

        if (!extra || extra->patches.empty()) continue;
        // Patches face the way their polygon faces, whatever order their points came in.
        const Point3 normal = newellNormal(pts);
        for (const auto& patch : extra->patches) {
            if (patch.points.size() < 3 || !allFinite(patch.points)) continue;
            const bool flip = engine::dot(newellNormal(patch.points), normal) < 0;
            const Rgb pc = shadedColour(patch.colour, store.light(s), store.brightness(s));
            const auto pbase = static_cast<std::uint32_t>(c.vertices.size());
            for (const auto& p : patch.points) c.vertices.push_back(b.vertex(p, pc, 255));
            Builder::fan(c.patches, pbase, patch.points.size(), flip);
        }
    }
}

std::vector<std::size_t> SceneCache::update(const engine::Engine& e) {
    const SceneStore& store = e.store();
    const std::uint64_t rev = store.revision();
    if (revision_ && *revision_ == rev) return {};
    revision_ = rev;

    std::vector<std::size_t> changed;
    const std::size_t n = store.versionChunkCount();
    constexpr std::uint64_t kUnknown = ~std::uint64_t{0};
    if (versions_.size() < n) versions_.resize(n, kUnknown);
    if (chunks_.size() < n) chunks_.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::uint64_t v = store.chunkVersion(i);
        if (versions_[i] == v) continue;
        versions_[i] = v;
        const bool wasEmpty = chunks_[i].empty();
        rebuild(e, i, chunks_[i]);
        ++rebuilds_;
        if (!(wasEmpty && chunks_[i].empty())) changed.push_back(i);
    }
    // Chunks the store no longer has (a cleared scene) go empty.
    for (std::size_t i = n; i < chunks_.size(); ++i)
        if (!chunks_[i].empty()) {
            chunks_[i] = Chunk{};
            changed.push_back(i);
        }
    chunks_.resize(n);
    versions_.resize(n);
    return changed;
}

}  // namespace render

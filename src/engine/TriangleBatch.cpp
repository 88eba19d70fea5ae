#include "engine/TriangleBatch.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <vector>

#include "engine/EngineInternal.h"
#include "engine/Geometry.h"

namespace engine {

void triangles_acceptable(const Point3* corners, std::size_t count, std::uint8_t* ok) {
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, count, 4096),
                      [&](const tbb::blocked_range<std::size_t>& r) {
                          for (std::size_t i = r.begin(); i != r.end(); ++i) {
                              const Point3* p = corners + 3 * i;
                              ok[i] = p[0].finite() && p[1].finite() && p[2].finite() &&
                                      geom::acceptable(p, 3);
                          }
                      });
}

namespace {

// One triangle the way of the one-at-a-time calls: refused ones are made and
// deleted as those would, so that the slots and point space end as they would.
void addOne(Engine& eng, const Point3* p, Rgb c, bool ok, std::uint32_t g, Handle& out) {
    SceneStore& st = eng.store();
    out = 0;
    if (!ok) {
        const Handle h = eng.polygon_create();
        if (!h) return;
        for (int k = 0; k < 3; ++k) eng.polygon_add_point(h, p[k]);
        if (eng.engine_add_polygon(h) != 0) {
            eng.polygon_delete(h);
            return;
        }
        out = h;
    } else {
        const std::uint32_t s = st.createPolygon();
        if (!s) return;
        if (!st.assignPoints(s, p, 3) || !st.addToWorld(s)) {
            st.destroyPolygon(s);
            return;
        }
        out = SceneStore::polygonHandle(s);
    }
    const std::uint32_t s = st.polygonSlot(out);
    using internal::clampChannel;
    st.setFill(s, Rgb{clampChannel(c.r), clampChannel(c.g), clampChannel(c.b)});
    st.setPolygonGroup(s, g);
}

}  // namespace

void triangles_reserve(Engine& eng, std::size_t count) { eng.store().reserve(count, 3 * count); }

void triangles_add(Engine& eng, const Point3* corners, const Rgb* colours, const std::uint8_t* ok,
                   std::size_t count, Handle group, Handle* out) {
    SceneStore& st = eng.store();
    const std::uint32_t g = group ? st.groupSlot(group) : 0;
    using internal::clampChannel;
    std::vector<Rgb> fills;
    for (std::size_t i = 0; i < count;) {
        out[i] = 0;
        if (ok[i]) {
            // A run of accepted triangles goes into the store in one pass.
            std::size_t end = i;
            while (end < count && ok[end]) ++end;
            fills.resize(end - i);
            for (std::size_t k = i; k < end; ++k) {
                const Rgb c = colours[k];
                fills[k - i] = Rgb{clampChannel(c.r), clampChannel(c.g), clampChannel(c.b)};
            }
            std::uint32_t first = 0;
            const std::uint32_t made = st.appendTriangles(
                corners + 3 * i, fills.data(), std::uint32_t(std::min<std::size_t>(end - i, 1u << 20)),
                g, first);
            for (std::uint32_t k = 0; k < made; ++k) out[i + k] = SceneStore::polygonHandle(first + k);
            if (made) {
                i += made;
                continue;
            }
        }
        addOne(eng, corners + 3 * i, colours[i], ok[i] != 0, g, out[i]);
        ++i;
    }
}

}  // namespace engine

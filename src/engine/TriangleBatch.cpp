#include "engine/TriangleBatch.h"

#include <tbb/parallel_for.h>

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

void triangles_add(Engine& eng, const Point3* corners, const Rgb* colours, const std::uint8_t* ok,
                   std::size_t count, Handle group, Handle* out) {
    SceneStore& st = eng.store();
    const std::uint32_t g = group ? st.groupSlot(group) : 0;
    const bool setGroup = group == 0 || g != 0;
    using internal::clampChannel;
    for (std::size_t i = 0; i < count; ++i) {
        const Point3* p = corners + 3 * i;
        out[i] = 0;
        if (!ok[i]) {
            // The refused triangle goes the way of the one-at-a-time calls, so that
            // the slots and point space end as they would.
            const Handle h = eng.polygon_create();
            if (!h) continue;
            for (int c = 0; c < 3; ++c) eng.polygon_add_point(h, p[c]);
            if (eng.engine_add_polygon(h) != 0) {
                eng.polygon_delete(h);
                continue;
            }
            out[i] = h;
        } else {
            const std::uint32_t s = st.createPolygon();
            if (!s) continue;
            if (!st.assignPoints(s, p, 3) || !st.addToWorld(s)) {
                st.destroyPolygon(s);
                continue;
            }
            out[i] = SceneStore::polygonHandle(s);
        }
        const std::uint32_t s = st.polygonSlot(out[i]);
        const Rgb c = colours[i];
        st.setFill(s, Rgb{clampChannel(c.r), clampChannel(c.g), clampChannel(c.b)});
        if (setGroup) st.setPolygonGroup(s, g);
    }
}

}  // namespace engine

#include "import/Triangle.h"

#include "engine/Engine.h"

namespace importers {

engine::Handle P_fncTriangle(engine::Engine& eng, const engine::Point3& p1,
                             const engine::Point3& p2, const engine::Point3& p3,
                             const engine::Rgb& colour) {
    const engine::Handle h = eng.polygon_create();
    if (h == 0) return 0;
    eng.polygon_add_point(h, p1);
    eng.polygon_add_point(h, p2);
    eng.polygon_add_point(h, p3);
    if (eng.engine_add_polygon(h) != 0) {
        eng.polygon_delete(h);
        return 0;
    }
    eng.polygon_set_color_fill(h, colour);
    return h;
}

}  // namespace importers

// The origin builders: sphere and cube.
#include "builders/Meshes.h"

#include <cmath>
#include <vector>

#include "builders/RingTools.h"
#include "engine/Engine.h"

namespace builders {

using engine::Engine;
using engine::Handle;
using engine::Point3;
using engine::ScenePoint;

namespace {

// The sphere's own literals, kept apart from the library's pi on purpose.
constexpr double kSpherePi = 3.14159265358979;
constexpr double kSphereTwoPi = 6.28318530717958;

void addTriangle(Engine& eng, Handle group, const engine::Rgb& colour, const ScenePoint& a,
                 const ScenePoint& b, const ScenePoint& c) {
    Handle h = makePolygon(eng, {a, b, c});
    finishPolygon(eng, h, group, colour, Finish::AddFillGroup);
}

}  // namespace

Handle P_fncCreateSphere(Engine& eng, double dblRadius, short intLatitudeBands,
                         short intLongitudeBands, const engine::Rgb& lngColour) {
    const Handle group = eng.group_create(kSphereGroup);
    if (group == 0) return 0;
    const int n = intLatitudeBands, m = intLongitudeBands;
    if (n < 2 || m < 1 || !std::isfinite(dblRadius)) return group;
    const double R = dblRadius;
    const double dLat = kSpherePi / n;
    const double dLon = kSphereTwoPi / m;

    // Rings 1 to n - 1; index j runs to m with its own cos and sin (no wrap to 0),
    // so the seam's points differ from j = 0 by rounding only.
    std::vector<double> s(static_cast<std::size_t>(n)), z(static_cast<std::size_t>(n));
    for (int i = 1; i <= n - 1; ++i) {
        s[std::size_t(i)] = std::sin(i * dLat);
        z[std::size_t(i)] = std::cos(i * dLat) * R;
    }
    std::vector<double> cj(static_cast<std::size_t>(m) + 1), sj(static_cast<std::size_t>(m) + 1);
    for (int j = 0; j <= m; ++j) {
        cj[std::size_t(j)] = std::cos(j * dLon);
        sj[std::size_t(j)] = std::sin(j * dLon);
    }
    auto P = [&](int j, int i) {
        const std::size_t jj = std::size_t(j), ii = std::size_t(i);
        return vertexAt({cj[jj] * R * s[ii], sj[jj] * R * s[ii], z[ii]});
    };

    const ScenePoint north = vertexAt({0, 0, R});
    for (int j = 0; j < m; ++j) addTriangle(eng, group, lngColour, north, P(j + 1, 1), P(j, 1));
    for (int i = 1; i <= n - 2; ++i) {
        for (int j = 0; j < m; ++j) {
            addTriangle(eng, group, lngColour, P(j, i), P(j + 1, i), P(j + 1, i + 1));
            addTriangle(eng, group, lngColour, P(j, i), P(j + 1, i + 1), P(j, i + 1));
        }
    }
    const ScenePoint south = vertexAt({0, 0, -R});
    for (int j = 0; j < m; ++j)
        addTriangle(eng, group, lngColour, south, P(j, n - 1), P(j + 1, n - 1));
    return group;
}

Handle P_fncCreateCube(Engine& eng, const std::array<float, 3>& sngDimensions,
                       const engine::Rgb& lngColour) {
    const Handle group = eng.group_create(kCubeGroup);
    if (group == 0) return 0;
    const float dx = sngDimensions[0], dy = sngDimensions[1], dz = sngDimensions[2];
    if (!std::isfinite(dx) || !std::isfinite(dy) || !std::isfinite(dz)) return group;
    const double hx = dx / 2.0f, hy = dy / 2.0f, hz = dz / 2.0f;

    struct Pair {
        Point3 face[4];
        Point3 move;
    };
    const Pair pairs[3] = {
        {{{hx, hy, hz}, {hx, -hy, hz}, {-hx, -hy, hz}, {-hx, hy, hz}}, {0, 0, -double(dz)}},
        {{{hx, hy, hz}, {hx, hy, -hz}, {hx, -hy, -hz}, {hx, -hy, hz}}, {-double(dx), 0, 0}},
        {{{hx, hy, hz}, {-hx, hy, hz}, {-hx, hy, -hz}, {hx, hy, -hz}}, {0, -double(dy), 0}},
    };
    for (const Pair& pair : pairs) {
        Handle first = makePolygon(eng, {vertexAt(pair.face[0]), vertexAt(pair.face[1]),
                                         vertexAt(pair.face[2]), vertexAt(pair.face[3])});
        if (eng.engine_add_polygon(first) == -1) {
            eng.polygon_delete(first);
            first = 0;
        } else {
            eng.polygon_set_color_fill(first, lngColour);
            eng.polygon_set_translucent(first, 0);
            eng.polygon_set_group(first, group);
        }
        // A failed first face leaves handle 0, and every call below then does nothing.
        Handle second = eng.polygon_duplicate(first);
        eng.polygon_flip_visible_side(second);
        eng.polygon_move(second, pair.move);
        if (eng.engine_add_polygon(second) == -1) {
            eng.polygon_delete(second);
            second = 0;
        } else {
            eng.polygon_set_color_fill(second, lngColour);
            eng.polygon_set_group(second, group);
        }
    }
    return group;
}

}  // namespace builders

#pragma once
// Many triangles into the world at once, for readers of large files. The result
// is the scene that polygon_create, three polygon_add_point, engine_add_polygon
// (polygon_delete when refused), polygon_set_color_fill and polygon_set_group
// would make one triangle at a time; the acceptance tests run on all cores first.

#include <cstddef>
#include <cstdint>

#include "engine/Types.h"

namespace engine {

class Engine;

// ok[i] = 1 when triangle i (corners[3i..3i+2]) would be taken into the world.
void triangles_acceptable(const Point3* corners, std::size_t count, std::uint8_t* ok);

// Room for `count` more triangles, brought in at once on every core: for a reader
// that knows how many it is about to add.
void triangles_reserve(Engine& eng, std::size_t count);

// Adds `count` triangles in order; out[i] is the new polygon, 0 where the world
// refused it. `ok` comes from triangles_acceptable on the same corners.
void triangles_add(Engine& eng, const Point3* corners, const Rgb* colours, const std::uint8_t* ok,
                   std::size_t count, Handle group, Handle* out);

}  // namespace engine

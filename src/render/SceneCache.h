#pragma once
// The scene as the GPU takes it, kept on the CPU side in chunks so that a change
// reaches the GPU as the few chunks it touched.
//
// The chunks are the store's version chunks (a fixed run of polygon slots):
// a chunk is rebuilt only when its version moved, so adding, deleting or
// recolouring a polygon rebuilds and re-uploads its own chunk alone. Within a
// chunk polygons are in slot order.
//
// Polygons are cut into triangle fans from their first point, which is right for
// the convex polygons the builders and readers make; a concave polygon is drawn
// as its fan. The winding stays as given (clockwise seen from the front).

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "engine/Engine.h"

namespace engine {
class SceneStore;
}

namespace render {

struct Vertex {
    float x = 0, y = 0, z = 0;  // offset from the chunk's origin
    std::uint8_t r = 0, g = 0, b = 0, a = 255;
    friend bool operator==(const Vertex&, const Vertex&) = default;
};
static_assert(sizeof(Vertex) == 16);

// A vertex of a polygon filled with a bitmap: the texture coordinates are the
// point's bitmap coordinates (repeats across, rows from the top).
struct TexVertex {
    float x = 0, y = 0, z = 0;
    std::uint8_t r = 255, g = 255, b = 255, a = 255;  // the light the bitmap is seen in
    float u = 0, v = 0;
    friend bool operator==(const TexVertex&, const TexVertex&) = default;
};
static_assert(sizeof(TexVertex) == 24);

// The triangles of one bitmap in a chunk, opaque or blended.
struct TexturedRun {
    engine::Handle bitmap = 0;
    bool blended = false;
    std::vector<std::uint32_t> indices;  // into texVertices
};

struct Chunk {
    engine::Point3 origin;  // double: vertices are small offsets from it
    std::vector<Vertex> vertices;
    // Three indices a triangle, in the order they are drawn: opaque polygons,
    // the patches laid on them (pulled towards the eye), then the translucent ones.
    std::vector<std::uint32_t> opaque;
    std::vector<std::uint32_t> patches;
    std::vector<std::uint32_t> translucent;
    // Polygons filled with a bitmap, by bitmap.
    std::vector<TexVertex> texVertices;
    std::vector<TexturedRun> textured;
    std::size_t triangles() const {
        std::size_t n = opaque.size() + patches.size() + translucent.size();
        for (const auto& r : textured) n += r.indices.size();
        return n / 3;
    }
    bool empty() const { return vertices.empty() && texVertices.empty(); }
};

// Alpha of a translucent polygon: every nonzero mode is drawn half transparent.
inline constexpr std::uint8_t kTranslucentAlpha = 128;

// The drawn colour of a polygon: fill x light / 255 (rounded) per channel, or
// the fill itself when it has no light or its brightness is 0 (unlit). A polygon
// filled with a bitmap shows the bitmap times its light in the same way.
engine::Rgb shadedColour(engine::Rgb fill, const std::optional<engine::Rgb>& light, int brightness);

class SceneCache {
public:
    // Brings the chunks up to the engine's scene and returns the indices of the
    // chunks whose contents changed since the last call (none when the scene's
    // revision is the same).
    std::vector<std::size_t> update(const engine::Engine& e);
    // Forgets everything: the next update rebuilds every chunk.
    void reset();

    std::size_t chunkCount() const { return chunks_.size(); }
    const Chunk& chunk(std::size_t i) const { return chunks_[i]; }
    std::size_t triangleCount() const;
    // Chunks rebuilt from the store since the start.
    std::uint64_t rebuilds() const { return rebuilds_; }

private:
    void rebuild(const engine::Engine& e, std::size_t chunkIndex, Chunk& out) const;

    std::vector<Chunk> chunks_;
    std::vector<std::uint64_t> versions_;
    std::optional<std::uint64_t> revision_;
    std::uint64_t rebuilds_ = 0;
};

}  // namespace render

#pragma once
// Draws the engine's scene with OpenGL 3.3 core, in a window or offscreen.
//
// The scene lives on the GPU in the chunks of SceneCache; a frame uploads only
// the chunks that changed. Each chunk is drawn with its own matrix built in
// double precision from the offset of its origin to the eye, so far-off
// coordinates do not jitter. Depth goes into a float buffer of the renderer's
// own, reversed (near 1, far 0) where the driver can clip to [0, 1], which keeps
// a near plane of 1 and a far one of millions usable. The finished frame is
// copied into the caller's framebuffer object (a window's), or read back.
//
// Opaque polygons first, the patches laid on them pulled a little towards the
// eye, then the translucent ones blended at half alpha with depth writes off; back faces culled,
// the front being clockwise. Then the 3D lines, and over everything the 2D lines and the label
// texts.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "render/Image.h"
#include "render/SceneCache.h"

namespace render {

struct RenderStats {
    std::uint64_t frames = 0;
    std::uint64_t chunkUploads = 0;    // chunks sent to the GPU since the start
    std::size_t lastFrameUploads = 0;  // of them, by the last frame
    std::size_t chunks = 0;            // chunks on the GPU
    std::size_t triangles = 0;         // scene triangles drawn by the last frame
};

class Renderer {
public:
    Renderer();
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    // Needs a current OpenGL 3.3 core context. False, with the reason, when the
    // context cannot draw.
    bool initialize(std::string* error = nullptr);
    bool initialized() const;
    // Frees the GL objects; the context they were made in must be current.
    void release();

    // One frame of the engine's scene as its camera sees it, width x height pixels.
    // With a target, the frame ends up in that framebuffer object (of the same
    // size); without one it stays in the renderer's own, for readPixels.
    void render(const engine::Engine& e, const std::vector<engine::TextItem>& texts, int width,
                int height, std::optional<unsigned> target = std::nullopt);
    // Brings the GPU up to the scene (the chunks that changed) without drawing;
    // render() does it first. Returns the number of chunks uploaded.
    std::size_t syncScene(const engine::Engine& e);
    // Forgets the scene on the GPU: the next frame uploads every chunk. Needed when
    // the renderer is turned to another engine (it cannot tell two engines apart).
    // The context must be current.
    void resetScene();
    // The last frame, top row first.
    Image readPixels() const;

    const RenderStats& stats() const;
    // True when depth is reversed into a float buffer (clip control available).
    bool reversedDepth() const;

private:
    struct Gl;
    std::unique_ptr<Gl> gl_;
    SceneCache cache_;
};

}  // namespace render

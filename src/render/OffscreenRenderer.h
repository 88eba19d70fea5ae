#pragma once
// The renderer in its own windowless context: one object draws any number of
// pictures.

#include <memory>
#include <optional>
#include <string>

#include "engine/Engine.h"
#include "render/Image.h"
#include "render/OffscreenContext.h"
#include "render/Renderer.h"

namespace render {

class OffscreenRenderer {
public:
    OffscreenRenderer() = default;
    ~OffscreenRenderer();

    // False with the reason when no offscreen context can be made.
    bool start(std::string* error = nullptr);
    bool started() const { return renderer_ != nullptr; }
    // Draws the scene as the engine's camera sees it, with the queued texts.
    std::optional<Image> render(const engine::Engine& e, int width, int height,
                                const std::vector<engine::TextItem>& texts = {});
    Renderer* renderer() { return renderer_.get(); }
    // Makes the next picture upload its whole scene (another engine, perhaps at
    // the address of one gone).
    void resetScene();

private:
    OffscreenContext context_;
    std::unique_ptr<Renderer> renderer_;
    const engine::Engine* last_ = nullptr;
};

}  // namespace render

#include "render/OffscreenRenderer.h"

namespace render {

OffscreenRenderer::~OffscreenRenderer() {
    if (renderer_ && context_.makeCurrent()) renderer_->release();
    renderer_.reset();
    context_.destroy();
}

bool OffscreenRenderer::start(std::string* error) {
    if (renderer_) return true;
    if (!context_.create(error)) return false;
    auto r = std::make_unique<Renderer>();
    if (!r->initialize(error)) {
        context_.destroy();
        return false;
    }
    renderer_ = std::move(r);
    return true;
}

void OffscreenRenderer::resetScene() {
    if (renderer_ && context_.makeCurrent()) renderer_->resetScene();
    last_ = nullptr;
}

std::optional<Image> OffscreenRenderer::render(const engine::Engine& e, int width, int height,
                                               const std::vector<engine::TextItem>& texts) {
    if (!renderer_ || width <= 0 || height <= 0 || !context_.makeCurrent()) return std::nullopt;
    if (&e != last_) renderer_->resetScene();
    last_ = &e;
    renderer_->render(e, texts, width, height);
    return renderer_->readPixels();
}

}  // namespace render

#pragma once
// An OpenGL 3.3 core context with no window and no display server (EGL,
// surfaceless), for rendering to pictures from the command line and in tests.

#include <string>

namespace render {

class OffscreenContext {
public:
    OffscreenContext() = default;
    ~OffscreenContext();
    OffscreenContext(const OffscreenContext&) = delete;
    OffscreenContext& operator=(const OffscreenContext&) = delete;

    // Makes the context and makes it current; false with the reason when the
    // system offers none.
    bool create(std::string* error = nullptr);
    bool valid() const { return context_ != nullptr; }
    bool makeCurrent();
    void destroy();

private:
    void* display_ = nullptr;
    void* context_ = nullptr;
};

}  // namespace render

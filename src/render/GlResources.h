#pragma once
// The OpenGL pieces the renderer is built from: its shader programs, the vertex
// layouts of its buffers, and a buffer refilled every frame.

#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

#include <string>
#include <string_view>
#include <vector>

#include "render/SceneCache.h"

namespace render {

// Colour per vertex.
extern const char* const kVertexShader;
extern const char* const kFragmentShader;
// Colour per vertex times a bitmap (sampler uBitmap on unit 0).
extern const char* const kTexVertexShader;
extern const char* const kTexFragmentShader;

// A linked program, or 0 with the compiler's words added to `log`.
GLuint linkProgram(const char* vertexSource, const char* fragmentSource, std::string& log);
bool hasExtension(std::string_view name);

// Attribute 0 position, 1 normalised RGBA bytes (and 2 texture coordinates),
// for the buffer bound to GL_ARRAY_BUFFER.
void setVertexLayout();
void setTexVertexLayout();

// Vertices rebuilt every frame (lines, texts), grown as needed.
struct DynamicBuffer {
    GLuint vao = 0, vbo = 0;
    std::size_t capacity = 0;
    void create();
    void upload(const std::vector<Vertex>& v);
    void destroy();
};

}  // namespace render

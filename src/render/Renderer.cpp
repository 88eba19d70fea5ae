#include "render/Renderer.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "render/Overlay.h"
#include "render/ViewMath.h"

namespace render {

namespace {

const char* kVertexShader = R"(#version 330 core
layout(location = 0) in vec3 aPos;
layout(location = 1) in vec4 aColour;
uniform mat4 uMvp;
out vec4 vColour;
void main() {
    vColour = aColour;
    gl_Position = uMvp * vec4(aPos, 1.0);
}
)";

const char* kFragmentShader = R"(#version 330 core
in vec4 vColour;
out vec4 fragColour;
void main() { fragColour = vColour; }
)";

GLuint compile(GLenum kind, const char* src, std::string& log) {
    GLuint s = glCreateShader(kind);
    glShaderSource(s, 1, &src, nullptr);
    glCompileShader(s);
    GLint ok = 0;
    glGetShaderiv(s, GL_COMPILE_STATUS, &ok);
    if (!ok) {
        char buf[1024] = {};
        glGetShaderInfoLog(s, sizeof buf - 1, nullptr, buf);
        log += buf;
        glDeleteShader(s);
        return 0;
    }
    return s;
}

bool hasExtension(std::string_view name) {
    GLint n = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &n);
    for (GLint i = 0; i < n; ++i) {
        const auto* e = reinterpret_cast<const char*>(glGetStringi(GL_EXTENSIONS, i));
        if (e && name == e) return true;
    }
    return false;
}

// Vertex layout shared by every buffer: position, then normalised RGBA bytes.
void setVertexLayout() {
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex), nullptr);
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 4, GL_UNSIGNED_BYTE, GL_TRUE, sizeof(Vertex),
                          reinterpret_cast<const void*>(offsetof(Vertex, r)));
}

struct GpuChunk {
    GLuint vao = 0, vbo = 0, ebo = 0;
    GLsizei opaqueCount = 0, patchCount = 0, translucentCount = 0;
    engine::Point3 origin;
};

struct DynamicBuffer {
    GLuint vao = 0, vbo = 0;
    std::size_t capacity = 0;
    void create() {
        glGenVertexArrays(1, &vao);
        glGenBuffers(1, &vbo);
        glBindVertexArray(vao);
        glBindBuffer(GL_ARRAY_BUFFER, vbo);
        setVertexLayout();
        glBindVertexArray(0);
    }
    void upload(const std::vector<Vertex>& v) {
        glBindBuffer(GL_ARRAY_BUFFER, vbo);
        const std::size_t bytes = v.size() * sizeof(Vertex);
        if (bytes > capacity) {
            capacity = std::max<std::size_t>(bytes, 4096);
            glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(capacity), nullptr, GL_STREAM_DRAW);
        }
        if (bytes) glBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(bytes), v.data());
    }
    void destroy() {
        if (vbo) glDeleteBuffers(1, &vbo);
        if (vao) glDeleteVertexArrays(1, &vao);
        vao = vbo = 0;
        capacity = 0;
    }
};

}  // namespace

struct Renderer::Gl {
    bool ready = false;
    bool clipControl = false;
    GLuint program = 0;
    GLint mvpLoc = -1;
    GLuint fbo = 0, colourRb = 0, depthRb = 0;
    int fbW = 0, fbH = 0;
    std::vector<GpuChunk> chunks;
    DynamicBuffer lines, overlay;
    RenderStats stats;

    void freeChunk(GpuChunk& c) {
        if (c.ebo) glDeleteBuffers(1, &c.ebo);
        if (c.vbo) glDeleteBuffers(1, &c.vbo);
        if (c.vao) glDeleteVertexArrays(1, &c.vao);
        c = GpuChunk{};
    }

    void ensureFramebuffer(int w, int h) {
        if (fbo && w == fbW && h == fbH) return;
        if (!fbo) {
            glGenFramebuffers(1, &fbo);
            glGenRenderbuffers(1, &colourRb);
            glGenRenderbuffers(1, &depthRb);
        }
        glBindRenderbuffer(GL_RENDERBUFFER, colourRb);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, w, h);
        glBindRenderbuffer(GL_RENDERBUFFER, depthRb);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT32F, w, h);
        glBindFramebuffer(GL_FRAMEBUFFER, fbo);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, colourRb);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depthRb);
        fbW = w;
        fbH = h;
    }

    void upload(std::size_t i, const Chunk& src) {
        if (i >= chunks.size()) chunks.resize(i + 1);
        GpuChunk& c = chunks[i];
        if (src.vertices.empty()) {
            freeChunk(c);
            return;
        }
        if (!c.vao) {
            glGenVertexArrays(1, &c.vao);
            glGenBuffers(1, &c.vbo);
            glGenBuffers(1, &c.ebo);
            glBindVertexArray(c.vao);
            glBindBuffer(GL_ARRAY_BUFFER, c.vbo);
            setVertexLayout();
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, c.ebo);
        } else {
            glBindVertexArray(c.vao);
            glBindBuffer(GL_ARRAY_BUFFER, c.vbo);
        }
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(src.vertices.size() * sizeof(Vertex)),
                     src.vertices.data(), GL_STATIC_DRAW);
        std::vector<std::uint32_t> idx;
        idx.reserve(src.opaque.size() + src.patches.size() + src.translucent.size());
        idx.insert(idx.end(), src.opaque.begin(), src.opaque.end());
        idx.insert(idx.end(), src.patches.begin(), src.patches.end());
        idx.insert(idx.end(), src.translucent.begin(), src.translucent.end());
        glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                     static_cast<GLsizeiptr>(idx.size() * sizeof(std::uint32_t)), idx.data(),
                     GL_STATIC_DRAW);
        glBindVertexArray(0);
        c.opaqueCount = static_cast<GLsizei>(src.opaque.size());
        c.patchCount = static_cast<GLsizei>(src.patches.size());
        c.translucentCount = static_cast<GLsizei>(src.translucent.size());
        c.origin = src.origin;
    }
};

Renderer::Renderer() : gl_(std::make_unique<Gl>()) {}

Renderer::~Renderer() = default;

bool Renderer::initialized() const { return gl_->ready; }
const RenderStats& Renderer::stats() const { return gl_->stats; }
bool Renderer::reversedDepth() const { return gl_->clipControl; }

bool Renderer::initialize(std::string* error) {
    if (gl_->ready) return true;
    auto fail = [&](const std::string& why) {
        if (error) *error = why;
        return false;
    };
    const auto* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    if (!version) return fail("no current OpenGL context");
    GLint major = 0, minor = 0;
    glGetIntegerv(GL_MAJOR_VERSION, &major);
    glGetIntegerv(GL_MINOR_VERSION, &minor);
    if (major * 10 + minor < 33) return fail(std::string("OpenGL 3.3 needed, have ") + version);

    std::string log;
    GLuint vs = compile(GL_VERTEX_SHADER, kVertexShader, log);
    GLuint fs = compile(GL_FRAGMENT_SHADER, kFragmentShader, log);
    if (!vs || !fs) return fail("shader: " + log);
    GLuint p = glCreateProgram();
    glAttachShader(p, vs);
    glAttachShader(p, fs);
    glLinkProgram(p);
    glDeleteShader(vs);
    glDeleteShader(fs);
    GLint ok = 0;
    glGetProgramiv(p, GL_LINK_STATUS, &ok);
    if (!ok) {
        glDeleteProgram(p);
        return fail("shader program does not link");
    }
    gl_->program = p;
    gl_->mvpLoc = glGetUniformLocation(p, "uMvp");
    gl_->clipControl = major * 10 + minor >= 45 || hasExtension("GL_ARB_clip_control");
    gl_->lines.create();
    gl_->overlay.create();
    gl_->ready = true;
    cache_.reset();
    return true;
}

void Renderer::release() {
    auto& g = *gl_;
    if (!g.ready) return;
    for (auto& c : g.chunks) g.freeChunk(c);
    g.chunks.clear();
    g.lines.destroy();
    g.overlay.destroy();
    if (g.fbo) glDeleteFramebuffers(1, &g.fbo);
    if (g.colourRb) glDeleteRenderbuffers(1, &g.colourRb);
    if (g.depthRb) glDeleteRenderbuffers(1, &g.depthRb);
    g.fbo = g.colourRb = g.depthRb = 0;
    g.fbW = g.fbH = 0;
    if (g.program) glDeleteProgram(g.program);
    g.program = 0;
    g.ready = false;
    cache_.reset();
}

void Renderer::resetScene() {
    auto& g = *gl_;
    if (g.ready)
        for (auto& c : g.chunks) g.freeChunk(c);
    g.chunks.clear();
    cache_.reset();
}

void Renderer::render(const engine::Engine& e, const std::vector<engine::TextItem>& texts,
                      int width, int height, std::optional<unsigned> target) {
    auto& g = *gl_;
    if (!g.ready) return;
    width = std::max(width, 1);
    height = std::max(height, 1);

    // Bring the GPU up to the scene: only the chunks that changed.
    const auto changed = cache_.update(e);
    for (std::size_t i : changed) {
        static const Chunk kEmpty;
        g.upload(i, i < cache_.chunkCount() ? cache_.chunk(i) : kEmpty);
    }
    g.stats.lastFrameUploads = changed.size();
    g.stats.chunkUploads += changed.size();
    g.stats.chunks = 0;
    for (const auto& c : g.chunks) g.stats.chunks += c.vao ? 1 : 0;

    g.ensureFramebuffer(width, height);
    glBindFramebuffer(GL_FRAMEBUFFER, g.fbo);
    glViewport(0, 0, width, height);

    const engine::Rgb bg = e.engine_get_background_color();
    glClearColor(bg.r / 255.0f, bg.g / 255.0f, bg.b / 255.0f, 1.0f);
    const bool reversed = g.clipControl;
    if (reversed) glClipControl(GL_LOWER_LEFT, GL_ZERO_TO_ONE);
    glClearDepth(reversed ? 0.0 : 1.0);
    glDepthMask(GL_TRUE);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    const engine::CameraState& cam = e.camera();
    const DepthRange range = depthRangeOf(cam, e.engine_get_fog());
    const Mat4 proj = projection(cam.zoom, width, height, range.nearPlane, range.farPlane,
                                 reversed ? DepthMode::Reversed : DepthMode::Standard);
    const Mat4 projView = proj * viewRotation(cam.direction, cam.up);

    glUseProgram(g.program);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(reversed ? GL_GEQUAL : GL_LEQUAL);
    glEnable(GL_CULL_FACE);
    glFrontFace(GL_CW);
    glCullFace(GL_BACK);
    glDisable(GL_BLEND);

    auto setChunkMatrix = [&](const GpuChunk& c) {
        const auto m = (projView * translation(c.origin - cam.location)).toFloat();
        glUniformMatrix4fv(g.mvpLoc, 1, GL_FALSE, m.data());
    };
    std::size_t triangles = 0;
    for (const auto& c : g.chunks) {
        if (!c.vao || c.opaqueCount == 0) continue;
        setChunkMatrix(c);
        glBindVertexArray(c.vao);
        glDrawElements(GL_TRIANGLES, c.opaqueCount, GL_UNSIGNED_INT, nullptr);
        triangles += c.opaqueCount / 3;
    }
    auto offsetBytes = [](GLsizei indices) {
        return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(indices) *
                                             sizeof(std::uint32_t));
    };
    // Patches lie in their polygon's plane: pull them towards the eye to win the depth test.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(reversed ? 1.0f : -1.0f, reversed ? 1.0f : -1.0f);
    for (const auto& c : g.chunks) {
        if (!c.vao || c.patchCount == 0) continue;
        setChunkMatrix(c);
        glBindVertexArray(c.vao);
        glDrawElements(GL_TRIANGLES, c.patchCount, GL_UNSIGNED_INT, offsetBytes(c.opaqueCount));
        triangles += c.patchCount / 3;
    }
    glDisable(GL_POLYGON_OFFSET_FILL);
    // Translucent ones blend over what is behind them and hide nothing.
    glEnable(GL_BLEND);
    // The frame stays opaque: blending leaves the stored alpha alone.
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ZERO, GL_ONE);
    glDepthMask(GL_FALSE);
    for (const auto& c : g.chunks) {
        if (!c.vao || c.translucentCount == 0) continue;
        setChunkMatrix(c);
        glBindVertexArray(c.vao);
        glDrawElements(GL_TRIANGLES, c.translucentCount, GL_UNSIGNED_INT,
                       offsetBytes(c.opaqueCount + c.patchCount));
        triangles += c.translucentCount / 3;
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_CULL_FACE);
    g.stats.triangles = triangles;

    // 3D lines, relative to the eye like everything else.
    std::vector<Vertex> lineVerts, overlayVerts;
    auto vertexOf = [](engine::Point3 p, engine::Rgb c) {
        Vertex v;
        v.x = static_cast<float>(p.x);
        v.y = static_cast<float>(p.y);
        v.z = static_cast<float>(p.z);
        v.r = static_cast<std::uint8_t>(std::clamp(c.r, 0, 255));
        v.g = static_cast<std::uint8_t>(std::clamp(c.g, 0, 255));
        v.b = static_cast<std::uint8_t>(std::clamp(c.b, 0, 255));
        return v;
    };
    for (const auto& l : e.lines()) {
        if (l.is3D) {
            if (!l.a.finite() || !l.b.finite()) continue;
            lineVerts.push_back(vertexOf(l.a - cam.location, l.colourA));
            lineVerts.push_back(vertexOf(l.b - cam.location, l.colourB));
        } else {
            overlayVerts.push_back(vertexOf({l.a.x + 0.5, l.a.y + 0.5, 0}, l.colourA));
            overlayVerts.push_back(vertexOf({l.b.x + 0.5, l.b.y + 0.5, 0}, l.colourB));
        }
    }
    if (!lineVerts.empty()) {
        const auto m = projView.toFloat();
        glUniformMatrix4fv(g.mvpLoc, 1, GL_FALSE, m.data());
        g.lines.upload(lineVerts);
        glBindVertexArray(g.lines.vao);
        glDrawArrays(GL_LINES, 0, static_cast<GLsizei>(lineVerts.size()));
    }

    // Window-space overlay: 2D lines, then the texts.
    const std::size_t lineCount2D = overlayVerts.size();
    appendTexts(overlayVerts, texts, width, height);
    if (!overlayVerts.empty()) {
        Mat4 px = Mat4::identity();
        px.at(0, 0) = 2.0 / width;
        px.at(0, 3) = -1;
        px.at(1, 1) = -2.0 / height;
        px.at(1, 3) = 1;
        const auto m = px.toFloat();
        glDisable(GL_DEPTH_TEST);
        glUniformMatrix4fv(g.mvpLoc, 1, GL_FALSE, m.data());
        g.overlay.upload(overlayVerts);
        glBindVertexArray(g.overlay.vao);
        if (lineCount2D) glDrawArrays(GL_LINES, 0, static_cast<GLsizei>(lineCount2D));
        if (overlayVerts.size() > lineCount2D)
            glDrawArrays(GL_TRIANGLES, static_cast<GLint>(lineCount2D),
                         static_cast<GLsizei>(overlayVerts.size() - lineCount2D));
    }

    glBindVertexArray(0);
    glUseProgram(0);
    glDisable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    if (reversed) glClipControl(GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE);

    if (target) {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, g.fbo);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, *target);
        glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
        glBindFramebuffer(GL_FRAMEBUFFER, *target);
    }
    ++g.stats.frames;
}

Image Renderer::readPixels() const {
    const auto& g = *gl_;
    Image img;
    if (!g.ready || !g.fbo) return img;
    img.width = g.fbW;
    img.height = g.fbH;
    img.rgba.resize(static_cast<std::size_t>(g.fbW) * g.fbH * 4);
    GLint previous = 0;
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &previous);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, g.fbo);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, g.fbW, g.fbH, GL_RGBA, GL_UNSIGNED_BYTE, img.rgba.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(previous));
    // GL rows run bottom up.
    const std::size_t row = static_cast<std::size_t>(g.fbW) * 4;
    std::vector<std::uint8_t> tmp(row);
    for (int y = 0; y < g.fbH / 2; ++y) {
        auto* a = img.rgba.data() + y * row;
        auto* b = img.rgba.data() + (g.fbH - 1 - y) * row;
        std::memcpy(tmp.data(), a, row);
        std::memcpy(a, b, row);
        std::memcpy(b, tmp.data(), row);
    }
    return img;
}

}  // namespace render

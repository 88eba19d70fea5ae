#include "render/Renderer.h"

#include <algorithm>
#include <cstring>
#include <map>

#include "render/GlResources.h"
#include "render/Overlay.h"
#include "render/ViewMath.h"

namespace render {

namespace {

struct GpuRun {
    engine::Handle bitmap = 0;
    bool blended = false;
    GLsizei first = 0, count = 0;
};

struct GpuChunk {
    GLuint vao = 0, vbo = 0, ebo = 0;
    GLsizei opaqueCount = 0, patchCount = 0, translucentCount = 0;
    GLuint texVao = 0, texVbo = 0, texEbo = 0;
    std::vector<GpuRun> runs;
    engine::Point3 origin;
};

struct Texture {
    GLuint id = 0;
    const std::uint8_t* pixels = nullptr;  // what it was made from, to see a reload
    int width = 0, height = 0;
};

}  // namespace

struct Renderer::Gl {
    bool ready = false;
    bool clipControl = false;
    GLuint program = 0;
    GLint mvpLoc = -1;
    GLuint texProgram = 0;
    GLint texMvpLoc = -1;
    std::map<engine::Handle, Texture> textures;
    GLuint fbo = 0, colourRb = 0, depthRb = 0;
    int fbW = 0, fbH = 0;
    std::vector<GpuChunk> chunks;
    DynamicBuffer lines, overlay;
    RenderStats stats;

    void freeChunk(GpuChunk& c) {
        GLuint buffers[] = {c.ebo, c.vbo, c.texEbo, c.texVbo};
        for (GLuint b : buffers)
            if (b) glDeleteBuffers(1, &b);
        if (c.vao) glDeleteVertexArrays(1, &c.vao);
        if (c.texVao) glDeleteVertexArrays(1, &c.texVao);
        c = GpuChunk{};
    }

    // The texture of a bitmap, made or remade from the engine's pixels; 0 when
    // the engine has no such bitmap.
    GLuint texture(const engine::Engine& e, engine::Handle bitmap) {
        int w = 0, h = 0;
        const std::uint8_t* px = nullptr;
        if (!e.bitmap_pixels(bitmap, w, h, px) || !px || w <= 0 || h <= 0) return 0;
        Texture& t = textures[bitmap];
        if (t.id && t.pixels == px && t.width == w && t.height == h) return t.id;
        if (!t.id) glGenTextures(1, &t.id);
        glBindTexture(GL_TEXTURE_2D, t.id);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        // Rows from the top: texture row 0 is the top of the bitmap, as the
        // bitmap coordinates count.
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, w, h, 0, GL_RGBA, GL_UNSIGNED_BYTE, px);
        glGenerateMipmap(GL_TEXTURE_2D);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
        t.pixels = px;
        t.width = w;
        t.height = h;
        return t.id;
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
        if (src.empty()) {
            freeChunk(c);
            return;
        }
        c.origin = src.origin;
        uploadTextured(c, src);
        if (src.vertices.empty()) {
            c.opaqueCount = c.patchCount = c.translucentCount = 0;
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
    }

    void uploadTextured(GpuChunk& c, const Chunk& src) {
        c.runs.clear();
        if (src.texVertices.empty()) return;
        if (!c.texVao) {
            glGenVertexArrays(1, &c.texVao);
            glGenBuffers(1, &c.texVbo);
            glGenBuffers(1, &c.texEbo);
            glBindVertexArray(c.texVao);
            glBindBuffer(GL_ARRAY_BUFFER, c.texVbo);
            setTexVertexLayout();
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, c.texEbo);
        } else {
            glBindVertexArray(c.texVao);
            glBindBuffer(GL_ARRAY_BUFFER, c.texVbo);
        }
        glBufferData(GL_ARRAY_BUFFER,
                     static_cast<GLsizeiptr>(src.texVertices.size() * sizeof(TexVertex)),
                     src.texVertices.data(), GL_STATIC_DRAW);
        std::vector<std::uint32_t> idx;
        for (const auto& r : src.textured) {
            c.runs.push_back({r.bitmap, r.blended, static_cast<GLsizei>(idx.size()),
                              static_cast<GLsizei>(r.indices.size())});
            idx.insert(idx.end(), r.indices.begin(), r.indices.end());
        }
        glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                     static_cast<GLsizeiptr>(idx.size() * sizeof(std::uint32_t)), idx.data(),
                     GL_STATIC_DRAW);
        glBindVertexArray(0);
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
    GLuint p = linkProgram(kVertexShader, kFragmentShader, log);
    GLuint tp = p ? linkProgram(kTexVertexShader, kTexFragmentShader, log) : 0;
    if (!p || !tp) {
        if (p) glDeleteProgram(p);
        return fail("shader: " + log);
    }
    gl_->texProgram = tp;
    gl_->texMvpLoc = glGetUniformLocation(tp, "uMvp");
    glUseProgram(tp);
    glUniform1i(glGetUniformLocation(tp, "uBitmap"), 0);
    glUseProgram(0);
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
    if (g.texProgram) glDeleteProgram(g.texProgram);
    g.program = g.texProgram = 0;
    for (auto& [h, t] : g.textures) glDeleteTextures(1, &t.id);
    g.textures.clear();
    g.ready = false;
    cache_.reset();
}

void Renderer::resetScene() {
    auto& g = *gl_;
    if (g.ready) {
        for (auto& c : g.chunks) g.freeChunk(c);
        for (auto& [h, t] : g.textures) glDeleteTextures(1, &t.id);
    }
    g.textures.clear();
    g.chunks.clear();
    cache_.reset();
}

std::size_t Renderer::syncScene(const engine::Engine& e) {
    auto& g = *gl_;
    if (!g.ready) return 0;
    // Only the chunks that changed.
    const auto changed = cache_.update(e);
    for (std::size_t i : changed) {
        static const Chunk kEmpty;
        g.upload(i, i < cache_.chunkCount() ? cache_.chunk(i) : kEmpty);
    }
    g.stats.lastFrameUploads = changed.size();
    g.stats.chunkUploads += changed.size();
    g.stats.chunks = 0;
    for (const auto& c : g.chunks) g.stats.chunks += (c.vao || c.texVao) ? 1 : 0;
    return changed.size();
}

void Renderer::render(const engine::Engine& e, const std::vector<engine::TextItem>& texts,
                      int width, int height, std::optional<unsigned> target) {
    auto& g = *gl_;
    if (!g.ready) return;
    width = std::max(width, 1);
    height = std::max(height, 1);

    syncScene(e);

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
    // Polygons filled with bitmaps, of one kind (opaque or blended).
    auto drawTextured = [&](bool blended) {
        bool any = false;
        for (const auto& c : g.chunks)
            for (const auto& r : c.runs) any = any || r.blended == blended;
        if (!any) return;
        glUseProgram(g.texProgram);
        glActiveTexture(GL_TEXTURE0);
        for (const auto& c : g.chunks) {
            if (!c.texVao || c.runs.empty()) continue;
            const auto m = (projView * translation(c.origin - cam.location)).toFloat();
            glUniformMatrix4fv(g.texMvpLoc, 1, GL_FALSE, m.data());
            glBindVertexArray(c.texVao);
            for (const auto& r : c.runs) {
                if (r.blended != blended) continue;
                const GLuint tex = g.texture(e, r.bitmap);
                if (!tex) continue;
                glBindTexture(GL_TEXTURE_2D, tex);
                glDrawElements(GL_TRIANGLES, r.count, GL_UNSIGNED_INT, offsetBytes(r.first));
                triangles += r.count / 3;
            }
        }
        glBindTexture(GL_TEXTURE_2D, 0);
        glUseProgram(g.program);
    };
    drawTextured(false);
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
    drawTextured(true);
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

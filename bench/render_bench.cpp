// Renderer benchmarks on one million triangles, in a windowless OpenGL context
// (Mesa's software rasteriser on a machine without a GPU), each a ratio against
// a reference measured in the same run (limits in bench/checks.tsv):
//  * a frame of the scene as the renderer draws it (its chunks, each with its
//    own matrix, into its own framebuffer) against drawing the same triangles
//    from one plain vertex buffer with one matrix into a framebuffer of the same
//    kind, with the same shader and the same depth and culling state; both end
//    in glFinish; interleaved, best of 5 each;
//  * recolouring one polygon and bringing the GPU up to date against uploading
//    the whole scene (after forgetting it), both ending in glFinish; best of 5
//    and of 3.
// The scene is a height field of 1000 x 500 quads in mine-grid coordinates
// (millions of units from the origin), framed as the oblique view frames it.

#include <benchmark/benchmark.h>

#include "BenchSupport.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "render/GlResources.h"
#include "render/OffscreenContext.h"
#include "render/Renderer.h"
#include "render/SceneFraming.h"
#include "render/ViewMath.h"

using engine::Engine;
using engine::Handle;
using engine::Point3;
using engine::Rgb;

namespace {

using bench::Clock;
using bench::seconds;

constexpr int kQuadsX = 1000, kQuadsY = 500;  // two triangles a quad: 1M triangles
constexpr int kWidth = 800, kHeight = 600;
constexpr double kCell = 20.0;
const Point3 kCorner{4'780'000.0, 67'710'000.0, -3000.0};

struct Triangle {
    Point3 p[3];
    Rgb colour;
};

double heightAt(int i, int j) {
    return 400.0 * std::sin(i * 0.013) * std::cos(j * 0.021) + 60.0 * std::sin(i * 0.11 + j * 0.07);
}

// Adds the height field to the engine; the triangles are kept for the reference.
std::vector<Triangle> buildScene(Engine& e, std::vector<Handle>& handles) {
    std::vector<Triangle> tris;
    tris.reserve(static_cast<std::size_t>(kQuadsX) * kQuadsY * 2);
    handles.reserve(tris.capacity());
    const Handle group = e.group_create("Bench");
    auto at = [](int i, int j) { return kCorner + Point3{i * kCell, j * kCell, heightAt(i, j)}; };
    for (int j = 0; j < kQuadsY; ++j)
        for (int i = 0; i < kQuadsX; ++i) {
            const Rgb c{(i * 7) % 200 + 40, (j * 5) % 200 + 40, 120};
            const Point3 a = at(i, j), b = at(i + 1, j), d = at(i, j + 1), f = at(i + 1, j + 1);
            // Clockwise seen from above: the front faces up.
            for (const Triangle& t : {Triangle{{a, d, b}, c}, Triangle{{b, d, f}, c}}) {
                const Handle p = e.polygon_create();
                for (const auto& q : t.p) e.polygon_add_point(p, q);
                if (e.engine_add_polygon(p) != 0) continue;
                e.polygon_set_color_fill(p, t.colour);
                e.polygon_set_group(p, group);
                handles.push_back(p);
                tris.push_back(t);
            }
        }
    return tris;
}

// The same triangles in one buffer with one matrix, drawn as simply as OpenGL allows.
struct PlainDraw {
    GLuint vao = 0, vbo = 0, program = 0, fbo = 0, colour = 0, depth = 0;
    GLint mvp = -1;
    GLsizei count = 0;
    Point3 origin;

    bool create(const std::vector<Triangle>& tris, Point3 centre) {
        std::string log;
        program = render::linkProgram(render::kVertexShader, render::kFragmentShader, log);
        if (!program) return false;
        mvp = glGetUniformLocation(program, "uMvp");
        origin = centre;
        std::vector<render::Vertex> v;
        v.reserve(tris.size() * 3);
        for (const auto& t : tris)
            for (const auto& p : t.p) {
                const Point3 d = p - origin;
                v.push_back({static_cast<float>(d.x), static_cast<float>(d.y),
                             static_cast<float>(d.z), static_cast<std::uint8_t>(t.colour.r),
                             static_cast<std::uint8_t>(t.colour.g),
                             static_cast<std::uint8_t>(t.colour.b), 255});
            }
        count = static_cast<GLsizei>(v.size());
        glGenVertexArrays(1, &vao);
        glGenBuffers(1, &vbo);
        glBindVertexArray(vao);
        glBindBuffer(GL_ARRAY_BUFFER, vbo);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(v.size() * sizeof(render::Vertex)),
                     v.data(), GL_STATIC_DRAW);
        render::setVertexLayout();
        glBindVertexArray(0);
        glGenFramebuffers(1, &fbo);
        glGenRenderbuffers(1, &colour);
        glGenRenderbuffers(1, &depth);
        glBindRenderbuffer(GL_RENDERBUFFER, colour);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, kWidth, kHeight);
        glBindRenderbuffer(GL_RENDERBUFFER, depth);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT32F, kWidth, kHeight);
        glBindFramebuffer(GL_FRAMEBUFFER, fbo);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, colour);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth);
        return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }

    void draw(const Engine& e, bool reversed) const {
        glBindFramebuffer(GL_FRAMEBUFFER, fbo);
        glViewport(0, 0, kWidth, kHeight);
        glClearColor(0, 0, 0, 1);
        if (reversed) glClipControl(GL_LOWER_LEFT, GL_ZERO_TO_ONE);
        glClearDepth(reversed ? 0.0 : 1.0);
        glDepthMask(GL_TRUE);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        const auto& cam = e.camera();
        const auto range = render::depthRangeOf(cam, e.engine_get_fog());
        const auto proj = render::projection(
            cam.zoom, kWidth, kHeight, range.nearPlane, range.farPlane,
            reversed ? render::DepthMode::Reversed : render::DepthMode::Standard);
        const auto m = (proj * render::viewRotation(cam.direction, cam.up) *
                        render::translation(origin - cam.location))
                           .toFloat();
        glUseProgram(program);
        glUniformMatrix4fv(mvp, 1, GL_FALSE, m.data());
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(reversed ? GL_GEQUAL : GL_LEQUAL);
        glEnable(GL_CULL_FACE);
        glFrontFace(GL_CW);
        glCullFace(GL_BACK);
        glDisable(GL_BLEND);
        glBindVertexArray(vao);
        glDrawArrays(GL_TRIANGLES, 0, count);
        glBindVertexArray(0);
    }
};

void BM_RenderMillionTriangles(benchmark::State& state) {
    render::OffscreenContext context;
    std::string error;
    if (!context.create(&error)) {
        state.SkipWithError(("no offscreen OpenGL: " + error).c_str());
        return;
    }
    render::Renderer renderer;
    if (!renderer.initialize(&error)) {
        state.SkipWithError(error.c_str());
        return;
    }
    Engine e;
    e.engine_load_world("", "", "", 0);
    std::vector<Handle> handles;
    const std::vector<Triangle> tris = buildScene(e, handles);
    render::frameScene(e, render::View::Iso, kWidth, kHeight);
    Point3 lo, hi;
    e.group_bounding_box(0, lo, hi);
    PlainDraw plain;
    if (!plain.create(tris, (lo + hi) * 0.5)) {
        state.SkipWithError("the reference framebuffer is incomplete");
        return;
    }
    const bool reversed = renderer.reversedDepth();

    for (auto _ : state) {
        // Whole uploads of a forgotten scene.
        double upload = 1e300;
        for (int k = 0; k < 3; ++k) {
            renderer.resetScene();
            glFinish();
            const auto t0 = Clock::now();
            renderer.syncScene(e);
            glFinish();
            upload = std::min(upload, seconds(t0, Clock::now()));
        }
        // Frames, the renderer's and the reference's in turn, after one of each.
        renderer.render(e, {}, kWidth, kHeight);
        plain.draw(e, reversed);
        glFinish();
        double frame = 1e300, reference = 1e300;
        for (int k = 0; k < 5; ++k) {
            auto t0 = Clock::now();
            renderer.render(e, {}, kWidth, kHeight);
            glFinish();
            frame = std::min(frame, seconds(t0, Clock::now()));
            t0 = Clock::now();
            plain.draw(e, reversed);
            glFinish();
            reference = std::min(reference, seconds(t0, Clock::now()));
        }
        // One polygon recoloured at a time, here and there in the scene.
        double recolour = 1e300;
        std::size_t chunksSent = 0;
        for (int k = 0; k < 5; ++k) {
            const Handle p = handles[(handles.size() / 7) * static_cast<std::size_t>(k + 1)];
            e.polygon_set_color_fill(p, {255, static_cast<int>(40 * k), 0});
            const auto t0 = Clock::now();
            chunksSent = std::max(chunksSent, renderer.syncScene(e));
            glFinish();
            recolour = std::min(recolour, seconds(t0, Clock::now()));
        }
        state.counters["triangles"] = static_cast<double>(tris.size());
        state.counters["drawn_triangles"] = static_cast<double>(renderer.stats().triangles);
        state.counters["frame_s"] = frame;
        state.counters["plain_frame_s"] = reference;
        state.counters["frame_ratio"] = frame / reference;
        state.counters["full_upload_s"] = upload;
        state.counters["recolour_s"] = recolour;
        state.counters["recolour_ratio"] = recolour / upload;
        state.counters["recolour_chunks"] = static_cast<double>(chunksSent);
    }
    renderer.release();
}

}  // namespace

BENCHMARK(BM_RenderMillionTriangles)->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK_MAIN();

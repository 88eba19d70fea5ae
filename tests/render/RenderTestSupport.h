#pragma once
// Shared pieces of the renderer tests: one offscreen context for the whole
// program, and small scenes.

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "engine/Engine.h"
#include "render/OffscreenRenderer.h"

namespace rendertest {

// The program's offscreen renderer, started on first use; null when the system
// has no offscreen OpenGL (the reason in `why`).
render::OffscreenRenderer* offscreen(std::string* why = nullptr);

// An engine with an empty world.
std::unique_ptr<engine::Engine> emptyWorld();

// A polygon from the points (in the order given), added to the world and filled.
engine::Handle addPolygon(engine::Engine& e, std::initializer_list<engine::Point3> pts,
                          engine::Rgb fill);

// A square of half-size h in the plane z = z0 around (cx, cy), facing up
// (clockwise seen from above) or down.
engine::Handle addSquare(engine::Engine& e, double cx, double cy, double z0, double h,
                         engine::Rgb fill, bool facingUp = true);

// Camera at `eye` looking along `dir` with up `up`, zoom 24, near 1, no fog.
void aimCamera(engine::Engine& e, engine::Point3 eye, engine::Point3 dir, engine::Point3 up,
               double nearPlane = 1.0);

// Draws the scene w x h; fails the test when the renderer gives nothing.
render::Image draw(engine::Engine& e, int w, int h);

// Largest difference of any channel between two colours.
int colourDistance(engine::Rgb a, engine::Rgb b);

}  // namespace rendertest

#define REQUIRE_OFFSCREEN_GL()                                             \
    do {                                                                   \
        std::string why_;                                                  \
        if (!rendertest::offscreen(&why_))                                 \
            GTEST_SKIP() << "no offscreen OpenGL context (EGL): " << why_; \
    } while (0)

#define EXPECT_COLOUR_NEAR(actual, expected, tolerance)                                           \
    EXPECT_LE(rendertest::colourDistance((actual), (expected)), (tolerance))                      \
        << "actual (" << (actual).r << ", " << (actual).g << ", " << (actual).b << ") expected (" \
        << (expected).r << ", " << (expected).g << ", " << (expected).b << ")"

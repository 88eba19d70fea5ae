// Pictures of known scenes from known cameras, checked pixel by pixel.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "engine/SceneStore.h"
#include "render/RenderTestSupport.h"
#include "render/Renderer.h"
#include "support/TestSupport.h"

namespace {

using engine::Point3;
using engine::Rgb;
using namespace rendertest;

const Rgb kBackground{0, 0, 90};
const Rgb kRed{255, 0, 0};

// 64 x 64 from 100 above, looking down with north up: at that distance the window
// spans 100 units across (tan of half the angle is 0.5), 1.5625 units a pixel.
std::unique_ptr<engine::Engine> topDownWorld(Point3 centre = {0, 0, 0}) {
    auto e = emptyWorld();
    e->engine_set_background_color(kBackground);
    aimCamera(*e, centre + Point3{0, 0, 100}, {0, 0, -1}, {0, 1, 0});
    return e;
}

TEST(Renderer, ARedSquareInTheMiddle) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    addSquare(*e, 0, 0, 0, 10, kRed);  // 20 units: 12.8 pixels across
    const auto img = draw(*e, 64, 64);
    ASSERT_EQ(img.width, 64);
    ASSERT_EQ(img.height, 64);
    EXPECT_COLOUR_NEAR(img.pixel(32, 32), kRed, 0);
    EXPECT_COLOUR_NEAR(img.pixel(27, 27), kRed, 0);
    EXPECT_COLOUR_NEAR(img.pixel(37, 37), kRed, 0);
    for (auto [x, y] : {std::pair{0, 0}, {63, 0}, {0, 63}, {63, 63}, {32, 20}, {20, 32}})
        EXPECT_COLOUR_NEAR(img.pixel(x, y), kBackground, 0) << x << "," << y;
    EXPECT_EQ(img.alpha(32, 32), 255);
}

TEST(Renderer, NorthIsUpAndEastIsRightFromAbove) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    addSquare(*e, 30, 0, 0, 5, {0, 255, 0});    // east
    addSquare(*e, 0, 30, 0, 5, {255, 255, 0});  // north
    const auto img = draw(*e, 64, 64);
    // 30 units is 19.2 pixels from the centre
    EXPECT_COLOUR_NEAR(img.pixel(32 + 19, 32), (Rgb{0, 255, 0}), 0);
    EXPECT_COLOUR_NEAR(img.pixel(32, 32 - 19), (Rgb{255, 255, 0}), 0);
    EXPECT_COLOUR_NEAR(img.pixel(32 - 19, 32), kBackground, 0);
}

TEST(Renderer, FillTimesLight) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    const auto p = addSquare(*e, 0, 0, 0, 10, {200, 100, 50});
    e->polygon_set_light(p, {128, 255, 64});
    auto img = draw(*e, 64, 64);
    EXPECT_COLOUR_NEAR(img.pixel(32, 32), (Rgb{100, 100, 13}), 1);
    e->polygon_remove_light(p);
    img = draw(*e, 64, 64);
    EXPECT_COLOUR_NEAR(img.pixel(32, 32), (Rgb{200, 100, 50}), 0);
}

TEST(Renderer, BackFacesAreCulled) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    addSquare(*e, 0, 0, 0, 10, kRed, /*facingUp=*/false);
    EXPECT_COLOUR_NEAR(draw(*e, 64, 64).pixel(32, 32), kBackground, 0);
    // the same polygon seen from below shows its front
    aimCamera(*e, {0, 0, -100}, {0, 0, 1}, {0, 1, 0});
    EXPECT_COLOUR_NEAR(draw(*e, 64, 64).pixel(32, 32), kRed, 0);
}

TEST(Renderer, FlippingTheVisibleSideFlipsWhatIsSeen) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    const auto p = addSquare(*e, 0, 0, 0, 10, kRed);
    ASSERT_EQ(e->polygon_flip_visible_side(p), 0);
    EXPECT_COLOUR_NEAR(draw(*e, 64, 64).pixel(32, 32), kBackground, 0);
}

TEST(Renderer, DisabledPolygonsAreNotDrawn) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    const auto p = addSquare(*e, 0, 0, 0, 10, kRed);
    ASSERT_EQ(e->polygon_disable(p), 0);
    EXPECT_COLOUR_NEAR(draw(*e, 64, 64).pixel(32, 32), kBackground, 0);
    ASSERT_EQ(e->polygon_enable(p), 0);
    EXPECT_COLOUR_NEAR(draw(*e, 64, 64).pixel(32, 32), kRed, 0);
}

TEST(Renderer, NearerPolygonsHideFartherOnesWhateverTheOrder) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    addSquare(*e, 0, 0, 5, 10, {0, 255, 0});  // nearer, added first
    addSquare(*e, 0, 0, 0, 10, kRed);
    EXPECT_COLOUR_NEAR(draw(*e, 64, 64).pixel(32, 32), (Rgb{0, 255, 0}), 0);
}

TEST(Renderer, DepthHoldsAtMineDistancesWithANearCutOffOfOne) {
    REQUIRE_OFFSCREEN_GL();
    // 50000 units away, cut-off 1, no far plane; two faces 2 units apart.
    auto e = emptyWorld();
    e->engine_set_background_color(kBackground);
    aimCamera(*e, {0, 0, 50000}, {0, 0, -1}, {0, 1, 0}, 1.0);
    addSquare(*e, 0, 0, 0, 4000, kRed);
    addSquare(*e, 0, 0, 2, 4000, {0, 255, 0});  // above, nearer the eye
    addSquare(*e, 0, 0, -2, 4000, {0, 0, 255});
    const auto img = draw(*e, 64, 64);
    int green = 0;
    for (int y = 28; y < 36; ++y)
        for (int x = 28; x < 36; ++x) green += colourDistance(img.pixel(x, y), {0, 255, 0}) == 0;
    EXPECT_EQ(green, 64);
}

TEST(Renderer, TranslucentPolygonsBlendHalfAndHalf) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    addSquare(*e, 0, 0, 0, 10, {0, 255, 0});
    const auto t = addSquare(*e, 0, 0, 5, 10, kRed);
    ASSERT_EQ(e->polygon_set_translucent(t, 1), 0);
    const auto img = draw(*e, 64, 64);
    // alpha 128/255 of red over green
    EXPECT_COLOUR_NEAR(img.pixel(32, 32), (Rgb{128, 127, 0}), 2);
    EXPECT_EQ(img.alpha(32, 32), 255) << "the frame stays opaque";
}

TEST(Renderer, TranslucentPolygonsHideNothingBehindThem) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    // the translucent one is nearer and comes first in the walk
    const auto t = addSquare(*e, 0, 0, 5, 10, kRed);
    ASSERT_EQ(e->polygon_set_translucent(t, 1), 0);
    addSquare(*e, 0, 0, 0, 10, {0, 0, 255});
    const auto img = draw(*e, 64, 64);
    EXPECT_COLOUR_NEAR(img.pixel(32, 32), (Rgb{128, 0, 127}), 2);
}

TEST(Renderer, PointColoursShowAtTheirCorners) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    const auto p = addSquare(*e, 0, 0, 0, 20, kRed);
    for (auto pt = e->polygon_get_first_point(p); pt; pt = e->point_get_next_point(pt))
        ASSERT_EQ(e->point_set_rgb(pt, {0, 0, 255}), 0);
    EXPECT_COLOUR_NEAR(draw(*e, 64, 64).pixel(32, 32), (Rgb{0, 0, 255}), 0);
}

TEST(Renderer, PatchesShowOverTheirPolygon) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    const auto p = addSquare(*e, 0, 0, 0, 20, kRed);
    ASSERT_EQ(e->polygon_add_patch_easy(p, {0, 0, 0}, 10, {255, 255, 255}, 1), 0);
    const auto img = draw(*e, 64, 64);
    EXPECT_COLOUR_NEAR(img.pixel(32, 32), (Rgb{255, 255, 255}), 0);
    EXPECT_COLOUR_NEAR(img.pixel(32 + 10, 32), kRed, 0);
}

TEST(Renderer, TheCutOffAndTheFogDepthBoundWhatIsDrawn) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    const Rgb green{0, 255, 0};
    // 100 from the eye: 0.64 pixels a unit, x = -20 lands at pixel 19
    addSquare(*e, -20, 0, 0, 8, kRed);
    // 20 from the eye: 3.2 pixels a unit, x = 4 lands at pixel 45
    addSquare(*e, 4, 0, 80, 2, green);
    auto img = draw(*e, 64, 64);
    EXPECT_COLOUR_NEAR(img.pixel(19, 32), kRed, 0);
    EXPECT_COLOUR_NEAR(img.pixel(45, 32), green, 0);

    const auto cam = e->camera_get_default_camera();
    e->camera_set_distance_from_eye(cam, 30);  // the cut-off takes the near one away
    img = draw(*e, 64, 64);
    EXPECT_COLOUR_NEAR(img.pixel(19, 32), kRed, 0);
    EXPECT_COLOUR_NEAR(img.pixel(45, 32), kBackground, 0);

    e->camera_set_distance_from_eye(cam, 1);
    e->engine_set_fog(true, 50, 1);  // the far one lies beyond the fog depth
    img = draw(*e, 64, 64);
    EXPECT_COLOUR_NEAR(img.pixel(19, 32), kBackground, 0);
    EXPECT_COLOUR_NEAR(img.pixel(45, 32), green, 0);
}

TEST(Renderer, FarFromTheOriginTheImageIsTheSame) {
    REQUIRE_OFFSCREEN_GL();
    // Fine detail seen from close by: squares of 0.3 units, 0.8 apart, 12 units away.
    auto build = [](Point3 o) {
        auto e = emptyWorld();
        e->engine_set_background_color(kBackground);
        aimCamera(*e, o + Point3{0.05, -8, 9}, {0, 0.6, -0.8}, {0, 0, 1}, 0.5);
        for (int i = -4; i <= 4; ++i)
            for (int j = -4; j <= 4; ++j)
                addSquare(*e, o.x + 0.8 * i, o.y + 0.8 * j, o.z, 0.15,
                          {128 + 12 * i, 128 + 12 * j, 40});
        return e;
    };
    auto near = build({0, 0, 0});
    auto far = build({5.0e7, 7.3e7, 1200});  // 5,000,000 m east in decimetres
    const auto a = draw(*near, 96, 96);
    const auto b = draw(*far, 96, 96);
    ASSERT_EQ(a.rgba.size(), b.rgba.size());
    int differing = 0, coloured = 0;
    for (int y = 0; y < 96; ++y)
        for (int x = 0; x < 96; ++x) {
            differing += colourDistance(a.pixel(x, y), b.pixel(x, y)) > 2;
            coloured += colourDistance(a.pixel(x, y), kBackground) > 0;
        }
    EXPECT_GT(coloured, 200) << "the squares are in view";
    EXPECT_LE(differing, 4) << "pixels that differ between the near and the far scene";
}

TEST(Renderer, ChangingOnePolygonUploadsOneChunk) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    const std::size_t chunkSlots = std::size_t{1} << engine::SceneStore::kVersionChunkBits;
    std::vector<engine::Handle> polys;
    for (std::size_t i = 0; i < chunkSlots * 3; ++i) {
        const double x = -40 + 0.5 * static_cast<double>(i % 160);
        const double y = -40 + 0.5 * static_cast<double>(i / 160);
        polys.push_back(
            addPolygon(*e, {{x, y, 0}, {x, y + 0.4, 0}, {x + 0.4, y, 0}}, {90, 90, 90}));
    }
    auto* r = offscreen()->renderer();
    draw(*e, 64, 64);
    const auto uploadsAfterFirst = r->stats().chunkUploads;
    EXPECT_GE(r->stats().lastFrameUploads, 3u);
    EXPECT_EQ(r->stats().triangles, polys.size());

    draw(*e, 64, 64);
    EXPECT_EQ(r->stats().lastFrameUploads, 0u) << "nothing changed";

    e->polygon_set_color_fill(polys[chunkSlots + 7], {255, 0, 0});
    draw(*e, 64, 64);
    EXPECT_EQ(r->stats().lastFrameUploads, 1u);
    EXPECT_EQ(r->stats().chunkUploads, uploadsAfterFirst + 1);

    e->camera_set_location(e->camera_get_default_camera(), {1, 1, 100});
    draw(*e, 64, 64);
    EXPECT_EQ(r->stats().lastFrameUploads, 0u) << "a camera move uploads nothing";
}

TEST(Renderer, LinesIn3DAndInWindowPixels) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    e->line_draw3D({-40, 0, 0}, {40, 0, 0}, {255, 255, 0}, {255, 255, 0});
    e->line_draw(0, 10, 63, 10, {0, 255, 255}, {0, 255, 255});
    const auto img = draw(*e, 64, 64);
    // the world's x axis crosses the middle of the window
    int yellow = 0;
    for (int y = 30; y <= 33; ++y) yellow += colourDistance(img.pixel(16, y), {255, 255, 0}) <= 1;
    EXPECT_GE(yellow, 1);
    EXPECT_COLOUR_NEAR(img.pixel(40, 10), (Rgb{0, 255, 255}), 1);
    EXPECT_COLOUR_NEAR(img.pixel(40, 20), kBackground, 0);
}

TEST(Renderer, QueuedTextsAreWrittenWhereTheySay) {
    REQUIRE_OFFSCREEN_GL();
    auto e = topDownWorld();
    const auto font = e->font_create("Ariel", 10, 1);
    e->font_write_text(font, "HHHH", 50, 50, {255, 255, 255}, 0);
    const auto img = draw(*e, 128, 128);
    auto whiteIn = [&](int x0, int y0, int x1, int y1) {
        int n = 0;
        for (int y = y0; y < y1; ++y)
            for (int x = x0; x < x1; ++x)
                n += colourDistance(img.pixel(x, y), {255, 255, 255}) == 0;
        return n;
    };
    EXPECT_GT(whiteIn(64, 64, 128, 80), 20) << "right and below the anchor";
    EXPECT_EQ(whiteIn(0, 0, 64, 64), 0) << "nothing above or left of it";
    // a text lasts one frame
    const auto next = draw(*e, 128, 128);
    int white = 0;
    for (int y = 64; y < 80; ++y)
        for (int x = 64; x < 128; ++x)
            white += colourDistance(next.pixel(x, y), {255, 255, 255}) == 0;
    EXPECT_EQ(white, 0);
}

TEST(Renderer, WhatIsDrawnIsWhatIsPicked) {
    REQUIRE_OFFSCREEN_GL();
    auto e = emptyWorld();
    e->engine_set_background_color(kBackground);
    aimCamera(*e, {-30, -40, 35}, {0.6, 0.8, -0.6}, {0, 0, 1});
    const auto tri = addPolygon(*e, {{0, 0, 0}, {-5, 20, 4}, {18, 6, -3}}, kRed);
    const auto img = draw(*e, 80, 60);
    int agree = 0, disagree = 0, hits = 0;
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 80; ++x) {
            const bool drawn = colourDistance(img.pixel(x, y), kRed) == 0;
            const bool picked = e->engine_2D_point_to_3D(x + 0.5, y + 0.5).polygon == tri;
            (drawn == picked ? agree : disagree)++;
            hits += drawn;
        }
    EXPECT_GT(hits, 50);
    // only pixels whose centre lies right on an edge may go either way
    EXPECT_LE(disagree, 2);
}

TEST(Renderer, BitmapFillsShowTheBitmapInTheirLight) {
    REQUIRE_OFFSCREEN_GL();
    testsupport::TempDir dir;
    // 2 x 2: red green / blue white
    render::Image bmp{2, 2, {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255}};
    const auto path = dir.file("four.png").string();
    ASSERT_TRUE(render::writePng(path, bmp));
    auto e = topDownWorld();
    const auto h = e->bitmap_load(path);
    ASSERT_NE(h, 0u);
    const auto p = addSquare(*e, 0, 0, 0, 30, {10, 10, 10});
    ASSERT_EQ(e->polygon_wrap_a_bitmap_fixed(p, h, 1, 1), 0);
    // 30 units is 19.2 pixels: the quarters' middles lie 9.6 pixels off the centre
    auto quarters = [&](const render::Image& img) {
        return std::array<Rgb, 4>{img.pixel(22, 22), img.pixel(41, 22), img.pixel(22, 41),
                                  img.pixel(41, 41)};
    };
    const auto q = quarters(draw(*e, 64, 64));
    auto index = [](Rgb c) {
        const Rgb four[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
        for (int i = 0; i < 4; ++i)
            if (colourDistance(c, four[i]) <= 3) return i;
        return -1;
    };
    std::array<int, 4> seen{};
    for (int i = 0; i < 4; ++i) {
        ASSERT_GE(index(q[i]), 0) << "quarter " << i << " shows no colour of the bitmap";
        seen[index(q[i])]++;
    }
    EXPECT_EQ(seen, (std::array<int, 4>{1, 1, 1, 1}));
    // diagonal quarters hold the bitmap's diagonal pixels (red and white, green and blue)
    EXPECT_EQ(index(q[0]) + index(q[3]), 3);

    e->polygon_set_light(p, {128, 128, 128});
    const auto lit = quarters(draw(*e, 64, 64));
    for (int i = 0; i < 4; ++i) {
        const Rgb full = q[i];
        EXPECT_COLOUR_NEAR(lit[i],
                           (Rgb{full.r * 128 / 255, full.g * 128 / 255, full.b * 128 / 255}), 2);
    }
}

TEST(Renderer, BackgroundColourFillsTheWindow) {
    REQUIRE_OFFSCREEN_GL();
    auto e = emptyWorld();
    e->engine_set_background_color({12, 34, 56});
    const auto img = draw(*e, 16, 8);
    ASSERT_EQ(img.width, 16);
    ASSERT_EQ(img.height, 8);
    int off = 0;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 16; ++x) off += colourDistance(img.pixel(x, y), {12, 34, 56}) != 0;
    EXPECT_EQ(off, 0);
}

}  // namespace

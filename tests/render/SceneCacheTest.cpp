// The CPU side of the GPU scene: colours, fans, what is left out, and which
// chunks a change touches.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "engine/SceneStore.h"
#include "render/Image.h"
#include "render/RenderTestSupport.h"
#include "render/SceneCache.h"
#include "support/TestSupport.h"

namespace {

using engine::Point3;
using engine::Rgb;
using rendertest::addPolygon;
using rendertest::addSquare;

TEST(ShadedColour, FillTimesLightOver255Rounded) {
    // 200*128/255 = 100.4, 100*255/255 = 100, 50*64/255 = 12.55
    const Rgb c = render::shadedColour({200, 100, 50}, Rgb{128, 255, 64}, 100);
    EXPECT_EQ(c, (Rgb{100, 100, 13}));
    EXPECT_EQ(render::shadedColour({255, 255, 255}, Rgb{0, 0, 0}, 100), (Rgb{0, 0, 0}));
}

TEST(ShadedColour, NoLightOrBrightnessZeroDrawsTheFill) {
    EXPECT_EQ(render::shadedColour({10, 20, 30}, std::nullopt, 100), (Rgb{10, 20, 30}));
    EXPECT_EQ(render::shadedColour({10, 20, 30}, Rgb{0, 0, 0}, 0), (Rgb{10, 20, 30}));
}

TEST(ShadedColour, LightTakesTheLowByteOfEachChannel) {
    // 0x180 has low byte 0x80 = 128
    EXPECT_EQ(render::shadedColour({255, 255, 255}, Rgb{0x180, 0x1FF, 0x100}, 100),
              (Rgb{128, 255, 0}));
}

TEST(SceneCache, PolygonsBecomeFansFromTheirFirstPoint) {
    auto e = rendertest::emptyWorld();
    // a pentagon: three triangles (0,1,2) (0,2,3) (0,3,4)
    addPolygon(*e, {{0, 0, 0}, {0, 2, 0}, {1, 3, 0}, {2, 2, 0}, {2, 0, 0}}, {9, 9, 9});
    render::SceneCache cache;
    cache.update(*e);
    ASSERT_EQ(cache.chunkCount(), 1u);
    const auto& c = cache.chunk(0);
    ASSERT_EQ(c.vertices.size(), 5u);
    EXPECT_EQ(c.opaque, (std::vector<std::uint32_t>{0, 1, 2, 0, 2, 3, 0, 3, 4}));
    EXPECT_EQ(cache.triangleCount(), 3u);
    // the third vertex sits at (1, 3, 0) relative to the origin
    const Point3 third{c.origin.x + c.vertices[2].x, c.origin.y + c.vertices[2].y,
                       c.origin.z + c.vertices[2].z};
    EXPECT_EQ(third, (Point3{1, 3, 0}));
}

TEST(SceneCache, DisabledPolygonsAndFreePolygonsAreLeftOut) {
    auto e = rendertest::emptyWorld();
    const auto a = addSquare(*e, 0, 0, 0, 1, {255, 0, 0});
    addSquare(*e, 5, 0, 0, 1, {0, 255, 0});
    // a polygon made but never added to the world
    const auto freeOne = e->polygon_create();
    for (Point3 p : {Point3{0, 0, 1}, Point3{0, 1, 1}, Point3{1, 0, 1}})
        e->polygon_add_point(freeOne, p);
    ASSERT_EQ(e->polygon_disable(a), 0);
    render::SceneCache cache;
    cache.update(*e);
    EXPECT_EQ(cache.triangleCount(), 2u);
    for (std::size_t i = 0; i < cache.chunkCount(); ++i)
        for (const auto& v : cache.chunk(i).vertices) EXPECT_EQ(v.g, 255) << "only the green one";
}

TEST(SceneCache, TranslucentPolygonsGoToTheBlendedListAtHalfAlpha) {
    auto e = rendertest::emptyWorld();
    addSquare(*e, 0, 0, 0, 1, {255, 0, 0});
    const auto t = addSquare(*e, 0, 0, 1, 1, {0, 0, 255});
    ASSERT_EQ(e->polygon_set_translucent(t, 1), 0);
    render::SceneCache cache;
    cache.update(*e);
    const auto& c = cache.chunk(0);
    EXPECT_EQ(c.opaque.size(), 6u);
    ASSERT_EQ(c.translucent.size(), 6u);
    for (auto i : c.translucent) {
        EXPECT_EQ(c.vertices[i].a, render::kTranslucentAlpha);
        EXPECT_EQ(c.vertices[i].b, 255);
    }
    for (auto i : c.opaque) EXPECT_EQ(c.vertices[i].a, 255);
}

TEST(SceneCache, PointColoursOverrideTheirVertexOnly) {
    auto e = rendertest::emptyWorld();
    const auto p = addPolygon(*e, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}, {200, 200, 200});
    e->polygon_set_light(p, {128, 128, 128});
    const auto second = e->point_get_next_point(e->polygon_get_first_point(p));
    ASSERT_EQ(e->point_set_rgb(second, {1, 2, 3}), 0);
    render::SceneCache cache;
    cache.update(*e);
    const auto& v = cache.chunk(0).vertices;
    ASSERT_EQ(v.size(), 3u);
    EXPECT_EQ((Rgb{v[0].r, v[0].g, v[0].b}), (Rgb{100, 100, 100}));  // 200*128/255
    EXPECT_EQ((Rgb{v[1].r, v[1].g, v[1].b}), (Rgb{1, 2, 3}));
    EXPECT_EQ((Rgb{v[2].r, v[2].g, v[2].b}), (Rgb{100, 100, 100}));
}

TEST(SceneCache, FarCoordinatesKeepTheirSmallDifferences) {
    auto e = rendertest::emptyWorld();
    const double x0 = 5.0e7, y0 = 7.3e7;  // decimetres of a mine grid
    addPolygon(*e, {{x0, y0, 10}, {x0, y0 + 0.1, 10}, {x0 + 0.1, y0, 10}}, {1, 1, 1});
    render::SceneCache cache;
    cache.update(*e);
    const auto& c = cache.chunk(0);
    // a float alone cannot tell x0 from x0 + 0.1 (its step there is 4)
    ASSERT_EQ(static_cast<float>(x0), static_cast<float>(x0 + 0.1));
    EXPECT_NEAR(c.origin.x + c.vertices[2].x - x0, 0.1, 1e-5);
    EXPECT_NEAR(c.origin.y + c.vertices[1].y - y0, 0.1, 1e-5);
    EXPECT_LT(std::fabs(c.vertices[0].x), 1024.0f);
}

TEST(SceneCache, AnUnchangedSceneGivesNoWork) {
    auto e = rendertest::emptyWorld();
    addSquare(*e, 0, 0, 0, 1, {1, 1, 1});
    render::SceneCache cache;
    cache.update(*e);
    EXPECT_EQ(cache.triangleCount(), 2u);
    EXPECT_TRUE(cache.update(*e).empty()) << "nothing changed, nothing to do";
}

TEST(SceneCache, AChangeRebuildsOnlyItsChunk) {
    auto e = rendertest::emptyWorld();
    const std::size_t chunkSlots = std::size_t{1} << engine::SceneStore::kVersionChunkBits;
    std::vector<engine::Handle> polys;
    for (std::size_t i = 0; i < chunkSlots * 2 + 100; ++i) {
        const double x = static_cast<double>(i % 100), y = static_cast<double>(i / 100);
        polys.push_back(
            addPolygon(*e, {{x, y, 0}, {x, y + 0.5, 0}, {x + 0.5, y, 0}}, {50, 50, 50}));
    }
    render::SceneCache cache;
    const auto first = cache.update(*e);
    EXPECT_EQ(first.size(), 3u);
    EXPECT_EQ(cache.triangleCount(), polys.size());

    // the polygon in the middle of the run lies in the second chunk
    const engine::Handle mid = polys[chunkSlots + 10];
    const auto slot = engine::SceneStore::slotOf(mid, engine::Kind::Polygon);
    const std::size_t expectChunk = slot >> engine::SceneStore::kVersionChunkBits;
    const auto before = cache.rebuilds();
    ASSERT_EQ(e->polygon_set_color_fill(mid, {255, 0, 0}), 0);
    EXPECT_EQ(cache.update(*e), (std::vector<std::size_t>{expectChunk}));
    EXPECT_EQ(cache.rebuilds(), before + 1);

    // deleting one takes its triangle out, in its chunk alone
    ASSERT_EQ(e->polygon_delete(polys[5]), 0);
    const auto changed = cache.update(*e);
    ASSERT_EQ(changed.size(), 1u);
    EXPECT_EQ(cache.triangleCount(), polys.size() - 1);

    // a camera move changes no chunk
    e->camera_set_location(e->camera_get_default_camera(), {1, 2, 3});
    EXPECT_TRUE(cache.update(*e).empty());
}

TEST(SceneCache, ANewWorldEmptiesTheOldChunks) {
    auto e = rendertest::emptyWorld();
    addSquare(*e, 0, 0, 0, 1, {1, 1, 1});
    render::SceneCache cache;
    cache.update(*e);
    ASSERT_EQ(cache.triangleCount(), 2u);
    e->engine_load_world("", "", "", 0);
    const auto changed = cache.update(*e);
    EXPECT_FALSE(changed.empty());
    EXPECT_EQ(cache.triangleCount(), 0u);
}

TEST(SceneCache, BitmapFilledPolygonsCarryTheirBitmapCoordinates) {
    auto e = rendertest::emptyWorld();
    testsupport::TempDir dir;
    render::Image bmp{1, 1, {9, 9, 9, 255}};
    ASSERT_TRUE(render::writePng(dir.file("one.png").string(), bmp));
    const auto h = e->bitmap_load(dir.file("one.png").string());
    const auto p = addSquare(*e, 0, 0, 0, 1, {1, 2, 3});
    addSquare(*e, 5, 0, 0, 1, {1, 2, 3});
    ASSERT_EQ(e->polygon_wrap_a_bitmap_fixed(p, h, 3, 2), 0);
    e->polygon_set_light(p, {51, 102, 255});
    render::SceneCache cache;
    cache.update(*e);
    const auto& c = cache.chunk(0);
    EXPECT_EQ(c.opaque.size(), 6u) << "the plain square";
    ASSERT_EQ(c.textured.size(), 1u);
    EXPECT_EQ(c.textured[0].bitmap, h);
    EXPECT_EQ(c.textured[0].indices.size(), 6u);
    ASSERT_EQ(c.texVertices.size(), 4u);
    float maxU = 0, maxV = 0;
    for (const auto& v : c.texVertices) {
        maxU = std::max(maxU, v.u), maxV = std::max(maxV, v.v);
        // white light times the polygon's light
        EXPECT_EQ((Rgb{v.r, v.g, v.b}), (Rgb{51, 102, 255}));
    }
    EXPECT_FLOAT_EQ(maxU, 3.0f);
    EXPECT_FLOAT_EQ(maxV, 2.0f);
    EXPECT_EQ(cache.triangleCount(), 4u);
}

TEST(SceneCache, PatchesFaceTheirPolygonsWay) {
    auto e = rendertest::emptyWorld();
    const auto p = addSquare(*e, 0, 0, 0, 2, {10, 10, 10});
    // given anticlockwise from above, against the polygon's own order
    ASSERT_EQ(
        e->polygon_add_patch(p, {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}}, {0, 200, 0}, 1),
        0);
    render::SceneCache cache;
    cache.update(*e);
    const auto& c = cache.chunk(0);
    ASSERT_EQ(c.patches.size(), 6u);
    // the first patch triangle turns the same way as the polygon's first
    auto turn = [&](std::uint32_t a, std::uint32_t b, std::uint32_t d) {
        const auto &A = c.vertices[a], &B = c.vertices[b], &D = c.vertices[d];
        return (B.x - A.x) * (D.y - A.y) - (B.y - A.y) * (D.x - A.x);
    };
    EXPECT_GT(turn(c.opaque[0], c.opaque[1], c.opaque[2]) *
                  turn(c.patches[0], c.patches[1], c.patches[2]),
              0);
    EXPECT_EQ(c.vertices[c.patches[0]].g, 200);
}

}  // namespace

// The store's change versions, the picking index against brute force, the
// chunked array, bitmaps, texts and lines.

#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>
#include <tbb/parallel_for.h>

#include <atomic>
#include <random>

#include "engine/Bvh.h"
#include "engine/ChunkedArray.h"
#include "engine/EngineTestUtil.h"
#include "engine/SceneStore.h"
#include "support/TestSupport.h"

using namespace enginetest;
using engine::SceneStore;

namespace {

TEST(SceneStoreVersions, EveryKindOfChangeBumpsOnlyItsChunk) {
    Engine e;
    const SceneStore& st = e.store();
    // Enough polygons for two version chunks.
    std::vector<Handle> polys;
    for (int i = 0; i < 5000; ++i)
        polys.push_back(addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}));
    ASSERT_GE(st.versionChunkCount(), 2u);
    const Handle inSecond = polys.back();
    const std::size_t chunk = st.polygonSlot(inSecond) >> SceneStore::kVersionChunkBits;
    ASSERT_EQ(chunk, 1u);
    auto changes = [&](auto&& change) {
        const std::uint64_t first = st.chunkVersion(0), second = st.chunkVersion(1),
                            rev = e.revision();
        change();
        EXPECT_EQ(st.chunkVersion(0), first);
        EXPECT_GT(st.chunkVersion(1), second);
        EXPECT_GT(e.revision(), rev);
    };
    changes([&] { e.polygon_set_color_fill(inSecond, {1, 2, 3}); });
    changes([&] { e.polygon_set_light(inSecond, {9, 9, 9}); });
    changes([&] { e.polygon_remove_light(inSecond); });
    changes([&] { e.polygon_disable(inSecond); });
    changes([&] { e.polygon_enable(inSecond); });
    changes([&] { e.polygon_set_translucent(inSecond, 2); });
    changes([&] { e.point_set_xyz(e.polygon_get_first_point(inSecond), {0, 0, 1}); });
    changes([&] { e.point_set_rgb(e.polygon_get_first_point(inSecond), {1, 1, 1}); });
    changes([&] { e.polygon_move(inSecond, {1, 0, 0}); });
    changes([&] { e.polygon_set_name(inSecond, "n"); });
    changes([&] { e.polygon_delete(inSecond); });
    // A colour change leaves the picking index as it was; a move does not.
    const std::uint64_t geo = st.geometryRevision();
    e.polygon_set_color_fill(polys[0], {5, 5, 5});
    e.polygon_disable(polys[0]);
    EXPECT_EQ(st.geometryRevision(), geo);
    e.polygon_move(polys[0], {0, 0, 1});
    EXPECT_GT(st.geometryRevision(), geo);
}

TEST(SceneStoreRead, AttributesThroughTheStore) {
    Engine e;
    const Handle g = e.group_create("G");
    const Handle p = addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    e.polygon_set_group(p, g);
    e.polygon_set_color_fill(p, {10, 20, 30});
    e.polygon_set_translucent(p, 3);
    e.polygon_set_rotated(p, true);
    const SceneStore& st = e.store();
    const std::uint32_t s = st.polygonSlot(p);
    ASSERT_NE(s, 0u);
    EXPECT_EQ(st.firstInWorld(), s);
    EXPECT_EQ(st.pointCount(s), 3u);
    EXPECT_EQ(st.point(st.firstPoint(s) + 2), (Point3{1, 1, 0}));
    EXPECT_EQ(st.fill(s), (engine::Rgb{10, 20, 30}));
    EXPECT_EQ(st.translucent(s), 3);
    EXPECT_TRUE(st.rotated(s));
    EXPECT_EQ(SceneStore::groupHandle(st.groupOf(s)), g);
    EXPECT_EQ(st.group(st.groupOf(s))->polygonCount, 1u);
    EXPECT_EQ(st.extra(s), nullptr);  // nothing rare set, nothing allocated
}

// Picks over a grid of pixels must agree with testing every polygon; returns the hits.
int expectAgreesWithBruteForce(const Engine& e) {
    const SceneStore& st = e.store();
    const Point3 view = e.camera().direction;
    int hits = 0;
    for (int i = 0; i < 400; ++i) {
        const double x = 300.0 * (i % 20) / 20 + 3, y = 200.0 * (i / 20) / 20 + 2;
        Point3 o, d;
        e.pixel_ray(x, y, o, d);
        const double tMin = 1.0 / engine::dot(d, view);
        std::uint32_t best = 0;
        double tBest = HUGE_VAL;
        for (std::uint32_t s = st.firstInWorld(); s; s = st.nextInWorld(s)) {
            double t;
            bool front;
            if (!st.disabled(s) &&
                engine::rayHitsStoredPolygon(st, s, o, d, tMin, tBest, t, front) && front &&
                t < tBest) {
                tBest = t;
                best = s;
            }
        }
        const engine::PickHit hit = e.engine_2D_point_to_3D(x, y);
        EXPECT_EQ(hit.polygon, SceneStore::polygonHandle(best)) << "pixel " << x << ", " << y;
        if (best) {
            ++hits;
            EXPECT_NEAR(hit.distance, tBest, 1e-9);
        }
    }
    return hits;
}

// Random triangles in a box: the index agrees with brute force when built, after
// polygons moved (new boxes for the old tree) and after some were deleted.
TEST(PickIndex, AgreesWithBruteForce) {
    Engine e;
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> pos(-50, 50), off(-4, 4);
    std::vector<Handle> polys;
    for (int i = 0; i < 3000; ++i) {
        const Point3 c{pos(rng), pos(rng), pos(rng)};
        const Handle p = makePolygon(
            e, {c + Point3{off(rng), off(rng), off(rng)}, c + Point3{off(rng), off(rng), off(rng)},
                c + Point3{off(rng), off(rng), off(rng)}});
        if (e.engine_add_polygon(p) != 0) {
            e.polygon_delete(p);
            continue;
        }
        polys.push_back(p);
        if (i % 7 == 0) e.polygon_disable(p);
    }
    const Handle cam = e.camera_get_default_camera();
    e.camera_set_location(cam, {-120, 10, 5});
    e.camera_set_axis_system(cam, {1, -0.05, 0.02}, {0, 0, 1});
    e.set_window_size(300, 200);
    EXPECT_GT(expectAgreesWithBruteForce(e), 100);  // the test would prove little if rays missed
    for (std::size_t i = 0; i < polys.size(); i += 5)
        e.polygon_move(polys[i], {off(rng), off(rng), off(rng)});
    EXPECT_GT(expectAgreesWithBruteForce(e), 100);
    for (std::size_t i = 0; i < polys.size(); i += 3) e.polygon_delete(polys[i]);
    EXPECT_GT(expectAgreesWithBruteForce(e), 50);
    // A far move makes the old tree poor: picks stay right either way.
    e.polygon_move(polys[1], {0, 0, 500});
    expectAgreesWithBruteForce(e);
}

TEST(PickIndex, PolygonsWithManyPoints) {
    // A 200-gon: the exact test handles any number of points, and its points
    // cross a storage block boundary when built after enough others.
    Engine e;
    for (int i = 0; i < 21800; ++i)
        addPolygon(e, {{100, 0, double(i)}, {100, 1, double(i)}, {101, 1, double(i)}});
    std::vector<Point3> ring;
    for (int i = 0; i < 200; ++i) {
        const double a = 2 * M_PI * i / 200;
        ring.push_back({10, std::cos(a), std::sin(a)});  // seen from -x: clockwise on screen
    }
    const Handle big = makePolygon(e, ring);
    ASSERT_EQ(e.engine_add_polygon(big), 0);
    const Handle cam = e.camera_get_default_camera();
    e.camera_set_location(cam, {0, 0, 0});
    e.camera_set_axis_system(cam, {1, 0, 0}, {0, 0, 1});
    e.set_window_size(800, 600);
    EXPECT_EQ(e.engine_2D_point_to_3D(400, 300).polygon, big);
    EXPECT_EQ(e.engine_2D_point_to_3D(400 - 0.95 * 80, 300).polygon, big);  // y = 0.95 at x = 10
    EXPECT_EQ(e.engine_2D_point_to_3D(400 - 1.05 * 80, 300).polygon, 0u);
}

TEST(PickIndex, ConcurrentQueriesAfterAChange) {
    // The first queries after a change race to rebuild; all must see the new scene.
    Engine e;
    for (int i = 0; i < 40000; ++i)
        addPolygon(e, {{0, 50, double(i)}, {0, 51, double(i)}, {1, 51, double(i)}});
    std::vector<Handle> squares;
    for (int k = 0; k < 300; ++k) squares.push_back(addSquareFacingMinusX(e, {10.0 + k, 0, 0}));
    ASSERT_EQ(e.engine_get_number_of_collisions({0, 0, 0}, {1000, 0, 0}), 300);
    e.polygon_move(squares[7], {0, 5, 0});
    e.polygon_disable(squares[8]);
    std::atomic<int> wrong{0};
    tbb::parallel_for(0, 400, [&](int) {
        if (e.engine_get_number_of_collisions({0, 0, 0}, {1000, 0, 0}) != 298) ++wrong;
    });
    EXPECT_EQ(wrong.load(), 0);
    e.polygon_enable(squares[8]);
    addSquareFacingMinusX(e, {5, 0, 0});  // a new polygon: a full rebuild
    tbb::parallel_for(0, 400, [&](int) {
        if (e.engine_get_number_of_collisions({0, 0, 0}, {1000, 0, 0}) != 300) ++wrong;
    });
    EXPECT_EQ(wrong.load(), 0);
}

TEST(ChunkedArray, BlocksGrowWithoutMovingAndReadZero) {
    engine::ChunkedArray<int, 12> a;  // blocks of 4096
    ASSERT_TRUE(a.ensure(5000));
    EXPECT_EQ(a.capacity(), 8192u);
    int* first = &a[3];
    for (int i = 0; i < 5000; ++i) a[i] = i * 3;
    ASSERT_TRUE(a.ensure(100000));
    EXPECT_EQ(&a[3], first);
    for (int i = 0; i < 5000; ++i) ASSERT_EQ(a[i], i * 3);
    EXPECT_EQ(a[99999], 0);
    EXPECT_FALSE(a.ensure(engine::ChunkedArray<int, 12>::kMaxElements + 1));
    a.clear();
    EXPECT_EQ(a.capacity(), 0u);
}

TEST(EngineResources, BitmapsLoadOrFail) {
    testsupport::TempDir dir;
    const unsigned char px[3 * 2 * 4] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255,
                                         1,   2, 3, 255, 4, 5,   6, 255, 7, 8, 9,   255};
    const std::string png = dir.file("tile.png").string();
    ASSERT_NE(stbi_write_png(png.c_str(), 3, 2, 4, px, 3 * 4), 0);
    const std::string bmp = dir.file("tile.bmp").string();
    ASSERT_NE(stbi_write_bmp(bmp.c_str(), 3, 2, 4, px), 0);
    Engine e;
    const Handle b = e.bitmap_load(png);
    ASSERT_NE(b, 0u);
    EXPECT_EQ(e.bitmap_get_width(b), 3);
    EXPECT_EQ(e.bitmap_get_height(b), 2);
    EXPECT_EQ(e.bitmap_get_path(b), png);
    int w = 0, h = 0;
    const std::uint8_t* rgba = nullptr;
    ASSERT_TRUE(e.bitmap_pixels(b, w, h, rgba));
    EXPECT_EQ(rgba[4 * 4 + 1], 5);     // second row, second pixel, green
    EXPECT_EQ(e.bitmap_load(png), b);  // loaded once
    const Handle b2 = e.bitmap_load(bmp);
    ASSERT_NE(b2, 0u);
    EXPECT_EQ(e.bitmap_get_width(b2), 3);
    testsupport::writeFile(dir.file("junk.png"), "not an image at all");
    EXPECT_EQ(e.bitmap_load(dir.file("junk.png").string()), 0u);
    EXPECT_EQ(e.bitmap_load(dir.file("missing.jpg").string()), 0u);
    EXPECT_EQ(e.bitmap_load(""), 0u);
    // Wrapping gives every point coordinates spanning the repeats.
    const Handle p = addPolygon(e, {{0, 0, 0}, {0, 2, 0}, {4, 2, 0}, {4, 0, 0}});
    ASSERT_EQ(e.polygon_wrap_a_bitmap_fixed(p, b, 2, 3), 0);
    EXPECT_EQ(e.polygon_get_bitmap(p), b);
    double lo = 1e9, hi = -1e9;
    for (Handle pt = e.polygon_get_first_point(p); pt; pt = e.point_get_next_point(pt)) {
        double bx, by;
        ASSERT_EQ(e.point_get_bitmap_xy(pt, bx, by), 0);
        lo = std::min(lo, bx);
        hi = std::max(hi, bx);
    }
    EXPECT_NEAR(lo, 0, 1e-12);
    EXPECT_NEAR(hi, 2, 1e-12);
    EXPECT_TRUE(e.polygon_are_bitmap_x_cords_ok(p));
    EXPECT_EQ(e.polygon_wrap_a_bitmap_fixed(p, 0, 1, 1), -1);
    EXPECT_EQ(e.polygon_set_bitmap_fill(p, p), -1);
}

TEST(EngineResources, TextsAndLines) {
    Engine e;
    const Handle f = e.font_create("Arial", 10, 0);
    ASSERT_NE(f, 0u);
    ASSERT_EQ(e.font_write_text(f, "North", 50, 10, {255, 255, 0}, 0), 0);
    ASSERT_EQ(e.queued_texts().size(), 1u);
    const auto texts = e.take_queued_texts();
    EXPECT_EQ(texts[0].text, "North");
    EXPECT_TRUE(e.queued_texts().empty());
    const Handle l2 = e.line_draw(0, 0, 10, 10, {1, 1, 1}, {2, 2, 2});
    const Handle l3 = e.line_draw3D({0, 0, 0}, {1, 2, 3}, {1, 1, 1}, {2, 2, 2});
    ASSERT_NE(l2, 0u);
    ASSERT_NE(l3, l2);
    EXPECT_EQ(e.line_set_edges(l2, 1, 1, 5, 5), 0);
    EXPECT_EQ(e.line_set_edges(l3, 1, 1, 5, 5), -1);  // a 3D line takes 3D ends
    EXPECT_EQ(e.line_set_edges3D(l3, {1, 1, 1}, {2, 2, 2}), 0);
    EXPECT_EQ(e.lines().size(), 2u);
    EXPECT_EQ(e.polygon_delete(l2), 0);
    EXPECT_EQ(e.polygon_delete(l2), -1);
    ASSERT_EQ(e.lines().size(), 1u);
    EXPECT_EQ(e.lines()[0].b, (Point3{2, 2, 2}));
}

TEST(EngineWorld, LoadAndCloseEmptyTheScene) {
    Engine e;
    EXPECT_TRUE(e.engine_is_engine_empty());
    EXPECT_EQ(e.engine_load_world("", "w", "b", 4), 0);
    EXPECT_FALSE(e.engine_is_engine_empty());
    addPolygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    e.group_create("G");
    EXPECT_EQ(e.engine_load_world("some.wld", "w", "b", 4), -1);  // files are not read here
    EXPECT_EQ(e.polygon_count(), 1u);
    EXPECT_EQ(e.engine_load_world("", "w", "b", 4), 0);
    EXPECT_EQ(e.polygon_count(), 0u);
    EXPECT_EQ(e.group_count(), 0u);
    EXPECT_EQ(e.polygon_get_first_polygon(), 0u);
    e.engine_set_background_color({300, 20, 30});
    EXPECT_EQ(e.engine_get_background_color(), (engine::Rgb{44, 20, 30}));
    e.engine_close();
    EXPECT_TRUE(e.engine_is_engine_empty());
}

TEST(EngineMath, Helpers) {
    EXPECT_EQ(Engine::math_get_square_distance({1, 2, 3}, {4, 6, 3}), 25);
    EXPECT_EQ(Engine::math_get_distance({1, 2, 3}, {4, 6, 3}), 5);
    EXPECT_DOUBLE_EQ(
        Engine::math_get_distance_between_point_and_line({0, 3, 0}, {-1, 0, 0}, {1, 0, 0}), 3);
    EXPECT_DOUBLE_EQ(
        Engine::math_get_distance_between_point_and_line({5, 3, 4}, {0, 0, 0}, {0, 0, 0}),
        std::sqrt(50.0));
    EXPECT_TRUE(Engine::math_is_point_on_segment({0.5, 0, 0}, {0, 0, 0}, {1, 0, 0}));
    EXPECT_FALSE(Engine::math_is_point_on_segment({1.5, 0, 0}, {0, 0, 0}, {1, 0, 0}));
    EXPECT_EQ(Engine::math_product({1, 2, 3}, {4, 5, 6}), 32);
    EXPECT_EQ(Engine::math_cross({1, 0, 0}, {0, 1, 0}), (Point3{0, 0, 1}));
    Point3 v{3, 0, 4};
    EXPECT_EQ(Engine::math_normalize_vector(v), 5);
    EXPECT_EQ(v, (Point3{0.6, 0, 0.8}));
    Point3 z{0, 0, 0};
    EXPECT_EQ(Engine::math_normalize_vector(z), 0);
    EXPECT_EQ(z, (Point3{0, 0, 0}));
}

}  // namespace

// Bringing the GPU up to the scene without drawing: only the chunks a change touched.
#include <gtest/gtest.h>

#include "engine/SceneStore.h"
#include "render/RenderTestSupport.h"

namespace {

TEST(RendererSync, SendsOnlyTheChunksAChangeTouched) {
    REQUIRE_OFFSCREEN_GL();
    auto e = rendertest::emptyWorld();
    // Enough squares for three version chunks of the store.
    const std::size_t perChunk = std::size_t{1} << engine::SceneStore::kVersionChunkBits;
    std::vector<engine::Handle> squares;
    for (std::size_t i = 0; i < 2 * perChunk + 10; ++i)
        squares.push_back(rendertest::addSquare(*e, static_cast<double>(i % 100) * 3,
                                                static_cast<double>(i / 100) * 3, 0, 1,
                                                {100, 100, 100}));
    rendertest::aimCamera(*e, {150, 100, 500}, {0, 0, -1}, {0, 1, 0});
    // A picture makes the renderer's context current and sends everything.
    rendertest::draw(*e, 32, 24);
    render::Renderer* r = rendertest::offscreen()->renderer();
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->stats().chunks, 3u);
    EXPECT_EQ(r->syncScene(*e), 0u) << "nothing changed";

    e->polygon_set_color_fill(squares[perChunk + 5], {255, 0, 0});
    EXPECT_EQ(r->syncScene(*e), 1u);
    EXPECT_EQ(r->stats().lastFrameUploads, 1u);
    EXPECT_EQ(r->syncScene(*e), 0u) << "already sent";

    // Two changes in two chunks, then a forgotten scene goes over whole.
    e->polygon_set_color_fill(squares[0], {0, 255, 0});
    e->polygon_set_color_fill(squares.back(), {0, 0, 255});
    EXPECT_EQ(r->syncScene(*e), 2u);
    r->resetScene();
    EXPECT_EQ(r->syncScene(*e), 3u);
    // The recoloured square shows in the next picture as it is now.
    EXPECT_EQ(rendertest::draw(*e, 32, 24).empty(), false);
}

}  // namespace

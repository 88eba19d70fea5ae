// `tarvik-cli render` and the camera it fits to a scene.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "cli/RenderCommand.h"
#include "render/DemoScene.h"
#include "render/RenderTestSupport.h"
#include "render/SceneFraming.h"
#include "render/SceneLoaders.h"
#include "support/TestSupport.h"

namespace {

using engine::Point3;
using engine::Rgb;

int runRender(std::vector<std::string> args) {
    args.insert(args.begin(), "render");
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    return cli::runRenderCommand(static_cast<int>(argv.size()), argv.data());
}

TEST(RenderCommand, BadArgumentsExitWithTwo) {
    testsupport::TempDir dir;
    const std::string out = dir.file("x.png").string();
    EXPECT_EQ(runRender({"--demo"}), 2) << "no output";
    EXPECT_EQ(runRender({"--demo", "-o"}), 2) << "-o without its file";
    EXPECT_EQ(runRender({"--demo", "-o", out, "--size", "0x10"}), 2);
    EXPECT_EQ(runRender({"--demo", "-o", out, "--size", "100"}), 2);
    EXPECT_EQ(runRender({"--demo", "-o", out, "--size", "20x30x"}), 2);
    EXPECT_EQ(runRender({"--demo", "-o", out, "--view", "sideways"}), 2);
    EXPECT_EQ(runRender({"-o", out}), 2) << "neither a file nor the demo";
    EXPECT_EQ(runRender({"a.tvs", "--demo", "-o", out}), 2) << "both";
    EXPECT_EQ(runRender({"a.tvs", "b.tvs", "-o", out}), 2);
    EXPECT_EQ(runRender({"--frobnicate", "-o", out}), 2);
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(RenderCommand, FilesItCannotReadExitWithOne) {
    testsupport::TempDir dir;
    const std::string out = dir.file("x.png").string();
    EXPECT_EQ(runRender({dir.file("missing.tvs").string(), "-o", out}), 1);
    const auto odd = dir.file("scene.unknownkind");
    testsupport::writeFile(odd, "whatever");
    EXPECT_EQ(runRender({odd.string(), "-o", out}), 1);
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(RenderCommand, TheDemoBecomesAPicture) {
    REQUIRE_OFFSCREEN_GL();
    testsupport::TempDir dir;
    const std::string out = dir.file("demo.png").string();
    ASSERT_EQ(runRender({"--demo", "-o", out, "--size", "160x120"}), 0);
    const auto img = render::readPng(out);
    ASSERT_EQ(img.width, 160);
    ASSERT_EQ(img.height, 120);
    // the model spans the picture one way or the other and has several colours
    int minX = img.width, maxX = -1, minY = img.height, maxY = -1;
    bool red = false, blue = false;
    for (int y = 0; y < img.height; ++y)
        for (int x = 0; x < img.width; ++x) {
            const Rgb c = img.pixel(x, y);
            if (c.r + c.g + c.b > 0) {
                minX = std::min(minX, x), maxX = std::max(maxX, x);
                minY = std::min(minY, y), maxY = std::max(maxY, y);
            }
            red = red || (c.r > 2 * c.g && c.r > 2 * c.b && c.r > 60);
            blue = blue || (c.b > c.r + 40 && c.b > 80);
        }
    EXPECT_TRUE(maxX - minX > img.width * 0.7 || maxY - minY > img.height * 0.7)
        << "drawn between x " << minX << ".." << maxX << " and y " << minY << ".." << maxY;
    EXPECT_TRUE(red) << "the stopes";
    EXPECT_TRUE(blue) << "the decline";
}

TEST(RenderCommand, AFileGoesThroughTheLoaderOfItsExtension) {
    REQUIRE_OFFSCREEN_GL();
    render::registerSceneLoader(
        ".squaretest",
        [](const std::string& path, std::string& error) -> std::shared_ptr<engine::Engine> {
            if (testsupport::readFile(path) != "green") {
                error = "not a square";
                return nullptr;
            }
            auto e = rendertest::emptyWorld();
            e->engine_set_background_color({255, 255, 255});
            rendertest::addSquare(*e, 1000, 2000, 30, 50, {0, 200, 0});
            return std::shared_ptr<engine::Engine>(e.release());
        });
    testsupport::TempDir dir;
    const auto in = dir.file("one.SQUARETEST");
    testsupport::writeFile(in, "green");
    const std::string out = dir.file("top.png").string();
    ASSERT_EQ(runRender({in.string(), "-o", out, "--view", "top", "--size", "50x40"}), 0);
    const auto img = render::readPng(out);
    ASSERT_EQ(img.width, 50);
    EXPECT_COLOUR_NEAR(img.pixel(25, 20), (Rgb{0, 200, 0}), 0);
    EXPECT_COLOUR_NEAR(img.pixel(0, 0), (Rgb{255, 255, 255}), 0);

    testsupport::writeFile(in, "red");
    EXPECT_EQ(runRender({in.string(), "-o", dir.file("bad.png").string()}), 1);
}

class Framing : public ::testing::TestWithParam<render::View> {};

TEST_P(Framing, TheWholeSceneIsInViewAndFillsIt) {
    auto e = rendertest::emptyWorld();
    ASSERT_NE(render::buildDemoScene(*e), 0u);
    const int w = 400, h = 300;
    ASSERT_TRUE(render::frameScene(*e, GetParam(), w, h));
    Point3 lo, hi;
    ASSERT_TRUE(e->group_bounding_box(0, lo, hi));
    double minX = 1e300, maxX = -1e300, minY = 1e300, maxY = -1e300;
    for (int i = 0; i < 8; ++i) {
        const Point3 c{(i & 1) ? hi.x : lo.x, (i & 2) ? hi.y : lo.y, (i & 4) ? hi.z : lo.z};
        double x = 0, y = 0;
        EXPECT_EQ(e->engine_3D_point_to_2D(c, x, y), 0) << "corner " << i << " out of view";
        minX = std::min(minX, x), maxX = std::max(maxX, x);
        minY = std::min(minY, y), maxY = std::max(maxY, y);
    }
    // tight: the box spans most of the window one way or the other
    EXPECT_TRUE(maxX - minX > 0.8 * w || maxY - minY > 0.8 * h)
        << (maxX - minX) << " x " << (maxY - minY);
}

INSTANTIATE_TEST_SUITE_P(Views, Framing,
                         ::testing::Values(render::View::Top, render::View::North,
                                           render::View::East, render::View::Iso));

TEST(Framing, TopViewHasNorthUp) {
    auto e = rendertest::emptyWorld();
    rendertest::addSquare(*e, 0, 0, 0, 1, {1, 1, 1});
    rendertest::addSquare(*e, 0, 100, 0, 1, {1, 1, 1});
    ASSERT_TRUE(render::frameScene(*e, render::View::Top, 100, 100));
    double x0, y0, x1, y1;
    ASSERT_EQ(e->engine_3D_point_to_2D({0, 0, 0}, x0, y0), 0);
    ASSERT_EQ(e->engine_3D_point_to_2D({0, 100, 0}, x1, y1), 0);
    EXPECT_LT(y1, y0) << "north is higher in the picture";
    EXPECT_NEAR(x0, x1, 1e-6);
}

TEST(Framing, AnEmptySceneCannotBeFramed) {
    auto e = rendertest::emptyWorld();
    EXPECT_FALSE(render::frameScene(*e, render::View::Iso, 100, 100));
}

TEST(ViewNames, ReadBack) {
    for (auto v : {render::View::Top, render::View::North, render::View::East, render::View::Iso})
        EXPECT_EQ(render::parseView(render::viewName(v)), v);
    EXPECT_FALSE(render::parseView("Top"));
}

}  // namespace

// Pictures drawn by `tarvik-cli render` from small scripts, against baseline
// PNGs in tests/render/baselines (see docs/dev/testing.md to remake them).
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "render/ImageCompare.h"
#include "render/RenderTestSupport.h"
#include "support/TestSupport.h"

namespace {

using engine::Point3;
using engine::Rgb;

constexpr int kWidth = 160, kHeight = 120;

std::string pointText(Point3 p) {
    char buf[128];
    std::snprintf(buf, sizeof buf, "%.17g,%.17g,%.17g", p.x, p.y, p.z);
    return buf;
}

std::string colourText(Rgb c) {
    return std::to_string(c.r) + "," + std::to_string(c.g) + "," + std::to_string(c.b);
}

// A script line making a polygon of the points, clockwise seen from its front.
std::string polygonLine(const std::vector<Point3>& pts, Rgb colour, const std::string& var) {
    std::string s = "polygon --colour " + colourText(colour);
    for (const auto& p : pts) s += " " + pointText(p);
    return s + " > " + var + "\n";
}

// The six faces of a box, each facing out; `after` is appended after each face
// with $F standing for its handle.
std::string boxLines(Point3 lo, Point3 hi, const std::array<Rgb, 6>& colours,
                     const std::string& after = "") {
    const Point3 c = (lo + hi) * 0.5, h = (hi - lo) * 0.5;
    const Point3 X{h.x, 0, 0}, Y{0, h.y, 0}, Z{0, 0, h.z};
    // Outward normal n, and u, v with u x v along n: c + u + v, c + u - v, ... is
    // clockwise seen from outside.
    const std::array<std::array<Point3, 3>, 6> faces{{
        {X, Y, Z},
        {X * -1, Z, Y},
        {Y, Z, X},
        {Y * -1, X, Z},
        {Z, X, Y},
        {Z * -1, Y, X},
    }};
    std::string s;
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const Point3 n = c + faces[i][0], u = faces[i][1], v = faces[i][2];
        s += polygonLine({n + u + v, n + u - v, n - u - v, n - u + v}, colours[i], "F");
        s += after;
    }
    return s;
}

std::string squareLines(double cx, double cy, double z, double h, Rgb colour,
                        const std::string& var = "F") {
    return polygonLine(
        {{cx + h, cy + h, z}, {cx + h, cy - h, z}, {cx - h, cy - h, z}, {cx - h, cy + h, z}},
        colour, var);
}

class ImageBaseline : public ::testing::Test {
protected:
    void SetUp() override {
        REQUIRE_OFFSCREEN_GL();
        if (!std::filesystem::exists(TARVIK_CLI))
            GTEST_SKIP() << "tarvik-cli is not built: " << TARVIK_CLI;
    }

    // Runs `tarvik-cli render` on the script and reads the picture back.
    render::Image renderScript(const std::string& name, const std::string& script,
                               const std::string& view) {
        const auto in = dir.file(name + ".tvs");
        testsupport::writeFile(in, script);
        const auto out = dir.file(name + ".png");
        const auto err = dir.file(name + ".err");
        const std::string cmd = std::string("\"") + TARVIK_CLI + "\" render \"" + in.string() +
                                "\" -o \"" + out.string() + "\" --size " + std::to_string(kWidth) +
                                "x" + std::to_string(kHeight) + " --view " + view + " 2> \"" +
                                err.string() + "\"";
        const int rc = std::system(cmd.c_str());
        EXPECT_EQ(rc, 0) << name << ": " << testsupport::readFile(err);
        if (rc != 0) return {};
        render::Image img = render::readPng(out.string());
        EXPECT_EQ(img.width, kWidth);
        EXPECT_EQ(img.height, kHeight);
        return img;
    }

    void expectBaseline(const std::string& name, const render::Image& img,
                        rendertest::BaselineTolerance tol = {}) {
        const std::string why = rendertest::checkBaseline(name, img, tol);
        EXPECT_TRUE(why.empty()) << name << ": " << why;
    }

    testsupport::TempDir dir;
};

const std::string kDarkBackground = "call engine_set_background_color 20,20,40\n";
const std::array<Rgb, 6> kSandstone{{{200, 180, 120},
                                     {200, 180, 120},
                                     {200, 180, 120},
                                     {200, 180, 120},
                                     {200, 180, 120},
                                     {200, 180, 120}}};

TEST_F(ImageBaseline, LitPolygons) {
    // One colour everywhere: only the light tells the faces apart.
    const std::string script = kDarkBackground + boxLines({-50, -30, 0}, {50, 30, 40}, kSandstone) +
                               "call light_create sun 300,-200,500 > L\n"
                               "call light_set_type_of_light $L 58\n"
                               "call light_point_at $L 0,0,0\n"
                               "call light_set_ambient $L 1\n"
                               "call light_set_diffuse $L 3\n"
                               "call light_activate $L 0\n";
    const auto img = renderScript("lit", script, "iso");
    ASSERT_FALSE(img.empty());
    expectBaseline("lit_polygons", img);
    // Seen from the south-west above, three faces show; a light from above in the
    // south-east gives them three shades of the one fill, the top the brightest.
    int darkest = 256, brightest = -1;
    for (int y = 0; y < img.height; ++y)
        for (int x = 0; x < img.width; ++x) {
            const Rgb c = img.pixel(x, y);
            if (c == Rgb{20, 20, 40}) continue;
            darkest = std::min(darkest, c.r);
            brightest = std::max(brightest, c.r);
            EXPECT_GE(c.r + 4, c.g) << "the fill's hue at " << x << ", " << y;
        }
    ASSERT_GE(brightest, 0) << "nothing drawn";
    EXPECT_GT(brightest - darkest, 30);
    EXPECT_EQ(img.pixel(kWidth / 2, kHeight / 2 - 10).r, brightest);
}

TEST_F(ImageBaseline, UnlitPolygonsKeepTheirFill) {
    const std::array<Rgb, 6> faces{{{220, 40, 40},
                                    {40, 220, 40},
                                    {40, 40, 220},
                                    {220, 220, 40},
                                    {40, 220, 220},
                                    {220, 40, 220}}};
    const std::string script = kDarkBackground + boxLines({-50, -30, 0}, {50, 30, 40}, faces,
                                                          "call polygon_set_brightness $F 0\n");
    const auto img = renderScript("unlit", script, "top");
    ASSERT_FALSE(img.empty());
    expectBaseline("unlit_polygons", img);
    // Seen from above only the top (+z, the fifth face: cyan) shows, exactly in its fill.
    EXPECT_COLOUR_NEAR(img.pixel(kWidth / 2, kHeight / 2), (Rgb{40, 220, 220}), 0);
}

TEST_F(ImageBaseline, Lines) {
    std::string script = kDarkBackground + squareLines(0, 0, 0, 100, {60, 60, 60}) +
                         "call polygon_set_brightness $F 0\n";
    // A fan of 3D lines above the square, shading from white to their own colour.
    for (int i = 0; i <= 8; ++i) {
        const double x = -90 + 22.5 * i;
        script += "call line_draw3D " + pointText({-90, -90, 10}) + " " + pointText({x, 90, 10}) +
                  " 255,255,255 " + colourText({255, static_cast<int>(30 * i), 0}) + "\n";
    }
    const auto img = renderScript("lines", script, "top");
    ASSERT_FALSE(img.empty());
    expectBaseline("lines", img);
}

TEST_F(ImageBaseline, TranslucentOverOpaque) {
    const std::string script = kDarkBackground + squareLines(-20, 0, 0, 40, {255, 0, 0}) +
                               "call polygon_set_brightness $F 0\n" +
                               squareLines(20, 0, 10, 40, {0, 0, 255}) +
                               "call polygon_set_brightness $F 0\n"
                               "call polygon_set_translucent $F 1\n";
    const auto img = renderScript("translucent", script, "top");
    ASSERT_FALSE(img.empty());
    expectBaseline("translucency", img);
    // Half alpha: blue over red is half of each, blue over the background half of
    // blue and of the background.
    const int cy = kHeight / 2;
    EXPECT_COLOUR_NEAR(img.pixel(kWidth / 2, cy), (Rgb{128, 0, 128}), 3);
    int x = kWidth - 1;
    while (x > 0 && img.pixel(x, cy) == Rgb{20, 20, 40}) --x;
    EXPECT_COLOUR_NEAR(img.pixel(x - 3, cy), (Rgb{10, 10, 148}), 3);
}

// A row of equal cubes going away from the eye, seen through a long lens and
// through the normal one.
std::string rowOfCubes() {
    std::string s = kDarkBackground;
    const std::array<Rgb, 4> colours{{{220, 60, 60}, {60, 220, 60}, {60, 60, 220}, {220, 220, 60}}};
    for (int i = 0; i < 4; ++i) {
        const double x = 150.0 * i, y = 60.0 * i;
        Rgb c = colours[i];
        std::array<Rgb, 6> faces;
        faces.fill(c);
        s += boxLines({x, y, 0}, {x + 40, y + 40, 40}, faces, "call polygon_set_brightness $F 0\n");
    }
    return s;
}

// Height in pixels of the run of `colour` in the column through the picture's x.
int columnHeight(const render::Image& img, int x, Rgb colour) {
    int n = 0;
    for (int y = 0; y < img.height; ++y)
        if (rendertest::colourDistance(img.pixel(x, y), colour) <= 2) ++n;
    return n;
}

int widestColumnOf(const render::Image& img, Rgb colour) {
    int best = 0;
    for (int x = 0; x < img.width; ++x) best = std::max(best, columnHeight(img, x, colour));
    return best;
}

TEST_F(ImageBaseline, LongLensAgainstPerspective) {
    const auto ortho = renderScript("ortho", rowOfCubes(), "north");
    const std::string camera =
        "call camera_get_default_camera > C\n"
        "call camera_set_location $C 673,346,60\n"
        "call camera_set_axis_system $C -0.873,-0.482,-0.082 0,0,1\n"
        "call camera_set_zoom $C 24\n"
        "call camera_set_distance_from_eye $C 1\n";
    const auto persp = renderScript("perspective", rowOfCubes() + camera, "camera");
    ASSERT_FALSE(ortho.empty());
    ASSERT_FALSE(persp.empty());
    expectBaseline("long_lens", ortho);
    expectBaseline("perspective", persp);
    // Through the long lens the near and far cubes stand about equally tall; in
    // perspective the nearest (yellow, at the eye's side) is much taller than the
    // farthest (red).
    const int orthoNear = widestColumnOf(ortho, {60, 60, 220});
    const int orthoFar = widestColumnOf(ortho, {220, 60, 60});
    ASSERT_GT(orthoFar, 0);
    EXPECT_LT(std::abs(orthoNear - orthoFar), orthoFar / 5 + 2);
    const int perspNear = widestColumnOf(persp, {220, 220, 60});
    const int perspFar = widestColumnOf(persp, {220, 60, 60});
    ASSERT_GT(perspFar, 0);
    EXPECT_GT(perspNear, perspFar * 3 / 2);
}

// A grid of 10-unit tiles with 2-unit gaps, seen from above, centred on `centre`.
std::string tileGrid(Point3 centre) {
    std::string s = kDarkBackground;
    for (int i = 0; i < 6; ++i)
        for (int j = 0; j < 4; ++j) {
            const Rgb c{(i + j) % 2 ? 230 : 90, 150, (i * 40) % 255};
            s += squareLines(centre.x + 12.0 * i - 30, centre.y + 12.0 * j - 18, centre.z, 5, c);
            s += "call polygon_set_brightness $F 0\n";
        }
    return s;
}

TEST_F(ImageBaseline, MineGridCoordinatesDrawLikeTheOrigin) {
    // Mine-grid metres times ten, as the readers store them.
    const auto far = renderScript("far", tileGrid({4780000, 67710000, -5000}), "top");
    const auto near = renderScript("near", tileGrid({0, 0, 0}), "top");
    ASSERT_FALSE(far.empty());
    ASSERT_FALSE(near.empty());
    expectBaseline("mine_grid_far", far);
    // The same tiles at the origin: any jitter of the far ones shows as moved edges.
    const auto d = rendertest::compareImages(far, near);
    ASSERT_TRUE(d.sameSize);
    EXPECT_LE(d.worst, 8) << "at (" << d.worstX << ", " << d.worstY << ")";
    EXPECT_LT(d.mean, 0.2);
}

// The comparison itself, on pictures made here.
render::Image flat(int w, int h, Rgb c) {
    render::Image img;
    img.width = w, img.height = h;
    for (int i = 0; i < w * h; ++i)
        img.rgba.insert(img.rgba.end(),
                        {static_cast<std::uint8_t>(c.r), static_cast<std::uint8_t>(c.g),
                         static_cast<std::uint8_t>(c.b), 255});
    return img;
}

TEST(ImageCompare, WorstAndMeanDifference) {
    auto a = flat(4, 2, {10, 20, 30});
    auto b = a;
    // One pixel off by 40 in green, another by 8 in blue: worst 40, mean 48 / 8.
    b.rgba[(1 * 4 + 2) * 4 + 1] = 60;
    b.rgba[(0 * 4 + 0) * 4 + 2] = 22;
    const auto d = rendertest::compareImages(a, b);
    ASSERT_TRUE(d.sameSize);
    EXPECT_EQ(d.worst, 40);
    EXPECT_EQ(d.worstX, 2);
    EXPECT_EQ(d.worstY, 1);
    EXPECT_DOUBLE_EQ(d.mean, 6.0);
    const auto diff = rendertest::differenceImage(a, b);
    EXPECT_EQ(diff.pixel(2, 1), (Rgb{160, 0, 0}));
    EXPECT_EQ(diff.pixel(1, 0), (Rgb{0, 0, 0}));
}

TEST(ImageCompare, AFailureLeavesThePictureAndTheDifferences) {
    const char* update = std::getenv("TARVIK_UPDATE_BASELINES");
    if (update != nullptr && std::string(update) == "1")
        GTEST_SKIP() << "baselines are being written, not compared";
    testsupport::TempDir dir;
    const auto dark = flat(16, 12, {20, 20, 40});
    ASSERT_TRUE(render::writePng(dir.file("selftest.png").string(), dark));
    // Within the tolerance: one pixel off by 40, the mean far below 1.5.
    auto near = dark;
    near.rgba[0] = 60;
    EXPECT_EQ(rendertest::checkBaselineIn(dir.path, "selftest", near), "");
    // All white: far beyond it.
    const auto white = flat(16, 12, {255, 255, 255});
    const std::string why = rendertest::checkBaselineIn(dir.path, "selftest", white);
    EXPECT_NE(why.find("worst pixel differs by 235"), std::string::npos) << why;
    const auto failures = std::filesystem::current_path() / "render-failures";
    const auto actual = failures / "selftest.actual.png", diff = failures / "selftest.diff.png";
    EXPECT_EQ(render::readPng(actual.string()).pixel(3, 3), (Rgb{255, 255, 255}));
    EXPECT_EQ(render::readPng(diff.string()).pixel(3, 3), (Rgb{255, 0, 0}));
    // A picture of another size, and a name with no baseline at all.
    EXPECT_NE(rendertest::checkBaselineIn(dir.path, "selftest", flat(8, 8, {})).find("size 8x8"),
              std::string::npos);
    EXPECT_NE(rendertest::checkBaselineIn(dir.path, "nothing", white).find("no baseline"),
              std::string::npos);
    for (const char* f : {"selftest.actual.png", "selftest.diff.png", "nothing.actual.png"})
        std::filesystem::remove(failures / f);
}

TEST(ImageCompare, PicturesOfAnotherSizeNeverMatch) {
    EXPECT_FALSE(rendertest::compareImages(flat(4, 2, {}), flat(2, 4, {})).sameSize);
    EXPECT_FALSE(rendertest::compareImages(render::Image{}, render::Image{}).sameSize);
}

}  // namespace

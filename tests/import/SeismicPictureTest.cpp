// mnuAll_QkL_Info end to end: the picture laid where its ".mrw" file says, seen from
// both sides, the events of its ".ms" file and the points of its ".cor" file.

#include <cstdint>

#include "ImportTestUtil.h"
#include "SeismicTestUtil.h"
#include "core/AppContext.h"

namespace {

using importtest::ScriptResult;

// A 2 by 2 pixel, 24-bit bitmap: file header, info header, two padded rows.
std::string tinyBmp() {
    std::string b = "BM";
    for (auto [v, bytes] : {std::pair{70u, 4},
                            {0u, 4},
                            {54u, 4},
                            {40u, 4},
                            {2u, 4},
                            {2u, 4},
                            {1u, 2},
                            {24u, 2},
                            {0u, 4},
                            {16u, 4},
                            {2835u, 4},
                            {2835u, 4},
                            {0u, 4},
                            {0u, 4}})
        for (int i = 0; i < bytes; ++i) b += char((v >> (8 * i)) & 0xFF);
    for (int row = 0; row < 2; ++row) b += std::string("\x00\x00\xFF\x00\xFF\x00\x00\x00", 8);
    return b;
}

// Lines 3, 4 and 5: first corner and height; 8 and 10: second corner.
const char* kMrw = "skip\nskip\n100\n200\n-5\nskip\nskip\n130\nskip\n240\n";

class SeismicPictureTest : public importtest::ImportTest {
protected:
    void writePicture(bool withMs = true, bool withCor = true, const std::string& mrw = kMrw,
                      const std::string& picture = tinyBmp()) {
        testsupport::writeFile(dir.file("plan.bmp"), picture);
        if (!mrw.empty()) testsupport::writeFile(dir.file("plan.bmp.mrw"), mrw);
        if (withMs)
            testsupport::writeFile(dir.file("plan.bmp.ms"), "110\t210\t-5\t1.5\n120\t220\t-5\n");
        if (withCor) testsupport::writeFile(dir.file("plan.bmp.cor"), "101\t201\t-4\n");
    }
    ScriptResult runInfo(const std::string& form = "answer form frm21_DataChanges accept\n") {
        return run(form + "answer open plan.bmp\nrun mnuAll_QkL_Info\n");
    }
};

TEST_F(SeismicPictureTest, PictureEventsAndReferencePoints) {
    writePicture();
    ScriptResult r = runInfo();
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_TRUE(r.of("msgbox").empty());
    ASSERT_EQ(r.of("open").size(), 1u);
    EXPECT_EQ(r.of("open")[0]["filetype"], "BMP-File");

    const engine::Engine& e = ctx().engine;
    const engine::Handle pictures = seismictest::topGroup(e, "BitmapGroup");
    ASSERT_NE(pictures, 0u);
    std::vector<engine::Handle> faces;
    for (engine::Handle p = e.group_get_first_polygon(pictures); p;
         p = e.group_get_next_polygon(pictures, p))
        faces.push_back(p);
    ASSERT_EQ(faces.size(), 2u);
    // Corners (x1, y2), (x2, y2), (x2, y1), (x1, y1) at z, with their bitmap places.
    const engine::Point3 want[] = {
        {1000, 2400, -50}, {1300, 2400, -50}, {1300, 2000, -50}, {1000, 2000, -50}};
    const double bx[] = {0, 0, 1, 1}, by[] = {0, 1, 1, 0};
    int k = 0;
    for (engine::Handle pt = e.polygon_get_first_point(faces[0]); pt;
         pt = e.point_get_next_point(pt), ++k) {
        ASSERT_LT(k, 4);
        engine::Point3 xyz;
        e.point_get_xyz(pt, xyz);
        double u = -1, v = -1;
        e.point_get_bitmap_xy(pt, u, v);
        EXPECT_EQ(xyz, want[k]) << k;
        EXPECT_EQ(u, bx[k]) << k;
        EXPECT_EQ(v, by[k]) << k;
    }
    EXPECT_EQ(k, 4);
    // The copy faces the other way, with the same bitmap.
    engine::Plane front, back;
    ASSERT_EQ(e.polygon_get_plane(faces[0], front), 0);
    ASSERT_EQ(e.polygon_get_plane(faces[1], back), 0);
    EXPECT_NEAR(front.n.z, -back.n.z, 1e-12);
    EXPECT_NEAR(std::abs(front.n.z), 1.0, 1e-12);
    EXPECT_NE(e.polygon_get_bitmap(faces[0]), 0u);
    EXPECT_EQ(e.polygon_get_bitmap(faces[0]), e.polygon_get_bitmap(faces[1]));

    auto ev = seismictest::markers(e);
    ASSERT_EQ(ev.size(), 3u);
    EXPECT_EQ(ev[0].colour, (engine::Rgb{255, 0, 0}));
    EXPECT_EQ(ev[0].name, "110\t210\t-5\t1.5");
    EXPECT_NEAR(ev[0].centre().x, 1100, 1e-6);
    // 40 * e^(1.5 / 2); the missing magnitude is 0.25: 40 * e^0.125
    EXPECT_NEAR(ev[0].halfZ(), 84.68000066450699, 1e-6);
    EXPECT_NEAR(ev[1].halfZ(), 45.32593812267305, 1e-6);
    EXPECT_EQ(ev[2].colour, (engine::Rgb{0, 255, 0}));
    EXPECT_NEAR(ev[2].centre().y, 2010, 1e-6);

    const std::string pic = dir.file("plan.bmp").string();
    EXPECT_EQ(ctx().state.strLoadedFiles,
              pic + " opened\r\n" + pic + ".ms added\r\n" + pic + ".cor added");
    EXPECT_EQ(scripted(ctx()).progress(), 100);
    EXPECT_EQ(ctx().ui.pointer(), 1);
}

TEST_F(SeismicPictureTest, SwitchedAxesMoveTheCorners) {
    writePicture();
    ScriptResult r = runInfo("answer form frm21_DataChanges accept chkSwitchXandY=1 cboX=-1\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    const engine::Handle pictures = seismictest::topGroup(ctx().engine, "BitmapGroup");
    ASSERT_NE(pictures, 0u);
    engine::Point3 lo, hi;
    ASSERT_TRUE(ctx().engine.group_bounding_box(pictures, lo, hi));
    // Lines 3 and 8 (signed by X) go to Y, lines 4 and 10 to X.
    EXPECT_EQ(lo, (engine::Point3{2000, -1300, -50}));
    EXPECT_EQ(hi, (engine::Point3{2400, -1000, -50}));
}

TEST_F(SeismicPictureTest, MissingFilesOrNoPictureEndInTheBoxKeepingWhatCameBefore) {
    struct Case {
        const char* what;
        bool ms, cor;
        std::string mrw, picture;
        std::size_t events;
        bool pictureLaid;
    } cases[] = {{"no .cor", true, false, kMrw, tinyBmp(), 2, true},
                 {"no .mrw", true, false, "", tinyBmp(), 0, false},
                 {"short .mrw", true, true, "1\n2\n3\n4\n5\n6\n7\n8\n9\n", tinyBmp(), 0, false},
                 {"no picture", false, false, kMrw, "this is no picture", 0, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        for (const char* ext : {".mrw", ".ms", ".cor"})
            std::filesystem::remove(dir.file(std::string("plan.bmp") + ext));
        writePicture(c.ms, c.cor, c.mrw, c.picture);
        ScriptResult r = runInfo();
        ASSERT_EQ(r.rc, 0) << r.err;
        auto boxes = r.of("msgbox");
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes[0]["title"], "Seismic information error");
        EXPECT_EQ(seismictest::markers(ctx().engine).size(), c.events);
        EXPECT_EQ(seismictest::topGroup(ctx().engine, "BitmapGroup") != 0, c.pictureLaid);
        if (!c.pictureLaid) {
            EXPECT_EQ(ctx().engine.polygon_count(), 0u);
            EXPECT_EQ(ctx().state.strLoadedFiles, "");
        }
        EXPECT_EQ(ctx().ui.pointer(), 1);
    }
}

}  // namespace

// The rubber band: a press and drag draws the band, the mouse-up acts on the
// polygons whose centres lie inside it.
#include "ToolsFixture.h"
#include "core/MainForm.h"
#include "forms/Frm22Selection.h"
#include "tools/ExtraTools.h"

namespace {

using engine::Handle;
using engine::Point3;
using toolstest::ToolsTest;

class RubberBandTest : public ToolsTest {
protected:
    Handle g = 0;
    Handle centre = 0, ne = 0, sw = 0, se = 0, straddling = 0;
    void SetUp() override {
        ToolsTest::SetUp();
        g = ctx.engine.group_create("Blocks");
        centre = square(0, 0, 0, 20, g);
        ne = square(300, 200, 0, 20, g);
        sw = square(-300, -200, 0, 20, g);
        se = square(300, -200, 0, 20, g);
        // Its centre lies outside the band although one corner reaches in.
        straddling = square(-140, 0, 0, 60, g);
    }
    void arm(const char* command, std::vector<std::pair<std::string, std::string>> more = {}) {
        ui::FormAnswer a{"frm22_Selection", ui::FormAction::Accept, {{"optRubberBandPoly", "1"}}};
        for (auto& m : more) a.controls.push_back(m);
        ui.answerForm(a);
        run(command);
        ASSERT_EQ(main().text("cboSelection"), "Rubberband");
    }
    void press(const Point3& p) {
        pixel(p, x0, y0);
        ctx.input.onMouseDown(ctx, 1, 0, x0, y0);
    }
    void drag(const Point3& p) {
        pixel(p, x1, y1);
        ctx.input.onMouseMove(ctx, 1, 0, x1, y1);
    }
    void release(int shift = 0) { ctx.input.onMouseUp(ctx, 1, shift, x1, y1); }
    void band(const Point3& from, const Point3& to, int shift = 0) {
        press(from);
        drag(to);
        release(shift);
    }
    bool shown(Handle p) { return !ctx.engine.polygon_is_disabled(p); }
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
};

TEST_F(RubberBandTest, TheActionsThatOfferTheBand) {
    auto& f = forms::Frm22Selection::of(ctx);
    using A = forms::Frm22Selection::Action;
    for (A a :
         {A::Delete, A::Hide, A::PartialHide, A::PartialUnhide, A::ChangeColour, A::ChangeName}) {
        f.P_subPrepare(a);
        EXPECT_TRUE(f.offers("optRubberBandPoly"));
    }
    // Hidden polygons are not in view: the unhide has no band.
    f.P_subPrepare(A::Unhide);
    EXPECT_FALSE(f.offers("optRubberBandPoly"));
}

TEST_F(RubberBandTest, TheDragDrawsTwoTranslucentTrianglesFacingTheEye) {
    arm("cmdHideGroup");
    const std::size_t before = ctx.engine.polygon_count();
    press({-100, -100, 0});
    drag({400, 300, 0});
    ASSERT_EQ(ctx.engine.polygon_count(), before + 2);
    const Point3 view = ctx.engine.camera_get_direction(ctx.state.F_h_lngCamera);
    int bandPolygons = 0;
    for (Handle p = ctx.engine.polygon_get_first_polygon(); p != 0;
         p = ctx.engine.polygon_get_next(p)) {
        if (ctx.engine.polygon_get_group(p) == g) continue;
        ++bandPolygons;
        EXPECT_EQ(points(p).size(), 3u);
        EXPECT_NE(ctx.engine.polygon_get_translucent(p), 0);
        engine::Plane pl;
        ASSERT_EQ(ctx.engine.polygon_get_plane(p, pl), 0);
        EXPECT_LT(engine::dot(pl.n, view), 0);
        // Its corners fall on the pixels of the band.
        for (const Point3& q : points(p)) {
            double x = 0, y = 0;
            ctx.engine.engine_3D_point_to_2D(q, x, y);
            EXPECT_TRUE(std::abs(x - x0) < 1e-6 || std::abs(x - x1) < 1e-6);
            EXPECT_TRUE(std::abs(y - y0) < 1e-6 || std::abs(y - y1) < 1e-6);
        }
    }
    EXPECT_EQ(bandPolygons, 2);
    // A second move replaces them rather than adding more.
    drag({350, 250, 0});
    EXPECT_EQ(ctx.engine.polygon_count(), before + 2);
    release();
    EXPECT_EQ(ctx.engine.polygon_count(), before);
}

TEST_F(RubberBandTest, HideTakesWhatHasItsCentreInside) {
    arm("cmdHideGroup");
    band({-100, -100, 0}, {400, 300, 0});
    EXPECT_FALSE(shown(centre));
    EXPECT_FALSE(shown(ne));
    EXPECT_TRUE(shown(sw));
    EXPECT_TRUE(shown(se));
    EXPECT_TRUE(shown(straddling));
    EXPECT_EQ(ctx.state.txtComment, "The number of hidden polygons is 2");
    EXPECT_FALSE(ctx.state.toolArmed());
}

TEST_F(RubberBandTest, ABandDrawnBackwardsTakesTheSame) {
    arm("cmdDeleteGroup");
    band({400, 300, 0}, {-100, -100, 0});
    EXPECT_FALSE(ctx.engine.polygon_is_in_world(centre));
    EXPECT_FALSE(ctx.engine.polygon_is_in_world(ne));
    EXPECT_TRUE(ctx.engine.polygon_is_in_world(sw));
    EXPECT_TRUE(ctx.engine.polygon_is_in_world(straddling));
    EXPECT_EQ(ctx.state.txtComment, "The number of deleted polygons is 2");
}

TEST_F(RubberBandTest, ColourAndShiftKeepTheTool) {
    ctx.engine.polygon_disable(ne);
    ui.answerForm({"frm22_Selection", ui::FormAction::Accept, {{"optRubberBandPoly", "1"}}});
    ui.answerColour(engine::Rgb{1, 2, 3});
    run("cmdChangeColour");
    band({-100, -100, 0}, {400, 300, 0}, 1);
    EXPECT_EQ(ctx.engine.polygon_get_color(centre), (engine::Rgb{1, 2, 3}));
    EXPECT_EQ(ctx.engine.polygon_get_color(ne), (engine::Rgb{100, 100, 100}));
    EXPECT_EQ(ctx.state.txtComment, "The number of coloured polygons is 1");
    EXPECT_TRUE(flag("bolChangeColour"));
    band({-400, -300, 0}, {-200, -100, 0});
    EXPECT_EQ(ctx.engine.polygon_get_color(sw), (engine::Rgb{1, 2, 3}));
    EXPECT_FALSE(flag("bolChangeColour"));
}

TEST_F(RubberBandTest, AClickWithoutADragTakesNothing) {
    arm("cmdHideGroup");
    press({0, 0, 0});
    x1 = x0;
    y1 = y0;
    release();
    for (Handle p : {centre, ne, sw, se, straddling}) EXPECT_TRUE(shown(p));
    EXPECT_TRUE(flag("bolHideGroup"));
    EXPECT_EQ(ctx.state.txtComment, "Press and drag to draw the band around the object(s)");
    EXPECT_TRUE(records("msgbox").empty());
}

TEST_F(RubberBandTest, OtherScopesDrawNoBand) {
    ui.answerForm({"frm22_Selection", ui::FormAction::Accept, {{"optPolygon", "1"}}});
    run("cmdHideGroup");
    const std::size_t before = ctx.engine.polygon_count();
    press({-100, -100, 0});
    drag({400, 300, 0});
    EXPECT_EQ(ctx.engine.polygon_count(), before);
}

TEST_F(RubberBandTest, AResetDuringTheDragTakesTheBandAway) {
    arm("cmdPartialHideGroup");
    const std::size_t before = ctx.engine.polygon_count();
    press({-100, -100, 0});
    drag({400, 300, 0});
    ASSERT_EQ(ctx.engine.polygon_count(), before + 2);
    core::p_subResetAndCleanup(ctx);
    EXPECT_EQ(ctx.engine.polygon_count(), before);
}

TEST_F(RubberBandTest, PolygonsOutsideTheViewAreNotTaken) {
    // Far off to the east: its centre projects off the window.
    const Handle far = square(100000, 0, 0, 20, g);
    double x = 0, y = 0;
    ASSERT_NE(ctx.engine.engine_3D_point_to_2D(ctx.engine.polygon_get_center(far), x, y), 0);
    const auto inside = tools::polygonsInBand(ctx, -1e6, -1e6, 1e6, 1e6);
    EXPECT_EQ(std::count(inside.begin(), inside.end(), far), 0);
    EXPECT_EQ(inside.size(), 5u);
}

}  // namespace

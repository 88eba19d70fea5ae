// The coordinate limit rule: the wrap of far centres into range, the offset it
// leaves, and what the user is told.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>

#include "app/Registration.h"
#include "core/AppContext.h"
#include "core/Camera.h"
#include "core/CoordinateLimit.h"
#include "core/Navigation.h"
#include "ui/ScriptedUi.h"

namespace {

using core::wrapIntoCoordinateLimit;

// The rule as a person would do it by hand: add or take off a million until the
// value lies within a million of zero.
double wrapStepwise(double v) {
    while (v > 1000000.0) v -= 1000000.0;
    while (v < -1000000.0) v += 1000000.0;
    return v;
}

TEST(CoordinateWrap, ValuesWithinTheLimitStayAsTheyAre) {
    for (double v : {0.0, 1.0, -1.0, 999999.5, 1000000.0, -1000000.0, -0.0})
        EXPECT_EQ(wrapIntoCoordinateLimit(v), v) << v;
}

TEST(CoordinateWrap, FarValuesLandWhereTheStepwiseWrapStops) {
    EXPECT_EQ(wrapIntoCoordinateLimit(2500000.0), 500000.0);
    EXPECT_EQ(wrapIntoCoordinateLimit(-3200000.0), -200000.0);
    // a whole number of millions stops at the limit, not at zero
    EXPECT_EQ(wrapIntoCoordinateLimit(2000000.0), 1000000.0);
    EXPECT_EQ(wrapIntoCoordinateLimit(-5000000.0), -1000000.0);
    EXPECT_EQ(wrapIntoCoordinateLimit(1000000.25), 0.25);
    for (double v = -7.3e6; v < 7.3e6; v += 123457.125)
        EXPECT_EQ(wrapIntoCoordinateLimit(v), wrapStepwise(v)) << v;
}

TEST(CoordinateWrap, HugeAndBadValuesEndWithoutLooping) {
    const double huge = 1e300;
    const double w = wrapIntoCoordinateLimit(huge);
    EXPECT_GT(w, 0.0);
    EXPECT_LE(w, 1000000.0);
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(wrapIntoCoordinateLimit(inf), inf);
    EXPECT_TRUE(std::isnan(wrapIntoCoordinateLimit(std::nan(""))));
}

TEST(CoordinateWrap, TheOffsetIsWhatTheWrapTookOffEachAxis) {
    const engine::Point3 off = core::coordinateOffsetFor({2500000.0, 10.0, -1500000.0});
    EXPECT_EQ(off.x, 2000000.0);
    EXPECT_EQ(off.y, 0.0);
    EXPECT_EQ(off.z, -1000000.0);
    const engine::Point3 bad =
        core::coordinateOffsetFor({std::numeric_limits<double>::infinity(), std::nan(""), 3e6});
    EXPECT_EQ(bad.x, 0.0);
    EXPECT_EQ(bad.y, 0.0);
    EXPECT_EQ(bad.z, 2000000.0);
    EXPECT_TRUE(core::beyondCoordinateLimit({0, 0, -1000000.5}));
    EXPECT_FALSE(core::beyondCoordinateLimit({1000000.0, -1000000.0, 0}));
    EXPECT_FALSE(core::beyondCoordinateLimit({std::nan(""), 0, 0}));
}

struct Session {
    ui::ScriptedUi ui;
    core::AppContext ctx{ui};
    Session() {
        app::registerAll(ctx);
        core::installNavigation(ctx);
        EXPECT_TRUE(app::startMainForm(ctx));
    }
    int boxesTitled(const std::string& title, const std::string& text) const {
        int n = 0;
        for (const auto& line : ui.transcript())
            if (line.find("\"kind\": \"msgbox\"") != std::string::npos &&
                line.find("\"title\": \"" + title + "\"") != std::string::npos &&
                line.find(text) != std::string::npos)
                ++n;
        return n;
    }
};

TEST(CoordinateLimitCheck, AFarCentreIsOffsetAndTheUserWarned) {
    Session t;
    t.ctx.state.dblRotationCentre = {2500000.0, 300000.0, -4200000.0};
    core::p_subCoordinateLimitCheck(t.ctx);
    EXPECT_EQ(t.ctx.state.txtComment,
              "LIMITATION: Tarvik can only accurately accommodate coordinates of up to 100 000");
    EXPECT_EQ(
        t.boxesTitled("WARNING",
                      "When one of the coordinate system values exceeds 1000000, Tarvik could "
                      "create errors. The larger the value, the larger the potential error."),
        1);
    EXPECT_EQ(t.ctx.state.dblCoordOffset.x, 2000000.0);
    EXPECT_EQ(t.ctx.state.dblCoordOffset.y, 0.0);
    EXPECT_EQ(t.ctx.state.dblCoordOffset.z, -4000000.0);
    // the centre itself stays where the scene is
    EXPECT_EQ(t.ctx.state.dblRotationCentre.x, 2500000.0);
}

TEST(CoordinateLimitCheck, ACentreWithinRangeClearsAnOldOffsetQuietly) {
    Session t;
    t.ctx.state.dblCoordOffset = {2000000.0, 0, 0};
    t.ctx.state.dblRotationCentre = {1000000.0, -999999.0, 5.0};
    const std::string before = t.ctx.state.txtComment;
    const std::size_t lines = t.ui.transcript().size();
    core::p_subCoordinateLimitCheck(t.ctx);
    EXPECT_EQ(t.ctx.state.dblCoordOffset.x, 0.0);
    EXPECT_EQ(t.ctx.state.txtComment, before);
    EXPECT_EQ(t.ui.transcript().size(), lines) << "nothing shown";
}

TEST(CoordinateLimitCheck, RunsWhenTheCameraStartsOnANewLookOnly) {
    Session t;
    t.ctx.state.dblRotationCentre = {0, 0, 3500000.0};
    ASSERT_TRUE(core::p_subInitializeCamera(t.ctx, false));
    EXPECT_EQ(t.ctx.state.dblCoordOffset.z, 0.0);
    ASSERT_TRUE(core::p_subInitializeCamera(t.ctx, true));
    EXPECT_EQ(t.ctx.state.dblCoordOffset.z, 3000000.0);
}

// A stand-in for the selection form: what the check sets and accepts.
class SelectionForm : public forms::Form {
public:
    SelectionForm() : forms::Form("frm22_Selection") {
        add(forms::ControlKind::OptionButton, "optEntity", "Entity").value = 1;
        add(forms::ControlKind::OptionButton, "optGroup", "Group");
    }
};

TEST(CoordinateLimitCheck, TheSelectionGoesToWholeGroupsAcceptedSilently) {
    Session t;
    t.ctx.forms.add(std::make_unique<SelectionForm>());
    std::vector<bool> accepts;
    core::Procedure accept;
    accept.name = "P_subSelectAccept";
    accept.params = {core::ParamKind::Bool};
    accept.body = [&](core::AppContext&, std::vector<core::Value>& v) {
        accepts.push_back(v.at(0).boolean());
        return core::Value();
    };
    t.ctx.procedures.add(std::move(accept));

    t.ctx.state.dblRotationCentre = {10, 20, 30};
    core::p_subCoordinateLimitCheck(t.ctx);
    EXPECT_TRUE(accepts.empty()) << "only a far centre touches the selection";

    t.ctx.state.dblRotationCentre = {-1500000.0, 0, 0};
    core::p_subCoordinateLimitCheck(t.ctx);
    forms::Form& sel = *t.ctx.forms.find("frm22_Selection");
    EXPECT_TRUE(sel.optionValue("optGroup"));
    EXPECT_FALSE(sel.optionValue("optEntity"));
    ASSERT_EQ(accepts.size(), 1u);
    EXPECT_FALSE(accepts[0]) << "accepted without the dialog";
    EXPECT_FALSE(sel.shown());
}

}  // namespace

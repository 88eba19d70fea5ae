// The stress tensor dialog: completing the tensor, the lower hemisphere and its
// messages, the checks, and the three cylinders drawn at a point.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "BuilderTestUtil.h"
#include "builders/Markers.h"
#include "builders/PlanesAndMarkers.h"
#include "builders/StressTensor.h"
#include "core/AppContext.h"
#include "forms/Frm10SelectMarker.h"
#include "forms/Frm25StressTensor.h"
#include "ui/ScriptedUi.h"

namespace {

using builders::StressTensorValues;
using engine::Handle;
using engine::Point3;
using json = nlohmann::json;

StressTensorValues tensor(double t1, double p1, double t2) {
    StressTensorValues v;
    v.sig1Magnitude = 60;
    v.sig2Magnitude = 40;
    v.sig3Magnitude = 20;
    v.sig1Trend = t1;
    v.sig1Plunge = p1;
    v.sig2Trend = t2;
    return v;
}

int calculate(StressTensorValues& v, float north) {
    int turns = 0;
    EXPECT_TRUE(builders::calculateStressTensor(v, north, [&turns] { ++turns; }));
    return turns;
}

TEST(StressTensorCalculation, CompletesAnOrthogonalSet) {
    // North along +x. Sigma 1 = (cos 30, 0, -sin 30) = (0.866, 0, -0.5), sigma 2
    // horizontal towards trend 90: (0, -1, 0) already square to it, plunge 0.
    // Sigma 3 = V1 x V2 = (-0.5, 0, -0.866): trend 180, plunge 60.
    StressTensorValues v = tensor(0, 30, 90);
    EXPECT_EQ(calculate(v, 0.0f), 0);
    EXPECT_EQ(v.sig2Plunge, 0);
    EXPECT_EQ(v.sig2Trend, 90);
    EXPECT_EQ(v.sig3Trend, 180);
    EXPECT_EQ(v.sig3Plunge, 60);
    // The other grid turns the trends with the grid: the same tensor 20 degrees on.
    v = tensor(20, 30, 110);
    EXPECT_EQ(calculate(v, 0.5f), 0);
    EXPECT_EQ(v.sig3Trend, 200);
    EXPECT_EQ(v.sig3Plunge, 60);
}

TEST(StressTensorCalculation, HorizontalSigma1LeavesSigma2Vertical) {
    // Plunge 0: V1z = 1E-100, so the z that makes sigma 2 square to sigma 1 is
    // -(cos(90 deg) * 1) / 1E-100, about -1.6E85: sigma 2 points straight down
    // (plunge 90), and sigma 3 = V1 x V2 lies level along y: atan(V3y / V3x) = 90
    // gives the trend 180 - 90 = 90 with a plunge of 0. Nothing fails.
    StressTensorValues v = tensor(0, 0, 90);
    EXPECT_EQ(calculate(v, 0.0f), 0);
    EXPECT_EQ(v.sig2Plunge, 90);
    EXPECT_EQ(v.sig2Trend, 90);
    EXPECT_EQ(v.sig3Trend, 90);
    EXPECT_EQ(v.sig3Plunge, 0);
}

TEST(StressTensorCalculation, Sigma3TrendStaysZeroOnTheBoundaries) {
    // Sigma 2 trend 0 with north along +x: T2 = 0 is in neither range.
    StressTensorValues v = tensor(0, 30, 0);
    v.sig3Trend = 77;
    calculate(v, 0.0f);
    EXPECT_EQ(v.sig3Trend, 0);
    // Sigma 2 = (1, 0, z2) with z2 = -0.866 / -0.5 = 1.732: plunge -60, turned to 60
    // with its trend to 180.
    EXPECT_EQ(v.sig2Plunge, 60);
    EXPECT_EQ(v.sig2Trend, 180);
    // A trend of 180 is T2 = pi exactly: also 0.
    v = tensor(0, 30, 180);
    calculate(v, 0.0f);
    EXPECT_EQ(v.sig3Trend, 0);
    // With north along +y the grid angle is the trend less 90: 60 gives -30 degrees,
    // below the first range, while the plunge is still worked out.
    v = tensor(20, 30, 60);
    v.sig3Trend = 77;
    calculate(v, 0.5f);
    EXPECT_EQ(v.sig3Trend, 0);
    EXPECT_GT(v.sig3Plunge, 0);
}

TEST(StressTensorCalculation, LowerHemisphereTurnsSigma2AndSigma3) {
    // Sigma 2 trend 300: V2 = (0.5, 0.866, z2), z2 = -0.433 / -0.5 = 0.866 and
    // |V2| = 1.3229: plunge -40.9, turned to 40.9 on trend 120. Sigma 3 =
    // V1 x V2 / |..| = (0.327, -0.756, 0.567): plunge -34.5, turned, told once.
    // Again with trend 120: sigma 2 = (-0.5, -0.866, -0.866) plunges 40.9 and
    // sigma 3 = (-0.327, 0.756, -0.567): plunge 34.5, trend 180 - atan(0.756 /
    // -0.327) = 246.6. No second turn.
    StressTensorValues v = tensor(0, 30, 300);
    EXPECT_EQ(calculate(v, 0.0f), 1);
    EXPECT_EQ(v.sig2Trend, 120);
    EXPECT_EQ(v.sig2Plunge, 40.9);
    EXPECT_EQ(v.sig3Trend, 246.6);
    EXPECT_EQ(v.sig3Plunge, 34.5);
}

TEST(StressTensorCalculation, SecondTurnOfSigma3IsTheLast) {
    // Sigma 2 trend 270: V2 = (0, 1, 0) square to V1, sigma 3 = (0.5, 0, 0.866)
    // points up (plunge -60, trend 360). Turned to 60 and 180; the second pass
    // finds the same and turns it again, and stops there.
    StressTensorValues v = tensor(0, 30, 270);
    EXPECT_EQ(calculate(v, 0.0f), 2);
    EXPECT_EQ(v.sig2Trend, 270);
    EXPECT_EQ(v.sig3Trend, 180);
    EXPECT_EQ(v.sig3Plunge, 60);
}

TEST(StressTensorCalculation, NegativeInputChangesNothing) {
    for (double StressTensorValues::*field :
         {&StressTensorValues::sig1Magnitude, &StressTensorValues::sig2Magnitude,
          &StressTensorValues::sig3Magnitude, &StressTensorValues::sig1Trend,
          &StressTensorValues::sig1Plunge, &StressTensorValues::sig2Trend}) {
        StressTensorValues v = tensor(0, 30, 90);
        v.*field = -1;
        v.sig3Trend = 5;
        EXPECT_FALSE(builders::calculateStressTensor(v, 0.0f, {}));
        EXPECT_EQ(v.sig3Trend, 5);
    }
}

// ---- the dialog ---------------------------------------------------------------------

class TensorDialog : public ::testing::Test {
protected:
    TensorDialog() : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        ctx.state.sngNorthAxis = 0.0f;
        builders::registerPlanesAndMarkers(ctx);
    }
    forms::Frm25StressTensor& form() { return builders::stressTensorForm(ctx); }
    void type(std::initializer_list<std::pair<const char*, const char*>> values) {
        for (const auto& [c, v] : values) form().setFromUser(c, v);
    }
    std::vector<json> boxes() const {
        std::vector<json> out;
        for (const auto& l : ui.transcript()) {
            json j = json::parse(l);
            if (j["kind"] == "msgbox") out.push_back(j);
        }
        return out;
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
};

TEST_F(TensorDialog, StartsWithACompletedTensor) {
    auto& f = form();
    EXPECT_EQ(f.text("cboSig3Trend"), "200");
    EXPECT_EQ(f.text("cboSig3Plunge"), "60");
    EXPECT_EQ(f.text("cboSig2Plunge"), "0");
}

TEST_F(TensorDialog, CalculateWritesTheBoxesAndTellsTheTurns) {
    type({{"cboSig1Trend", "0"}, {"cboSig1Plunge", "30"}, {"cboSig2Trend", "300"}});
    form().click("cmdCalculateTensor1");
    EXPECT_EQ(form().text("cboSig2Trend"), "120");
    EXPECT_EQ(form().text("cboSig2Plunge"), "40.9");
    EXPECT_EQ(form().text("cboSig3Trend"), "246.6");
    EXPECT_EQ(form().text("cboSig3Plunge"), "34.5");
    const auto b = boxes();
    ASSERT_EQ(b.size(), 1u);
    EXPECT_EQ(b[0]["title"], "Minor Principal Stress Trend changed 180 degrees");
    EXPECT_EQ(b[0]["text"],
              "The trend of the minor principal stress was changed to enable a lower "
              "hemispherical projection");
}

TEST_F(TensorDialog, NegativeValueIsRefused) {
    type({{"cboSig2Trend", "-10"}});
    const std::string before = form().text("cboSig3Trend");
    form().click("cmdCalculateTensor1");
    EXPECT_EQ(form().text("cboSig3Trend"), before);
    const auto b = boxes();
    ASSERT_EQ(b.size(), 1u);
    EXPECT_EQ(b[0]["text"], "Negative values is no allowed");
    EXPECT_EQ(b[0]["title"], "Invalid values");
}

TEST_F(TensorDialog, AcceptNeedsSigma1AndHandsTheSizeToTheMarkerDialog) {
    auto& f = form();
    f.setShown(true);
    type({{"cboSig1Magnitude", "0"}});
    EXPECT_FALSE(f.cmdAcceptStressTensor());
    EXPECT_TRUE(f.shown());
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(boxes()[0]["text"], "The major principal stress cannot be zero");
    EXPECT_EQ(boxes()[0]["title"], "Zero-value not allowed");

    type({{"cboSig1Magnitude", "55"}, {"cboSig1Length", "12.5"}, {"cboSig1Diameter", "0.75"}});
    ui::FormAnswer marker;
    marker.form = forms::Frm10SelectMarker::kName;
    marker.controls = {{"optVirginStress", "1"}};
    ui.answerForm(marker);
    EXPECT_TRUE(f.cmdAcceptStressTensor());
    EXPECT_FALSE(f.shown());
    auto& m = builders::selectMarkerForm(ctx);
    EXPECT_EQ(m.text("cboCylLength"), "12.5");
    EXPECT_EQ(m.text("cboCylDiameter"), "0.75");
    EXPECT_FALSE(m.shown());  // accepted by the answer
    EXPECT_TRUE(ctx.state.toolFlag("bolMarker"));
}

TEST_F(TensorDialog, CloseBoxCancels) {
    form().setShown(true);
    ctx.state.setToolFlag("bolMarker", true);
    form().onQueryClose();
    EXPECT_FALSE(form().shown());
    EXPECT_TRUE(ctx.state.bolDialogCancelled);
    EXPECT_FALSE(ctx.state.toolFlag("bolMarker"));
}

TEST_F(TensorDialog, DrawsThreeCylindersInProportion) {
    // Sigma 1: 60 MPa, length 10 m = 100 units along trend 0 (+x) plunging 30: tip
    // (86.6, 0, -50). Sigma 2: 40 / 60 of that, 66.7 along trend 90 (-y), level.
    // Sigma 3: 33.3 along trend 180 plunging 60: (-16.7, 0, -28.9). Each cylinder
    // runs from its tip to the point; its middle is half the tip.
    type({{"cboSig1Magnitude", "60"},
          {"cboSig1Trend", "0"},
          {"cboSig1Plunge", "30"},
          {"cboSig2Magnitude", "40"},
          {"cboSig2Trend", "90"},
          {"cboSig2Plunge", "0"},
          {"cboSig3Magnitude", "20"},
          {"cboSig3Trend", "180"},
          {"cboSig3Plunge", "60"},
          {"cboSig1Length", "10"},
          {"cboSig1Diameter", "1"}});
    const Point3 p{1000, 2000, 300};
    const Handle g = builders::drawStressTensor(ctx, p);
    ASSERT_NE(g, 0u);
    engine::Engine& e = ctx.engine;
    EXPECT_EQ(e.entity_get_name(g), "MarkerGroup");
    std::vector<Handle> parts;
    for (Handle c = e.group_get_first_included_group(g); c;
         c = e.group_get_next_included_group(g, c))
        parts.push_back(c);
    ASSERT_EQ(parts.size(), 3u);
    const double c30 = std::cos(M_PI / 6);
    const Point3 middles[] = {
        {50 * c30, 0, -25}, {0, -100.0 / 3, 0}, {-25.0 / 3, 0, -50 * c30 / 3}};
    const engine::Rgb colours[] = {{184, 8, 8}, {8, 184, 8}, {8, 8, 184}};
    for (int k = 0; k < 3; ++k) {
        EXPECT_EQ(e.entity_get_name(parts[k]), "CylPolyGroup");
        EXPECT_POINT_NEAR(e.group_get_center_of_mass(parts[k]), p + middles[k], 1e-3);
        EXPECT_EQ(e.polygon_get_color(e.group_get_first_polygon(parts[k])), colours[k]);
    }
}

TEST_F(TensorDialog, ZeroMagnitudeHasNoCylinder) {
    type({{"cboSig2Magnitude", "0"}});
    const Handle g = builders::placeStressTensor(ctx, {0, 0, 0});
    ASSERT_NE(g, 0u);
    int parts = 0;
    for (Handle c = ctx.engine.group_get_first_included_group(g); c;
         c = ctx.engine.group_get_next_included_group(g, c))
        ++parts;
    EXPECT_EQ(parts, 2);
    EXPECT_EQ(ctx.state.F_h_lngAddedGroups.back(), g);
    // Drawn from the marker dialog's option too.
    builders::selectMarkerForm(ctx).setFromUser("optVirginStress", "1");
    EXPECT_NE(builders::placeMarker(ctx, {0, 0, 0}, 0), 0u);
}

}  // namespace

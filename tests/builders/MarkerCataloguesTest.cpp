// The four catalogues of standard symbols: their rows, what a row writes into its
// dialog (and what it leaves), and the two buttons.
#include <gtest/gtest.h>

#include <memory>

#include "builders/DiscPlanes.h"
#include "builders/Markers.h"
#include "builders/PlanesAndMarkers.h"
#include "core/AppContext.h"
#include "forms/Frm10SelectMarker.h"
#include "forms/Frm11SelectMarkerStandard.h"
#include "forms/Frm13SelectExcStandard.h"
#include "forms/Frm14SelectLMStandard.h"
#include "forms/Frm15DiscPlane.h"
#include "forms/Frm16SelectDiscPlaneStandard.h"
#include "ui/ScriptedUi.h"

namespace {

using forms::CatalogueRow;
using forms::ControlKind;

// The value a row writes into a control, "" when it leaves the control alone.
std::string written(const CatalogueRow& row, const std::string& control) {
    for (const auto& w : row.writes)
        if (control == w.control) return w.value;
    return "";
}

const CatalogueRow& rowOf(const std::vector<CatalogueRow>& rows, const std::string& option) {
    for (const auto& r : rows)
        if (option == r.option) return r;
    throw std::runtime_error("no row " + option);
}

TEST(Catalogues, HoldEveryStandard) {
    EXPECT_EQ(forms::Frm11SelectMarkerStandard::standardRows().size(), 15u);
    EXPECT_EQ(forms::Frm13SelectExcStandard::standardRows().size(), 8u);
    EXPECT_EQ(forms::Frm14SelectLMStandard::standardRows().size(), 13u);
    EXPECT_EQ(forms::Frm16SelectDiscPlaneStandard::standardRows().size(), 9u);
}

// The rules that hold across rows, and the rows that break a pattern.
TEST(Catalogues, RowsFollowTheirRulesAndKeepTheirOddities) {
    const auto& markers = forms::Frm11SelectMarkerStandard::standardRows();
    // The comment rows write "2.50", the photograph rows "2.5": both texts stand.
    EXPECT_EQ(written(rowOf(markers, "optMarkerComment1"), "cboCylLength"), "2.50");
    EXPECT_EQ(written(rowOf(markers, "optMarkerPhoto2"), "cboCylLength"), "2.5");
    // Cables name no sphere radius; every row puts the foot on the point.
    EXPECT_EQ(written(rowOf(markers, "optCablesNonGrouted"), "cboSphereRadius"), "");
    for (const auto& r : markers) EXPECT_EQ(written(r, "optMarkerBottom"), "1") << r.option;

    // Cylinders have no height; excavations leave the line position, line markers centre it.
    const auto& exc = forms::Frm13SelectExcStandard::standardRows();
    EXPECT_EQ(written(rowOf(exc, "optMechOrepass"), "cboExcavationHeight"), "");
    EXPECT_EQ(written(rowOf(exc, "optMechOrepass"), "optExcCylinder"), "1");
    for (const auto& r : exc) EXPECT_EQ(written(r, "optLineCentre"), "") << r.option;
    const auto& lm = forms::Frm14SelectLMStandard::standardRows();
    EXPECT_EQ(written(rowOf(lm, "optVentReturn"), "optExc8Cone"), "1");
    for (const auto& r : lm) EXPECT_EQ(written(r, "optLineCentre"), "1") << r.option;

    // One-point planes leave the dip to the user; two-point planes set it.
    const auto& planes = forms::Frm16SelectDiscPlaneStandard::standardRows();
    EXPECT_EQ(written(rowOf(planes, "optDiscMapping3"), "optPlane1Point"), "1");
    EXPECT_EQ(written(rowOf(planes, "optDiscMapping3"), "cboPlaneDip"), "");
    EXPECT_EQ(written(rowOf(planes, "optDiscVentSeal"), "optPlane2Points"), "1");
    EXPECT_EQ(written(rowOf(planes, "optDiscVentSeal"), "cboPlaneDip"), "90");
}

// Every colour a catalogue names is a colour of its dialog's table.
TEST(Catalogues, NameOnlyColoursTheirDialogsKnow) {
    engine::Rgb c;
    for (const auto& r : forms::Frm11SelectMarkerStandard::standardRows())
        EXPECT_TRUE(forms::Frm10SelectMarker::tableColour(written(r, "cboMarkerColour"), c))
            << r.option;
    for (const auto& r : forms::Frm16SelectDiscPlaneStandard::standardRows())
        EXPECT_TRUE(forms::Frm15DiscPlane::tableColour(written(r, "cboDiscPlaneColour"), c))
            << r.option;
}

// ---- the buttons ------------------------------------------------------------------

class CatalogueButtons : public ::testing::Test {
protected:
    CatalogueButtons() : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        builders::registerPlanesAndMarkers(ctx);
    }
    forms::Form& form(const char* name) { return *ctx.forms.find(name); }

    ui::ScriptedUi ui;
    core::AppContext ctx;
};

TEST_F(CatalogueButtons, AcceptFillsTheMarkerDialogAndAcceptsIt) {
    auto& marker = builders::selectMarkerForm(ctx);
    marker.setShown(true);
    auto& cat = form(forms::Frm11SelectMarkerStandard::kName);
    cat.setShown(true);
    cat.setFromUser("optMarkerComment2", "1");
    cat.click("cmdStanMarkerAccept");
    EXPECT_FALSE(cat.shown());
    EXPECT_FALSE(marker.shown());  // accepted
    EXPECT_EQ(marker.symbol(), forms::MarkerSymbol::CylDiamond);
    EXPECT_EQ(marker.text("cboCylDiameter"), "1.0");
    EXPECT_EQ(marker.text("cboCylLength"), "2.50");
    EXPECT_EQ(marker.text("cboSphereRadius"), "1.5");
    EXPECT_EQ(marker.text("cboMarkerColour"), "Mustard");
    EXPECT_EQ(marker.placement(), forms::MarkerPlacement::Bottom);
    EXPECT_EQ(marker.link(), forms::MarkerLink::None);
    EXPECT_EQ(marker.lngMarkerColour, (engine::Rgb{123, 123, 5}));
    EXPECT_TRUE(ctx.state.toolFlag("bolMarker"));
}

TEST_F(CatalogueButtons, ChangesLeaveTheDialogOpenAndUnnamedFieldsAsTheyWere) {
    auto& marker = builders::selectMarkerForm(ctx);
    marker.setShown(true);
    marker.setFromUser("cboSphereRadius", "3.3");
    marker.setFromUser("optMarkerTop", "1");
    auto& cat = form(forms::Frm11SelectMarkerStandard::kName);
    cat.setFromUser("optCablesGrouted", "1");
    cat.click("cmdMarkerChanges");
    EXPECT_TRUE(marker.shown());
    EXPECT_EQ(marker.symbol(), forms::MarkerSymbol::Cylinder);
    EXPECT_EQ(marker.text("cboCylLength"), "6.0");
    EXPECT_EQ(marker.text("cboMarkerColour"), "Light blue");
    EXPECT_EQ(marker.text("cboSphereRadius"), "3.3");  // the row names no radius
    EXPECT_EQ(marker.placement(), forms::MarkerPlacement::Bottom);
    EXPECT_FALSE(ctx.state.toolFlag("bolMarker"));
}

TEST_F(CatalogueButtons, PlaneStandardArmsTheTwoPointTool) {
    auto& plane = builders::discPlaneForm(ctx);
    plane.setShown(true);
    auto& cat = form(forms::Frm16SelectDiscPlaneStandard::kName);
    cat.setFromUser("optDiscVentDoor", "1");
    cat.click("cmdPlaneAccept");
    EXPECT_FALSE(plane.shown());
    EXPECT_EQ(plane.mode(), forms::PlaneMode::TwoPoints);
    EXPECT_EQ(plane.text("cboPlaneDip"), "90");
    EXPECT_EQ(plane.text("cboPlaneThickness"), "2");
    EXPECT_EQ(plane.lngDiscPlaneColour, (engine::Rgb{246, 9, 9}));
    EXPECT_TRUE(ctx.state.toolFlag("bolPlaneTwo1"));
    EXPECT_EQ(plane.valueOf("txtLabelPlaneHorOffset"),
              "Horizontal offset from the selected points:");
}

TEST_F(CatalogueButtons, MappedPlaneKeepsTheTypedDip) {
    auto& plane = builders::discPlaneForm(ctx);
    plane.setFromUser("optPlane2Points", "1");
    plane.setFromUser("cboPlaneDip", "77");
    plane.setFromUser("optDefinePole", "1");
    auto& cat = form(forms::Frm16SelectDiscPlaneStandard::kName);
    cat.setFromUser("optDiscMapping1", "1");
    cat.click("cmdPlaneChanges");
    EXPECT_EQ(plane.mode(), forms::PlaneMode::OnePoint);
    EXPECT_TRUE(plane.optionValue("optDefinePlane"));
    EXPECT_EQ(plane.text("cboPlaneDip"), "77");
    EXPECT_EQ(plane.text("cboPlaneThickness"), "0");
    EXPECT_EQ(plane.text("cboDiscPlaneColour"), "Joint plane 2 (orange)");
}

// The excavation dialog as the catalogues see it: its controls by name.
std::unique_ptr<forms::Form> excavationDialog(int& accepted) {
    auto f = std::make_unique<forms::Form>("frm12_Excavation");
    for (const char* o : {"optCrossPolyLine", "optExcTunnel", "optExcCylinder", "optExc8Cone"})
        f->add(ControlKind::OptionButton, o, "", "fraType");
    for (const char* o : {"optLineBottom", "optLineCentre", "optLineTop"})
        f->add(ControlKind::OptionButton, o, "", "fraLine");
    for (const char* c : {"cboExcavationWidth", "cboExcavationHeight", "cboExcavationColour"})
        f->add(ControlKind::ComboBox, c);
    f->add(ControlKind::CommandButton, "cmdOK").onChange = [&accepted] { ++accepted; };
    return f;
}

TEST_F(CatalogueButtons, ExcavationStandardsFillTheExcavationDialog) {
    int accepted = 0;
    ctx.forms.add(excavationDialog(accepted));
    auto& exc = form("frm12_Excavation");
    exc.setText("cboExcavationHeight", "9.9");
    exc.setOption("optLineTop");
    auto& cat = form(forms::Frm13SelectExcStandard::kName);
    cat.setFromUser("optExcOrepass", "1");
    cat.click("cmdExcAccept");
    EXPECT_EQ(accepted, 1);
    EXPECT_TRUE(exc.optionValue("optExcCylinder"));
    EXPECT_EQ(exc.text("cboExcavationWidth"), "2.5");
    EXPECT_EQ(exc.text("cboExcavationHeight"), "9.9");
    EXPECT_EQ(exc.text("cboExcavationColour"), "Light purple (cylinders)");
    EXPECT_TRUE(exc.optionValue("optLineTop"));  // tunnels leave the line where it was

    auto& lm = form(forms::Frm14SelectLMStandard::kName);
    lm.setFromUser("optShotcreteRequiredLM", "1");
    lm.click("cmdLMChanges");
    EXPECT_EQ(accepted, 1);
    EXPECT_TRUE(exc.optionValue("optExcTunnel"));
    EXPECT_TRUE(exc.optionValue("optLineCentre"));
    EXPECT_EQ(exc.text("cboExcavationWidth"), "3.0");
    EXPECT_EQ(exc.text("cboExcavationHeight"), "1.5");
    EXPECT_EQ(exc.text("cboExcavationColour"), "White (Shotcrete required)");
}

}  // namespace

// The colour map dialog: source presets, quick sets and their order effects, the
// extremes scan, the accept check and the re-colouring presets.
#include "AnalysisTestUtil.h"
#include "analysis/ColourMapForm.h"
#include "analysis/Frm28ImportFOSData.h"

namespace {

using analysistest::AnalysisTest;
using engine::Handle;

struct ColourMapFormTest : AnalysisTest {
    ColourMapFormTest()
        : form(dynamic_cast<analysis::ColourMapForm&>(analysis::colourMapForm(ctx))) {
        form.ensureLoaded();
    }
    std::string t(const char* c) const { return form.text(c); }
    int v(const char* c) const { return form.checkValue(c); }
    void expectLimits(const char* min, const char* max) const {
        EXPECT_EQ(t("cboMin"), min);
        EXPECT_EQ(t("cboMax"), max);
    }
    Handle record(double x, const std::string& name) { return flatSquare(x, 0, 0, 10, 0, name); }
    analysis::ColourMapForm& form;
};

TEST_F(ColourMapFormTest, LoadPresetsTheGeneralSource) {
    EXPECT_EQ(form.selectedSource(), "optGeneralDataPoints");
    EXPECT_EQ(t("cboLoadColumn"), "1");
    expectLimits("50", "150");
    EXPECT_EQ(v("chkInverseColourMap"), 1);
    EXPECT_EQ(ctx.state.bolInverseColourMap, -1);
    EXPECT_EQ(form.selectedScale(), 1);
    EXPECT_EQ(t("cboQuickSet"), "Recovery");
    EXPECT_EQ(form.at("cboMax").items.front(), "300");
}

TEST_F(ColourMapFormTest, SourcePresets) {
    struct Row {
        const char* option;
        const char* column;
        const char* min;
        const char* max;
        int scale;
    };
    const Row rows[] = {
        {"optSigma1", "1", "40", "80", 1},     {"optSigma3", "2", "0", "20", 1},
        {"optSFinv", "1", "0", "1", 3},        {"optCumPPV", "1", "0.03", "0.12", 4},
        {"optMaxPPV", "2", "0.03", "0.12", 4}, {"optNumPPV", "3", "1", "4", 4}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.option);
        ASSERT_TRUE(form.setFromUser(r.option, "1"));
        EXPECT_EQ(t("cboLoadColumn"), r.column);
        expectLimits(r.min, r.max);
        EXPECT_EQ(v("chkInverseColourMap"), 0);
        EXPECT_EQ(ctx.state.bolInverseColourMap, 0);
        EXPECT_EQ(form.selectedScale(), r.scale);
    }
    EXPECT_EQ(form.at("cboMin").items.size(), 3u);
    form.setFromUser("optGeneralDataPoints", "1");
    EXPECT_EQ(ctx.state.bolInverseColourMap, -1);
    EXPECT_EQ(form.selectedScale(), 1);
}

TEST_F(ColourMapFormTest, PPVMinimumDrivesTheMaximum) {
    form.setFromUser("optCumPPV", "1");
    form.setFromUser("cboMin", "0.05");
    EXPECT_EQ(t("cboMax"), "0.2");
    form.setFromUser("cboMax", "0.9");  // the user's maximum stands until the minimum changes
    EXPECT_EQ(t("cboMax"), "0.9");
    form.setFromUser("optGeneralDataPoints", "1");
    form.setFromUser("cboMin", "7");
    EXPECT_EQ(t("cboMax"), "150");
}

TEST_F(ColourMapFormTest, QuickSetsFromTheLettersBoxOff) {
    struct Row {
        const char* item;
        const char* column;
        const char* min;
        const char* max;
        int inverse;
    };
    const Row rows[] = {{"RQD", "2", "25", "95", 1}, {"UCS", "3", "50", "150", 1},
                        {"RMR", "7", "25", "95", 1}, {"Q ", "6", "0", "10", 1},
                        {"FF", "5", "6", "16", 0},   {"Recovery", "1", "25", "95", 1}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.item);
        form.setOption("optCM3");
        ASSERT_TRUE(form.setFromUser("cboQuickSet", r.item));
        EXPECT_EQ(form.selectedSource(), "optSelectDrillholes");
        EXPECT_EQ(t("cboLoadColumn"), r.column);
        expectLimits(r.min, r.max);
        EXPECT_EQ(v("chkInverseColourMap"), r.inverse);
        EXPECT_EQ(v("chkAlphabetLetters"), 0);
        EXPECT_EQ(form.selectedScale(), 1);
    }
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);  // FF only
    EXPECT_EQ(boxes[0]["title"], "Rough FF/m relation to RQD");
}

TEST_F(ColourMapFormTest, WeatheringLimitsDependOnTheLettersBox) {
    form.setFromUser("cboQuickSet", "Weathering");
    // The box went on after the limits were set, and its handler put 0 and 30.
    expectLimits("0", "30");
    EXPECT_EQ(v("chkAlphabetLetters"), 1);
    EXPECT_FALSE(form.at("cmdObtainExtremes").enabled);
    EXPECT_EQ(t("cboLoadColumn"), "4");
    EXPECT_EQ(v("chkInverseColourMap"), 0);
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "Meaning of numbers");
    // Picked again with the box already on: the preset's own limits stay.
    form.pickQuickSet("Weathering");
    expectLimits("1", "5");
    // FF now turns the box off, and that handler has the last word.
    form.setFromUser("cboQuickSet", "FF");
    expectLimits("0", "100");
    EXPECT_TRUE(form.at("cmdObtainExtremes").enabled);
}

TEST_F(ColourMapFormTest, RQDZonesBoxRunsTheRQDSetBothWays) {
    form.setFromUser("chkRQDPRintMode", "1");
    EXPECT_EQ(t("cboQuickSet"), "RQD");
    EXPECT_EQ(t("cboLoadColumn"), "2");
    form.setFromUser("cboMin", "7");
    form.setFromUser("chkRQDPRintMode", "0");
    expectLimits("25", "95");
}

TEST_F(ColourMapFormTest, ChangeFOSPresetsByTheCalculation) {
    auto& fos = analysis::importFOSForm(ctx);
    ui.answerForm({"frm28_ImportFOSData", ui::FormAction::Accept, {{"optRCF", "1"}}});
    form.click("cmdChangeFOS");
    EXPECT_EQ(form.selectedSource(), "optCalcFOS_RCF");
    EXPECT_EQ(t("cboLoadColumn"), "0");
    expectLimits("0.7", "1.4");
    EXPECT_EQ(v("chkInverseColourMap"), 0);
    EXPECT_EQ(ctx.state.bolInverseColourMap, 0);
    // The import controls came back with the accept.
    EXPECT_TRUE(fos.at("cboMinStep").visible);

    ui.answerForm({"frm28_ImportFOSData", ui::FormAction::Accept, {{"optShear", "1"}}});
    form.click("cmdChangeFOS");  // already selected: the handler still runs
    expectLimits("1", "2");
    EXPECT_EQ(v("chkInverseColourMap"), 1);
    EXPECT_EQ(ctx.state.bolInverseColourMap, -1);
    EXPECT_EQ(form.at("cboMin").items.size(), 4u);
}

TEST_F(ColourMapFormTest, ExtremesOfTheColumn) {
    record(0, "CM_Point\t12.5\t3");
    record(30, "plain name\t999");
    record(60, "CM_Point\t-4\t1");
    record(90, "CM_Point\tabc\t1");  // not a number: passed over
    record(120, "CM_Point\t0\t2");
    form.setFromUser("cboLoadColumn", "1.4");
    form.click("cmdObtainExtremes");
    EXPECT_EQ(t("cboLoadColumn"), "1");
    expectLimits("-4", "12.5");
    EXPECT_EQ(t("txtMinNotZero"), "-4");
    EXPECT_TRUE(records("msgbox").empty());

    form.setFromUser("optSigma1", "1");  // reads column + 1
    form.setFromUser("cboLoadColumn", "0");
    form.click("cmdObtainExtremes");
    expectLimits("-4", "12.5");
}

TEST_F(ColourMapFormTest, ExtremesStopAtAMissingColumn) {
    record(0, "CM_Point\t5\t7");
    record(30, "CM_Point\t9");
    record(60, "CM_Point\t1\t100");
    form.setFromUser("cboLoadColumn", "2");
    form.click("cmdObtainExtremes");
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "The selected column number does not exist");
    expectLimits("7", "7");  // what was found before the stop remains
}

TEST_F(ColourMapFormTest, ExtremesWithoutRecordsLeaveTheLimitsEmpty) {
    flatSquare(0, 0, 0, 10, 0, "just a name");
    form.click("cmdObtainExtremes");
    expectLimits("", "");
}

TEST_F(ColourMapFormTest, AcceptChecksTheLimitsAndRoundsTheColumn) {
    form.setShown(true);
    form.setFromUser("cboLoadColumn", "2.7");
    form.setFromUser("cboMin", "5");
    form.setFromUser("cboMax", "5");
    form.click("cmdAccept");
    EXPECT_TRUE(form.shown());
    EXPECT_EQ(t("cboLoadColumn"), "3");
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["title"], "Error in selection");
    form.setFromUser("cboMax", "6");
    form.click("cmdAccept");
    EXPECT_FALSE(form.shown());
}

TEST_F(ColourMapFormTest, ClosingByTheFrameCancels) {
    ctx.state.bolColourMapCancelled = 0;
    form.onQueryClose();
    EXPECT_EQ(ctx.state.bolColourMapCancelled, -1);
}

}  // namespace

// Colouring by the numbers in CM_ records: each source's field, the grey of a record
// without a value, the percentage zones, the re-colouring of stress points, cancel.
#include "AnalysisTestUtil.h"
#include "analysis/ColourMapByData.h"
#include "analysis/ColourMapForm.h"

namespace {

using analysistest::AnalysisTest;
using engine::Handle;
using engine::Rgb;
using Controls = std::vector<std::pair<std::string, std::string>>;

constexpr Rgb kGrey{128, 128, 128}, kRed{255, 0, 0}, kGreen{0, 255, 0}, kBlue{0, 0, 255},
    kUntouched{10, 20, 30};

struct ColourByDataTest : AnalysisTest {
    Handle record(const std::string& name) {
        x += 30;
        return flatSquare(x, 0, 0, 10, 0, name);
    }
    Rgb colour(Handle h) const { return ctx.engine.polygon_get_color(h); }
    // The dialog's answer; forms it opens take the answers queued after it.
    void answer(const Controls& controls) {
        ui.answerForm({"frm29_ColourMap", ui::FormAction::Accept, controls});
    }
    void run(const Controls& controls) {
        answer(controls);
        analysis::p_subColourMapByData(ctx);
    }
    double x = 0;
};

TEST_F(ColourByDataTest, GeneralSourceOnTheInverseMap) {
    const Handle low = record("CM_Point\t50");
    const Handle mid = record("CM_PPVel\t100\t7");  // any CM_ record serves the general source
    const Handle high = record("CM_Point\t150\r\n3");
    const Handle missing = record("CM_Point");
    const Handle text = record("CM_Point\tnot a number");
    const Handle plain = record("Point\t100");
    const Handle off = record("CM_Point\t100");
    ctx.engine.polygon_disable(off);
    run({{"optGeneralDataPoints", "1"}, {"cboMin", "50"}, {"cboMax", "150"}});
    EXPECT_EQ(colour(low), kRed);
    EXPECT_EQ(colour(mid), kGreen);
    EXPECT_EQ(colour(high), kBlue);
    EXPECT_EQ(colour(missing), kGrey);
    EXPECT_EQ(colour(text), kRed);  // no number reads 0, below the minimum
    EXPECT_EQ(colour(plain), kUntouched);
    EXPECT_EQ(colour(off), kUntouched);
}

TEST_F(ColourByDataTest, SigmaReadsTheNextFieldAndNeedsIt) {
    const Handle a = record("CM_Sig13\t1\t20\t5");
    const Handle b = record("CM_Sig13\t1");
    run({{"optSigma1", "1"}, {"cboMin", "0"}, {"cboMax", "40"}});  // normal map
    EXPECT_EQ(colour(a), kGreen);
    EXPECT_EQ(colour(b), kGrey);
}

TEST_F(ColourByDataTest, InverseSafetyFactorAndItsDivisionByZero) {
    const Handle a = record("CM_Sig13\t1\t30\t10");
    const Handle zero = record("CM_Sig13\t1\t30\t0");
    // 30 / (2 * 10 + 0) = 1.5 on 1..2 normal is green; with S3 = 0 the divisor is 0.
    answer({{"optSFinv", "1"}, {"cboMin", "1"}, {"cboMax", "2"}});
    ui.answerForm({"frm35_ColourmapSurfaceStresses",
                   ui::FormAction::Accept,
                   {{"txtRockmassStength", "0"}, {"txtStrengheningFactor", "2"}}});
    analysis::p_subColourMapByData(ctx);
    EXPECT_EQ(colour(a), kGreen);
    EXPECT_EQ(colour(zero), kGrey);
}

TEST_F(ColourByDataTest, DrillholeColumnsPercentZonesAndLetters) {
    // Code, ID, from, to, azimuth, plunge, then the attribute columns.
    const Handle a = record("CM_DHAtr\tBH1\r\n1\t2\r\n90\t-60\r\n95\t80\t150\tSW");
    const Handle b = record("CM_DHAtr\tBH1\r\n2\t3\r\n90\t-60\r\n30");
    run({{"chkRQDPRintMode", "1"}});           // RQD, column 2, percentage zones
    EXPECT_EQ(colour(a), (Rgb{0, 255, 255}));  // 80: light blue
    EXPECT_EQ(colour(b), kGrey);               // the record is one column short
    // Letters: the box changes the limits only; "SW" still reads as 0.
    run({{"chkRQDPRintMode", "0"}, {"cboQuickSet", "Weathering"}, {"cboMax", "4"}});
    EXPECT_EQ(colour(a), kBlue);  // 0, the minimum of the normal map
}

TEST_F(ColourByDataTest, StressPointsRecolouredByTheChosenCriterion) {
    const Handle fos = record("CM_s_FOS\t1\t50\t5\t0\t80MPa\t30\xC2\xBA");
    const Handle zero = record("CM_s_FOS\t1\t0\t5\t0\t80MPa\t30\xC2\xBA");
    const Handle dev = record("CM_s_S13\t1\t50\t50\t0\t160MPa");
    // FOS with phi 30 and UCSrm 80: (3 * 5 + 80) / 50 = 1.9 on 1..2, inverse map:
    // the last band, green (1 - 0.15 / 0.25) * 255 = 102. S1 = 0 gives 1.0.
    answer({{"cmdChangeFOS", ""}});
    ui.answerForm({"frm28_ImportFOSData", ui::FormAction::Accept, {{"optFOS", "1"}}});
    analysis::p_subColourMapByData(ctx);
    EXPECT_EQ(colour(fos), (Rgb{0, 102, 255}));
    EXPECT_EQ(colour(zero), kRed);
    // The deviatoric factor divides by S1 - S3 = 0 here: the polygon stays grey.
    answer({{"cmdChangeFOS", ""}});
    ui.answerForm({"frm28_ImportFOSData", ui::FormAction::Accept, {{"optS1S3", "1"}}});
    analysis::p_subColourMapByData(ctx);
    EXPECT_EQ(colour(dev), kGrey);
    // The record's own field 4 is left as it was.
    EXPECT_EQ(ctx.engine.entity_get_name(fos), "CM_s_FOS\t1\t50\t5\t0\t80MPa\t30\xC2\xBA");
}

TEST_F(ColourByDataTest, ClosingTheDialogChangesNothing) {
    const Handle a = record("CM_Point\t100");
    ui.answerForm({"frm29_ColourMap", ui::FormAction::Close, {}});
    analysis::p_subColourMapByData(ctx);
    EXPECT_EQ(colour(a), kUntouched);
    EXPECT_EQ(ctx.state.bolColourMapCancelled, 0);
}

TEST(RockCodeIndex, CodesAndUnknowns) {
    using analysis::P_fncRockCodeIndex;
    EXPECT_EQ(P_fncRockCodeIndex("A"), 0);
    EXPECT_EQ(P_fncRockCodeIndex("I"), 8);
    EXPECT_EQ(P_fncRockCodeIndex("DW"), 9);
    EXPECT_EQ(P_fncRockCodeIndex(" sw "), 10);
    EXPECT_EQ(P_fncRockCodeIndex("CW"), 14);
    EXPECT_EQ(P_fncRockCodeIndex("J"), -1);
    EXPECT_EQ(P_fncRockCodeIndex(""), -1);
}

TEST(RecordFields, LineEndsBecomeSeparators) {
    const auto f = analysis::recordFields("CM_DHAtr\tBH1\r\n1\t2\r\r3");
    ASSERT_EQ(f.size(), 5u);
    EXPECT_EQ(f[1], "BH1");
    EXPECT_EQ(f[4], "3");
}

}  // namespace

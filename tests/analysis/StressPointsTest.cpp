// Stress analysis points: the criteria at worked values, the marker colours, the
// step filter and the cut-offs, the S3 cap, bad files, and the dialog's guards.
#include <cmath>
#include <fstream>

#include "AnalysisTestUtil.h"
#include "analysis/Frm28ImportFOSData.h"
#include "analysis/StressPoints.h"
#include "support/TestSupport.h"

namespace {

using analysis::Criterion;
using analysis::RockInputs;
using analysis::StressImportSettings;
using analysistest::AnalysisTest;
using engine::Rgb;

RockInputs fosRock() {
    RockInputs r;
    r.ucsRockmass = 80;
    r.frictionAngle = 30;
    return r;
}

TEST(StressCriteria, WorkedValues) {
    EXPECT_NEAR(analysis::frictionFactor(30), 3.0, 1e-12);
    float v = 0;
    ASSERT_TRUE(analysis::importCriterion(Criterion::FOS, 50, 5, fosRock(), v));
    EXPECT_NEAR(v, 1.9, 1e-6);
    EXPECT_EQ(analysis::markerColour(v), (Rgb{10, 10, 245}));
    ASSERT_TRUE(analysis::importCriterion(Criterion::FOS, 100, 0, fosRock(), v));
    EXPECT_NEAR(v, 0.8, 1e-6);
    EXPECT_EQ(analysis::markerColour(v), (Rgb{182, 182, 182}));
    RockInputs r;
    r.ucsIntact = 160;
    r.downgrade = 0.8f;
    ASSERT_TRUE(analysis::importCriterion(Criterion::S1S3, 100, 20, r, v));
    EXPECT_NEAR(v, 1.6, 1e-5);  // 0.8 * 160 / 80
    ASSERT_TRUE(analysis::importCriterion(Criterion::RCF, 100, 20, r, v));
    EXPECT_NEAR(v, 2.1875, 1e-5);  // 280 / 128
    EXPECT_FALSE(analysis::importCriterion(Criterion::FOS, 0, 5, fosRock(), v));
    r.downgrade = 0;  // F has no guard: F * UCSi is 0
    EXPECT_FALSE(analysis::importCriterion(Criterion::RCF, 100, 20, r, v));
}

TEST(StressCriteria, RecolouringGuards) {
    double v = 0;
    ASSERT_TRUE(analysis::recolourCriterion(Criterion::FOS, 0, 5, fosRock(), v));
    EXPECT_EQ(v, 1.0);
    RockInputs r;
    r.ucsIntact = 160;
    r.downgrade = 0.8f;
    ASSERT_TRUE(analysis::recolourCriterion(Criterion::S1S3, 0, 0, r, v));
    EXPECT_EQ(v, 0.0);
    EXPECT_FALSE(analysis::recolourCriterion(Criterion::S1S3, 7, 7, r, v));
    ASSERT_TRUE(analysis::recolourCriterion(Criterion::Shear, 30, 10, r, v));
    EXPECT_EQ(v, 10.0);
}

TEST(StressCriteria, MarkerColourRows) {
    EXPECT_EQ(analysis::markerColour(0), (Rgb{182, 182, 182}));
    EXPECT_EQ(analysis::markerColour(1.1f), (Rgb{245, 10, 10}));
    EXPECT_EQ(analysis::markerColour(1.3f), (Rgb{245, 118, 10}));
    EXPECT_EQ(analysis::markerColour(1.5f), (Rgb{245, 245, 10}));
    EXPECT_EQ(analysis::markerColour(1.7f), (Rgb{101, 245, 10}));
    EXPECT_EQ(analysis::markerColour(2.0f), (Rgb{10, 10, 245}));
    EXPECT_EQ(analysis::markerColour(2.01f), (Rgb{54, 54, 54}));
    // A single a hair above 1.2 is not at most 1.2.
    EXPECT_EQ(analysis::markerColour(1.2f), (Rgb{245, 118, 10}));
}

StressImportSettings fosSettings(int step) {
    StressImportSettings s;
    s.criterion = Criterion::FOS;
    s.step = step;
    s.rock = fosRock();
    return s;
}

TEST(StressFile, StepFilterOnASortedFile) {
    const std::string text =
        "1\t0\t0\t0\t50\t5\n1\t1\t0\t0\t50\t5\n2\t2\t3\t4\t50\t5\n3\t0\t0\t0\t50\t5\n2\t9\t9\t9\t50"
        "\t5\n";
    const auto r = analysis::readStressPoints(text, fosSettings(2));
    EXPECT_FALSE(r.fault);
    EXPECT_EQ(r.linesRead, 4);  // stopped at the line of step 3
    ASSERT_EQ(r.points.size(), 1u);
    EXPECT_EQ(r.points[0].at.x, 20);
    EXPECT_EQ(r.points[0].at.z, 40);
    EXPECT_EQ(r.points[0].name, "CM_s_FOS\t2\t50\t5\t1.9\t80MPa\t30\xC2\xBA");
    EXPECT_EQ(r.points[0].colour, (Rgb{10, 10, 245}));
}

TEST(StressFile, UnsortedFileLosesWhatFollowsAHigherStep) {
    const std::string text = "2\t0\t0\t0\t50\t5\r\n3\t0\t0\t0\t50\t5\r\n2\t1\t1\t1\t60\t5\r\n";
    const auto r = analysis::readStressPoints(text, fosSettings(2));
    EXPECT_EQ(r.points.size(), 1u);
}

TEST(StressFile, CutOffsAreStrict) {
    // Sig1 1.5 and Sig3 0.5: S3 at the cut-off is dropped, just above it kept.
    const std::string text = "1\t0\t0\t0\t50\t0.5\n1\t0\t0\t0\t50\t0.5000001\n1\t0\t0\t0\t1.5\t4\n";
    const auto r = analysis::readStressPoints(text, fosSettings(1));
    ASSERT_EQ(r.points.size(), 1u);
    EXPECT_EQ(r.points[0].name.rfind("CM_s_FOS\t1\t50\t0.5000001\t", 0), 0u);
}

TEST(StressFile, ThirdStressCappedAtTheRockmassStrength) {
    StressImportSettings s;
    s.criterion = Criterion::S1S3;
    s.rock.ucsIntact = 160;
    s.rock.downgrade = 0.8f;
    // UCSrm is 0 on this path: S3 = 20 becomes 0, so 0.8 * 160 / 100 = 1.28.
    auto r = analysis::readStressPoints("1\t0\t0\t0\t100\t20\n", s);
    ASSERT_EQ(r.points.size(), 1u);
    EXPECT_EQ(r.points[0].name, "CM_s_S13\t1\t100\t0\t1.28\t160MPa");
    EXPECT_EQ(r.points[0].colour, (Rgb{245, 118, 10}));
    // FOS caps at its own UCSrm: S3 = 90 reads 80.
    r = analysis::readStressPoints("1\t0\t0\t0\t100\t90\n", fosSettings(1));
    ASSERT_EQ(r.points.size(), 1u);
    EXPECT_EQ(r.points[0].name.rfind("CM_s_FOS\t1\t100\t80\t3.2\t", 0), 0u);
    // RCF points all come up in the first row's colour.
    s.criterion = Criterion::RCF;
    r = analysis::readStressPoints("1\t0\t0\t0\t100\t20\n", s);
    ASSERT_EQ(r.points.size(), 1u);
    EXPECT_EQ(r.points[0].colour, (Rgb{182, 182, 182}));
    // Shear has no criterion on this path: no name, grey.
    s.criterion = Criterion::None;
    r = analysis::readStressPoints("1\t0\t0\t0\t100\t20\n", s);
    ASSERT_EQ(r.points.size(), 1u);
    EXPECT_EQ(r.points[0].name, "");
}

TEST(StressFile, BadFilesEndOnAFaultOrNothing) {
    EXPECT_TRUE(analysis::readStressPoints("", fosSettings(1)).points.empty());
    std::string binary;
    for (int k = 0; k < 4096; ++k) binary += static_cast<char>((k * 131) & 0xFF);
    const auto b = analysis::readStressPoints(binary, fosSettings(1));
    (void)b;  // any outcome but a crash
    EXPECT_TRUE(analysis::readStressPoints("1\t2\t3\n", fosSettings(1)).fault);
    EXPECT_TRUE(analysis::readStressPoints("1\t0\t0\t0\t1e999\t5\n", fosSettings(1)).fault);
    // NaN is no number (0) and is dropped by the cut-off.
    auto r = analysis::readStressPoints("1\tNaN\t0\t0\tNaN\t5\n", fosSettings(1));
    EXPECT_FALSE(r.fault);
    EXPECT_TRUE(r.points.empty());
    // S1 = 0 through a -100 cut-off divides by zero: a fault, earlier points stand.
    auto s = fosSettings(1);
    s.sig1CutOff = -100;
    r = analysis::readStressPoints("1\t0\t0\t0\t50\t5\n1\t0\t0\t0\t0\t5\n1\t0\t0\t0\t50\t5\n", s);
    EXPECT_TRUE(r.fault);
    EXPECT_EQ(r.points.size(), 1u);
    std::string huge(1 << 20, '7');
    EXPECT_NO_THROW(analysis::readStressPoints("1\t" + huge + "\n", fosSettings(1)));
}

struct FOSFormTest : AnalysisTest {
    FOSFormTest() : form(analysis::importFOSForm(ctx)) { form.ensureLoaded(); }
    analysis::Frm28ImportFOSData& form;
    bool shown(const char* c) { return form.at(c).visible; }
};

TEST_F(FOSFormTest, CalculationsShowTheirInputs) {
    EXPECT_TRUE(shown("cboUCSrm"));
    EXPECT_FALSE(shown("cboUCSintact"));
    form.setFromUser("optS1S3", "1");
    EXPECT_TRUE(shown("cboUCSintact") && shown("fraF") && shown("cboF"));
    EXPECT_FALSE(shown("cboUCSrm") || shown("cboFricAngle"));
    form.setFromUser("optShear", "1");
    EXPECT_TRUE(shown("fraF"));
    EXPECT_FALSE(shown("cboF") || shown("cboUCSintact") || shown("cboUCSrm"));
    form.setFromUser("optFOS", "1");
    EXPECT_TRUE(shown("fraFricAngle") && shown("fraUCSrm"));
    EXPECT_FALSE(shown("fraF"));
}

TEST_F(FOSFormTest, ZeroGuardsPutBackFixedValues) {
    form.setFromUser("cboUCSrm", "0");
    EXPECT_EQ(form.text("cboUCSrm"), "80");
    form.setFromUser("cboUCSintact", "abc");
    EXPECT_EQ(form.text("cboUCSintact"), "140");
    form.setFromUser("cboFricAngle", "0.0");
    EXPECT_EQ(form.text("cboFricAngle"), "25");
    form.setFromUser("cboSphereRadius", "0");
    EXPECT_EQ(form.text("cboSphereRadius"), "5");
    form.setFromUser("cboMinStep", "0");
    EXPECT_EQ(form.text("cboMinStep"), "1");
    form.setFromUser("cboF", "0");  // no guard
    EXPECT_EQ(form.text("cboF"), "0");
    const auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 5u);
    EXPECT_EQ(boxes[0]["text"], "A zero value is not allowed");
    EXPECT_EQ(boxes[0]["title"], "Invalid Value");
}

TEST_F(FOSFormTest, AcceptAppliesTheMarkerAndNormalisesTexts) {
    form.setShown(true);
    form.setFromUser("optQuickMarker", "1");
    form.setFromUser("cboF", "0.80");
    form.setFromUser("cboMinStep", "2.6");
    form.click("cmdAccept");
    EXPECT_FALSE(form.shown());
    EXPECT_EQ(ctx.settings.dblSphereLatitudeBands, 2);
    EXPECT_EQ(ctx.settings.dblSphereLongitudeBands, 4);
    EXPECT_EQ(form.text("cboF"), "0.8");
    EXPECT_EQ(form.text("cboMinStep"), "3");
}

TEST_F(FOSFormTest, ClosingHidesTheSizeUntilTheNextAccept) {
    form.hideImportControls();
    form.onQueryClose();
    EXPECT_EQ(ctx.state.bolColourMapCancelled, -1);
    EXPECT_TRUE(shown("cboMinStep"));
    EXPECT_FALSE(shown("cboSphereRadius"));
    form.click("cmdAccept");
    EXPECT_TRUE(shown("cboSphereRadius"));
}

}  // namespace

// The information form and its name records: load, write back, the type rules,
// clearing and restoring, closing by the frame; the info display switch.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "builders/ObjectInfo.h"
#include "core/AppContext.h"
#include "forms/Frm23ChangeInfo.h"
#include "ui/ScriptedUi.h"

namespace {

using namespace std::string_literals;
using forms::Frm23ChangeInfo;
using json = nlohmann::json;

class InfoForm : public ::testing::Test {
protected:
    InfoForm() : ctx(ui) {
        ui.fixClock({2024, 3, 5, 9, 5, 7});
        builders::registerObjectInfo(ctx);
    }
    Frm23ChangeInfo& form() { return builders::changeInfoForm(ctx); }
    std::vector<json> records(const std::string& kind) const {
        std::vector<json> out;
        for (const auto& l : ui.transcript()) {
            json j = json::parse(l);
            if (j["kind"] == kind) out.push_back(j);
        }
        return out;
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
};

TEST_F(InfoForm, RecordWithSeveralLinesComesBackWhole) {
    // Empty lines and a trailing blank inside the text must survive.
    const std::string name =
        "PR_GrSup\r\n2023-11-30\r\n9:05:07\r\nBolts 2.4 m\r\n\r\nMesh to 3 m \r\nend";
    builders::P_subLoadInfoForm(ctx, name);
    EXPECT_EQ(form().selectedType(), "Ground Support");
    EXPECT_EQ(form().checkValue("chkProtectInformation"), 1);
    EXPECT_EQ(form().text("datPickDate"), "2023-11-30");
    EXPECT_EQ(form().text("dtpPickTime"), "09:05:07");
    EXPECT_EQ(form().text("txtChangeInfo"), "Bolts 2.4 m\r\n\r\nMesh to 3 m \r\nend");
    EXPECT_EQ(builders::P_fncInfoString(ctx), name);
}

TEST_F(InfoForm, HourIsWrittenWithoutPaddingMinuteAndSecondWithIt) {
    auto& f = form();
    f.ensureLoaded();
    f.setText("txtChangeInfo", "x");
    ASSERT_TRUE(f.setTime(9, 5, 7));
    ASSERT_TRUE(f.setDate(2021, 1, 2));
    EXPECT_EQ(builders::P_fncInfoString(ctx), "PR_Infor\r\n2021-01-02\r\n9:05:07\r\nx");
    ASSERT_TRUE(f.setTime(0, 0, 0));
    EXPECT_EQ(builders::P_fncInfoString(ctx), "PR_Infor\r\n2021-01-02\r\n0:00:00\r\nx");
    ASSERT_TRUE(f.setTime(23, 10, 59));
    EXPECT_EQ(builders::P_fncInfoString(ctx), "PR_Infor\r\n2021-01-02\r\n23:10:59\r\nx");
    // Typed lines of the text box become CR LF lines of the record.
    f.setText("txtChangeInfo", "a\nb");
    EXPECT_EQ(builders::P_fncInfoString(ctx), "PR_Infor\r\n2021-01-02\r\n23:10:59\r\na\r\nb");
}

TEST_F(InfoForm, TimeOfTheRecordReadsFromItsFixedPlaces) {
    // Written with one digit, read from the first two characters ("9:" reads 9).
    builders::P_subLoadInfoForm(ctx, "UP_Infor\r\n2020-02-29\r\n9:05:07\r\n");
    EXPECT_EQ(form().picked().hour, 9);
    EXPECT_EQ(form().picked().minute, 5);
    EXPECT_EQ(form().picked().second, 7);
    EXPECT_EQ(form().text("datPickDate"), "2020-02-29");
    builders::P_subLoadInfoForm(ctx, "UP_Infor\r\n2020-02-30\r\n18:40:01\r\nx");
    // No 30 February: the date in force stays.
    EXPECT_EQ(form().text("datPickDate"), "2020-02-29");
    EXPECT_EQ(form().text("dtpPickTime"), "18:40:01");
}

TEST_F(InfoForm, TypeDecidesTheProtection) {
    auto& f = form();
    f.ensureLoaded();
    struct Row {
        const char* type;
        int value;
        bool enabled;
    };
    const Row rows[] = {
        {"UG Mapping", 1, false},
        {"General Information", 1, true},
        {"...Other (not defined)", 0, true},
        {"UG Observations", 1, false},
        {"Visible Text", 0, true},
        {"File Link", 1, false},
        {"Ground Support", 1, true},
        {"Seismic Event", 1, false},
    };
    for (const auto& r : rows) {
        ASSERT_TRUE(f.setFromUser("lstPickObjectType", r.type)) << r.type;
        EXPECT_EQ(f.checkValue("chkProtectInformation"), r.value) << r.type;
        EXPECT_EQ(f.at("chkProtectInformation").enabled, r.enabled) << r.type;
    }
    // Custom keeps the box as it stands, either way.
    f.setCheck("chkProtectInformation", 0);
    f.setFromUser("lstPickObjectType", "Custom (site specific)");
    EXPECT_EQ(f.checkValue("chkProtectInformation"), 0);
    f.setFromUser("lstPickObjectType", "Visible Text");
    f.setCheck("chkProtectInformation", 1);
    f.setFromUser("lstPickObjectType", "Custom (site specific)");
    EXPECT_EQ(f.checkValue("chkProtectInformation"), 1);
    EXPECT_TRUE(f.at("chkProtectInformation").enabled);
}

TEST_F(InfoForm, LoadedPrefixStandsOnlyWhereTheTypeAllows) {
    builders::P_subLoadInfoForm(ctx, "UP_Custm\r\n2022-06-01\r\n12:00:00\r\nsite text");
    EXPECT_EQ(builders::P_fncInfoString(ctx), "UP_Custm\r\n2022-06-01\r\n12:00:00\r\nsite text");
    // Mapping is always protected.
    builders::P_subLoadInfoForm(ctx, "UP_UGmap\r\n2022-06-01\r\n12:00:00\r\nDip");
    EXPECT_EQ(form().checkValue("chkProtectInformation"), 1);
    EXPECT_FALSE(form().at("chkProtectInformation").enabled);
    EXPECT_EQ(builders::P_fncInfoString(ctx), "PR_UGmap\r\n2022-06-01\r\n12:00:00\r\nDip");
    // Visible text is open whatever the prefix said.
    builders::P_subLoadInfoForm(ctx, "PR_VText\r\n2022-06-01\r\n7:00:00\r\nlabel");
    EXPECT_EQ(builders::P_fncInfoString(ctx), "UP_VText\r\n2022-06-01\r\n7:00:00\r\nlabel");
}

TEST_F(InfoForm, PlainNameOpensAsOtherAtNow) {
    builders::P_subLoadInfoForm(ctx, "Stope 12\tlevel 3");
    EXPECT_EQ(form().selectedType(), "...Other (not defined)");
    EXPECT_EQ(form().text("txtChangeInfo"), "Stope 12\tlevel 3");
    EXPECT_EQ(builders::P_fncInfoString(ctx),
              "UP_Undef\r\n2024-03-05\r\n9:05:07\r\nStope 12\tlevel 3");
}

TEST_F(InfoForm, UnknownCodeOpensAsOtherAndKeepsItsProtection) {
    builders::P_subLoadInfoForm(ctx, "PR_Xyzzy\r\n2022-06-01\r\n12:00:00\r\nold");
    EXPECT_EQ(form().selectedType(), "...Other (not defined)");
    EXPECT_EQ(builders::P_fncInfoString(ctx), "PR_Undef\r\n2022-06-01\r\n12:00:00\r\nold");
}

TEST_F(InfoForm, FreshFormStartsAsGeneralInformationNow) {
    auto& f = form();
    f.setText("txtChangeInfo", " ");
    f.ensureLoaded();
    EXPECT_EQ(f.text("txtChangeInfo"), "");
    EXPECT_EQ(f.selectedType(), "General Information");
    EXPECT_EQ(builders::P_fncInfoString(ctx), "PR_Infor\r\n2024-03-05\r\n9:05:07\r\n");
}

TEST_F(InfoForm, ClearKeepsTheLastRealTextForRestore) {
    auto& f = form();
    f.ensureLoaded();
    f.setText("txtChangeInfo", "first");
    f.click("cmdClearText");
    EXPECT_EQ(f.text("txtChangeInfo"), " ");
    f.click("cmdClearText");  // a blank is not worth keeping
    EXPECT_EQ(f.strLastInfoText, "first");
    f.setText("txtChangeInfo", "second");
    f.click("cmdRestore");
    EXPECT_EQ(f.text("txtChangeInfo"), "first");
}

TEST_F(InfoForm, DateAndTimeControlsRefuseWhatIsNoDateOrTime) {
    auto& f = form();
    f.ensureLoaded();
    EXPECT_TRUE(f.setFromUser("dtpPickTime", "9:05:07"));
    EXPECT_EQ(f.text("dtpPickTime"), "09:05:07");
    f.setFromUser("dtpPickTime", "24:00:00");
    EXPECT_EQ(f.text("dtpPickTime"), "09:05:07");
    f.setFromUser("datPickDate", "2023-02-29");
    EXPECT_EQ(f.text("datPickDate"), "2024-03-05");
    f.setFromUser("datPickDate", "2024-02-29");
    EXPECT_EQ(f.text("datPickDate"), "2024-02-29");
    f.setFromUser("dtpPickTime", "10:00:00");
    f.click("cmdCurrentDateTime");
    EXPECT_EQ(f.text("datPickDate"), "2024-03-05");
    EXPECT_EQ(f.text("dtpPickTime"), "09:05:07");
}

TEST_F(InfoForm, EditGivesTheNewNameOrNothingWhenClosedByTheFrame) {
    ui.answerForm({Frm23ChangeInfo::kName, ui::FormAction::Accept, {{"txtChangeInfo", "new"}}});
    auto accepted = builders::editInfoText(ctx, "UP_Infor\r\n2022-01-01\r\n8:00:00\r\nold");
    ASSERT_TRUE(accepted.has_value());
    EXPECT_EQ(*accepted, "PR_Infor\r\n2022-01-01\r\n8:00:00\r\nnew");

    ui.answerForm({Frm23ChangeInfo::kName, ui::FormAction::Close, {{"txtChangeInfo", "lost"}}});
    EXPECT_FALSE(builders::editInfoText(ctx, "old name").has_value());
    // The flag is the caller's to reset; the next edit starts clean.
    ui.answerForm({Frm23ChangeInfo::kName, ui::FormAction::Accept, {}});
    EXPECT_TRUE(builders::editInfoText(ctx, "again").has_value());
}

TEST_F(InfoForm, CoordinatesShowInMetresWithoutTheOffset) {
    ctx.state.dblCoordOffset = {1000000, 0, -20};
    // (1000123 - 1000000) / 10, -45 / 10, (7 + 20) / 10
    EXPECT_EQ(builders::pickCoordinateText(ctx, {1000123, -45, 7}), "( 12.3, -4.5, 2.7 )     ");
    ctx.state.dblCoordOffset = {0, 0, 0};
    EXPECT_EQ(builders::pickCoordinateText(ctx, {0, 5, -0.0}), "( 0, 0.5, 0 )     ");
}

TEST_F(InfoForm, InfoSwitchWritesCaptionCommentAndThreePanels) {
    forms::Form* main = ctx.forms.find("frm03_MirrowMain");
    ASSERT_NE(main, nullptr);
    ASSERT_TRUE(main->setFromUser("chkShowInfo", "1"));
    EXPECT_EQ(main->at("chkShowInfo").caption, "Info ON");
    EXPECT_EQ(ctx.state.txtComment,
              "Name display enabled, name displayed in the Status Bar at the bottom of the form");
    auto status = records("status");
    ASSERT_EQ(status.size(), 3u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(status[i]["panel"], i + 1);
        EXPECT_EQ(status[i]["text"], "ON");
    }
    main->setFromUser("chkShowInfo", "0");
    EXPECT_EQ(main->at("chkShowInfo").caption, "Info OFF");
    EXPECT_EQ(ctx.state.txtComment,
              "Name display disabled, double click to display a message-box with the name");
    EXPECT_EQ(records("status").back()["text"], "OFF");
    EXPECT_EQ(records("status").size(), 6u);
}

}  // namespace

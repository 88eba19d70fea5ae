// Text search in its three scopes with general, specific and position matches,
// and the protection actions.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "builders/ObjectInfo.h"
#include "builders/TextSearch.h"
#include "core/AppContext.h"
#include "ui/ScriptedUi.h"

namespace {

using json = nlohmann::json;
using builders::generalMatch;
using builders::specificMatch;
using builders::textCell;

const std::string kMapping =
    "PR_UGmap\r\n2024-01-02\r\n9:05:07\r\nDip (degrees):\r\n45\r\nDirection (degrees):\r\n120";

TEST(TextCell, RowIsALineAndColumnATabField) {
    EXPECT_EQ(textCell(kMapping, 5, 1), "45");
    EXPECT_EQ(textCell(kMapping, 1, 1), "PR_UGmap");
    EXPECT_EQ(textCell(kMapping, 7, 1), "120");
    EXPECT_EQ(textCell(kMapping, 8, 1), "");
    EXPECT_EQ(textCell(kMapping, 5, 2), "");
    const std::string table = "a\t\tc\r\nd\te";
    EXPECT_EQ(textCell(table, 1, 2), "");
    EXPECT_EQ(textCell(table, 1, 3), "c");
    EXPECT_EQ(textCell(table, 2, 2), "e");
    EXPECT_EQ(textCell(table, 0, 1), "");
    EXPECT_EQ(textCell(table, 1, 0), "");
    EXPECT_EQ(textCell("", 1, 1), "");
}

TEST(Match, GeneralFindsThePieceAnywhereWhateverTheCase) {
    EXPECT_TRUE(generalMatch("Granite contact", "GRANITE"));
    EXPECT_TRUE(generalMatch("a granite b", "nite b"));
    EXPECT_FALSE(generalMatch("Gran", "granite"));
    EXPECT_FALSE(generalMatch("", "x"));
}

TEST(Match, SpecificNeedsAWholeFieldOrLine) {
    const std::string name = "UP_Infor\r\n2024-01-01\r\n9:05:07\r\nGranite\tcontact zone";
    EXPECT_TRUE(specificMatch(name, "granite"));
    EXPECT_TRUE(specificMatch(name, "CONTACT ZONE"));
    EXPECT_TRUE(specificMatch(name, "2024-01-01"));
    EXPECT_TRUE(specificMatch(name, "up_infor"));
    EXPECT_FALSE(specificMatch(name, "contact"));
    EXPECT_FALSE(specificMatch(name, "grani"));
    // Only CR LF ends a line.
    EXPECT_FALSE(specificMatch("a\rb", "a"));
    EXPECT_FALSE(specificMatch("a\nb", "b"));
}

class Scene : public ::testing::Test {
protected:
    Scene() : ctx(ui) {
        builders::registerObjectInfo(ctx);
        group = ctx.engine.group_create("Test");
    }

    engine::Handle add(const std::string& name, bool enabled = true) {
        auto& e = ctx.engine;
        double x = 100.0 * static_cast<double>(polys.size());
        auto p = e.polygon_create();
        e.polygon_add_point(p, engine::Point3{x, 0, 0});
        e.polygon_add_point(p, engine::Point3{x + 10, 0, 0});
        e.polygon_add_point(p, engine::Point3{x, 10, 0});
        EXPECT_EQ(e.engine_add_polygon(p), 0);
        e.polygon_set_group(p, group);
        e.polygon_set_name(p, name);
        if (!enabled) e.polygon_disable(p);
        polys.push_back(p);
        return p;
    }
    std::vector<bool> shown() const {
        std::vector<bool> out;
        for (auto p : polys) out.push_back(!ctx.engine.polygon_is_disabled(p));
        return out;
    }
    std::string name(engine::Handle p) const { return ctx.engine.entity_get_name(p); }
    std::vector<json> records(const std::string& kind) const {
        std::vector<json> out;
        for (const auto& l : ui.transcript()) {
            json j = json::parse(l);
            if (j["kind"] == kind) out.push_back(j);
        }
        return out;
    }
    // Four shown polygons and one hidden one.
    void fill() {
        add("UP_Infor\r\n2024-01-01\r\n9:05:07\r\nGranite contact");
        add("Granite");
        add(kMapping);
        add("");
        add("granite vein", false);
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
    engine::Handle group = 0;
    std::vector<engine::Handle> polys;
};

using V = std::vector<bool>;

TEST_F(Scene, AllPolygonsGeneralMatchShowsOnlyTheMatches) {
    fill();
    ui.answerInput("granite");
    EXPECT_EQ(builders::p_subFindText(ctx, 1, true, false), 3);
    EXPECT_EQ(shown(), (V{true, true, false, false, true}));
    EXPECT_EQ(ctx.state.txtComment, "Number of polygons found with search text: 3");
    auto in = records("input").at(0);
    EXPECT_EQ(in["prompt"], "Fill in the text to search for");
    EXPECT_EQ(in["title"], "Text search");
    EXPECT_EQ(ui.pointer(), 1);
}

TEST_F(Scene, AllPolygonsSpecificMatchNeedsTheWholeField) {
    fill();
    ui.answerInput("GRANITE");
    EXPECT_EQ(builders::p_subFindText(ctx, 1, false, false), 1);
    EXPECT_EQ(shown(), (V{false, true, false, false, false}));
}

TEST_F(Scene, ShownScopeLeavesHiddenPolygonsAlone) {
    fill();
    ui.answerInput("granite");
    EXPECT_EQ(builders::p_subFindText(ctx, 2, true, false), 2);
    EXPECT_EQ(shown(), (V{true, true, false, false, false}));
}

TEST_F(Scene, HiddenScopeOnlyBringsMatchesBack) {
    fill();
    ctx.engine.polygon_disable(polys[1]);  // "Granite", now hidden too
    ui.answerInput("vein");
    EXPECT_EQ(builders::p_subFindText(ctx, 3, true, false), 1);
    EXPECT_EQ(shown(), (V{true, false, true, true, true}));
}

TEST_F(Scene, NoHitInAllPolygonsGivesEverythingBack) {
    fill();
    ui.answerInput("basalt");
    EXPECT_EQ(builders::p_subFindText(ctx, 1, true, false), 0);
    // The hidden polygon comes back as well.
    EXPECT_EQ(shown(), (V{true, true, true, true, true}));
    auto box = records("msgbox").at(0);
    EXPECT_EQ(box["text"], "No matches could be found for the searched text");
    EXPECT_EQ(box["title"], "Zero matches");
}

TEST_F(Scene, NoHitInShownPolygonsLeavesNothingShown) {
    fill();
    ui.answerInput("basalt");
    EXPECT_EQ(builders::p_subFindText(ctx, 2, false, false), 0);
    EXPECT_EQ(shown(), (V{false, false, false, false, false}));
    EXPECT_EQ(records("msgbox").size(), 1u);
}

TEST_F(Scene, PositionSearchReadsOneCell) {
    fill();
    add("PR_UGmap\r\n2024-01-02\r\n9:05:07\r\nDip (degrees):\r\n145");
    ui.answerInput("45");
    // Row 5, column 1: the dip. 145 holds "45" but is not it.
    EXPECT_EQ(builders::p_subFindText(ctx, 1, false, true, builders::TextCell{5, 1}), 1);
    EXPECT_EQ(shown(), (V{false, false, true, false, false, false}));
    ui.answerInput("45");
    EXPECT_EQ(builders::p_subFindText(ctx, 1, true, true, builders::TextCell{5, 1}), 2);
    EXPECT_EQ(shown(), (V{false, false, true, false, false, true}));
}

TEST_F(Scene, PositionIsAskedWhenNotGiven) {
    fill();
    ui.answerInput("2");
    ui.answerInput("1");
    ui.answerInput("2024-01-01");
    EXPECT_EQ(builders::p_subFindText(ctx, 1, false, true), 1);
    EXPECT_EQ(shown(), (V{true, false, false, false, false}));
    auto in = records("input");
    ASSERT_EQ(in.size(), 3u);
    EXPECT_EQ(in[0]["prompt"], "Row position");
    EXPECT_EQ(in[0]["default"], "1");
    EXPECT_EQ(in[1]["prompt"], "Column position");
    EXPECT_EQ(in[2]["prompt"], "Fill in the text to search for");
}

TEST_F(Scene, EmptyOrCancelledSearchChangesNothing) {
    fill();
    ui.answerInput("");
    EXPECT_EQ(builders::p_subFindText(ctx, 1, true, false), 0);
    ui.answerInput(std::nullopt);
    EXPECT_EQ(builders::p_subFindText(ctx, 2, true, false), 0);
    EXPECT_EQ(shown(), (V{true, true, true, true, false}));
    EXPECT_TRUE(records("msgbox").empty());
}

TEST_F(Scene, MenuAsksForTheKindOfMatchFirst) {
    fill();
    ui.answerMsgBox(ui::Answer::No);
    ui.answerInput("granite");
    ctx.commands.find("mnuFindFromVisibleText")->handler(ctx);
    auto box = records("msgbox").at(0);
    EXPECT_EQ(box["text"], "Select 'Yes' for a general match and 'No' for a specific match");
    EXPECT_EQ(box["title"], "Select between a general and specific match");
    // Specific: only "Granite" itself.
    EXPECT_EQ(shown(), (V{false, true, false, false, false}));
}

TEST(ProtectedName, EachActionByTheFirstTwoCharacters) {
    using builders::protectedName;
    EXPECT_EQ(protectedName("PR_Infor\r\nx", "Unprotect"), "UP_Infor\r\nx");
    EXPECT_EQ(protectedName("PRx", "Unprotect"), "UPx");
    EXPECT_EQ(protectedName("UP_Infor", "Unprotect"), "UP_Infor");
    EXPECT_EQ(protectedName("UP_Infor", "Protect1"), "PR_Infor");
    EXPECT_EQ(protectedName("plain", "Protect1"), "plain");
    EXPECT_EQ(protectedName("UP_Infor", "Protect2"), "PR_Infor");
    EXPECT_EQ(protectedName("PR_Infor", "Protect2"), "PR_PR_Infor");
    EXPECT_EQ(protectedName("", "Protect2"), "PR_");
    EXPECT_EQ(protectedName("up_low", "Protect2"), "PR_up_low");
    EXPECT_EQ(protectedName("UP_Infor", "protect1"), "UP_Infor");
}

TEST_F(Scene, Protect2TwiceStacksThePrefixOnShownPolygons) {
    auto plain = add("Plain");
    auto open = add("UP_Infor\r\n2024-01-01\r\n9:05:07\r\nx");
    auto hidden = add("UP_GrSup", false);
    for (int i = 0; i < 2; ++i) {
        ui.answerMsgBox(ui::Answer::Yes);
        EXPECT_EQ(builders::p_subProtectText(ctx, "Protect2"), 2);
    }
    EXPECT_EQ(name(plain), "PR_PR_Plain");
    EXPECT_EQ(name(open), "PR_PR_Infor\r\n2024-01-01\r\n9:05:07\r\nx");
    EXPECT_EQ(name(hidden), "UP_GrSup");
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0]["title"], "Warning message");
    EXPECT_EQ(boxes[0]["buttons"], "YesNo");
    EXPECT_EQ(boxes[0]["text"],
              "This action will protect the information of all the visible polygons. Press "
              "'Yes' if you want to continue and 'No' if you if you want to abort.");
}

TEST_F(Scene, Protect1AndUnprotectTwice) {
    auto open = add("UP_Infor");
    auto locked = add("PR_UGmap");
    auto plain = add("Plain");
    for (int i = 0; i < 2; ++i) {
        ui.answerMsgBox(ui::Answer::Yes);
        EXPECT_EQ(builders::p_subProtectText(ctx, "Protect1"), i == 0 ? 1 : 0);
    }
    EXPECT_EQ(name(open), "PR_Infor");
    EXPECT_EQ(name(locked), "PR_UGmap");
    EXPECT_EQ(name(plain), "Plain");
    for (int i = 0; i < 2; ++i) {
        ui.answerMsgBox(ui::Answer::Yes);
        EXPECT_EQ(builders::p_subProtectText(ctx, "Unprotect"), i == 0 ? 2 : 0);
    }
    EXPECT_EQ(name(open), "UP_Infor");
    EXPECT_EQ(name(locked), "UP_UGmap");
    EXPECT_EQ(records("msgbox").back()["text"],
              "This action will unprotect the information of all the visible polygons and enable "
              "changes to their information. Press 'Yes' if you want to continue and 'No' if you "
              "if you want to abort.");
}

TEST_F(Scene, NoAtTheQuestionChangesNothing) {
    auto open = add("UP_Infor");
    ui.answerMsgBox(ui::Answer::No);
    EXPECT_EQ(builders::p_subProtectText(ctx, "Protect1"), 0);
    EXPECT_EQ(name(open), "UP_Infor");
    // An action of no known kind asks nothing.
    EXPECT_EQ(builders::p_subProtectText(ctx, "Lock"), 0);
    EXPECT_EQ(records("msgbox").size(), 1u);
}

TEST_F(Scene, LongNameLosesItsTailThroughTheReadBuffer) {
    const std::string longName(300, 'a');
    auto p = add(longName);
    ui.answerMsgBox(ui::Answer::Yes);
    builders::p_subProtectText(ctx, "Protect2");
    // One read gives 257 characters; the prefix goes in front of those.
    EXPECT_EQ(name(p), "PR_" + std::string(257, 'a'));
}

}  // namespace

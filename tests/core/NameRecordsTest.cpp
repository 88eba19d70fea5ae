// Name records: type codes, building and reading "PR_"/"UP_" texts, the visible
// text time, and the name and group helpers over the engine.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "core/AppContext.h"
#include "core/NameRecords.h"
#include "engine/Engine.h"
#include "ui/ScriptedUi.h"

namespace {

using namespace std::string_literals;

TEST(TextTypes, EveryCodeHasItsCaptionBothWays) {
    const auto& types = core::textTypes();
    std::set<std::string_view> codes;
    for (const auto& t : types) {
        EXPECT_EQ(t.code.size(), 5u) << t.code;
        codes.insert(t.code);
        EXPECT_EQ(core::typeCaptionForCode(t.code), t.caption);
        EXPECT_EQ(core::typeCodeForCaption(t.caption), t.code);
    }
    EXPECT_EQ(codes.size(), 9u);
    EXPECT_EQ(core::typeCodeForCaption("UG Mapping"), "UGmap");
    EXPECT_EQ(core::typeCodeForCaption("...Other (not defined)"), "Undef");
    EXPECT_EQ(core::typeCaptionForCode("LinkF"), "File Link");
    EXPECT_EQ(core::typeCodeForCaption("Other"), "");
    EXPECT_EQ(core::typeCaptionForCode("ugmap"), "");
}

TEST(ColourMapCodes, RecognisedByTheirStart) {
    EXPECT_EQ(core::colourMapCodes().size(), 9u);
    EXPECT_EQ(core::colourMapCodeOf("CM_Dist\t12.5"), "CM_Dist");
    EXPECT_EQ(core::colourMapCodeOf("CM_s_FOS\r\n1.2"), "CM_s_FOS");
    EXPECT_EQ(core::colourMapCodeOf("CM_Other"), "");
    EXPECT_TRUE(core::isColourMapRecord("CM_Other"));
    EXPECT_FALSE(core::isColourMapRecord("PR_Infor"));
    EXPECT_FALSE(core::isColourMapRecord("cm_Dist"));
}

TEST(InfoRecord, BuildsTheExactLayout) {
    ui::DateTime t{2023, 4, 5, 9, 7, 3};
    EXPECT_EQ(core::buildInfoRecord(true, "GrSup", t, "Bolts 2.4 m\nMesh"),
              "PR_GrSup\r\n2023-04-05\r\n09:07:03\r\nBolts 2.4 m\r\nMesh");
    EXPECT_EQ(core::buildInfoRecord(false, "Infor", t, "a\r\nb\rc"),
              "UP_Infor\r\n2023-04-05\r\n09:07:03\r\na\r\nb\r\nc");
    EXPECT_EQ(core::buildInfoRecord("PR_", "UGmap", "2020-12-31", "23:59:59", ""),
              "PR_UGmap\r\n2020-12-31\r\n23:59:59\r\n");
}

TEST(InfoRecord, ReadsBackWhatWasBuilt) {
    ui::DateTime t{1999, 12, 31, 23, 0, 59};
    std::string name = core::buildInfoRecord(true, "UGobs", t, "line 1\r\nline 2\r\n\r\nlast");
    auto r = core::parseInfoRecord(name);
    ASSERT_TRUE(r.has_value());
    EXPECT_EQ(r->prefix, "PR_");
    EXPECT_EQ(r->code, "UGobs");
    EXPECT_EQ(r->date, "1999-12-31");
    EXPECT_EQ(r->time, "23:00:59");
    EXPECT_EQ(r->text, "line 1\r\nline 2\r\n\r\nlast");
    EXPECT_EQ(core::buildInfoRecord(r->prefix, r->code, r->date, r->time, r->text), name);
}

TEST(InfoRecord, OtherNamesAndShortRecords) {
    EXPECT_FALSE(core::parseInfoRecord("CM_Dist\t1").has_value());
    EXPECT_FALSE(core::parseInfoRecord("plain text").has_value());
    EXPECT_FALSE(core::parseInfoRecord("").has_value());
    auto r = core::parseInfoRecord("UP_VText");
    ASSERT_TRUE(r.has_value());
    EXPECT_EQ(r->code, "VText");
    EXPECT_EQ(r->date, "");
    EXPECT_EQ(r->text, "");
    r = core::parseInfoRecord("PR_Inf\r\n2001-01-01");
    ASSERT_TRUE(r.has_value());
    EXPECT_EQ(r->code, "Inf\r\n");  // the five characters from the fourth, as they stand
    EXPECT_EQ(r->date, "2001-01-01");
    EXPECT_EQ(r->time, "");
}

TEST(VisibleTextTime, RewriteTo24Hours) {
    EXPECT_EQ(core::clockTimeTo24("1:05:09 PM"), "13:05:09");
    EXPECT_EQ(core::clockTimeTo24("9:5:09 AM"), "9:05:09");
    EXPECT_EQ(core::clockTimeTo24("11:59:59 PM"), "23:59:59");
    EXPECT_EQ(core::clockTimeTo24("10:30:00 AM"), "10:30:00");
    // noon reads 24 and midnight 12: PM adds 12 whatever the hour
    EXPECT_EQ(core::clockTimeTo24("12:30:00 PM"), "24:30:00");
    EXPECT_EQ(core::clockTimeTo24("12:07:00 AM"), "12:07:00");
    // only the minute is padded
    EXPECT_EQ(core::clockTimeTo24("3:4:5 PM"), "15:04:5");
    // a clock without AM/PM is left in its own hours
    EXPECT_EQ(core::clockTimeTo24("17:45:12"), "17:45:12");
}

TEST(VisibleTextTime, ClockFormAndTheMarkerName) {
    EXPECT_EQ(core::clockTime12({2024, 1, 2, 0, 5, 9}), "12:05:09 AM");
    EXPECT_EQ(core::clockTime12({2024, 1, 2, 9, 5, 9}), "9:05:09 AM");
    EXPECT_EQ(core::clockTime12({2024, 1, 2, 12, 0, 0}), "12:00:00 PM");
    EXPECT_EQ(core::clockTime12({2024, 1, 2, 13, 5, 9}), "1:05:09 PM");
    EXPECT_EQ(core::buildVTextName({2024, 1, 2, 13, 5, 9}, "Crusher"),
              "UP_VText\r\n2024-01-02\r\n13:05:09\r\nCrusher");
    EXPECT_EQ(core::buildVTextName({2024, 11, 20, 8, 0, 1}, "Pump"),
              "UP_VText\r\n2024-11-20\r\n8:00:01\r\nPump");
}

TEST(NameHasText, BlankAndEmptyCarryNothing) {
    EXPECT_FALSE(core::bolNameHasText(""));
    EXPECT_FALSE(core::bolNameHasText(" "));
    EXPECT_TRUE(core::bolNameHasText("  "));
    EXPECT_TRUE(core::bolNameHasText("x"));
    EXPECT_TRUE(core::bolNameHasText("\t"));
}

// ---- over the engine -------------------------------------------------------------

class NamesInScene : public ::testing::Test {
protected:
    NamesInScene() : ctx(ui) { ctx.engine.engine_load_world("", "", "", 4); }

    engine::Handle triangle(engine::Handle group, double x0) {
        engine::Handle p = ctx.engine.polygon_create();
        ctx.engine.polygon_add_point(p, engine::Point3{x0, 0, 0});
        ctx.engine.polygon_add_point(p, engine::Point3{x0, 10, 0});
        ctx.engine.polygon_add_point(p, engine::Point3{x0 + 10, 0, 0});
        EXPECT_EQ(ctx.engine.engine_add_polygon(p), 0);
        if (group != 0) ctx.engine.polygon_set_group(p, group);
        return p;
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
};

TEST_F(NamesInScene, EntityNameIsCutToOneRead) {
    engine::Handle p = triangle(0, 0);
    std::string longName = "PR_Infor\r\n" + std::string(290, 'x');
    ctx.engine.polygon_set_name(p, longName);
    std::string read = core::strEntityName(ctx.engine, p);
    EXPECT_EQ(read.size(), 257u);
    EXPECT_EQ(read, longName.substr(0, 257));
    ctx.engine.polygon_set_name(p, "short");
    EXPECT_EQ(core::strEntityName(ctx.engine, p), "short");
    EXPECT_EQ(core::strEntityName(ctx.engine, 0), "");
}

TEST_F(NamesInScene, GroupPolygonNamesTouchOnlyThatGroup) {
    engine::Handle g1 = ctx.engine.group_create("A");
    engine::Handle g2 = ctx.engine.group_create("B");
    engine::Handle a1 = triangle(g1, 0), a2 = triangle(g1, 20), b1 = triangle(g2, 40);
    ctx.engine.polygon_set_name(b1, "keep");
    core::p_subSetGroupPolygonNames(ctx.engine, g1, "UP_VText\r\nx");
    EXPECT_EQ(ctx.engine.entity_get_name(a1), "UP_VText\r\nx");
    EXPECT_EQ(ctx.engine.entity_get_name(a2), "UP_VText\r\nx");
    EXPECT_EQ(ctx.engine.entity_get_name(b1), "keep");
}

TEST_F(NamesInScene, TopGroupIsTheFatherOrTheEntityItself) {
    engine::Handle lone = ctx.engine.group_create("lone");
    EXPECT_EQ(core::topGroupOfEntity(ctx.engine, lone), lone);

    engine::Handle father = ctx.engine.group_create("AddedInfoGroup");
    engine::Handle entity = ctx.engine.group_create("leg");
    ASSERT_EQ(ctx.engine.group_set_father_group(entity, father), 0);
    EXPECT_EQ(core::topGroupOfEntity(ctx.engine, entity), father);

    // two levels up: the father, not the grandfather, is the group of the entity
    engine::Handle grand = ctx.engine.group_create("FatherGroup");
    ASSERT_EQ(ctx.engine.group_set_father_group(father, grand), 0);
    EXPECT_EQ(core::topGroupOfEntity(ctx.engine, entity), father);
    EXPECT_EQ(core::topGroupOfEntity(ctx.engine, 0), 0u);

    engine::Handle p = triangle(entity, 0);
    EXPECT_EQ(core::topGroupOfPolygon(ctx, p), father);
    EXPECT_TRUE(ui.transcript().empty());
}

TEST_F(NamesInScene, PolygonWithoutEntityIsAGroupError) {
    engine::Handle p = triangle(0, 0);
    EXPECT_EQ(core::entityOfPolygon(ctx, p), 0u);
    ASSERT_EQ(ui.transcript().size(), 1u);
    const std::string& line = ui.transcript()[0];
    EXPECT_NE(line.find("\"Group error\""), std::string::npos) << line;
    EXPECT_NE(line.find("\"Polygon does not belong to a entity\""), std::string::npos) << line;
    EXPECT_EQ(core::topGroupOfPolygon(ctx, p), 0u);
    EXPECT_EQ(ui.transcript().size(), 2u);
}

}  // namespace

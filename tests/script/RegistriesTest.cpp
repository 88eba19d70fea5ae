// Finding commands and procedures by the names scripts use, and values as
// scripts see them.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "core/Commands.h"
#include "core/Procedures.h"
#include "core/Value.h"

namespace {

core::Command command(std::string name, std::string form = {}) {
    core::Command c;
    c.name = std::move(name);
    c.form = std::move(form);
    return c;
}

TEST(CommandRegistry, BareNamesFormNamesAndTheMainForm) {
    core::CommandRegistry reg;
    reg.add(command("mnuOpen"));
    reg.add(command("cmdOK", "frm12_Excavation"));
    reg.add(command("frm15_DiscPlane.cmdOK"));
    reg.add(command("cmdCalculateTensor1", "frm25_StressTensor"));

    bool ambiguous = false;
    EXPECT_EQ(reg.find("cmdOK", &ambiguous), nullptr);
    EXPECT_TRUE(ambiguous);
    const core::Command* c = reg.find("frm15_DiscPlane.cmdOK", &ambiguous);
    ASSERT_NE(c, nullptr);
    EXPECT_FALSE(ambiguous);
    EXPECT_EQ(c->name, "frm15_DiscPlane.cmdOK");
    ASSERT_NE(reg.find("frm12_Excavation.cmdOK"), nullptr);
    EXPECT_EQ(reg.find("frm12_Excavation.cmdOK")->form, "frm12_Excavation");
    ASSERT_NE(reg.find("cmdCalculateTensor1"), nullptr);
    ASSERT_NE(reg.find("frm03_MirrowMain.mnuOpen"), nullptr);
    EXPECT_EQ(reg.find("frm12_Excavation.mnuOpen"), nullptr);
    EXPECT_EQ(reg.find("mnuClose"), nullptr);

    // The same command registered again replaces the first.
    auto again = command("cmdOK", "frm12_Excavation");
    again.caption = "Accept";
    reg.add(again);
    EXPECT_EQ(reg.all().size(), 4u);
    EXPECT_EQ(reg.find("frm12_Excavation.cmdOK")->caption, "Accept");
    reg.findMutable("mnuOpen")->enabled = false;
    EXPECT_FALSE(reg.find("mnuOpen")->enabled);
}

TEST(ProcedureRegistry, EngineNamesWithOrWithoutPrefix) {
    core::ProcedureRegistry reg;
    core::Procedure a;
    a.name = "polygon_create";
    reg.add(a);
    core::Procedure b;
    b.name = "STATE_odd_one";
    reg.add(b);
    core::Procedure c;
    c.name = "P_fncInfoString";
    reg.add(c);
    ASSERT_NE(reg.find("STATE_polygon_create"), nullptr);
    EXPECT_EQ(reg.find("STATE_polygon_create")->name, "polygon_create");
    ASSERT_NE(reg.find("odd_one"), nullptr);
    EXPECT_EQ(reg.find("STATE_P_fncInfoString"), reg.find("P_fncInfoString"));
    EXPECT_EQ(reg.find("polygon_creat"), nullptr);
    EXPECT_EQ(reg.find("STATE_"), nullptr);
    EXPECT_EQ(reg.names().size(), 3u);
}

TEST(Value, JsonAndTextAsScriptsSeeThem) {
    using core::Value;
    Value v(std::vector<Value>{Value(7), Value(0.1), Value(engine::Point3{1, -2.5, 1e-300}),
                               Value(engine::Rgb{255, 0, 9}), Value("a\"b"), Value(true), Value()});
    auto j = nlohmann::json::parse(v.json());
    EXPECT_EQ(j[0], 7);
    EXPECT_EQ(j[1].get<double>(), 0.1);
    EXPECT_EQ(j[2][2].get<double>(), 1e-300);
    EXPECT_EQ(j[3], nlohmann::json::parse("[255,0,9]"));
    EXPECT_EQ(j[4], "a\"b");
    EXPECT_EQ(j[5], true);
    EXPECT_TRUE(j[6].is_null());
    EXPECT_EQ(Value(90.0).json(), "90");

    EXPECT_EQ(Value(engine::Point3{1, -2.5, 0.1}).text(), "1,-2.5,0.1");
    EXPECT_EQ(Value(std::vector<Value>{Value(1), Value(2.5)}).text(), "1,2.5");
    EXPECT_EQ(Value("12abc").number(), 12);
    EXPECT_EQ(Value("abc").number(), 0);
    EXPECT_EQ(Value(2.5).integer(), 3);  // whole numbers round half away from zero
    EXPECT_EQ(Value(-2.5).integer(), -3);
    EXPECT_TRUE(Value("true").boolean());
    EXPECT_FALSE(Value("0").boolean());
    EXPECT_TRUE(Value(-1).boolean());
    EXPECT_EQ(Value("1,2,3").point(), (engine::Point3{1, 2, 3}));
    EXPECT_EQ(Value("10,20,30").colour(), (engine::Rgb{10, 20, 30}));
    EXPECT_EQ(Value(std::vector<Value>{Value(4), Value(5), Value(6)}).point(),
              (engine::Point3{4, 5, 6}));
}

}  // namespace

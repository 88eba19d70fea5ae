// The builders as `call` reaches them: names, kinds, results and written-back
// arguments, and the drill-line rings living with the registry.
#include <gtest/gtest.h>

#include "BuilderTestUtil.h"
#include "builders/BuilderProcedures.h"
#include "core/AppContext.h"
#include "core/Procedures.h"
#include "ui/ScriptedUi.h"

namespace {

using core::ParamKind;
using core::Value;
using engine::Handle;
using engine::Point3;

class BuilderCalls : public ::testing::Test {
protected:
    BuilderCalls() : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        builders::registerBuilderProcedures(registry);
    }
    Value call(const std::string& name, std::vector<Value> args) {
        last = std::move(args);
        const core::Procedure* p = registry.find(name);
        EXPECT_NE(p, nullptr) << name;
        if (!p) return Value();
        EXPECT_EQ(last.size(), p->params.size()) << name;
        return p->body(ctx, last);
    }
    Handle handle(const Value& v) { return static_cast<Handle>(v.integer()); }
    int count(const Value& group) { return ctx.engine.group_get_number_of_polygons(handle(group)); }

    ui::ScriptedUi ui;
    core::AppContext ctx;
    core::ProcedureRegistry registry;
    std::vector<Value> last;
};

TEST_F(BuilderCalls, BuildersAnswerToTheirOwnNamesAndGiveTheGroup) {
    const Value red(engine::Rgb{255, 0, 0});
    const Value a(Point3{0, 0, 0}), b(Point3{0, 30, 40});
    EXPECT_EQ(count(call("P_fncCreateSphere", {10.0, 2, 4, red})), 8);
    EXPECT_EQ(count(call("P_fncCreateSphere", {10.0, 8.0, 16.0, red})), 224);
    EXPECT_EQ(count(call("P_fncCreateCube", {Point3{1, 2, 3}, red})), 6);
    EXPECT_EQ(count(call("fncCreateCone", {a, b, 5.0, red})), 9);
    EXPECT_EQ(count(call("P_fncCreate4Cone", {true, a, b, 5.0, 3.0, red})), 4);
    EXPECT_EQ(count(call("P_fncCreate4Cone", {false, a, b, 5.0, 3.0, red})), 5);
    EXPECT_EQ(count(call("P_fncCreate3Cone", {a, b, 5.0, red})), 4);
    EXPECT_EQ(count(call("P_fncCreateCylinder", {a, b, 5.0, red})), 10);
    EXPECT_EQ(count(call("P_fncCreateWedge", {a, b, 5.0, red})), 5);
    EXPECT_EQ(count(call("P_fncCreate3DExcavation", {false, a, b, 5.0, 3.0, red})), 6);
    EXPECT_EQ(count(call("P_fncCreate3DExcavation", {true, a, b, 5.0, 3.0, red})), 4);
    EXPECT_EQ(count(call("P_fncCreate3DString", {a, b, 5.0, red})), 4);
    EXPECT_EQ(count(call("P_fncCreateFlatCircle", {5.0, red})), 2);
}

TEST_F(BuilderCalls, DrillLineRingsLiveWithTheRegistryUntilReleased) {
    const Value c(engine::Rgb{1, 2, 3});
    call("P_subPrepareDrillLine", {4.0});
    const Value g1 = call("P_fncCreateDrillLine", {Point3{0, 0, 0}, Point3{0, 0, -20}, 4.0, c});
    const Value g2 = call("P_fncCreateDrillLine", {Point3{0, 0, -20}, Point3{5, 0, -40}, 4.0, c});
    EXPECT_EQ(count(g1), 3);
    EXPECT_EQ(count(g2), 3);
    EXPECT_EQ(buildertest::freePolygons(ctx.engine), 2) << "the two shared rings";
    call("P_subReleaseDrillLine", {});
    EXPECT_EQ(buildertest::freePolygons(ctx.engine), 0);

    // another window's registry has rings of its own
    core::ProcedureRegistry other;
    builders::registerBuilderProcedures(other);
    call("P_subPrepareDrillLine", {4.0});
    std::vector<Value> none;
    other.find("P_subReleaseDrillLine")->body(ctx, none);
    EXPECT_EQ(buildertest::freePolygons(ctx.engine), 2);
    call("P_subReleaseDrillLine", {});
}

TEST_F(BuilderCalls, WrappersWriteTheGroupIntoTheirLastArgument) {
    for (const char* name : {"P_fncRenderSphere", "P_fncResolutionSphere", "P_fncResolutionCube"}) {
        const core::Procedure* p = registry.find(name);
        ASSERT_NE(p, nullptr) << name;
        EXPECT_TRUE(p->changesArgs);
        EXPECT_EQ(p->outArgs, std::vector<std::size_t>{3});
        call(name, {Point3{5, 5, 5}, 3.0, engine::Rgb{9, 9, 9}, 0});
        EXPECT_TRUE(ctx.engine.group_is_group(handle(last[3]))) << name;
    }
    call("P_fncResolutionSphere", {Point3{std::nan(""), 0, 0}, 3.0, engine::Rgb{9, 9, 9}, 7});
    EXPECT_EQ(handle(last[3]), 0u);
}

TEST_F(BuilderCalls, TubeCentreLineWritesBothEndsAndTheFlag) {
    const Value tube = call("P_fncCreateCylinder",
                            {Point3{0, 0, 0}, Point3{100, 0, 0}, 10.0, engine::Rgb{1, 1, 1}});
    const Handle polygon = ctx.engine.group_get_first_polygon(handle(tube));
    call("P_fncTubeCentreLine", {Value(polygon), 0, 0, false});
    EXPECT_TRUE(last[3].boolean());
    EXPECT_NEAR(last[1].point().x, 0, 1e-9);
    EXPECT_NEAR(last[2].point().x, 100, 1e-9);

    const Value sphere = call("P_fncCreateSphere", {5.0, 2, 4, engine::Rgb{1, 1, 1}});
    call("P_fncTubeCentreLine",
         {Value(ctx.engine.group_get_first_polygon(handle(sphere))), 0, 0, true});
    EXPECT_FALSE(last[3].boolean());
}

}  // namespace

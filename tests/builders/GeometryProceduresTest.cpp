// The geometry, text and lighting procedures as `call` reaches them: kinds,
// written-back arguments and results.
#include <gtest/gtest.h>

#include "builders/GeometryProcedures.h"
#include "core/AppContext.h"
#include "core/LightingProcedures.h"
#include "core/Procedures.h"
#include "core/TextProcedures.h"
#include "ui/ScriptedUi.h"

namespace {

using core::ParamKind;
using core::Value;

class Calls : public ::testing::Test {
protected:
    Calls() : ctx(ui) {
        builders::registerGeometryProcedures(registry);
        core::registerLightingProcedures(registry);
        core::registerTextProcedures(registry);
    }

    const core::Procedure& proc(const std::string& name) {
        const core::Procedure* p = registry.find(name);
        EXPECT_NE(p, nullptr) << name;
        static const core::Procedure none;
        return p ? *p : none;
    }

    Value call(const std::string& name, std::vector<Value>& args) {
        const core::Procedure& p = proc(name);
        EXPECT_EQ(args.size(), p.params.size()) << name;
        return p.body ? p.body(ctx, args) : Value();
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
    core::ProcedureRegistry registry;
};

TEST_F(Calls, EveryFunctionIsRegisteredUnderItsOwnName) {
    for (const char* name : {"ACosRad",
                             "ACosDeg",
                             "ASinDeg",
                             "P_subCopyPoint",
                             "P_subNegatePoint",
                             "P_subCopyColour",
                             "P_fncLineVerticalAngle",
                             "P_subDipAndDipDirection",
                             "P_fncDipToPolePlunge",
                             "P_fncDipDirToPoleTrend",
                             "P_subTrendPlungeEnd",
                             "P_subProjectPointOnLine",
                             "P_fncPolygonCornerArea",
                             "P_fncPolygonCornerRadius",
                             "P_fncGroupVolume",
                             "P_subApplyLight",
                             "P_subLightOff",
                             "P_subFlatShading",
                             "P_subLightTopBottom",
                             "P_subLightFromCamera",
                             "P_subLightFollowCamera",
                             "P_subPolygonDifferentiation",
                             "P_subNormaliseSeparators",
                             "P_subNormaliseLineEnds",
                             "strEntityName",
                             "bolNameHasText",
                             "p_subSetGroupPolygonNames"}) {
        const core::Procedure* p = registry.find(name);
        ASSERT_NE(p, nullptr) << name;
        EXPECT_TRUE(static_cast<bool>(p->body)) << name;
    }
}

TEST_F(Calls, DipToPolePlungeWritesTheClampedDipBack) {
    EXPECT_TRUE(proc("P_fncDipToPolePlunge").changesArgs);
    std::vector<Value> args{Value(120.0)};
    Value r = call("P_fncDipToPolePlunge", args);
    EXPECT_EQ(args[0].number(), 90.0);
    EXPECT_EQ(r.number(), 0.0);
}

TEST_F(Calls, DipAndDipDirectionTakesTheWindowsNorthAxis) {
    const core::Procedure& p = proc("P_subDipAndDipDirection");
    EXPECT_EQ(p.params,
              (std::vector<ParamKind>{ParamKind::Bool, ParamKind::Bool, ParamKind::Bool,
                                      ParamKind::Point, ParamKind::Number, ParamKind::Number}));
    EXPECT_TRUE(p.changesArgs);
    // (1,-1,0) as a line: 45 with north along x, 135 with north along y
    ctx.state.sngNorthAxis = 0.0f;
    std::vector<Value> args{Value(true),  Value(false),
                            Value(false), Value(engine::Point3{1, -1, 0}),
                            Value(0.0),   Value(0.0)};
    EXPECT_TRUE(call("P_subDipAndDipDirection", args).isNone());
    EXPECT_EQ(args[5].number(), 45.0);
    ctx.state.sngNorthAxis = 0.5f;
    args[3] = Value(engine::Point3{1, -1, 0});
    call("P_subDipAndDipDirection", args);
    EXPECT_EQ(args[5].number(), 135.0);
    // a zero part comes back replaced
    args[3] = Value(engine::Point3{0, 0, 1});
    call("P_subDipAndDipDirection", args);
    EXPECT_EQ(args[3].point().x, 1E-100);
    EXPECT_EQ(args[4].number(), 90.0);
}

TEST_F(Calls, TrendPlungeEndWritesTheNudgesAndTheEnd) {
    ctx.state.sngNorthAxis = 0.5f;
    std::vector<Value> args{Value(engine::Point3{0, 0, 0}), Value(10.0), Value(45.0), Value(0.0),
                            Value(engine::Point3{})};
    call("P_subTrendPlungeEnd", args);
    EXPECT_EQ(args[2].number(), 44.9999);
    engine::Point3 end = args[4].point();
    // north-east, level: both parts 10 / sqrt 2
    EXPECT_NEAR(end.x, 7.0710678, 1e-4);
    EXPECT_NEAR(end.y, 7.0710678, 1e-4);
    EXPECT_NEAR(end.z, 0, 1e-9);
}

TEST_F(Calls, PlainFunctionsReturnWithoutChangingArguments) {
    EXPECT_FALSE(proc("ASinDeg").changesArgs);
    std::vector<Value> args{Value(-2.0)};
    EXPECT_DOUBLE_EQ(call("ASinDeg", args).number(), -90.0);
    std::vector<Value> line{Value(engine::Point3{0, 0, 0}), Value(engine::Point3{1, 0, -1})};
    EXPECT_NEAR(call("P_fncLineVerticalAngle", line).number(), -45.0, 1e-9);
    std::vector<Value> name{Value(" ")};
    EXPECT_FALSE(call("bolNameHasText", name).boolean());
}

TEST_F(Calls, NormalisersWriteTheLineBack) {
    std::vector<Value> args{Value("1 ,2   3"), Value(5)};
    call("P_subNormaliseSeparators", args);
    EXPECT_EQ(args[0].text(), "1\t2\t3");
    std::vector<Value> name{Value("CM_Dist\r\n4\r\n5")};
    call("P_subNormaliseLineEnds", name);
    EXPECT_EQ(name[0].text(), "CM_Dist\t4\t5");
}

TEST_F(Calls, CopiesFillTheirDestination) {
    std::vector<Value> args{Value(engine::Point3{}), Value(engine::Point3{1, -2, 3})};
    call("P_subNegatePoint", args);
    EXPECT_EQ(args[0].point(), (engine::Point3{-1, 2, -3}));
    std::vector<Value> colours{Value(engine::Rgb{}), Value(engine::Rgb{10, 20, 30})};
    call("P_subCopyColour", colours);
    EXPECT_EQ(colours[0].colour(), (engine::Rgb{10, 20, 30}));
}

}  // namespace

#pragma once
// A started program with the selection actions, and a small scene built by hand:
// triangles in entities that hang under father groups.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/Registration.h"
#include "core/AppContext.h"
#include "forms/Frm22Selection.h"
#include "support/TestSupport.h"
#include "tools/SelectionActions.h"
#include "tools/SelectionDispatch.h"
#include "ui/ScriptedUi.h"

namespace selectiontest {

using engine::Handle;
using engine::Rgb;

class SelectionApp : public ::testing::Test {
protected:
    SelectionApp() : ctx(ui) {}

    void SetUp() override {
        app::registerAll(ctx);
        std::filesystem::create_directories(dir.file("program"));
        ctx.strProgramFolder = dir.file("program").string();
        ASSERT_TRUE(app::startMainForm(ctx));
    }

    // A triangle at height z, offset along x so that no two coincide.
    Handle tri(Handle group, Rgb colour = {200, 200, 200}, const std::string& name = "") {
        const double x = 10.0 * count_++;
        Handle p = ctx.engine.polygon_create();
        ctx.engine.polygon_add_point(p, engine::Point3{x, 0, 0});
        ctx.engine.polygon_add_point(p, engine::Point3{x, 5, 0});
        ctx.engine.polygon_add_point(p, engine::Point3{x + 5, 5, 0});
        EXPECT_EQ(ctx.engine.engine_add_polygon(p), 0);
        ctx.engine.polygon_set_group(p, group);
        ctx.engine.polygon_set_color_fill(p, colour);
        ctx.engine.polygon_set_name(p, name);
        return p;
    }
    Handle group(const std::string& name, Handle father = 0) {
        Handle g = ctx.engine.group_create(name);
        if (father) ctx.engine.group_set_father_group(g, father);
        return g;
    }

    // Arms an action through its button with the dialog accepted on a scope.
    void arm(const char* command, const char* scopeOption,
             std::vector<std::pair<std::string, std::string>> more = {}) {
        ui::FormAnswer a;
        a.form = forms::Frm22Selection::kName;
        a.controls.push_back({scopeOption, "1"});
        for (auto& m : more) a.controls.push_back(m);
        ui.answerForm(a);
        run(command);
    }
    void run(const std::string& command) {
        const core::Command* c = ctx.commands.find(command);
        ASSERT_NE(c, nullptr) << command;
        auto handler = c->handler;
        handler(ctx);
    }
    void click(Handle polygon, int shift = 0) { tools::P_subSelectAccept(ctx, polygon, shift); }

    bool alive(Handle p) const { return ctx.engine.polygon_is_in_world(p); }
    bool armed(const char* flag) const { return ctx.state.toolFlag(flag); }
    std::size_t polygons() const { return ctx.engine.polygon_count(); }
    const std::string& comment() const { return ctx.state.txtComment; }

    testsupport::TempDir dir;
    ui::ScriptedUi ui;
    core::AppContext ctx;

private:
    int count_ = 0;
};

}  // namespace selectiontest

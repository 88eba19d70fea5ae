#pragma once
// A started program with the world files registered, a scene of one triangle,
// and worlds to open written by the engine.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/Registration.h"
#include "core/AppContext.h"
#include "engine/WorldFormat.h"
#include "engine/WorldTestUtil.h"
#include "persistence/WorldFiles.h"
#include "support/TestSupport.h"
#include "ui/ScriptedUi.h"

namespace worldapp {

using engine::Handle;

class WorldApp : public ::testing::Test {
protected:
    WorldApp() : ctx(ui) {}

    void SetUp() override {
        app::registerAll(ctx);
        persistence::registerWorldFiles(ctx);
        std::filesystem::create_directories(dir.file("program"));
        ctx.strProgramFolder = dir.file("program").string();
        ASSERT_TRUE(app::startMainForm(ctx));
        const Handle g = ctx.engine.group_create("Scene");
        worldtest::polygon(ctx.engine, {{0, 0, 0}, {0, 10, 0}, {10, 10, 0}}, g, "Scene triangle");
        ctx.engine.polygon_set_color_fill(ctx.engine.polygon_get_first_polygon(), {9, 9, 9});
        skipped = ui.transcript().size();
    }

    // A world of four polygons: "Level 1" > "Stope" > "Drive", and one with no group.
    std::string writeWorld(const std::string& name) {
        engine::Engine w;
        w.engine_load_world("", "", "", 4);
        const Handle level = w.group_create("Level 1");
        const Handle stope = w.group_create("Stope");
        const Handle drive = w.group_create("Drive");
        w.group_set_father_group(stope, level);
        w.group_set_father_group(drive, stope);
        worldtest::polygon(w, {{100, 0, 0}, {100, 10, 0}, {110, 10, 0}}, level, "PR_A");
        worldtest::polygon(w, {{100, 0, 5}, {100, 10, 5}, {110, 10, 5}}, stope, "PR_B");
        worldtest::polygon(w, {{100, 0, 9}, {100, 10, 9}, {110, 10, 9}}, drive, "PR_C");
        worldtest::polygon(w, {{120, 0, 0}, {120, 10, 0}, {130, 10, 0}}, 0, "loose");
        const std::string path = dir.file(name).string();
        EXPECT_TRUE(engine::saveWorld(w, path).ok);
        return path;
    }

    void run(const std::string& command) {
        const core::Command* c = ctx.commands.find(command);
        ASSERT_NE(c, nullptr) << command;
        auto handler = c->handler;
        handler(ctx);
    }

    // Transcript records of one kind since the start-up.
    std::vector<nlohmann::json> records(const std::string& kind) const {
        std::vector<nlohmann::json> out;
        const auto& t = ui.transcript();
        for (std::size_t i = skipped; i < t.size(); ++i) {
            auto j = nlohmann::json::parse(t[i]);
            if (j.value("kind", "") == kind) out.push_back(j);
        }
        return out;
    }

    std::string sceneText() const { return worldtest::describe(ctx.engine); }
    std::vector<std::string> groupNames() const {
        std::vector<std::string> out;
        for (Handle g = ctx.engine.group_get_first_group(); g; g = ctx.engine.group_get_next(g))
            out.push_back(ctx.engine.entity_get_name(g));
        return out;
    }
    Handle groupNamed(const std::string& name) const {
        for (Handle g = ctx.engine.group_get_first_group(); g; g = ctx.engine.group_get_next(g))
            if (ctx.engine.entity_get_name(g) == name) return g;
        return 0;
    }
    forms::Form& mainForm() { return *ctx.forms.find("frm03_MirrowMain"); }
    static std::string readFile(const std::string& p) { return testsupport::readFile(p); }

    testsupport::TempDir dir;
    ui::ScriptedUi ui;
    core::AppContext ctx;
    std::size_t skipped = 0;
};

}  // namespace worldapp

#pragma once
// A context with a scripted Ui over an empty world, and small scene makers.

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "analysis/AnalysisRegistration.h"
#include "core/AppContext.h"
#include "core/Lighting.h"
#include "engine/Engine.h"
#include "ui/ScriptedUi.h"

namespace analysistest {

using engine::Handle;
using engine::Point3;
using engine::Rgb;

struct AnalysisTest : ::testing::Test {
    AnalysisTest() : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        core::installLighting(ctx);
        analysis::registerAnalysis(ctx);
    }

    // A polygon from the points, added to the world, in the group (a new one when 0).
    Handle polygon(const std::vector<Point3>& pts, Handle group = 0, Rgb colour = {10, 20, 30},
                   const std::string& name = {}) {
        engine::Engine& e = ctx.engine;
        const Handle p = e.polygon_create();
        for (const Point3& q : pts) e.polygon_add_point(p, q);
        EXPECT_EQ(e.engine_add_polygon(p), 0);
        e.polygon_set_group(p, group != 0 ? group : e.group_create("TestGroup"));
        e.polygon_set_color_fill(p, colour);
        if (!name.empty()) e.polygon_set_name(p, name);
        return p;
    }
    // A horizontal square of side 2h about (x, y) at height z, its front up.
    Handle flatSquare(double x, double y, double z, double h = 10, Handle group = 0,
                      const std::string& name = {}) {
        return polygon({{x + h, y + h, z}, {x + h, y - h, z}, {x - h, y - h, z}, {x - h, y + h, z}},
                       group, {10, 20, 30}, name);
    }
    // The transcript records of one kind.
    std::vector<nlohmann::json> records(const std::string& kind) const {
        std::vector<nlohmann::json> out;
        for (const auto& l : ui.transcript()) {
            auto j = nlohmann::json::parse(l);
            if (j.value("kind", "") == kind) out.push_back(j);
        }
        return out;
    }

    ui::ScriptedUi ui;
    core::AppContext ctx;
};

inline std::vector<Handle> walk(const engine::Engine& e) {
    std::vector<Handle> out;
    for (Handle p = e.polygon_get_first_polygon(); p != 0; p = e.polygon_get_next(p))
        out.push_back(p);
    return out;
}

}  // namespace analysistest

#pragma once
// A started window with the tools wired, a known camera and scene helpers: the
// clicks go through picRenderWindow's handlers at the pixels of known points.

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/Registration.h"
#include "core/AppContext.h"
#include "core/Camera.h"
#include "forms/Form.h"
#include "ui/ScriptedUi.h"

namespace toolstest {

class ToolsTest : public ::testing::Test {
protected:
    ui::ScriptedUi ui;
    core::AppContext ctx{ui};

    void SetUp() override {
        app::registerAll(ctx);
        ASSERT_TRUE(app::startMainForm(ctx));
        ctx.engine.set_window_size(800, 600);
        // Looking down on the origin from 600 m: the test scenes fill the view.
        ctx.state.dblRotationCentre = {0, 0, 0};
        ctx.state.dblCamDistance = 6000;
        ctx.state.sngNorthAxis = 0.5f;  // grid north along +y
        core::p_subCameraUpdate(ctx);
    }

    forms::Form& form(const std::string& name) {
        forms::Form& f = *ctx.forms.find(name);
        f.ensureLoaded();
        return f;
    }
    forms::Form& main() { return form("frm03_MirrowMain"); }

    // A filled polygon facing up (its points clockwise seen from above) in group g.
    engine::Handle polygon(std::initializer_list<engine::Point3> pts, engine::Handle g,
                           const std::string& name = "", engine::Rgb colour = {100, 100, 100}) {
        const engine::Handle h = ctx.engine.polygon_create();
        for (const auto& p : pts) ctx.engine.polygon_add_point(h, p);
        EXPECT_EQ(ctx.engine.engine_add_polygon(h), 0);
        ctx.engine.polygon_set_color_fill(h, colour);
        ctx.engine.polygon_set_group(h, g);
        if (!name.empty()) ctx.engine.polygon_set_name(h, name);
        return h;
    }
    // A level square of half-size r centred on (cx, cy) at height z.
    engine::Handle square(double cx, double cy, double z, double r, engine::Handle g,
                          const std::string& name = "", engine::Rgb colour = {100, 100, 100}) {
        return polygon(
            {{cx + r, cy + r, z}, {cx + r, cy - r, z}, {cx - r, cy - r, z}, {cx - r, cy + r, z}}, g,
            name, colour);
    }

    // The pixel of a scene point.
    void pixel(const engine::Point3& p, double& x, double& y) {
        ASSERT_EQ(ctx.engine.engine_3D_point_to_2D(p, x, y), 0) << "point off the view";
    }
    void click(const engine::Point3& at, int shift = 0, int button = 1) {
        double x = 0, y = 0;
        pixel(at, x, y);
        clickPixel(x, y, shift, button);
    }
    void clickPixel(double x, double y, int shift = 0, int button = 1) {
        ctx.input.onMouseDown(ctx, button, shift, x, y);
        ctx.input.onMouseUp(ctx, button, shift, x, y);
    }
    void run(const std::string& command) {
        const core::Command* c = ctx.commands.find(command);
        ASSERT_NE(c, nullptr) << command;
        c->handler(ctx);
    }

    // Transcript records of one kind.
    std::vector<nlohmann::json> records(const std::string& kind) const {
        std::vector<nlohmann::json> out;
        for (const auto& l : ui.transcript()) {
            auto j = nlohmann::json::parse(l);
            if (j.value("kind", "") == kind) out.push_back(j);
        }
        return out;
    }

    std::vector<engine::Handle> groupsNamed(const std::string& name) {
        std::vector<engine::Handle> out;
        for (auto g = ctx.engine.group_get_first_group(); g != 0; g = ctx.engine.group_get_next(g))
            if (ctx.engine.entity_get_name(g) == name) out.push_back(g);
        return out;
    }
    std::vector<engine::Point3> points(engine::Handle polygon) {
        std::vector<engine::Point3> out;
        for (auto pt = ctx.engine.polygon_get_first_point(polygon); pt != 0;
             pt = ctx.engine.point_get_next_point(pt)) {
            engine::Point3 p;
            ctx.engine.point_get_xyz(pt, p);
            out.push_back(p);
        }
        return out;
    }
    bool flag(const char* name) const { return ctx.state.toolFlag(name); }
};

inline double near(const engine::Point3& a, const engine::Point3& b) {
    return engine::length(a - b);
}

// Round half away from zero to `d` places, as the comment lines write numbers.
inline std::string fixed(double v, int d) {
    const double s = std::pow(10.0, d);
    double r = std::round(v * s) / s;
    if (r == 0) r = 0;
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", d, r);
    return buf;
}

}  // namespace toolstest

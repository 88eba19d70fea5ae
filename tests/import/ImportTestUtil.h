#pragma once
// Import tests run end to end: a file written by the test, a script that answers
// the open dialog and runs the menu entry, then the scene and the transcript.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "import/ImportRegistration.h"
#include "script/ScriptFixture.h"
#include "ui/ScriptedUi.h"

namespace importtest {

using scripttest::ScriptResult;

struct Poly {
    std::vector<engine::Point3> points;
    engine::Rgb colour;
    std::string name;
    engine::Handle group = 0;
    std::string groupName;
    bool lit = false;
};

inline std::vector<Poly> scenePolygons(const engine::Engine& e) {
    std::vector<Poly> out;
    for (engine::Handle p = e.polygon_get_first_polygon(); p; p = e.polygon_get_next(p)) {
        Poly q;
        for (engine::Handle pt = e.polygon_get_first_point(p); pt;
             pt = e.point_get_next_point(pt)) {
            engine::Point3 xyz;
            e.point_get_xyz(pt, xyz);
            q.points.push_back(xyz);
        }
        q.colour = e.polygon_get_color(p);
        q.name = e.entity_get_name(p);
        q.group = e.polygon_get_group(p);
        q.groupName = e.entity_get_name(q.group);
        q.lit = e.polygon_get_light(p).has_value();
        out.push_back(std::move(q));
    }
    return out;
}

struct GroupInfo {
    engine::Handle handle = 0;
    std::string name;
    engine::Handle father = 0;
};

inline std::vector<GroupInfo> sceneGroups(const engine::Engine& e) {
    std::vector<GroupInfo> out;
    for (engine::Handle g = e.group_get_first_group(); g; g = e.group_get_next(g))
        out.push_back({g, e.entity_get_name(g), e.group_get_father_group(g)});
    return out;
}

class ImportTest : public scripttest::ScriptTest {
protected:
    // Writes `text` as `file` beside the script, then runs `before`, the open
    // answer and the menu entry, then `after`.
    ScriptResult importText(const std::string& command, const std::string& file,
                            const std::string& text, const std::string& before = {},
                            const std::string& after = {},
                            const std::function<void(core::AppContext&)>& setup = {}) {
        testsupport::writeFile(dir.file(file), text);
        return runScript(before + "answer open " + file + "\nrun " + command + "\n" + after,
                         [setup](core::AppContext& ctx) {
                             importers::registerImport(ctx);
                             if (setup) setup(ctx);
                         });
    }
    ScriptResult run(const std::string& script,
                     const std::function<void(core::AppContext&)>& setup = {}) {
        return runScript(script, [setup](core::AppContext& ctx) {
            importers::registerImport(ctx);
            if (setup) setup(ctx);
        });
    }
    std::vector<Poly> polygons() { return scenePolygons(ctx().engine); }
    std::vector<GroupInfo> groups() { return sceneGroups(ctx().engine); }
    static ui::ScriptedUi& scripted(core::AppContext& ctx) {
        return dynamic_cast<ui::ScriptedUi&>(ctx.ui);
    }
};

inline engine::Point3 P(double x, double y, double z) { return {x, y, z}; }

}  // namespace importtest

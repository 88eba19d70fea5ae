#include "cli/script/SceneDump.h"

#include "core/AppContext.h"
#include "ui/JsonText.h"

namespace script {

namespace {

using ui::jsonColour;
using ui::jsonNumber;
using ui::jsonPoint;
using ui::jsonString;

std::string polygonJson(const engine::Engine& e, engine::Handle p) {
    std::string points = "[", colours = "[";
    bool first = true;
    for (engine::Handle pt = e.polygon_get_first_point(p); pt; pt = e.point_get_next_point(pt)) {
        engine::Point3 xyz;
        e.point_get_xyz(pt, xyz);
        auto rgb = e.point_get_rgb(pt);
        if (!first) {
            points += ", ";
            colours += ", ";
        }
        first = false;
        points += jsonPoint(xyz);
        colours += rgb ? jsonColour(*rgb) : "null";
    }
    points += "]";
    colours += "]";
    auto light = e.polygon_get_light(p);
    return ui::JsonObject()
        .integer("handle", p)
        .integer("group", e.polygon_get_group(p))
        .str("name", e.entity_get_name(p))
        .raw("colour", jsonColour(e.polygon_get_color(p)))
        .boolean("enabled", !e.polygon_is_disabled(p))
        .integer("translucent", e.polygon_get_translucent(p))
        .integer("brightness", e.polygon_get_brightness(p))
        .raw("light", light ? jsonColour(*light) : "null")
        .raw("points", points)
        .raw("point_colours", colours)
        .text();
}

}  // namespace

std::string sceneDumpJson(core::AppContext& ctx) {
    const engine::Engine& e = ctx.engine;
    std::string out = "{\n  \"polygons\": [";
    bool first = true;
    for (engine::Handle p = e.polygon_get_first_polygon(); p; p = e.polygon_get_next(p)) {
        out += first ? "\n    " : ",\n    ";
        first = false;
        out += polygonJson(e, p);
    }
    out += first ? "],\n" : "\n  ],\n";

    out += "  \"groups\": [";
    first = true;
    for (engine::Handle g = e.group_get_first_group(); g; g = e.group_get_next(g)) {
        out += first ? "\n    " : ",\n    ";
        first = false;
        out += ui::JsonObject()
                   .integer("handle", g)
                   .str("name", e.entity_get_name(g))
                   .integer("father", e.group_get_father_group(g))
                   .text();
    }
    out += first ? "],\n" : "\n  ],\n";

    out += "  \"background\": " + jsonColour(e.engine_get_background_color()) + ",\n";
    const engine::CameraState& cam = e.camera();
    out += "  \"camera\": " +
           ui::JsonObject()
               .raw("location", jsonPoint(cam.location))
               .raw("direction", jsonPoint(cam.direction))
               .raw("up", jsonPoint(cam.up))
               .num("zoom", cam.zoom)
               .text() +
           ",\n";
    const core::MainState& s = ctx.state;
    out += "  \"state\": " +
           ui::JsonObject()
               .raw("dblRotationCentre", jsonPoint(s.dblRotationCentre))
               .raw("dblCoordOffset", jsonPoint(s.dblCoordOffset))
               .str("strLoadedFiles", s.strLoadedFiles)
               .str("strCommentLog", s.strCommentLog)
               .str("txtComment", s.txtComment)
               .text() +
           "\n}\n";
    return out;
}

}  // namespace script

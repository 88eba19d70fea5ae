// call and polygon: procedures of the program with plain arguments, and a
// polygon straight into the world.

#include "cli/script/ScriptArgs.h"
#include "cli/script/ScriptRunner.h"
#include "core/AppContext.h"
#include "ui/JsonText.h"
#include "ui/ScriptedUi.h"

namespace script {

namespace {

void recordCall(ui::ScriptedUi& ui, const std::string& name, const std::string& resultJson) {
    ui.record(ui::JsonObject()
                  .str("kind", "call")
                  .str("procedure", name)
                  .raw("result", resultJson)
                  .text());
}

}  // namespace

void ScriptRunner::cmdCall(Args a) {
    std::string var = takeRedirect(a);
    if (a.empty()) badArgs("usage: call PROCEDURE ARG ... [> VAR]");
    const std::string name = a[0].text;
    const core::Procedure* p = ctx_.procedures.find(name);
    if (!p) badArgs("unknown procedure '" + name + "'");
    std::size_t given = a.size() - 1;
    if (given != p->params.size())
        badArgs(name + " takes " + std::to_string(p->params.size()) + " argument" +
                (p->params.size() == 1 ? "" : "s") + ", not " + std::to_string(given));
    std::vector<core::Value> args;
    args.reserve(given);
    for (std::size_t i = 0; i < given; ++i) {
        bool outOnly = std::find(p->outArgs.begin(), p->outArgs.end(), i) != p->outArgs.end();
        args.push_back(argument(p->params[i], a[i + 1].text, outOnly,
                                name + " argument " + std::to_string(i + 1)));
    }
    auto body = p->body;  // the registry may change while it runs
    core::Value result = body ? body(ctx_, args) : core::Value();
    core::Value shown = result;
    if (p->changesArgs) {
        std::vector<core::Value> all = args;
        if (!result.isNone()) all.push_back(result);
        shown = core::Value(std::move(all));
    }
    recordCall(ui_, name, shown.json());
    if (!var.empty()) vars_[var] = (result.isNone() ? shown : result).text();
}

void ScriptRunner::cmdPolygon(Args a) {
    const char* usage = "polygon [--group H] [--name TEXT] [--colour R,G,B] P1 P2 P3 ... [> VAR]";
    std::string var = takeRedirect(a);
    engine::Handle group = 0;
    bool haveGroup = false;
    std::optional<std::string> name;
    engine::Rgb fill{255, 255, 255};
    std::size_t i = 0;
    for (; i < a.size() && !a[i].quoted && a[i].text.rfind("--", 0) == 0; i += 2) {
        if (i + 1 >= a.size()) badArgs(std::string("usage: ") + usage);
        const std::string& opt = a[i].text;
        const std::string& val = a[i + 1].text;
        if (opt == "--group") {
            long long h = integer(val, "polygon --group");
            group = static_cast<engine::Handle>(h);
            if (h <= 0 || !ctx_.engine.group_is_group(group))
                badArgs("polygon --group: " + val + " is not a group");
            haveGroup = true;
        } else if (opt == "--name") {
            name = val;
        } else if (opt == "--colour" || opt == "--color") {
            fill = colour(val, "polygon --colour");
        } else {
            badArgs("polygon: unknown option '" + opt + "'");
        }
    }
    std::vector<engine::Point3> pts;
    for (; i < a.size(); ++i) pts.push_back(point(a[i].text, "polygon point"));
    if (pts.size() < 3) badArgs("polygon: at least three points");

    engine::Engine& e = ctx_.engine;
    engine::Handle poly = e.polygon_create();
    for (const auto& p : pts) e.polygon_add_point(poly, p);
    if (e.engine_add_polygon(poly) == -1) {
        e.polygon_delete(poly);
        badArgs(
            "polygon: the engine refused the polygon (fewer than three distinct points or no "
            "area)");
    }
    if (!haveGroup) group = e.group_create("ScriptGroup");
    e.polygon_set_group(poly, group);
    e.polygon_set_color_fill(poly, fill);
    if (name) e.polygon_set_name(poly, *name);
    recordCall(ui_, "polygon", std::to_string(poly));
    if (!var.empty()) vars_[var] = std::to_string(poly);
}

}  // namespace script

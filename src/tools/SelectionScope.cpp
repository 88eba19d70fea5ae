#include "tools/SelectionScope.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"
#include "forms/Frm22Selection.h"

namespace tools {

namespace {

using engine::Handle;

// A father chain longer than this is a damaged scene; stop climbing.
constexpr int kMaxDepth = 100000;

struct ScopeName {
    const char* text;
    Scope scope;
};
constexpr ScopeName kScopeNames[] = {
    {"Entity", Scope::Entity},         {"Polygon", Scope::Polygon},
    {"Group", Scope::Group},           {"File", Scope::File},
    {"Colour", Scope::Colour},         {"Visible", Scope::Visible},
    {"Invisible", Scope::Invisible},   {"DataType", Scope::DataType},
    {"Rubberband", Scope::Rubberband},
};

Handle fatherOf(const engine::Engine& eng, Handle g) {
    Handle f = eng.group_get_father_group(g);
    return f == g ? 0 : f;
}

}  // namespace

Scope scopeFromText(std::string_view text) {
    for (const auto& n : kScopeNames)
        if (text == n.text) return n.scope;
    return Scope::None;
}

bool isSceneScope(Scope s) {
    return s == Scope::Colour || s == Scope::Visible || s == Scope::Invisible ||
           s == Scope::DataType;
}

bool scopeNeedsNoHit(Scope s) { return s == Scope::Visible || s == Scope::Invisible; }

Handle scopeGroup(const engine::Engine& eng, Scope s, Handle hPolygon) {
    const Handle entity = eng.polygon_get_group(hPolygon);
    if (entity == 0) return 0;
    switch (s) {
        case Scope::Entity:
            return entity;
        case Scope::Group:
            return fatherOf(eng, entity);
        case Scope::File: {
            Handle top = entity;
            for (int depth = 0; depth < kMaxDepth; ++depth) {
                Handle f = fatherOf(eng, top);
                if (f == 0 || f == entity) break;
                top = f;
            }
            return top;
        }
        default:
            return 0;
    }
}

std::vector<Handle> groupTree(const engine::Engine& eng, Handle hGroup) {
    std::vector<Handle> out;
    if (!eng.group_is_group(hGroup)) return out;
    std::unordered_set<Handle> seen;
    std::vector<Handle> stack{hGroup};
    while (!stack.empty()) {
        Handle g = stack.back();
        stack.pop_back();
        if (!seen.insert(g).second) continue;
        out.push_back(g);
        std::vector<Handle> children;
        for (Handle c = eng.group_get_first_included_group(g); c != 0;
             c = eng.group_get_next_included_group(g, c))
            children.push_back(c);
        // Depth first in creation order.
        stack.insert(stack.end(), children.rbegin(), children.rend());
    }
    return out;
}

std::vector<Handle> treePolygons(const engine::Engine& eng, Handle hGroup) {
    std::vector<Handle> out;
    for (Handle g : groupTree(eng, hGroup))
        for (Handle p = eng.group_get_first_polygon(g); p != 0;
             p = eng.group_get_next_polygon(g, p))
            out.push_back(p);
    return out;
}

std::string dataTypeKey(std::string_view name) {
    if (!core::bolNameHasText(name)) return "none:";
    if (name.starts_with(core::kColourMapPrefix)) {
        std::string_view code = core::colourMapCodeOf(name);
        if (code.empty()) code = name.substr(0, name.find_first_of("\t\r\n"));
        return "map:" + std::string(code);
    }
    if (name.starts_with(core::kProtectedPrefix) || name.starts_with(core::kUnprotectedPrefix))
        return "info:" + std::string(name.substr(3, 5));
    return "text:" + std::string(name.substr(0, 3));
}

SceneFilter sceneFilterFor(const engine::Engine& eng, Scope s, Handle hPolygon, bool hidden) {
    SceneFilter f;
    f.scope = s;
    f.hidden = hidden;
    if (s == Scope::Colour) f.colour = eng.polygon_get_color(hPolygon);
    if (s == Scope::DataType) f.dataType = dataTypeKey(eng.entity_get_name(hPolygon));
    return f;
}

bool sceneFilterTakes(const engine::Engine& eng, const SceneFilter& f, Handle hPolygon) {
    const bool disabled = eng.polygon_is_disabled(hPolygon);
    switch (f.scope) {
        case Scope::Visible:
            return !disabled;
        case Scope::Invisible:
            return disabled;
        case Scope::Colour:
            return disabled == f.hidden && eng.polygon_get_color(hPolygon) == f.colour;
        case Scope::DataType:
            return disabled == f.hidden && dataTypeKey(eng.entity_get_name(hPolygon)) == f.dataType;
        default:
            return false;
    }
}

long walkScene(core::AppContext& ctx, const SceneFilter& f,
               const std::function<void(Handle)>& act) {
    auto& eng = ctx.engine;
    long tested = 0, acted = 0;
    Handle p = eng.polygon_get_first_polygon();
    while (p != 0) {
        if (ctx.state.bolInterruptProcess) break;
        const Handle next = eng.polygon_get_next(p);
        ++tested;
        P_subProgressStep(ctx, 1.0, 200,
                          "The number of polygons tested: " + std::to_string(tested));
        if (sceneFilterTakes(eng, f, p)) {
            act(p);
            ++acted;
        }
        p = next;
    }
    return acted;
}

void P_subProgressStep(core::AppContext& ctx, double step, long every, const std::string& text) {
    auto& form = forms::Frm22Selection::of(ctx);
    if (++form.progressCalls < std::max(1L, every)) return;
    form.progressCalls = 0;
    ctx.comment(text);
    if (100.0 - form.progressBar <= step) {
        form.progressBar = 0;
        core::p_subMainLoop(ctx);
        ctx.pointer(11);
    } else {
        form.progressBar += step;
    }
    ctx.progress(static_cast<int>(form.progressBar));
    ctx.ui.pumpEvents();
}

}  // namespace tools

// Saving worlds: the whole scene, with its bitmaps, under the current name, the
// visible polygons only, or what the tools added.

#include <filesystem>
#include <set>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "engine/WorldFormat.h"
#include "persistence/OpenFile.h"
#include "persistence/WorldFiles.h"

namespace persistence {

namespace fs = std::filesystem;
using engine::Handle;

namespace {

// Asks for the name; "" when the dialog was cancelled or the name was empty
// (the latter with its box).
std::string askSaveName(core::AppContext& ctx) {
    auto& s = ctx.state;
    ui::FileRequest req;
    req.title = "Save";
    req.filetype = kStateFileType;
    req.filter = fileFilterFor(kStateFileType);
    req.initialDir = s.strFolder.empty() ? programFolder(ctx) : s.strFolder;
    req.fileName = s.strFileTitle;
    const auto answer = ctx.ui.saveFile(req);
    if (!answer) return {};
    if (answer->empty()) {
        ctx.ui.msgBox("File name is EMPTY", ui::Buttons::OK, "Error message");
        return {};
    }
    std::string name = *answer;
    if (fs::path(name).extension().empty()) name += ".STATE";  // the default extension
    return name;
}

bool saveTo(core::AppContext& ctx, const std::string& file, Handle group, bool bitmaps) {
    auto& s = ctx.state;
    auto& e = ctx.engine;
    if (file.empty()) {
        ctx.ui.msgBox("No file saved as the filename was a Null-value", ui::Buttons::OK,
                      "Null-value for filename");
        return false;
    }
    // 2
    const engine::Point3 off = s.dblSceneOffset;
    e.group_move(group, {-off.x, -off.y, -off.z});
    engine::WorldSaveOptions opt;
    opt.group = group;
    opt.bitmaps = bitmaps;
    const engine::WorldResult r = engine::saveWorld(e, file, opt);
    e.group_move(group, {0, 0, 0});
    if (!r.ok) {
        ctx.ui.msgBox(r.message, ui::Buttons::OK, "Error message");
        ctx.logLine(r.message);
        return false;
    }
    for (const std::string& n : r.notes) ctx.logLine(n);
    // The whole scene saved under a name makes that name the current one.
    if (group == 0) {
        splitFullPath(ctx, file);
        s.comLoadStateFile = file;
    }
    // 3
    logLoadedFile(ctx, file, " saved");
    P_subDeleteEngineLogs(ctx, fs::path(file).parent_path().string());
    ctx.comment(file + " saved.");
    core::p_subMainLoop(ctx, false);
    ctx.ui.beep();
    ctx.progress(100);
    return true;
}

// Members of each group in the order they joined, to put back exactly.
using Membership = std::vector<std::pair<Handle, std::vector<Handle>>>;

Membership membersOf(const engine::Engine& e, const std::set<Handle>& groups) {
    Membership out;
    for (Handle g : groups) {
        std::vector<Handle> members;
        for (Handle p = e.group_get_first_polygon(g); p; p = e.group_get_next_polygon(g, p))
            members.push_back(p);
        out.emplace_back(g, std::move(members));
    }
    return out;
}

void putBack(engine::Engine& e, const Membership& m) {
    for (const auto& [g, members] : m) {
        for (Handle p : members) e.polygon_set_group(p, 0);
        for (Handle p : members) e.polygon_set_group(p, g);
    }
}

}  // namespace

bool P_subSaveWorld(core::AppContext& ctx, const std::string& strFileTypeSave, Handle lngGroup,
                    bool bolBitmaps, const std::string& path) {
    std::string file = path;
    if (file.empty() && strFileTypeSave == kStateFileType) {
        file = askSaveName(ctx);
        if (file.empty()) return false;
    }
    return saveTo(ctx, file, lngGroup, bolBitmaps);
}

bool mnuSaveCurName(core::AppContext& ctx) { return saveTo(ctx, ctx.state.strFullPath, 0, false); }

bool mnuSaveVisibleInfoOnly(core::AppContext& ctx) {
    auto& e = ctx.engine;
    std::vector<std::pair<Handle, Handle>> moved;  // polygon, its group
    std::set<Handle> touched;
    for (Handle p = e.polygon_get_first_polygon(); p; p = e.polygon_get_next(p)) {
        if (e.polygon_is_disabled(p)) continue;
        const Handle g = e.polygon_get_group(p);
        moved.emplace_back(p, g);
        if (g) touched.insert(g);
    }
    const Membership before = membersOf(e, touched);
    const Handle top = e.group_create(kSaveVisibleGroup);
    Handle current = 0, last = 0;
    int count = 0;
    for (std::size_t i = 0; i < moved.size(); ++i) {
        const auto [p, g] = moved[i];
        if (current == 0 || g != last) {
            current =
                e.group_create(std::string(kSaveVisibleGroup) + ": " + std::to_string(++count));
            e.group_set_father_group(current, top);
            last = g;
        }
        e.polygon_set_group(p, current);
    }
    const bool saved = P_subSaveWorld(ctx, kStateFileType, top, false);
    // The polygons go back to their groups, in the order they had joined them.
    for (const auto& [p, g] : moved)
        if (!g) e.polygon_set_group(p, 0);
    putBack(e, before);
    e.group_delete_members(top);
    return saved;
}

bool mnuSaveAddedInfoOnly(core::AppContext& ctx) {
    auto& e = ctx.engine;
    const auto& added = ctx.state.F_h_lngAddedGroups;
    std::set<Handle> live;
    for (Handle g : added)
        if (e.group_is_group(g)) live.insert(g);
    // Only the highest of the added groups move: the others come with them.
    std::vector<std::pair<Handle, Handle>> tops;  // group, its father
    for (Handle g : live) {
        bool under = false;
        for (Handle f = e.group_get_father_group(g); f && !under; f = e.group_get_father_group(f))
            under = live.count(f) > 0;
        if (!under) tops.emplace_back(g, e.group_get_father_group(g));
    }
    if (tops.empty()) {
        ctx.ui.msgBox("There is no added information to save", ui::Buttons::OK,
                      "Save Added Information");
        return false;
    }
    const Handle top = e.group_create(kSaveAddedGroup);
    for (const auto& [g, father] : tops) e.group_set_father_group(g, top);
    const bool saved = P_subSaveWorld(ctx, kStateFileType, top, false);
    for (const auto& [g, father] : tops) e.group_set_father_group(g, father);
    e.group_delete_members(top);
    return saved;
}

}  // namespace persistence

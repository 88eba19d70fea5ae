// Opening and adding worlds: the open, the add under "NextModel", the empty
// scene, the multi-file form and a world handed over on the command line.

#include <filesystem>

#include "core/AppContext.h"
#include "core/Camera.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "engine/WorldFormat.h"
#include "forms/Frm26FileAdd.h"
#include "persistence/OpenFile.h"
#include "persistence/WorldFiles.h"

namespace persistence {

namespace fs = std::filesystem;
using engine::Handle;

namespace {

forms::Form* mainForm(core::AppContext& ctx) { return ctx.forms.find("frm03_MirrowMain"); }

std::string bitmapFolder(const core::AppContext& ctx) {
    return (fs::path(ctx.state.strFolder) / "Bitmaps").string();
}

// A group without a father joins the model; a deeper group keeps its father,
// so that a world's own hierarchy stays whole under the model.
void attachToModel(engine::Engine& e, Handle model, const std::vector<Handle>& groups) {
    for (Handle g : groups)
        if (g != model && e.group_get_father_group(g) == 0) e.group_set_father_group(g, model);
}

std::vector<Handle> allGroups(const engine::Engine& e) {
    std::vector<Handle> out;
    for (Handle g = e.group_get_first_group(); g; g = e.group_get_next(g)) out.push_back(g);
    return out;
}

std::vector<Handle> groupsUnder(const engine::Engine& e, Handle top) {
    std::vector<Handle> out;
    std::vector<Handle> todo{top};
    while (!todo.empty()) {
        const Handle g = todo.back();
        todo.pop_back();
        for (Handle c = e.group_get_first_included_group(g); c;
             c = e.group_get_next_included_group(g, c)) {
            out.push_back(c);
            todo.push_back(c);
        }
    }
    return out;
}

void noteAll(core::AppContext& ctx, const engine::WorldResult& r) {
    for (const std::string& n : r.notes) ctx.logLine(n);
}

// The dialog was cancelled: nothing happens, the flag is taken back.
bool dialogCancelled(core::AppContext& ctx) {
    core::p_subMainLoop(ctx, false);
    ctx.state.bolFileCancelled = 0;
    return false;
}

forms::Frm26FileAdd& fileAddForm(core::AppContext& ctx) {
    auto* f = dynamic_cast<forms::Frm26FileAdd*>(ctx.forms.find(forms::Frm26FileAdd::kName));
    if (!f) {
        ctx.forms.add(std::make_unique<forms::Frm26FileAdd>());
        f = dynamic_cast<forms::Frm26FileAdd*>(ctx.forms.find(forms::Frm26FileAdd::kName));
    }
    return *f;
}

}  // namespace

void resetMainForm(core::AppContext& ctx, int steps) {
    auto& s = ctx.state;
    if (steps >= 1) {
        s.clearToolFlags();
        s.bolRubberLine = false;
        s.mouseOffsetX = s.mouseOffsetY = 0;
        s.F_h_lngAddedInfoGroup = 0;
        s.F_h_lngPointMoveEntity = 0;
    }
    if (steps >= 2) {
        s.labels.clear();
        s.F_h_lngAddedGroups.clear();
        s.intTranslucentCount = 0;
        s.F_h_lngMUSphere1 = s.F_h_lngMUSphere2 = 0;
        s.F_h_lngRubberLine = 0;
    }
    if (steps >= 3) {
        s.intRotateSpeedX = s.intRotateSpeedY = 0;
        s.timAutoRotateEnabled = false;
        s.timSliderEnabled = false;
    }
    if (steps >= 4) {
        s.lngModelGroups.clear();
        s.intModelCount = -1;
    }
}

bool p_subSTATEFileOpen(core::AppContext& ctx) {
    auto& s = ctx.state;
    auto& e = ctx.engine;
    // 1
    core::p_subResetAndCleanup(ctx);
    const bool handedOver = s.bolOpenByAssociation;
    if (!handedOver && !p_subOpenNewFile(ctx, kStateFileType)) return dialogCancelled(ctx);
    resetMainForm(ctx, 3);
    // 2
    if (handedOver) {
        if (auto* f = mainForm(ctx)) f->setText("cboZoomRate", "Active");
        s.comLoadStateFile = s.strFullPath;
        splitFullPath(ctx, s.strFullPath);
        s.bolOpenByAssociation = false;
    }
    // 3
    ctx.progress(25);
    ctx.pointer(11);
    const engine::WorldResult r = engine::loadWorld(e, s.strFullPath, bitmapFolder(ctx));
    if (!r.ok) {
        ctx.ui.msgBox("Error loading world", ui::Buttons::OK, "Error");
        ctx.comment(r.message);
        ctx.logLine(r.message);
        ctx.pointer(1);
        ctx.progress(100);
        core::p_subMainLoop(ctx, false);
        return false;
    }
    noteAll(ctx, r);
    // 4
    ctx.progress(50);
    const Handle model = e.group_create(kFirstModel);
    attachToModel(e, model, allGroups(e));
    s.lngModelGroups.assign(1, model);
    s.intModelCount = 0;
    // 5
    P_subSceneCentre(ctx);
    core::p_subInitializeCamera(ctx, true);
    e.group_move(model, {0, 0, 0});
    P_subSceneCentre(ctx);
    ctx.ui.pumpEvents();
    ctx.progress(75);
    core::P_subApplyLight(ctx, 0);
    core::p_subActivateCommandButtons(ctx);
    ctx.comment(logLoadedFile(ctx, s.strFullPath, " opened"));
    ctx.status(1, core::kStatusHelpText);
    ctx.pointer(1);
    P_subDeleteEngineLogs(ctx, s.strFolder);
    core::p_subMainLoop(ctx, true);
    ctx.progress(100);
    ctx.ui.setFocus();
    return true;
}

bool p_subSTATEFileAdd(core::AppContext& ctx, bool bolFirst, bool bolLink,
                       const std::string& path) {
    auto& s = ctx.state;
    auto& e = ctx.engine;
    // 1
    core::p_subResetAndCleanup(ctx);
    if (path.empty()) {
        if (!p_subOpenNewFile(ctx, bolLink ? kLinkStateFileType : kStateFileType))
            return dialogCancelled(ctx);
    } else {
        splitFullPath(ctx, path);
    }
    resetMainForm(ctx, 1);
    // 2
    if (bolFirst) {
        resetMainForm(ctx, 4);
        if (e.engine_load_world("", "", "", 4) != 0)
            ctx.ui.msgBox("Error loading world", ui::Buttons::OK, "Error");
        s.F_h_lngCamera = e.camera_get_default_camera();
        const forms::Form* f = mainForm(ctx);
        const bool perspective = !f || f->text("lstPersOrtho") == "Perspective";
        e.camera_set_zoom(s.F_h_lngCamera, perspective ? 24.0 : 1.0);
    }
    // 3
    s.intModelCount += 1;
    ctx.progress(25);
    ctx.pointer(11);
    const engine::WorldResult r =
        engine::addWorld(e, s.strFullPath, bitmapFolder(ctx), {0, 0, 0}, kNextModel);
    if (!r.ok) {
        ctx.ui.msgBox("Failed to load the selected model", ui::Buttons::OK, "Error");
        ctx.comment(r.message);
        ctx.logLine(r.message);
        ctx.pointer(1);
        s.intModelCount -= 1;
        return false;
    }
    noteAll(ctx, r);
    s.lngModelGroups.resize(std::size_t(s.intModelCount + 1), 0);
    s.lngModelGroups[std::size_t(s.intModelCount)] = r.group;
    // 4
    ctx.progress(50);
    attachToModel(e, r.group, groupsUnder(e, r.group));
    // 5
    e.group_move(r.group, {0, 0, 0});
    core::P_subApplyLight(ctx, r.group);
    ctx.progress(75);
    core::p_subActivateCommandButtons(ctx);
    ctx.comment(logLoadedFile(ctx, s.strFullPath, " added"));
    ctx.pointer(1);
    P_subDeleteEngineLogs(ctx, s.strFolder);
    if (bolFirst) {
        // The first world of a fresh scene: the camera goes to it.
        P_subSceneCentre(ctx);
        core::p_subInitializeCamera(ctx, true);
    }
    core::p_subMainLoop(ctx, true);
    ctx.progress(100);
    ctx.ui.beep();
    ctx.ui.setFocus();
    return true;
}

void mnuOpenEmptyFileEditor(core::AppContext& ctx) {
    core::p_subResetAndCleanup(ctx);
    ctx.comment(core::kMouseHelpText);
    ctx.status(1, core::kStatusHelpText);
    resetMainForm(ctx, 4);
    if (ctx.engine.engine_load_world("", "", "", 4) != 0)
        ctx.ui.msgBox("Error loading world", ui::Buttons::OK, "Error");
    P_subSceneCentre(ctx);
    core::p_subInitializeCamera(ctx, false);
    core::p_subActivateCommandButtons(ctx);
    core::p_subMainLoop(ctx, true);
}

void mnuSTATEFileOpenMulti(core::AppContext& ctx) {
    core::p_subResetAndCleanup(ctx);
    auto& f = fileAddForm(ctx);
    f.ensureLoaded();
    if (f.text("txtFolder").empty())
        f.setText("txtFolder",
                  ctx.state.strFolder.empty() ? programFolder(ctx) : ctx.state.strFolder);
    else
        f.refresh();
    const ui::FormAction action = ctx.ui.showModal(f);
    const std::vector<std::string> files = f.chosenPaths();
    if (action != ui::FormAction::Accept || f.cancelled || files.empty()) {
        core::p_subMainLoop(ctx, false);
        return;
    }
    const bool openFirst = f.optionValue("optOpen");
    for (std::size_t i = 0; i < files.size(); ++i)
        p_subSTATEFileAdd(ctx, openFirst && i == 0, false, files[i]);
}

bool p_subAssFileOpen(core::AppContext& ctx, const std::string& path) {
    auto& s = ctx.state;
    s.bolOpenByAssociation = true;
    s.strFullPath = path;
    s.comLoadStateFile = path;
    return p_subSTATEFileOpen(ctx);
}

bool openWorldFromCommandLine(core::AppContext& ctx, const std::vector<std::string>& args) {
    for (const std::string& a : args)
        if (!a.empty() && a[0] != '-') return p_subAssFileOpen(ctx, a);
    return false;
}

}  // namespace persistence

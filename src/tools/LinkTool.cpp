// The photo and file links: a click on an object opens the file its name links
// to, or, when it links to nothing, asks for one and records it.
#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"
#include "forms/Frm22Selection.h"
#include "tools/ExtraTools.h"
#include "tools/Snap.h"

namespace tools {

using engine::Handle;

namespace {

constexpr const char* kLinkTitle = "File link";
constexpr const char* kReplaceText =
    "The information of the object is replaced by the link, press 'Yes' to continue";

struct LinkKind {
    const char* command;
    const char* flag;
    const char* prompt;
};
constexpr LinkKind kPhoto{"cmdPhotoLink", "bolPhotoLink",
                          "Select the object to open or link a photograph"};
constexpr LinkKind kFile{"cmdFileLink", "bolFileLink", "Select the object to open or link a file"};

void endLinkTool(core::AppContext& ctx, const LinkKind& k) {
    ctx.state.setToolFlag(k.flag, false);
    if (auto* c = ctx.commands.findMutable(k.command)) c->enabled = true;
}

ui::FileRequest linkRequest(bool photo) {
    ui::FileRequest req;
    if (photo) {
        req.title = "Select the photograph";
        req.filetype = "Photograph";
        req.filter =
            "Pictures (*.jpg;*.jpeg;*.png;*.bmp;*.gif)|*.jpg;*.jpeg;*.png;*.bmp;*.gif|"
            "All (*.*)|*.*";
    } else {
        req.title = "Select the file to link";
        req.filetype = "File Link";
        req.filter = "All (*.*)|*.*";
    }
    return req;
}

}  // namespace

std::optional<std::string> linkTarget(std::string_view name) {
    const auto rec = core::parseInfoRecord(name);
    if (!rec || rec->code != kLinkCode) return std::nullopt;
    std::string path = rec->text.substr(0, rec->text.find_first_of("\r\n"));
    while (!path.empty() && (path.back() == ' ' || path.back() == '\t')) path.pop_back();
    while (!path.empty() && (path.front() == ' ' || path.front() == '\t')) path.erase(0, 1);
    if (path.empty()) return std::nullopt;
    return path;
}

bool openLinkOf(core::AppContext& ctx, std::string_view name) {
    const auto target = linkTarget(name);
    if (!target) return false;
    if (ctx.ui.openExternal(*target)) {
        ctx.comment("Opened " + *target);
    } else {
        ctx.comment("The linked file could not be opened: " + *target);
        ctx.ui.msgBox("The linked file could not be opened:\r\n" + *target, ui::Buttons::OK,
                      kLinkTitle);
    }
    return true;
}

void linkButtonDown(core::AppContext& ctx, bool photo, int button) {
    if (button == 4 || ctx.ui.pointer() == 11) return;
    const LinkKind& k = photo ? kPhoto : kFile;
    core::p_subResetAndCleanup(ctx);
    forms::selectionScopeBox(ctx).text = "Entity";
    ctx.state.setToolFlag(k.flag, true);
    if (auto* c = ctx.commands.findMutable(k.command)) c->enabled = false;
    ctx.pointer(kPickPointer);
    ctx.comment(k.prompt);
}

bool stepLink(core::AppContext& ctx, const Click& c) {
    auto& s = ctx.state;
    const bool photo = s.toolFlag(kPhoto.flag);
    if (!photo && !s.toolFlag(kFile.flag)) return false;
    const LinkKind& k = photo ? kPhoto : kFile;
    auto& eng = ctx.engine;
    const Handle polygon = pickInBand(ctx, c.x, c.y).polygon;
    const Handle entity = polygon != 0 ? eng.polygon_get_group(polygon) : 0;
    if (polygon == 0) {
        missKeepsTool(ctx);
        return true;
    }
    const std::string name = core::strEntityName(eng, polygon);
    if (openLinkOf(ctx, name)) {
        if (c.shift != 1) endLinkTool(ctx, k);
        return true;
    }
    if (entity == 0) {
        ctx.ui.msgBox("Polygon does not belong to a entity", ui::Buttons::OK, "Group error");
        return true;
    }
    // Information other than a link is not lost without asking.
    if (core::bolNameHasText(name) &&
        ctx.ui.msgBox(kReplaceText, ui::Buttons::YesNo, kLinkTitle) != ui::Answer::Yes)
        return true;
    const auto path = ctx.ui.openFile(linkRequest(photo));
    if (!path || path->empty()) {
        endLinkTool(ctx, k);
        return true;
    }
    core::p_subSetGroupPolygonNames(eng, entity,
                                    core::buildInfoRecord(true, kLinkCode, ctx.ui.now(), *path));
    ctx.comment("Linked to " + *path);
    if (c.shift != 1) endLinkTool(ctx, k);
    return true;
}

}  // namespace tools

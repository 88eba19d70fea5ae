#include "forms/Frm22Selection.h"

#include <algorithm>
#include <memory>

#include "core/AppContext.h"

namespace forms {

namespace {

using Action = Frm22Selection::Action;

constexpr const char* kScopeCaptions[Frm22Selection::kScopeCount] = {
    "Entity",  "Polygon",   "Group",     "File",        "Colour",
    "Visible", "Invisible", "Data type", "Rubber band",
};

// The scopes each action offers, in the order of kScopeOptions. The rubber band
// takes what is in view, so the unhide, which looks among hidden polygons, has none.
struct Offer {
    Action action;
    const char* caption;
    bool scopes[Frm22Selection::kScopeCount];
};

constexpr Offer kOffers[] = {
    {Action::Delete, "Delete", {true, true, true, true, true, true, true, true, true}},
    {Action::Hide, "Hide", {true, true, true, true, true, false, false, false, true}},
    {Action::PartialHide, "Partial hide", {true, true, true, true, true, true, false, false, true}},
    {Action::PartialUnhide,
     "Partial unhide",
     {true, true, true, true, true, true, false, true, true}},
    {Action::ChangeColour, "Change colour", {true, true, true, true, true, true, true, true, true}},
    {Action::ChangeName, "Change name", {true, true, true, true, true, true, true, true, true}},
    // Hidden polygons cannot be clicked: the click names what to look in.
    {Action::Unhide, "Unhide", {true, false, true, true, true, false, true, true, false}},
};

const Offer& offerOf(Action a) {
    for (const auto& o : kOffers)
        if (o.action == a) return o;
    return kOffers[0];
}

constexpr const char* kMainFormName = "frm03_MirrowMain";

}  // namespace

Frm22Selection::Frm22Selection(core::AppContext* ctx) : Form(kName, "Selection on:"), ctx_(ctx) {
    add(ControlKind::Frame, "fraSelection", "Selection on:");
    for (int i = 0; i < kScopeCount; ++i)
        add(ControlKind::OptionButton, kScopeOptions[i], kScopeCaptions[i], "fraSelection");
    at("optEntity").value = 1;
    add(ControlKind::CheckBox, "chkBackup", "Backup before the action");
    add(ControlKind::Frame, "fraTransLevel", "Translucency");
    add(ControlKind::Label, "lblLess", "Less", "fraTransLevel");
    auto& slider = add(ControlKind::Slider, "sliTransLevel", "", "fraTransLevel");
    slider.min = 1;
    slider.max = 100;
    slider.value = 50;
    add(ControlKind::Label, "lblMore", "More", "fraTransLevel");
    add(ControlKind::CommandButton, "cmdOK", "OK").onChange = [this] { hide(); };
    add(ControlKind::CommandButton, "cmdCancel", "Cancel").onChange = [this] { onQueryClose(); };
    P_subPrepare(Action::Delete);
}

Frm22Selection& Frm22Selection::of(core::AppContext& ctx) {
    auto* f = dynamic_cast<Frm22Selection*>(ctx.forms.find(kName));
    if (!f) {
        ctx.forms.add(std::make_unique<Frm22Selection>(&ctx));
        f = dynamic_cast<Frm22Selection*>(ctx.forms.find(kName));
    }
    return *f;
}

void Frm22Selection::onQueryClose() {
    if (ctx_) ctx_->state.bolDialogCancelled = true;
    hide();
}

void Frm22Selection::P_subPrepare(Action a) {
    action_ = a;
    const Offer& offer = offerOf(a);
    setCaption(std::string("Selection on: ") + offer.caption);
    int firstOffered = -1;
    bool selectedOffered = false;
    for (int i = 0; i < kScopeCount; ++i) {
        Control& c = at(kScopeOptions[i]);
        c.enabled = offer.scopes[i];
        if (c.enabled && firstOffered < 0) firstOffered = i;
        if (c.enabled && c.value) selectedOffered = true;
    }
    if (!selectedOffered && firstOffered >= 0) {
        for (int i = 0; i < kScopeCount; ++i) at(kScopeOptions[i]).value = 0;
        at(kScopeOptions[firstOffered]).value = 1;
    }
    const bool level = a == Action::PartialHide;
    for (const char* name : {"fraTransLevel", "sliTransLevel", "lblMore", "lblLess"})
        at(name).visible = level;
}

bool Frm22Selection::offers(const std::string& option) const {
    const Control* c = find(option);
    return c && c->kind == ControlKind::OptionButton && c->enabled;
}

std::string Frm22Selection::selectedScope() const {
    for (int i = 0; i < kScopeCount; ++i)
        if (optionValue(kScopeOptions[i])) return kScopeTexts[i];
    return {};
}

int Frm22Selection::transLevel() const {
    const Control* c = find("sliTransLevel");
    return c ? std::clamp(c->value, 1, 100) : 50;
}

void Frm22Selection::P_subSelectAccept(bool bolDialog) {
    ensureLoaded();
    // A script may have ticked a scope the action does not offer: it gives way.
    P_subPrepare(action_);
    if (bolDialog) hide();
    if (!ctx_) return;
    selectionScopeBox(*ctx_).text = selectedScope();
}

Control& selectionScopeBox(core::AppContext& ctx) {
    Form* main = ctx.forms.find(kMainFormName);
    if (!main) {
        ctx.forms.add(std::make_unique<Form>(kMainFormName));
        main = ctx.forms.find(kMainFormName);
    }
    if (Control* c = main->find("cboSelection")) return *c;
    Control& box = main->add(ControlKind::ComboBox, "cboSelection", "Selection on:");
    box.items.assign(std::begin(Frm22Selection::kScopeTexts),
                     std::end(Frm22Selection::kScopeTexts));
    box.text = "Entity";
    return box;
}

}  // namespace forms

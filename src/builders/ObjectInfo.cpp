#include "builders/ObjectInfo.h"

#include <cstdio>
#include <memory>

#include "builders/TextSearch.h"
#include "core/AppContext.h"
#include "core/NameRecords.h"
#include "core/Procedures.h"
#include "forms/Frm03MirrowMain.h"
#include "forms/Frm23ChangeInfo.h"

namespace builders {

namespace {

constexpr const char* kMainFormName = "frm03_MirrowMain";

forms::Form& mainForm(core::AppContext& ctx) {
    if (!ctx.forms.find(kMainFormName)) ctx.forms.add(std::make_unique<forms::Frm03MirrowMain>());
    return *ctx.forms.find(kMainFormName);
}

// The leading whole number of a text, 0 when there is none (lenient reading).
int leadingNumber(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size() && s[i] == ' ') ++i;
    int v = 0;
    for (; i < s.size() && s[i] >= '0' && s[i] <= '9' && v < 100000; ++i) v = v * 10 + (s[i] - '0');
    return v;
}

std::string twoDigits(int v) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%02d", v);
    return buf;
}

// A number as the program writes one into a text: up to 15 significant digits,
// no trailing zeros.
std::string numberText(double v) {
    if (v == 0) v = 0;  // no "-0"
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15G", v);
    return buf;
}

}  // namespace

std::string P_fncInfoString(const forms::Frm23ChangeInfo& form) {
    const bool bolProtected = form.checkValue("chkProtectInformation") == 1;
    std::string_view code = core::typeCodeForCaption(form.selectedType());
    if (code.empty()) code = "Undef";
    const ui::DateTime& t = form.picked();
    // The hour stays unpadded: records written so must keep reading back the same.
    std::string time =
        std::to_string(t.hour) + ":" + twoDigits(t.minute) + ":" + twoDigits(t.second);
    return core::buildInfoRecord(bolProtected ? core::kProtectedPrefix : core::kUnprotectedPrefix,
                                 code, core::formatRecordDate(t), time, form.text("txtChangeInfo"));
}

void P_subLoadInfoForm(forms::Frm23ChangeInfo& form, std::string_view strName,
                       const ui::DateTime& now) {
    form.ensureLoaded();
    auto record = core::parseInfoRecord(strName);
    if (!record) {
        form.selectType(forms::Frm23ChangeInfo::kOtherType);
        form.setDate(now.year, now.month, now.day);
        form.setTime(now.hour, now.minute, now.second);
        form.setText("txtChangeInfo", std::string(strName));
        return;
    }
    const int protectedValue = record->prefix == core::kProtectedPrefix ? 1 : 0;
    form.setCheck("chkProtectInformation", protectedValue);
    std::string_view caption = core::typeCaptionForCode(record->code);
    if (caption.empty()) {
        // A code of no known type opens as "other" and keeps its protection.
        form.selectType(forms::Frm23ChangeInfo::kOtherType);
        form.setCheck("chkProtectInformation", protectedValue);
    } else {
        form.selectType(std::string(caption));
    }

    int y = 0, mo = 0, d = 0;
    if (forms::parseRecordDate(record->date, y, mo, d)) form.setDate(y, mo, d);

    // Hour from the first two characters, minute from the two after the colon,
    // second from the last two: "9:05:07" and "09:05:07" read alike.
    std::string_view time = record->time;
    auto colon = time.find(':');
    std::size_t minuteAt = colon == std::string_view::npos ? 0 : colon + 1;
    int hour = leadingNumber(time.substr(0, 2));
    int minute = leadingNumber(time.substr(std::min(minuteAt, time.size()), 2));
    int second = leadingNumber(time.size() >= 2 ? time.substr(time.size() - 2) : time);
    const ui::DateTime& old = form.picked();
    if (!form.setTime(hour, minute, second)) {
        // Keep each part that does read as a time.
        form.setTime(hour <= 23 ? hour : old.hour, minute <= 59 ? minute : old.minute,
                     second <= 59 ? second : old.second);
    }
    form.setText("txtChangeInfo", record->text);
}

forms::Frm23ChangeInfo& changeInfoForm(core::AppContext& ctx) {
    auto* f = dynamic_cast<forms::Frm23ChangeInfo*>(ctx.forms.find(forms::Frm23ChangeInfo::kName));
    if (!f) {
        ctx.forms.add(std::make_unique<forms::Frm23ChangeInfo>(&ctx));
        f = dynamic_cast<forms::Frm23ChangeInfo*>(ctx.forms.find(forms::Frm23ChangeInfo::kName));
    }
    return *f;
}

std::string P_fncInfoString(core::AppContext& ctx) {
    auto& form = changeInfoForm(ctx);
    form.ensureLoaded();
    return P_fncInfoString(form);
}

void P_subLoadInfoForm(core::AppContext& ctx, std::string_view strName) {
    P_subLoadInfoForm(changeInfoForm(ctx), strName, ctx.ui.now());
}

std::optional<std::string> editInfoText(core::AppContext& ctx, std::string_view strName) {
    auto& form = changeInfoForm(ctx);
    form.bolInfoCancelled = 0;
    P_subLoadInfoForm(form, strName, ctx.ui.now());
    ctx.ui.showModal(form);
    if (form.bolInfoCancelled != 0) {
        form.bolInfoCancelled = 0;
        return std::nullopt;
    }
    return P_fncInfoString(form);
}

std::string pickCoordinateText(const core::AppContext& ctx, engine::Point3 p) {
    const engine::Point3& off = ctx.state.dblCoordOffset;
    return "( " + numberText((p.x - off.x) * 0.1) + ", " + numberText((p.y - off.y) * 0.1) + ", " +
           numberText((p.z - off.z) * 0.1) + " )     ";
}

bool infoDisplayOn(core::AppContext& ctx) { return mainForm(ctx).checkValue("chkShowInfo") == 1; }

void chkShowInfo_Click(core::AppContext& ctx) {
    forms::Form& f = mainForm(ctx);
    const bool on = f.checkValue("chkShowInfo") == 1;
    f.at("chkShowInfo").caption = on ? "Info ON" : "Info OFF";
    ctx.comment(on ? kInfoOnText : kInfoOffText);
    for (int panel = 1; panel <= 3; ++panel) ctx.status(panel, on ? "ON" : "OFF");
}

void showNameUnderMouse(core::AppContext& ctx, double x, double y) {
    if (!infoDisplayOn(ctx)) return;
    engine::PickHit hit = ctx.engine.engine_2D_point_to_3D(x, y);
    if (hit.polygon == 0) return;
    ctx.status(1,
               pickCoordinateText(ctx, hit.point) + core::strEntityName(ctx.engine, hit.polygon));
}

void showInformationOfPolygonAt(core::AppContext& ctx, double x, double y) {
    if (ctx.state.toolArmed()) return;
    engine::PickHit hit = ctx.engine.engine_2D_point_to_3D(x, y);
    if (hit.polygon == 0) return;
    std::string name = core::strEntityName(ctx.engine, hit.polygon);
    if (!core::bolNameHasText(name)) {
        ctx.ui.msgBox(kNoInformationText, ui::Buttons::OK, "Tarvik");
        return;
    }
    if (ctx.openNameLink && ctx.openNameLink(ctx, name)) return;
    // The lines of the name, split at CR LF, are the lines of the box.
    ctx.ui.msgBox(name, ui::Buttons::OK, kInformationTitle);
}

void registerObjectInfo(core::AppContext& ctx) {
    // Once a context: the mouse handlers chain, a second round would show twice.
    if (ctx.forms.find(forms::Frm23ChangeInfo::kName)) return;
    changeInfoForm(ctx);

    core::AppContext* c = &ctx;
    mainForm(ctx).at("chkShowInfo").onChange = [c] { chkShowInfo_Click(*c); };

    auto& in = ctx.input;
    in.onMouseMove = [old = in.onMouseMove](core::AppContext& a, int button, int shift, double x,
                                            double y) {
        if (old) old(a, button, shift, x, y);
        // A drag moves the camera; the name shows while the mouse only hovers.
        if (button == 0) showNameUnderMouse(a, x, y);
    };
    in.onDblClick = [old = in.onDblClick](core::AppContext& a, double x, double y) {
        if (old) old(a, x, y);
        showInformationOfPolygonAt(a, x, y);
    };

    core::Procedure info;
    info.name = "P_fncInfoString";
    info.body = [](core::AppContext& a, std::vector<core::Value>&) {
        return core::Value(P_fncInfoString(a));
    };
    ctx.procedures.add(std::move(info));
    core::Procedure load;
    load.name = "P_subLoadInfoForm";
    load.params = {core::ParamKind::Text};
    load.body = [](core::AppContext& a, std::vector<core::Value>& args) {
        P_subLoadInfoForm(a, args.at(0).text());
        return core::Value();
    };
    ctx.procedures.add(std::move(load));

    registerTextSearch(ctx);
}

}  // namespace builders

#include "builders/Markers.h"

#include <memory>
#include <optional>
#include <string>

#include "builders/BuilderMessages.h"
#include "builders/MarkerSpheres.h"
#include "builders/Meshes.h"
#include "builders/ObjectInfo.h"
#include "builders/StressTensor.h"
#include "core/AppContext.h"
#include "core/GroupPolygons.h"
#include "core/Lighting.h"
#include "core/NameRecords.h"
#include "forms/FormNumbers.h"
#include "forms/Frm11SelectMarkerStandard.h"
#include "forms/Frm23ChangeInfo.h"

namespace builders {

using engine::Engine;
using engine::Handle;
using engine::Point3;
using forms::MarkerSymbol;

namespace {

constexpr Point3 kUpright{0, 0, 1};

void nameAllPolygons(Engine& eng, Handle hGroup, const std::string& name) {
    core::forEachGroupPolygon(eng, hGroup, [&](Handle p) {
        eng.polygon_set_name(p, name);
        return true;
    });
}

Handle sphereAt(core::AppContext& ctx, const Point3& centre, double radius,
                const engine::Rgb& colour) {
    const Handle h =
        P_fncCreateSphere(ctx.engine, radius, sphereBands(ctx.settings.dblSphereLatitudeBands),
                          sphereBands(ctx.settings.dblSphereLongitudeBands), colour);
    if (h != 0) ctx.engine.group_set_location(h, centre);
    return h;
}

// Parts of a composite symbol under one marker group; on a missing part the parts
// made are deleted.
Handle markerGroupOf(core::AppContext& ctx, std::initializer_list<Handle> parts) {
    Engine& eng = ctx.engine;
    bool complete = true;
    for (Handle h : parts) complete = complete && h != 0;
    const Handle group = complete ? eng.group_create(kMarkerGroup) : 0;
    if (group == 0) {
        for (Handle h : parts)
            if (h != 0) eng.group_delete_members(h);
        return 0;
    }
    for (Handle h : parts) eng.group_set_father_group(h, group);
    return group;
}

// The information form for a new marker: a general text of now, empty to type
// into. Nothing when it is closed by its frame.
std::optional<std::string> newComment(core::AppContext& ctx) {
    auto& form = changeInfoForm(ctx);
    form.ensureLoaded();
    form.bolInfoCancelled = 0;
    form.selectType(forms::Frm23ChangeInfo::kGeneralType);
    form.setNow();
    form.setText("txtChangeInfo", "");
    ctx.ui.showModal(form);
    if (form.bolInfoCancelled != 0) {
        form.bolInfoCancelled = 0;
        return std::nullopt;
    }
    return P_fncInfoString(form);
}

bool standsAlongNormal(MarkerSymbol s) {
    return s == MarkerSymbol::DirCylSphere || s == MarkerSymbol::DirCylDiamond;
}

}  // namespace

MarkerRequest readMarkerForm(const forms::Frm10SelectMarker& form) {
    MarkerRequest r;
    r.symbol = form.symbol();
    r.placement = form.placement();
    r.link = form.link();
    r.sphereRadius = forms::valText(form.text("cboSphereRadius")) * 10.0;
    r.cylDiameter = forms::valText(form.text("cboCylDiameter")) * 10.0;
    r.cylLength = forms::valText(form.text("cboCylLength")) * 10.0;
    r.colour = form.currentColour();
    return r;
}

double markerHeight(const MarkerRequest& q) {
    switch (q.symbol) {
        case MarkerSymbol::Sphere:
        case MarkerSymbol::SphereText:
        case MarkerSymbol::SphereCoordinates:
            return 2 * q.sphereRadius;
        case MarkerSymbol::Cylinder:
        case MarkerSymbol::ConeUpright:
            return q.cylLength;
        case MarkerSymbol::CylSphere:
        case MarkerSymbol::DirCylSphere:
            return q.cylLength + q.sphereRadius;
        case MarkerSymbol::CylDiamond:
        case MarkerSymbol::DirCylDiamond:
            return q.cylLength + 2 * q.sphereRadius;
        default:
            return 0;
    }
}

Point3 markerFoot(const MarkerRequest& q, const Point3& p, const Point3& axis) {
    switch (q.placement) {
        case forms::MarkerPlacement::Top:
            return p - axis * markerHeight(q);
        case forms::MarkerPlacement::Centre:
            return p - axis * (markerHeight(q) / 2);
        case forms::MarkerPlacement::Bottom:
            break;
    }
    return p;
}

Handle buildMarkerSymbol(core::AppContext& ctx, const MarkerRequest& q, const Point3& p,
                         const Point3& axis) {
    Engine& eng = ctx.engine;
    const Point3 foot = markerFoot(q, p, axis);
    const Point3 end = foot + axis * q.cylLength;
    const double r = q.sphereRadius;
    Handle h = 0;
    switch (q.symbol) {
        case MarkerSymbol::Sphere:
        case MarkerSymbol::SphereText:
        case MarkerSymbol::SphereCoordinates:
            h = sphereAt(ctx, foot + axis * r, r, q.colour);
            break;
        case MarkerSymbol::Cylinder:
            h = P_fncCreateCylinder(eng, foot, end, q.cylDiameter, q.colour);
            break;
        case MarkerSymbol::CylSphere:
        case MarkerSymbol::DirCylSphere: {
            const Handle cylinder = P_fncCreateCylinder(eng, foot, end, q.cylDiameter, q.colour);
            h = markerGroupOf(ctx, {cylinder, sphereAt(ctx, end, r, q.colour)});
            break;
        }
        case MarkerSymbol::CylDiamond:
        case MarkerSymbol::DirCylDiamond: {
            // Two pyramids base to base; the shared bases would never be seen.
            const Point3 waist = end + axis * r;
            const Handle cylinder = P_fncCreateCylinder(eng, foot, end, q.cylDiameter, q.colour);
            const Handle lower = P_fncCreate4Cone(eng, true, waist, end, 2 * r, 2 * r, q.colour);
            const Handle upper =
                P_fncCreate4Cone(eng, true, waist, end + axis * (2 * r), 2 * r, 2 * r, q.colour);
            h = markerGroupOf(ctx, {cylinder, lower, upper});
            break;
        }
        case MarkerSymbol::ConeUpright:
            h = P_fncCreate4Cone(eng, false, foot, end, q.cylDiameter, q.cylDiameter, q.colour);
            break;
        default:
            return 0;
    }
    checkBuilderHandle(ctx, h, BuilderFailure::Object);
    return h;
}

std::string markerCoordinateText(const core::AppContext& ctx, const Point3& p) {
    std::string t = pickCoordinateText(ctx, p);
    while (!t.empty() && t.back() == ' ') t.pop_back();
    return t;
}

void finishPlacedMarker(core::AppContext& ctx, Handle hGroup) {
    Engine& eng = ctx.engine;
    ctx.state.F_h_lngAddedGroups.push_back(hGroup);
    if (ctx.state.F_h_lngAddedInfoGroup != 0)
        eng.group_set_father_group(hGroup, ctx.state.F_h_lngAddedInfoGroup);
    core::P_subApplyLight(ctx, hGroup);

    switch (selectMarkerForm(ctx).link()) {
        case forms::MarkerLink::Comment:
            if (auto name = newComment(ctx)) nameAllPolygons(eng, hGroup, *name);
            break;
        case forms::MarkerLink::Photo: {
            ui::FileRequest req;
            req.title = "Select the photograph";
            req.filetype = "Photograph";
            req.filter =
                "Pictures (*.jpg;*.jpeg;*.png;*.bmp;*.gif)|*.jpg;*.jpeg;*.png;*.bmp;*.gif|"
                "All (*.*)|*.*";
            if (auto path = ctx.ui.openFile(req))
                nameAllPolygons(eng, hGroup,
                                core::buildInfoRecord(true, "LinkF", ctx.ui.now(), *path));
            break;
        }
        case forms::MarkerLink::None:
            break;
    }
}

Handle placeMarker(core::AppContext& ctx, const Point3& p, Handle hPolygon) {
    const MarkerRequest q = readMarkerForm(selectMarkerForm(ctx));
    Engine& eng = ctx.engine;
    if (q.symbol == MarkerSymbol::None || q.symbol == MarkerSymbol::ConePointer) return 0;
    if (q.symbol == MarkerSymbol::VirginStress) {
        const Handle h = drawStressTensor(ctx, p);
        if (h != 0) finishPlacedMarker(ctx, h);
        return h;
    }

    Point3 axis = kUpright;
    engine::Plane plane;
    if (standsAlongNormal(q.symbol) && eng.polygon_get_plane(hPolygon, plane) == 0) axis = plane.n;

    std::optional<std::string> label;
    if (q.symbol == MarkerSymbol::SphereText) {
        label = ctx.ui.inputBox(kEntityPrompt, kEntityTitle, "");
        if (!label) return 0;
    }
    const Handle h = buildMarkerSymbol(ctx, q, p, axis);
    if (h == 0) return 0;
    if (label) {
        core::p_subSetGroupPolygonNames(eng, h, core::buildVTextName(ctx.ui.now(), *label));
        eng.group_set_name(h, *label);
        ctx.state.labels.push_back({h, eng.group_get_center_of_mass(h), *label});
    } else if (q.symbol == MarkerSymbol::SphereCoordinates) {
        eng.group_set_name(h, markerCoordinateText(ctx, p));
    }
    finishPlacedMarker(ctx, h);
    return h;
}

Handle placeMarkerPointer(core::AppContext& ctx, const Point3& first, const Point3& second) {
    const MarkerRequest q = readMarkerForm(selectMarkerForm(ctx));
    const Handle h = fncCreateCone(ctx.engine, first, second, q.cylDiameter, q.colour);
    if (!checkBuilderHandle(ctx, h, BuilderFailure::Object)) return 0;
    finishPlacedMarker(ctx, h);
    return h;
}

void refreshTextMarkers(core::AppContext& ctx) {
    Engine& eng = ctx.engine;
    auto& labels = ctx.state.labels;
    labels.clear();
    std::vector<std::string> items;
    for (Handle g = eng.group_get_first_group(); g != 0; g = eng.group_get_next(g)) {
        const Handle first = eng.group_get_first_polygon(g);
        if (first == 0) continue;
        const std::string name = eng.entity_get_name(first);
        if (name.rfind("UP_VText", 0) != 0 && name.rfind("PR_VText", 0) != 0) continue;
        const auto record = core::parseInfoRecord(name);
        labels.push_back({g, eng.group_get_center_of_mass(g), record ? record->text : ""});
        std::string item = eng.entity_get_name(g);
        const Handle father = eng.group_get_father_group(g);
        if (father != 0 && father != g) {
            const std::string fatherName = eng.entity_get_name(father);
            if (core::bolNameHasText(fatherName)) item += " (" + fatherName + ")";
        }
        items.push_back(std::move(item));
    }
    auto& list = selectMarkerForm(ctx).at("lstMarkerText");
    list.items = std::move(items);
    list.text.clear();
    list.value = -1;
}

forms::Frm10SelectMarker& selectMarkerForm(core::AppContext& ctx) {
    using forms::Frm10SelectMarker;
    auto* f = dynamic_cast<Frm10SelectMarker*>(ctx.forms.find(Frm10SelectMarker::kName));
    if (f) return *f;
    auto form = std::make_unique<Frm10SelectMarker>(&ctx);
    f = form.get();
    ctx.forms.add(std::move(form));
    core::AppContext* c = &ctx;
    f->at("cmdRefreshText").onChange = [c] { refreshTextMarkers(*c); };
    if (!ctx.forms.find(forms::Frm11SelectMarkerStandard::kName))
        ctx.forms.add(std::make_unique<forms::Frm11SelectMarkerStandard>(&ctx));
    stressTensorForm(ctx);
    return *f;
}

}  // namespace builders

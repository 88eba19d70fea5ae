#include "builders/DiscPlanes.h"

#include <cmath>
#include <memory>

#include "builders/BuilderMessages.h"
#include "builders/Geometry.h"
#include "builders/Meshes.h"
#include "builders/RingTools.h"
#include "core/AppContext.h"
#include "core/Lighting.h"
#include "core/NameRecords.h"
#include "engine/Engine.h"
#include "forms/FormNumbers.h"
#include "forms/Frm15DiscPlane.h"

namespace builders {

using engine::Engine;
using engine::Handle;
using engine::Point3;

namespace {

bool allFinite(std::initializer_list<double> values) {
    for (double v : values)
        if (!std::isfinite(v)) return false;
    return true;
}

// A face of the slab: made, added, filled and grouped; a refused face is dropped.
void addFace(Engine& eng, Handle group, const engine::Rgb& colour,
             std::initializer_list<Point3> corners) {
    Handle polygon = eng.polygon_create();
    for (const Point3& p : corners) eng.polygon_add_point(polygon, vertexAt(p));
    finishPolygon(eng, polygon, group, colour, Finish::AddFillGroup);
}

}  // namespace

Handle createDiscPlane(Engine& eng, const Point3& P1, const Point3& P2, double dblDip,
                       double dblHorOffset, double dblVertOffset, double dblThickness,
                       const engine::Rgb& lngColour, Point3& normal) {
    normal = Point3{};
    const Handle group = eng.group_create(kDiscPlaneGroup);
    if (group == 0) return 0;
    if (!P1.finite() || !P2.finite() ||
        !allFinite({dblDip, dblHorOffset, dblVertOffset, dblThickness}))
        return group;

    Point3 d = P2 - P1;
    Engine::math_normalize_vector(d);
    const Point3 a = P1 - d * dblHorOffset;
    const Point3 b = P2 + d * dblHorOffset;
    const Point3 w{d.y, -d.x, 0};

    // A level plane: the tangent needs a dip that is not exactly 0.
    const double dip = (dblDip == 0 ? kDivZero : dblDip) * kDegree;
    const double s = std::fabs(std::sin(dip) * dblVertOffset);
    const double h = s / std::tan(dip);
    const Point3 up{0, 0, s};
    const Point3 c1 = a + w * h - up;
    const Point3 c2 = b + w * h - up;
    const Point3 c3 = b - w * h + up;
    const Point3 c4 = a - w * h + up;

    engine::Plane plane;
    if (Engine::math_points_to_plane(plane, c1, c2, c3) == 0) normal = plane.n;
    const Point3 half = normal * (dblThickness / 2);
    const Point3 t1 = c1 + half, t2 = c2 + half, t3 = c3 + half, t4 = c4 + half;
    const Point3 b1 = c1 - half, b2 = c2 - half, b3 = c3 - half, b4 = c4 - half;

    // The corners run clockwise seen from the normal's side, so every face below
    // is seen from outside the slab.
    addFace(eng, group, lngColour, {t1, t2, t3, t4});
    addFace(eng, group, lngColour, {b1, b4, b3, b2});
    if (dblThickness != 0) {
        addFace(eng, group, lngColour, {t1, b1, b2, t2});
        addFace(eng, group, lngColour, {t1, t4, b4, b1});
        addFace(eng, group, lngColour, {t2, b2, b3, t3});
        addFace(eng, group, lngColour, {t3, b3, b4, t4});
    }
    return group;
}

Handle P_fncCreate2PointDiscPlane(Engine& eng, const Point3& P1, const Point3& P2, double dblDip,
                                  double dblHorOffset, double dblVertOffset, double dblThickness,
                                  const engine::Rgb& lngColour) {
    Point3 n;
    return createDiscPlane(eng, P1, P2, dblDip, dblHorOffset, dblVertOffset, dblThickness,
                           lngColour, n);
}

Handle createDiscPlane3(Engine& eng, const Point3& P1, const Point3& P2, const Point3& P3,
                        double dblHorOffset, double dblVertOffset, double dblThickness,
                        const engine::Rgb& lngColour, Point3& normal) {
    const Point3 m = (P1 + P2 + P3) * (1.0 / 3.0);
    engine::Plane plane;
    Engine::math_points_to_plane(plane, P1, P2, P3);
    const Point3 n = plane.n;
    Point3 strike{0, 1, 0};  // a level plane
    if (!(n == Point3{0, 0, -1}) && !(n == Point3{0, 0, 1})) {
        strike = engine::Engine::math_cross(n, Point3{0, 0, 1});
        Engine::math_normalize_vector(strike);
    }
    const Point3 a = m + strike * dblHorOffset;
    const Point3 b = m - strike * dblHorOffset;
    double dip = ACosDeg(n.z);
    if (dip == 0 || dip == 180) dip = kDivZero;
    return createDiscPlane(eng, a, b, dip, 0, dblVertOffset, dblThickness, lngColour, normal);
}

Handle P_fncCreate3PointDiscPlane(Engine& eng, const Point3& P1, const Point3& P2, const Point3& P3,
                                  double dblHorOffset, double dblVertOffset, double dblThickness,
                                  const engine::Rgb& lngColour) {
    Point3 n;
    return createDiscPlane3(eng, P1, P2, P3, dblHorOffset, dblVertOffset, dblThickness, lngColour,
                            n);
}

void P_subPlanePointsFromPole(Engine& eng, float sngNorthAxis, const Point3& P, double dblTrend,
                              double dblPlunge, bool bolShowPole, Handle& hPole, Point3& A,
                              Point3& B) {
    // Exact values on which a later tangent or division would blow up.
    if (dblTrend == 0) dblTrend = 1E-6;
    if (dblTrend == 45) dblTrend = 44.999999;
    if (dblPlunge == 45) dblPlunge = 44.999999;
    if (dblPlunge == 90) dblPlunge = 89.999999;

    const double plunge = dblPlunge * kDegree;
    const double trend = dblTrend * kDegree - static_cast<double>(sngNorthAxis) * kPi;
    const double horizontal = std::cos(plunge) * 100;
    const Point3 pole{std::cos(trend) * horizontal, -std::sin(trend) * horizontal,
                      std::sin(plunge) * -100};
    const Point3 tip = P + pole;

    hPole = 0;
    if (bolShowPole) hPole = P_fncCreateCylinder(eng, P, tip, kPoleDiameter, kPoleColour);

    Point3 up = P - tip;
    for (int i = 0; i < 3; ++i) up[i] = nonZero(up[i]);
    Point3 strike = Engine::math_cross(up, Point3{0, 0, 1});
    Engine::math_normalize_vector(strike);
    A = P + strike;
    B = P - strike;
}

void P_subPlanePointsFromPole(core::AppContext& ctx, const Point3& P, double dblTrend,
                              double dblPlunge, bool bolShowPole, Handle& hPole, Point3& A,
                              Point3& B) {
    P_subPlanePointsFromPole(ctx.engine, ctx.state.sngNorthAxis, P, dblTrend, dblPlunge,
                             bolShowPole, hPole, A, B);
}

std::string discPlaneRecord(const ui::DateTime& when, double dblDip, double dblDipDirection) {
    const std::string crlf(core::kCrLf);
    return "PR_UGmap" + crlf + core::formatRecordDate(when) + crlf + core::formatRecordTime(when) +
           crlf + "Dip (degrees):" + crlf + forms::numberText(dblDip) + crlf +
           "Direction (degrees):" + crlf + forms::numberText(dblDipDirection);
}

forms::Frm15DiscPlane& discPlaneForm(core::AppContext& ctx) {
    auto* f = dynamic_cast<forms::Frm15DiscPlane*>(ctx.forms.find(forms::Frm15DiscPlane::kName));
    if (!f) {
        auto form = std::make_unique<forms::Frm15DiscPlane>(&ctx);
        f = form.get();
        ctx.forms.add(std::move(form));
    }
    f->attach(&ctx);
    f->attachPoleConversions(&P_fncDipToPolePlunge, &P_fncDipDirToPoleTrend);
    return *f;
}

namespace {

struct PlaneSizes {
    double hor = 0, vert = 0, thickness = 0;
    engine::Rgb colour;
};

PlaneSizes readSizes(const forms::Frm15DiscPlane& form) {
    PlaneSizes s;
    s.hor = forms::valText(form.text("cboPlaneHorOffsetAlongPlane")) * 10.0;
    s.vert = forms::valText(form.text("cboPlaneVertOffsetAlongPlane")) * 10.0;
    if (s.vert == 0) s.vert = kDivZero;
    s.thickness = forms::valText(form.text("cboPlaneThickness")) * 10.0;
    s.colour = form.currentColour();
    return s;
}

// A built slab: the box on failure, else its record, its place in the added
// groups and its light.
Handle finishPlacedPlane(core::AppContext& ctx, Handle group, Point3 normal) {
    if (!checkBuilderHandle(ctx, group, BuilderFailure::DiscPlane)) return 0;
    double dip = 0, direction = 0;
    P_subDipAndDipDirection(ctx, std::nullopt, false, true, normal, dip, direction);
    // A direction due north can come out as 360 on the grid's axis: it reads 0.
    if (direction >= 360) direction -= 360;
    core::p_subSetGroupPolygonNames(ctx.engine, group,
                                    discPlaneRecord(ctx.ui.now(), dip, direction));
    ctx.state.F_h_lngAddedGroups.push_back(group);
    if (ctx.state.F_h_lngAddedInfoGroup != 0)
        ctx.engine.group_set_father_group(group, ctx.state.F_h_lngAddedInfoGroup);
    core::P_subApplyLight(ctx, group);
    return group;
}

}  // namespace

Handle placeDiscPlaneOnePoint(core::AppContext& ctx, const Point3& P) {
    auto& form = discPlaneForm(ctx);
    const PlaneSizes s = readSizes(form);
    const double trend = forms::valText(form.text("cboPoleTrend"));
    const double plunge = forms::valText(form.text("cboPolePlunge"));
    const bool showPole = form.checkValue("chkShowPole") == 1;
    Handle hPole = 0;
    Point3 a, b;
    P_subPlanePointsFromPole(ctx, P, trend, plunge, showPole, hPole, a, b);
    if (showPole) {
        if (!checkBuilderHandle(ctx, hPole, BuilderFailure::Cylinder)) return 0;
        ctx.state.F_h_lngAddedGroups.push_back(hPole);
        if (ctx.state.F_h_lngAddedInfoGroup != 0)
            ctx.engine.group_set_father_group(hPole, ctx.state.F_h_lngAddedInfoGroup);
        core::P_subApplyLight(ctx, hPole);
    }
    Point3 n;
    const Handle h =
        createDiscPlane(ctx.engine, a, b, 90 - plunge, s.hor, s.vert, s.thickness, s.colour, n);
    return finishPlacedPlane(ctx, h, n);
}

Handle placeDiscPlaneTwoPoints(core::AppContext& ctx, const Point3& P1, const Point3& P2) {
    auto& form = discPlaneForm(ctx);
    const PlaneSizes s = readSizes(form);
    const double dip = forms::valText(form.text("cboPlaneDip"));
    Point3 n;
    const Handle h =
        createDiscPlane(ctx.engine, P1, P2, dip, s.hor, s.vert, s.thickness, s.colour, n);
    return finishPlacedPlane(ctx, h, n);
}

Handle placeDiscPlaneThreePoints(core::AppContext& ctx, const Point3& P1, const Point3& P2,
                                 const Point3& P3) {
    const PlaneSizes s = readSizes(discPlaneForm(ctx));
    Point3 n;
    const Handle h =
        createDiscPlane3(ctx.engine, P1, P2, P3, s.hor, s.vert, s.thickness, s.colour, n);
    return finishPlacedPlane(ctx, h, n);
}

}  // namespace builders

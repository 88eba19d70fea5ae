#include "core/Camera.h"

#include <cmath>

#include "core/AppContext.h"
#include "forms/Frm04CamIniPosition.h"

namespace core {

namespace {
constexpr double kShortPi = 3.1416;  // deliberately short, as the start azimuth has always used

forms::Frm04CamIniPosition& camIniForm(AppContext& ctx) {
    auto* f = ctx.forms.find("frm04_CamIniPosition");
    if (!f) {
        ctx.forms.add(std::make_unique<forms::Frm04CamIniPosition>());
        f = ctx.forms.find("frm04_CamIniPosition");
    }
    return dynamic_cast<forms::Frm04CamIniPosition&>(*f);
}
}  // namespace

float northAxisFor(engine::Point3 c) { return (c.x >= 0 && c.y <= 0) ? 0.0f : 0.5f; }

void setRotationCentre(AppContext& ctx, engine::Point3 centre) {
    ctx.state.dblRotationCentre = centre;
    ctx.state.sngNorthAxis = northAxisFor(centre);
}

void applyCulling(AppContext& ctx) {
    auto& s = ctx.state;
    double culling = s.lngCullingDepth <= 0 ? s.sngProjectionFactor * 4000000.0
                                            : static_cast<double>(s.lngCullingDepth);
    s.dblFogDepth = culling + static_cast<double>(s.lngCutOff);
    ctx.engine.camera_set_distance_from_eye(s.F_h_lngCamera, static_cast<double>(s.lngCutOff));
    ctx.engine.engine_set_fog(true, s.dblFogDepth, static_cast<double>(s.lngCutOff));
}

bool p_subInitializeCamera(AppContext& ctx, bool bolNewLook) {
    auto& s = ctx.state;
    const auto c = s.dblRotationCentre;
    s.sngQuadrant = (c.x < 0 && c.y > 0) ? 0.0f : 0.5f;
    auto& f = camIniForm(ctx);
    f.ensureLoaded();
    double q = s.sngQuadrant;
    if (f.optionValue("optNorthRight"))
        s.dblCamAzimuth = (q + 0.5) * kShortPi;
    else if (f.optionValue("optNorthBottom"))
        s.dblCamAzimuth = (q + 1.0) * kShortPi;
    else if (f.optionValue("optNorthLeft"))
        s.dblCamAzimuth = (q + 1.5) * kShortPi;
    else
        s.dblCamAzimuth = (q + 0.0) * kShortPi;
    s.dblCamElevation = kShortPi * 0.5;
    s.dblCamDistance = 50000.0;

    s.F_h_lngCamera = ctx.engine.camera_get_default_camera();
    if (s.F_h_lngCamera == 0 || ctx.engine.camera_set_zoom(s.F_h_lngCamera, 24.0) != 0) {
        ctx.ui.msgBox("Culling is not supported by the hardware", ui::Buttons::OK, "Hardware problem");
        return false;
    }
    applyCulling(ctx);
    if (bolNewLook && ctx.coordinateLimitCheck) ctx.coordinateLimitCheck(ctx);
    p_subCameraUpdate(ctx);
    return true;
}

void p_subCameraUpdate(AppContext& ctx) {
    auto& s = ctx.state;
    if (s.F_h_lngCamera == 0) return;
    ctx.engine.camera_set_distance_from_eye(s.F_h_lngCamera, static_cast<double>(s.lngCutOff));
    if (s.bolLightFollowsCamera != 0 && ctx.lightFollowCamera) ctx.lightFollowCamera(ctx);
    ctx.engine.engine_set_fog(true, s.dblFogDepth, static_cast<double>(s.lngCutOff));

    const double a = s.dblCamAzimuth, e = s.dblCamElevation, d = s.dblCamDistance;
    engine::Point3 off{std::cos(a) * std::cos(e) * d, std::sin(a) * std::cos(e) * d, std::sin(e) * d};
    engine::Point3 loc = s.dblRotationCentre + off;
    ctx.engine.camera_set_location(s.F_h_lngCamera, loc);
    engine::Point3 dir = s.dblRotationCentre - loc;
    double upZ = off.z / (d - off.z * off.z / std::tan(e));
    // The engine needs only the line of the up vector; the formula's sign turns with the
    // distance's size, so keep it pointing up and the picture upright.
    if (!std::isfinite(upZ) || upZ == 0) upZ = 1;
    ctx.engine.camera_set_axis_system(s.F_h_lngCamera, dir, {0, 0, std::fabs(upZ)});
    s.bolCameraMoved = true;
}

}  // namespace core

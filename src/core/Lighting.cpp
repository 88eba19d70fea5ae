#include "core/Lighting.h"

#include <tbb/parallel_for.h>

#include <climits>
#include <memory>
#include <vector>

#include "core/AngleMath.h"
#include "core/AppContext.h"
#include "core/GroupPolygons.h"
#include "core/LightingProcedures.h"
#include "forms/Frm06Lighting.h"

namespace core {

namespace {

constexpr int kWaitPointer = 11;
constexpr int kNormalPointer = 1;
constexpr double kLightDistance = 100000.0;

// Sets the light's shape and aim for one baking pass.
void aimLight(engine::Engine& eng, engine::Handle light, engine::Handle hGroup,
              engine::Point3 location, engine::Point3 target, int type, double ambient,
              double diffuse, double specular, double shining) {
    eng.light_set_location(light, location);
    eng.light_point_at(light, target);
    eng.light_set_entity_to_light(light, hGroup);
    eng.light_set_type_of_light(light, type);
    eng.light_set_ambient(light, ambient);
    eng.light_set_diffuse(light, diffuse);
    eng.light_set_specular(light, specular);
    eng.light_set_specular_shining(light, shining);
}

engine::Point3 cameraDirection(AppContext& ctx) {
    if (ctx.state.F_h_lngCamera != 0)
        return ctx.engine.camera_get_direction(ctx.state.F_h_lngCamera);
    return ctx.engine.camera().direction;
}

}  // namespace

void installLighting(AppContext& ctx) {
    lightingForm(ctx);
    ctx.lightFollowCamera = [](AppContext& c) { P_subLightFollowCamera(c, 0); };
    registerLightingProcedures(ctx.procedures);
}

forms::Frm06Lighting& lightingForm(AppContext& ctx) {
    if (auto* f =
            dynamic_cast<forms::Frm06Lighting*>(ctx.forms.find(forms::Frm06Lighting::kName))) {
        f->attach(&ctx);
        return *f;
    }
    auto form = std::make_unique<forms::Frm06Lighting>(&ctx);
    forms::Frm06Lighting& ref = *form;
    ctx.forms.add(std::move(form));
    return ref;
}

int flatShadingGrey(int intMode, const engine::Point3& n) {
    if (intMode == 1) {
        return static_cast<int>(roundHalfEven(n.y * 45) + roundHalfEven(n.z * 105)) + 105;
    }
    double down = engine::dot(n, engine::Point3{0, 0, -1});
    return static_cast<int>(roundHalfEven(ACosRad(down) * 255)) & 255;
}

int followCameraGrey(const engine::Point3& cameraDirection, const engine::Point3& n) {
    return static_cast<int>(roundHalfEven(ACosRad(engine::dot(cameraDirection, n)) * 255)) & 255;
}

void P_subApplyLight(AppContext& ctx, engine::Handle hGroup) {
    ctx.ui.pumpEvents();
    forms::Frm06Lighting& form = lightingForm(ctx);
    const std::string option = form.selectedOption();
    if (option == "optNoLights") {
        P_subLightOff(ctx, hGroup);
    } else if (option == "optFlatShading1") {
        P_subFlatShading(ctx, 1, hGroup);
    } else if (option == "optFlatShading2") {
        P_subFlatShading(ctx, 2, hGroup);
    } else if (option == "optLightOnceTopBottom") {
        P_subLightTopBottom(ctx, hGroup);
    } else if (option == "optLightOnce1SideCamera" || option == "optSemiDynamic") {
        P_subLightFromCamera(ctx, hGroup);
    } else if (option == "optDynamicLight") {
        P_subLightFollowCamera(ctx, hGroup);
    }
    ctx.state.bolLightFollowsCamera = option == "optDynamicLight" ? -1 : 0;
    // The camera update calls the hook each frame while the flag is set.
    if (ctx.state.bolLightFollowsCamera != 0 && !ctx.lightFollowCamera)
        ctx.lightFollowCamera = [](AppContext& c) { P_subLightFollowCamera(c, 0); };
}

void P_subLightOff(AppContext& ctx, engine::Handle hGroup) {
    ctx.engine.light_set_entity_to_light(ctx.state.F_h_lngLight, hGroup);
    ctx.engine.light_remove_light(ctx.state.F_h_lngLight);
}

// The loops here pump no events, so the interrupt flag cannot change while they run;
// a flag left set by an earlier command must not leave new polygons unlit.
void P_subFlatShading(AppContext& ctx, int intMode, engine::Handle hGroup) {
    engine::Engine& eng = ctx.engine;
    ctx.pointer(kWaitPointer);
    std::vector<engine::Handle> handles;
    forEachGroupPolygon(eng, hGroup, [&](engine::Handle h) {
        handles.push_back(h);
        return true;
    });
    // The greys are worked out on every core, then set in the walk's order.
    constexpr int kLeave = INT_MIN, kNoLight = INT_MIN + 1;  // disabled or degenerate; dark
    std::vector<int> greys(handles.size());
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, handles.size(), 4096),
                      [&](const tbb::blocked_range<std::size_t>& r) {
                          for (std::size_t i = r.begin(); i != r.end(); ++i) {
                              const engine::Handle h = handles[i];
                              engine::Plane plane;
                              if (eng.polygon_is_disabled(h))
                                  greys[i] = kLeave;
                              else if (eng.polygon_get_brightness(h) == 0)
                                  greys[i] = kNoLight;
                              else if (eng.polygon_get_plane(h, plane) != 0)
                                  greys[i] = kLeave;
                              else
                                  greys[i] = flatShadingGrey(intMode, plane.n);
                          }
                      });
    for (std::size_t i = 0; i < handles.size(); ++i) {
        if (greys[i] == kNoLight)
            eng.polygon_remove_light(handles[i]);
        else if (greys[i] != kLeave)
            eng.polygon_set_light(handles[i], engine::Rgb{greys[i], greys[i], greys[i]});
    }
    ctx.pointer(kNormalPointer);
}

void P_subLightTopBottom(AppContext& ctx, engine::Handle hGroup) {
    engine::Engine& eng = ctx.engine;
    const engine::Handle light = ctx.state.F_h_lngLight;
    const engine::Point3 centre = ctx.state.dblRotationCentre;
    eng.light_calcualte_vertices_normals_automatically(50);
    aimLight(eng, light, hGroup, centre + engine::Point3{0, 0, kLightDistance}, centre, 58, 1.65,
             0.9, 0.6, 2.0);
    eng.light_activate(light, 0);
    eng.light_calcualte_vertices_normals_automatically(50);
    aimLight(eng, light, hGroup, centre - engine::Point3{0, 0, kLightDistance}, centre, 58, 0, 0.9,
             0.6, 2.0);
    eng.light_activate(light, 1);
}

void P_subLightFromCamera(AppContext& ctx, engine::Handle hGroup) {
    engine::Engine& eng = ctx.engine;
    const engine::Handle light = ctx.state.F_h_lngLight;
    engine::Point3 eye = ctx.state.F_h_lngCamera != 0
                             ? eng.camera_get_location(ctx.state.F_h_lngCamera)
                             : eng.camera().location;
    aimLight(eng, light, hGroup, eye, ctx.state.dblRotationCentre, 59, 1.4, 1.2, 1.6, 2.0);
    eng.light_activate(light, 0);
}

void P_subLightFollowCamera(AppContext& ctx, engine::Handle hGroup) {
    // Runs every frame while the dynamic light is on: no pointer changes here.
    engine::Engine& eng = ctx.engine;
    const engine::Point3 dir = cameraDirection(ctx);
    forEachGroupPolygon(eng, hGroup, [&](engine::Handle h) {
        if (eng.polygon_is_disabled(h)) return true;
        engine::Plane plane;
        if (eng.polygon_get_plane(h, plane) != 0) return true;
        int grey = followCameraGrey(dir, plane.n);
        eng.polygon_set_light(h, engine::Rgb{grey, grey, grey});
        return true;
    });
}

void P_subPolygonDifferentiation(AppContext& ctx) {
    static constexpr int kGreys[3] = {255, 128, 0};
    engine::Engine& eng = ctx.engine;
    ctx.pointer(kWaitPointer);
    for (engine::Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (eng.polygon_is_disabled(h)) continue;
        engine::Handle pt = eng.polygon_get_first_point(h);
        for (int k = 0; k < 3 && pt != 0; ++k, pt = eng.point_get_next_point(pt))
            eng.point_set_rgb(pt, engine::Rgb{kGreys[k], kGreys[k], kGreys[k]});
    }
    ctx.pointer(kNormalPointer);
}

bool applyLightMode(AppContext& ctx, char key) {
    const char* option = nullptr;
    switch (key) {
        case 'S':
        case 's':
            option = "optLightOnce1SideCamera";
            break;
        case 'F':
        case 'f':
            option = "optFlatShading1";
            break;
        case 'J':
        case 'j':
            option = "optFlatShading2";
            break;
        case 'G':
        case 'g':
            option = "optLightOnceTopBottom";
            break;
        case 'H':
        case 'h':
            P_subPolygonDifferentiation(ctx);
            return true;
        default:
            return false;
    }
    lightingForm(ctx).setOption(option);
    P_subApplyLight(ctx, 0);
    return true;
}

std::string_view lightKeyComment(char key) {
    switch (key) {
        case 'S':
        case 's':
            return "Refresh lighting with spotlight shading";
        case 'F':
        case 'f':
            return "Refresh lighting with flat shading";
        case 'J':
        case 'j':
            return "Refresh lighting with high contrast flat shading";
        case 'G':
        case 'g':
            return "Refresh lighting with Gouraud shading";
        case 'H':
        case 'h':
            return "Refresh lighting by highlighting polygons";
        default:
            return {};
    }
}

}  // namespace core

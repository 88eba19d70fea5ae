#pragma once
// The light modes. Flat faces need shading for the shape of a mine to read; one
// light object (state.F_h_lngLight) serves every mode, and every command that adds
// polygons ends with P_subApplyLight on its new group. Group 0 stands for the whole
// scene; a group means its polygons and those of its descendants.

#include <string_view>

#include "engine/Types.h"

namespace forms {
class Frm06Lighting;
}

namespace core {

class AppContext;

// Registers the lighting dialog, the light that follows the camera each frame
// (ctx.lightFollowCamera) and the lighting procedures for scripts.
void installLighting(AppContext& ctx);

// The lighting dialog of the window, made and registered on first use.
forms::Frm06Lighting& lightingForm(AppContext& ctx);

// Pumps events, runs the procedure of the option that is on and sets
// bolLightFollowsCamera (-1 only for the dynamic light).
void P_subApplyLight(AppContext& ctx, engine::Handle hGroup);
void P_subLightOff(AppContext& ctx, engine::Handle hGroup);
// A grey of its own for every enabled polygon; a polygon of brightness 0 is left unlit.
void P_subFlatShading(AppContext& ctx, int intMode, engine::Handle hGroup);
void P_subLightTopBottom(AppContext& ctx, engine::Handle hGroup);
void P_subLightFromCamera(AppContext& ctx, engine::Handle hGroup);
void P_subLightFollowCamera(AppContext& ctx, engine::Handle hGroup);
// Point colours 255, 128 and 0 on the first three points of every enabled polygon.
void P_subPolygonDifferentiation(AppContext& ctx);

// The grey of a face with unit normal n. Mode 1: brightest turned up and to +y;
// mode 2: by the angle from straight down, low byte kept. Mode 1 is not cut to a
// byte here: the engine keeps the low byte of what it is given.
int flatShadingGrey(int intMode, const engine::Point3& n);
// The dynamic light's grey: by the angle between view direction and normal, low byte.
int followCameraGrey(const engine::Point3& cameraDirection, const engine::Point3& n);

// Keys of the render window: S light from the camera, F flat shading, J high
// contrast flat shading, G top and bottom light (smoothed normals), H polygon
// differentiation. Sets the option and relights the scene; false for another key.
bool applyLightMode(AppContext& ctx, char key);
// The comment-box line of such a key, or "" for another key.
std::string_view lightKeyComment(char key);

}  // namespace core

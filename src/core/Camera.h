#pragma once
// The orbit camera: its start position and the per-frame update.

#include "engine/Types.h"

namespace core {

class AppContext;

// Moves the rotation centre and recomputes the north axis that follows from it.
void setRotationCentre(AppContext& ctx, engine::Point3 centre);
// 0 when the centre has x >= 0 and y <= 0, else 0.5.
float northAxisFor(engine::Point3 centre);

// Returns false when the camera could not be set up (the program then ends).
bool p_subInitializeCamera(AppContext& ctx, bool bolNewLook);
void p_subCameraUpdate(AppContext& ctx);
// cut-off (near) and fog (far) from the state
void applyCulling(AppContext& ctx);

}  // namespace core

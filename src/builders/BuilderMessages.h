#pragma once
// What a caller shows when a builder hands back no group. Builders report nothing
// themselves; the caller checks the handle, shows the box (one OK button) and
// abandons the action, leaving the scene as it stands.

#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace builders {

enum class BuilderFailure {
    Sphere,          // sphere wrappers and the like
    Cube,            // cube wrapper
    Cylinder,        // cylinder and wedge from the tube tool
    Excavation,      // excavation and string from the tube tool
    Cone4,           // four-sided pyramid from the tube tool
    Cone,            // eight- and three-sided pyramids from the tube tool
    MUSphere1,       // first pick marker
    MUSphere2,       // second pick marker
    DiscPlane,       // plane from two points
    ThreePointPoly,  // polygon tool
    Object,          // any other builder
};

struct FailureBox {
    const char* title;
    const char* text;
};

FailureBox failureBox(BuilderFailure which);

// True for a handle other than 0; else shows the failure's box and gives false.
bool checkBuilderHandle(core::AppContext& ctx, engine::Handle handle, BuilderFailure which);

}  // namespace builders

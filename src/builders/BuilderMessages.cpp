#include "builders/BuilderMessages.h"

#include "core/AppContext.h"

namespace builders {

FailureBox failureBox(BuilderFailure which) {
    switch (which) {
        case BuilderFailure::Sphere:
            return {"Error in sphere creation", "h_lngSphere = 0"};
        case BuilderFailure::Cube:
            return {"Error in cube creation", "h_lngCube = 0"};
        case BuilderFailure::Cylinder:
            return {"Error", "Null handle from P_fncCreateCylinder"};
        case BuilderFailure::Excavation:
            return {"Error", "Null handle from P_fncCreate3DExcavation"};
        case BuilderFailure::Cone4:
            return {"Error", "Null handle from P_fncCreate4Cone"};
        case BuilderFailure::Cone:
            return {"Error", "Null handle from fncCreateCone"};
        case BuilderFailure::MUSphere1:
            return {"Error", "Null handle for F_h_lngMUSphere1"};
        case BuilderFailure::MUSphere2:
            return {"Error", "Null handle for F_h_lngMUSphere2"};
        case BuilderFailure::DiscPlane:
            return {"Error", "Null handle from P_fncCreate2PointDiscPlane"};
        case BuilderFailure::ThreePointPoly:
            return {"Error", "Null handle from modCreate3PointPoly"};
        case BuilderFailure::Object:
            break;
    }
    return {"Error", "Null handle from creation of object"};
}

bool checkBuilderHandle(core::AppContext& ctx, engine::Handle handle, BuilderFailure which) {
    if (handle != 0) return true;
    const FailureBox box = failureBox(which);
    ctx.ui.msgBox(box.text, ui::Buttons::OK, box.title);
    return false;
}

}  // namespace builders

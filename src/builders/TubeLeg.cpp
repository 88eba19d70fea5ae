#include "builders/TubeLeg.h"

#include "builders/BuilderMessages.h"
#include "builders/Geometry.h"
#include "builders/Meshes.h"
#include "builders/Tubes.h"
#include "core/AppContext.h"

namespace builders {

using engine::Handle;
using engine::Point3;

double tubeVerticalSize(const TubeLegRequest& q) {
    switch (q.section) {
        case TubeSection::CrossPolyLine:
            return 0;
        case TubeSection::Tunnel:
        case TubeSection::Cone4:
            return q.heightMetres * 10.0;
        case TubeSection::Cylinder:
        case TubeSection::Wedge:
        case TubeSection::Cone8:
        case TubeSection::Cone3:
            break;
    }
    return q.widthMetres * 10.0;
}

BuilderFailure tubeLegFailure(TubeSection section) {
    switch (section) {
        case TubeSection::CrossPolyLine:
        case TubeSection::Tunnel:
            break;
        case TubeSection::Cylinder:
        case TubeSection::Wedge:
            return BuilderFailure::Cylinder;
        case TubeSection::Cone4:
            return BuilderFailure::Cone4;
        case TubeSection::Cone8:
        case TubeSection::Cone3:
            return BuilderFailure::Cone;
    }
    return BuilderFailure::Excavation;
}

Handle buildTubeLeg(core::AppContext& ctx, const TubeLegRequest& q) {
    Point3 start, end;
    P_subCopyPoint(start, q.start);
    P_subCopyPoint(end, q.end);
    const double shift = tubeVerticalSize(q) / 2;
    if (q.position == LinePosition::Bottom) {
        start.z += shift;
        end.z += shift;
    } else if (q.position == LinePosition::Top) {
        start.z -= shift;
        end.z -= shift;
    }
    const double width = q.widthMetres * 10.0;
    const double height = q.heightMetres * 10.0;
    engine::Engine& eng = ctx.engine;

    Handle h = 0;
    switch (q.section) {
        case TubeSection::CrossPolyLine:
            h = P_fncCreate3DString(eng, start, end, width, q.colour);
            break;
        case TubeSection::Tunnel:
            h = P_fncCreate3DExcavation(eng, false, start, end, width, height, q.colour);
            break;
        case TubeSection::Cylinder:
            h = P_fncCreateCylinder(eng, start, end, width, q.colour);
            break;
        case TubeSection::Wedge:
            h = P_fncCreateWedge(eng, start, end, width, q.colour);
            break;
        case TubeSection::Cone4:
            h = P_fncCreate4Cone(eng, false, start, end, width, height, q.colour);
            break;
        case TubeSection::Cone8:
            h = fncCreateCone(eng, start, end, width, q.colour);
            break;
        case TubeSection::Cone3:
            h = P_fncCreate3Cone(eng, start, end, width, q.colour);
            break;
    }
    if (!checkBuilderHandle(ctx, h, tubeLegFailure(q.section))) return 0;
    ctx.state.F_h_lngAddedGroups.push_back(h);
    if (ctx.state.F_h_lngAddedInfoGroup != 0)
        eng.group_set_father_group(h, ctx.state.F_h_lngAddedInfoGroup);
    return h;
}

}  // namespace builders

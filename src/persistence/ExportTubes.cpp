#include "persistence/ExportTubes.h"

#include "builders/TubeCentreLine.h"
#include "core/AppContext.h"
#include "persistence/ExportDxf.h"
#include "persistence/ExportFrame.h"
#include "persistence/ExportSave.h"
#include "persistence/ExportText.h"
#include "persistence/ExportVisibleSet.h"

namespace persistence {

using engine::Handle;
using engine::Point3;

namespace {

struct TubeEnds {
    Point3 a, b;
    std::string name;
};

// The ends of the member's tube; false when its first polygon is disabled or the
// group is no tube.
bool tubeOf(const engine::Engine& eng, Handle group, TubeEnds& out) {
    const Handle first = eng.group_get_first_polygon(group);
    if (first == 0 || eng.polygon_is_disabled(first)) return false;
    bool isTube = false;
    if (!builders::P_fncTubeCentreLine(eng, first, out.a, out.b, isTube) || !isTube) return false;
    out.name = eng.entity_get_name(first);
    return true;
}

}  // namespace

bool P_subExportTubes(core::AppContext& ctx, const std::string& strType) {
    const bool ventSim = strType == "VentSim";
    ExportFrame f(ctx, kPolygonPacing);
    f.begin();
    VisibleSet visible(ctx.engine);
    if (visible.group() != 0) f.moveWorld(visible.group());
    for (Handle g : visible.members()) {
        if (f.interrupted()) break;
        TubeEnds t;
        if (!tubeOf(ctx.engine, g, t)) continue;
        if (ventSim) {
            // zB alone stays in scene units: the file format expects it so.
            f.line(pointText(t.a) + "\t" + metresText(t.b.x) + "\t" + metresText(t.b.y) + "\t" +
                   shortestText(t.b.z) + "\t#\t" + t.name);
        } else {
            f.line(pointText(t.a, ",") + ",3");
            f.line(pointText(t.b, ",") + ",2");
        }
        f.itemDone();
    }
    return f.finish(ventSim ? kTxtFileType : kPntFileType);
}

bool P_subExportDatamineStrings(core::AppContext& ctx) {
    std::string text;
    {
        VisibleSet visible(ctx.engine);
        long n = 0;
        for (Handle g : visible.members()) {
            TubeEnds t;
            if (!tubeOf(ctx.engine, g, t)) continue;
            ++n;
            const std::string tube = std::to_string(n);
            text += std::to_string(2 * n - 1) + "\t" + pointText(t.a) + "\t" + tube + "\t1\t#\t" +
                    t.name + std::string(kCrLf);
            text += std::to_string(2 * n) + "\t" + pointText(t.b) + "\t" + tube + "\t2\t#\t" +
                    t.name + std::string(kCrLf);
        }
    }
    return P_subSaveText(ctx, kDatamineStringsType, text);
}

}  // namespace persistence

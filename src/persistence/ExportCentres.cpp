#include "persistence/ExportCentres.h"

#include <optional>

#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "persistence/ExportFrame.h"
#include "persistence/ExportText.h"
#include "persistence/ExportTubes.h"
#include "persistence/ExportVisibleSet.h"

namespace persistence {

using engine::Handle;
using engine::Point3;

namespace {

// The off-set depth in metres; nothing when the answer was empty or cancelled.
std::optional<double> askDepth(core::AppContext& ctx) {
    const auto answer = ctx.ui.inputBox(kDepthPrompt, kDepthTitle, kDepthDefault);
    if (!answer || answer->empty()) return std::nullopt;
    return core::valNumber(*answer);
}

Point3 offsetPoint(const engine::Engine& eng, Handle polygon, const Point3& c, double depth) {
    engine::Plane plane;
    if (eng.polygon_get_plane(polygon, plane) != 0) return c;
    return c + plane.n * (depth * 10.0);
}

struct CentreOptions {
    bool offset = false;
    bool data = false;
    double depth = 0;
};

// The lines of one entity or group: P first with the off-set, then C, with the
// name when asked for. Returns the number of lines.
long groupLines(ExportFrame& f, const engine::Engine& eng, Handle group, const CentreOptions& o) {
    const Handle first = eng.group_get_first_polygon(group);
    const Point3 c = eng.group_get_center_of_mass(group);
    long lines = 0;
    if (o.offset) {
        f.line(pointText(offsetPoint(eng, first, c, o.depth)));
        ++lines;
    }
    std::string line = pointText(c);
    if (o.data) line += "\t" + nameOnOneLine(eng.entity_get_name(first));
    f.line(line);
    return lines + 1;
}

void polyCentres(ExportFrame& f, const engine::Engine& eng, const CentreOptions& o) {
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (f.interrupted()) break;
        if (eng.polygon_is_disabled(h)) continue;
        const Point3 c = eng.polygon_get_center(h);
        f.line(pointText(o.offset ? offsetPoint(eng, h, c, o.depth) : c));
        f.itemDone();
    }
}

void entityCentres(ExportFrame& f, engine::Engine& eng, const CentreOptions& o) {
    VisibleSet visible(eng);
    const int all = visible.group() ? eng.group_get_number_of_polygons(visible.group()) : 0;
    for (Handle g = eng.group_get_first_group(); g != 0; g = eng.group_get_next(g)) {
        if (f.interrupted()) break;
        const int n = eng.group_get_number_of_polygons(g);
        if (n <= 0 || n >= all) continue;
        const Handle first = eng.group_get_first_polygon(g);
        if (first == 0 || eng.polygon_is_disabled(first)) continue;
        f.itemDone(groupLines(f, eng, g, o));
    }
}

void groupCentres(ExportFrame& f, const engine::Engine& eng, CentreOptions o) {
    o.data = true;
    for (Handle g = eng.group_get_first_group(); g != 0; g = eng.group_get_next(g)) {
        if (f.interrupted()) break;
        if (eng.group_get_number_of_polygons(g) <= kGroupCentreMinPolygons) continue;
        const Handle first = eng.group_get_first_polygon(g);
        if (first == 0 || eng.polygon_is_disabled(first)) continue;
        f.itemDone(groupLines(f, eng, g, o));
    }
}

}  // namespace

bool P_subExportCentres(core::AppContext& ctx, const std::string& strType, short bolWithOffset,
                        short bolWithData) {
    CentreOptions o;
    o.offset = bolWithOffset != 0;
    o.data = bolWithData != 0;
    if (o.offset) {
        const auto depth = askDepth(ctx);
        if (!depth) return false;
        o.depth = *depth;
    }
    ExportFrame f(ctx, kCentrePacing);
    f.begin();
    f.moveWorld(0);
    if (strType == "Poly")
        polyCentres(f, ctx.engine, o);
    else if (strType == "Entity")
        entityCentres(f, ctx.engine, o);
    else if (strType == "Group")
        groupCentres(f, ctx.engine, o);
    return f.finish(kTxtFileType);
}

bool P_subExportPolyData(core::AppContext& ctx) {
    ExportFrame f(ctx, kPolyDataPacing);
    f.begin();
    f.moveWorld(0);
    const engine::Engine& eng = ctx.engine;
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (f.interrupted()) break;
        if (eng.polygon_is_disabled(h)) continue;
        // The leading tab is part of the format.
        f.line("\t" + nameOnOneLine(eng.entity_get_name(h)));
        f.itemDone();
    }
    return f.finish(kTxtFileType);
}

}  // namespace persistence

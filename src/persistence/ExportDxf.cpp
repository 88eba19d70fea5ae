#include "persistence/ExportDxf.h"

#include <vector>

#include "core/AppContext.h"
#include "persistence/ExportFrame.h"
#include "persistence/ExportPoints.h"
#include "persistence/ExportText.h"

namespace persistence {

using engine::Handle;
using engine::Point3;

long packedColour(int r, int g, int b) { return static_cast<long>(r) + 256L * g + 65536L * b; }

namespace {

void cornerLines(ExportFrame& f, int i, const Point3& p) {
    f.line(" " + std::to_string(10 + i));
    f.line(metresText(p.x));
    f.line(" " + std::to_string(20 + i));
    f.line(metresText(p.y));
    f.line(" " + std::to_string(30 + i));
    f.line(metresText(p.z));
}

void faceLines(ExportFrame& f, const engine::Engine& eng, Handle h) {
    const std::vector<Point3> pts = polygonCorners(eng, h);
    const engine::Rgb c = eng.polygon_get_color(h);
    f.line("3DFACE");
    f.line("  8");
    f.line("0");
    f.line("  62");
    f.line(std::to_string(packedColour(c.r, c.g, c.b)));
    const int corners = static_cast<int>(pts.size() < 4 ? pts.size() : 4);
    for (int i = 0; i < corners; ++i) cornerLines(f, i, pts[static_cast<std::size_t>(i)]);
    if (pts.size() == 3) {
        f.line(" 13");
        f.line(metresText(pts[2].x));
        f.line(" 23");
        f.line(metresText(pts[2].y));
        f.line(" 33");
        f.line(metresText(pts[2].z));
    }
    f.line("  0");
}

std::string pntLine(const Point3& p, int pen) {
    return pointText(p) + "\t" + std::to_string(pen) + "\t10";
}

}  // namespace

bool P_subExportDXF(core::AppContext& ctx, const std::string& strType) {
    ExportFrame f(ctx, kPolygonPacing);
    f.begin();
    f.moveWorld(0);
    f.line("  0");
    f.line("SECTION");
    f.line("  2");
    f.line("ENTITIES");
    f.line("  0");
    if (strType == "GeneralDXF") {
        const engine::Engine& eng = ctx.engine;
        for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
            if (f.interrupted()) break;
            if (eng.polygon_is_disabled(h)) continue;
            faceLines(f, eng, h);
            f.itemDone();
        }
    }
    f.line("ENDSEC");
    f.line("  0");
    f.line("EOF");
    return f.finish(kDxfFileType);
}

bool P_subExportPNT(core::AppContext& ctx, const std::string& strType) {
    const bool four = strType == "Points4";
    ExportFrame f(ctx, kPolygonPacing);
    f.begin();
    f.moveWorld(0);
    const engine::Engine& eng = ctx.engine;
    std::string closing;  // held back until the next polygon starts, and at the end
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (f.interrupted()) break;
        if (eng.polygon_is_disabled(h)) continue;
        const std::vector<Point3> pts = polygonCorners(eng, h);
        if (pts.empty()) continue;
        if (four) {
            if (!closing.empty()) f.line(closing);
            for (std::size_t i = 0; i < pts.size(); ++i) f.line(pntLine(pts[i], i == 0 ? 3 : 2));
            closing = pntLine(pts[0], 2);
        } else {
            // A fourth point is dropped on purpose.
            for (std::size_t i = 0; i < pts.size() && i < 3; ++i)
                f.line(pntLine(pts[i], i == 0 ? 3 : 2));
        }
        f.itemDone();
    }
    if (!closing.empty()) f.line(closing);
    return f.finish(kPntFileType);
}

}  // namespace persistence

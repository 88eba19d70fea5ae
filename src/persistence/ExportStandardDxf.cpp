#include "persistence/ExportStandardDxf.h"

#include <unordered_map>
#include <vector>

#include "core/AppContext.h"
#include "persistence/ExportDxf.h"
#include "persistence/ExportFrame.h"
#include "persistence/ExportPoints.h"
#include "persistence/ExportText.h"

namespace persistence {

using engine::Handle;
using engine::Point3;

std::string dxfLayerName(std::string_view groupName) {
    std::string out;
    for (char ch : groupName) {
        const auto u = static_cast<unsigned char>(ch);
        const bool bad = u < 32 || u == 127 ||
                         std::string_view("<>/\\\":;?*|=`,").find(ch) != std::string_view::npos;
        out += bad ? '_' : ch;
    }
    const auto first = out.find_first_not_of(' ');
    if (first == std::string::npos || out.find_first_not_of(" _") == std::string::npos) return "0";
    const auto last = out.find_last_not_of(' ');
    return out.substr(first, last + 1 - first);
}

long dxfTrueColour(int r, int g, int b) {
    return 65536L * (r & 255) + 256L * (g & 255) + (b & 255);
}

namespace {

// A group code right-aligned in three columns, then its value.
void pair(ExportFrame& f, int code, std::string_view value) {
    std::string c = std::to_string(code);
    if (c.size() < 3) c.insert(0, 3 - c.size(), ' ');
    f.line(c);
    f.line(value);
}

class LayerTable {
public:
    const std::string& of(const engine::Engine& eng, Handle polygon) {
        const Handle g = eng.polygon_get_group(polygon);
        auto it = byGroup_.find(g);
        if (it != byGroup_.end()) return it->second;
        std::string name = g ? dxfLayerName(eng.entity_get_name(g)) : std::string("0");
        if (seen_.emplace(name, true).second) ordered_.push_back(name);
        return byGroup_.emplace(g, std::move(name)).first->second;
    }
    const std::vector<std::string>& names() const { return ordered_; }

private:
    std::unordered_map<Handle, std::string> byGroup_;
    std::unordered_map<std::string, bool> seen_;
    std::vector<std::string> ordered_;
};

void header(ExportFrame& f) {
    pair(f, 0, "SECTION");
    pair(f, 2, "HEADER");
    pair(f, 9, "$ACADVER");
    pair(f, 1, kStandardDxfVersion);
    pair(f, 9, "$INSUNITS");
    pair(f, 70, "6");  // metres
    pair(f, 0, "ENDSEC");
}

void tables(ExportFrame& f, const std::vector<std::string>& layers) {
    pair(f, 0, "SECTION");
    pair(f, 2, "TABLES");
    pair(f, 0, "TABLE");
    pair(f, 2, "LTYPE");
    pair(f, 70, "1");
    pair(f, 0, "LTYPE");
    pair(f, 2, "CONTINUOUS");
    pair(f, 70, "0");
    pair(f, 3, "Solid line");
    pair(f, 72, "65");
    pair(f, 73, "0");
    pair(f, 40, "0");
    pair(f, 0, "ENDTAB");
    pair(f, 0, "TABLE");
    pair(f, 2, "LAYER");
    pair(f, 70, std::to_string(layers.size()));
    for (const std::string& name : layers) {
        pair(f, 0, "LAYER");
        pair(f, 2, name);
        pair(f, 70, "0");
        pair(f, 62, "7");
        pair(f, 6, "CONTINUOUS");
    }
    pair(f, 0, "ENDTAB");
    pair(f, 0, "ENDSEC");
}

void face(ExportFrame& f, const std::string& layer, long colour, const Point3* c[4]) {
    pair(f, 0, "3DFACE");
    pair(f, 8, layer);
    pair(f, 420, std::to_string(colour));
    for (int i = 0; i < 4; ++i) {
        pair(f, 10 + i, metresText(c[i]->x));
        pair(f, 20 + i, metresText(c[i]->y));
        pair(f, 30 + i, metresText(c[i]->z));
    }
}

// Quadrilaterals stay whole, a triangle repeats its third corner, more corners
// make a fan from the first. Returns the faces written.
long polygonFaces(ExportFrame& f, const std::string& layer, long colour,
                  const std::vector<Point3>& pts) {
    if (pts.size() < 3) return 0;
    if (pts.size() <= 4) {
        const Point3* c[4] = {&pts[0], &pts[1], &pts[2], &pts[pts.size() - 1]};
        face(f, layer, colour, c);
        return 1;
    }
    long n = 0;
    for (std::size_t i = 1; i + 1 < pts.size(); ++i, ++n) {
        const Point3* c[4] = {&pts[0], &pts[i], &pts[i + 1], &pts[i + 1]};
        face(f, layer, colour, c);
    }
    return n;
}

}  // namespace

bool exportStandardDxf(core::AppContext& ctx) {
    ExportFrame f(ctx, kPolygonPacing);
    f.begin();
    const engine::Engine& eng = ctx.engine;
    // The layers stand before the faces, so they are gathered first.
    LayerTable layers;
    layers.of(eng, 0);  // layer "0" is always there
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h))
        if (!eng.polygon_is_disabled(h)) layers.of(eng, h);
    header(f);
    tables(f, layers.names());
    f.moveWorld(0);
    pair(f, 0, "SECTION");
    pair(f, 2, "ENTITIES");
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (f.interrupted()) break;
        if (eng.polygon_is_disabled(h)) continue;
        const engine::Rgb c = eng.polygon_get_color(h);
        polygonFaces(f, layers.of(eng, h), dxfTrueColour(c.r, c.g, c.b), polygonCorners(eng, h));
        f.itemDone();
    }
    pair(f, 0, "ENDSEC");
    pair(f, 0, "EOF");
    return f.finish(kDxfFileType);
}

}  // namespace persistence

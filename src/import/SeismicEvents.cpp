#include "import/SeismicEvents.h"

#include <cmath>

#include "builders/MarkerSpheres.h"
#include "builders/Meshes.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "import/ImportRun.h"

namespace importers {

engine::Point3 seismicPosition(const SeismicConvention& conv, double first, double second,
                               double third) {
    const double a = first * conv.intCoordSign[0] * 10.0;
    const double b = second * conv.intCoordSign[1] * 10.0;
    const double z = third * conv.intCoordSign[2] * 10.0;
    if (conv.bolSwitchXandY) return {b, a, z};
    return {a, b, z};
}

std::string seismicDate(std::string_view field) {
    std::string out(field.substr(0, 4));
    out += '-';
    if (field.size() > 4) out += field.substr(4, 2);
    out += '-';
    out += field.substr(field.size() < 2 ? 0 : field.size() - 2);
    return out;
}

std::string seismicTime(std::string_view t) {
    std::string s(t);
    switch (t.size()) {
        case 1:
            return "00:00:0" + s;
        case 2:
            return "00:00:" + s;
        case 3:
            return "00:0" + s.substr(0, 1) + ":" + s.substr(1);
        case 4:
            return "00:" + s.substr(0, 2) + ":" + s.substr(2);
        case 5:
            return "0" + s.substr(0, 1) + ":" + s.substr(1, 2) + ":" + s.substr(3);
        case 6:
            return s.substr(0, 2) + ":" + s.substr(2, 2) + ":" + s.substr(4);
        default:
            return s;
    }
}

engine::Rgb seismicMagnitudeColour(double dblML) {
    if (dblML < 0) return {7, 121, 248};
    if (dblML < 0.5) return {7, 248, 7};
    if (dblML < 1) return {248, 121, 7};
    return {248, 7, 7};
}

double seismicMarkerRadius(double dblSphereScale, double dblSphereRadius, double dblML) {
    if (dblSphereScale == 0) return dblSphereRadius * 10;
    return dblSphereScale * std::exp((dblSphereScale / 8) * dblML) * 10;
}

namespace {

void needFields(std::size_t count, std::size_t needed) {
    if (count < needed) throw ImportFault("a line with too few fields");
}

}  // namespace

SeismicEvent readQkLFields(const SeismicFields& f, std::size_t count,
                           const SeismicConvention& conv) {
    const std::size_t s = (count > 0 && f[0].empty()) ? 1 : 0;
    needFields(count, s + 6);
    SeismicEvent e;
    e.date = seismicDate(f[s]);
    e.time = seismicTime(f[s + 1]);
    e.position = seismicPosition(conv, core::valNumber(f[s + 2]), core::valNumber(f[s + 3]),
                                 core::valNumber(f[s + 4]));
    e.ml = core::valNumber(f[s + 5]);
    return e;
}

SeismicEvent readMsFields(const SeismicFields& f, std::size_t count,
                          const SeismicConvention& conv) {
    const std::size_t s = (count > 0 && f[0].empty()) ? 1 : 0;
    needFields(count, s + 3);
    SeismicEvent e;
    e.position = seismicPosition(conv, core::valNumber(f[s]), core::valNumber(f[s + 1]),
                                 core::valNumber(f[s + 2]));
    e.ml = count > s + 3 ? core::valNumber(f[s + 3]) : kMsDefaultMagnitude;
    return e;
}

std::string seismicRecord(const SeismicEvent& e) {
    std::string r(kSeismicRecordTag);
    r += "\r\n";
    r += e.date;
    r += "\r\n";
    r += e.time;
    r += "\r\n";
    r += core::numberText(e.position.x);
    r += '\t';
    r += core::numberText(e.position.y);
    r += '\t';
    r += core::numberText(e.position.z);
    r += '\t';
    r += core::numberText(e.ml);
    return r;
}

bool placeSeismicEvent(core::AppContext& ctx, const engine::Point3& position, double dblML,
                       const engine::Rgb& colour, std::string_view name, engine::Handle father) {
    const core::Settings& set = ctx.settings;
    engine::Engine& eng = ctx.engine;
    if (!position.finite()) throw ImportFault("a position beyond the range of a double");
    const double radius = seismicMarkerRadius(set.dblSphereScale, set.dblSphereRadius, dblML);
    if (!std::isfinite(radius)) throw ImportFault("a magnitude too large for its marker");
    if (radius == 0) return false;
    engine::Handle marker = 0;
    if (builders::cubeMarker(set)) {
        const float side = builders::toSingle(set.dblSphereScale == 0 ? radius : 1.3 * radius);
        if (!std::isfinite(side)) throw ImportFault("a cube too large for its size");
        marker = builders::P_fncCreateCube(eng, {side, side, side}, colour);
    } else {
        marker = builders::P_fncCreateSphere(
            eng, radius, builders::sphereBands(set.dblSphereLatitudeBands),
            builders::sphereBands(set.dblSphereLongitudeBands), colour);
    }
    if (marker == 0) return false;
    for (engine::Handle p = eng.group_get_first_polygon(marker); p != 0;
         p = eng.group_get_next_polygon(marker, p))
        eng.polygon_set_name(p, name);
    eng.group_set_location(marker, position);
    eng.group_set_father_group(marker, father);
    return true;
}

engine::Handle seismicGroup(core::AppContext& ctx, const char* name) {
    engine::Engine& eng = ctx.engine;
    for (engine::Handle g = eng.group_get_first_group(); g != 0; g = eng.group_get_next(g))
        if (eng.group_get_father_group(g) == 0 && eng.entity_get_name(g) == name) return g;
    return eng.group_create(name);
}

}  // namespace importers

// Oriented joints along the surveyed holes: a disc where the orientation is known,
// a double pyramid (the cone of every plane with that alpha) where only alpha is,
// a small sphere where neither is.

#include <cmath>
#include <string>

#include "builders/Geometry.h"
#include "builders/Meshes.h"
#include "builders/Tubes.h"
#include "core/AngleMath.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/NameRecords.h"
#include "import/DrillholeHoles.h"
#include "import/DrillholeReaders.h"
#include "import/ImportRun.h"
#include "import/ProgressMessage.h"
#include "import/TextFile.h"
#include "ui/ScriptedUi.h"

namespace importers {

namespace {

inline constexpr ErrorBox kJointErrorBox{
    "Joint information error", "The joint file could not be found OR The joint file is invalid"};

constexpr std::size_t kKeep = 16;

const SurveyInterval* intervalAt(const std::vector<SurveyInterval>& hole, double depth) {
    for (const SurveyInterval& s : hole)
        if (s.from <= depth && depth < s.to) return &s;
    return nullptr;
}

struct Joint {
    const char* primitive = "";
    engine::Handle group = 0;
    double dip = -1, dipDirection = -1;
};

Joint plane(core::AppContext& ctx, double diameter, double a, double b, double azimuth,
            double plunge, const engine::Point3& at, bool dipAndDipDirection) {
    engine::Engine& eng = ctx.engine;
    Joint j;
    j.primitive = "Plane";
    j.group = builders::P_fncCreateFlatCircle(eng, diameter, kPlaneColour);
    // The disc's first face as built: its plane gives the joint's dip after the turns.
    const engine::Handle face = eng.group_get_first_polygon(j.group);
    eng.group_set_rotate_reference_point(j.group, {0, 0, 0});
    if (!dipAndDipDirection) {
        eng.group_rotate(j.group, -a, 0);
        eng.group_rotate(j.group, b, 1);
        eng.group_rotate(j.group, -plunge, 0);
        eng.group_rotate(j.group, -azimuth, 2);
        eng.group_rotate(j.group, 90, 2);
    } else {
        eng.group_rotate(j.group, -a, 0);
        eng.group_rotate(j.group, -b, 2);
        if (ctx.state.sngNorthAxis == 0.0f) eng.group_rotate(j.group, 90, 2);
    }
    eng.group_move(j.group, at);
    engine::Plane p;
    if (face && eng.polygon_get_plane(face, p) == 0) {
        builders::P_subDipAndDipDirection(ctx, std::nullopt, true, true, p.n, j.dip,
                                          j.dipDirection);
        if (j.dip < 0 || j.dip > 90) j.dip = std::fabs(180 - j.dip);
    }
    return j;
}

Joint pyramid(core::AppContext& ctx, double diameter, double a, double azimuth, double plunge,
              const engine::Point3& at) {
    engine::Engine& eng = ctx.engine;
    Joint j;
    j.primitive = "Pyramid";
    const double rest = (90 - a) * core::kDegree;
    const double h = diameter * 0.5 * std::sin(rest);
    const double w = 2 * h / core::nonZero(std::tan(rest));
    engine::Point3 up, down;
    double az = azimuth, pl = plunge;
    P_subNextHolePoint(at, h, az, pl, up, ctx.state.sngNorthAxis);
    P_subNextHolePoint(at, -h, az, pl, down, ctx.state.sngNorthAxis);
    j.group = eng.group_create(kPyramidGroup);
    for (const engine::Point3& base : {up, down}) {
        const engine::Handle cone =
            builders::P_fncCreate4Cone(eng, false, base, at, w, w, kPyramidColour);
        P_subMovePolygonsToGroup(eng, cone, j.group);
    }
    return j;
}

Joint sphere(core::AppContext& ctx, double diameter, const engine::Point3& at) {
    engine::Engine& eng = ctx.engine;
    Joint j;
    j.primitive = "Sphere";
    j.group = builders::P_fncCreateSphere(eng, diameter * 0.4, 2, 4, kSphereColour);
    eng.group_move(j.group, at);
    return j;
}

std::string pair(const std::vector<std::string_view>& f, std::size_t n, std::size_t i) {
    return std::string(fieldAt(f, n, i)) + "\t" + std::string(fieldAt(f, n, i + 1));
}

}  // namespace

void importOrientedJoints(core::AppContext& ctx, bool bolDipAndDipDirection) {
    ImportRun run(ctx, ImportMode::Add);
    engine::Engine& eng = ctx.engine;
    engine::Handle top = 0;
    try {
        if (run.begin()) {
            double diameter = 0;
            if (!askSize(ctx, "Select the required disk diameter", "Disk Diameter", "10",
                         diameter)) {
                run.abandon();
                return;
            }
            diameter *= 10;
            const std::string started = core::formatRecordTime(ctx.ui.now());
            ctx.state.sngProgressBusy = 0;
            ctx.state.lngProgressLines = 0;
            const SurveyHoles holes(eng);
            top = eng.group_create(kJointGroup);
            TextFile file;
            loadImportFile(ctx, file);
            FieldSplitter splitter(2);
            std::string_view line;
            HoleRun holeRun(eng, holes, top, kJointHoleGroup);
            long count = 0;
            while (file.nextLine(line)) {
                if (run.interruptRequested()) {
                    ctx.state.bolInterruptProcess = false;
                    break;
                }
                const auto& f = splitter.split(line, kKeep);
                const std::size_t n = splitter.count();
                const std::size_t s = f[0].empty() ? 1 : 0;
                if (n < 4 + s) throw ImportFault("a joint without its angles");
                const std::string_view id = f[s];
                const double depth = core::valNumber(f[s + 1]);
                double a = core::valNumber(f[s + 2]);
                double b = core::valNumber(f[s + 3]);
                holeRun.at(id);
                const std::vector<SurveyInterval>* hole = holeRun.intervals();
                const engine::Handle jointsGroup = holeRun.group();
                const SurveyInterval* si = hole ? intervalAt(*hole, depth) : nullptr;
                if (si) {
                    double az = si->azimuth, pl = si->plunge;
                    engine::Point3 at;
                    P_subNextHolePoint(si->start, (depth - si->from) * 10, az, pl, at,
                                       ctx.state.sngNorthAxis);
                    Joint j;
                    if (a == 90 || (a != -1 && b != -1)) {
                        if (a == 90 && b == -1) b = 0;
                        j = plane(ctx, diameter, a, b, az, pl, at, bolDipAndDipDirection);
                    } else if (a != -1) {
                        j = pyramid(ctx, diameter, a, az, pl, at);
                    } else {
                        j = sphere(ctx, diameter, at);
                    }
                    const ui::DateTime now = ctx.ui.now();
                    std::string name =
                        std::string(kJointName) + "\t" + j.primitive + "\t\r\n" +
                        core::formatRecordDate(now) + "\r\n" + core::formatRecordTime(now) +
                        "\r\n" + std::string(id) + "\r\nDepth (m): \t" + core::numberText(depth) +
                        "\r\nAlpha (degrees):\t" + core::numberText(a) + "\r\nBeta (degrees):\t" +
                        core::numberText(b) + "\r\nDip (degrees):\t" + core::numberText(j.dip) +
                        "\r\nDip Direction (degrees):\t" + core::numberText(j.dipDirection) +
                        "\r\n" + pair(f, n, s + 4) + "\r\n" + pair(f, n, s + 6);
                    if (n - s >= 10) name += "\r\n" + pair(f, n, s + 8);
                    core::p_subSetGroupPolygonNames(eng, j.group, name);
                    eng.group_set_father_group(j.group, jointsGroup);
                }
                ++count;
                run.pumpSometimes(ImportRun::kLinesPerPump);
                if (progressMessageDue(ctx, 10))
                    progressMessageShow(ctx, 5,
                                        "Start time: " + started +
                                            "   Number of lines read: " + std::to_string(count));
            }
            run.finish(top);
            ctx.comment("Start time: " + started +
                        "   End time: " + core::formatRecordTime(ctx.ui.now()) +
                        "   Number of lines read: " + std::to_string(count));
            return;
        }
        run.finish(top);
    } catch (const ui::ScriptError&) {
        throw;
    } catch (...) {
        run.fail(kJointErrorBox);
    }
}

}  // namespace importers

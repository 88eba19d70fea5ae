// Collars and surveys: a cube a collar, then each hole walked from its collar.

#include <cmath>
#include <string>
#include <unordered_map>
#include <vector>

#include "builders/Meshes.h"
#include "builders/Tubes.h"
#include "core/AngleMath.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/NameRecords.h"
#include "core/TextNormalise.h"
#include "import/DrillholeHoles.h"
#include "import/DrillholeReaders.h"
#include "import/ImportRun.h"
#include "import/ProgressMessage.h"
#include "import/TextFile.h"
#include "ui/ScriptedUi.h"

namespace importers {

namespace {

inline constexpr ErrorBox kCollarErrorBox{
    "Collar information error", "The collar file could not be found OR The collar file is invalid"};
inline constexpr ErrorBox kSurveyErrorBox{
    "Survey information error", "The survey file could not be found OR The survey file is invalid"};

constexpr std::size_t kKeep = 8;

std::string countText(const char* label, long n) { return label + std::to_string(n); }

// Reading stops at an interrupt; the flag is taken back so that what was read stays.
bool stopRequested(ImportRun& run) {
    if (!run.interruptRequested()) return false;
    run.context().state.bolInterruptProcess = false;
    return true;
}

}  // namespace

void P_subNextHolePoint(const engine::Point3& start, double length, double& azimuth, double& plunge,
                        engine::Point3& end, float sngAxisRotation) {
    if (azimuth == 0)
        azimuth = 0.0001;
    else if (azimuth == 45)
        azimuth = 44.9999;
    if (plunge == 45)
        plunge = 44.9999;
    else if (plunge == 90)
        plunge = 89.9999;
    const double pl = plunge * core::kDegree;
    const double c = std::cos(pl) * length;
    double a = azimuth * core::kDegree;
    if (sngAxisRotation != 0.0f) a -= 0.5 * core::kPi;
    end.x = start.x + std::cos(a) * c;
    end.y = start.y - std::sin(a) * c;
    end.z = start.z - std::sin(pl) * length;
}

void importDrillholeCollars(core::AppContext& ctx) {
    ImportRun run(ctx, ImportMode::Add);
    engine::Engine& eng = ctx.engine;
    engine::Handle top = 0;
    try {
        if (run.begin()) {
            double radius = 0;
            if (!askSize(ctx, "Collar sphere radius", "Collar radius", "6.0", radius)) {
                run.abandon();
                return;
            }
            const float edge = builders::toSingle(radius * 10);
            TextFile file;
            loadImportFile(ctx, file);
            ctx.state.sngProgressBusy = 0;
            ctx.state.lngProgressLines = 0;
            top = eng.group_create(kCollarGroup);
            FieldSplitter splitter(5);
            std::string normalised;
            std::string_view line;
            long collars = 0;
            while (!stopRequested(run) && file.nextLine(line)) {
                const auto& f = splitter.split(line, kKeep);
                // An empty line (or one without X, Y and Z) is the reader's fault.
                if (splitter.count() < 4) throw ImportFault("a collar line without position");
                // The shift goes onto the numbers, the columns stay where they are.
                const double s = f[0].empty() ? 1 : 0;
                const engine::Point3 at{(core::valNumber(f[1]) + s) * 10,
                                        (core::valNumber(f[2]) + s) * 10,
                                        (core::valNumber(f[3]) + s) * 10};
                core::P_subNormaliseSeparators(line, 5, normalised);
                const engine::Handle cube =
                    builders::P_fncCreateCube(eng, {edge, edge, edge}, kSurveyColour);
                core::p_subSetGroupPolygonNames(eng, cube,
                                                std::string(kCollarName) + "\t" + normalised);
                eng.group_set_location(cube, at);
                eng.group_set_father_group(cube, top);
                ++collars;
                run.pumpSometimes(ImportRun::kLinesPerPump);
                P_subProgressMessage(ctx, 1, 10, countText("Number of collars loaded: ", collars));
            }
        }
        run.finish(top);
    } catch (const ui::ScriptError&) {
        throw;
    } catch (...) {
        run.fail(kCollarErrorBox);
    }
}

namespace {

// The state of the survey walk, one hole after the other.
class SurveyWalk {
public:
    SurveyWalk(core::AppContext& ctx, engine::Handle top, double diameter, bool lowQuality)
        : ctx_(ctx), eng_(ctx.engine), top_(top), diameter_(diameter), low_(lowQuality) {}
    ~SurveyWalk() { builders::P_subReleaseDrillLine(eng_, rings_); }

    void station(std::string_view id, double depth, double azimuth, double plunge) {
        if (!current_.empty() && id == current_) {
            const double length = depth - prevDepth_;
            if (length != 0) interval(current_, prevDepth_, depth, prevAzimuth_, prevPlunge_);
        } else {
            closeHole();
            findCollar(id, depth);
        }
        prevDepth_ = depth;
        prevAzimuth_ = azimuth;
        prevPlunge_ = plunge;
    }

    // The last hole runs on to its collar depth; its group gets its father.
    void closeHole() {
        if (prevDepth_ < holeDepth_) {
            interval(current_, prevDepth_, holeDepth_, prevAzimuth_, prevPlunge_);
            ++completed_;
        }
        holeDepth_ = 0;
        if (holeGroup_) eng_.group_set_father_group(holeGroup_, top_);
    }

    const std::string& note() const { return note_; }
    long completed() const { return completed_; }
    const std::string& notAtZero() const { return notAtZero_; }

private:
    void interval(const std::string& id, double from, double to, double& azimuth, double& plunge) {
        engine::Point3 end;
        P_subNextHolePoint(start_, to - from, azimuth, plunge, end, ctx_.state.sngNorthAxis);
        const engine::Handle g =
            low_ ? builders::P_fncCreateDrillLine(eng_, rings_, start_, end, diameter_,
                                                  kSurveyColour)
                 : builders::P_fncCreateCylinder(eng_, start_, end, diameter_, kSurveyColour);
        std::string name = kSurveyName;
        name += '\t';
        name += id;
        name += "\r\n" + core::numberText(start_.x * 0.1) + "\t" +
                core::numberText(start_.y * 0.1) + "\t" + core::numberText(start_.z * 0.1) +
                "\r\n" + core::numberText(from * 0.1) + "\t" + core::numberText(to * 0.1) + "\r\n" +
                core::numberText(azimuth) + "\t" + core::numberText(plunge);
        core::p_subSetGroupPolygonNames(eng_, g, name);
        P_subMovePolygonsToGroup(eng_, g, holeGroup_);
        start_ = end;
    }

    // The collars are indexed once: no collar comes or goes while the survey reads,
    // and a hole without one would otherwise cost a scan of the scene per station.
    struct Collar {
        engine::Point3 start;
        bool hasDepth = false;
        double depth = 0;
    };
    void indexCollars() {
        indexed_ = true;
        char buf[core::kNameBufferLength];
        std::vector<std::string_view> f;
        for (engine::Handle p = eng_.polygon_get_first_polygon(); p; p = eng_.polygon_get_next(p)) {
            if (eng_.polygon_is_disabled(p)) continue;
            const int n = eng_.entity_get_name(p, buf, core::kNameBufferLength);
            const std::string_view name(buf, n > 0 ? static_cast<std::size_t>(n) : 0);
            if (name.substr(0, 8) != kCollarName) continue;
            f.clear();
            for (std::size_t from = 0;;) {
                const std::size_t tab = name.find('\t', from);
                f.push_back(name.substr(from, tab == std::string_view::npos ? tab : tab - from));
                if (tab == std::string_view::npos) break;
                from = tab + 1;
            }
            if (f.size() < 2 || collars_.count(std::string(f[1]))) continue;
            auto field = [&](std::size_t i) {
                return i < f.size() ? core::valNumber(f[i]) * 10 : 0.0;
            };
            collars_.emplace(std::string(f[1]),
                             Collar{{field(2), field(3), field(4)}, f.size() > 5, field(5)});
        }
    }

    void findCollar(std::string_view id, double& depth) {
        if (!indexed_) indexCollars();
        const auto it = collars_.find(std::string(id));
        const bool found = it != collars_.end();
        if (found) {
            start_ = it->second.start;
            if (it->second.hasDepth) holeDepth_ = it->second.depth;
            holeGroup_ = eng_.group_create(kSurveyHoleGroup);
            current_ = std::string(id);
        }
        if (!found) {
            note_ = " - Searching for the next matching drillhole";
        } else if (depth == 0) {
            note_ = " - BHID " + std::string(id) + " survey does start at zero";
        } else {
            // Drawn from the collar with this station's direction.
            depth = 0;
            note_ = " - BHID " + std::string(id) + " survey does not start at zero";
            notAtZero_ += std::string(id) + "\r\n";
        }
        ctx_.comment(note_);
    }

    core::AppContext& ctx_;
    engine::Engine& eng_;
    engine::Handle top_;
    double diameter_;
    bool low_;
    builders::DrillLineRings rings_;
    std::string current_;
    double prevDepth_ = 0, prevAzimuth_ = 0, prevPlunge_ = 0, holeDepth_ = 0;
    engine::Point3 start_;
    engine::Handle holeGroup_ = 0;
    long completed_ = 0;
    std::string note_;
    std::string notAtZero_;
    bool indexed_ = false;
    std::unordered_map<std::string, Collar> collars_;
};

}  // namespace

void importDrillholeSurveys(core::AppContext& ctx) {
    ImportRun run(ctx, ImportMode::Add);
    engine::Engine& eng = ctx.engine;
    engine::Handle top = 0;
    try {
        if (run.begin()) {
            double diameter = 0;
            if (!askSize(ctx, "Select a line marker diameter", "Line marker diameter", "2.0",
                         diameter)) {
                run.abandon();
                return;
            }
            diameter *= 10;
            const bool low =
                ctx.ui.msgBox(
                    "Press 'Yes' for low quality survey lines in case of many drill "
                    "holes and 'No' for high quality survey lines in case of few drill "
                    "holes",
                    ui::Buttons::YesNo,
                    "Survey quality - default is low quality wedges?") == ui::Answer::Yes;
            const double sign =
                ctx.ui.msgBox(
                    "Press 'Yes' if positive plunge is UP and 'No' if positive plunge "
                    "is DOWN'",
                    ui::Buttons::YesNo,
                    "Survey Sign Convention - Positive plunge down?") == ui::Answer::Yes
                    ? -1
                    : 1;
            TextFile file;
            loadImportFile(ctx, file);
            ctx.state.sngProgressBusy = 0;
            ctx.state.lngProgressLines = 0;
            top = eng.group_create(kSurveyGroup);
            std::string notAtZero;
            {
                SurveyWalk walk(ctx, top, diameter, low);
                FieldSplitter splitter(5);
                std::string_view line;
                long lines = 0;
                while (!stopRequested(run) && file.nextLine(line)) {
                    const auto& f = splitter.split(line, kKeep);
                    const std::size_t n = splitter.count();
                    if (n == 1 && f[0].empty()) break;  // an empty line ends the file
                    const std::size_t s = f[0].empty() ? 1 : 0;
                    if (n < 4 + s) throw ImportFault("a station without its columns");
                    walk.station(f[s], core::valNumber(f[s + 1]) * 10, core::valNumber(f[s + 2]),
                                 core::valNumber(f[s + 3]) * sign);
                    ++lines;
                    run.pumpSometimes(ImportRun::kLinesPerPump);
                    if (progressMessageDue(ctx, 10))
                        progressMessageShow(ctx, 1,
                                            countText("Drillholes completed: ", walk.completed()) +
                                                countText(" Lines read: ", lines) + walk.note());
                }
                walk.closeHole();
                notAtZero = walk.notAtZero();
            }
            run.finish(top);
            ctx.ui.msgBox(notAtZero + "\r\n  The  survey closest to the collar was used\r\n" +
                              "and extended backwards to the collar position",
                          ui::Buttons::OK, "Drillholes that did not start at zero");
            ctx.pointer(1);
            ctx.progress(100);
            ctx.ui.setFocus();
            return;
        }
        run.finish(top);
    } catch (const ui::ScriptError&) {
        throw;
    } catch (...) {
        run.fail(kSurveyErrorBox);
    }
}

}  // namespace importers

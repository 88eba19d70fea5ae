// Logged intervals along the surveyed holes: each interval cut over the survey
// intervals it crosses, one piece a survey interval.

#include <string>

#include "builders/Meshes.h"
#include "builders/Tubes.h"
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

inline constexpr ErrorBox kAttributeErrorBox{
    "Attribute information error",
    "The attribute file could not be found OR The attribute file is invalid"};
inline constexpr ErrorBox kColumnErrorBox{
    "Error in attributes file, first correct",
    "The number of columns in the file is not constant, fill all spaces with -1 and ensure the "
    "number of columns are the same for all rows"};

enum class ColumnTest { Constant, Varies, Interrupted };

ColumnTest testColumns(ImportRun& run, std::string_view text) {
    LineWalker lines(text);
    FieldSplitter splitter(2);
    std::string_view line;
    bool first = true;
    std::size_t lastIndex = 0;
    while (lines.next(line)) {
        if (run.interruptRequested()) return ColumnTest::Interrupted;
        splitter.split(line, 1);
        const std::size_t last = splitter.count() - 1;
        if (first) {
            lastIndex = last;
            first = false;
        } else if (last != lastIndex) {
            return ColumnTest::Varies;
        }
        run.pumpSometimes(ImportRun::kLinesPerPump);
    }
    return ColumnTest::Constant;
}

struct Piece {
    double from = 0, to = 0;  // scene units along the survey interval
};

// The four ways an interval F..T meets a survey interval S..E; the first that
// holds gives the piece. Returns false when none holds.
bool cutInterval(double F, double T, double S, double E, bool& startDone, bool& endDone,
                 Piece& piece) {
    if (F < S && T > E) {
        piece = {0, (E - S) * 10};
        return true;
    }
    if (F >= S && T <= E && !startDone && !endDone) {
        piece = {(F - S) * 10, (T - S) * 10};
        startDone = true;
        return true;
    }
    if (F < S && T > S && T <= E && !startDone) {
        piece = {0, (T - S) * 10};
        startDone = true;
        return true;
    }
    if (F >= S && F < E && T > E && !endDone) {
        piece = {(F - S) * 10, (E - S) * 10};
        endDone = true;
        return true;
    }
    return false;
}

std::string timeNow(core::AppContext& ctx) { return core::formatRecordTime(ctx.ui.now()); }

}  // namespace

void importDrillholeAttributes(core::AppContext& ctx) {
    ImportRun run(ctx, ImportMode::Add);
    engine::Engine& eng = ctx.engine;
    engine::Handle top = 0;
    builders::DrillLineRings rings;
    try {
        if (run.begin()) {
            TextFile file;
            loadImportFile(ctx, file);
            ctx.comment("File is tested for correctness");
            const ColumnTest test = testColumns(run, file.text());
            if (test != ColumnTest::Constant) {
                if (test == ColumnTest::Varies)
                    ctx.ui.msgBox(kColumnErrorBox.message, ui::Buttons::OK,
                                  kColumnErrorBox.caption);
                ctx.state.bolInterruptProcess = false;
                run.abandon();
                return;
            }
            ctx.comment("File appears to be correctly formatted");
            double diameter = 0;
            if (!askSize(ctx, "Line diameter", "Line diameter", "5", diameter)) {
                run.abandon();
                return;
            }
            diameter *= 10;
            const bool cylinders =
                ctx.ui.msgBox(
                    "Press 'Yes' for Cylindrical (small datasets only) and 'No' for "
                    "Triangular (large datasets)",
                    ui::Buttons::YesNo, "Attribute primitive type") == ui::Answer::Yes;
            const std::string started = timeNow(ctx);
            ctx.comment("Start time: " + started + "   Start reading the file");
            ctx.state.sngProgressBusy = 0;
            ctx.state.lngProgressLines = 0;
            const SurveyHoles holes(eng);
            top = eng.group_create(kAttributeGroup);

            LineWalker lines(file.text());
            FieldSplitter splitter(2);
            std::string_view line;
            HoleRun hole(eng, holes, top, kAttributeHoleGroup);
            long count = 0;
            while (lines.next(line)) {
                if (run.interruptRequested()) {
                    ctx.state.bolInterruptProcess = false;
                    break;
                }
                const auto& f = splitter.split(line);
                const std::size_t n = splitter.count();
                const std::size_t s = f[0].empty() ? 1 : 0;
                if (n < 3 + s) throw ImportFault("an interval without its depths");
                const std::string_view id = f[s];
                const double F = core::valNumber(f[s + 1]);
                const double T = core::valNumber(f[s + 2]);
                hole.at(id);
                const std::vector<SurveyInterval>* intervals = hole.intervals();
                const engine::Handle holeGroup = hole.group();
                if (intervals) {
                    std::string columns;
                    for (std::size_t i = s + 3; i < f.size(); ++i) {
                        if (i > s + 3) columns += '\t';
                        columns.append(f[i]);
                    }
                    const std::string head = std::string(kAttributeName) + "\t" + std::string(id) +
                                             "\r\n" + std::string(f[s + 1]) + "\t" +
                                             std::string(f[s + 2]) + "\r\n";
                    bool startDone = false, endDone = false;
                    for (const SurveyInterval& si : *intervals) {
                        if (startDone && endDone) break;
                        Piece piece;
                        if (!cutInterval(F, T, si.from, si.to, startDone, endDone, piece)) continue;
                        double az = si.azimuth, pl = si.plunge;
                        engine::Point3 a, b;
                        P_subNextHolePoint(si.start, piece.from, az, pl, a, ctx.state.sngNorthAxis);
                        P_subNextHolePoint(si.start, piece.to, az, pl, b, ctx.state.sngNorthAxis);
                        const engine::Handle g =
                            cylinders ? builders::P_fncCreateCylinder(eng, a, b, diameter,
                                                                      kAttributeColour)
                                      : builders::P_fncCreateDrillLine(eng, rings, a, b, diameter,
                                                                       kAttributeColour);
                        core::p_subSetGroupPolygonNames(eng, g,
                                                        head + core::numberText(az) + "\t" +
                                                            core::numberText(pl) + "\r\n" +
                                                            columns);
                        if (cylinders)
                            eng.group_set_father_group(g, holeGroup);
                        else
                            P_subMovePolygonsToGroup(eng, g, holeGroup);
                    }
                }
                ++count;
                run.pumpSometimes(ImportRun::kLinesPerPump);
                if (progressMessageDue(ctx, 10))
                    progressMessageShow(ctx, 5,
                                        "Start time: " + started +
                                            "   Number of lines read: " + std::to_string(count));
            }
            builders::P_subReleaseDrillLine(eng, rings);
            run.finish(top);
            ctx.comment("Start time: " + started + "   End time: " + timeNow(ctx) +
                        "   Number of lines read: " + std::to_string(count));
            return;
        }
        run.finish(top);
    } catch (const ui::ScriptError&) {
        builders::P_subReleaseDrillLine(eng, rings);
        throw;
    } catch (...) {
        builders::P_subReleaseDrillLine(eng, rings);
        run.fail(kAttributeErrorBox);
    }
}

}  // namespace importers

// QkL and MS event lists: one line an event, read and placed as it comes.

#include <string>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "forms/Frm21DataChanges.h"
#include "import/ImportRoute.h"
#include "import/ProgressMessage.h"
#include "import/SeismicReaders.h"
#include "import/TextFile.h"
#include "ui/ScriptedUi.h"

namespace importers {

namespace {

void readSeismicList(ImportRun& run, const SeismicConvention& conv, SeismicFormat format,
                     engine::Handle group) {
    core::AppContext& ctx = run.context();
    TextFile file;
    if (!file.load(ctx.state.strFullPath)) throw ImportFault("the file cannot be read");
    ctx.state.sngProgressBusy = 0;
    ctx.state.lngProgressLines = 0;
    FieldSplitter splitter(5);
    std::string record;
    std::string_view line;
    long count = 0;
    while (!run.interruptRequested() && file.nextLine(line)) {
        const SeismicFields& f = splitter.split(line, kSeismicFieldsKept);
        run.pumpSometimes(ImportRun::kLinesPerPump);
        SeismicEvent e;
        std::string_view name = line;
        if (format == SeismicFormat::QkL) {
            e = readQkLFields(f, splitter.count(), conv);
            record = seismicRecord(e);
            name = record;
        } else {
            e = readMsFields(f, splitter.count(), conv);
        }
        if (!placeSeismicEvent(ctx, e.position, e.ml, seismicMagnitudeColour(e.ml), name, group))
            continue;
        ++count;
        if (progressMessageDue(ctx, 100))
            progressMessageShow(ctx, 1, kEventsLoadedText + std::to_string(count));
    }
    // An interrupt keeps what was placed; the flag is taken back for the next loop.
    ctx.state.bolInterruptProcess = false;
}

void seismicMenuEntry(core::AppContext& ctx, const char* fileType, const char* prompt,
                      SeismicFormat format) {
    SeismicConvention conv;
    if (!askSeismicConvention(ctx, conv)) return;
    ctx.comment(prompt);
    p_subFileAdd(ctx, fileType);
    if (ctx.state.bolFileCancelled != 0) {
        ctx.state.bolFileCancelled = 0;
        return;
    }
    importSeismicList(ctx, "Add", conv, format);
}

}  // namespace

bool askSeismicConvention(core::AppContext& ctx, SeismicConvention& conv) {
    forms::Frm21DataChanges& form = forms::dataChangesForm(ctx);
    form.ensureLoaded();
    ctx.ui.showModal(form);
    form.hide();
    if (ctx.state.bolColourMapCancelled == -1) {
        ctx.state.bolColourMapCancelled = 0;
        core::p_subMainLoop(ctx);
        return false;
    }
    for (int k = 0; k < 3; ++k) conv.intCoordSign[k] = form.intCoordSign(k);
    conv.bolSwitchXandY = form.bolSwitchXandY();
    return true;
}

void importSeismicList(core::AppContext& ctx, const std::string& strMode,
                       const SeismicConvention& conv, SeismicFormat format) {
    const auto mode = importModeOf(strMode);
    if (!mode) return;
    ImportRun run(ctx, *mode);
    engine::Handle group = 0;
    try {
        if (run.begin()) {
            group = seismicGroup(ctx, kSeismicGroup);
            readSeismicList(run, conv, format, group);
        }
        run.finish(group);
    } catch (const ui::ScriptError&) {
        throw;
    } catch (...) {
        run.fail(kSeismicErrorBox);
    }
}

void mnuImportSeismicDataQkL(core::AppContext& ctx) {
    seismicMenuEntry(ctx, kQkLFileType, kQkLPrompt, SeismicFormat::QkL);
}

void mnuImportSeismicDataMS(core::AppContext& ctx) {
    seismicMenuEntry(ctx, kMsFileType, kMsPrompt, SeismicFormat::MS);
}

}  // namespace importers

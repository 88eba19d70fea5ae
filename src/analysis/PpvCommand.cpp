#include "analysis/PpvCommand.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>

#include "analysis/ColourMapForm.h"
#include "analysis/ColourScale.h"
#include "analysis/ProgressPacer.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "forms/Frm30ImportPPV.h"
#include "persistence/OpenFile.h"

namespace analysis {

namespace {

bool readWhole(const std::string& path, std::string& out) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) return false;
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream buf;
    buf << in.rdbuf();
    if (in.bad()) return false;
    out = buf.str();
    return true;
}

// The error box of the reader; what was written stays.
void seismicError(core::AppContext& ctx) {
    ctx.pointer(1);
    ctx.ui.msgBox(kSeismicErrorText, ui::Buttons::OK, kSeismicErrorTitle);
    core::p_subMainLoop(ctx);
}

// frm29_ColourMap left ready to colour the records again later.
void prepareColourMapForm(core::AppContext& ctx, const std::string& minText) {
    forms::Form& cm = colourMapForm(ctx);
    cm.ensureLoaded();
    if (cm.find("optCumPPV") != nullptr)
        cm.setOption("optCumPPV");
    else
        ctx.state.bolInverseColourMap = kNormalMap;
    cm.setOption("optCM4");
    // Both limits take the minimum; the minimum's own rule then moves the maximum.
    if (cm.find("cboMax") != nullptr) cm.setText("cboMax", minText);
    if (cm.find("cboMin") != nullptr) cm.setText("cboMin", minText);
}

int signOf(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first != std::string::npos && text[first] == '-') return -1;
    return core::valNumber(text) < 0 ? -1 : 1;
}

}  // namespace

std::string ppvCompletedText(const std::string& strFileName) {
    return "Seismic information from file " + strFileName + " imported";
}

void p_subEvaluatePPV(core::AppContext& ctx, const std::string& strFileName,
                      const CoordConvention& conv, PpvPath path) {
    engine::Engine& eng = ctx.engine;
    auto& st = ctx.state;
    // 1
    forms::Frm30ImportPPV& form = forms::importPpvForm(ctx);
    form.ensureLoaded();
    ctx.ui.showModal(form);
    form.hide();
    if (st.bolColourMapCancelled == -1) {
        st.bolColourMapCancelled = 0;
        return;
    }
    // 2
    core::p_subMainLoop(ctx);
    PpvSettings s;
    s.dblThreshold = form.threshold();
    double dblMin = form.scaleMin(), dblMax = form.scaleMax();
    s.sngK1 = form.k1();
    s.sngK2 = form.k2();
    s.bolLoadEvents = form.loadEvents();
    s.conv = conv;
    // 3
    prepareColourMapForm(ctx, form.text("cboPPVMin"));
    // 4
    st.clearToolFlags();
    ctx.progress(5);
    ctx.pointer(11);
    // 5
    double dblRange = 0, dblInc = 0;
    int bytScale = kScaleGreyAndBright;
    P_subColourScaleSetup(ctx, dblMax, dblMin, dblRange, dblInc, bytScale);
    bytScale = kScaleGreyAndBright;
    if (zeroIncrementStops(ctx, dblInc)) return;
    s.dblMax = dblMax;
    s.dblMin = dblMin;
    s.dblRange = dblRange;
    s.dblInc = dblInc;
    // 6
    const engine::Handle group = eng.group_create(kDamagingEventsGroup);
    // 7
    PpvRun run(ctx, s, group, path);
    run.resetRecords();
    // 8
    core::p_subMainLoop(ctx);
    std::string text;
    if (!readWhole(strFileName, text)) return seismicError(ctx);
    // 9
    ProgressPacer pacer(ctx);
    long count = 0;
    std::size_t start = 0;
    while (start < text.size() && !st.bolInterruptProcess) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::string_view line(text.data() + start, end - start);
        start = end + 1;
        ++count;
        if (run.line(line) == PpvRun::Outcome::Fault) return seismicError(ctx);
        pacer.step(1, 10, kPpvCountText + std::to_string(count));
    }
    st.bolInterruptProcess = false;
    // 10
    persistence::P_subDeleteEngineLogs(ctx, st.strFolder);
    core::P_subApplyLight(ctx, group);
    core::p_subMainLoop(ctx);
    // 11
    persistence::logLoadedFile(ctx, strFileName, " added");
    const std::string done = ppvCompletedText(strFileName);
    ctx.comment(done);
    ctx.ui.msgBox(done, ui::Buttons::OK, kCompletedTitle);
    core::p_subMainLoop(ctx);
    ctx.pointer(1);
    ctx.ui.beep();
    ctx.progress(100);
    ctx.ui.setFocus();
}

CoordConvention conventionFromForm(const forms::Form& form) {
    CoordConvention c;
    const char* boxes[] = {"cboX", "cboY", "cboZ"};
    for (int k = 0; k < 3; ++k)
        if (form.find(boxes[k]) != nullptr) c.sign[k] = signOf(form.text(boxes[k]));
    c.swapXY = form.find("chkSwitchXandY") != nullptr && form.checkValue("chkSwitchXandY") == 1;
    return c;
}

void mnuImportSeismicEvents(core::AppContext& ctx, CoordConvention& conv) {
    core::p_subResetAndCleanup(ctx);
    if (forms::Form* f = ctx.forms.find(kDataChangesForm)) {
        f->ensureLoaded();
        ctx.ui.showModal(*f);
        f->hide();
        conv = conventionFromForm(*f);
    }
    if (ctx.state.bolColourMapCancelled == -1) {
        ctx.state.bolColourMapCancelled = 0;
        return;
    }
    core::p_subMainLoop(ctx);
    if (!persistence::p_subOpenNewFile(ctx, kSeismicFileType)) {
        ctx.state.bolFileCancelled = 0;
        return;
    }
    p_subEvaluatePPV(ctx, ctx.state.strFullPath, conv);
}

void registerPPV(core::AppContext& ctx) {
    if (ctx.commands.find("mnuImportSeismicEvents") != nullptr) return;
    forms::importPpvForm(ctx);
    auto conv = std::make_shared<CoordConvention>();
    core::Command c;
    c.name = "mnuImportSeismicEvents";
    c.caption = "Seismic events (PPV)";
    c.menuPath = "Analysis/Seismic";
    c.handler = [conv](core::AppContext& x) { mnuImportSeismicEvents(x, *conv); };
    ctx.commands.add(std::move(c));

    core::Procedure p;
    p.name = "p_subEvaluatePPV";
    p.params = {core::ParamKind::Text};
    p.body = [conv](core::AppContext& x, std::vector<core::Value>& a) {
        p_subEvaluatePPV(x, a.at(0).text(), *conv);
        return core::Value();
    };
    ctx.procedures.add(std::move(p));
}

}  // namespace analysis

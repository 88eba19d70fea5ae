#include "import/ImportRun.h"

#include <algorithm>
#include <cmath>

#include "core/AppContext.h"
#include "core/Camera.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "persistence/OpenFile.h"

namespace importers {

namespace {

// A scene of millions of polygons takes a while to draw: frames while an import
// runs come at most this often (the first framing of an "Open" always comes).
constexpr auto kFrameInterval = std::chrono::milliseconds(150);

}  // namespace

std::optional<ImportMode> importModeOf(std::string_view strMode) {
    if (strMode == "Open") return ImportMode::Open;
    if (strMode == "Add") return ImportMode::Add;
    return std::nullopt;
}

const char* importModeText(ImportMode mode) { return mode == ImportMode::Open ? "Open" : "Add"; }

ImportRun::ImportRun(core::AppContext& ctx, ImportMode mode) : ctx_(ctx), mode_(mode) {}

ImportRun::~ImportRun() { releaseCommands(); }

void ImportRun::holdCommands() {
    for (const auto& c : ctx_.commands.all()) {
        if (!c.enabled) continue;
        if (c.toolButton || c.menuPath == "File" || c.menuPath.rfind("File/", 0) == 0)
            held_.push_back(c.name);
    }
    for (const auto& name : held_)
        if (auto* c = ctx_.commands.findMutable(name)) c->enabled = false;
}

void ImportRun::releaseCommands() {
    for (const auto& name : held_)
        if (auto* c = ctx_.commands.findMutable(name)) c->enabled = true;
    held_.clear();
}

void ImportRun::setBar(double value) {
    bar_ = value;
    const int shown = static_cast<int>(value);
    if (shown != shownBar_) {
        shownBar_ = shown;
        ctx_.progress(shown);
    }
}

bool ImportRun::begin() {
    setBar(0);
    ctx_.pointer(11);
    holdCommands();
    if (ctx_.state.strFullPath.empty()) return false;
    bolFirstPass_ = true;
    lastFrame_ = std::chrono::steady_clock::now();
    return true;
}

bool ImportRun::interruptRequested() const { return ctx_.state.bolInterruptProcess; }

void ImportRun::pumpSometimes(unsigned every) {
    if (++sinceLinePump_ >= every) {
        sinceLinePump_ = 0;
        ctx_.ui.pumpEvents();
    }
}

void ImportRun::lineRead() {
    pumpSometimes(kLinesPerPump);
    double next = bar_ + 0.1;
    if (next > 99.9) {
        setBar(0);
        renderStep();
    } else {
        setBar(next);
    }
}

void ImportRun::startBuild() { setBar(25); }

void ImportRun::recordBuilt() {
    if (++sinceRecordPump_ >= kRecordsPerPump) {
        sinceRecordPump_ = 0;
        ctx_.ui.pumpEvents();
    }
    const double next = bar_ + 1;
    if (next > 99) {
        // the bar comes round to where building started
        setBar(25);
        renderStep();
    } else {
        setBar(next);
    }
}

std::size_t ImportRun::quietRecords() const {
    if (sinceRecordPump_ + 1 >= kRecordsPerPump || bar_ + 1 > 99) return 0;
    const auto beforePump = std::size_t(kRecordsPerPump - 1 - sinceRecordPump_);
    const auto beforeRound = static_cast<std::size_t>(std::floor(99 - bar_));
    return std::min(beforePump, beforeRound);
}

void ImportRun::skipRecords(std::size_t calls) {
    if (calls == 0) return;
    sinceRecordPump_ += static_cast<unsigned>(calls);
    setBar(bar_ + double(calls));
}

void ImportRun::renderStep() {
    const auto now = std::chrono::steady_clock::now();
    if (mode_ == ImportMode::Open && bolFirstPass_) {
        persistence::P_subSceneCentre(ctx_);
        core::p_subInitializeCamera(ctx_, false);
        core::p_subMainLoop(ctx_, true);
        bolFirstPass_ = false;
        lastFrame_ = now;
        return;
    }
    if (now - lastFrame_ < kFrameInterval) return;
    lastFrame_ = now;
    core::p_subMainLoop(ctx_, false);
}

void ImportRun::finish(engine::Handle topGroup) {
    auto& s = ctx_.state;
    setBar(75);
    const char* suffix = mode_ == ImportMode::Open ? " opened" : " added";
    ctx_.comment(persistence::logLoadedFile(ctx_, s.strFullPath, suffix));
    if (mode_ == ImportMode::Open) {
        persistence::P_subSceneCentre(ctx_);
        core::p_subInitializeCamera(ctx_, true);
        ctx_.engine.group_move(topGroup, {0, 0, 0});
        persistence::P_subSceneCentre(ctx_);
        ctx_.ui.pumpEvents();
    } else {
        ctx_.engine.group_move(topGroup, {0, 0, 0});
    }
    core::P_subApplyLight(ctx_, topGroup);
    core::p_subActivateCommandButtons(ctx_);
    ctx_.pointer(1);
    releaseCommands();
    persistence::P_subDeleteEngineLogs(ctx_, s.strFolder);
    core::p_subMainLoop(ctx_, true);
    setBar(100);
    ctx_.ui.setFocus();
}

void ImportRun::tidyEnd() {
    core::p_subActivateCommandButtons(ctx_);
    ctx_.pointer(1);
    releaseCommands();
    setBar(100);
    core::p_subMainLoop(ctx_, true);
    ctx_.ui.setFocus();
}

void ImportRun::fail(const ErrorBox& box) {
    ctx_.ui.msgBox(box.message, ui::Buttons::OK, box.caption);
    core::P_subApplyLight(ctx_, 0);
    tidyEnd();
}

void ImportRun::abandon() { tidyEnd(); }

}  // namespace importers

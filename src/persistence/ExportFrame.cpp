#include "persistence/ExportFrame.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "persistence/ExportSave.h"
#include "persistence/ExportText.h"

namespace persistence {

namespace fs = std::filesystem;

namespace {
constexpr int kWaitPointer = 11;
constexpr int kNormalPointer = 1;

// Group 0 is the whole world, polygon by polygon: the engine moves groups only.
void shift(engine::Engine& eng, engine::Handle group, engine::Point3 d) {
    if (d == engine::Point3{}) return;
    if (group != 0) {
        eng.group_move(group, d);
        return;
    }
    for (engine::Handle p = eng.polygon_get_first_polygon(); p != 0; p = eng.polygon_get_next(p))
        eng.polygon_move(p, d);
}
}  // namespace

ExportFrame::ExportFrame(core::AppContext& ctx, ExportPacing pacing) : ctx_(ctx), pacing_(pacing) {}

ExportFrame::~ExportFrame() {
    if (finished_) return;
    moveBack();
    ctx_.pointer(kNormalPointer);
}

void ExportFrame::begin() {
    core::p_subResetAndCleanup(ctx_);
    temp_ = exportTempFile(ctx_);
    std::error_code ec;
    fs::remove(temp_, ec);
    bar_ = 0;
    ctx_.progress(0);
    ctx_.pointer(kWaitPointer);
}

void ExportFrame::moveWorld(engine::Handle group) {
    const engine::Point3 off = ctx_.state.dblCoordOffset;
    shift(ctx_.engine, group, {-off.x, -off.y, -off.z});
    moved_ = true;
    movedGroup_ = group;
}

void ExportFrame::moveBack() {
    if (!moved_) return;
    shift(ctx_.engine, movedGroup_, ctx_.state.dblCoordOffset);
    moved_ = false;
}

bool ExportFrame::interrupted() const { return ctx_.state.bolInterruptProcess; }

void ExportFrame::line(std::string_view s) {
    buffer_ += s;
    buffer_ += kCrLf;
}

void ExportFrame::itemDone(long count) {
    count_ += count;
    ctx_.ui.pumpEvents();
    bar_ += pacing_.step;
    if (bar_ > pacing_.flushAbove) {
        bar_ = 0;
        showCount();
        ctx_.ui.pumpEvents();
        flush();
    }
    ctx_.progress(static_cast<int>(bar_));
}

void ExportFrame::showCount() { ctx_.comment(pacing_.countLabel + std::to_string(count_)); }

void ExportFrame::flush() {
    if (buffer_.empty()) {
        // The file still has to be there for the copy, even with nothing in it.
        std::ofstream f(temp_, std::ios::binary | std::ios::app);
        if (!f) writeFailed_ = true;
        return;
    }
    std::ofstream f(temp_, std::ios::binary | std::ios::app);
    f.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    f.close();
    if (!f) writeFailed_ = true;
    buffer_.clear();
}

bool ExportFrame::finish(const std::string& fileType) {
    showCount();
    flush();
    moveBack();
    finished_ = true;
    ctx_.pointer(kNormalPointer);
    if (writeFailed_) {
        ctx_.ui.msgBox(kCopyFailedText, ui::Buttons::OK, kCopyFailedTitle);
        return false;
    }
    return p_subFileCopy(ctx_, fileType, temp_);
}

}  // namespace persistence

#pragma once
// The life of one import, the same for every reader: the hourglass and the
// progress bar, the frames that show a long import growing, the first framing of
// the camera for "Open", the log of loaded files, the null move, the light and the
// tidy end; or, after a fault, the reader's error box. A reader keeps the order:
//
//   ImportRun run(ctx, mode);
//   if (run.begin()) { ...read, calling lineRead() (or P_subProgressMessage)...
//                      run.startBuild(); ...build, calling recordBuilt()... }
//   run.finish(topGroup);
//
// and sends every fault (an ImportFault, or anything else thrown) to fail(box).

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace importers {

// "Open" replaces the scene, "Add" keeps it; no other text is a mode.
enum class ImportMode { Open, Add };
std::optional<ImportMode> importModeOf(std::string_view strMode);
const char* importModeText(ImportMode mode);

// The error box of a reader: caption and message, shown with OK.
struct ErrorBox {
    const char* caption;
    const char* message;
};
inline constexpr ErrorBox kAscErrorBox{"Warning Message",
                                       "A error occurred or the process was manually interrupted"};
inline constexpr ErrorBox kFormatErrorBox{
    "Error Message", "A error occurred, most probably due to an unknown file-format"};
inline constexpr ErrorBox kDxfErrorBox{
    "Error Message", "A error occurred, probably due to an unknown or inconsistent file-format"};

// A run-time fault inside a reader (a missing column, an unreadable file, a number
// too large for its field): it ends in the reader's error handler.
class ImportFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class ImportRun {
public:
    // Events are let through once in so many lines read and records built: often
    // enough for the interrupt button and repaints, rarely enough to cost little.
    static constexpr unsigned kLinesPerPump = 1024;
    static constexpr unsigned kRecordsPerPump = 64;

    ImportRun(core::AppContext& ctx, ImportMode mode);
    // Gives back the entries held while the import ran, however it ended.
    ~ImportRun();
    ImportRun(const ImportRun&) = delete;
    ImportRun& operator=(const ImportRun&) = delete;

    core::AppContext& context() { return ctx_; }
    ImportMode mode() const { return mode_; }

    // Progress 0 and the hourglass; the first rendering pass is still to come.
    // False when no file was chosen: the reader then goes straight to finish().
    bool begin();

    // Reading. The interrupt is tested before each line; after each line events
    // run now and then, the bar rises by 0.1 and a frame is drawn when it passes 99.9.
    bool interruptRequested() const;
    void lineRead();
    // Events now and then, for readers that move the bar themselves.
    void pumpSometimes(unsigned every);
    // How many calls of pumpSometimes(every) would let no events through before
    // the next one that does, and the counting of `calls` such calls.
    unsigned quietPumps(unsigned every) const {
        return sinceLinePump_ + 1 >= every ? 0 : every - 1 - sinceLinePump_;
    }
    void skipPumps(unsigned calls) { sinceLinePump_ += calls; }

    // Building: the bar to 25, then after each record events now and then, the bar
    // up by 1 and a frame each time it comes round.
    void startBuild();
    void recordBuilt();
    // How many calls of recordBuilt() would neither let events through nor bring
    // the bar round (so draw nothing) before the next one that does; and the
    // counting of `calls` such calls at once, for readers that build in runs.
    std::size_t quietRecords() const;
    void skipRecords(std::size_t calls);

    // A frame while the import runs; the first one of an "Open" frames the camera
    // on what is there so far.
    void renderStep();

    // The tail every import ends with: the log, the camera ("Open"), the null move
    // of the import's top group, its light, and the tidy end.
    void finish(engine::Handle topGroup);
    // The error handler: the box, the light on the whole scene, the tidy end.
    // What was built stays.
    void fail(const ErrorBox& box);
    // Ends an import the user called off in one of its dialogs: nothing is logged.
    void abandon();

private:
    void setBar(double value);
    void tidyEnd();
    // Events run in the middle of an import: the file menu and the tool buttons
    // stay off meanwhile, so that no second import or tool starts inside this one.
    void holdCommands();
    void releaseCommands();

    core::AppContext& ctx_;
    ImportMode mode_;
    double bar_ = 0;
    int shownBar_ = -1;
    bool bolFirstPass_ = false;
    unsigned sinceLinePump_ = 0;
    unsigned sinceRecordPump_ = 0;
    std::chrono::steady_clock::time_point lastFrame_;
    std::vector<std::string> held_;
};

}  // namespace importers

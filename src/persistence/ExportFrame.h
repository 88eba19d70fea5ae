#pragma once
// The road every export through the temporary file takes: the clean-up, the
// world moved so that the file carries the coordinate offset, lines gathered in
// a buffer that is flushed each time the progress bar comes round, and at the
// end the temporary file offered to the save dialog.
//
//   ExportFrame f(ctx, settings);
//   f.begin(); f.moveWorld(group);
//   for (...) { if (f.interrupted()) break; ...f.line(...)...; f.itemDone(n); }
//   ...tail lines...; f.finish(fileType);

#include <string>
#include <string_view>

#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace persistence {

struct ExportPacing {
    double step = 1.0;         // the bar's rise after each item
    double flushAbove = 99.0;  // the bar is set back and the buffer flushed past this
    const char* countLabel = "Number of polygons: ";
};

inline constexpr ExportPacing kPolygonPacing{1.0, 99.0, "Number of polygons: "};
inline constexpr ExportPacing kCentrePacing{0.5, 99.5, "Number of lines: "};
inline constexpr ExportPacing kPolyDataPacing{0.1, 99.9, "Number of lines: "};

class ExportFrame {
public:
    ExportFrame(core::AppContext& ctx, ExportPacing pacing);
    // Gives the world back and the normal pointer if the export ended early.
    ~ExportFrame();
    ExportFrame(const ExportFrame&) = delete;
    ExportFrame& operator=(const ExportFrame&) = delete;

    // Tool state cleared, temporary file deleted, bar at 0, the wait pointer.
    void begin();
    // Moves `group` (0 the whole world) by the negative of the coordinate offset.
    void moveWorld(engine::Handle group);
    bool interrupted() const;

    void text(std::string_view s) { buffer_ += s; }
    // One line and its CR LF.
    void line(std::string_view s);
    // After an item: events, the bar, and the flush when the bar comes round.
    // `count` is what the item adds to the count shown.
    void itemDone(long count = 1);
    long count() const { return count_; }

    // The count shown, the buffer flushed, the world moved back and the file
    // offered under the type. True when a file was written.
    bool finish(const std::string& fileType);

    const std::string& tempFile() const { return temp_; }

private:
    void showCount();
    void flush();
    void moveBack();

    core::AppContext& ctx_;
    ExportPacing pacing_;
    std::string temp_;
    std::string buffer_;
    double bar_ = 0;
    long count_ = 0;
    bool moved_ = false;
    engine::Handle movedGroup_ = 0;
    bool writeFailed_ = false;
    bool finished_ = false;
};

}  // namespace persistence

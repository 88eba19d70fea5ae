#pragma once
// Pictures of the real window for the user guide: once the window has drawn,
// the main window (with the command palette over it when asked) is saved as a
// PNG and the program quits.

#include <QString>

namespace gui {

class Application;

struct ScreenshotRequest {
    QString file;               // where the PNG goes
    QString paletteQuery;       // non-empty: the palette open with this typed
    bool showInfo = false;      // names under the mouse on, the mouse over the scene
    int width = 0, height = 0;  // window size; 0 keeps the default
};

// Pictures are taken unattended: from now on a message box that comes up (the
// warning a far-off model brings, say) is closed, and a form accepted as it stands.
void closeBoxesUnattended();

// Starts the timers that take the picture and quit; the exit code is 0 when it was saved.
void scheduleScreenshot(Application& app, const ScreenshotRequest& request);

}  // namespace gui

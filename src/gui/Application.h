#pragma once
// The window program's objects in the order they need each other: the Ui port,
// the application context with every layer registered, and the main window.

#include <memory>
#include <string>

#include "core/AppContext.h"
#include "gui/QtUi.h"

namespace gui {

class MainWindow;

class Application {
public:
    Application();
    ~Application();

    core::AppContext& context() { return *ctx_; }
    MainWindow& window() { return *window_; }
    QtUi& ui() { return ui_; }

    // Shows the window and runs the main form's start-up; false when the program
    // must end (the user has been told).
    bool start();
    // Adds the built-in demo mine and points the camera at it.
    bool loadDemo();
    // The camera close enough that the whole scene fills most of the window.
    void fitView();
    // Opens a file named on the command line: a world as opening by association
    // does, any other through the reader of its extension; `add` keeps the scene.
    bool openFromCommandLine(const std::string& path, bool add = false);

private:
    QtUi ui_;
    std::unique_ptr<core::AppContext> ctx_;
    std::unique_ptr<MainWindow> window_;
};

}  // namespace gui

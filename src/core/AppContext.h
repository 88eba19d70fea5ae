#pragma once
// One application context per open window: the engine, the Ui port, the state
// beside the engine, the settings, the forms and the registries. No globals.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/Commands.h"
#include "core/InputHandlers.h"
#include "core/MainState.h"
#include "core/Procedures.h"
#include "core/Settings.h"
#include "engine/Engine.h"
#include "forms/Form.h"
#include "ui/Ui.h"

namespace core {

class AppContext {
public:
    explicit AppContext(ui::Ui& ui);
    ~AppContext();
    AppContext(const AppContext&) = delete;
    AppContext& operator=(const AppContext&) = delete;

    engine::Engine engine;
    ui::Ui& ui;
    MainState state;
    Settings settings;
    forms::FormRegistry forms;
    CommandRegistry commands;
    ProcedureRegistry procedures;
    std::string strProgramFolder;  // where backups and "Tarvik Settings.SET" live

    // Writes a new text to txtComment (kept in the state and shown).
    void comment(const std::string& text);
    // Appends a line to strCommentLog (CR LF between lines).
    void logLine(const std::string& text);
    void status(int panel, const std::string& text);
    void pointer(int shape) { ui.setPointer(shape); }
    void progress(int percent) { ui.setProgress(percent); }

    // Hooks later layers attach to, run by the main-form logic (e.g. the window
    // layout on resize, watermarks, the camera-light each frame).
    std::vector<std::function<void(AppContext&)>> onResetAndCleanup;
    std::function<void(AppContext&)> showWatermarks;
    // Keys, clicks and wheel turns in picRenderWindow (navigation and tools fill them).
    InputHandlers input;
    // World files by name, without dialogs (the persistence layer fills them).
    WorldFileHooks worldFiles;
    // The coordinate limit rule at camera start, and the light that follows the camera.
    std::function<void(AppContext&)> coordinateLimitCheck;
    std::function<void(AppContext&)> lightFollowCamera;
    // Opens the link a polygon name holds (the tools layer fills it); false when
    // the name is no link.
    std::function<bool(AppContext&, const std::string& name)> openNameLink;
    // The settings changed the main form's size (state.formWidth, formHeight) or
    // settings.statusBarVisible: the window follows.
    std::function<void(AppContext&)> windowSettingsChanged;
    // The start of the engine and the card check; tests replace them to see the
    // start failures.
    std::function<bool(AppContext&)> engineStarts = [](AppContext&) { return true; };
    std::function<int(AppContext&)> cardSupport = [](AppContext& c) {
        return c.engine.card_check_hardware_support();
    };
};

}  // namespace core

#pragma once
// One run of the program for a script: the scripted Ui port, an application
// context with every layer registered, started as the program starts.

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace core {
class AppContext;
}
namespace ui {
class ScriptedUi;
}

namespace script {

class ScriptSession {
public:
    // The transcript goes to `transcript` (nullptr: kept in memory only).
    explicit ScriptSession(std::ostream* transcript = nullptr);
    ~ScriptSession();

    core::AppContext& context() { return *ctx_; }
    ui::ScriptedUi& ui() { return *ui_; }

    // Registers every layer, runs `setup` (tests add their forms and procedures
    // there), then the main form's start-up. Returns an exit status (0 when started).
    int start(std::ostream& err, const std::function<void(core::AppContext&)>& setup = {});

    // Runs a script file; relative paths are from its folder.
    int runFile(const std::filesystem::path& script, std::ostream& err);
    // Runs script text as if it were the file `scriptName` in `baseDir`.
    int runText(const std::string& text, const std::string& scriptName,
                const std::filesystem::path& baseDir, std::ostream& err);

private:
    int startOnce(std::ostream& err, const std::function<void(core::AppContext&)>& setup);

    std::unique_ptr<ui::ScriptedUi> ui_;
    std::unique_ptr<core::AppContext> ctx_;
    bool started_ = false;
    int startStatus_ = 0;
};

// What `tarvik-cli run` does: start, run the file, give the exit status.
int runScriptFile(const std::filesystem::path& script, std::ostream* transcript, std::ostream& err,
                  const std::function<void(core::AppContext&)>& setup = {});

}  // namespace script

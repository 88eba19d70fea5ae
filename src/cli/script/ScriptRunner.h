#pragma once
// Runs a script against one application context, line by line, as a person at
// the window would: commands by name, answers queued for the dialogs they open,
// keys and clicks in the render window, calls of procedures and a scene dump.
//
// Exit status: 0 the script ran to its end; 2 a script error (unknown command or
// control, bad arguments, a dialog with no answer, an answer never used), with
// "NAME:LINE: message" on the error stream; 1 anything else.

#include <filesystem>
#include <iosfwd>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/script/Tokenizer.h"

namespace core {
class AppContext;
}
namespace ui {
class ScriptedUi;
}

namespace script {

// A failure that is not the script's fault (a file that cannot be written, a
// part of the program missing from this build): exit status 1.
class RunError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class ScriptRunner {
public:
    // Relative paths of the script are taken from `baseDir` (the script's folder).
    ScriptRunner(core::AppContext& ctx, ui::ScriptedUi& ui, std::filesystem::path baseDir);

    int run(const std::string& text, const std::string& scriptName, std::ostream& err);

    void setVariable(const std::string& name, const std::string& value) { vars_[name] = value; }
    std::optional<std::string> variable(const std::string& name) const;

private:
    using Args = std::vector<Token>;

    void execute(const Args& tokens);
    std::filesystem::path resolve(const std::string& path) const;
    // Takes a trailing "> VAR" off the arguments; returns VAR or "".
    std::string takeRedirect(Args& args) const;

    void cmdRun(const Args& a);
    void cmdAnswer(const Args& a);
    void cmdSet(const Args& a);
    void cmdGet(const Args& a);
    void cmdKey(const Args& a);
    void cmdMouse(const Args& a);
    void cmdWheel(const Args& a);
    void cmdWindow(const Args& a);
    void cmdClock(const Args& a);
    void cmdCall(Args a);
    void cmdPolygon(Args a);
    void cmdWorldFile(const Args& a, bool save);
    void cmdDump(const Args& a);
    void cmdEcho(const Args& a);

    core::AppContext& ctx_;
    ui::ScriptedUi& ui_;
    std::filesystem::path baseDir_;
    std::map<std::string, std::string> vars_;
    int line_ = 0;
};

}  // namespace script

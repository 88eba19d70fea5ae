#include "cli/script/ScriptSession.h"

#include <fstream>
#include <ostream>
#include <sstream>

#include "app/Registration.h"
#include "cli/script/ScriptRunner.h"
#include "core/AppContext.h"
#include "core/EngineProcedures.h"
#include "ui/ScriptedUi.h"

namespace script {

namespace {
constexpr int kWindowWidth = 800;
constexpr int kWindowHeight = 600;
}  // namespace

ScriptSession::ScriptSession(std::ostream* transcript)
    : ui_(std::make_unique<ui::ScriptedUi>(transcript)),
      ctx_(std::make_unique<core::AppContext>(*ui_)) {}

ScriptSession::~ScriptSession() = default;

int ScriptSession::start(std::ostream& err, const std::function<void(core::AppContext&)>& setup) {
    if (started_) return startStatus_;
    started_ = true;
    startStatus_ = startOnce(err, setup);
    return startStatus_;
}

int ScriptSession::startOnce(std::ostream& err,
                             const std::function<void(core::AppContext&)>& setup) {
    try {
        app::registerAll(*ctx_);
        if (setup) setup(*ctx_);
        ctx_->engine.set_window_size(kWindowWidth, kWindowHeight);
        bool ok = app::startMainForm(*ctx_);
        if (ui_->failure()) throw ui::ScriptError(*ui_->failure());
        if (!ok) {
            err << "the program did not start\n";
            return 1;
        }
    } catch (const ui::ScriptError& e) {
        err << "start-up: " << e.what() << '\n';
        return 2;
    } catch (const std::exception& e) {
        err << "start-up failed: " << e.what() << '\n';
        return 1;
    }
    // Scripts see the same window whatever the start-up laid out.
    ctx_->engine.set_window_size(kWindowWidth, kWindowHeight);
    ctx_->state.lngWindowWidth = kWindowWidth;
    ctx_->state.lngWindowHeight = kWindowHeight;
    return 0;
}

int ScriptSession::runText(const std::string& text, const std::string& scriptName,
                           const std::filesystem::path& baseDir, std::ostream& err) {
    if (int rc = start(err)) return rc;
    ScriptRunner runner(*ctx_, *ui_, baseDir);
    return runner.run(text, scriptName, err);
}

int ScriptSession::runFile(const std::filesystem::path& script, std::ostream& err) {
    std::ifstream f(script, std::ios::binary);
    if (!f) {
        err << script.string() << ": cannot read the script\n";
        return 1;
    }
    std::stringstream ss;
    ss << f.rdbuf();
    std::filesystem::path base = script.parent_path();
    if (base.empty()) base = ".";
    return runText(ss.str(), script.filename().string(), base, err);
}

int runScriptFile(const std::filesystem::path& script, std::ostream* transcript, std::ostream& err,
                  const std::function<void(core::AppContext&)>& setup) {
    if (!std::filesystem::is_regular_file(script)) {
        err << script.string() << ": cannot read the script\n";
        return 1;
    }
    ScriptSession session(transcript);
    if (int rc = session.start(err, setup)) return rc;
    return session.runFile(script, err);
}

}  // namespace script

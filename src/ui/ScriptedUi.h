#pragma once
// The Ui port for scripts and tests: dialogs are answered from queues filled
// beforehand, and everything shown is written to a transcript, one JSON object
// a line.

#include <deque>
#include <functional>
#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ui/Ui.h"

namespace ui {

// A dialog came up that the script did not answer, or an answer did not fit it.
// The script runner turns it into exit status 2 with the line it was running.
class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct FormAnswer {
    std::string form;
    FormAction action = FormAction::Accept;
    std::vector<std::pair<std::string, std::string>> controls;  // CONTROL=VALUE in order
    int line = 0;                                               // of the script, for messages
};

class ScriptedUi : public Ui {
public:
    // The transcript goes to `out` when given, and is always kept in memory.
    explicit ScriptedUi(std::ostream* out = nullptr);

    // ---- answers, used in the order the dialogs come up ----------------------
    void answerMsgBox(Answer a, int line = 0);
    void answerInput(std::optional<std::string> text, int line = 0);
    // `shown` is what the transcript writes (the path as the script gave it);
    // `path` is what the program receives.
    void answerOpen(std::optional<std::string> path, int line = 0,
                    std::optional<std::string> shown = std::nullopt);
    void answerSave(std::optional<std::string> path, int line = 0,
                    std::optional<std::string> shown = std::nullopt);
    void answerColour(std::optional<engine::Rgb> c, int line = 0);
    void answerForm(FormAnswer a);
    struct Unused {
        int line = 0;      // where it was queued
        std::string what;  // "answer msgbox Yes"
    };
    // The answers nobody used, by the line that queued them.
    std::vector<Unused> unusedAnswers() const;

    // ---- clock ---------------------------------------------------------------
    void fixClock(DateTime t) { fixedNow_ = t; }
    void releaseClock() { fixedNow_.reset(); }

    // ---- transcript ----------------------------------------------------------
    void record(const std::string& jsonObject);
    const std::vector<std::string>& transcript() const { return lines_; }

    // The first script error raised, kept even if a procedure caught the exception,
    // so that the runner still stops with it.
    const std::optional<std::string>& failure() const { return failure_; }

    // Runs inside pumpEvents (the runner can let timers and the like run there).
    std::function<void()> onPump;

    int progress() const { return progress_; }
    int beeps() const { return beeps_; }

    // ---- the port --------------------------------------------------------------
    Answer msgBox(const std::string& text, Buttons buttons, const std::string& title) override;
    std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                        const std::string& defaultText) override;
    std::optional<std::string> openFile(const FileRequest& req) override;
    std::optional<std::string> saveFile(const FileRequest& req) override;
    std::optional<engine::Rgb> chooseColour(engine::Rgb initial) override;
    FormAction showModal(forms::Form& form) override;
    void setPointer(int shape) override { pointer_ = shape; }
    int pointer() const override { return pointer_; }
    void setProgress(int percent) override { progress_ = percent; }
    void setComment(const std::string& text) override;
    void setStatus(int panel, const std::string& text) override;
    void pumpEvents() override;
    void beep() override { ++beeps_; }
    // Kept out of the transcript, whose kinds are fixed: the command's own comment
    // line tells a script what was opened. The answer is setExternalResult's.
    bool openExternal(const std::string& path) override;
    void setExternalResult(bool opened) { externalResult_ = opened; }
    const std::vector<std::string>& externalOpened() const { return externalOpened_; }
    DateTime now() const override;

private:
    struct FileAnswer {
        std::optional<std::string> path;
        std::optional<std::string> shown;
        int line = 0;
    };
    template <class T>
    struct Queued {
        T value;
        int line = 0;
    };

    [[noreturn]] void fail(const std::string& message);
    void checkFailed() const;
    std::optional<std::string> fileDialog(const char* kind, std::deque<FileAnswer>& queue,
                                          const FileRequest& req);
    void applyFormAnswer(forms::Form& form, const FormAnswer& a);

    std::ostream* out_ = nullptr;
    std::vector<std::string> lines_;
    std::deque<Queued<Answer>> msgBoxes_;
    std::deque<Queued<std::optional<std::string>>> inputs_;
    std::deque<FileAnswer> opens_, saves_;
    std::deque<Queued<std::optional<engine::Rgb>>> colours_;
    std::deque<FormAnswer> forms_;
    std::optional<DateTime> fixedNow_;
    std::optional<std::string> failure_;
    int pointer_ = 1;
    int progress_ = 0;
    int beeps_ = 0;
    bool externalResult_ = true;
    std::vector<std::string> externalOpened_;
};

}  // namespace ui

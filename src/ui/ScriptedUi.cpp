#include "ui/ScriptedUi.h"

#include <algorithm>
#include <ctime>
#include <ostream>

#include "forms/Form.h"
#include "ui/JsonText.h"

namespace ui {

namespace {

bool answerFits(Answer a, Buttons b) {
    switch (b) {
        case Buttons::OK:
            return a == Answer::OK;
        case Buttons::OKCancel:
            return a == Answer::OK || a == Answer::Cancel;
        case Buttons::YesNo:
            return a == Answer::Yes || a == Answer::No;
        case Buttons::YesNoCancel:
            return a != Answer::OK;
    }
    return false;
}

std::string optionalText(const std::optional<std::string>& s) {
    return s ? jsonString(*s) : "null";
}

// Names the script line an answer came from, when it is not the line running.
std::string fromLine(int line) {
    return line > 0 ? " (answer of line " + std::to_string(line) + ")" : std::string();
}

}  // namespace

ScriptedUi::ScriptedUi(std::ostream* out) : out_(out) {}

void ScriptedUi::answerMsgBox(Answer a, int line) { msgBoxes_.push_back({a, line}); }

void ScriptedUi::answerInput(std::optional<std::string> text, int line) {
    inputs_.push_back({std::move(text), line});
}

void ScriptedUi::answerOpen(std::optional<std::string> path, int line,
                            std::optional<std::string> shown) {
    if (!shown) shown = path;
    opens_.push_back({std::move(path), std::move(shown), line});
}

void ScriptedUi::answerSave(std::optional<std::string> path, int line,
                            std::optional<std::string> shown) {
    if (!shown) shown = path;
    saves_.push_back({std::move(path), std::move(shown), line});
}

void ScriptedUi::answerColour(std::optional<engine::Rgb> c, int line) {
    colours_.push_back({c, line});
}

void ScriptedUi::answerForm(FormAnswer a) { forms_.push_back(std::move(a)); }

std::vector<ScriptedUi::Unused> ScriptedUi::unusedAnswers() const {
    std::vector<Unused> all;
    for (const auto& q : msgBoxes_)
        all.push_back({q.line, std::string("answer msgbox ") + answerName(q.value)});
    for (const auto& q : inputs_) all.push_back({q.line, "answer input"});
    for (const auto& q : opens_) all.push_back({q.line, "answer open"});
    for (const auto& q : saves_) all.push_back({q.line, "answer save"});
    for (const auto& q : colours_) all.push_back({q.line, "answer colour"});
    for (const auto& q : forms_) all.push_back({q.line, "answer form " + q.form});
    std::stable_sort(all.begin(), all.end(),
                     [](const Unused& a, const Unused& b) { return a.line < b.line; });
    return all;
}

void ScriptedUi::record(const std::string& jsonObject) {
    if (failure_) return;  // what a swallowed error leads to is not part of the run
    lines_.push_back(jsonObject);
    if (out_) {
        *out_ << jsonObject << '\n';
        out_->flush();
    }
}

void ScriptedUi::fail(const std::string& message) {
    if (!failure_) failure_ = message;
    throw ScriptError(message);
}

void ScriptedUi::checkFailed() const {
    if (failure_) throw ScriptError(*failure_);
}

Answer ScriptedUi::msgBox(const std::string& text, Buttons buttons, const std::string& title) {
    checkFailed();
    Answer a = Answer::OK;
    if (buttons != Buttons::OK) {
        if (msgBoxes_.empty())
            fail("message box \"" + title + "\" (" + buttonsName(buttons) +
                 ") came up with no answer queued: \"" + text + "\"");
        a = msgBoxes_.front().value;
        if (!answerFits(a, buttons))
            fail(std::string("answer ") + answerName(a) + fromLine(msgBoxes_.front().line) +
                 " does not fit the message box \"" + title + "\" (" + buttonsName(buttons) + ")");
        msgBoxes_.pop_front();
    }
    record(JsonObject()
               .str("kind", "msgbox")
               .str("title", title)
               .str("text", text)
               .str("buttons", buttonsName(buttons))
               .str("answer", answerName(a))
               .text());
    return a;
}

std::optional<std::string> ScriptedUi::inputBox(const std::string& prompt, const std::string& title,
                                                const std::string& defaultText) {
    checkFailed();
    if (inputs_.empty())
        fail("input box \"" + title + "\" came up with no answer queued: \"" + prompt + "\"");
    auto a = inputs_.front().value;
    inputs_.pop_front();
    record(JsonObject()
               .str("kind", "input")
               .str("title", title)
               .str("prompt", prompt)
               .str("default", defaultText)
               .raw("answer", optionalText(a))
               .text());
    return a;
}

std::optional<std::string> ScriptedUi::fileDialog(const char* kind, std::deque<FileAnswer>& queue,
                                                  const FileRequest& req) {
    checkFailed();
    if (queue.empty())
        fail(std::string(kind) + " dialog for \"" + req.filetype +
             "\" came up with no answer queued");
    FileAnswer a = queue.front();
    queue.pop_front();
    record(JsonObject()
               .str("kind", kind)
               .str("filetype", req.filetype)
               .str("filter", req.filter)
               .raw("answer", a.path ? optionalText(a.shown) : "null")
               .text());
    return a.path;
}

std::optional<std::string> ScriptedUi::openFile(const FileRequest& req) {
    return fileDialog("open", opens_, req);
}

std::optional<std::string> ScriptedUi::saveFile(const FileRequest& req) {
    return fileDialog("save", saves_, req);
}

std::optional<engine::Rgb> ScriptedUi::chooseColour(engine::Rgb) {
    checkFailed();
    if (colours_.empty()) fail("colour dialog came up with no answer queued");
    auto a = colours_.front().value;
    colours_.pop_front();
    record(JsonObject().str("kind", "colour").raw("answer", a ? jsonColour(*a) : "null").text());
    return a;
}

void ScriptedUi::applyFormAnswer(forms::Form& form, const FormAnswer& a) {
    record(JsonObject()
               .str("kind", "form")
               .str("name", form.name())
               .str("action", a.action == FormAction::Accept ? "accept" : "close")
               .text());
    for (const auto& [name, value] : a.controls) {
        const forms::Control* c = form.find(name);
        if (!c) fail("form " + form.name() + " has no control '" + name + "'" + fromLine(a.line));
        if (!c->enabled)
            fail("control " + form.name() + "." + name + " is disabled" + fromLine(a.line));
        if (!form.setFromUser(name, value))
            fail("bad value '" + value + "' for " + form.name() + "." + name + fromLine(a.line));
        checkFailed();
    }
    if (a.action == FormAction::Accept) {
        std::string button = form.acceptButton();
        const forms::Control* c = form.find(button);
        if (!c) fail("form " + form.name() + " has no accept button '" + button + "'");
        if (!c->enabled)
            fail("the accept button " + form.name() + "." + button + " is disabled" +
                 fromLine(a.line));
        form.click(button);
    } else {
        form.onQueryClose();
        form.hide();
    }
    checkFailed();
}

FormAction ScriptedUi::showModal(forms::Form& form) {
    checkFailed();
    form.ensureLoaded();
    form.setShown(true);
    FormAction last = FormAction::Close;
    // A form that stays up after its accept button (a refused value) takes the
    // next answer queued for it, as a person would correct the value and press again.
    for (int round = 0; form.shown(); ++round) {
        if (forms_.empty())
            fail(round == 0 ? "form " + form.name() + " was shown with no answer queued"
                            : "form " + form.name() +
                                  " stayed open after its answer and no further answer is queued");
        if (forms_.front().form != form.name())
            fail("form " + form.name() + " was shown but the next form answer" +
                 fromLine(forms_.front().line) + " is for " + forms_.front().form);
        FormAnswer a = std::move(forms_.front());
        forms_.pop_front();
        last = a.action;
        applyFormAnswer(form, a);
    }
    return last;
}

bool ScriptedUi::openExternal(const std::string& path) {
    checkFailed();
    externalOpened_.push_back(path);
    return externalResult_;
}

void ScriptedUi::setComment(const std::string& text) {
    record(JsonObject().str("kind", "comment").str("text", text).text());
}

void ScriptedUi::setStatus(int panel, const std::string& text) {
    record(JsonObject().str("kind", "status").integer("panel", panel).str("text", text).text());
}

void ScriptedUi::pumpEvents() {
    if (onPump) onPump();
}

DateTime ScriptedUi::now() const {
    if (fixedNow_) return *fixedNow_;
    std::time_t t = std::time(nullptr);
    std::tm tm{};
    localtime_r(&t, &tm);
    return DateTime{tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec};
}

}  // namespace ui

// The scripted Ui port: answers from queues, a transcript line for everything
// shown, and script errors for dialogs nobody answered.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "forms/Form.h"
#include "ui/JsonText.h"
#include "ui/ScriptedUi.h"

namespace {

using nlohmann::json;
using ui::Answer;
using ui::Buttons;
using ui::ScriptedUi;
using ui::ScriptError;

json line(const ScriptedUi& u, std::size_t i) { return json::parse(u.transcript().at(i)); }

TEST(ScriptedUi, OkBoxNeedsNoAnswerAndLeavesTheQueueAlone) {
    std::ostringstream out;
    ScriptedUi u(&out);
    u.answerMsgBox(Answer::No, 3);
    EXPECT_EQ(u.msgBox("Saved", Buttons::OK, "Info"), Answer::OK);
    EXPECT_EQ(u.msgBox("Go on?", Buttons::YesNo, "Question"), Answer::No);
    EXPECT_TRUE(u.unusedAnswers().empty());

    ASSERT_EQ(u.transcript().size(), 2u);
    json a = line(u, 0), b = line(u, 1);
    EXPECT_EQ(
        a, json::parse(
               R"({"kind":"msgbox","title":"Info","text":"Saved","buttons":"OK","answer":"OK"})"));
    EXPECT_EQ(b["buttons"], "YesNo");
    EXPECT_EQ(b["answer"], "No");
    // The stream gets the same lines, one object a line.
    EXPECT_EQ(out.str(), u.transcript()[0] + "\n" + u.transcript()[1] + "\n");
}

TEST(ScriptedUi, UnansweredOrUnfittingBoxIsAStickyScriptError) {
    ScriptedUi u;
    EXPECT_THROW(u.msgBox("Exit?", Buttons::YesNoCancel, "Q"), ScriptError);
    ASSERT_TRUE(u.failure().has_value());
    EXPECT_NE(u.failure()->find("Exit?"), std::string::npos);
    // Whatever a caught error leads to stops too, and is not written.
    EXPECT_THROW(u.msgBox("Oops", Buttons::OK, "Error"), ScriptError);
    EXPECT_TRUE(u.transcript().empty());

    ScriptedUi v;
    v.answerMsgBox(Answer::Yes, 7);
    EXPECT_THROW(v.msgBox("Print?", Buttons::OKCancel, "Q"), ScriptError);
    EXPECT_NE(v.failure()->find("line 7"), std::string::npos);
}

TEST(ScriptedUi, InputFileAndColourAnswersIncludingCancel) {
    ScriptedUi u;
    u.answerInput("12", 1);
    u.answerInput(std::nullopt, 2);
    u.answerOpen("/data/a.asc", 3, "a.asc");
    u.answerSave(std::nullopt, 4);
    u.answerColour(engine::Rgb{1, 2, 3}, 5);
    u.answerColour(std::nullopt, 6);

    EXPECT_EQ(u.inputBox("Radius?", "Sphere", "10"), std::optional<std::string>("12"));
    EXPECT_EQ(u.inputBox("Name?", "Name", ""), std::nullopt);
    ui::FileRequest req;
    req.filetype = "Map3D ASC-File";
    req.filter = "ASC (*.asc)|*.asc";
    EXPECT_EQ(u.openFile(req), std::optional<std::string>("/data/a.asc"));
    EXPECT_EQ(u.saveFile(req), std::nullopt);
    auto c = u.chooseColour({0, 0, 0});
    ASSERT_TRUE(c);
    EXPECT_EQ(*c, (engine::Rgb{1, 2, 3}));
    EXPECT_EQ(u.chooseColour({0, 0, 0}), std::nullopt);
    EXPECT_THROW(u.inputBox("More?", "T", ""), ScriptError);

    ASSERT_EQ(u.transcript().size(), 6u);
    EXPECT_EQ(
        line(u, 0),
        json::parse(
            R"({"kind":"input","title":"Sphere","prompt":"Radius?","default":"10","answer":"12"})"));
    EXPECT_TRUE(line(u, 1)["answer"].is_null());
    EXPECT_EQ(
        line(u, 2),
        json::parse(
            R"({"kind":"open","filetype":"Map3D ASC-File","filter":"ASC (*.asc)|*.asc","answer":"a.asc"})"));
    EXPECT_EQ(line(u, 3)["kind"], "save");
    EXPECT_TRUE(line(u, 3)["answer"].is_null());
    EXPECT_EQ(line(u, 4)["answer"], json::parse("[1,2,3]"));
    EXPECT_TRUE(line(u, 5)["answer"].is_null());
}

TEST(ScriptedUi, UnusedAnswersAreListedByTheirLine) {
    ScriptedUi u;
    u.answerForm({"frmA", ui::FormAction::Close, {}, 9});
    u.answerInput("x", 4);
    u.answerMsgBox(Answer::Cancel, 6);
    auto unused = u.unusedAnswers();
    ASSERT_EQ(unused.size(), 3u);
    EXPECT_EQ(unused[0].line, 4);
    EXPECT_EQ(unused[1].line, 6);
    EXPECT_EQ(unused[1].what, "answer msgbox Cancel");
    EXPECT_EQ(unused[2].what, "answer form frmA");
}

TEST(ScriptedUi, CommentsAndStatusAreWrittenEachTime) {
    ScriptedUi u;
    u.setComment("a\r\nb");
    u.setComment("a\r\nb");
    u.setStatus(2, "x");
    ASSERT_EQ(u.transcript().size(), 3u);
    EXPECT_EQ(line(u, 1)["text"], "a\r\nb");
    EXPECT_EQ(line(u, 2), json::parse(R"({"kind":"status","panel":2,"text":"x"})"));
}

TEST(ScriptedUi, ClockIsFixedOnlyWhenTold) {
    ScriptedUi u;
    ui::DateTime running = u.now();
    EXPECT_GE(running.year, 2024);
    u.fixClock({2026, 1, 5, 9, 30, 0});
    ui::DateTime t = u.now();
    EXPECT_EQ(t.year, 2026);
    EXPECT_EQ(t.day, 5);
    EXPECT_EQ(t.minute, 30);
    EXPECT_EQ(u.now().second, 0);
}

// A form whose accept button refuses an empty name and stays up.
class NameForm : public forms::Form {
public:
    NameForm() : Form("frmName", "Name") {
        add(forms::ControlKind::TextBox, "txtName").onChange = [this] { log += "txt;"; };
        add(forms::ControlKind::CheckBox, "chkKeep").onChange = [this] { log += "chk;"; };
        add(forms::ControlKind::CommandButton, "cmdAccept").onChange = [this] {
            log += "accept;";
            if (!text("txtName").empty()) hide();
        };
        add(forms::ControlKind::CheckBox, "chkOff").enabled = false;
    }
    std::string acceptButton() const override { return "cmdAccept"; }
    void onQueryClose() override { log += "close;"; }
    std::string log;

protected:
    void onLoad() override { log += "load;"; }
};

TEST(ScriptedUi, ModalFormSetsControlsInOrderThenAccepts) {
    ScriptedUi u;
    NameForm f;
    u.answerForm({"frmName", ui::FormAction::Accept, {{"chkKeep", "1"}, {"txtName", "N1"}}, 2});
    EXPECT_EQ(u.showModal(f), ui::FormAction::Accept);
    EXPECT_EQ(f.log, "load;chk;txt;accept;");
    EXPECT_FALSE(f.shown());
    EXPECT_EQ(line(u, 0), json::parse(R"({"kind":"form","name":"frmName","action":"accept"})"));
}

TEST(ScriptedUi, ModalFormThatStaysUpTakesTheNextAnswer) {
    ScriptedUi u;
    NameForm f;
    u.answerForm({"frmName", ui::FormAction::Accept, {}, 2});
    u.answerForm({"frmName", ui::FormAction::Close, {{"txtName", "x"}}, 3});
    EXPECT_EQ(u.showModal(f), ui::FormAction::Close);
    EXPECT_EQ(f.log, "load;accept;txt;close;");
    EXPECT_EQ(u.transcript().size(), 2u);

    NameForm g;
    ScriptedUi v;
    v.answerForm({"frmName", ui::FormAction::Accept, {}, 2});
    EXPECT_THROW(v.showModal(g), ScriptError);
}

TEST(ScriptedUi, ModalFormErrors) {
    {
        ScriptedUi u;
        NameForm f;
        EXPECT_THROW(u.showModal(f), ScriptError);  // nothing queued
    }
    {
        ScriptedUi u;
        NameForm f;
        u.answerForm({"frmOther", ui::FormAction::Accept, {}, 5});
        EXPECT_THROW(u.showModal(f), ScriptError);
        EXPECT_NE(u.failure()->find("frmOther"), std::string::npos);
    }
    for (auto control : {std::pair<std::string, std::string>{"chkMissing", "1"},
                         {"chkKeep", "x"},
                         {"chkOff", "1"}}) {
        ScriptedUi u;
        NameForm f;
        u.answerForm({"frmName", ui::FormAction::Accept, {control}, 5});
        EXPECT_THROW(u.showModal(f), ScriptError) << control.first;
        EXPECT_EQ(f.log.find("accept"), std::string::npos);
    }
}

TEST(JsonText, NumbersReadBackToTheSameDouble) {
    for (double d :
         {0.1, 1e308, 5e-324, 1.0 / 3.0, -2.5e-7, 123456789.125, 2.2250738585072014e-308}) {
        std::string s = ui::jsonNumber(d);
        EXPECT_EQ(json::parse(s).get<double>(), d) << s;
    }
    EXPECT_EQ(ui::jsonNumber(90.0), "90");
    EXPECT_EQ(ui::jsonNumber(-3.0), "-3");
    EXPECT_EQ(ui::jsonNumber(0.0), "0");
    EXPECT_TRUE(std::signbit(json::parse(ui::jsonNumber(-0.0)).get<double>()));
    EXPECT_EQ(ui::jsonNumber(std::nan("")), "null");
}

TEST(JsonText, TextsKeepEveryByte) {
    std::string text = "a\"b\\c\r\n\td\x01 \xC3\xA9";  // ends with a UTF-8 e-acute
    EXPECT_EQ(json::parse(ui::jsonString(text)).get<std::string>(), text);
    // A byte that starts no UTF-8 sequence is read as Latin-1 (0xB0 the degree sign).
    EXPECT_EQ(json::parse(ui::jsonString("45\xB0")).get<std::string>(), "45\xC2\xB0");
    EXPECT_EQ(ui::jsonString("\xE2\x82"), "\"\\u00e2\\u0082\"");  // a cut sequence
    EXPECT_EQ(ui::jsonString("\x7F"), "\"\\u007f\"");
}

}  // namespace

// set, get, run and answer form on forms a test registers.

#include "ScriptFixture.h"
#include "forms/Form.h"

namespace {

using forms::ControlKind;
using scripttest::ScriptResult;
using scripttest::ScriptTest;

// Every handler writes its control's name into lblLog, so `get` shows the order.
class TestForm : public forms::Form {
public:
    explicit TestForm(std::string name = "frmTest") : Form(std::move(name), "Test") {
        watch(add(ControlKind::OptionButton, "optA", "A", "fraKind"));
        watch(add(ControlKind::OptionButton, "optB", "B", "fraKind"));
        watch(add(ControlKind::CheckBox, "chkX", "X"));
        watch(add(ControlKind::ComboBox, "cboMax"));
        auto& lst = add(ControlKind::ListBox, "lstUnits");
        lst.items = {"m", "dm"};
        watch(lst);
        add(ControlKind::Label, "lblLog");
        add(ControlKind::Label, "lblCaption", "Maximum value");
        add(ControlKind::CommandButton, "cmdOK", "OK").onChange = [this] {
            log("cmdOK");
            hide();
        };
        add(ControlKind::CommandButton, "cmdApply", "Apply").onChange = [this] { log("cmdApply"); };
        add(ControlKind::CommandButton, "cmdLocked", "Locked").enabled = false;
        add(ControlKind::TextBox, "txtLocked").enabled = false;
    }
    void onQueryClose() override { log("close"); }
    void log(const std::string& s) {
        auto& c = at("lblLog").caption;
        c += (c.empty() ? "" : " ") + s;
    }

protected:
    void onLoad() override {
        log("load");
        setOption("optA");
        setText("cboMax", "100");
    }

private:
    void watch(forms::Control& c) {
        c.onChange = [this, n = c.name] { log(n); };
    }
};

void addForms(core::AppContext& ctx) {
    ctx.forms.add(std::make_unique<TestForm>());
    ctx.forms.add(std::make_unique<TestForm>("frmSecond"));
    core::Command show;
    show.name = "mnuShowTest";
    show.handler = [](core::AppContext& c) {
        auto* f = c.forms.find("frmTest");
        auto a = c.ui.showModal(*f);
        c.comment(a == ui::FormAction::Accept ? "test accepted" : "test closed");
    };
    ctx.commands.add(std::move(show));
}

std::string getValue(const ScriptResult& r, std::size_t i) { return r.of("get").at(i)["value"]; }

TEST_F(ScriptTest, SetRunsHandlersAsAPersonWouldAndGetReadsBack) {
    ScriptResult r = runScript(
        "set frmTest.optA 1\n"     // already on after the load: nothing runs
        "set frmTest.optB true\n"  // runs, and optA goes off
        "set frmTest.chkX 0\n"     // no change
        "set frmTest.chkX 1\n"
        "set frmTest.cboMax 100\n"  // same text
        "set frmTest.cboMax \"2.5e3\"\n"
        "set frmTest.lstUnits dm\n"
        "get frmTest.lblLog\nget frmTest.optA\nget frmTest.optB\nget frmTest.chkX\n"
        "get frmTest.cboMax\nget frmTest.lstUnits\nget frmTest.lblCaption\nget frmTest.cmdOK\n",
        addForms);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto g = r.of("get");
    ASSERT_EQ(g.size(), 8u);
    EXPECT_EQ(g[0]["control"], "frmTest.lblLog");
    EXPECT_EQ(getValue(r, 0), "load optA cboMax optB chkX cboMax lstUnits");
    EXPECT_EQ(getValue(r, 1), "0");
    EXPECT_EQ(getValue(r, 2), "1");
    EXPECT_EQ(getValue(r, 3), "1");
    EXPECT_EQ(getValue(r, 4), "2.5e3");
    EXPECT_EQ(getValue(r, 5), "dm");
    EXPECT_EQ(getValue(r, 6), "Maximum value");
    EXPECT_EQ(getValue(r, 7), "OK");
}

TEST_F(ScriptTest, SetAndGetErrors) {
    for (const char* line :
         {"set frmNope.chkX 1", "set frmTest.chkNope 1", "set frmTest.chkX 5",
          "set frmTest.lstUnits km", "set frmTest.txtLocked a", "get frmTest.nothing",
          "get frmTest", "set frmTest.chkX", "run cmdNope", "run cmdLocked"}) {
        ScriptResult r = runScript(std::string("echo\n") + line + "\n", addForms);
        EXPECT_EQ(r.rc, 2) << line;
        EXPECT_NE(r.err.find("script.tvs:2:"), std::string::npos) << line << " -> " << r.err;
    }
}

TEST_F(ScriptTest, RunReachesFormButtonsByBareOrFullName) {
    // cmdApply is on two forms: the bare name is ambiguous.
    ScriptResult r = runScript("run cmdApply\n", addForms);
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("FORM.cmdApply"), std::string::npos) << r.err;

    r = runScript("run frmSecond.cmdApply\nget frmSecond.lblLog\nget frmTest.lblLog\n", addForms);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(getValue(r, 0), "load optA cboMax cmdApply");
    EXPECT_EQ(getValue(r, 1), "load optA cboMax");
}

TEST_F(ScriptTest, AnswerFormAcceptsAfterSettingControlsInOrder) {
    ScriptResult r = runScript(
        "answer form frmTest accept chkX=1 \"cboMax=12 5\" optB=1\n"
        "run mnuShowTest\n"
        "answer form frmTest close chkX=0\n"
        "run mnuShowTest\n"
        "get frmTest.lblLog\n",
        addForms);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto forms = r.of("form");
    ASSERT_EQ(forms.size(), 2u);
    EXPECT_EQ(forms[0],
              nlohmann::json::parse(R"({"kind":"form","name":"frmTest","action":"accept"})"));
    EXPECT_EQ(forms[1]["action"], "close");
    EXPECT_EQ(getValue(r, 0), "load optA cboMax chkX cboMax optB cmdOK chkX close");
    std::vector<std::string> last;
    for (auto& c : r.of("comment")) last.push_back(c["text"]);
    ASSERT_GE(last.size(), 2u);
    EXPECT_EQ(last[last.size() - 2], "test accepted");
    EXPECT_EQ(last.back(), "test closed");
}

TEST_F(ScriptTest, FormAnswerErrors) {
    // Queued for another form, unknown form, no answer at all, a disabled control.
    struct Case {
        const char* script;
        int line;
    };
    for (Case c :
         {Case{"answer form frmSecond accept\nrun mnuShowTest\n", 2},
          Case{"answer form frmNope accept\n", 1}, Case{"answer form frmTest accept chkX\n", 1},
          Case{"answer form frmTest maybe\n", 1}, Case{"echo\nrun mnuShowTest\n", 2},
          Case{"answer form frmTest accept txtLocked=1\nrun mnuShowTest\n", 2}}) {
        ScriptResult r = runScript(c.script, addForms);
        EXPECT_EQ(r.rc, 2) << c.script;
        std::string where = "script.tvs:" + std::to_string(c.line) + ":";
        EXPECT_NE(r.err.find(where), std::string::npos) << c.script << " -> " << r.err;
    }
}

}  // namespace

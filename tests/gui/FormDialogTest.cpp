// A form's declaration shown as a real dialog, bound both ways.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>

#include "forms/Form.h"
#include "gui/GuiTestSupport.h"
#include "gui/QtUi.h"

namespace {

using forms::ControlKind;
using guitest::whenModal;

class TestForm : public forms::Form {
public:
    int bClicks = 0, queryCloses = 0, loads = 0, sliderMoves = 0;
    TestForm() : Form("frmTest", "Test form") {
        add(ControlKind::Frame, "fraOpts", "Options");
        add(ControlKind::OptionButton, "optA", "A", "fraOpts").value = 1;
        add(ControlKind::OptionButton, "optB", "B", "fraOpts");
        add(ControlKind::CheckBox, "chkUpper", "Upper");
        add(ControlKind::Label, "lblName", "Name");
        add(ControlKind::TextBox, "txtName");
        auto& combo = add(ControlKind::ComboBox, "cboKind", "Kind");
        combo.items = {"Drive", "Stope"};
        combo.text = "Drive";
        auto& sl = add(ControlKind::Slider, "sliSize", "Size");
        sl.min = 0;
        sl.max = 10;
        add(ControlKind::CommandButton, "cmdOK", "OK");
        add(ControlKind::CommandButton, "cmdCancel", "Cancel");
        at("chkUpper").onChange = [this] {
            setText("txtName", checkValue("chkUpper") ? "UPPER" : "lower");
            at("sliSize").enabled = checkValue("chkUpper") == 0;
            setCaption("Upper now " + std::to_string(checkValue("chkUpper")));
        };
        at("optB").onChange = [this] { ++bClicks; };
        at("sliSize").onChange = [this] { ++sliderMoves; };
        at("cmdOK").onChange = [this] { hide(); };
        at("cmdCancel").onChange = [this] { hide(); };
    }
    void onQueryClose() override { ++queryCloses; }

protected:
    void onLoad() override { ++loads; }
};

template <class W>
W* child(QWidget* dialog, const char* name) {
    return dialog->findChild<W*>(name);
}

TEST(FormDialog, APersonsChangesRunTheHandlersAndShowTheirEffects) {
    gui::QtUi ui;
    TestForm form;
    QString titleAfter;
    bool sliderEnabledAfter = true;
    auto seen = whenModal([&](QWidget* d) {
        EXPECT_EQ(d->windowTitle(), "Test form");
        EXPECT_NE(child<QGroupBox>(d, "fraOpts"), nullptr) << "frames are group boxes";
        auto* upper = child<QCheckBox>(d, "chkUpper");
        ASSERT_NE(upper, nullptr);
        upper->click();
        auto* name = child<QLineEdit>(d, "txtName");
        ASSERT_NE(name, nullptr);
        EXPECT_EQ(name->text(), "UPPER") << "the handler's change reaches the widget";
        sliderEnabledAfter = child<QSlider>(d, "sliSize")->isEnabled();
        titleAfter = d->windowTitle();

        auto* b = child<QRadioButton>(d, "optB");
        b->click();
        b->click();  // clicking an option that is on runs nothing and keeps it on
        EXPECT_TRUE(b->isChecked());
        EXPECT_FALSE(child<QRadioButton>(d, "optA")->isChecked());

        QTest::keyClicks(name, "x");
        child<QComboBox>(d, "cboKind")->setCurrentIndex(1);
        emit child<QComboBox>(d, "cboKind")->textActivated("Stope");
        child<QPushButton>(d, "cmdOK")->click();
    });
    EXPECT_EQ(ui.showModal(form), ui::FormAction::Accept);
    EXPECT_TRUE(*seen);
    EXPECT_EQ(form.loads, 1);
    EXPECT_EQ(form.bClicks, 1);
    EXPECT_TRUE(form.optionValue("optB"));
    EXPECT_FALSE(form.optionValue("optA"));
    EXPECT_EQ(form.text("txtName"), "UPPERx");
    EXPECT_EQ(form.text("cboKind"), "Stope");
    EXPECT_FALSE(sliderEnabledAfter);
    EXPECT_EQ(titleAfter, "Upper now 1");
    EXPECT_FALSE(form.shown());
}

TEST(FormDialog, ClosingByTheFrameIsCloseAndAsksTheForm) {
    gui::QtUi ui;
    TestForm form;
    auto seen = whenModal([](QWidget* d) { static_cast<QDialog*>(d)->reject(); });
    EXPECT_EQ(ui.showModal(form), ui::FormAction::Close);
    EXPECT_TRUE(*seen);
    EXPECT_EQ(form.queryCloses, 1);
}

TEST(FormDialog, AnotherButtonThatHidesTheFormIsNotAnAccept) {
    gui::QtUi ui;
    TestForm form;
    auto seen = whenModal([](QWidget* d) { child<QPushButton>(d, "cmdCancel")->click(); });
    EXPECT_EQ(ui.showModal(form), ui::FormAction::Close);
    EXPECT_TRUE(*seen);
    EXPECT_EQ(form.queryCloses, 0) << "the frame was not used";
}

TEST(FormDialog, ValuesSetBeforeShowingAreShown) {
    gui::QtUi ui;
    TestForm form;
    form.ensureLoaded();
    form.setText("txtName", "kept");
    form.setOption("optB");
    form.at("sliSize").value = 7;
    form.at("cmdOK").enabled = false;
    form.at("chkUpper").visible = false;
    auto seen = whenModal([](QWidget* d) {
        EXPECT_EQ(child<QLineEdit>(d, "txtName")->text(), "kept");
        EXPECT_TRUE(child<QRadioButton>(d, "optB")->isChecked());
        EXPECT_EQ(child<QSlider>(d, "sliSize")->value(), 7);
        EXPECT_FALSE(child<QPushButton>(d, "cmdOK")->isEnabled());
        EXPECT_FALSE(child<QCheckBox>(d, "chkUpper")->isVisible());
        child<QPushButton>(d, "cmdCancel")->click();
    });
    ui.showModal(form);
    EXPECT_TRUE(*seen);
    EXPECT_EQ(form.sliderMoves, 0) << "showing a value is not a person's change";
}

}  // namespace

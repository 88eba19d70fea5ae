// The Ui port with real dialogs: answers mapped, texts exact, pointers and the
// window's panels.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QTest>

#include "core/AppContext.h"
#include "gui/Application.h"
#include "gui/FileFilter.h"
#include "gui/GuiTestSupport.h"
#include "gui/InputCodes.h"
#include "gui/MainWindow.h"
#include "gui/QtUi.h"
#include "gui/RenderWidget.h"

namespace {

using guitest::whenModal;

ui::Answer answerBox(gui::QtUi& ui, ui::Buttons buttons, QMessageBox::StandardButton press,
                     QString* title = nullptr, QString* text = nullptr) {
    auto seen = whenModal([=](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        ASSERT_NE(box, nullptr);
        if (title) *title = box->windowTitle();
        if (text) *text = box->text();
        ASSERT_NE(box->button(press), nullptr) << "the box lacks the button";
        box->button(press)->click();
    });
    const ui::Answer a = ui.msgBox("Must the process be terminated?", buttons, "Process suspended");
    EXPECT_TRUE(*seen);
    return a;
}

TEST(QtUi, MessageBoxAnswersAreMapped) {
    gui::QtUi ui;
    QString title, text;
    EXPECT_EQ(answerBox(ui, ui::Buttons::YesNo, QMessageBox::Yes, &title, &text), ui::Answer::Yes);
    EXPECT_EQ(title, "Process suspended");
    EXPECT_EQ(text, "Must the process be terminated?");
    EXPECT_EQ(answerBox(ui, ui::Buttons::YesNo, QMessageBox::No), ui::Answer::No);
    EXPECT_EQ(answerBox(ui, ui::Buttons::YesNoCancel, QMessageBox::Cancel), ui::Answer::Cancel);
    EXPECT_EQ(answerBox(ui, ui::Buttons::OKCancel, QMessageBox::Ok), ui::Answer::OK);
    EXPECT_EQ(answerBox(ui, ui::Buttons::OKCancel, QMessageBox::Cancel), ui::Answer::Cancel);
    EXPECT_EQ(answerBox(ui, ui::Buttons::OK, QMessageBox::Ok), ui::Answer::OK);
}

TEST(QtUi, InputBoxGivesTheTextOrNothing) {
    gui::QtUi ui;
    auto seen = whenModal([](QWidget* w) {
        auto* d = qobject_cast<QInputDialog*>(w);
        ASSERT_NE(d, nullptr);
        EXPECT_EQ(d->windowTitle(), "Name");
        EXPECT_EQ(d->labelText(), "Give the group a name");
        EXPECT_EQ(d->textValue(), "Group1");
        d->setTextValue("Stope 7");
        d->accept();
    });
    EXPECT_EQ(ui.inputBox("Give the group a name", "Name", "Group1"),
              std::optional<std::string>("Stope 7"));
    EXPECT_TRUE(*seen);
    seen = whenModal([](QWidget* w) { static_cast<QDialog*>(w)->reject(); });
    EXPECT_EQ(ui.inputBox("p", "t", "d"), std::nullopt);
    EXPECT_TRUE(*seen);
}

TEST(QtUi, ColourDialogGivesTheChosenColour) {
    gui::QtUi ui;
    auto seen = whenModal([](QWidget* w) {
        auto* d = qobject_cast<QColorDialog*>(w);
        ASSERT_NE(d, nullptr);
        EXPECT_EQ(d->currentColor(), QColor(1, 2, 3));
        d->setCurrentColor(QColor(200, 100, 50));
        d->accept();
    });
    const auto c = ui.chooseColour({1, 2, 3});
    EXPECT_TRUE(*seen);
    ASSERT_TRUE(c.has_value());
    EXPECT_EQ(*c, (engine::Rgb{200, 100, 50}));
    seen = whenModal([](QWidget* w) { static_cast<QDialog*>(w)->reject(); });
    EXPECT_EQ(ui.chooseColour({1, 2, 3}), std::nullopt);
}

TEST(QtUi, OpenDialogUsesTheFilterAndTitle) {
    gui::QtUi ui;
    QStringList filters;
    QString title;
    auto seen = whenModal([&](QWidget* w) {
        auto* d = qobject_cast<QFileDialog*>(w);
        ASSERT_NE(d, nullptr);
        filters = d->nameFilters();
        title = d->windowTitle();
        d->reject();
    });
    ui::FileRequest req;
    req.title = "Open a text file";
    req.filter = "Text (*.txt)|*.txt|All (*.*)|*.*";
    EXPECT_EQ(ui.openFile(req), std::nullopt);
    EXPECT_TRUE(*seen);
    EXPECT_EQ(title, "Open a text file");
    EXPECT_EQ(filters, (QStringList{"Text (*.txt)", "All (*)"}));
}

TEST(QtUi, PointerShapes) {
    gui::Application app;
    ASSERT_TRUE(app.start());
    auto& ui = app.ui();
    auto* rw = app.window().renderWidget();
    ui.setPointer(14);
    EXPECT_EQ(rw->cursor().shape(), Qt::CrossCursor);
    EXPECT_EQ(ui.pointer(), 14);
    ui.setPointer(5);
    EXPECT_EQ(rw->cursor().shape(), Qt::SizeAllCursor);
    ui.setPointer(7);
    EXPECT_EQ(rw->cursor().shape(), Qt::SizeVerCursor);
    ui.setPointer(11);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    ui.setPointer(11);  // twice: still one to take away
    ui.setPointer(1);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(rw->cursor().shape(), Qt::ArrowCursor);
    app.context().state.bolProgramEnding = true;
    app.window().close();
}

TEST(QtUi, ProgressCommentAndStatusPanels) {
    gui::Application app;
    ASSERT_TRUE(app.start());
    auto& ui = app.ui();
    ui.setProgress(40);
    EXPECT_EQ(app.window().progressBar()->value(), 40);
    ui.setProgress(140);
    EXPECT_EQ(app.window().progressBar()->value(), 100);
    ui.setComment("Measure tool");
    EXPECT_EQ(app.window().commentBox()->text(), "Measure tool");
    ui.setStatus(3, "third");
    ASSERT_NE(app.window().statusPanel(3), nullptr);
    EXPECT_EQ(app.window().statusPanel(3)->text(), "third");
    EXPECT_NE(app.window().statusPanel(2), nullptr);
    const auto before = app.window().renderWidget()->frames();
    ui.requestFrame();
    ui.pumpEvents();
    QTest::qWait(20);
    EXPECT_GT(app.window().renderWidget()->frames(), before);
    app.context().state.bolProgramEnding = true;
    app.window().close();
}

TEST(FileFilter, PairsBecomeQtFilters) {
    EXPECT_EQ(gui::qtFileFilter("Text (*.txt)|*.txt|All (*.*)|*.*"), "Text (*.txt);;All (*)");
    // the patterns of the pair win over what the description says
    EXPECT_EQ(gui::qtFileFilter("Map3D ASC-File (*.asc)|*.asc;*.ASC"),
              "Map3D ASC-File (*.asc *.ASC)");
    EXPECT_EQ(gui::qtFileFilter("Worlds|*.STATE"), "Worlds (*.STATE)");
    EXPECT_EQ(gui::qtFileFilter("Dangling"), "Dangling (*)");
    EXPECT_EQ(gui::qtFileFilter(""), "");
}

TEST(InputCodes, KeysModifiersAndButtons) {
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_A), 65);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_Z), 90);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_5), 53);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_F1), 112);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_F5), 116);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_Left), 37);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_Down), 40);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_PageUp), 33);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_PageDown), 34);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_Space), 32);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_Escape), 27);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_Backspace), 8);
    EXPECT_EQ(gui::keyCodeOf(Qt::Key_Eacute), 0);
    EXPECT_EQ(gui::shiftMaskOf(Qt::ShiftModifier | Qt::ControlModifier), 3);
    EXPECT_EQ(gui::shiftMaskOf(Qt::AltModifier), 4);
    EXPECT_EQ(gui::shiftMaskOf(Qt::NoModifier), 0);
    EXPECT_EQ(gui::buttonMaskOf(Qt::LeftButton | Qt::RightButton), 3);
    EXPECT_EQ(gui::buttonMaskOf(Qt::MiddleButton), 4);
}

}  // namespace

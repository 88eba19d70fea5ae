// The main window: menus from the registry, the scene on screen, input going to
// the handlers, the layout and the exit question.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QToolBar>
#include <vector>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/Navigation.h"
#include "gui/Application.h"
#include "gui/CommandMenus.h"
#include "gui/GuiTestSupport.h"
#include "gui/MainWindow.h"
#include "gui/RenderWidget.h"
#include "render/Renderer.h"

namespace {

using guitest::whenModal;
using guitest::Started;

QMenu* topMenu(QMenuBar* bar, const QString& title) {
    for (QAction* a : bar->actions())
        if (a->menu() && a->text() == title) return a->menu();
    return nullptr;
}

QAction* entry(QMenu* m, const QString& text) {
    if (!m) return nullptr;
    for (QAction* a : m->actions())
        if (a->text().section('\t', 0, 0) == text) return a;
    return nullptr;
}

TEST(MainWindow, MenusAndButtonsComeFromTheRegistry) {
    Started s;
    int ran = 0;
    s.ctx().commands.add({"mnuTestDeep", "Deep Thing", "Tools/Testing", "Ctrl+Shift+T", "",
                          [&](core::AppContext&) { ++ran; }});
    s.ctx().commands.add(
        {"cmdTestButton", "Press me", "", "", "", [&](core::AppContext&) { ran += 10; }});
    s.ctx().commands.add({"frmX.cmdInside", "Inside", "", "", "frmX", [](core::AppContext&) {}});
    s.win().syncCommands();

    QMenu* tools = topMenu(s.win().menuBar(), "Tools");
    ASSERT_NE(tools, nullptr) << "a menu made for the new path";
    QAction* testing = nullptr;
    for (QAction* a : tools->actions())
        if (a->menu() && a->text() == "Testing") testing = a;
    ASSERT_NE(testing, nullptr) << "the second part of the path is a submenu";
    QAction* deep = entry(testing->menu(), "Deep Thing");
    ASSERT_NE(deep, nullptr);
    EXPECT_EQ(deep->shortcut(), QKeySequence("Ctrl+Shift+T"));
    deep->trigger();
    EXPECT_EQ(ran, 1);

    QToolBar* bar = s.win().findChild<QToolBar*>("tbrTools");
    ASSERT_NE(bar, nullptr);
    QAction* button = nullptr;
    for (QAction* a : bar->actions())
        if (a->objectName() == "cmdTestButton") button = a;
    ASSERT_NE(button, nullptr) << "a main-form command without a menu is a tool button";
    button->trigger();
    EXPECT_EQ(ran, 11);
    EXPECT_EQ(s.win().commandMenus().action("frmX.cmdInside"), nullptr)
        << "a form's own button stays in its form";

    // the registry's enabled state reaches the window
    s.ctx().commands.findMutable("mnuTestDeep")->enabled = false;
    s.win().syncCommands();
    EXPECT_FALSE(deep->isEnabled());
    deep->trigger();
    EXPECT_EQ(ran, 11) << "a disabled command does not run";
}

TEST(MainWindow, TheStartUpTextsAreShown) {
    Started s;
    EXPECT_EQ(s.win().commentBox()->text().toStdString(), core::kMouseHelpText);
    ASSERT_NE(s.win().statusPanel(1), nullptr);
    EXPECT_EQ(s.win().statusPanel(1)->text().toStdString(), core::kStatusHelpText);
    EXPECT_EQ(s.win().progressBar()->value(), 100);
    EXPECT_EQ(s.win().windowTitle(), "Tarvik");
}

TEST(MainWindow, ACommandThatFailsLeavesTheWindowUsable) {
    Started s;
    s.ctx().commands.add({"cmdTestThrows", "Throws", "", "", "",
                          [](core::AppContext&) { throw std::runtime_error("broken"); }});
    s.win().syncCommands();
    auto seen = whenModal([](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        ASSERT_NE(box, nullptr);
        EXPECT_TRUE(box->text().contains("broken"));
        box->accept();
    });
    s.win().runCommand("cmdTestThrows");
    EXPECT_TRUE(*seen);
    int ran = 0;
    s.ctx().commands.add({"cmdTestAfter", "After", "", "", "", [&](core::AppContext&) { ++ran; }});
    s.win().syncCommands();
    s.win().runCommand("cmdTestAfter");
    EXPECT_EQ(ran, 1);
}

TEST(MainWindow, TheInterruptButtonStopsALongCommand) {
    Started s;
    int steps = 0;
    s.ctx().commands.add({"cmdTestLong", "Long", "", "", "", [&](core::AppContext& c) {
                              for (steps = 0; steps < 4000; ++steps) {
                                  if (core::interrupted(c)) break;
                                  QThread::msleep(1);
                              }
                          }});
    s.win().syncCommands();
    QString asked;
    // while it runs, a person presses the button and answers Yes
    QTimer::singleShot(100, &s.win(), [&] {
        whenModal([&](QWidget* w) {
            auto* box = qobject_cast<QMessageBox*>(w);
            asked = box ? box->windowTitle() + "|" + box->text() : "";
            if (auto* yes = box ? box->button(QMessageBox::Yes) : nullptr) yes->click();
        });
        s.win().findChild<QPushButton*>("cmdInterruptProcess")->click();
    });
    s.win().runCommand("cmdTestLong");
    EXPECT_EQ(asked, "Process suspended|Must the process be terminated?");
    EXPECT_LT(steps, 4000);
    EXPECT_TRUE(s.ctx().state.bolInterruptProcess);
}

TEST(MainWindow, TheExitCommandClosesTheWindowOnYes) {
    gui::Application app;
    ASSERT_TRUE(app.start());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&app.window()));
    ASSERT_NE(app.context().commands.find("mnuExit"), nullptr);
    auto seen = whenModal([](QWidget* w) {
        if (auto* box = qobject_cast<QMessageBox*>(w)) box->button(QMessageBox::Yes)->click();
    });
    app.window().runCommand("mnuExit");
    EXPECT_TRUE(*seen);
    EXPECT_FALSE(app.window().isVisible());
}

TEST(MainWindow, ADragInTheSceneTurnsTheCamera) {
    Started s;
    auto* rw = s.win().renderWidget();
    const double az = s.ctx().state.dblCamAzimuth;
    QTest::mousePress(rw, Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
    QMouseEvent move(QEvent::MouseMove, QPointF(130, 100), rw->mapToGlobal(QPointF(130, 100)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(rw, &move);
    QTest::mouseRelease(rw, Qt::LeftButton, Qt::NoModifier, QPoint(130, 100));
    // 30 pixels to the right turn the azimuth back by 30 * 0.007
    EXPECT_NEAR(s.ctx().state.dblCamAzimuth, az - 0.21, 1e-9);
}

TEST(MainWindow, AKeyFromTheTableWritesItsLine) {
    Started s;
    auto* rw = s.win().renderWidget();
    rw->setFocus();
    QTest::keyClick(rw, Qt::Key_W);
    EXPECT_EQ(s.win().commentBox()->text(), "Change background colour to white");
    const QImage img = rw->grabFramebuffer();
    EXPECT_EQ(img.pixelColor(2, 2), QColor(255, 255, 255));
}

TEST(MainWindow, ThePictureShowsAnAddedPolygon) {
    Started s;
    auto& e = s.ctx().engine;
    e.engine_set_background_color({0, 0, 0});
    // The start camera looks down from 50000 above the centre; a square of
    // 60000 a side lies under the whole window.
    const auto p = e.polygon_create();
    for (engine::Point3 q : {engine::Point3{30000, 30000, 0},
                             {30000, -30000, 0},
                             {-30000, -30000, 0},
                             {-30000, 30000, 0}})
        e.polygon_add_point(p, q);
    ASSERT_EQ(e.engine_add_polygon(p), 0);
    e.polygon_set_color_fill(p, {220, 30, 40});
    core::p_subMainLoop(s.ctx(), true);
    const QImage img = s.win().renderWidget()->grabFramebuffer();
    ASSERT_FALSE(img.isNull());
    const QColor c = img.pixelColor(img.width() / 2, img.height() / 2);
    EXPECT_EQ(c.red(), 220);
    EXPECT_EQ(c.green(), 30);
    EXPECT_EQ(c.blue(), 40);

    // and a colour change reaches the screen through one chunk
    auto* r = s.win().renderWidget()->renderer();
    ASSERT_NE(r, nullptr);
    e.polygon_set_color_fill(p, {10, 200, 10});
    const QImage again = s.win().renderWidget()->grabFramebuffer();
    EXPECT_EQ(again.pixelColor(again.width() / 2, again.height() / 2), QColor(10, 200, 10));
    EXPECT_EQ(r->stats().lastFrameUploads, 1u);
}

TEST(MainWindow, TheRenderWindowFollowsTheFormLayout) {
    Started s;
    s.win().resize(900, 700);
    QTest::qWait(50);
    QApplication::processEvents();
    const auto& st = s.ctx().state;
    auto* rw = s.win().renderWidget();
    EXPECT_EQ(st.formWidth, s.win().centralWidget()->width() * 15);
    EXPECT_EQ(st.formHeight, s.win().centralWidget()->height() * 15);
    // width = form width - (X + 50) twips, height = form height - (Y + 690)
    EXPECT_EQ(rw->width(), (st.formWidth - (st.intResizeX + 50)) / 15);
    EXPECT_EQ(rw->height(), (st.formHeight - (st.intResizeY + 690)) / 15);
    EXPECT_EQ(rw->y(), 360 / 15);
    EXPECT_EQ(s.ctx().engine.window_width(), rw->width());
    EXPECT_EQ(s.ctx().engine.window_height(), rw->height());
    EXPECT_EQ(st.lngWindowWidth, rw->width());
}

struct Recorded {
    std::vector<std::vector<double>> calls;
};

TEST(MainWindow, InputGoesToTheHandlers) {
    Started s;
    auto rec = std::make_shared<Recorded>();
    auto& in = s.ctx().input;
    in.onMouseDown = [rec](core::AppContext&, int b, int sh, double x, double y) {
        rec->calls.push_back({1, double(b), double(sh), x, y});
    };
    in.onMouseMove = [rec](core::AppContext&, int b, int sh, double x, double y) {
        rec->calls.push_back({2, double(b), double(sh), x, y});
    };
    in.onMouseUp = [rec](core::AppContext&, int b, int sh, double x, double y) {
        rec->calls.push_back({3, double(b), double(sh), x, y});
    };
    in.onKeyDown = [rec](core::AppContext&, int key, int sh) {
        rec->calls.push_back({4, double(key), double(sh)});
    };
    in.onWheel = [rec](core::AppContext&, int delta, double x, double y) {
        rec->calls.push_back({5, double(delta), x, y});
    };
    auto* rw = s.win().renderWidget();
    QTest::mousePress(rw, Qt::RightButton, Qt::ShiftModifier, QPoint(10, 20));
    QTest::mouseMove(rw, QPoint(15, 22));
    QTest::mouseRelease(rw, Qt::RightButton, Qt::ShiftModifier, QPoint(15, 22));
    rw->setFocus();
    QTest::keyClick(rw, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(rw, Qt::Key_Left);
    QTest::keyClick(rw, Qt::Key_F3, Qt::ShiftModifier | Qt::AltModifier);

    std::vector<std::vector<double>> downs, ups, keys;
    for (const auto& c : rec->calls) {
        if (c[0] == 1) downs.push_back(c);
        if (c[0] == 3) ups.push_back(c);
        // the modifier keys come as their own key presses first (16 shift, 17 ctrl, 18 alt)
        if (c[0] == 4 && (c[1] < 16 || c[1] > 18)) keys.push_back(c);
    }
    ASSERT_EQ(downs.size(), 1u);
    ASSERT_EQ(ups.size(), 1u);
    // right button 2, shift 1, at the pixel given
    EXPECT_EQ(downs[0], (std::vector<double>{1, 2, 1, 10, 20}));
    EXPECT_EQ(ups[0], (std::vector<double>{3, 2, 1, 15, 22}));
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[0], (std::vector<double>{4, 65, 2}));
    EXPECT_EQ(keys[1], (std::vector<double>{4, 37, 0}));
    EXPECT_EQ(keys[2], (std::vector<double>{4, 114, 5}));
}

TEST(MainWindow, AClickOnTheCommentBoxShowsTheWholeLog) {
    Started s;
    s.ctx().logLine("Distance = 12.5 m");
    s.ctx().logLine("Second line");
    QString shown;
    auto seen = whenModal([&](QWidget* w) {
        EXPECT_EQ(w->objectName(), "frm17_FullComment");
        if (auto* t = w->findChild<QPlainTextEdit*>()) shown = t->toPlainText();
        static_cast<QDialog*>(w)->accept();
    });
    QTest::mouseClick(s.win().commentBox(), Qt::LeftButton);
    EXPECT_TRUE(*seen);
    EXPECT_EQ(shown, "Distance = 12.5 m\nSecond line");
}

QAbstractButton* buttonOf(QMessageBox* box, QMessageBox::StandardButton b) {
    return box ? box->button(b) : nullptr;
}

TEST(MainWindow, ClosingAsksFirstAndNoKeepsItOpen) {
    gui::Application app;
    ASSERT_TRUE(app.start());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&app.window()));
    QString title, text;
    auto seen = whenModal([&](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        title = box ? box->windowTitle() : "";
        text = box ? box->text() : "";
        if (auto* no = buttonOf(box, QMessageBox::No)) no->click();
    });
    app.window().close();
    EXPECT_TRUE(*seen);
    EXPECT_EQ(title, "Confirmation Dialog");
    EXPECT_EQ(text, "Do you want to exit the program?");
    EXPECT_TRUE(app.window().isVisible());
    EXPECT_NE(app.context().state.F_h_lngCamera, 0u);

    seen = whenModal([&](QWidget* w) {
        if (auto* yes = buttonOf(qobject_cast<QMessageBox*>(w), QMessageBox::Yes)) yes->click();
    });
    app.window().close();
    EXPECT_TRUE(*seen);
    EXPECT_FALSE(app.window().isVisible());
    EXPECT_EQ(app.context().state.F_h_lngCamera, 0u);
}

}  // namespace

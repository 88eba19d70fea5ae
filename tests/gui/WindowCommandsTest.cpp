// The window's own commands and hooks: the command palette, the file menu and
// screenshot keys, every form as a dialog, the name display and the settings.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <functional>
#include <string>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "gui/Application.h"
#include "gui/CommandMenus.h"
#include "gui/CommandPalette.h"
#include "gui/GuiTestSupport.h"
#include "gui/MainWindow.h"
#include "gui/PaletteSearch.h"
#include "gui/RenderWidget.h"

namespace {

using guitest::whenModal;
using guitest::Started;
using guitest::waitFor;

core::Command command(const char* name, const char* caption, const char* menu = "Tools") {
    return {name, caption, menu, "", "", [](core::AppContext&) {}};
}

std::vector<std::string> found(const std::vector<core::Command>& all, const std::string& q) {
    std::vector<std::string> names;
    for (const auto& h : gui::searchCommands(all, q)) names.push_back(all[h.index].name);
    return names;
}

TEST(PaletteSearch, EveryWordMustMatchAndCaptionStartsComeFirst) {
    std::vector<core::Command> all = {
        command("mnuExportDXF", "Export wireframes to &DXF", "File/Export"),
        command("mnuImportDXF", "Import DXF-file", "File/Import Other"),
        command("cmdMeasure", "Measure distance", ""),
        command("mnuDXFSettings", "DXF settings", "Tools"),
    };
    all.push_back({"frmX.cmdDXF", "DXF inside a form", "", "", "frmX", [](core::AppContext&) {}});
    core::Command noHandler = command("mnuDXFDead", "DXF without handler");
    noHandler.handler = nullptr;
    all.push_back(noHandler);

    EXPECT_EQ(found(all, "dxf"),
              (std::vector<std::string>{"mnuDXFSettings", "mnuExportDXF", "mnuImportDXF"}))
        << "a caption that starts with the text first; forms and dead entries never";
    EXPECT_EQ(found(all, "  EXPORT   dxf "), (std::vector<std::string>{"mnuExportDXF"}));
    EXPECT_EQ(found(all, "import other"), (std::vector<std::string>{"mnuImportDXF"}))
        << "the menu path counts";
    EXPECT_EQ(found(all, "cmdmeas"), (std::vector<std::string>{"cmdMeasure"})) << "and the name";
    EXPECT_TRUE(found(all, "dxf zebra").empty());
    EXPECT_EQ(found(all, "").size(), 4u);
    EXPECT_EQ(gui::plainCaption(all[0]), "Export wireframes to DXF");
}

TEST(CommandPalette, CtrlShiftPFindsAndRunsACommand) {
    Started s;
    int ran = 0;
    s.ctx().commands.add(
        {"cmdTestSky", "Paint the sky orange", "Tools", "", "", [&](core::AppContext&) { ++ran; }});
    core::Command off = command("cmdTestSkyOff", "Paint the sky grey");
    off.enabled = false;
    s.ctx().commands.add(off);
    s.win().syncCommands();
    int listed = -1;
    QString current;
    auto seen = whenModal([&](QWidget* w) {
        auto* p = qobject_cast<gui::CommandPalette*>(w);
        ASSERT_NE(p, nullptr) << "got " << w->objectName().toStdString();
        QTest::keyClicks(p->searchBox(), "sky paint");
        listed = p->list()->count();
        current = p->list()->currentItem() ? p->list()->currentItem()->text() : "";
        QTest::keyClick(p->searchBox(), Qt::Key_Return);
    });
    // shortcuts belong to the active window
    s.win().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&s.win()));
    auto* rw = s.win().renderWidget();
    rw->setFocus();
    const std::string before = s.ctx().state.txtComment;
    QTest::keyClick(rw, Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(*seen) << "the palette came up over the scene";
    EXPECT_EQ(listed, 2) << "the disabled one is listed too";
    EXPECT_TRUE(current.startsWith("Paint the sky orange"));
    EXPECT_TRUE(waitFor([&] { return ran == 1; }));
    EXPECT_EQ(s.ctx().state.txtComment, before) << "the key table did not see the shortcut";
}

TEST(CommandPalette, EscapeRunsNothing) {
    Started s;
    int ran = 0;
    s.ctx().commands.add(
        {"cmdTestOnly", "Only one", "Tools", "", "", [&](core::AppContext&) { ++ran; }});
    auto seen = whenModal([&](QWidget* w) {
        auto* p = qobject_cast<gui::CommandPalette*>(w);
        ASSERT_NE(p, nullptr);
        QTest::keyClicks(p->searchBox(), "only one");
        QTest::keyClick(p->searchBox(), Qt::Key_Escape);
    });
    s.win().runCommand("mnuCommandPalette");
    EXPECT_TRUE(*seen);
    QTest::qWait(50);
    EXPECT_EQ(ran, 0);
}

TEST(WindowKeys, MOpensTheFileMenuAndPShowsAScreenshot) {
    Started s;
    auto* rw = s.win().renderWidget();
    rw->setFocus();
    QTest::keyClick(rw, Qt::Key_M);
    EXPECT_EQ(s.win().commentBox()->text(), "Open Menu to open or add files");
    QMenu* file = s.win().commandMenus().menu("File");
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(waitFor([&] { return file->isVisible(); }));
    file->hide();

    s.ctx().engine.engine_set_background_color({0, 0, 255});
    QString shown;
    s.win().imageViewer = [&](const QString& path) {
        shown = path;
        return true;
    };
    rw->setFocus();
    QTest::keyClick(rw, Qt::Key_P);
    EXPECT_EQ(s.win().commentBox()->text(), "Screenshot opened in Scalix");
    ASSERT_FALSE(shown.isEmpty());
    EXPECT_EQ(shown, s.win().lastScreenshot());
    const QImage saved(shown);
    ASSERT_FALSE(saved.isNull());
    EXPECT_EQ(saved.size(), rw->grabFramebuffer().size());
    EXPECT_EQ(saved.pixelColor(1, 1), QColor(0, 0, 255)) << "the scene's background";
    QFile::remove(shown);
}

TEST(WindowForms, EveryRegisteredFormOpensAndClosesByItsFrame) {
    Started s;
    int forms = 0;
    for (forms::Form* f : s.ctx().forms.all()) {
        if (f->name() == "frm03_MirrowMain") continue;  // the window itself
        // The form is closed by its frame; any box its closing brings up is closed too.
        QStringList seen;
        QTimer closer;
        QObject::connect(&closer, &QTimer::timeout, [&] {
            QWidget* w = QApplication::activeModalWidget();
            auto* d = qobject_cast<QDialog*>(w);
            if (!d || !d->isVisible()) return;
            seen << d->objectName();
            if (seen.size() == 1)
                d->reject();
            else
                d->done(QDialog::Rejected);
        });
        closer.start(20);
        const ui::FormAction a = s.ctx().ui.showModal(*f);
        closer.stop();
        ASSERT_FALSE(seen.isEmpty()) << f->name();
        EXPECT_EQ(seen.first().toStdString(), f->name());
        EXPECT_EQ(a, ui::FormAction::Close) << f->name();
        EXPECT_FALSE(f->shown()) << f->name();
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << f->name();
        ++forms;
    }
    EXPECT_GE(forms, 10) << "the layers register their forms";
}

TEST(WindowInfo, TickingShowInfoShowsNamesUnderTheMouse) {
    Started s;
    auto& e = s.ctx().engine;
    const auto p = e.polygon_create();
    for (engine::Point3 q : {engine::Point3{30000, 30000, 0},
                             {30000, -30000, 0},
                             {-30000, -30000, 0},
                             {-30000, 30000, 0}})
        e.polygon_add_point(p, q);
    ASSERT_EQ(e.engine_add_polygon(p), 0);
    e.polygon_set_name(p, "UP_Infor\r\n2024-01-02\r\n9:05:07\r\nShotcrete 50 mm");
    core::p_subMainLoop(s.ctx(), true);

    auto* box = s.win().findChild<QCheckBox*>("chkShowInfo");
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "Info OFF");
    box->click();
    EXPECT_EQ(box->text(), "Info ON");
    EXPECT_EQ(s.win().commentBox()->text(),
              "Name display enabled, name displayed in the Status Bar at the bottom of the form");
    for (int panel = 1; panel <= 3; ++panel) {
        ASSERT_NE(s.win().statusPanel(panel), nullptr);
        EXPECT_EQ(s.win().statusPanel(panel)->text(), "ON") << panel;
    }
    auto* rw = s.win().renderWidget();
    const QPointF at(rw->width() / 2.0, rw->height() / 2.0);
    QMouseEvent hover(QEvent::MouseMove, at, rw->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(rw, &hover);
    const QString shown = s.win().statusPanel(1)->text();
    EXPECT_TRUE(shown.startsWith("( ")) << shown.toStdString();
    EXPECT_TRUE(shown.contains(" )     UP_Infor")) << shown.toStdString();
    EXPECT_TRUE(shown.contains("Shotcrete 50 mm"));

    box->click();
    EXPECT_EQ(box->text(), "Info OFF");
    EXPECT_EQ(s.win().statusPanel(2)->text(), "OFF");
    EXPECT_EQ(s.win().commentBox()->text(),
              "Name display disabled, double click to display a message-box with the name");
}

TEST(WindowSettings, TheWindowFollowsSizeAndStatusBar) {
    Started s;
    ASSERT_TRUE(s.ctx().windowSettingsChanged);
    auto& st = s.ctx().state;
    QWidget* form = s.win().centralWidget();
    st.formWidth = 700 * 15;
    st.formHeight = 500 * 15;
    s.ctx().windowSettingsChanged(s.ctx());
    EXPECT_TRUE(waitFor([&] { return form->width() == 700 && form->height() == 500; }))
        << form->width() << " x " << form->height();
    EXPECT_TRUE(waitFor([&] {
        return s.win().renderWidget()->width() == (700 * 15 - (st.intResizeX + 50)) / 15;
    })) << "the scene follows the form's layout";

    s.ctx().settings.statusBarVisible = false;
    s.ctx().windowSettingsChanged(s.ctx());
    EXPECT_FALSE(s.win().statusBar()->isVisible());
    QTest::qWait(100);
    EXPECT_TRUE(waitFor([&] { return form->height() == 500; }))
        << "the form keeps its size: " << form->height();
    s.ctx().settings.statusBarVisible = true;
    s.ctx().windowSettingsChanged(s.ctx());
    EXPECT_TRUE(s.win().statusBar()->isVisible());
}

TEST(WindowSettings, TheSettingsFormsStatusBarBoxHidesTheBar) {
    Started s;
    forms::Form* settings = s.ctx().forms.find("frm33_Settings");
    ASSERT_NE(settings, nullptr);
    settings->ensureLoaded();
    ASSERT_TRUE(settings->setFromUser("chkStatusbarToggle", "0"));
    EXPECT_FALSE(s.ctx().settings.statusBarVisible);
    EXPECT_FALSE(s.win().statusBar()->isVisible());
    ASSERT_TRUE(settings->setFromUser("chkStatusbarToggle", "1"));
    EXPECT_TRUE(s.win().statusBar()->isVisible());
}

// A right press on a tool button is its press with button 2: the grid plane is
// then built with the dialog's last values, the dialog not shown.
TEST(WindowTools, ARightPressOnAToolButtonPressesWithButtonTwo) {
    Started s;
    auto* bar = s.win().findChild<QToolBar*>("tbrTools");
    ASSERT_NE(bar, nullptr);
    QAction* grid = nullptr;
    for (QAction* a : bar->actions())
        if (a->objectName() == "cmdGridPlane") grid = a;
    ASSERT_NE(grid, nullptr);
    QWidget* button = bar->widgetForAction(grid);
    ASSERT_NE(button, nullptr);
    const std::size_t before = s.ctx().engine.polygon_count();
    QTest::mouseClick(button, Qt::RightButton);
    QTest::qWait(50);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_GT(s.ctx().engine.polygon_count(), before);
    EXPECT_EQ(s.ctx().state.txtComment.rfind("Grid plane built: ", 0), 0u);
}

}  // namespace

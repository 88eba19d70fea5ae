// Files reaching the window without a dialog: dropped, named on the command
// line, picked from the recent files; and the extension table behind them.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <functional>
#include <string>

#include "core/AppContext.h"
#include "engine/WorldFormat.h"
#include "gui/Application.h"
#include "gui/FileRoute.h"
#include "gui/GuiTestSupport.h"
#include "gui/MainWindow.h"
#include "gui/RecentFiles.h"

namespace {

using guitest::whenModal;
using guitest::waitFor;

// Started with no recent files of an earlier run.
struct Started : guitest::Started {
    Started() { app.window().recentFiles().clear(); }
};

int polygonCount(engine::Engine& e) {
    int n = 0;
    for (auto p = e.polygon_get_first_polygon(); p != 0; p = e.polygon_get_next(p)) ++n;
    return n;
}

// A world of `n` triangles side by side, saved as `path`.
void writeWorld(const QString& path, int n) {
    engine::Engine e;
    for (int i = 0; i < n; ++i) {
        const auto p = e.polygon_create();
        const double x = i * 100.0;
        e.polygon_add_point(p, engine::Point3{x, 0, 0});
        e.polygon_add_point(p, engine::Point3{x, 50, 0});
        e.polygon_add_point(p, engine::Point3{x + 50, 0, 0});
        ASSERT_EQ(e.engine_add_polygon(p), 0);
    }
    ASSERT_TRUE(engine::saveWorld(e, path.toStdString()).ok);
}

// One facet of the point-list format: a unit square, shade 9, hue 3.
void writeAsc(const QString& path) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("0 0 0 9 3\n1 0 0 9 3\n1 1 0 9 3\n0 1 0 9 3\n");
}

void drop(gui::MainWindow& w, const QStringList& files, Qt::KeyboardModifiers mods = {}) {
    QMimeData mime;
    QList<QUrl> urls;
    for (const QString& f : files) urls << QUrl::fromLocalFile(f);
    mime.setUrls(urls);
    const QPointF at(w.width() / 2.0, w.height() / 2.0);
    QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, &mime, Qt::NoButton, mods);
    QApplication::sendEvent(&w, &enter);
    ASSERT_TRUE(enter.isAccepted()) << "the window takes local files";
    QDropEvent dropped(at, Qt::CopyAction, &mime, Qt::NoButton, mods);
    QApplication::sendEvent(&w, &dropped);
}

TEST(FileRoute, TheExtensionDecidesInAnyCase) {
    EXPECT_EQ(gui::extensionOf("/a/b/Mine.ASC"), ".asc");
    EXPECT_EQ(gui::extensionOf("C:/x/stope.State"), ".state");
    EXPECT_EQ(gui::extensionOf("noext"), "");
    EXPECT_TRUE(gui::knownExtension(".wld"));
    EXPECT_FALSE(gui::knownExtension(".docx"));
    EXPECT_EQ(gui::routeCandidates(".asc", false).front(), "mnuOpenMap3DWireASC");
    EXPECT_EQ(gui::routeCandidates(".asc", true).front(), "mnuAddMap3DWireASC");
    EXPECT_TRUE(gui::readsFiles("mnuSTATEFileAdd"));
    EXPECT_FALSE(gui::readsFiles("mnuExit"));
}

TEST(FileRoute, TheFirstRegisteredAndEnabledCommandReads) {
    core::CommandRegistry reg;
    auto none = [](core::AppContext&) {};
    EXPECT_FALSE(gui::routeFor(reg, "x.dat", false)) << "nothing registered";
    reg.add({"mnuOpenDatamineStringText", "Strings", "File", "", "", none});
    auto r = gui::routeFor(reg, "x.DAT", false);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->command, "mnuOpenDatamineStringText")
        << "the second choice when the first is missing";
    reg.add({"mnuOpenDatamineWireText", "Wires", "File", "", "", none});
    EXPECT_EQ(gui::routeFor(reg, "x.dat", false)->command, "mnuOpenDatamineWireText");
    reg.findMutable("mnuOpenDatamineWireText")->enabled = false;
    EXPECT_EQ(gui::routeFor(reg, "x.dat", false)->command, "mnuOpenDatamineStringText");
    EXPECT_FALSE(gui::routeFor(reg, "x.dat", true)) << "no add command registered";

    reg.add({"mnuSTATEFileOpenInitialize", "Open", "File", "", "", none});
    reg.add({"mnuSTATEFileAdd", "Add", "File", "", "", none});
    EXPECT_TRUE(gui::routeFor(reg, "w.wld", false)->world);
    EXPECT_FALSE(gui::routeFor(reg, "w.wld", true)->world) << "adding goes through its dialog";
}

TEST(RecentFiles, NewestFirstOnceEachAtMostTenAndKeptAcrossRuns) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QSettings store(dir.filePath("recent.ini"), QSettings::IniFormat);
    {
        gui::RecentFiles r(&store);
        r.add(dir.filePath("a.asc"), "mnuOpenMap3DWireASC");
        r.add(dir.filePath("b.state"), "mnuSTATEFileOpenInitialize");
        r.add(dir.filePath("sub/../a.asc"), "mnuAddMap3DWireASC");
        ASSERT_EQ(r.entries().size(), 2u);
        EXPECT_EQ(r.entries()[0].path, dir.filePath("a.asc"));
        EXPECT_EQ(r.entries()[0].command, "mnuAddMap3DWireASC") << "the latest way it was read";
        EXPECT_EQ(r.entries()[1].path, dir.filePath("b.state"));
    }
    gui::RecentFiles again(&store);
    ASSERT_EQ(again.entries().size(), 2u);
    EXPECT_EQ(again.entries()[1].command, "mnuSTATEFileOpenInitialize");
    for (int i = 0; i < 14; ++i) again.add(dir.filePath(QString("f%1.asc").arg(i)), "x");
    ASSERT_EQ(again.entries().size(), 10u);
    EXPECT_EQ(again.entries()[0].path, dir.filePath("f13.asc"));
    EXPECT_EQ(again.entries()[9].path, dir.filePath("f4.asc"));
    again.remove(dir.filePath("f13.asc"));
    EXPECT_EQ(again.entries()[0].path, dir.filePath("f12.asc"));
    EXPECT_EQ(gui::RecentFiles::menuText(0, {"/m/R&D.asc", "x"}), "&1 R&&D.asc   (/m)");
}

TEST(WindowFiles, ADroppedWorldOpensAndCtrlAddsTheNext) {
    Started s;
    QTemporaryDir dir;
    const QString a = dir.filePath("first.STATE"), b = dir.filePath("second.wld");
    writeWorld(a, 3);
    writeWorld(b, 2);
    drop(s.win(), {a});
    ASSERT_TRUE(waitFor([&] { return polygonCount(s.ctx().engine) == 3; }))
        << "polygons: " << polygonCount(s.ctx().engine);
    EXPECT_NE(s.ctx().state.strLoadedFiles.find("first.STATE"), std::string::npos);
    drop(s.win(), {b}, Qt::ControlModifier);
    EXPECT_TRUE(waitFor([&] { return polygonCount(s.ctx().engine) == 5; }))
        << "polygons: " << polygonCount(s.ctx().engine);
    // a plain drop replaces the scene again
    drop(s.win(), {b});
    EXPECT_TRUE(waitFor([&] { return polygonCount(s.ctx().engine) == 2; }));
    ASSERT_FALSE(s.win().recentFiles().entries().empty());
    EXPECT_EQ(s.win().recentFiles().entries()[0].path, b);
}

TEST(WindowFiles, ADroppedPointFileGoesThroughItsReaderAndIntoTheRecentFiles) {
    Started s;
    QTemporaryDir dir;
    const QString asc = dir.filePath("stope.asc");
    writeAsc(asc);
    drop(s.win(), {asc});
    // two-sided facet: four triangles
    ASSERT_TRUE(waitFor([&] { return polygonCount(s.ctx().engine) == 4; }))
        << "polygons: " << polygonCount(s.ctx().engine);
    EXPECT_EQ(s.ctx().state.strLoadedFiles, asc.toStdString() + " opened");
    const auto& recent = s.win().recentFiles().entries();
    ASSERT_EQ(recent.size(), 1u);
    EXPECT_EQ(recent[0].path, asc);
    EXPECT_EQ(recent[0].command, "mnuOpenMap3DWireASC");

    // an empty scene, then the recent entry reads the file again
    const QString empty = dir.filePath("empty.STATE");
    writeWorld(empty, 1);
    ASSERT_TRUE(s.win().openFile(empty.toStdString()));
    ASSERT_EQ(polygonCount(s.ctx().engine), 1);
    QAction* second = s.win().recentMenu()->findChild<QAction*>("mnuRecentFile2");
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(second->text().contains("stope.asc"));
    second->trigger();
    EXPECT_EQ(polygonCount(s.ctx().engine), 4);

    // a file gone from the disk is reported and leaves the list
    QFile::remove(asc);
    QString told;
    auto seen = whenModal([&](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        told = box ? box->windowTitle() : "";
        if (box) box->accept();
    });
    s.win().recentMenu()->findChild<QAction*>("mnuRecentFile1")->trigger();
    EXPECT_TRUE(*seen);
    EXPECT_EQ(told, "File does not exist");
    EXPECT_EQ(s.win().recentFiles().entries().size(), 1u);
}

TEST(WindowFiles, AFileOfNoKnownKindIsRefusedWithAMessage) {
    Started s;
    QTemporaryDir dir;
    const QString doc = dir.filePath("notes.docx");
    QFile f(doc);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("x");
    f.close();
    QString text;
    auto seen = whenModal([&](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        text = box ? box->text() : "";
        if (box) box->accept();
    });
    EXPECT_FALSE(s.win().openFile(doc.toStdString()));
    EXPECT_TRUE(*seen);
    EXPECT_EQ(text, "Tarvik does not read this kind of file: notes.docx");
    EXPECT_TRUE(s.win().recentFiles().entries().empty());
}

TEST(WindowFiles, TheCommandLineOpensAWorld) {
    Started s;
    QTemporaryDir dir;
    const QString w = dir.filePath("from-shell.STATE");
    writeWorld(w, 4);
    EXPECT_TRUE(s.app.openFromCommandLine(w.toStdString()));
    EXPECT_EQ(polygonCount(s.ctx().engine), 4);
    EXPECT_FALSE(s.ctx().state.bolOpenByAssociation) << "the hand-over is used up";
}

}  // namespace

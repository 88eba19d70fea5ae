// The window tests need a real window system: the GL format is set before the
// application object, and a platform that cannot show OpenGL widgets skips the
// whole program (exit 77).
#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdio>

#include "gui/GlSetup.h"

int main(int argc, char** argv) {
    gui::setDefaultGlFormat();
    QApplication app(argc, argv);
    gui::clearUpperVectorState();
    QApplication::setQuitOnLastWindowClosed(false);
    if (!gui::platformCanShowGl()) {
        std::fprintf(stderr, "window tests skipped: the '%s' platform cannot show OpenGL widgets\n",
                     qPrintable(QApplication::platformName()));
        return 77;
    }
    // The window keeps its recent files in the user's settings: tests keep theirs apart.
    QStandardPaths::setTestModeEnabled(true);
    QTemporaryDir settingsDir;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsDir.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settingsDir.path());
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

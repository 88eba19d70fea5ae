// tarvik: the desktop window.
//   tarvik [FILE ...]          opens the first FILE, adds the others
//   tarvik --demo              starts on the built-in demo mine
//   tarvik --fit FILE ...      brings the camera close to the model once it is open
//   tarvik --screenshot PNG    saves a picture of the window and quits
//          [--palette TEXT] [--info] [--size WxH]

#include <QApplication>
#include <string>
#include <vector>

#include "gui/Application.h"
#include "gui/GlSetup.h"
#include "gui/ScreenshotMode.h"

int main(int argc, char** argv) {
    gui::setDefaultGlFormat();
    QApplication qapp(argc, argv);
    gui::clearUpperVectorState();
    QApplication::setApplicationName("Tarvik");

    bool demo = false;
    bool fit = false;
    bool screenshot = false;
    gui::ScreenshotRequest shot;
    std::vector<std::string> files;
    const QStringList args = QApplication::arguments();
    for (int i = 1; i < args.size(); ++i) {
        const QString& a = args[i];
        const bool more = i + 1 < args.size();
        if (a == "--demo") {
            demo = true;
        } else if (a == "--fit") {
            fit = true;
        } else if (a == "--screenshot" && more) {
            screenshot = true;
            shot.file = args[++i];
        } else if (a == "--palette" && more) {
            shot.paletteQuery = args[++i];
        } else if (a == "--info") {
            shot.showInfo = true;
        } else if (a == "--size" && more) {
            const QStringList wh = args[++i].split('x');
            if (wh.size() == 2) {
                shot.width = wh[0].toInt();
                shot.height = wh[1].toInt();
            }
        } else if (!a.startsWith("-")) {
            files.push_back(a.toStdString());
        }
    }

    gui::Application app;
    if (!app.start()) return 1;
    if (screenshot) gui::closeBoxesUnattended();
    if (demo) app.loadDemo();
    for (std::size_t i = 0; i < files.size(); ++i) app.openFromCommandLine(files[i], i > 0);
    if (fit && !files.empty()) app.fitView();
    if (screenshot) gui::scheduleScreenshot(app, shot);
    return qapp.exec();
}

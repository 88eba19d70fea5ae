// tarvik: the desktop window.
//   tarvik [FILE]     opens FILE at start
//   tarvik --demo     starts on the built-in demo mine

#include <QApplication>
#include <cstring>
#include <string>

#include "gui/Application.h"
#include "gui/GlSetup.h"

int main(int argc, char** argv) {
    gui::setDefaultGlFormat();
    QApplication qapp(argc, argv);
    gui::clearUpperVectorState();
    QApplication::setApplicationName("Tarvik");

    bool demo = false;
    std::string file;
    const QStringList args = QApplication::arguments();
    for (int i = 1; i < args.size(); ++i) {
        if (args[i] == "--demo")
            demo = true;
        else if (file.empty() && !args[i].startsWith("-"))
            file = args[i].toStdString();
    }

    gui::Application app;
    if (!app.start()) return 1;
    if (demo) app.loadDemo();
    if (!file.empty()) app.openFromCommandLine(file);
    return qapp.exec();
}

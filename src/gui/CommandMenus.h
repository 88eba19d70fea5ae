#pragma once
// Menus and tool buttons made from the command registry: a command with a menu
// path ("File", "File/Recent") becomes an entry of that menu, a command of the
// main form with none becomes a tool button. Commands registered later appear
// at the next sync; enabled and highlighted follow the registry.

#include <QObject>
#include <functional>
#include <map>
#include <string>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;

namespace core {
class AppContext;
}

namespace gui {

class CommandMenus : public QObject {
    Q_OBJECT
public:
    // Runs a command by name (the window's way: errors reported, state synced).
    using Runner = std::function<void(const std::string& name)>;
    CommandMenus(core::AppContext& ctx, QMenuBar* menus, QToolBar* tools, Runner run,
                 QObject* parent = nullptr);

    // Adds what was registered since the last sync and copies enabled and
    // highlighted from the registry.
    void sync();
    QAction* action(const std::string& command) const;
    QMenu* menu(const std::string& path) const;
    // The menu of the path, made (with its parents) when it is not there yet.
    QMenu* ensureMenu(const std::string& path) { return menuFor(path); }
    // Commands that live elsewhere in the window (not as tool buttons).
    void keepOffToolbar(const std::string& command) { offToolbar_.push_back(command); }
    // A tool button pressed with the right or middle button (2, 4) and a shift
    // mask: the window runs the command's press with them.
    using PressRunner = std::function<void(const std::string& name, int button, int shift)>;
    void setPressRunner(PressRunner run) { press_ = std::move(run); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QMenu* menuFor(const std::string& path);

    core::AppContext& ctx_;
    QMenuBar* menus_;
    QToolBar* tools_;
    Runner run_;
    PressRunner press_;
    std::size_t built_ = 0;
    std::map<std::string, QAction*> actions_;
    std::map<std::string, QMenu*> menusByPath_;
    std::vector<std::string> offToolbar_;
};

}  // namespace gui

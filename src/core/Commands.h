#pragma once
// Menu entries and command buttons: one registry with caption, menu path,
// shortcut and handler. The window builds its menus from it, scripts run by name.

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace core {

class AppContext;

struct Command {
    std::string name;      // mnu... or cmd..., or FORM.cmd... for a form's button
    std::string caption;   // as shown
    std::string menuPath;  // "File/Open" ("" for a button of the main form or a form)
    std::string shortcut;  // "Ctrl+B"
    std::string form;      // the form whose button it is ("" for the main form)
    std::function<void(AppContext&)> handler;
    // Disabled while a long routine runs (buttons disable themselves).
    bool enabled = true;
    // A tool button arms a tool; reset and cleanup re-enables it and gives it back
    // the face colour (highlighted false).
    bool toolButton = false;
    bool highlighted = false;
};

class CommandRegistry {
public:
    void add(Command c);
    // By bare name, or FORM.NAME. Returns nullptr when unknown; `ambiguous` is set
    // when a bare name belongs to several forms.
    const Command* find(const std::string& name, bool* ambiguous = nullptr) const;
    Command* findMutable(const std::string& name);
    const std::vector<Command>& all() const { return cmds_; }

private:
    std::vector<Command> cmds_;
};

}  // namespace core

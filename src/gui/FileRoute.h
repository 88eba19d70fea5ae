#pragma once
// Which command opens a file that arrives without a dialog (dropped on the
// window, named on the command line, picked from the recent files): chosen by
// its extension among the commands registered and enabled in this run.

#include <optional>
#include <string>
#include <vector>

namespace core {
class CommandRegistry;
}

namespace gui {

struct FileRoute {
    // The menu command that reads the file: the file goes to its open dialog.
    std::string command;
    // A world file: it opens by association, with no dialog at all.
    bool world = false;
};

// Lower case with the dot (".asc"); "" when the name has none.
std::string extensionOf(const std::string& path);
// The commands that may read files of the extension, best first ("Add" keeps
// the scene, else the scene is replaced where the format allows it).
std::vector<std::string> routeCandidates(const std::string& extension, bool add);
// True when the extension is one the program reads at all.
bool knownExtension(const std::string& extension);
// True for a command that reads the files of some extension of the table.
bool readsFiles(const std::string& command);
// The first candidate that is registered and enabled; nothing when none is.
std::optional<FileRoute> routeFor(const core::CommandRegistry& commands, const std::string& path,
                                  bool add);

}  // namespace gui

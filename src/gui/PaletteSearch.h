#pragma once
// The search of the command palette: which commands a typed text finds, best first.

#include <string>
#include <vector>

namespace core {
struct Command;
}

namespace gui {

struct PaletteHit {
    std::size_t index;  // into the registry's list
    int score;          // lower is better
};

// Every word of `query` must appear, in any case, in the command's caption,
// name or menu path. A caption that starts with the query comes first, then one
// that holds it whole, then the rest; ties keep the registry's order. An empty
// query finds every command. A form's own buttons and commands without a
// handler are never found.
std::vector<PaletteHit> searchCommands(const std::vector<core::Command>& commands,
                                       const std::string& query);

// The caption as a menu shows it, without the accelerator marks.
std::string plainCaption(const core::Command& c);

}  // namespace gui

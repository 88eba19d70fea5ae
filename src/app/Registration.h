#pragma once
// Wiring of every layer into one application context: commands, procedures,
// forms. The window and the script runner both start here.

namespace core {
class AppContext;
}

namespace app {

// Registers every layer's forms, commands and procedures.
void registerAll(core::AppContext& ctx);
// Runs the main form's load as the program does at start; false on a start failure.
bool startMainForm(core::AppContext& ctx);

}  // namespace app

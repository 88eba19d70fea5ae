#pragma once
// The main form's life: load, one frame, reset, shutdown.

#include <string>

namespace core {

class AppContext;

// The main form's texts that more than one place shows.
inline constexpr const char* kMouseHelpText =
    "MOUSE BUTTON ACTIONS:     LEFT-Rotate     RIGHT-Pan/Move     MIDDLE / LEFT+RIGHT-Zoom";
inline constexpr const char* kStatusHelpText =
    "SHIFT-key for multiple selections   CTRL-key to temporary ignore the selected function";

// Form load in its order; false when the program must end (a start failure).
bool Form_Load(AppContext& ctx);
// One frame: labels, rubber line, render.
void p_subMainLoop(AppContext& ctx, bool bolCamUpdate = false);
void p_subResetAndCleanup(AppContext& ctx);
void p_subActivateCommandButtons(AppContext& ctx);
// The interrupt button's question; sets bolInterruptProcess to the answer.
void cmdInterruptProcess(AppContext& ctx);
// Exit confirmation; true when the program may end (the engine is then closed).
bool Form_QueryUnload(AppContext& ctx);
// Lays out the main form for its size in twips; nothing while minimised.
void Form_Resize(AppContext& ctx);
// A long loop's pacing: pumps events and tells whether to stop.
bool interrupted(AppContext& ctx);

// Registers the main form's commands (cmdInterruptProcess, the exit, ...).
void registerMainFormCommands(AppContext& ctx);

}  // namespace core

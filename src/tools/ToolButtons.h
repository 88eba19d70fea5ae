#pragma once
// The tool buttons of the main form: arming, their dialogs, and the wiring of the
// render window's mouse to the chain.

#include <string>

namespace core {
class AppContext;
}

namespace tools {

// The prompt a tool button writes when it arms ("" for none).
std::string toolPrompt(const std::string& command);

// A press on a tool button (button 1 shows the tool's dialog, 2 accepts its last
// settings silently, 4 is ignored). Nothing happens while the pointer is the
// hourglass. A dialog closed without accepting leaves no tool armed.
void toolButtonDown(core::AppContext& ctx, const std::string& command, int button);

// Adds the tool buttons, frm08_MoveCopyGroup and frm24_Polygon, the snap boxes'
// handler, the procedures, and puts the chain in front of the navigation's mouse.
// Safe to call twice.
void registerTools(core::AppContext& ctx);

}  // namespace tools

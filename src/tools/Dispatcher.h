#pragma once
// The mouse-up chain of picRenderWindow while a tool is armed, and the rubber
// line that follows the pointer.

namespace core {
class AppContext;
}

namespace tools {

inline constexpr const char* kRightButtonText =
    "Right mouse button pressed, press 'OK' to continue or 'Cancel' to terminate";
inline constexpr const char* kRightButtonTitle = "Right mouse button pressed";

// One pass of the chain for a mouse-up (button: 1 left, 2 right, 3 both; shift:
// 1 shift, 2 ctrl, 4 alt). The first armed step takes the click.
void picRenderWindow_MouseUp(core::AppContext& ctx, int button, int shift, double x, double y);

// True when a mouse-up belongs to the chain rather than to the navigation: a tool
// is armed and the click is not a Ctrl drag of the view, or both buttons with
// Shift 5 (the reset).
bool toolTakesMouseUp(const core::AppContext& ctx, int button, int shift);

// The rubber line's free end follows the pointer over the plane square to the
// view through its fixed end.
void rubberLineMove(core::AppContext& ctx, double x, double y);

}  // namespace tools

#pragma once
// What a key, a click or a wheel turn in picRenderWindow runs. The navigation
// and the tools fill these; the window and scripts call them. An empty handler
// takes the event and does nothing.

#include <functional>
#include <string>

namespace core {

class AppContext;

struct InputHandlers {
    // keyCode: the key codes of the window system (65 'A', 37 Left, 112 F1, ...);
    // shift: 1 shift, 2 ctrl, 4 alt.
    std::function<void(AppContext&, int keyCode, int shift)> onKeyDown;
    // button: 1 left, 2 right, 4 middle; x, y in window pixels.
    std::function<void(AppContext&, int button, int shift, double x, double y)> onMouseDown;
    std::function<void(AppContext&, int button, int shift, double x, double y)> onMouseMove;
    std::function<void(AppContext&, int button, int shift, double x, double y)> onMouseUp;
    std::function<void(AppContext&, double x, double y)> onDblClick;
    // delta: 120 a notch, positive away from the user.
    std::function<void(AppContext&, int delta, double x, double y)> onWheel;
};

// Opening and saving a world file by name, without dialogs. Each returns false
// when the file could not be read or written (the routine has told the user).
struct WorldFileHooks {
    std::function<bool(AppContext&, const std::string& path)> open;
    std::function<bool(AppContext&, const std::string& path)> save;
};

}  // namespace core

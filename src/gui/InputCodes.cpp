#include "gui/InputCodes.h"

namespace gui {

int keyCodeOf(int k) {
    if (k >= Qt::Key_A && k <= Qt::Key_Z) return 65 + (k - Qt::Key_A);
    if (k >= Qt::Key_0 && k <= Qt::Key_9) return 48 + (k - Qt::Key_0);
    if (k >= Qt::Key_F1 && k <= Qt::Key_F12) return 112 + (k - Qt::Key_F1);
    switch (k) {
        case Qt::Key_Backspace:
            return 8;
        case Qt::Key_Tab:
            return 9;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return 13;
        case Qt::Key_Shift:
            return 16;
        case Qt::Key_Control:
            return 17;
        case Qt::Key_Alt:
            return 18;
        case Qt::Key_Escape:
            return 27;
        case Qt::Key_Space:
            return 32;
        case Qt::Key_PageUp:
            return 33;
        case Qt::Key_PageDown:
            return 34;
        case Qt::Key_End:
            return 35;
        case Qt::Key_Home:
            return 36;
        case Qt::Key_Left:
            return 37;
        case Qt::Key_Up:
            return 38;
        case Qt::Key_Right:
            return 39;
        case Qt::Key_Down:
            return 40;
        case Qt::Key_Insert:
            return 45;
        case Qt::Key_Delete:
            return 46;
        default:
            return 0;
    }
}

int shiftMaskOf(Qt::KeyboardModifiers m) {
    return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) |
           (m & Qt::AltModifier ? 4 : 0);
}

int buttonMaskOf(Qt::MouseButtons b) {
    return (b & Qt::LeftButton ? 1 : 0) | (b & Qt::RightButton ? 2 : 0) |
           (b & Qt::MiddleButton ? 4 : 0);
}

}  // namespace gui

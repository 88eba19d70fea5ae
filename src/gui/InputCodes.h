#pragma once
// Qt's keys, modifiers and buttons in the codes the program's handlers take:
// window-system key codes (65 'A', 37 Left, 112 F1, ...), the shift mask
// (1 shift, 2 ctrl, 4 alt) and the button mask (1 left, 2 right, 4 middle).

#include <Qt>

namespace gui {

// 0 for a key the handlers do not know.
int keyCodeOf(int qtKey);
int shiftMaskOf(Qt::KeyboardModifiers m);
int buttonMaskOf(Qt::MouseButtons b);

}  // namespace gui

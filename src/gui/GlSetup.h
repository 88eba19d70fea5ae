#pragma once
// What every Qt program of ours does around its application object.

namespace gui {

// OpenGL 3.3 core for every window; call before the application object exists.
void setDefaultGlFormat();
// Clears the upper halves of the vector registers. Qt's start-up can leave them
// dirty, which makes every later SSE instruction pay a transition penalty (many
// times slower number crunching); call right after the application object is made.
void clearUpperVectorState();
// True when the window system can show an OpenGL widget (a real X server);
// the offscreen and minimal platforms cannot.
bool platformCanShowGl();

}  // namespace gui

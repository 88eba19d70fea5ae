#pragma once
// `tarvik-cli render`: a picture of a scene, drawn offscreen.
//
//   render FILE -o PNG [--size WxH] [--view top|north|east|iso|camera]
//   render --demo -o PNG [...]
//
// FILE is read by the loader registered for its extension (render/SceneLoaders.h).
// The camera is fitted to the whole scene from the view's side (iso unless told);
// `--view camera` keeps the camera the file left. Exit status 0 on success, 2 for
// bad arguments, 1 when the file or the picture fails.

namespace cli {

// argv[0] is the command's name ("render"); the options follow it.
int runRenderCommand(int argc, char** argv);

}  // namespace cli

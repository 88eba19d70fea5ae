#pragma once
// Readers that turn a file into a scene for the command line's pictures. The
// layers that know a format register a loader for its file extension; the render
// command asks them by the extension of the file it is given.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/Engine.h"

namespace render {

// Loads the file into a scene; nullptr with a message in `error` when it cannot.
// The engine may live inside a larger object that the pointer keeps alive.
using SceneLoader =
    std::function<std::shared_ptr<engine::Engine>(const std::string& path, std::string& error)>;

// extension: lower case with the dot (".tvs"). A later registration replaces an earlier one.
void registerSceneLoader(const std::string& extension, SceneLoader loader);
const SceneLoader* findSceneLoader(const std::string& extension);
std::vector<std::string> sceneLoaderExtensions();

}  // namespace render

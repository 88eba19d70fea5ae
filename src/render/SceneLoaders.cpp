#include "render/SceneLoaders.h"

#include <algorithm>
#include <map>

namespace render {

namespace {
std::map<std::string, SceneLoader>& loaders() {
    static std::map<std::string, SceneLoader> m;
    return m;
}
std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}
}  // namespace

void registerSceneLoader(const std::string& extension, SceneLoader loader) {
    loaders()[lower(extension)] = std::move(loader);
}

const SceneLoader* findSceneLoader(const std::string& extension) {
    auto it = loaders().find(lower(extension));
    return it == loaders().end() ? nullptr : &it->second;
}

std::vector<std::string> sceneLoaderExtensions() {
    std::vector<std::string> v;
    for (const auto& [ext, fn] : loaders()) v.push_back(ext);
    return v;
}

}  // namespace render

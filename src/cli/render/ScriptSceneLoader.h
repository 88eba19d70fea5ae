#pragma once
// Lets `tarvik-cli render` draw the scene a script (.tvs) leaves behind. Inline,
// so that the render library needs no script runner: the program that links
// both calls registerScriptSceneLoader() before runRenderCommand().

#include <memory>
#include <sstream>
#include <string>

#include "cli/script/ScriptSession.h"
#include "core/AppContext.h"
#include "render/SceneLoaders.h"

namespace cli {

inline void registerScriptSceneLoader() {
    render::registerSceneLoader(
        ".tvs", [](const std::string& path, std::string& error) -> std::shared_ptr<engine::Engine> {
            auto session = std::make_shared<script::ScriptSession>(nullptr);
            std::ostringstream err;
            if (session->start(err) != 0 || session->runFile(path, err) != 0) {
                error = err.str();
                while (!error.empty() && (error.back() == '\n' || error.back() == '\r'))
                    error.pop_back();
                if (error.empty()) error = "the script did not run to its end";
                return nullptr;
            }
            // The engine lives inside the session: the pointer keeps the session.
            return std::shared_ptr<engine::Engine>(session, &session->context().engine);
        });
}

}  // namespace cli

#pragma once
// Lets `tarvik-cli render` draw the scene a script (.tvs) leaves behind, and a
// saved world (.STATE, .wld) as the program opens it. Inline, so that the render
// library needs no script runner: the program that links both calls
// registerScriptSceneLoader() before runRenderCommand().

#include <memory>
#include <sstream>
#include <string>

#include "cli/script/ScriptSession.h"
#include "core/AppContext.h"
#include "render/SceneLoaders.h"

namespace cli {

namespace detail {

// A started session; null with the reason in `error` when the start-up failed.
inline std::shared_ptr<script::ScriptSession> startedSession(std::string& error) {
    auto session = std::make_shared<script::ScriptSession>(nullptr);
    std::ostringstream err;
    if (session->start(err) != 0) {
        error = err.str();
        if (error.empty()) error = "the program did not start";
        return nullptr;
    }
    return session;
}

inline void trimLineEnds(std::string& s) {
    while (!s.empty() && (s.back() == '\n' || s.back() == '\r')) s.pop_back();
}

}  // namespace detail

inline void registerScriptSceneLoader() {
    render::registerSceneLoader(
        ".tvs", [](const std::string& path, std::string& error) -> std::shared_ptr<engine::Engine> {
            auto session = detail::startedSession(error);
            if (!session) return nullptr;
            std::ostringstream err;
            if (session->runFile(path, err) != 0) {
                error = err.str();
                detail::trimLineEnds(error);
                if (error.empty()) error = "the script did not run to its end";
                return nullptr;
            }
            // The engine lives inside the session: the pointer keeps the session.
            return std::shared_ptr<engine::Engine>(session, &session->context().engine);
        });
    auto world = [](const std::string& path,
                    std::string& error) -> std::shared_ptr<engine::Engine> {
        auto session = detail::startedSession(error);
        if (!session) return nullptr;
        core::AppContext& ctx = session->context();
        if (!ctx.worldFiles.open) {
            error = "world files are not available in this build";
            return nullptr;
        }
        if (!ctx.worldFiles.open(ctx, path)) {
            error = "the world file could not be opened";
            return nullptr;
        }
        return std::shared_ptr<engine::Engine>(session, &ctx.engine);
    };
    render::registerSceneLoader(".state", world);
    render::registerSceneLoader(".wld", world);
}

}  // namespace cli

#include "core/MainState.h"

namespace core {

bool MainState::toolArmed() const {
    for (const auto& [name, on] : toolFlags)
        if (on) return true;
    return false;
}

void MainState::setToolFlag(const std::string& name, bool on) {
    for (auto& [n, v] : toolFlags) {
        if (n == name) {
            v = on;
            return;
        }
    }
    toolFlags.emplace_back(name, on);
}

bool MainState::toolFlag(const std::string& name) const {
    for (const auto& [n, v] : toolFlags)
        if (n == name) return v;
    return false;
}

void MainState::clearToolFlags() {
    for (auto& [n, v] : toolFlags) v = false;
}

}  // namespace core

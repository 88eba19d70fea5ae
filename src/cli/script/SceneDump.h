#pragma once
// The scene as JSON: every polygon in walk order (disabled ones too), the groups
// in creation order, the background, the camera and the main form's state.

#include <string>

namespace core {
class AppContext;
}

namespace script {

std::string sceneDumpJson(core::AppContext& ctx);

}  // namespace script

#include "persistence/ExportText.h"

#include <array>
#include <charconv>

namespace persistence {

std::string shortestText(double value) {
    std::array<char, 32> buf{};
    const auto r = std::to_chars(buf.data(), buf.data() + buf.size(), value);
    if (r.ec != std::errc()) return "0";
    return std::string(buf.data(), r.ptr);
}

std::string metresText(double sceneValue) { return shortestText(sceneValue * kSceneToMetres); }

std::string pointText(const engine::Point3& p, std::string_view sep) {
    std::string out = metresText(p.x);
    out += sep;
    out += metresText(p.y);
    out += sep;
    out += metresText(p.z);
    return out;
}

std::string nameOnOneLine(std::string_view name) {
    std::string out;
    out.reserve(name.size());
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '\r' && i + 1 < name.size() && name[i + 1] == '\n') {
            out += '\t';
            ++i;
        } else {
            out += name[i];
        }
    }
    return out;
}

}  // namespace persistence

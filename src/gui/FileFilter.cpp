#include "gui/FileFilter.h"

#include <vector>

namespace gui {

namespace {

std::vector<std::string> split(const std::string& s, char sep) {
    std::vector<std::string> out;
    std::string cur;
    for (char c : s) {
        if (c == sep) {
            out.push_back(cur);
            cur.clear();
        } else {
            cur += c;
        }
    }
    out.push_back(cur);
    return out;
}

std::string trim(const std::string& s) {
    const auto b = s.find_first_not_of(" \t");
    if (b == std::string::npos) return {};
    const auto e = s.find_last_not_of(" \t");
    return s.substr(b, e - b + 1);
}

}  // namespace

std::string qtFileFilter(const std::string& filter) {
    if (trim(filter).empty()) return {};
    const auto parts = split(filter, '|');
    std::string out;
    for (std::size_t i = 0; i < parts.size(); i += 2) {
        const std::string description = trim(parts[i]);
        std::string patterns;
        if (i + 1 < parts.size()) {
            for (const auto& p : split(parts[i + 1], ';')) {
                std::string pat = trim(p);
                if (pat.empty()) continue;
                // "*.*" means every file, with or without an extension.
                if (pat == "*.*") pat = "*";
                if (!patterns.empty()) patterns += ' ';
                patterns += pat;
            }
        }
        if (patterns.empty()) patterns = "*";
        std::string entry = description.empty() ? patterns : description;
        // Qt reads the patterns from the parentheses: keep the description's own
        // text and give Qt the patterns of the pair.
        const auto open = entry.rfind('(');
        if (open != std::string::npos && entry.back() == ')') entry = trim(entry.substr(0, open));
        entry = (entry.empty() ? std::string("Files") : entry) + " (" + patterns + ")";
        if (!out.empty()) out += ";;";
        out += entry;
    }
    return out;
}

}  // namespace gui

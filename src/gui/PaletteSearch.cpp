#include "gui/PaletteSearch.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "core/Commands.h"

namespace gui {

namespace {

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

std::vector<std::string> words(const std::string& q) {
    std::istringstream in(q);
    std::vector<std::string> out;
    for (std::string w; in >> w;) out.push_back(lower(w));
    return out;
}

std::string trimmed(const std::string& s) {
    const auto b = s.find_first_not_of(" \t");
    if (b == std::string::npos) return {};
    const auto e = s.find_last_not_of(" \t");
    return s.substr(b, e - b + 1);
}

}  // namespace

std::string plainCaption(const core::Command& c) {
    const std::string& src = c.caption.empty() ? c.name : c.caption;
    std::string out;
    for (std::size_t i = 0; i < src.size(); ++i) {
        if (src[i] == '&' && i + 1 < src.size() && src[i + 1] == '&') {
            out += '&';
            ++i;
        } else if (src[i] != '&') {
            out += src[i];
        }
    }
    return out;
}

std::vector<PaletteHit> searchCommands(const std::vector<core::Command>& commands,
                                       const std::string& query) {
    const std::vector<std::string> ws = words(query);
    const std::string whole = lower(trimmed(query));
    std::vector<PaletteHit> hits;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        const core::Command& c = commands[i];
        if (!c.form.empty() || !c.handler) continue;
        const std::string caption = lower(plainCaption(c));
        const std::string hay = caption + ' ' + lower(c.name) + ' ' + lower(c.menuPath);
        const bool all = std::all_of(ws.begin(), ws.end(), [&](const std::string& w) {
            return hay.find(w) != std::string::npos;
        });
        if (!all) continue;
        int score = 2;
        if (whole.empty() || caption.rfind(whole, 0) == 0)
            score = 0;
        else if (caption.find(whole) != std::string::npos)
            score = 1;
        hits.push_back({i, score});
    }
    std::stable_sort(hits.begin(), hits.end(),
                     [](const PaletteHit& a, const PaletteHit& b) { return a.score < b.score; });
    return hits;
}

}  // namespace gui

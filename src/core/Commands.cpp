#include "core/Commands.h"

namespace core {

namespace {

// The commands of the main form are registered without a form name.
constexpr const char* kMainForm = "frm03_MirrowMain";

// The name a button has on its form ("cmdOK" of "frm12_Excavation.cmdOK").
std::string bareName(const Command& c) {
    auto dot = c.name.rfind('.');
    return dot == std::string::npos ? c.name : c.name.substr(dot + 1);
}

std::string formOf(const Command& c) {
    if (!c.form.empty()) return c.form;
    auto dot = c.name.rfind('.');
    return dot == std::string::npos ? std::string() : c.name.substr(0, dot);
}

}  // namespace

void CommandRegistry::add(Command c) {
    // A command added again for the same form replaces the old one.
    for (auto& old : cmds_) {
        if (bareName(old) == bareName(c) && formOf(old) == formOf(c)) {
            old = std::move(c);
            return;
        }
    }
    cmds_.push_back(std::move(c));
}

const Command* CommandRegistry::find(const std::string& name, bool* ambiguous) const {
    if (ambiguous) *ambiguous = false;
    auto dot = name.rfind('.');
    if (dot != std::string::npos) {
        std::string form = name.substr(0, dot), bare = name.substr(dot + 1);
        for (const auto& c : cmds_) {
            if (bareName(c) != bare) continue;
            std::string f = formOf(c);
            if (f == form || (f.empty() && form == kMainForm)) return &c;
        }
        return nullptr;
    }
    const Command* found = nullptr;
    for (const auto& c : cmds_) {
        if (bareName(c) != name) continue;
        if (found) {
            if (ambiguous) *ambiguous = true;
            return nullptr;
        }
        found = &c;
    }
    return found;
}

Command* CommandRegistry::findMutable(const std::string& name) {
    return const_cast<Command*>(find(name));
}

}  // namespace core

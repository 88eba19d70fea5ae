#include "core/Procedures.h"

namespace core {

namespace {
constexpr const char* kPrefix = "STATE_";
constexpr std::size_t kPrefixLen = 6;
}  // namespace

void ProcedureRegistry::add(Procedure p) {
    std::string key = p.name;
    procs_[key] = std::move(p);
}

const Procedure* ProcedureRegistry::find(const std::string& name) const {
    auto it = procs_.find(name);
    if (it != procs_.end()) return &it->second;
    // Engine operations are known with and without their prefix.
    if (name.compare(0, kPrefixLen, kPrefix) == 0)
        it = procs_.find(name.substr(kPrefixLen));
    else
        it = procs_.find(kPrefix + name);
    return it == procs_.end() ? nullptr : &it->second;
}

std::vector<std::string> ProcedureRegistry::names() const {
    std::vector<std::string> out;
    out.reserve(procs_.size());
    for (const auto& [name, p] : procs_) out.push_back(name);
    return out;
}

}  // namespace core

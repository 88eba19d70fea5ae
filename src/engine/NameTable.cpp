#include "engine/NameTable.h"

namespace engine {

NameTable::NameTable() { entries_.emplace_back(); }

std::uint32_t NameTable::acquire(std::string_view name) {
    if (name.empty()) return 0;
    std::uint32_t id;
    if (lastId_ != 0 && entries_[lastId_].text == name) {
        id = lastId_;
    } else if (auto it = index_.find(name); it != index_.end()) {
        id = it->second;
    } else {
        if (!free_.empty()) {
            id = free_.back();
            free_.pop_back();
            entries_[id].text.assign(name);
        } else {
            id = static_cast<std::uint32_t>(entries_.size());
            entries_.push_back(Entry{std::string(name), 0});
        }
        index_.emplace(std::string_view(entries_[id].text), id);
    }
    ++entries_[id].refs;
    lastId_ = id;
    return id;
}

void NameTable::retain(std::uint32_t id) {
    if (id != 0 && id < entries_.size()) ++entries_[id].refs;
}

void NameTable::release(std::uint32_t id) {
    if (id == 0 || id >= entries_.size() || entries_[id].refs == 0) return;
    Entry& e = entries_[id];
    if (--e.refs != 0) return;
    index_.erase(std::string_view(e.text));
    e.text.clear();
    e.text.shrink_to_fit();
    free_.push_back(id);
    if (lastId_ == id) lastId_ = 0;
}

const std::string& NameTable::text(std::uint32_t id) const {
    return id < entries_.size() ? entries_[id].text : entries_[0].text;
}

void NameTable::clear() {
    entries_.clear();
    entries_.emplace_back();
    free_.clear();
    index_.clear();
    lastId_ = 0;
}

}  // namespace engine

#pragma once
// Interned names: every polygon and group holds a 32-bit id, and equal names
// share one stored string (a sphere's polygons all carry the same one). Names
// are kept whole, whatever their length. Id 0 is the empty name.

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace engine {

class NameTable {
public:
    NameTable();

    // Id of the name with one more reference (0 for the empty name).
    std::uint32_t acquire(std::string_view name);
    void retain(std::uint32_t id);
    void release(std::uint32_t id);
    const std::string& text(std::uint32_t id) const;
    // Distinct non-empty names held.
    std::size_t size() const { return index_.size(); }
    void clear();

private:
    struct Entry {
        std::string text;
        std::uint64_t refs = 0;
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const {
            return std::hash<std::string_view>{}(s);
        }
    };
    std::deque<Entry> entries_;  // a deque: the index keeps views into the texts
    std::vector<std::uint32_t> free_;
    std::unordered_map<std::string_view, std::uint32_t, Hash, std::equal_to<>> index_;
    // Builders name thousands of polygons in a row with one name.
    std::uint32_t lastId_ = 0;
};

}  // namespace engine

#include "engine/PointSpace.h"

#include <algorithm>

namespace engine {

void PointSpace::clear() {
    free_.clear();
    holes_.clear();
    freeTotal_ = 0;
    cursor_ = top_ = 1;
    end_ = kLimit;
    inHole_ = false;
}

std::uint32_t PointSpace::take(std::uint32_t n) {
    if (n == 0 || !room(n)) return 0;
    const std::uint32_t first = cursor_;
    cursor_ += n;
    if (!inHole_) top_ = cursor_;
    return first;
}

std::uint32_t PointSpace::takeRuns(std::uint32_t n, std::uint32_t count, std::uint32_t& first) {
    // Only where room() would neither move to a hole nor find the region short.
    if (n == 0 || (!inHole_ && !holes_.empty())) return 0;
    const auto k = static_cast<std::uint32_t>(std::min<std::uint64_t>(count, (end_ - cursor_) / n));
    if (k == 0) return 0;
    first = cursor_;
    cursor_ += k * n;
    if (!inHole_) top_ = cursor_;
    return k;
}

std::uint32_t PointSpace::startGrowing() {
    // Near the very end of the array a polygon may still start without full room.
    if (!room(largest_) && !room(1)) return 0;
    return take(1);
}

std::uint32_t PointSpace::extend(std::uint32_t first, std::uint32_t n) {
    const std::uint32_t end = first + n;
    if (end == cursor_ && cursor_ < end_) {
        ++cursor_;
        if (!inHole_) top_ = cursor_;
        return end;
    }
    // Started at the top before building moved into a hole: the top is still free.
    if (inHole_ && end == top_ && top_ < kLimit) {
        ++top_;
        return end;
    }
    return 0;
}

void PointSpace::release(std::uint32_t first, std::uint32_t n) {
    if (first == 0 || n == 0) return;
    addFree(first, n);
}

bool PointSpace::room(std::uint32_t need) {
    // A hole made since building went to the top is taken at the next start.
    if (!inHole_ && !holes_.empty()) switchRegion();
    if (end_ - cursor_ >= need) return true;
    switchRegion();
    return end_ - cursor_ >= need;
}

void PointSpace::switchRegion() {
    if (inHole_ && cursor_ < end_) addFree(cursor_, end_ - cursor_);
    if (!holes_.empty()) {
        const auto largest = std::prev(holes_.end());
        const std::uint32_t start = largest->second;
        auto it = free_.find(start);
        cursor_ = start;
        end_ = start + it->second;
        eraseFree(it);
        inHole_ = true;
    } else {
        cursor_ = top_;
        end_ = kLimit;
        inHole_ = false;
    }
}

void PointSpace::addFree(std::uint32_t first, std::uint32_t n) {
    auto next = free_.lower_bound(first);
    if (next != free_.begin()) {
        auto prev = std::prev(next);
        if (prev->first + prev->second == first) {
            first = prev->first;
            n += prev->second;
            eraseFree(prev);
        }
    }
    if (next != free_.end() && first + n == next->first) {
        n += next->second;
        eraseFree(next);
    }
    free_.emplace(first, n);
    freeTotal_ += n;
    if (n >= minHole()) holes_.emplace(n, first);
}

void PointSpace::eraseFree(std::map<std::uint32_t, std::uint32_t>::iterator it) {
    if (it->second >= minHole()) holes_.erase({it->second, it->first});
    freeTotal_ -= it->second;
    free_.erase(it);
}

}  // namespace engine

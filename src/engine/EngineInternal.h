#pragma once
// Pieces shared by the engine's own source files; not for use outside src/engine.

#include <cstdint>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/SceneStore.h"

namespace engine {

struct Engine::LightObj {
    std::string name;
    Point3 location;
    Point3 target{1, 0, 0};
    int type = 59;
    double ambient = 0, diffuse = 1, specular = 0, shining = 1;
    Handle entity = 0;  // group to light, 0 for everything
};

struct Engine::BitmapObj {
    std::string path;
    int width = 0, height = 0;
    std::vector<std::uint8_t> rgba;
};

namespace internal {

// The points of a stored polygon copied out in order (a polygon's points may
// cross a storage block, and the geometry routines want one array).
class PointsOf {
public:
    PointsOf(const SceneStore& store, std::uint32_t slot) { load(store, slot); }
    void load(const SceneStore& store, std::uint32_t slot) {
        n_ = store.pointCount(slot);
        const std::uint32_t f = store.firstPoint(slot);
        p_ = small_;
        if (n_ > kSmall) {
            big_.resize(n_);
            p_ = big_.data();
        }
        for (std::size_t i = 0; i < n_; ++i) p_[i] = store.point(f + std::uint32_t(i));
    }
    const Point3* data() const { return p_; }
    std::size_t size() const { return n_; }
    const Point3& operator[](std::size_t i) const { return p_[i]; }

private:
    static constexpr std::size_t kSmall = 8;
    Point3 small_[kSmall];
    std::vector<Point3> big_;
    Point3* p_ = small_;
    std::size_t n_ = 0;
};

inline int clampChannel(int v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }

// Two unit vectors spanning a plane with normal n, u x v = n.
void planeBasis(Point3 n, Point3& u, Point3& v);

}  // namespace internal
}  // namespace engine

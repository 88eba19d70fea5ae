#pragma once
// Bounding volume hierarchy over the polygons of the world, for picking and
// for counting the polygons a segment crosses.
//
// Boxes are floats rounded outwards, so they always hold their polygons; the
// slab test runs in double and the leaves test the exact polygon (plane hit,
// then point in polygon for any number of points). Built with binned surface
// area heuristic splits, subtrees in parallel. The hierarchy holds every
// polygon in the world; whether one is disabled is looked up in the leaves, so
// enabling and disabling never needs a rebuild. When polygons have only moved
// since the build, refit recomputes the boxes bottom-up instead (and declines
// when the tree has got much worse, so that the owner rebuilds).

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "engine/Types.h"

namespace engine {

class SceneStore;

class Bvh {
public:
    Bvh();
    ~Bvh();

    // Held by the owner while it checks freshness and rebuilds, so that queries
    // from several threads (on an unchanging scene) may share the index.
    std::mutex& guard() const { return guard_; }

    void build(const SceneStore& store);
    // New boxes for the same tree after points moved; false when a rebuild is due.
    bool refit(const SceneStore& store);
    void clear();
    std::uint64_t builtRevision() const { return revision_; }
    std::uint64_t builtRemovals() const { return removals_; }
    std::uint64_t builtAdditions() const { return additions_; }
    std::size_t primitiveCount() const { return prims_.size(); }
    std::size_t nodeCount() const { return nodeCount_; }

    // Nearest enabled polygon whose front the ray o + t d (t in [tMin, tMax]) meets;
    // polygon slot or 0.
    std::uint32_t nearest(const SceneStore& store, Point3 o, Point3 d, double tMin, double tMax,
                          double& t) const;
    // Enabled polygons the ray meets within [tMin, tMax]; only fronts when frontOnly.
    int countHits(const SceneStore& store, Point3 o, Point3 d, double tMin, double tMax,
                  bool frontOnly) const;

private:
    struct Node {
        float lo[3], hi[3];
        std::uint32_t first;  // leaf: first primitive; inner: left child (right is first + 1)
        std::uint32_t count;  // primitives in a leaf, 0 for an inner node
    };
    struct Builder;
    void buildIsolated(const SceneStore& store);
    double treeCost() const;
    template <class Visit>
    void traverse(Point3 o, Point3 d, double tMin, double& tMax, Visit&& visit) const;

    std::unique_ptr<Node[]> nodes_;
    std::size_t nodeCount_ = 0;
    std::vector<std::uint32_t> prims_;  // polygon slots, leaf order
    std::uint64_t revision_ = 0;
    std::uint64_t removals_ = 0;
    std::uint64_t additions_ = 0;
    double builtCost_ = 0;  // sum of node box areas over the root's, after the build
    mutable std::mutex guard_;
};

// The exact test of the leaves, on a stored polygon: t and whether the front is met.
bool rayHitsStoredPolygon(const SceneStore& store, std::uint32_t slot, Point3 o, Point3 d,
                          double tMin, double tMax, double& t, bool& front);

}  // namespace engine

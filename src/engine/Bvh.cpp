#include "engine/Bvh.h"

#include <immintrin.h>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_invoke.h>
#include <tbb/parallel_reduce.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>

#include "engine/Geometry.h"
#include "engine/SceneStore.h"

namespace engine {

namespace {

constexpr int kBins = 16;
constexpr std::uint32_t kLeafSize = 4;
constexpr std::uint32_t kParallelThreshold = 16 * 1024;
// Past this depth nodes are halved by count: 48 + 28 levels at most in all.
constexpr int kMaxSahDepth = 48;
// Nodes this small are halved by count: binning them costs more than it saves.
constexpr std::uint32_t kSmallNode = 12;
constexpr float kFloatMax = std::numeric_limits<float>::max();

float down(double v) {
    float f = static_cast<float>(v);
    return double(f) > v ? std::nextafter(f, -kFloatMax) : f;
}
float up(double v) {
    float f = static_cast<float>(v);
    return double(f) < v ? std::nextafter(f, kFloatMax) : f;
}

// Boxes in four float lanes (the fourth kept at zero), grown with SSE min/max.
const __m128 kXyzMask = _mm_castsi128_ps(_mm_set_epi32(0, -1, -1, -1));

struct Box4 {
    __m128 lo = _mm_set1_ps(kFloatMax);
    __m128 hi = _mm_set1_ps(-kFloatMax);
    void grow(__m128 l, __m128 h) {
        lo = _mm_min_ps(lo, l);
        hi = _mm_max_ps(hi, h);
    }
    void grow(const Box4& b) { grow(b.lo, b.hi); }
    double halfArea() const {
        alignas(16) float l[4], h[4];
        _mm_store_ps(l, lo);
        _mm_store_ps(h, hi);
        if (l[0] > h[0]) return 0;
        const double x = double(h[0]) - l[0], y = double(h[1]) - l[1], z = double(h[2]) - l[2];
        return x * y + y * z + z * x;
    }
    void store(float* lo3, float* hi3) const {
        alignas(16) float l[4], h[4];
        _mm_store_ps(l, lo);
        _mm_store_ps(h, hi);
        std::copy(l, l + 3, lo3);
        std::copy(h, h + 3, hi3);
    }
};

// A primitive while building: its box and its polygon slot. Its centroid is
// taken as lo + hi (twice the centre), which bins the same.
struct alignas(16) PrimRef {
    float lo[4];
    float hi[3];
    std::uint32_t slot;
    __m128 vlo() const { return _mm_load_ps(lo); }
    __m128 vhi() const { return _mm_and_ps(_mm_load_ps(hi), kXyzMask); }  // the slot is no float
    __m128 centre2() const { return _mm_add_ps(vlo(), vhi()); }
};

float lane(__m128 v, int k) {
    alignas(16) float f[4];
    _mm_store_ps(f, v);
    return f[k];
}

// Points of a stored polygon, copied out (a polygon may cross a storage block).
class PointBuffer {
public:
    const Point3* load(const SceneStore& store, std::uint32_t slot, std::size_t& n) {
        n = store.pointCount(slot);
        const std::uint32_t f = store.firstPoint(slot);
        Point3* dst = small_;
        if (n > kSmall) {
            big_.resize(n);
            dst = big_.data();
        }
        for (std::size_t i = 0; i < n; ++i) dst[i] = store.point(f + std::uint32_t(i));
        return dst;
    }

private:
    static constexpr std::size_t kSmall = 16;
    Point3 small_[kSmall];
    std::vector<Point3> big_;
};

}  // namespace

bool rayHitsStoredPolygon(const SceneStore& store, std::uint32_t slot, Point3 o, Point3 d,
                          double tMin, double tMax, double& t, bool& front) {
    PointBuffer buf;
    std::size_t n = 0;
    const Point3* p = buf.load(store, slot, n);
    return geom::rayHit(p, n, o, d, tMin, tMax, t, front);
}

struct Bvh::Builder {
    Node* nodes;
    std::atomic<std::uint32_t> used{1};
    PrimRef* refs;

    static void boxesOf(const PrimRef* r, std::uint32_t begin, std::uint32_t end, Box4& box,
                        Box4& cb) {
        for (std::uint32_t i = begin; i < end; ++i) {
            box.grow(r[i].vlo(), r[i].vhi());
            const __m128 c = r[i].centre2();
            cb.grow(c, c);
        }
    }

    // Builds the subtree of node ni over refs [begin, end), whose box the node
    // already has; cb bounds the centroids.
    void build(std::uint32_t ni, std::uint32_t begin, std::uint32_t end, const Box4& cb,
               int depth) {
        const std::uint32_t n = end - begin;
        Node& node = nodes[ni];
        if (n <= kLeafSize) {
            node.first = begin;
            node.count = n;
            return;
        }
        const __m128 ext = _mm_sub_ps(cb.hi, cb.lo);
        int widest = 0;
        for (int k = 1; k < 3; ++k)
            if (lane(ext, k) > lane(ext, widest)) widest = k;

        std::uint32_t mid = begin + n / 2;
        Box4 lb, rb;
        bool haveBoxes = false;
        if (n <= kSmallNode || depth > kMaxSahDepth || lane(ext, widest) <= 0) {
            // Small or lopsided so far: halve by count along the widest spread,
            // which also bounds the depth (and the traversal stack) on any data.
            std::nth_element(refs + begin, refs + mid, refs + end,
                             [&](const PrimRef& a, const PrimRef& b) {
                                 return a.lo[widest] + a.hi[widest] < b.lo[widest] + b.hi[widest];
                             });
        } else {
            // Binned surface area heuristic along the widest spread of centroids.
            const float scale = float(kBins) * 0.99999f / lane(ext, widest);
            const float lo = lane(cb.lo, widest);
            auto binOf = [&](const PrimRef& r) {
                const float c = r.lo[widest] + r.hi[widest];
                return std::clamp(int((c - lo) * scale), 0, kBins - 1);
            };
            struct Bin {
                Box4 box;
                std::uint32_t count = 0;
            };
            // Two sets taken in turn: neighbouring primitives mostly share a bin,
            // and one set would chain every update on the one before.
            Bin bins[2][kBins];
            for (std::uint32_t i = begin; i < end; ++i) {
                const PrimRef& r = refs[i];
                Bin& b = bins[i & 1][binOf(r)];
                b.box.grow(r.vlo(), r.vhi());
                ++b.count;
            }
            for (int b = 0; b < kBins; ++b) {
                bins[0][b].box.grow(bins[1][b].box);
                bins[0][b].count += bins[1][b].count;
            }
            double rightArea[kBins];
            std::uint32_t rightCount[kBins];
            Box4 acc;
            std::uint32_t cnt = 0;
            for (int b = kBins - 1; b > 0; --b) {
                acc.grow(bins[0][b].box);
                cnt += bins[0][b].count;
                rightArea[b] = acc.halfArea();
                rightCount[b] = cnt;
            }
            double bestCost = std::numeric_limits<double>::infinity();
            int bestSplit = -1;
            Box4 left;
            std::uint32_t lc = 0;
            for (int b = 1; b < kBins; ++b) {
                left.grow(bins[0][b - 1].box);
                lc += bins[0][b - 1].count;
                if (lc == 0 || rightCount[b] == 0) continue;
                const double cost = left.halfArea() * lc + rightArea[b] * rightCount[b];
                if (cost < bestCost) {
                    bestCost = cost;
                    bestSplit = b;
                }
            }
            if (bestSplit > 0) {
                PrimRef* m = std::partition(refs + begin, refs + end,
                                            [&](const PrimRef& r) { return binOf(r) < bestSplit; });
                mid = static_cast<std::uint32_t>(m - refs);
                for (int b = 0; b < kBins; ++b) (b < bestSplit ? lb : rb).grow(bins[0][b].box);
                haveBoxes = true;
            } else {
                std::nth_element(
                    refs + begin, refs + mid, refs + end, [&](const PrimRef& a, const PrimRef& b) {
                        return a.lo[widest] + a.hi[widest] < b.lo[widest] + b.hi[widest];
                    });
            }
        }
        Box4 lcb, rcb;
        if (haveBoxes) {
            for (std::uint32_t i = begin; i < mid; ++i)
                lcb.grow(refs[i].centre2(), refs[i].centre2());
            for (std::uint32_t i = mid; i < end; ++i)
                rcb.grow(refs[i].centre2(), refs[i].centre2());
        } else {
            boxesOf(refs, begin, mid, lb, lcb);
            boxesOf(refs, mid, end, rb, rcb);
        }
        const std::uint32_t left = used.fetch_add(2);
        Node& l = nodes[left];
        Node& r = nodes[left + 1];
        lb.store(l.lo, l.hi);
        rb.store(r.lo, r.hi);
        node.first = left;
        node.count = 0;
        if (n > kParallelThreshold) {
            tbb::parallel_invoke([&] { build(left, begin, mid, lcb, depth + 1); },
                                 [&] { build(left + 1, mid, end, rcb, depth + 1); });
        } else {
            build(left, begin, mid, lcb, depth + 1);
            build(left + 1, mid, end, rcb, depth + 1);
        }
    }
};

Bvh::Bvh() = default;
Bvh::~Bvh() = default;

void Bvh::clear() {
    nodes_.reset();
    nodeCount_ = 0;
    prims_.clear();
    prims_.shrink_to_fit();
    revision_ = 0;
}

void Bvh::build(const SceneStore& store) {
    // Isolated: a caller inside a parallel loop, holding guard(), must not pick up
    // another of its own loop's tasks while it waits here.
    tbb::this_task_arena::isolate([&] { buildIsolated(store); });
}

void Bvh::buildIsolated(const SceneStore& store) {
    clear();
    revision_ = store.geometryRevision();
    removals_ = store.removals();
    additions_ = store.additions();
    std::vector<std::uint32_t> slots;
    slots.reserve(store.worldCount());
    for (std::uint32_t s = store.firstInWorld(); s; s = store.nextInWorld(s)) slots.push_back(s);

    std::vector<PrimRef> refs(slots.size());
    std::vector<std::uint8_t> usable(slots.size());
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, slots.size(), 4096),
                      [&](const tbb::blocked_range<std::size_t>& r) {
                          for (std::size_t i = r.begin(); i != r.end(); ++i) {
                              const std::uint32_t s = slots[i];
                              const std::uint32_t f = store.firstPoint(s), n = store.pointCount(s);
                              double lo[3] = {HUGE_VAL, HUGE_VAL, HUGE_VAL};
                              double hi[3] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
                              bool ok = n >= 3;
                              for (std::uint32_t j = 0; j < n; ++j) {
                                  const Point3& p = store.point(f + j);
                                  ok &= p.finite();
                                  for (int k = 0; k < 3; ++k) {
                                      lo[k] = std::min(lo[k], p[k]);
                                      hi[k] = std::max(hi[k], p[k]);
                                  }
                              }
                              PrimRef& ref = refs[i];
                              ref.slot = s;
                              ref.lo[3] = 0;
                              for (int k = 0; k < 3; ++k) {
                                  ref.lo[k] = ok ? down(lo[k]) : 0;
                                  ref.hi[k] = ok ? up(hi[k]) : 0;
                                  ok &= std::isfinite(ref.lo[k]) && std::isfinite(ref.hi[k]);
                              }
                              usable[i] = ok;
                          }
                      });
    // Drop what has no finite box (beyond float range or a bad point).
    std::size_t kept = 0;
    for (std::size_t i = 0; i < refs.size(); ++i)
        if (usable[i]) refs[kept++] = refs[i];
    refs.resize(kept);
    slots.clear();
    slots.shrink_to_fit();
    if (refs.empty()) {
        revision_ = store.geometryRevision();
        return;
    }

    struct Bounds {
        Box4 box, cb;
    };
    const Bounds all = tbb::parallel_reduce(
        tbb::blocked_range<std::size_t>(0, refs.size(), 16384), Bounds{},
        [&](const tbb::blocked_range<std::size_t>& r, Bounds b) {
            Builder::boxesOf(refs.data(), std::uint32_t(r.begin()), std::uint32_t(r.end()), b.box,
                             b.cb);
            return b;
        },
        [](Bounds a, const Bounds& b) {
            a.box.grow(b.box);
            a.cb.grow(b.cb);
            return a;
        });

    const std::size_t maxNodes = 2 * refs.size() + 1;
    nodes_.reset(new Node[maxNodes]);
    Builder b;
    b.nodes = nodes_.get();
    b.refs = refs.data();
    all.box.store(nodes_[0].lo, nodes_[0].hi);
    b.build(0, 0, static_cast<std::uint32_t>(refs.size()), all.cb, 0);
    nodeCount_ = b.used.load();

    prims_.resize(refs.size());
    for (std::size_t i = 0; i < refs.size(); ++i) prims_[i] = refs[i].slot;
    builtCost_ = treeCost();
}

double Bvh::treeCost() const {
    if (nodeCount_ == 0) return 0;
    auto area = [](const Node& n) {
        if (n.lo[0] > n.hi[0]) return 0.0;  // a leaf whose polygons were all deleted
        const double x = double(n.hi[0]) - n.lo[0], y = double(n.hi[1]) - n.lo[1],
                     z = double(n.hi[2]) - n.lo[2];
        return x * y + y * z + z * x;
    };
    const double root = area(nodes_[0]);
    if (!(root > 0)) return 0;
    double sum = 0;
    for (std::size_t i = 0; i < nodeCount_; ++i) sum += area(nodes_[i]);
    return sum / root;
}

bool Bvh::refit(const SceneStore& store) {
    if (nodeCount_ == 0) return false;
    // Children always come after their parent, so one backward pass suffices.
    for (std::size_t i = nodeCount_; i-- > 0;) {
        Node& nd = nodes_[i];
        Box4 box;
        if (nd.count) {
            for (std::uint32_t k = 0; k < nd.count; ++k) {
                const std::uint32_t s = prims_[nd.first + k];
                if (!store.isAlive(s)) continue;  // deleted: skipped by the leaves anyway
                const std::uint32_t f = store.firstPoint(s), n = store.pointCount(s);
                for (std::uint32_t j = 0; j < n; ++j) {
                    const Point3& p = store.point(f + j);
                    const __m128 lo = _mm_setr_ps(down(p.x), down(p.y), down(p.z), 0);
                    const __m128 hi = _mm_setr_ps(up(p.x), up(p.y), up(p.z), 0);
                    box.grow(lo, hi);
                }
            }
        } else {
            box.grow(_mm_setr_ps(nodes_[nd.first].lo[0], nodes_[nd.first].lo[1],
                                 nodes_[nd.first].lo[2], 0),
                     _mm_setr_ps(nodes_[nd.first].hi[0], nodes_[nd.first].hi[1],
                                 nodes_[nd.first].hi[2], 0));
            const Node& r = nodes_[nd.first + 1];
            box.grow(_mm_setr_ps(r.lo[0], r.lo[1], r.lo[2], 0),
                     _mm_setr_ps(r.hi[0], r.hi[1], r.hi[2], 0));
        }
        box.store(nd.lo, nd.hi);
        for (int k = 0; k < 3; ++k)
            if (!std::isfinite(nd.lo[k]) || !std::isfinite(nd.hi[k])) return false;
    }
    const double cost = treeCost();
    if (cost > 2 * builtCost_ + 1) return false;
    revision_ = store.geometryRevision();
    return true;
}

template <class Visit>
void Bvh::traverse(Point3 o, Point3 d, double tMin, double& tMax, Visit&& visit) const {
    if (nodeCount_ == 0) return;
    double inv[3];
    for (int k = 0; k < 3; ++k) {
        double c = d[k];
        if (std::abs(c) < 1e-300) c = std::copysign(1e-300, c);
        inv[k] = 1.0 / c;
    }
    // Slab test; the far distance is widened a little so that rounding never
    // drops a box the ray only grazes.
    auto entry = [&](const Node& nd, double& tEnter) {
        double t0 = tMin, t1 = tMax;
        for (int k = 0; k < 3; ++k) {
            double a = (double(nd.lo[k]) - o[k]) * inv[k];
            double b = (double(nd.hi[k]) - o[k]) * inv[k];
            if (a > b) std::swap(a, b);
            t0 = std::max(t0, a);
            t1 = std::min(t1, b * (1 + 4 * std::numeric_limits<double>::epsilon()));
        }
        tEnter = t0;
        return t0 <= t1;
    };
    std::uint32_t stack[160];
    int top = 0;
    double tRoot;
    if (!entry(nodes_[0], tRoot)) return;
    stack[top++] = 0;
    while (top > 0) {
        const Node& nd = nodes_[stack[--top]];
        if (nd.count) {
            for (std::uint32_t i = 0; i < nd.count; ++i) visit(prims_[nd.first + i]);
            continue;
        }
        double ta, tb;
        const bool ha = entry(nodes_[nd.first], ta);
        const bool hb = entry(nodes_[nd.first + 1], tb);
        if (ha && hb) {
            // Nearer child on top of the stack.
            if (ta <= tb) {
                stack[top++] = nd.first + 1;
                stack[top++] = nd.first;
            } else {
                stack[top++] = nd.first;
                stack[top++] = nd.first + 1;
            }
        } else if (ha) {
            stack[top++] = nd.first;
        } else if (hb) {
            stack[top++] = nd.first + 1;
        }
    }
}

std::uint32_t Bvh::nearest(const SceneStore& store, Point3 o, Point3 d, double tMin, double tMax,
                           double& t) const {
    std::uint32_t best = 0;
    double tBest = tMax;
    PointBuffer buf;
    traverse(o, d, tMin, tBest, [&](std::uint32_t s) {
        if (!store.isAlive(s) || !store.inWorld(s) || store.disabled(s)) return;
        std::size_t n = 0;
        const Point3* p = buf.load(store, s, n);
        double th;
        bool front;
        if (geom::rayHit(p, n, o, d, tMin, tBest, th, front) && front &&
            (th < tBest || (th == tBest && best == 0))) {
            tBest = th;
            best = s;
        }
    });
    if (best) t = tBest;
    return best;
}

int Bvh::countHits(const SceneStore& store, Point3 o, Point3 d, double tMin, double tMax,
                   bool frontOnly) const {
    int count = 0;
    double tEnd = tMax;
    PointBuffer buf;
    traverse(o, d, tMin, tEnd, [&](std::uint32_t s) {
        if (!store.isAlive(s) || !store.inWorld(s) || store.disabled(s)) return;
        std::size_t n = 0;
        const Point3* p = buf.load(store, s, n);
        double th;
        bool front;
        if (geom::rayHit(p, n, o, d, tMin, tMax, th, front) && (front || !frontOnly)) ++count;
    });
    return count;
}

}  // namespace engine

#include "analysis/PpvRun.h"

#include <algorithm>
#include <cmath>
#include <nanoflann.hpp>
#include <vector>

#include "analysis/ColourScale.h"
#include "builders/MarkerSpheres.h"
#include "builders/Meshes.h"
#include "core/AppContext.h"

namespace analysis {

using engine::Handle;
using engine::Point3;

namespace {

// A little more than the reach, so that the rounding of the reach, of the squared
// radius and of the index's own distances never leaves out a polygon the walk hits.
constexpr double kReachMargin = 1.0 + 1e-6;
constexpr double kTieMargin = 1.0 + 1e-9;

}  // namespace

// The centres of the enabled polygons in walk order, and a k-d tree over them.
struct PpvRun::Index {
    std::vector<Handle> handles;
    std::vector<Point3> centres;
    Point3 low, high;  // bounds of the centres

    struct Cloud {
        const std::vector<Point3>* pts;
        std::size_t kdtree_get_point_count() const { return pts->size(); }
        double kdtree_get_pt(std::size_t i, std::size_t dim) const {
            const Point3& p = (*pts)[i];
            return dim == 0 ? p.x : (dim == 1 ? p.y : p.z);
        }
        template <class BBox>
        bool kdtree_get_bbox(BBox&) const {
            return false;
        }
    };
    using Tree = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, Cloud>,
                                                     Cloud, 3, std::size_t>;
    Cloud cloud{&centres};
    std::unique_ptr<Tree> tree;

    void build(const engine::Engine& eng) {
        for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
            if (eng.polygon_is_disabled(h)) continue;
            const Point3 c = eng.polygon_get_center(h);
            // A centre that is no point never has a defined distance.
            if (!c.finite()) continue;
            handles.push_back(h);
            centres.push_back(c);
        }
        if (!centres.empty()) {
            low = high = centres.front();
            for (const Point3& c : centres) {
                low = {std::min(low.x, c.x), std::min(low.y, c.y), std::min(low.z, c.z)};
                high = {std::max(high.x, c.x), std::max(high.y, c.y), std::max(high.z, c.z)};
            }
        }
        tree = std::make_unique<Tree>(3, cloud, nanoflann::KDTreeSingleIndexAdaptorParams(16));
        if (!centres.empty()) tree->buildIndex();
    }

    // True when no squared distance from the point to a centre can pass a double.
    bool safeFrom(const Point3& p) const {
        auto far = [](double v, double lo, double hi) {
            return std::max(std::fabs(v - lo), std::fabs(v - hi));
        };
        const double fx = far(p.x, low.x, high.x), fy = far(p.y, low.y, high.y),
                     fz = far(p.z, low.z, high.z);
        return std::isfinite(fx * fx + fy * fy + fz * fz);
    }

    // Indices of the centres with squared distance below r2, in walk order.
    void within(const Point3& p, double r2, std::vector<std::size_t>& out) const {
        out.clear();
        if (centres.empty()) return;
        std::vector<std::pair<std::size_t, double>> found;
        const double q[3] = {p.x, p.y, p.z};
        nanoflann::SearchParams params;
        params.sorted = false;
        tree->radiusSearch(q, r2, found, params);
        out.reserve(found.size());
        for (const auto& f : found) out.push_back(f.first);
        std::sort(out.begin(), out.end());
    }
};

PpvRun::PpvRun(core::AppContext& ctx, const PpvSettings& settings, Handle hDamagingGroup,
               PpvPath path)
    : ctx_(ctx), s_(settings), group_(hDamagingGroup), path_(path) {}

PpvRun::~PpvRun() = default;

void PpvRun::resetRecords() {
    engine::Engine& eng = ctx_.engine;
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (eng.polygon_is_disabled(h)) continue;
        eng.polygon_set_name(h, kPpvStartRecord);
        eng.polygon_set_color_fill(h, kPpvNoHitColour);
    }
    index_.reset();
    if (path_ == PpvPath::Indexed) {
        index_ = std::make_unique<Index>();
        index_->build(eng);
    }
}

PpvRun::Outcome PpvRun::line(std::string_view rawLine) {
    const auto e = readPpvEventLine(rawLine, s_.conv, normalised_);
    if (!e) return Outcome::Fault;
    return event(*e, normalised_);
}

PpvRun::Outcome PpvRun::event(const PpvEvent& e, std::string_view name) {
    double nearest = kPpvNoDistance;
    const bool indexed = index_ && index_->safeFrom(e.position);
    if (!(indexed ? nearestIndexed(e, nearest) : nearestPlain(e, nearest))) return Outcome::Fault;
    const double ppv = ppvAt(s_.sngK1, s_.sngK2, e.ml, nearest);
    // The logarithm of 0, or an exponential past a double, is the reader's fault.
    if (nearest == 0 || !std::isfinite(ppv)) return Outcome::Fault;
    if (ppv < s_.dblThreshold) return Outcome::Below;
    ++passed_;
    if (s_.bolLoadEvents) {
        const double radius = eventMarkerRadius(ctx_.settings.dblSphereScale,
                                                ctx_.settings.dblSphereRadius, e.ml);
        if (!std::isfinite(radius)) return Outcome::Fault;
        // A marker of radius 0 ends the line before any polygon is touched.
        if (radius == 0) return Outcome::Passed;
        placeMarker(e, radius, name);
    }
    const bool ok = indexed ? updateIndexed(e) : updatePlain(e);
    return ok ? Outcome::Passed : Outcome::Fault;
}

bool PpvRun::nearestPlain(const PpvEvent& e, double& dblNearest) const {
    const engine::Engine& eng = ctx_.engine;
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (eng.polygon_is_disabled(h)) continue;
        const Point3 c = eng.polygon_get_center(h);
        if (!c.finite()) continue;
        const double d = ppvDistance(c, e.position);
        if (!std::isfinite(d)) return false;  // the squares overflowed
        if (d < dblNearest) dblNearest = d;
    }
    return true;
}

bool PpvRun::updatePlain(const PpvEvent& e) {
    const engine::Engine& eng = ctx_.engine;
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (eng.polygon_is_disabled(h)) continue;
        const Point3 c = eng.polygon_get_center(h);
        if (!c.finite()) continue;
        const double ppv = ppvAt(s_.sngK1, s_.sngK2, e.ml, ppvDistance(c, e.position));
        if (ppv < s_.dblThreshold) continue;
        if (!hit(h, ppv)) return false;
    }
    return true;
}

bool PpvRun::nearestIndexed(const PpvEvent& e, double& dblNearest) const {
    const Index& ix = *index_;
    if (ix.centres.empty()) return true;
    const double q[3] = {e.position.x, e.position.y, e.position.z};
    std::size_t best = 0;
    double bestSq = 0;
    nanoflann::KNNResultSet<double, std::size_t> one(1);
    one.init(&best, &bestSq);
    ix.tree->findNeighbors(one, q, nanoflann::SearchParams());
    // Near ties: the smallest distance as the walk computes it.
    std::vector<std::size_t> ties;
    ix.within(e.position, bestSq * kTieMargin + 1e-300, ties);
    if (ties.empty()) ties.push_back(best);
    for (std::size_t i : ties) {
        const double d = ppvDistance(ix.centres[i], e.position);
        if (d < dblNearest) dblNearest = d;
    }
    return true;
}

bool PpvRun::updateIndexed(const PpvEvent& e) {
    const auto reach = ppvReach(s_.sngK1, s_.sngK2, e.ml, s_.dblThreshold);
    const double r = reach ? *reach * 10.0 * kReachMargin : 0;
    const double r2 = r * r;
    // A reach the index cannot hold (threshold 0 or less, no number): every polygon.
    if (!reach || !std::isfinite(r2)) return updatePlain(e);
    const Index& ix = *index_;
    thread_local std::vector<std::size_t> near;
    ix.within(e.position, r2, near);
    for (std::size_t i : near) {
        const double ppv = ppvAt(s_.sngK1, s_.sngK2, e.ml, ppvDistance(ix.centres[i], e.position));
        if (ppv < s_.dblThreshold) continue;
        if (!hit(ix.handles[i], ppv)) return false;
    }
    return true;
}

bool PpvRun::hit(Handle h, double dblPPV) {
    engine::Engine& eng = ctx_.engine;
    double cumulative = 0;
    if (!ppvRecordAfterHit(eng.entity_get_name(h), dblPPV, name_, cumulative)) return false;
    eng.polygon_set_name(h, name_);
    P_subColourPolygon(ctx_, h, s_.dblMax, s_.dblMin, cumulative, s_.dblRange, s_.dblInc,
                       kScaleGreyAndBright);
    ++hits_;
    return true;
}

double eventMarkerRadius(double dblSphereScale, double dblSphereRadius, double dblML) {
    if (dblSphereScale == 0) return dblSphereRadius * 10;
    return dblSphereScale * std::exp((dblSphereScale / 8) * dblML) * 10;
}

engine::Rgb magnitudeColour(double dblML) {
    if (dblML < 0) return {7, 121, 248};
    if (dblML < 0.5) return {7, 248, 7};
    if (dblML < 1) return {248, 121, 7};
    return {248, 7, 7};
}

void PpvRun::placeMarker(const PpvEvent& e, double radius, std::string_view name) {
    const core::Settings& set = ctx_.settings;
    engine::Engine& eng = ctx_.engine;
    const engine::Rgb colour = magnitudeColour(e.ml);
    Handle marker = 0;
    if (builders::cubeMarker(set)) {
        const float side = builders::toSingle(set.dblSphereScale == 0 ? radius : 1.3 * radius);
        marker = builders::P_fncCreateCube(eng, {side, side, side}, colour);
    } else {
        marker = builders::P_fncCreateSphere(eng, radius,
                                             builders::sphereBands(set.dblSphereLatitudeBands),
                                             builders::sphereBands(set.dblSphereLongitudeBands),
                                             colour);
    }
    if (marker == 0) return;
    for (Handle p = eng.group_get_first_polygon(marker); p != 0;
         p = eng.group_get_next_polygon(marker, p)) {
        eng.polygon_set_name(p, name);
        eng.polygon_disable(p);
    }
    eng.group_set_location(marker, e.position);
    eng.group_set_father_group(marker, group_);
}

}  // namespace analysis

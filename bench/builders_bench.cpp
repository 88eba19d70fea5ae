// Marker benchmarks, each reported as a ratio against a reference measured in the
// same run (see bench/checks.tsv for the limits):
//  * placing 100 000 "Quick Marker" spheres with P_fncResolutionSphere against
//    adding the same triangles straight to the engine: per marker a "Sphere" group
//    and its eight triangles (create, three points, add, fill, group), the points
//    being those of one built sphere carried to the marker's place; best of 3,
//    interleaved;
//  * the peak memory of both, each measured in a child process started afresh
//    (exec): VmHWM after placing minus VmRSS before, with the peak reset through
//    /proc/self/clear_refs (else the larger of VmRSS and VmHWM before is the base).

#include <benchmark/benchmark.h>

#include "BenchSupport.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "builders/MarkerSpheres.h"
#include "builders/Meshes.h"
#include "core/AppContext.h"
#include "engine/Engine.h"
#include "ui/ScriptedUi.h"

using engine::Engine;
using engine::Handle;
using engine::Point3;

namespace {

using bench::Clock;
using bench::seconds;
using bench::memoryBase;

constexpr std::size_t kMarkers = 100'000;
constexpr double kRadius = 10.0;
constexpr engine::Rgb kColour{255, 128, 0};

// Markers on a square grid, 5 m apart, at a few depths.
Point3 markerAt(std::size_t i) {
    return {double(i % 300) * 50.0, double((i / 300) % 300) * 50.0, -double(i % 7) * 20.0};
}

// The triangles of one quick marker at the origin, taken from the builder itself,
// and how far set_location carries them to a point.
struct Template {
    std::vector<std::array<Point3, 3>> triangles;
    Point3 boxCentre;
};

Template quickMarkerTemplate() {
    Engine e;
    e.engine_load_world("", "", "", 4);
    const Handle g = builders::P_fncCreateSphere(e, kRadius, 2, 4, kColour);
    Template t;
    for (Handle p = e.group_get_first_polygon(g); p; p = e.group_get_next_polygon(g, p)) {
        std::array<Point3, 3> tri;
        int k = 0;
        for (Handle pt = e.polygon_get_first_point(p); pt && k < 3; pt = e.point_get_next_point(pt))
            e.point_get_xyz(pt, tri[std::size_t(k++)]);
        t.triangles.push_back(tri);
    }
    Point3 lo, hi;
    e.group_bounding_box(g, lo, hi);
    t.boxCentre = (lo + hi) * 0.5;
    return t;
}

void addDirect(Engine& e, const Template& t, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        const Point3 d = markerAt(i) - t.boxCentre;
        const Handle g = e.group_create("Sphere");
        for (const auto& tri : t.triangles) {
            const Handle p = e.polygon_create();
            for (const Point3& q : tri) e.polygon_add_point(p, q + d);
            e.engine_add_polygon(p);
            e.polygon_set_color_fill(p, kColour);
            e.polygon_set_group(p, g);
        }
    }
}

void addMarkers(core::AppContext& ctx, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        Handle h = 0;
        builders::P_fncResolutionSphere(ctx, markerAt(i), kRadius, kColour, h);
    }
}

struct Session {
    Session() : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        builders::applySphereResolution(ctx.settings, "Quick Marker");
    }
    ui::ScriptedUi ui;
    core::AppContext ctx;
};

// Child mode: place the markers one way and print the peak growth in bytes.
int memoryChild(const std::string& how) {
    if (how == "builder") {
        auto s = std::make_unique<Session>();
        const long base = memoryBase();
        addMarkers(s->ctx, kMarkers);
        std::printf("%ld\n", bench::peakGrowthBytes(base));
    } else {
        const Template t = quickMarkerTemplate();
        Engine e;
        e.engine_load_world("", "", "", 4);
        const long base = memoryBase();
        addDirect(e, t, kMarkers);
        std::printf("%ld\n", bench::peakGrowthBytes(base));
    }
    return 0;
}

void BM_QuickMarkers(benchmark::State& state) {
    for (auto _ : state) {
        const Template t = quickMarkerTemplate();
        double direct = 1e30, built = 1e30;
        std::size_t polygons = 0;
        for (int r = 0; r < 3; ++r) {
            {
                auto e = std::make_unique<Engine>();
                e->engine_load_world("", "", "", 4);
                const auto t0 = Clock::now();
                addDirect(*e, t, kMarkers);
                direct = std::min(direct, seconds(t0, Clock::now()));
            }
            {
                auto s = std::make_unique<Session>();
                const auto t0 = Clock::now();
                addMarkers(s->ctx, kMarkers);
                built = std::min(built, seconds(t0, Clock::now()));
                polygons = s->ctx.engine.polygon_count();
            }
        }
        std::string error;
        const double builtBytes = bench::childBytes("builders_bench", "builder", error);
        const double directBytes = bench::childBytes("builders_bench", "direct", error);
        if (!error.empty()) {
            state.SkipWithError(error.c_str());
            return;
        }
        state.counters["markers"] = double(kMarkers);
        state.counters["polygons"] = double(polygons);
        state.counters["direct_s"] = direct;
        state.counters["builder_s"] = built;
        state.counters["time_ratio"] = built / direct;
        state.counters["direct_bytes"] = directBytes;
        state.counters["builder_bytes"] = builtBytes;
        state.counters["memory_ratio"] = builtBytes / directBytes;
    }
}
BENCHMARK(BM_QuickMarkers)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--memory-child") == 0) return memoryChild(argv[2]);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

// Engine benchmarks, each reported as a ratio against a reference measured in
// the same run (see bench/checks.tsv for the limits):
//  * memory: peak resident memory per triangle for 10M triangles sharing one
//    name and one group, measured in a child process started afresh (exec):
//    VmHWM after adding minus VmRSS of the empty engine before, with the peak
//    reset through /proc/self/clear_refs (else the larger of VmRSS and VmHWM
//    before is the base);
//  * adding those triangles (create, three points, add, name, group) against
//    writing their coordinates into a reserved std::vector, best of 2 and 3;
//  * walking them with polygon_get_first_polygon / polygon_get_next against a
//    loop over a vector of their handles, both loops doing nothing but having
//    each handle in a register, interleaved, best of 25;
//  * on 5M triangles: building the picking index against adding, and a pick
//    by brute force (every polygon tested, 5 pixels) against a pick through the
//    index (4000 pixels); the two must agree.

#include <benchmark/benchmark.h>

#include "BenchSupport.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "engine/Bvh.h"
#include "engine/Engine.h"
#include "engine/SceneStore.h"

using engine::Engine;
using engine::Handle;
using engine::Point3;

namespace {

using bench::Clock;
using bench::seconds;

constexpr std::size_t kBigCount = 10'000'000;
constexpr std::size_t kPickCount = 5'000'000;
constexpr double kCell = 10.0;
const char* const kName = "Survey surface triangles";

// A height field of square cells, two triangles each, clockwise seen from above.
struct Grid {
    std::size_t width;  // cells per row
    explicit Grid(std::size_t triangles)
        : width(std::size_t(std::ceil(std::sqrt(double(triangles) / 2)))) {}
    Point3 vertex(std::size_t ix, std::size_t iy) const {
        return {double(ix) * kCell, double(iy) * kCell, double((ix * 7 + iy * 13) % 17) * 0.5};
    }
    void triangle(std::size_t i, Point3& a, Point3& b, Point3& c) const {
        const std::size_t cell = i / 2, ix = cell % width, iy = cell / width;
        a = vertex(ix, iy);
        if (i % 2 == 0) {
            b = vertex(ix, iy + 1);
            c = vertex(ix + 1, iy + 1);
        } else {
            b = vertex(ix + 1, iy + 1);
            c = vertex(ix + 1, iy);
        }
    }
};

// Both walks must have each handle in a register, and nothing more.
inline void use(Handle h) { asm volatile("" : : "r"(h)); }

void addTriangles(Engine& e, std::size_t n) {
    const Grid grid(n);
    const Handle group = e.group_create("Surface");
    for (std::size_t i = 0; i < n; ++i) {
        Point3 a, b, c;
        grid.triangle(i, a, b, c);
        const Handle p = e.polygon_create();
        e.polygon_add_point(p, a);
        e.polygon_add_point(p, b);
        e.polygon_add_point(p, c);
        e.engine_add_polygon(p);
        e.polygon_set_name(p, kName);
        e.polygon_set_group(p, group);
    }
}

double vectorWrite(std::size_t n) {
    const Grid grid(n);
    const auto t0 = Clock::now();
    std::vector<Point3> v;
    v.reserve(3 * n);
    for (std::size_t i = 0; i < n; ++i) {
        Point3 a, b, c;
        grid.triangle(i, a, b, c);
        v.push_back(a);
        v.push_back(b);
        v.push_back(c);
    }
    benchmark::DoNotOptimize(v.data());
    benchmark::ClobberMemory();
    return seconds(t0, Clock::now());
}

// Child mode: add n triangles to an empty engine and print the peak growth in bytes.
int memoryChild(std::size_t n) {
    Engine e;
    e.engine_load_world("", "", "", 4);
    const long base = bench::memoryBase();
    addTriangles(e, n);
    std::printf("%ld\n", bench::peakGrowthBytes(base));
    return 0;
}

void BM_EngineMemory(benchmark::State& state) {
    for (auto _ : state) {
        std::string error;
        const double bytes =
            bench::childBytes("engine_bench", std::to_string(kBigCount).c_str(), error);
        if (!error.empty()) {
            state.SkipWithError(error.c_str());
            return;
        }
        state.counters["bytes_per_triangle"] = bytes / double(kBigCount);
    }
}
BENCHMARK(BM_EngineMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_EngineAddAndWalk(benchmark::State& state) {
    for (auto _ : state) {
        double vec = 1e30, add = 1e30;
        for (int r = 0; r < 3; ++r) vec = std::min(vec, vectorWrite(kBigCount));
        auto e = std::make_unique<Engine>();
        for (int r = 0; r < 2; ++r) {
            e = std::make_unique<Engine>();
            e->engine_load_world("", "", "", 4);
            const auto t0 = Clock::now();
            addTriangles(*e, kBigCount);
            add = std::min(add, seconds(t0, Clock::now()));
        }
        std::vector<Handle> handles;
        handles.reserve(kBigCount);
        for (Handle h = e->polygon_get_first_polygon(); h; h = e->polygon_get_next(h))
            handles.push_back(h);
        // Interleaved and the best of many: each run is short, and other work
        // on the machine should not decide the ratio.
        double walk = 1e30, loop = 1e30;
        for (int r = 0; r < 25; ++r) {
            auto t0 = Clock::now();
            for (Handle h = e->polygon_get_first_polygon(); h; h = e->polygon_get_next(h)) use(h);
            walk = std::min(walk, seconds(t0, Clock::now()));
            t0 = Clock::now();
            for (Handle h : handles) use(h);
            loop = std::min(loop, seconds(t0, Clock::now()));
        }
        state.counters["walked"] = double(handles.size());
        state.counters["vector_write_s"] = vec;
        state.counters["add_s"] = add;
        state.counters["add_ratio"] = add / vec;
        state.counters["walk_s"] = walk;
        state.counters["handle_loop_s"] = loop;
        state.counters["walk_ratio"] = walk / loop;
    }
}
BENCHMARK(BM_EngineAddAndWalk)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_EnginePick(benchmark::State& state) {
    for (auto _ : state) {
        Engine e;
        e.engine_load_world("", "", "", 4);
        auto t0 = Clock::now();
        addTriangles(e, kPickCount);
        const double add = seconds(t0, Clock::now());
        t0 = Clock::now();
        e.prepare_picking();
        const double build = seconds(t0, Clock::now());

        // Looking straight down on the whole surface.
        const Grid grid(kPickCount);
        const double side = double(grid.width) * kCell;
        const Handle cam = e.camera_get_default_camera();
        e.camera_set_location(cam, {side / 2, side / 2, side * 1.05});
        e.camera_set_axis_system(cam, {0, 0, -1}, {0, 1, 0});
        e.set_window_size(1000, 1000);

        std::mt19937 rng(7);
        std::uniform_real_distribution<double> px(0, 1000);
        constexpr int kPicks = 4000;
        std::vector<std::pair<double, double>> pixels(kPicks);
        for (auto& p : pixels) p = {px(rng), px(rng)};
        std::vector<Handle> found(kPicks);
        t0 = Clock::now();
        for (int i = 0; i < kPicks; ++i)
            found[i] = e.engine_2D_point_to_3D(pixels[i].first, pixels[i].second).polygon;
        const double bvhPick = seconds(t0, Clock::now()) / kPicks;

        // Brute force: the same exact test on every polygon of the world.
        const engine::SceneStore& st = e.store();
        constexpr int kBrute = 5;
        int mismatches = 0, hits = 0;
        t0 = Clock::now();
        for (int i = 0; i < kBrute; ++i) {
            Point3 o, d;
            e.pixel_ray(pixels[i].first, pixels[i].second, o, d);
            std::uint32_t best = 0;
            double tBest = HUGE_VAL;
            for (std::uint32_t s = st.firstInWorld(); s; s = st.nextInWorld(s)) {
                if (st.disabled(s)) continue;
                double t;
                bool front;
                if (engine::rayHitsStoredPolygon(st, s, o, d, 1.0, tBest, t, front) && front &&
                    t < tBest) {
                    tBest = t;
                    best = s;
                }
            }
            hits += best != 0;
            mismatches += engine::SceneStore::polygonHandle(best) != found[i];
        }
        const double brutePick = seconds(t0, Clock::now()) / kBrute;
        state.counters["add_s"] = add;
        state.counters["build_s"] = build;
        state.counters["build_ratio"] = build / add;
        state.counters["bvh_pick_us"] = bvhPick * 1e6;
        state.counters["brute_pick_ms"] = brutePick * 1e3;
        state.counters["pick_speedup"] = brutePick / bvhPick;
        state.counters["brute_hits"] = hits;
        state.counters["pick_mismatches"] = mismatches;
    }
}
BENCHMARK(BM_EnginePick)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--memory-child") == 0)
        return memoryChild(std::size_t(std::atoll(argv[2])));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

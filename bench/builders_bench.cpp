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
#include <sys/wait.h>
#include <unistd.h>

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

using Clock = std::chrono::steady_clock;
double seconds(Clock::time_point a, Clock::time_point b) {
    return std::chrono::duration<double>(b - a).count();
}

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

long statusKb(const char* key) {
    std::ifstream f("/proc/self/status");
    std::string line;
    const std::size_t len = std::strlen(key);
    while (std::getline(f, line))
        if (line.compare(0, len, key) == 0) return std::atol(line.c_str() + len + 1);
    return -1;
}

long memoryBase() {
    bool reset = false;
    {
        std::ofstream clear("/proc/self/clear_refs");
        if (clear) reset = static_cast<bool>(clear << "5");
    }
    return reset ? statusKb("VmRSS:") : std::max(statusKb("VmRSS:"), statusKb("VmHWM:"));
}

// Child mode: place the markers one way and print the peak growth in bytes.
int memoryChild(const std::string& how) {
    if (how == "builder") {
        auto s = std::make_unique<Session>();
        const long base = memoryBase();
        addMarkers(s->ctx, kMarkers);
        std::printf("%ld\n", (statusKb("VmHWM:") - base) * 1024);
    } else {
        const Template t = quickMarkerTemplate();
        Engine e;
        e.engine_load_world("", "", "", 4);
        const long base = memoryBase();
        addDirect(e, t, kMarkers);
        std::printf("%ld\n", (statusKb("VmHWM:") - base) * 1024);
    }
    return 0;
}

double childBytes(const char* how, std::string& error) {
    int fds[2];
    if (pipe(fds) != 0) {
        error = "pipe failed";
        return 0;
    }
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(fds[1], 1);
        close(fds[0]);
        execl("/proc/self/exe", "builders_bench", "--memory-child", how, nullptr);
        _exit(127);
    }
    close(fds[1]);
    std::string out;
    char buf[256];
    ssize_t got;
    while ((got = read(fds[0], buf, sizeof buf)) > 0) out.append(buf, std::size_t(got));
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || out.empty()) {
        error = std::string("memory child failed: ") + how;
        return 0;
    }
    return std::atof(out.c_str());
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
        const double builtBytes = childBytes("builder", error);
        const double directBytes = childBytes("direct", error);
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

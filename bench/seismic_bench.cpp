// Seismic list benchmark, reported as a ratio against a reference measured in
// the same run (limit in bench/checks.tsv): an MS list of 100 000 events (written
// by the benchmark into the temp folder) imported as "Quick Marker" spheres, from
// the file to the lit scene, against placing the same markers (same places,
// magnitudes, colours and names, already in memory) without reading a file.
// Best of 3, interleaved. The program runs behind a Ui port that shows nothing.

#include <benchmark/benchmark.h>

#include "BenchSupport.h"
#include "QuietUi.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/Registration.h"
#include "builders/MarkerSpheres.h"
#include "core/AppContext.h"
#include "engine/Engine.h"
#include "import/ImportRegistration.h"
#include "import/SeismicReaders.h"

namespace {

using bench::Clock;
using bench::seconds;
using bench::QuietUi;


constexpr std::size_t kEvents = 100'000;

// Event k of a mine-sized cloud, file metres, magnitudes from -1.5 to 2.4.
std::string eventLine(std::size_t k) {
    char buf[96];
    std::snprintf(buf, sizeof buf, "%.1f %.1f %.1f %.2f", 87000.0 + double(k % 317) * 3.5,
                  56000.0 + double((k / 317) % 293) * 4.0, -1200.0 + double(k % 41) * 7.25,
                  -1.5 + double(k % 40) * 0.1);
    return buf;
}

std::string benchFile() {
    return (std::filesystem::temp_directory_path() / "tarvik-seismic-bench.ms").string();
}

void writeList(const std::string& path) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return;
    for (std::size_t k = 0; k < kEvents; ++k) std::fprintf(f, "%s\r\n", eventLine(k).c_str());
    std::fclose(f);
}

struct Session {
    Session() : ctx(ui) {
        app::registerAll(ctx);
        importers::registerImport(ctx);
        app::startMainForm(ctx);
        builders::applySphereResolution(ctx.settings, "Quick Marker");
    }
    QuietUi ui;
    core::AppContext ctx;
};

// The same events as the reader makes them, from memory.
struct Event {
    engine::Point3 position;
    double ml;
    std::string name;
};

std::vector<Event> memoryEvents() {
    std::vector<Event> out;
    out.reserve(kEvents);
    for (std::size_t k = 0; k < kEvents; ++k) {
        std::string line = eventLine(k);
        double v[4] = {};
        std::sscanf(line.c_str(), "%lf %lf %lf %lf", &v[0], &v[1], &v[2], &v[3]);
        out.push_back({{v[0] * 10, v[1] * 10, v[2] * 10}, v[3], std::move(line)});
    }
    return out;
}

void BM_SeismicQuickMarkers(benchmark::State& state) {
    const std::string path = benchFile();
    writeList(path);
    const std::vector<Event> events = memoryEvents();
    for (auto _ : state) {
        double direct = 1e30, imported = 1e30;
        std::size_t placed = 0, markers = 0;
        for (int r = 0; r < 3; ++r) {
            {
                auto s = std::make_unique<Session>();
                const auto t0 = Clock::now();
                const engine::Handle group =
                    importers::seismicGroup(s->ctx, importers::kSeismicGroup);
                for (const Event& e : events)
                    importers::placeSeismicEvent(s->ctx, e.position, e.ml,
                                                 importers::seismicMagnitudeColour(e.ml), e.name,
                                                 group);
                direct = std::min(direct, seconds(t0, Clock::now()));
                placed = s->ctx.engine.polygon_count();
            }
            {
                auto s = std::make_unique<Session>();
                s->ctx.state.strFullPath = path;
                const auto t0 = Clock::now();
                importers::importSeismicList(s->ctx, "Add", {}, importers::SeismicFormat::MS);
                imported = std::min(imported, seconds(t0, Clock::now()));
                markers = s->ctx.engine.polygon_count();
            }
        }
        state.counters["events"] = double(kEvents);
        state.counters["polygons"] = double(markers);
        state.counters["direct_polygons"] = double(placed);
        state.counters["direct_s"] = direct;
        state.counters["import_s"] = imported;
        state.counters["time_ratio"] = imported / direct;
    }
    std::remove(path.c_str());
}
BENCHMARK(BM_SeismicQuickMarkers)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

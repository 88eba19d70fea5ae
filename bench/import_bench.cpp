// Import benchmarks, each a ratio against a reference measured in the same run
// (limits in bench/checks.tsv):
//  * an ASC wireframe file of one million facets (four million lines, written by
//    the benchmark into the temp folder) imported through "Open PNT-file as
//    WIREFRAMES" (two-sided: four million triangles), against reading the same
//    file into memory in one go and counting its lines; best of 2 and of 3;
//  * the peak memory of that import against the peak memory of adding the same
//    four million triangles straight to the engine (create, three points, add,
//    fill, group), each measured in a child process started afresh (exec):
//    VmHWM after minus VmRSS before, with the peak reset through
//    /proc/self/clear_refs (else the larger of VmRSS and VmHWM before is the base);
//  * for the record, adding those triangles straight to the engine against the
//    same reference (direct_add_ratio): the share of the time that is the engine's.
// The program runs behind a Ui port that shows nothing (as a window that is not
// looked at): the cost measured is the reader's and the engine's.

#include <benchmark/benchmark.h>

#include "BenchSupport.h"
#include "QuietUi.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "app/Registration.h"
#include "core/AppContext.h"
#include "engine/Engine.h"
#include "import/ImportRegistration.h"
#include "import/Map3DColour.h"

using engine::Engine;
using engine::Handle;
using engine::Point3;

namespace {

using bench::Clock;
using bench::seconds;
using bench::QuietUi;
using bench::memoryBase;

constexpr std::size_t kFacets = 1'000'000;
constexpr std::size_t kGridWidth = 1000;
const char* const kCommand = "mnuOpenMap3DWireASC";

// Facet k: a square cell of a gently folded surface, corners in file metres.
Point3 corner(std::size_t k, int c) {
    const std::size_t ix = k % kGridWidth + (c == 1 || c == 2), iy = k / kGridWidth + (c >= 2);
    return {1000.0 + double(ix) * 2.5, 5000.0 + double(iy) * 2.5,
            -300.0 + double((ix * 7 + iy * 13) % 17) * 0.25};
}
int facetCode(std::size_t k) { return int(k % 10) + 1; }

std::string benchFile() {
    return (std::filesystem::temp_directory_path() / "tarvik-import-bench.asc").string();
}

void writeFile(const std::string& path) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return;
    std::vector<char> buf(1 << 20);
    std::setvbuf(f, buf.data(), _IOFBF, buf.size());
    for (std::size_t k = 0; k < kFacets; ++k)
        for (int c = 0; c < 4; ++c) {
            const Point3 p = corner(k, c);
            std::fprintf(f, "%.3f %.3f %.3f 0 %d\r\n", p.x, p.y, p.z, facetCode(k));
        }
    std::fclose(f);
}

// The reference: the whole file into memory, then its lines counted.
double readAndCount(const std::string& path, std::size_t& lines) {
    const auto t0 = Clock::now();
    std::FILE* f = std::fopen(path.c_str(), "rb");
    std::fseek(f, 0, SEEK_END);
    const long size = std::ftell(f);
    std::fseek(f, 0, SEEK_SET);
    std::unique_ptr<char[]> data(new char[std::size_t(size)]);
    const std::size_t got = std::fread(data.get(), 1, std::size_t(size), f);
    std::fclose(f);
    lines = std::size_t(std::count(data.get(), data.get() + got, '\n'));
    benchmark::DoNotOptimize(data.get());
    return seconds(t0, Clock::now());
}

struct Session {
    explicit Session(const std::string& file) : ctx(ui) {
        ui.file = file;
        app::registerAll(ctx);
        importers::registerImport(ctx);
        app::startMainForm(ctx);
    }
    void import() { ctx.commands.find(kCommand)->handler(ctx); }
    QuietUi ui;
    core::AppContext ctx;
};

// The triangles the import makes, added straight to the engine.
void addDirect(Engine& e) {
    const Handle group = e.group_create("ASCModel");
    auto tri = [&](const Point3& a, const Point3& b, const Point3& c, const engine::Rgb& colour) {
        const Handle h = e.polygon_create();
        e.polygon_add_point(h, a);
        e.polygon_add_point(h, b);
        e.polygon_add_point(h, c);
        e.engine_add_polygon(h);
        e.polygon_set_color_fill(h, colour);
        e.polygon_set_group(h, group);
    };
    for (std::size_t k = 0; k < kFacets; ++k) {
        Point3 p[4];
        for (int c = 0; c < 4; ++c) p[c] = corner(k, c) * 10.0;
        const engine::Rgb colour = importers::map3DColour(facetCode(k));
        tri(p[0], p[2], p[1], colour);
        tri(p[0], p[1], p[2], colour);
        tri(p[0], p[3], p[2], colour);
        tri(p[0], p[2], p[3], colour);
    }
}

int memoryChild(const std::string& how) {
    if (how == "import") {
        auto s = std::make_unique<Session>(benchFile());
        const long base = memoryBase();
        s->import();
        std::printf("%ld\n", bench::peakGrowthBytes(base));
    } else {
        Engine e;
        e.engine_load_world("", "", "", 4);
        const long base = memoryBase();
        addDirect(e);
        std::printf("%ld\n", bench::peakGrowthBytes(base));
    }
    return 0;
}

void BM_AscImport(benchmark::State& state) {
    const std::string path = benchFile();
    writeFile(path);
    for (auto _ : state) {
        double reference = 1e30, imported = 1e30;
        std::size_t lines = 0, polygons = 0;
        bool logged = false;
        for (int r = 0; r < 3; ++r) reference = std::min(reference, readAndCount(path, lines));
        double direct = 1e30;
        for (int r = 0; r < 2; ++r) {
            auto e = std::make_unique<Engine>();
            e->engine_load_world("", "", "", 4);
            const auto t0 = Clock::now();
            addDirect(*e);
            direct = std::min(direct, seconds(t0, Clock::now()));
        }
        for (int r = 0; r < 2; ++r) {
            auto s = std::make_unique<Session>(path);
            const auto t0 = Clock::now();
            s->import();
            imported = std::min(imported, seconds(t0, Clock::now()));
            polygons = s->ctx.engine.polygon_count();
            logged = !s->ctx.state.strLoadedFiles.empty();
        }
        std::string error;
        const double importBytes = bench::childBytes("import_bench", "import", error);
        const double directBytes = bench::childBytes("import_bench", "direct", error);
        if (!error.empty() || !logged) {
            state.SkipWithError(error.empty() ? "the import did not finish" : error.c_str());
            break;
        }
        state.counters["lines"] = double(lines);
        state.counters["polygons"] = double(polygons);
        state.counters["read_count_s"] = reference;
        state.counters["import_s"] = imported;
        state.counters["time_ratio"] = imported / reference;
        // For the record: the same triangles added straight to the engine, against
        // the same reference (the part of the ratio that is the engine's).
        state.counters["direct_add_s"] = direct;
        state.counters["direct_add_ratio"] = direct / reference;
        state.counters["import_bytes"] = importBytes;
        state.counters["triangle_bytes"] = directBytes;
        state.counters["memory_ratio"] = importBytes / directBytes;
    }
    std::remove(path.c_str());
}
BENCHMARK(BM_AscImport)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--memory-child") == 0) return memoryChild(argv[2]);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

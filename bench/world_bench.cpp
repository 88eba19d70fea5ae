// World file benchmarks, each a ratio against a reference measured in the same
// run on the same disk (see bench/checks.tsv for the limits):
//  * saving 2M triangles to a ".STATE" file (temporary file, flushed to the disk
//    and renamed) against writing the same number of bytes as one block to a
//    file in the same folder, also flushed to the disk;
//  * loading that file into an engine against reading the same number of bytes
//    as one block into fresh memory. Both start from the disk: the pages of both
//    files are dropped from the system's cache first (they are clean after the
//    flush, so dropping them needs no privileges). The same ratios with the
//    files in the cache are reported too, for information;
//  * the file's size against the raw coordinates (nine doubles a triangle) plus
//    the bytes of the distinct names.
// Times are the best of three. The scene: a surface of 2M triangles in 2000
// named objects of 1000 triangles in 20 groups, as builders make them.
// The files go to the folder in TARVIK_BENCH_DIR, else the current folder.

#include <benchmark/benchmark.h>

#include "BenchSupport.h"
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/WorldFormat.h"

using engine::Engine;
using engine::Handle;
using engine::Point3;
namespace fs = std::filesystem;

namespace {

using bench::Clock;
using bench::seconds;

constexpr std::size_t kTriangles = 2'000'000;
constexpr std::size_t kPerObject = 1000;
constexpr std::size_t kGroups = 20;

std::size_t buildScene(Engine& e) {
    e.engine_load_world("", "", "", 4);
    const std::size_t width = std::size_t(std::ceil(std::sqrt(double(kTriangles) / 2)));
    auto vertex = [&](std::size_t ix, std::size_t iy) {
        return Point3{double(ix) * 10.0 + 0.125, double(iy) * 10.0 - 0.375,
                      double((ix * 7 + iy * 13) % 17) * 0.5 + 1e-3 * double(ix % 11)};
    };
    std::vector<Handle> groups;
    for (std::size_t g = 0; g < kGroups; ++g)
        groups.push_back(e.group_create("Level " + std::to_string(g)));
    std::set<std::string> names;
    std::string name;
    for (std::size_t i = 0; i < kTriangles; ++i) {
        if (i % kPerObject == 0) {
            name = "PR_Surface object " + std::to_string(i / kPerObject) + "\tsurveyed";
            names.insert(name);
        }
        const std::size_t cell = i / 2, ix = cell % width, iy = cell / width;
        Point3 a = vertex(ix, iy), b, c;
        if (i % 2 == 0) {
            b = vertex(ix, iy + 1);
            c = vertex(ix + 1, iy + 1);
        } else {
            b = vertex(ix + 1, iy + 1);
            c = vertex(ix + 1, iy);
        }
        const Handle p = e.polygon_create();
        e.polygon_add_point(p, a);
        e.polygon_add_point(p, b);
        e.polygon_add_point(p, c);
        e.engine_add_polygon(p);
        e.polygon_set_name(p, name);
        e.polygon_set_group(p, groups[(i / kPerObject) % kGroups]);
        e.polygon_set_color_fill(p, {int(i / kPerObject % 7) * 30, 128, 255});
    }
    std::size_t nameBytes = 0;
    for (const auto& n : names) nameBytes += n.size();
    return nameBytes;
}

bool dropFromCache(const fs::path& p) {
    const int fd = ::open(p.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    ::fdatasync(fd);
    const bool ok = ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED) == 0;
    ::close(fd);
    return ok;
}

// Writes n bytes from memory as one block, flushed to the disk as a save does.
double rawWrite(const fs::path& p, const char* data, std::size_t n) {
    const auto t0 = Clock::now();
    const int fd = ::open(p.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    std::size_t done = 0;
    while (done < n) {
        const ssize_t w = ::write(fd, data + done, n - done);
        if (w <= 0) break;
        done += std::size_t(w);
    }
    ::fsync(fd);
    ::close(fd);
    return seconds(t0, Clock::now());
}

// Reads the file as one block into fresh memory.
double rawRead(const fs::path& p, std::size_t n) {
    const auto t0 = Clock::now();
    const int fd = ::open(p.c_str(), O_RDONLY | O_CLOEXEC);
    std::unique_ptr<char[]> buf(new char[n]);
    std::size_t done = 0;
    while (done < n) {
        const ssize_t r = ::read(fd, buf.get() + done, n - done);
        if (r <= 0) break;
        done += std::size_t(r);
    }
    ::close(fd);
    benchmark::DoNotOptimize(buf.get());
    return seconds(t0, Clock::now());
}

void BM_WorldSaveLoad(benchmark::State& state) {
    for (auto _ : state) {
        const char* env = std::getenv("TARVIK_BENCH_DIR");
        const fs::path dir = fs::absolute(env && *env ? fs::path(env) : fs::current_path()) /
                             ("world-bench-" + std::to_string(::getpid()));
        fs::create_directories(dir);
        const fs::path world = dir / "bench.STATE", raw = dir / "raw.bin";

        auto e = std::make_unique<Engine>();
        const std::size_t nameBytes = buildScene(*e);

        double save = 1e30, write = 1e30;
        for (int r = 0; r < 3; ++r) {
            auto t0 = Clock::now();
            const auto res = engine::saveWorld(*e, world);
            const double s = seconds(t0, Clock::now());
            if (!res.ok) {
                state.SkipWithError(res.message.c_str());
                fs::remove_all(dir);
                return;
            }
            save = std::min(save, s);
        }
        const std::size_t bytes = std::size_t(fs::file_size(world));
        {
            std::vector<char> block(bytes, 'x');
            for (int r = 0; r < 3; ++r) write = std::min(write, rawWrite(raw, block.data(), bytes));
        }
        e.reset();

        double load = 1e30, read = 1e30, loadWarm = 1e30, readWarm = 1e30;
        std::size_t loaded = 0;
        for (int r = 0; r < 3; ++r) {
            dropFromCache(world);
            auto fresh = std::make_unique<Engine>();
            auto t0 = Clock::now();
            const auto res = engine::loadWorld(*fresh, world);
            load = std::min(load, seconds(t0, Clock::now()));
            loaded = fresh->polygon_count();
            if (!res.ok) {
                state.SkipWithError(res.message.c_str());
                fs::remove_all(dir);
                return;
            }
            dropFromCache(raw);
            read = std::min(read, rawRead(raw, bytes));
        }
        for (int r = 0; r < 3; ++r) {
            auto fresh = std::make_unique<Engine>();
            auto t0 = Clock::now();
            engine::loadWorld(*fresh, world);
            loadWarm = std::min(loadWarm, seconds(t0, Clock::now()));
            readWarm = std::min(readWarm, rawRead(raw, bytes));
        }
        fs::remove_all(dir);

        const double rawSize = double(kTriangles) * 9 * sizeof(double) + double(nameBytes);
        state.counters["triangles_loaded"] = double(loaded);
        state.counters["file_mb"] = double(bytes) / 1e6;
        state.counters["size_ratio"] = double(bytes) / rawSize;
        state.counters["save_s"] = save;
        state.counters["raw_write_s"] = write;
        state.counters["save_ratio"] = save / write;
        state.counters["load_s"] = load;
        state.counters["raw_read_s"] = read;
        state.counters["load_ratio"] = load / read;
        state.counters["load_cached_s"] = loadWarm;
        state.counters["raw_read_cached_s"] = readWarm;
        state.counters["load_cached_ratio"] = loadWarm / readWarm;
    }
}
BENCHMARK(BM_WorldSaveLoad)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

// Seismic PPV over 1 000 000 polygons and 10 000 events (see bench/checks.tsv):
//  * speedup: the walk over every polygon for each event, estimated from a sample
//    of events as its time per event times the number of events, against the whole
//    run through the index (index built, every event evaluated);
//  * mismatches: polygons whose record or colour differs between the two on the
//    sample (both start from the same reset).
// The model is a 1000 by 1000 grid of triangles 10 m apart; events fall over the
// grid at depths of up to 300 m either side, magnitudes -1 to 2.5, defaults of
// the dialog (K1 0.7326, K2 0.0821, threshold 0.03, scale 0.03 to 0.12).

#include <benchmark/benchmark.h>

#include "BenchSupport.h"

#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "analysis/PpvRun.h"
#include "core/AppContext.h"
#include "engine/Engine.h"
#include "ui/ScriptedUi.h"

using engine::Handle;
using engine::Point3;

namespace {

using bench::Clock;
using bench::seconds;

constexpr int kSide = 1000;
constexpr int kEvents = 10'000;
constexpr int kSample = 20;

void buildModel(engine::Engine& e) {
    const Handle g = e.group_create("Model");
    for (int i = 0; i < kSide; ++i) {
        for (int j = 0; j < kSide; ++j) {
            const double x = i * 100.0, y = j * 100.0, z = ((i * 7 + j * 13) % 50) * 2.0;
            const Handle p = e.polygon_create();
            e.polygon_add_point(p, Point3{x + 40, y, z});
            e.polygon_add_point(p, Point3{x - 20, y + 35, z});
            e.polygon_add_point(p, Point3{x - 20, y - 35, z});
            e.engine_add_polygon(p);
            e.polygon_set_group(p, g);
        }
    }
}

std::vector<std::string> eventLines() {
    std::mt19937 rng(2024);
    std::uniform_real_distribution<double> pos(0, kSide * 10.0), depth(-300, 300), ml(-1, 2.5);
    std::vector<std::string> out;
    for (int k = 0; k < kEvents; ++k) {
        char buf[128];
        std::snprintf(buf, sizeof buf, "20060629 132944 %.2f %.2f %.2f %.2f", pos(rng), pos(rng),
                      depth(rng), ml(rng));
        out.emplace_back(buf);
    }
    return out;
}

struct Snapshot {
    std::vector<std::string> names;
    std::vector<engine::Rgb> colours;
};

Snapshot snapshot(const engine::Engine& e) {
    Snapshot s;
    for (Handle h = e.polygon_get_first_polygon(); h != 0; h = e.polygon_get_next(h)) {
        if (e.polygon_is_disabled(h)) continue;
        s.names.push_back(e.entity_get_name(h));
        s.colours.push_back(e.polygon_get_color(h));
    }
    return s;
}

void BM_PpvIndexed(benchmark::State& state) {
    ui::ScriptedUi ui;
    core::AppContext ctx(ui);
    ctx.engine.engine_load_world("", "", "", 4);
    buildModel(ctx.engine);
    const auto lines = eventLines();
    analysis::PpvSettings s;
    const Handle group = ctx.engine.group_create(analysis::kDamagingEventsGroup);

    for (auto _ : state) {
        // The walk on the sample.
        analysis::PpvRun walk(ctx, s, group, analysis::PpvPath::PlainWalk);
        walk.resetRecords();
        const auto w0 = Clock::now();
        for (int k = 0; k < kSample; ++k) walk.line(lines[k]);
        const double walkPerEvent = seconds(w0, Clock::now()) / kSample;
        const Snapshot reference = snapshot(ctx.engine);

        // The index on the same sample, from the same reset.
        {
            analysis::PpvRun fast(ctx, s, group, analysis::PpvPath::Indexed);
            fast.resetRecords();
            for (int k = 0; k < kSample; ++k) fast.line(lines[k]);
        }
        const Snapshot indexed = snapshot(ctx.engine);
        long mismatches = reference.names.size() == indexed.names.size() ? 0 : 1;
        for (std::size_t i = 0; i < reference.names.size() && i < indexed.names.size(); ++i)
            if (reference.names[i] != indexed.names[i] || !(reference.colours[i] == indexed.colours[i]))
                ++mismatches;

        // The whole run through the index.
        const auto f0 = Clock::now();
        analysis::PpvRun fast(ctx, s, group, analysis::PpvPath::Indexed);
        fast.resetRecords();
        for (const std::string& l : lines) fast.line(l);
        const double fastTotal = seconds(f0, Clock::now());

        state.counters["walk_estimate_s"] = walkPerEvent * kEvents;
        state.counters["indexed_s"] = fastTotal;
        state.counters["speedup"] = walkPerEvent * kEvents / fastTotal;
        state.counters["mismatches"] = static_cast<double>(mismatches);
        state.counters["events_passed"] = static_cast<double>(fast.eventsPassed());
        state.counters["polygons_hit"] = static_cast<double>(fast.polygonsHit());
    }
}

}  // namespace

BENCHMARK(BM_PpvIndexed)->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK_MAIN();

// Colour map by data over 1 000 000 CM_ polygons (see bench/checks.tsv): the whole
// command (dialog answered, general data source, values 0 to 999 over a 0 to 1000
// scale) against a loop that only reads every polygon's name and splits it into
// its fields, best of three each.

#include <benchmark/benchmark.h>

#include "BenchSupport.h"

#include <algorithm>
#include <chrono>
#include <string>

#include "analysis/ColourMapByData.h"
#include "app/Registration.h"
#include "core/AppContext.h"
#include "core/NameRecords.h"
#include "engine/Engine.h"
#include "ui/ScriptedUi.h"

using engine::Handle;
using engine::Point3;

namespace {

using bench::Clock;
using bench::seconds;

constexpr int kSide = 1000;

void buildModel(engine::Engine& e) {
    const Handle g = e.group_create("Model");
    for (int i = 0; i < kSide; ++i) {
        for (int j = 0; j < kSide; ++j) {
            const double x = i * 10.0, y = j * 10.0;
            const Handle p = e.polygon_create();
            e.polygon_add_point(p, Point3{x, y, 0});
            e.polygon_add_point(p, Point3{x + 8, y, 0});
            e.polygon_add_point(p, Point3{x, y + 8, 0});
            e.engine_add_polygon(p);
            e.polygon_set_group(p, g);
            e.polygon_set_name(p, "CM_Point\t" + std::to_string((i * 31 + j * 17) % 1000) +
                                      "\t" + std::to_string(i) + "\t" + std::to_string(j));
        }
    }
}

void BM_ColourMapByData(benchmark::State& state) {
    ui::ScriptedUi ui;
    core::AppContext ctx(ui);
    app::registerAll(ctx);
    app::startMainForm(ctx);
    buildModel(ctx.engine);
    engine::Engine& e = ctx.engine;

    for (auto _ : state) {
        double reference = 1e30, command = 1e30;
        std::size_t fields = 0;
        for (int r = 0; r < 3; ++r) {
            fields = 0;
            const auto t0 = Clock::now();
            for (Handle h = e.polygon_get_first_polygon(); h != 0; h = e.polygon_get_next(h))
                fields += analysis::recordFields(core::strEntityName(e, h)).size();
            reference = std::min(reference, seconds(t0, Clock::now()));
        }
        for (int r = 0; r < 3; ++r) {
            ui.answerForm({"frm29_ColourMap",
                           ui::FormAction::Accept,
                           {{"optGeneralDataPoints", "1"}, {"cboMin", "0"}, {"cboMax", "1000"}}});
            const auto t0 = Clock::now();
            analysis::p_subColourMapByData(ctx);
            command = std::min(command, seconds(t0, Clock::now()));
        }
        // Every polygon coloured: none is left at the mid grey of a missing value.
        long grey = 0;
        for (Handle h = e.polygon_get_first_polygon(); h != 0; h = e.polygon_get_next(h))
            grey += e.polygon_get_color(h) == engine::Rgb{128, 128, 128};
        state.counters["fields"] = double(fields);
        state.counters["grey_polygons"] = double(grey);
        state.counters["read_split_s"] = reference;
        state.counters["command_s"] = command;
        state.counters["time_ratio"] = command / reference;
    }
}

}  // namespace

BENCHMARK(BM_ColourMapByData)->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK_MAIN();

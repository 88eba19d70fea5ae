// The seismic event reader on any bytes, line by line, over a small model through
// the index and through the walk: no crash, the same outcome for every line, and
// the same record on every polygon afterwards.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "analysis/PpvRun.h"
#include "core/AppContext.h"
#include "engine/Engine.h"
#include "ui/ScriptedUi.h"

namespace {

struct Model {
    Model() : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        engine::Engine& e = ctx.engine;
        const engine::Handle g = e.group_create("Model");
        for (int k = 0; k < 40; ++k) {
            const double x = (k % 8) * 25.0, y = (k / 8) * 25.0, z = -(k % 3) * 10.0;
            const engine::Handle p = e.polygon_create();
            e.polygon_add_point(p, engine::Point3{x + 10, y, z});
            e.polygon_add_point(p, engine::Point3{x - 5, y + 9, z});
            e.polygon_add_point(p, engine::Point3{x - 5, y - 9, z});
            e.engine_add_polygon(p);
            e.polygon_set_group(p, g);
        }
    }
    ui::ScriptedUi ui;
    core::AppContext ctx;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Model a, b;
    analysis::PpvSettings s;
    s.bolLoadEvents = size % 2 == 1;
    analysis::PpvRun fast(a.ctx, s, a.ctx.engine.group_create("D"), analysis::PpvPath::Indexed);
    analysis::PpvRun walk(b.ctx, s, b.ctx.engine.group_create("D"), analysis::PpvPath::PlainWalk);
    fast.resetRecords();
    walk.resetRecords();
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        const std::string_view line = text.substr(start, end - start);
        start = end + 1;
        const auto oa = fast.line(line), ob = walk.line(line);
        if (oa != ob) __builtin_trap();
        if (oa == analysis::PpvRun::Outcome::Fault) break;
    }
    const engine::Engine &ea = a.ctx.engine, &eb = b.ctx.engine;
    for (engine::Handle pa = ea.polygon_get_first_polygon(), pb = eb.polygon_get_first_polygon();
         pa != 0 && pb != 0; pa = ea.polygon_get_next(pa), pb = eb.polygon_get_next(pb))
        if (ea.entity_get_name(pa) != eb.entity_get_name(pb)) __builtin_trap();
    return 0;
}

// Any bytes as an ASC wireframe file, in each of its three readings: no crash,
// no hang, and no more than four triangles a facet of four lines.
#include "ImportFuzzSupport.h"
#include "import/Map3DReaders.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const bool vertice = size > 0 && (data[0] & 1);
    const bool twoSided = size > 0 && (data[0] & 2);
    std::size_t lines = 1;
    for (std::size_t i = 0; i < size; ++i) lines += data[i] == '\n' || data[i] == '\r';
    fuzzsupport::importBytes("asc", data, size, [&](core::AppContext& ctx, ui::ScriptedUi&) {
        importers::importMap3DAsc(ctx, "Add", vertice, twoSided);
        if (ctx.engine.polygon_count() > lines) __builtin_trap();
    });
    return 0;
}

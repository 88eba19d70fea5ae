// Any bytes as a QkL or an MS list (the first byte picks the format and the
// convention): no crash, no hang, no more markers than lines.
#include "ImportFuzzSupport.h"
#include "import/SeismicReaders.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::uint8_t pick = size > 0 ? data[0] : 0;
    importers::SeismicConvention conv;
    conv.intCoordSign[0] = (pick & 2) ? -1 : 1;
    conv.intCoordSign[2] = (pick & 4) ? -1 : 1;
    conv.bolSwitchXandY = (pick & 8) != 0;
    const auto format = (pick & 1) ? importers::SeismicFormat::MS : importers::SeismicFormat::QkL;
    std::size_t lines = 1;
    for (std::size_t i = 0; i < size; ++i) lines += data[i] == '\n' || data[i] == '\r';
    fuzzsupport::importBytes("seismic", data, size, [&](core::AppContext& ctx, ui::ScriptedUi&) {
        if (pick & 16) ctx.settings.intSphereMarkerKind = -1;
        importers::importSeismicList(ctx, "Add", conv, format);
        std::size_t markers = 0;
        const engine::Engine& e = ctx.engine;
        const engine::Handle top = importers::seismicGroup(ctx, importers::kSeismicGroup);
        for (engine::Handle g = e.group_get_first_included_group(top); g;
             g = e.group_get_next_included_group(top, g))
            ++markers;
        if (markers > lines) __builtin_trap();
    });
    return 0;
}

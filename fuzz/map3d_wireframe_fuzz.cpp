// Any bytes as a construction wireframe file: no crash, no hang; either the
// error box or a log entry.
#include "ImportFuzzSupport.h"
#include "import/Map3DReaders.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzsupport::importBytes("wireframe", data, size,
                             [](core::AppContext& ctx, ui::ScriptedUi& ui) {
                                 importers::importMap3DConstructionWireframes(ctx, "Add");
                                 bool boxed = false;
                                 for (const auto& line : ui.transcript())
                                     boxed |= line.find("\"msgbox\"") != std::string::npos;
                                 if (boxed == !ctx.state.strLoadedFiles.empty()) __builtin_trap();
                             });
    return 0;
}

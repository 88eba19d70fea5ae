// Any bytes as a construction string file, built as tunnels: no crash, no hang.
// The first byte picks the shape and where the line lies on it.
#include "ImportFuzzSupport.h"
#include "forms/Frm12Excavation.h"
#include "import/Map3DReaders.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const char* positions[] = {"optLineBottom", "optLineCentre", "optLineTop"};
    const std::uint8_t pick = size > 0 ? data[0] : 0;
    ui::FormAnswer answer;
    answer.form = forms::Frm12Excavation::kName;
    answer.controls = {{forms::Frm12Excavation::kTypeOptions[pick % 7], "1"},
                       {positions[(pick / 7) % 3], "1"},
                       {"cboExcavationWidth", "2"},
                       {"cboExcavationHeight", "3"}};
    fuzzsupport::importBytes("string", data, size, [&](core::AppContext& ctx, ui::ScriptedUi& ui) {
        ui.answerForm(answer);
        importers::importMap3DConstructionStrings(ctx, "Add");
    });
    return 0;
}

// Any bytes as a collar file and then as a survey file over those collars: no
// crash, no hang, and the import ends with the arrow and the full bar.
#include "ImportFuzzSupport.h"
#include "import/DrillholeReaders.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const bool low = size > 0 && (data[0] & 1);
    const bool up = size > 0 && (data[0] & 2);
    fuzzsupport::importBytes("dhsurvey", data, size,
                             [&](core::AppContext& ctx, ui::ScriptedUi& ui) {
                                 ui.answerInput("0.5");
                                 importers::importDrillholeCollars(ctx);
                                 ui.answerInput("2");
                                 ui.answerMsgBox(low ? ui::Answer::Yes : ui::Answer::No);
                                 ui.answerMsgBox(up ? ui::Answer::Yes : ui::Answer::No);
                                 importers::importDrillholeSurveys(ctx);
                             });
    return 0;
}

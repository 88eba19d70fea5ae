// Any bytes as oriented joints and then as logged intervals along two fixed holes:
// no crash, no hang, and each import ends with the arrow and the full bar.
#include "ImportFuzzSupport.h"
#include "import/DrillholeReaders.h"

namespace {

void writeText(const std::string& path, const std::string& text) {
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f << text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const bool dipDirection = size > 0 && (data[0] & 1);
    const bool cylinders = size > 0 && (data[0] & 2);
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    fuzzsupport::importBytes("dhjoint", data, size, [&](core::AppContext& ctx, ui::ScriptedUi& ui) {
        const std::string path = ctx.state.strFullPath;
        writeText(path, "1 0 0 0 30\nA 10 10 10 50\n");
        ui.answerInput("1");
        importers::importDrillholeCollars(ctx);
        writeText(path, "1 0 0 90\n1 10 45 60\n1 20 90 45\nA 0 0 0\nA 25 300 80\n");
        ui.answerInput("1");
        ui.answerMsgBox(ui::Answer::Yes);
        ui.answerMsgBox(ui::Answer::No);
        importers::importDrillholeSurveys(ctx);
        writeText(path, bytes);
        ui.answerInput("10");
        importers::importOrientedJoints(ctx, dipDirection);
        if (ui.pointer() != 1 || ui.progress() != 100) __builtin_trap();
        // The column test may stop before these are asked.
        ui.answerInput("5");
        ui.answerMsgBox(cylinders ? ui::Answer::Yes : ui::Answer::No);
        importers::importDrillholeAttributes(ctx);
    });
    return 0;
}

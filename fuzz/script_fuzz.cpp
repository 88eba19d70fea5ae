// Any text as a script: the runner must end with 0, 1 or 2 and never crash.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>

#include "app/Registration.h"
#include "cli/script/ScriptRunner.h"
#include "core/AppContext.h"
#include "ui/ScriptedUi.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    // Lines that touch files stay out: the harness must not write around the disk.
    for (const char* word : {"dump", "save", "open", "render"})
        if (text.find(word) != std::string::npos) return 0;
    std::ostringstream transcript, err;
    ui::ScriptedUi ui(&transcript);
    core::AppContext ctx(ui);
    app::registerAll(ctx);
    app::startMainForm(ctx);
    script::ScriptRunner runner(ctx, ui, std::filesystem::temp_directory_path());
    int rc = runner.run(text, "fuzz.tvs", err);
    if (rc < 0 || rc > 2) __builtin_trap();
    return 0;
}

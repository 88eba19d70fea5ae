#pragma once
// What the reader harnesses share: a fresh program for each input, the input
// written to a file of its own, and the checks every import must pass however
// it ended: the arrow pointer back and the bar at 100.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "app/Registration.h"
#include "core/AppContext.h"
#include "import/ImportRegistration.h"
#include "ui/ScriptedUi.h"

namespace fuzzsupport {

// One file a process, removed when the process ends.
inline std::string inputFile(const char* reader) {
    static const std::string path =
        (std::filesystem::temp_directory_path() /
         ("tarvik-fuzz-" + std::string(reader) + "-" + std::to_string(::getpid())))
            .string();
    static const bool cleanUp = [] {
        std::atexit([] { std::remove(path.c_str()); });
        return true;
    }();
    (void)cleanUp;
    return path;
}

// Runs `import` on the bytes as the chosen file of an "Add".
inline void importBytes(const char* reader, const std::uint8_t* data, std::size_t size,
                        const std::function<void(core::AppContext&, ui::ScriptedUi&)>& import) {
    const std::string path = inputFile(reader);
    {
        std::ofstream f(path, std::ios::binary | std::ios::trunc);
        f.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    ui::ScriptedUi ui;
    core::AppContext ctx(ui);
    app::registerAll(ctx);
    importers::registerImport(ctx);
    app::startMainForm(ctx);
    ctx.state.strFullPath = path;
    import(ctx, ui);
    if (ui.pointer() != 1 || ui.progress() != 100) __builtin_trap();
}

}  // namespace fuzzsupport

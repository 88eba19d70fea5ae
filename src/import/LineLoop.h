#pragma once
// The reading loop of a line reader: the whole file in one go, then line by line
// the interrupt test, the normaliser and split, the reader's own work on the
// fields, and the progress of ImportRun::lineRead.

#include <string_view>
#include <vector>

#include "core/AppContext.h"
#include "import/ImportRun.h"
#include "import/TextFile.h"

namespace importers {

// onLine(fields, count) stores a line (the first `keep` fields of `count`); `reserve(n)` is told
// how many lines to expect. A file that cannot be read is an ImportFault. An interrupt only ends
// the reading: the flag is taken back, so that what was read gets built and a second press of the
// button can stop the building. Returns true when interrupted.
template <class Reserve, class OnLine>
bool readFileLines(ImportRun& run, int rounds, std::size_t keep, Reserve&& reserve,
                   OnLine&& onLine) {
    core::AppContext& ctx = run.context();
    TextFile file;
    if (!file.load(ctx.state.strFullPath)) throw ImportFault("the file cannot be read");
    reserve(file.lineCountHint());
    FieldSplitter splitter(rounds);
    std::string_view line;
    while (!run.interruptRequested() && file.nextLine(line)) {
        const auto& fields = splitter.split(line, keep);
        onLine(fields, splitter.count());
        run.lineRead();
    }
    if (!run.interruptRequested()) return false;
    ctx.state.bolInterruptProcess = false;
    return true;
}

}  // namespace importers

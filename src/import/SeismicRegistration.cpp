// The seismic entries of the import menus.

#include "core/AppContext.h"
#include "forms/Frm21DataChanges.h"
#include "import/SeismicReaders.h"

namespace importers {

void registerSeismicReaders(core::AppContext& ctx) {
    // The PPV evaluation finds the form by name, so it exists from the start.
    forms::dataChangesForm(ctx);
    struct Entry {
        const char* name;
        const char* caption;
        void (*handler)(core::AppContext&);
    };
    static const Entry entries[] = {
        {"mnuImportSeismicDataQkL", "Seismic events from QkL-file", mnuImportSeismicDataQkL},
        {"mnuImportSeismicDataMS", "Seismic events from MS-file", mnuImportSeismicDataMS},
        {"mnuAll_QkL_Info", "Picture with seismic events (QkL information)", mnuAll_QkL_Info},
    };
    for (const Entry& e : entries) {
        core::Command c;
        c.name = e.name;
        c.caption = e.caption;
        c.menuPath = kSeismicMenu;
        c.handler = e.handler;
        ctx.commands.add(std::move(c));
    }
}

}  // namespace importers

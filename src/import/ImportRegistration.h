#pragma once
// The import layer's entries, dialogs and procedures in one application context.

namespace core {
class AppContext;
}

namespace importers {

// The import menus (with the readers of this version; the other rows of the
// import table disabled), frm12_Excavation, and the procedures scripts call:
// p_subFileOpen, p_subFileAdd, P_subProgressMessage, P_subMap3DColour,
// P_fncTriangle, P_subAcceptExcavationDimensions. Safe to call twice.
void registerImport(core::AppContext& ctx);

}  // namespace importers

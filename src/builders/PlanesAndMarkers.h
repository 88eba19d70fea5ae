#pragma once
// The plane, marker and stress tensor dialogs with their catalogues, their buttons
// in the command registry, and the builders and placing procedures for `call`.

namespace core {
class AppContext;
}

namespace builders {

// Adds frm10_SelectMarker, frm11_SelectMarkerStandard, frm13_SelectExcStandard,
// frm14_SelectLMStandard, frm15_DiscPlane, frm16_SelectDiscPlaneStandard and
// frm25_StressTensor, their command buttons and the procedures. Safe to call twice.
void registerPlanesAndMarkers(core::AppContext& ctx);

}  // namespace builders

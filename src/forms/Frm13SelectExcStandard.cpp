#include "forms/Frm13SelectExcStandard.h"

namespace forms {

CatalogueRow excavationRow(const char* option, const char* caption, const char* shape,
                           const char* width, const char* height, const char* colour,
                           const char* linePosition) {
    CatalogueRow r{option, caption, {}};
    r.writes.push_back({shape, "1"});
    r.writes.push_back({"cboExcavationWidth", width});
    if (height) r.writes.push_back({"cboExcavationHeight", height});
    r.writes.push_back({"cboExcavationColour", colour});
    if (linePosition) r.writes.push_back({linePosition, "1"});
    return r;
}

const std::vector<CatalogueRow>& Frm13SelectExcStandard::standardRows() {
    static const std::vector<CatalogueRow> rows = {
        excavationRow("optExcNRMDevelopment", "Development end", "optExcTunnel", "3.0", "3.0",
                      "Dark blue (tunnels)"),
        excavationRow("optExcNRMRaise", "Raise", "optExcTunnel", "1.5", "2.5",
                      "Dark grey (raises)"),
        excavationRow("optExcNRMGully", "Gully", "optExcTunnel", "1.5", "2.5",
                      "Light grey (gullies)"),
        excavationRow("optExcOrepass", "Orepass", "optExcCylinder", "2.5", nullptr,
                      "Light purple (cylinders)"),
        excavationRow("optMechDev1", "Mechanised development, small", "optExcTunnel", "4.0", "4.0",
                      "Light blue (tunnels)"),
        excavationRow("optMechDev2", "Mechanised development, medium", "optExcTunnel", "4.5", "5.0",
                      "Light blue (tunnels)"),
        excavationRow("optMechDev3", "Mechanised development, large", "optExcTunnel", "5.0", "6.0",
                      "Light blue (tunnels)"),
        excavationRow("optMechOrepass", "Mechanised orepass", "optExcCylinder", "3.0", nullptr,
                      "Light purple (cylinders)"),
    };
    return rows;
}

Frm13SelectExcStandard::Frm13SelectExcStandard(core::AppContext* ctx)
    : CatalogueForm(kName, "Standard excavations", "frm12_Excavation", "cmdExcAccept",
                    "cmdExcChanges", standardRows(), ctx) {}

}  // namespace forms

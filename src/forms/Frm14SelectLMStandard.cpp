#include "forms/Frm14SelectLMStandard.h"

#include "forms/Frm13SelectExcStandard.h"

namespace forms {

namespace {

CatalogueRow line(const char* option, const char* caption, const char* shape, const char* width,
                  const char* height, const char* colour) {
    return excavationRow(option, caption, shape, width, height, colour, "optLineCentre");
}

}  // namespace

const std::vector<CatalogueRow>& Frm14SelectLMStandard::standardRows() {
    static const std::vector<CatalogueRow> rows = {
        line("optHighStressLM", "High stress support", "optExcCylinder", "2.5", nullptr,
             "Red (High stress support)"),
        line("optMeshLaceLM", "Mesh and lace", "optExcCylinder", "2.5", nullptr,
             "Orange (Mesh and lace)"),
        line("optShotcreteLM", "Shotcrete", "optExcCylinder", "2.5", nullptr, "Yellow (Shotcrete)"),
        line("optMeshOnlyLM", "Mesh only", "optExcCylinder", "2.5", nullptr, "Pink (Mesh only)"),
        line("optShotcreteRequiredLM", "Shotcrete required", "optExcTunnel", "3.0", "1.5",
             "White (Shotcrete required)"),
        line("optCablesRequiredLM", "Cables required", "optExcTunnel", "3.0", "1.5",
             "Light green (Cables required)"),
        line("optGC_Excellent", "Ground conditions excellent", "optExcTunnel", "4.0", "1.5",
             "Dark blue (Excellent conditions)"),
        line("optGC_Good", "Ground conditions good", "optExcTunnel", "4.0", "1.5",
             "Light blue (Good conditions)"),
        line("optGC_Acceptable", "Ground conditions acceptable", "optExcTunnel", "4.0", "1.5",
             "Green (Acceptable conditions)"),
        line("optGC_Poor", "Ground conditions poor", "optExcTunnel", "4.0", "1.5",
             "Yellow (Poor conditions)"),
        line("optGC_VeryPoor", "Ground conditions very poor", "optExcTunnel", "4.0", "1.5",
             "Bright red (Very poor conditions)"),
        line("optVentIntake", "Ventilation intake", "optExc8Cone", "3.0", nullptr,
             "Blue (Ventilation intake)"),
        line("optVentReturn", "Ventilation return", "optExc8Cone", "3.0", nullptr,
             "Red (Ventilation return)"),
    };
    return rows;
}

Frm14SelectLMStandard::Frm14SelectLMStandard(core::AppContext* ctx)
    : CatalogueForm(kName, "Standard line markers", "frm12_Excavation", "cmdLMAccept",
                    "cmdLMChanges", standardRows(), ctx) {}

}  // namespace forms

#include "forms/Frm16SelectDiscPlaneStandard.h"

namespace forms {

namespace {

// A mapped plane: one point, its dip and direction typed at the face.
CatalogueRow mapping(const char* option, const char* caption, const char* thickness,
                     const char* colour) {
    return {option,
            caption,
            {{"optPlane1Point", "1"},
             {"optDefinePlane", "1"},
             {"cboPlaneHorOffsetAlongPlane", "10"},
             {"cboPlaneVertOffsetAlongPlane", "5"},
             {"cboPlaneThickness", thickness},
             {"cboDiscPlaneColour", colour}}};
}

// A vertical wall across a drive between two picks.
CatalogueRow wall(const char* option, const char* caption, const char* colour) {
    return {option,
            caption,
            {{"optPlane2Points", "1"},
             {"cboPlaneDip", "90"},
             {"cboPlaneHorOffsetAlongPlane", "2"},
             {"cboPlaneVertOffsetAlongPlane", "4"},
             {"cboPlaneThickness", "2"},
             {"cboDiscPlaneColour", colour}}};
}

}  // namespace

const std::vector<CatalogueRow>& Frm16SelectDiscPlaneStandard::standardRows() {
    static const std::vector<CatalogueRow> rows = {
        mapping("optDiscMapping1", "Mapped joint", "0", "Joint plane 2 (orange)"),
        mapping("optDiscMapping2", "Mapped fault", "0", "Fault plane 2 (purple - default)"),
        mapping("optDiscMapping3", "Mapped dyke", "1", "Dyke plane 2 (green)"),
        wall("optDiscBulkhead1", "Bulkhead 1", "Bulkhead1 (purple)"),
        wall("optDiscBulkhead2", "Bulkhead 2", "Bulkhead2 (blue)"),
        wall("optDiscBulkhead3", "Bulkhead 3", "Bulkhead3 (orange)"),
        wall("optDiscBulkhead4", "Bulkhead 4", "Bulkhead4 (white)"),
        wall("optDiscVentDoor", "Ventilation door", "Ventilation door (red)"),
        wall("optDiscVentSeal", "Ventilation seal", "Ventilation seal (yellow)"),
    };
    return rows;
}

Frm16SelectDiscPlaneStandard::Frm16SelectDiscPlaneStandard(core::AppContext* ctx)
    : CatalogueForm(kName, "Standard planes", "frm15_DiscPlane", "cmdPlaneAccept",
                    "cmdPlaneChanges", standardRows(), ctx) {}

}  // namespace forms

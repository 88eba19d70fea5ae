#include "forms/Frm11SelectMarkerStandard.h"

namespace forms {

namespace {

// Symbol, diameter, length, radius (nullptr: left as it is), colour, link.
CatalogueRow row(const char* option, const char* caption, const char* symbol, const char* diameter,
                 const char* length, const char* radius, const char* colour, const char* link) {
    CatalogueRow r{option, caption, {}};
    r.writes.push_back({symbol, "1"});
    r.writes.push_back({"cboCylDiameter", diameter});
    r.writes.push_back({"cboCylLength", length});
    if (radius) r.writes.push_back({"cboSphereRadius", radius});
    r.writes.push_back({"cboMarkerColour", colour});
    r.writes.push_back({link, "1"});
    r.writes.push_back({"optMarkerBottom", "1"});
    return r;
}

constexpr const char* kNone = "optNoDirectConnect";

}  // namespace

const std::vector<CatalogueRow>& Frm11SelectMarkerStandard::standardRows() {
    static const std::vector<CatalogueRow> rows = {
        row("optMarkerHSSupport", "High stress support", "optDirCylSphere", "1.0", "4.0", "2.0",
            "Red", kNone),
        row("optMarkerSCSupport", "Shotcrete support", "optDirCylSphere", "1.0", "4.0", "2.0",
            "Yellow", kNone),
        row("optMarkerMSupport", "Mesh support", "optDirCylSphere", "1.0", "4.0", "2.0", "Pink",
            kNone),
        row("optMarkerNSupport", "Normal support", "optDirCylSphere", "1.0", "4.0", "2.0", "Grey",
            kNone),
        row("optMarkerNRM", "Rock mass note", "optDirCylSphere", "1.0", "4.0", "2.0", "White",
            kNone),
        row("optCablesGrouted", "Cable anchors, grouted", "optCylinder", "0.5", "6.0", nullptr,
            "Light blue", kNone),
        row("optCablesNonGrouted", "Cable anchors, not grouted", "optCylinder", "0.5", "6.0",
            nullptr, "Light red", kNone),
        row("optMarkerPhotoDirect", "Photograph, linked at once", "optDirCylDiamond", "1.0", "2.5",
            "1.5", "Orange", "optConDirectPhoto"),
        row("optMarkerPhoto1", "Photograph 1", "optDirCylDiamond", "1.0", "2.5", "1.5", "Orange",
            kNone),
        row("optMarkerPhoto2", "Photograph 2", "optDirCylDiamond", "1.0", "2.5", "1.5", "Brown",
            kNone),
        row("optMarkerPhoto3", "Photograph 3", "optDirCylDiamond", "1.0", "2.5", "1.5", "Green",
            kNone),
        row("optMarkerCommentDirect", "Comment, written at once", "optCylDiamond", "1.0", "2.50",
            "1.5", "Purple", "optConDirectComment"),
        row("optMarkerComment1", "Comment 1", "optCylDiamond", "1.0", "2.50", "1.5", "Purple",
            kNone),
        row("optMarkerComment2", "Comment 2", "optCylDiamond", "1.0", "2.50", "1.5", "Mustard",
            kNone),
        row("optMarkerComment3", "Comment 3", "optCylDiamond", "1.0", "2.50", "1.5", "Blue", kNone),
    };
    return rows;
}

Frm11SelectMarkerStandard::Frm11SelectMarkerStandard(core::AppContext* ctx)
    : CatalogueForm(kName, "Standard markers", "frm10_SelectMarker", "cmdStanMarkerAccept",
                    "cmdMarkerChanges", standardRows(), ctx) {}

}  // namespace forms

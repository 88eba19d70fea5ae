#pragma once
// The standard markers: support types, cable anchors, photographs and comments,
// written into frm10_SelectMarker. Every row puts the marker's foot on the point.

#include "forms/CatalogueForm.h"

namespace forms {

class Frm11SelectMarkerStandard : public CatalogueForm {
public:
    static constexpr const char* kName = "frm11_SelectMarkerStandard";
    explicit Frm11SelectMarkerStandard(core::AppContext* ctx = nullptr);
    static const std::vector<CatalogueRow>& standardRows();
};

}  // namespace forms

#pragma once
// The standard excavations: development ends, raises, gullies and orepasses,
// written into frm12_Excavation.

#include "forms/CatalogueForm.h"

namespace forms {

class Frm13SelectExcStandard : public CatalogueForm {
public:
    static constexpr const char* kName = "frm13_SelectExcStandard";
    explicit Frm13SelectExcStandard(core::AppContext* ctx = nullptr);
    static const std::vector<CatalogueRow>& standardRows();
};

// A row of the two excavation catalogues: shape, width, height (nullptr: left as
// it is), colour; `linePosition` (nullptr: left as it is) last.
CatalogueRow excavationRow(const char* option, const char* caption, const char* shape,
                           const char* width, const char* height, const char* colour,
                           const char* linePosition = nullptr);

}  // namespace forms

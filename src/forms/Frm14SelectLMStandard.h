#pragma once
// The standard line markers: support and ground-condition lines and ventilation
// arrows, written into frm12_Excavation with the line through the section's centre.

#include "forms/CatalogueForm.h"

namespace forms {

class Frm14SelectLMStandard : public CatalogueForm {
public:
    static constexpr const char* kName = "frm14_SelectLMStandard";
    explicit Frm14SelectLMStandard(core::AppContext* ctx = nullptr);
    static const std::vector<CatalogueRow>& standardRows();
};

}  // namespace forms

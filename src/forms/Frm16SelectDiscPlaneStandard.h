#pragma once
// The standard planes: mapped joints, faults and dykes, bulkheads, ventilation
// doors and seals, written into frm15_DiscPlane.

#include "forms/CatalogueForm.h"

namespace forms {

class Frm16SelectDiscPlaneStandard : public CatalogueForm {
public:
    static constexpr const char* kName = "frm16_SelectDiscPlaneStandard";
    explicit Frm16SelectDiscPlaneStandard(core::AppContext* ctx = nullptr);
    static const std::vector<CatalogueRow>& standardRows();
};

}  // namespace forms

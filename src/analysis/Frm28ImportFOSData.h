#pragma once
// frm28_ImportFOSData: the rock inputs, cut-offs, mining step and marker kind of the
// stress points import, and the rock inputs of a re-colouring of those points.

#include <string>

#include "analysis/StressCriteria.h"
#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace analysis {

class Frm28ImportFOSData : public forms::Form {
public:
    static constexpr const char* kName = "frm28_ImportFOSData";
    static constexpr const char* kZeroText = "A zero value is not allowed";
    static constexpr const char* kZeroTitle = "Invalid Value";

    explicit Frm28ImportFOSData(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }
    std::string acceptButton() const override { return "cmdAccept"; }
    void onQueryClose() override;

    // A re-colouring has no use for the step, the marker kind and its size.
    void hideImportControls();
    void showImportControls();

    // The first calculation that is on, in the order FOS, S1S3, Shear, RCF.
    Criterion selectedCriterion() const;
    // The four rock inputs as singles from their texts.
    RockInputs rockInputs() const;
    // The settings' marker entry of the representation that is on ("" for none).
    std::string representationEntry() const;

protected:
    void onLoad() override;

private:
    void guardZero(const char* control, const char* putIn);
    void showInputs(bool intact, bool rockmass, bool fFrame, bool fCombo, bool friction);
    void accept();
    void setVisible(const char* control, bool on);

    core::AppContext* ctx_;
};

// The window's frm28_ImportFOSData, registered on first use (not loaded by this call).
Frm28ImportFOSData& importFOSForm(core::AppContext& ctx);

// A number as a single-precision value writes itself into a text box.
std::string singleText(double value);

}  // namespace analysis

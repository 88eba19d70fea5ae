#pragma once
// frm29_ColourMap as far as the colour scale needs it: the frame "Select Colourmap"
// with the four scale options, the load that selects the first and sets the shared
// flags, and an accept button. The sources, limits and presets of the dialog build
// on this class.

#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace analysis {

class ColourMapForm : public forms::Form {
public:
    static constexpr const char* kName = "frm29_ColourMap";
    static constexpr const char* kScaleFrame = "fraSelectColourmap";
    // In the order P_subColourScaleSetup tests them; option k gives bytScale k + 1.
    static constexpr const char* kScaleOptions[] = {"optCM1", "optCM2", "optCM3", "optCM4"};

    // ctx may be null: the form then only keeps its controls.
    explicit ColourMapForm(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    std::string acceptButton() const override { return "cmdAccept"; }
    // Closing by the frame: the caller sees bolColourMapCancelled -1.
    void onQueryClose() override;

    // 1 to 4 for the first option that is on, 0 when none is.
    int selectedScale() const;

protected:
    void onLoad() override;
    core::AppContext* context() const { return ctx_; }

private:
    core::AppContext* ctx_;
};

// The window's frm29_ColourMap: the registered form of that name, else a new
// ColourMapForm registered now. Not loaded by this call.
forms::Form& colourMapForm(core::AppContext& ctx);

}  // namespace analysis

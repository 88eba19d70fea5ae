#pragma once
// frm29_ColourMap: what to colour by (the source and its column), the limits of the
// scale and the scale itself. Its handlers preset limits, sense and scale for each
// source; setting one control from another runs that control's handler as a click
// would, and several presets rely on that order.

#include <string>
#include <vector>

#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace analysis {

class ColourMapForm : public forms::Form {
public:
    static constexpr const char* kName = "frm29_ColourMap";
    static constexpr const char* kScaleFrame = "fraSelectColourmap";
    static constexpr const char* kSourceFrame = "fraParameter";
    static constexpr const char* kExtremesFrame = "fraExtremes";
    // In the order P_subColourScaleSetup tests them; option k gives bytScale k + 1.
    static constexpr const char* kScaleOptions[] = {"optCM1", "optCM2", "optCM3", "optCM4"};
    // The quick set items in their order; the blank of "Q " belongs to the item.
    static constexpr const char* kQuickSets[] = {"Recovery", "RQD", "UCS", "Weathering",
                                                 "FF",       "Q ",  "RMR"};

    static constexpr const char* kWeatheringText =
        "1-UW(unweathered)   2-SW(slightly)   3-MW(moderately)   4-HW(highly)   5-CM(completely)";
    static constexpr const char* kWeatheringTitle = "Meaning of numbers";
    static constexpr const char* kFFText =
        "Rough indication: FF/m=0 is RQD=100;   FF/m=6 is RQD=88;   FF/m=8 is RQD=81;   "
        "FF/m=16 is RQD=52;   FF/m=30 is RQD=20;   FF/m=40 is RQD=9";
    static constexpr const char* kFFTitle = "Rough FF/m relation to RQD";
    static constexpr const char* kNoColumnText = "The selected column number does not exist";
    static constexpr const char* kNoColumnTitle = "No selected column";
    static constexpr const char* kMaxNotAboveMinText =
        "The 'Max Value' cannot be less or equal to the 'Min Value'";
    static constexpr const char* kMaxNotAboveMinTitle = "Error in selection";

    // ctx may be null: the form then only keeps its controls.
    explicit ColourMapForm(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    std::string acceptButton() const override { return "cmdAccept"; }
    // Closing by the frame: bolColourMapCancelled -1, hidden, reset.
    void onQueryClose() override;

    // 1 to 4 for the first option that is on, 0 when none is.
    int selectedScale() const;
    // The source option that is on, "" for none.
    std::string selectedSource() const;
    // Runs a quick set as a pick of the item does, also when it is already the text.
    void pickQuickSet(const std::string& item);
    // The column number of cboLoadColumn (rounded, halves to even), written back
    // into the box in its plain form.
    int normaliseColumn();

    void cmdObtainExtremes();
    void cmdAccept();
    void cmdChangeFOS();

protected:
    void onLoad() override;
    core::AppContext* context() const { return ctx_; }

private:
    struct Preset {
        const char* column;
        std::vector<std::string> maxList;
        const char* maxText;
        std::vector<std::string> minList;
        const char* minText;
        int inverse;  // the check box: 1 checked, 0 not
        const char* scale;
    };
    void applyPreset(const Preset& p);
    void quickSet();
    void lettersChanged();
    void minChanged();
    void calcFOSChanged();
    bool ppvSource() const;

    core::AppContext* ctx_;
};

// The window's frm29_ColourMap: the registered form of that name, else a new
// ColourMapForm registered now. Not loaded by this call.
forms::Form& colourMapForm(core::AppContext& ctx);

}  // namespace analysis

#pragma once
// The PPV import dialog: the two constants of the formula, the threshold, the
// limits of the colour scale and whether damaging events are drawn. Changing the
// threshold or the minimum moves the other limits along with it.

#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace forms {

class Frm30ImportPPV : public Form {
public:
    static constexpr const char* kName = "frm30_ImportPPV";
    static constexpr const char* kMaxBelowMinText = "The Max Value cannot be less than the Min Value";
    static constexpr const char* kMaxBelowMinTitle = "Error in selection";

    // ctx may be null: the form then only keeps its controls and rules.
    explicit Frm30ImportPPV(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    std::string acceptButton() const override { return "cmdAccept"; }
    // Closing by the frame: bolColourMapCancelled -1, hidden, and the reset.
    void onQueryClose() override;

    // The values as the evaluation reads them (K1 and K2 in single precision).
    float k1() const;
    float k2() const;
    double threshold() const;
    double scaleMin() const;
    double scaleMax() const;
    bool loadEvents() const { return checkValue("chkLoadEvents") == 1; }

private:
    void cmdAccept();

    core::AppContext* ctx_;
};

// The window's frm30_ImportPPV, made and registered on first use.
Frm30ImportPPV& importPpvForm(core::AppContext& ctx);

}  // namespace forms

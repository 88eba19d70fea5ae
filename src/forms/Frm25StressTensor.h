#pragma once
// The stress tensor dialog: magnitude, trend and plunge of the three principal
// stresses, completed into an orthogonal set from sigma 1's trend and plunge and
// sigma 2's trend; and the drawn length and diameter of the marker.

#include <string>

#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace forms {

class Frm25StressTensor : public Form {
public:
    static constexpr const char* kName = "frm25_StressTensor";
    static constexpr const char* kZeroText = "The major principal stress cannot be zero";
    static constexpr const char* kZeroTitle = "Zero-value not allowed";

    // ctx may be null: accepting then only checks sigma 1 and hides the form.
    explicit Frm25StressTensor(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    std::string acceptButton() const override { return "cmdAcceptStressTensor"; }
    // The close box: the dialog counts as cancelled and the tool is reset.
    void onQueryClose() override;

    // Refuses a sigma 1 of 0; else hides, hands the length and diameter to the
    // marker dialog and shows that dialog again.
    bool cmdAcceptStressTensor();

private:
    core::AppContext* ctx_;
};

}  // namespace forms

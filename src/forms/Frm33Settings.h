#pragma once
// The settings dialog: navigation steps, default symbol sizes and the window
// layout. Each control checks and applies its value as it changes; the file
// buttons run what the persistence layer attaches.

#include <functional>
#include <map>
#include <string>

#include "forms/Form.h"

namespace core {
class AppContext;
struct Settings;
}  // namespace core

namespace forms {

class Frm33Settings : public Form {
public:
    static constexpr const char* kName = "frm33_Settings";
    static constexpr const char* kInvalidTitle = "Invalid entry";
    static constexpr const char* kRotationMessage =
        "The entered rotation must be greater than 0 and smaller than 360";
    static constexpr const char* kZoomMessage =
        "The entered zoom-value must be greater than 0 and smaller than 10";
    static constexpr const char* kPanMessage =
        "The entered pan-value must be greater than 0 and smaller than 10";
    static constexpr const char* kLineThicknessMessage =
        "The entered line thickness must be greater than 0";
    // The combo boxes whose texts the settings file keeps, in its order.
    static constexpr const char* kFileControls[] = {
        "cboRotationDegrees",  "cboZoomAmount",  "cboPanAmount",     "cboLineThickness",
        "cboSphereResolution", "cboSphereScale", "cboBorderSpacing", "cboPictureboxSize",
    };

    // ctx may be null: the controls then only keep their texts.
    explicit Frm33Settings(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }
    std::string acceptButton() const override { return "cmdAcceptSettings"; }
    void onQueryClose() override { hide(); }

    // Writes the texts that stand for the settings in force, without running the
    // handlers (the settings are already what they say).
    void showSettings(const core::Settings& s);
    // A control's text from a file, without running its handler.
    void putText(const std::string& control, const std::string& text);
    void putCheck(const std::string& control, int value);

    // What the file buttons do (the persistence layer attaches them).
    std::function<void(core::AppContext&)> saveSettings;
    std::function<void(core::AppContext&)> loadSettings;

    // Texts of the tables, "" when the values match no row.
    static std::string resolutionText(const core::Settings& s);
    static std::string scaleText(double dblSphereScale);
    static std::string borderText(short intFormWidthStep, short intFormHeightStep);
    // A number as the controls and the file write it: shortest text that reads
    // back to the same value.
    static std::string numberText(double v);

private:
    void rotationChanged();
    void wholeStepChanged(const char* control, const char* message, int factor, int& setting);
    void lineThicknessChanged();
    void resolutionChanged();
    void scaleChanged();
    void borderChanged();
    void pictureSizeChanged();
    void statusBarChanged();
    void defaults();
    // A refused entry: the message, then the text that stood before.
    void refuse(const std::string& control, const char* message);

    core::AppContext* ctx_;
    // The last accepted text of each combo box.
    std::map<std::string, std::string> accepted_;
    int scratch_ = 0;  // the steps' target when no context is attached
};

// The spacing constants into the main form's layout, and a new layout when the
// form has a size.
void applySpacing(core::AppContext& ctx);
// The main form to a size in twips (nothing for a size that is not positive).
void applyMainFormSize(core::AppContext& ctx, int formWidth, int formHeight);
// The size of the main form that gives picRenderWindow that many pixels.
void applyRenderWindowSize(core::AppContext& ctx, int widthPixels, int heightPixels);

}  // namespace forms

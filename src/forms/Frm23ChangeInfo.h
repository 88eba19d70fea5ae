#pragma once
// The information form: text type, date, time and free text of a polygon's name
// record, and whether the record is protected. The caller loads it from a name,
// shows it and reads the new name back unless it was closed by its frame.

#include <string>
#include <string_view>

#include "forms/Form.h"
#include "ui/Ui.h"

namespace core {
class AppContext;
}

namespace forms {

class Frm23ChangeInfo : public Form {
public:
    static constexpr const char* kName = "frm23_ChangeInfo";
    static constexpr const char* kOtherType = "...Other (not defined)";
    static constexpr const char* kGeneralType = "General Information";

    // ctx may be null: the form then has no clock and closing it resets nothing.
    explicit Frm23ChangeInfo(core::AppContext* ctx = nullptr);
    void attach(core::AppContext* ctx) { ctx_ = ctx; }

    std::string acceptButton() const override { return "cmdChangeInfo"; }
    void onQueryClose() override;

    // Selects a text type and applies its protection rule, also when the type was
    // selected already (a selection from code always runs the list's handler).
    void selectType(const std::string& caption);
    const std::string& selectedType() const { return text("lstPickObjectType"); }

    // The date and time controls. A value that is no date or time is refused
    // (false) and the control keeps what it had.
    bool setDate(int year, int month, int day);
    bool setTime(int hour, int minute, int second);
    // Both to the clock's now.
    void setNow();
    const ui::DateTime& picked() const { return picked_; }

    // The text last cleared by cmdClearText.
    std::string strLastInfoText;
    // -1 when the form was closed by its frame; the caller resets it before showing.
    short bolInfoCancelled = 0;

protected:
    void onLoad() override;

private:
    void applyTypeRule();
    void showDate();
    void showTime();

    core::AppContext* ctx_;
    ui::DateTime picked_;
};

// "yyyy-mm-dd" read strictly; false when it is no date of the calendar.
bool parseRecordDate(std::string_view text, int& year, int& month, int& day);

}  // namespace forms

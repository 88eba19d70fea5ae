#include "forms/Frm23ChangeInfo.h"

#include <cstdio>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"

namespace forms {

namespace {

bool leapYear(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

bool validDate(int y, int m, int d) {
    static const int days[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (y < 100 || y > 9999 || m < 1 || m > 12 || d < 1 || d > days[m - 1]) return false;
    return !(m == 2 && d == 29 && !leapYear(y));
}

bool validTime(int h, int m, int s) {
    return h >= 0 && h <= 23 && m >= 0 && m <= 59 && s >= 0 && s <= 59;
}

// Digits only, at least one and at most `maxDigits`.
bool readDigits(std::string_view s, int maxDigits, int& out) {
    if (s.empty() || static_cast<int>(s.size()) > maxDigits) return false;
    out = 0;
    for (char c : s) {
        if (c < '0' || c > '9') return false;
        out = out * 10 + (c - '0');
    }
    return true;
}

// "H:mm:ss" or "HH:mm:ss".
bool parseClockTime(std::string_view text, int& h, int& m, int& s) {
    auto c1 = text.find(':');
    if (c1 == std::string_view::npos) return false;
    auto c2 = text.find(':', c1 + 1);
    if (c2 == std::string_view::npos) return false;
    return readDigits(text.substr(0, c1), 2, h) &&
           readDigits(text.substr(c1 + 1, c2 - c1 - 1), 2, m) &&
           readDigits(text.substr(c2 + 1), 2, s) && validTime(h, m, s);
}

}  // namespace

bool parseRecordDate(std::string_view text, int& year, int& month, int& day) {
    auto d1 = text.find('-');
    if (d1 == std::string_view::npos) return false;
    auto d2 = text.find('-', d1 + 1);
    if (d2 == std::string_view::npos) return false;
    int y = 0, m = 0, d = 0;
    if (!readDigits(text.substr(0, d1), 4, y) ||
        !readDigits(text.substr(d1 + 1, d2 - d1 - 1), 2, m) ||
        !readDigits(text.substr(d2 + 1), 2, d) || !validDate(y, m, d))
        return false;
    year = y;
    month = m;
    day = d;
    return true;
}

Frm23ChangeInfo::Frm23ChangeInfo(core::AppContext* ctx) : Form(kName, "Information"), ctx_(ctx) {
    auto& types = add(ControlKind::ListBox, "lstPickObjectType", "Text type");
    for (const auto& t : core::textTypes()) types.items.emplace_back(t.caption);
    types.onChange = [this] { applyTypeRule(); };

    add(ControlKind::TextBox, "datPickDate", "Date").onChange = [this] {
        int y = 0, m = 0, d = 0;
        if (parseRecordDate(text("datPickDate"), y, m, d)) {
            picked_.year = y;
            picked_.month = m;
            picked_.day = d;
        }
        showDate();  // a refused entry goes back to the date in force
    };
    add(ControlKind::TextBox, "dtpPickTime", "Time").onChange = [this] {
        int h = 0, m = 0, s = 0;
        if (parseClockTime(text("dtpPickTime"), h, m, s)) {
            picked_.hour = h;
            picked_.minute = m;
            picked_.second = s;
        }
        showTime();
    };
    add(ControlKind::TextBox, "txtChangeInfo", "Information");
    add(ControlKind::CheckBox, "chkProtectInformation", "Protect the information");

    add(ControlKind::CommandButton, "cmdChangeInfo", "Change information").onChange = [this] {
        hide();
    };
    add(ControlKind::CommandButton, "cmdCurrentDateTime", "Current date and time").onChange =
        [this] { setNow(); };
    add(ControlKind::CommandButton, "cmdClearText", "Clear text").onChange = [this] {
        const std::string& t = text("txtChangeInfo");
        if (t != " " && !t.empty()) strLastInfoText = t;
        setText("txtChangeInfo", " ");
    };
    add(ControlKind::CommandButton, "cmdRestore", "Restore text").onChange = [this] {
        setText("txtChangeInfo", strLastInfoText);
    };
    showDate();
    showTime();
}

void Frm23ChangeInfo::onLoad() {
    if (text("txtChangeInfo") == " ") setText("txtChangeInfo", "");
    selectType(kGeneralType);
    setNow();
}

void Frm23ChangeInfo::onQueryClose() {
    bolInfoCancelled = -1;
    hide();
    if (ctx_) core::p_subResetAndCleanup(*ctx_);
}

void Frm23ChangeInfo::selectType(const std::string& caption) {
    Control& list = at("lstPickObjectType");
    list.text = caption;
    list.value = -1;
    for (std::size_t i = 0; i < list.items.size(); ++i)
        if (list.items[i] == caption) list.value = static_cast<int>(i);
    applyTypeRule();
}

void Frm23ChangeInfo::applyTypeRule() {
    const std::string& type = text("lstPickObjectType");
    Control& chk = at("chkProtectInformation");
    if (type == "General Information" || type == "Ground Support") {
        chk.value = 1;
        chk.enabled = true;
    } else if (type == "UG Mapping" || type == "UG Observations" || type == "File Link" ||
               type == "Seismic Event") {
        chk.value = 1;
        chk.enabled = false;
    } else if (type == "Custom (site specific)") {
        chk.enabled = true;  // the protection stays as it stands
    } else {
        chk.value = 0;
        chk.enabled = true;
    }
}

bool Frm23ChangeInfo::setDate(int year, int month, int day) {
    if (!validDate(year, month, day)) return false;
    picked_.year = year;
    picked_.month = month;
    picked_.day = day;
    showDate();
    return true;
}

bool Frm23ChangeInfo::setTime(int hour, int minute, int second) {
    if (!validTime(hour, minute, second)) return false;
    picked_.hour = hour;
    picked_.minute = minute;
    picked_.second = second;
    showTime();
    return true;
}

void Frm23ChangeInfo::setNow() {
    if (!ctx_) return;
    ui::DateTime now = ctx_->ui.now();
    setDate(now.year, now.month, now.day);
    setTime(now.hour, now.minute, now.second);
}

void Frm23ChangeInfo::showDate() { at("datPickDate").text = core::formatRecordDate(picked_); }

void Frm23ChangeInfo::showTime() { at("dtpPickTime").text = core::formatRecordTime(picked_); }

}  // namespace forms

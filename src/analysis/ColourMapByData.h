#pragma once
// The colour map by data: every enabled polygon whose name is a CM_ record is
// coloured by the number its record gives for the source chosen in frm29_ColourMap.

#include <string>
#include <string_view>
#include <vector>

#include "engine/Types.h"
#include "forms/Form.h"

namespace core {
class AppContext;
}

namespace analysis {

class ColourMapForm;

// A record's fields: line ends normalised (CR LF, CR and LF to tab, runs collapsed),
// then split at tabs. Field 0 is the code.
std::vector<std::string> recordFields(std::string_view name);

// An attribute code to its number ("A" 0 ... "I" 8, "DW" 9, "SW" 10, "PW" 11, "MW" 12,
// "HW" 13, "CW" 14); blanks around the code and the case do not count; -1 for any
// other text.
int P_fncRockCodeIndex(std::string_view code);

// frm35_ColourmapSurfaceStresses: the rockmass strength C and strengthening factor K
// of the 1/SF source.
class Frm35ColourmapSurfaceStresses : public forms::Form {
public:
    static constexpr const char* kName = "frm35_ColourmapSurfaceStresses";
    Frm35ColourmapSurfaceStresses();
    std::string acceptButton() const override { return "cmdAccept"; }
    void onQueryClose() override { hide(); }
};
Frm35ColourmapSurfaceStresses& surfaceStressesForm(core::AppContext& ctx);

// What one polygon's record gives under the form's settings.
struct RecordValue {
    enum Kind { Skip, Grey, Band, Percentage } kind = Skip;
    double value = 0;
};
struct DataSource {
    std::string source;  // the option that is on
    long long column = 0;
    bool percentage = false;  // chkRQDPRintMode checked
    double c = 0, k = 0;      // 1/SF: rockmass strength and strengthening factor
};
// Skip: the column test failed (the polygon stays mid grey and is not counted).
// Grey: no value could be had (missing field, division by zero); counted, stays grey.
RecordValue recordValue(core::AppContext& ctx, const DataSource& src,
                        const std::vector<std::string>& fields);

// The whole command: the dialog, the scale, the loop over polygons.
void p_subColourMapByData(core::AppContext& ctx);

// The menu entries, the procedures and frm35; called from the analysis registration.
void registerColourMapForm(core::AppContext& ctx);

}  // namespace analysis

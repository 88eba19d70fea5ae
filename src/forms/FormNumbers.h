#pragma once
// Numbers in the text and combo boxes of the dialogs. A box is read leniently, the
// way a person's half-typed entry must never stop a dialog: the leading number of
// the text, 0 when there is none. A number written into a box is the shortest text
// that reads back to the same value.

#include <string>
#include <string_view>

namespace forms {

// Leading blanks, a sign, digits with one decimal point and an exponent (E or D);
// whatever follows is ignored. "" and "abc" give 0; so does a number out of range.
double valText(std::string_view text);

// True when the text holds nothing but blanks.
bool blankText(std::string_view text);

// Shortest round-trip text; "0" for zero (never "-0") and for NaN or infinity.
std::string numberText(double v);

}  // namespace forms

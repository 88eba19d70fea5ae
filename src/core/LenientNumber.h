#pragma once
// Numbers in text read the tolerant way of the file formats and dialog boxes:
// the leading number counts and a text with none is 0, so no reader rejects a
// line for a bad number.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace core {

// Blanks, tabs and line feeds are passed over wherever they stand; then a sign,
// digits with one decimal point and an exponent (E or D, with its own sign), or
// &H hexadecimal and &O octal (four digits or fewer read as 16-bit, more as 32-bit
// two's complement). Reading stops at the first character that cannot belong to
// the number. A number beyond the range of a double reads as an infinity of its
// sign; "NaN" and "Inf" are no numbers (0).
double valNumber(std::string_view text);

// The nearest whole 32-bit number, halves to the even neighbour; nothing for a
// value out of that range (the reader's fault) or not finite.
std::optional<std::int32_t> wholeNumber(double value);

// A number as the program writes it back into a text: up to 15 significant
// digits without trailing zeros, with an exponent from 1E+15 up and below 1E-04
// ("1E+20", "1E-05"); -0 is "0".
std::string numberText(double value);

}  // namespace core

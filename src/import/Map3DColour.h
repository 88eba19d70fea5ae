#pragma once
// The colour codes of the Map3D point files (also read by the DXF reader): the
// last digit of a code picks the hue, the digits before it the shade.

#include <cstdint>

#include "engine/Types.h"

namespace importers {

// Codes over 5 are first lowered by 5. The shade is s = hundreds + 9 x tens,
// with tens and hundreds taken from the digits (under 10: 1 and 0; under 100:
// the first digit and 0; under 1000: the middle and the first digit; under
// 10000: the second last digit and the first two digits, at most 37; from 10000
// on: 1 and 0). Negative codes read as under 10, by the digits of their size.
void P_subMap3DColour(std::int32_t lngCode, engine::Rgb& colour);
engine::Rgb map3DColour(std::int32_t lngCode);

}  // namespace importers

#include "import/Map3DColour.h"

namespace importers {

void P_subMap3DColour(std::int32_t lngCode, engine::Rgb& colour) {
    std::int64_t code = lngCode;
    if (code > 5) code -= 5;
    const std::int64_t size = code < 0 ? -code : code;
    const int d = static_cast<int>(size % 10);
    int tens = 1, hundreds = 0;
    if (code < 10) {
        // as set
    } else if (code < 100) {
        tens = static_cast<int>(code / 10);
    } else if (code < 1000) {
        tens = static_cast<int>(code / 10 % 10);
        hundreds = static_cast<int>(code / 100);
    } else if (code < 10000) {
        tens = static_cast<int>(code / 10 % 10);
        hundreds = static_cast<int>(code / 100);
        if (hundreds > 37) hundreds = 37;
    }
    const int s = hundreds + 9 * tens;
    switch (d) {
        case 1:
            colour = {s, s, 255 - s};
            break;
        case 2:
            colour = {s, 255 - s, s};
            break;
        case 3:
            colour = {255 - s, 255 - s, s};
            break;
        case 4:
            colour = {255 - s, s, s};
            break;
        case 5:
            colour = {255 - s, s, 128 - s};
            break;
        case 6:
            colour = {s, 255 - s, 255 - s};
            break;
        case 7:
            colour = {128 - s, 255 - s, 128 - s};
            break;
        case 8:
            colour = {128 - s, 255 - s, s};
            break;
        case 9:
            colour = {255 - s, 128 - s, s};
            break;
        default:
            colour = {128 - s, s, 255 - s};
            break;
    }
}

engine::Rgb map3DColour(std::int32_t lngCode) {
    engine::Rgb c;
    P_subMap3DColour(lngCode, c);
    return c;
}

}  // namespace importers

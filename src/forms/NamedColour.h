#pragma once
// A colour as the dialogs' colour boxes list it: its name and red, green, blue.

#include "engine/Types.h"

namespace forms {

struct NamedColour {
    const char* name;
    engine::Rgb colour;
};

}  // namespace forms

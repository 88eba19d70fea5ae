#pragma once
// The dispatcher's hand-over to the selection actions (delete, hide, partial hide
// and unhide, colour, name and the hide-all-except tool): the armed selection
// flag is read from the main state; the dispatcher passes what the click picked.

#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace tools {

// hPolygon: the polygon under the click (0 when the click met nothing);
// intShift: the Shift argument of the mouse-up (1 adds to the selection).
void P_subSelectAccept(core::AppContext& ctx, engine::Handle hPolygon, int intShift);

}  // namespace tools

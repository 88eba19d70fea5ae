#pragma once
// The progress helper of the line-counting readers: one message and one step of
// the bar every so many lines, with a frame each time the bar comes round.
// Readers set state.sngProgressBusy and state.lngProgressLines to 0 before they
// start.

#include <cstddef>
#include <string>

namespace core {
class AppContext;
}

namespace importers {

// Counts a call; every sngLinesBetween-th call writes strText into txtComment and
// raises the bar by sngStep. When the bar would pass 100 it goes back to 0, a
// frame is drawn and the hourglass put back.
void P_subProgressMessage(core::AppContext& ctx, float sngStep, float sngLinesBetween,
                          const std::string& strText);

// The same in two halves, so that a reader builds its text only when it shows:
//   if (progressMessageDue(ctx, 10)) progressMessageShow(ctx, 0.05f, text());
bool progressMessageDue(core::AppContext& ctx, float sngLinesBetween);
void progressMessageShow(core::AppContext& ctx, float sngStep, const std::string& strText);

// For readers that count many lines at once: how many calls of progressMessageDue
// would return false before the next one that returns true (as many as a size
// holds when none ever will), and the counting of `calls` such calls.
std::size_t progressMessageQuietCalls(const core::AppContext& ctx, float sngLinesBetween);
void progressMessageSkip(core::AppContext& ctx, std::size_t calls);

}  // namespace importers

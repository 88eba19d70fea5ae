#include "import/ProgressMessage.h"

#include <cmath>

#include "core/AppContext.h"
#include "core/MainForm.h"

namespace importers {

bool progressMessageDue(core::AppContext& ctx, float sngLinesBetween) {
    auto& s = ctx.state;
    ++s.lngProgressLines;
    // Every line when the spacing is below one (or no number at all).
    const float every = std::isfinite(sngLinesBetween) ? std::round(sngLinesBetween) : 1.0f;
    if (every <= 1.0f) return true;
    if (every >= 2147483647.0f) return false;
    return s.lngProgressLines % static_cast<long>(every) == 0;
}

void progressMessageShow(core::AppContext& ctx, float sngStep, const std::string& strText) {
    auto& s = ctx.state;
    ctx.comment(strText);
    const int before = static_cast<int>(s.sngProgressBusy);
    const float next = s.sngProgressBusy + (std::isfinite(sngStep) ? sngStep : 0.0f);
    if (next > 100.0f) {
        s.sngProgressBusy = 0;
        ctx.progress(0);
        core::p_subMainLoop(ctx, false);
        ctx.pointer(11);
        return;
    }
    s.sngProgressBusy = next < 0 ? 0 : next;
    if (static_cast<int>(s.sngProgressBusy) != before)
        ctx.progress(static_cast<int>(s.sngProgressBusy));
}

void P_subProgressMessage(core::AppContext& ctx, float sngStep, float sngLinesBetween,
                          const std::string& strText) {
    if (progressMessageDue(ctx, sngLinesBetween)) progressMessageShow(ctx, sngStep, strText);
}

}  // namespace importers

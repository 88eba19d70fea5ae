#include "import/ProgressMessage.h"

#include <cmath>

#include "core/AppContext.h"
#include "core/MainForm.h"

namespace importers {

namespace {

// Every line when the spacing is below one (or no number at all); 0 for never.
long spacing(float sngLinesBetween) {
    const float every = std::isfinite(sngLinesBetween) ? std::round(sngLinesBetween) : 1.0f;
    if (every <= 1.0f) return 1;
    if (every >= 2147483647.0f) return 0;
    return static_cast<long>(every);
}

}  // namespace

bool progressMessageDue(core::AppContext& ctx, float sngLinesBetween) {
    auto& s = ctx.state;
    ++s.lngProgressLines;
    const long every = spacing(sngLinesBetween);
    return every != 0 && s.lngProgressLines % every == 0;
}

std::size_t progressMessageQuietCalls(const core::AppContext& ctx, float sngLinesBetween) {
    const long every = spacing(sngLinesBetween);
    if (every == 0) return static_cast<std::size_t>(-1);
    // The next call counts lngProgressLines + 1; the first multiple of `every`
    // from there is the one that shows.
    long r = (ctx.state.lngProgressLines + 1) % every;
    if (r < 0) r += every;
    return static_cast<std::size_t>(r == 0 ? 0 : every - r);
}

void progressMessageSkip(core::AppContext& ctx, std::size_t calls) {
    ctx.state.lngProgressLines += static_cast<long>(calls);
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

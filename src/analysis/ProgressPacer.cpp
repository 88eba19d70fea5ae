#include "analysis/ProgressPacer.h"

#include <cmath>

#include "core/AppContext.h"
#include "core/MainForm.h"

namespace analysis {

void ProgressPacer::step(double dblStep, long every, const std::string& text) {
    ++rounds_;
    if (++sinceShown_ < (every < 1 ? 1 : every)) return;
    sinceShown_ = 0;
    if (text != ctx_.state.txtComment) ctx_.comment(text);
    if (bar_ + dblStep > 100) {
        bar_ = 0;
        ctx_.progress(0);
        core::p_subMainLoop(ctx_);
        ctx_.pointer(11);
    } else {
        bar_ += dblStep;
        ctx_.progress(static_cast<int>(std::floor(bar_)));
    }
    ctx_.ui.pumpEvents();
}

}  // namespace analysis

#pragma once
// The pacing of a long loop over polygons: every n-th round it writes the text to
// txtComment (when it differs from what is there), raises the bar and lets events
// run, so that the interrupt button can be pressed. A bar that would pass 100
// starts again at 0 with a frame and the hourglass. One pacer per run.

#include <string>

namespace core {
class AppContext;
}

namespace analysis {

class ProgressPacer {
public:
    explicit ProgressPacer(core::AppContext& ctx) : ctx_(ctx) {}

    // One round; dblStep is added to the bar every `every` rounds.
    void step(double dblStep, long every, const std::string& text);
    long rounds() const { return rounds_; }

private:
    core::AppContext& ctx_;
    long rounds_ = 0;
    long sinceShown_ = 0;
    double bar_ = 0;
};

}  // namespace analysis

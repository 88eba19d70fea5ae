#include "core/CoordinateLimit.h"

#include <cmath>
#include <vector>

#include "core/AppContext.h"

namespace core {

namespace {

bool beyond(double v) { return v > kCoordinateLimit || v < -kCoordinateLimit; }

double offsetOf(double v) {
    if (!std::isfinite(v) || !beyond(v)) return 0.0;
    return v - wrapIntoCoordinateLimit(v);
}

// The selection scope goes to whole groups, accepted without showing the form.
void selectWholeGroups(AppContext& ctx) {
    forms::Form* sel = ctx.forms.find("frm22_Selection");
    if (!sel) return;
    sel->ensureLoaded();
    if (sel->find("optGroup")) sel->setOption("optGroup");
    if (const Procedure* accept = ctx.procedures.find("P_subSelectAccept")) {
        if (accept->params.size() == 1 && accept->body) {
            std::vector<Value> args{Value(false)};
            accept->body(ctx, args);
        }
    }
}

}  // namespace

bool beyondCoordinateLimit(engine::Point3 p) { return beyond(p.x) || beyond(p.y) || beyond(p.z); }

double wrapIntoCoordinateLimit(double v) {
    if (!std::isfinite(v) || !beyond(v)) return v;
    // fmod is exact, so even a huge value lands where the stepwise wrap would,
    // without a loop that could run for ever.
    double r = std::fmod(v, kCoordinateLimit);
    if (v > 0 && r <= 0) r += kCoordinateLimit;
    if (v < 0 && r >= 0) r -= kCoordinateLimit;
    return r;
}

engine::Point3 coordinateOffsetFor(engine::Point3 c) {
    return {offsetOf(c.x), offsetOf(c.y), offsetOf(c.z)};
}

void p_subCoordinateLimitCheck(AppContext& ctx) {
    const engine::Point3 c = ctx.state.dblRotationCentre;
    // A scene back within range shows its own coordinates again.
    ctx.state.dblCoordOffset = coordinateOffsetFor(c);
    if (!beyondCoordinateLimit(c)) return;
    ctx.comment(kCoordinateLimitText);
    ctx.ui.msgBox(kCoordinateWarningText, ui::Buttons::OK, kCoordinateWarningTitle);
    selectWholeGroups(ctx);
}

}  // namespace core

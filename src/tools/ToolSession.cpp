#include "tools/ToolSession.h"

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>

#include "core/AppContext.h"
#include "forms/Frm03MirrowMain.h"

namespace tools {

namespace {

// Keyed by the context's address: registerTools starts a fresh session for every
// new context, so an address used again never sees the old one's points.
std::map<const core::AppContext*, std::unique_ptr<ToolSession>>& sessions() {
    static std::map<const core::AppContext*, std::unique_ptr<ToolSession>> all;
    return all;
}

}  // namespace

ToolSession& toolSession(core::AppContext& ctx) {
    auto& slot = sessions()[&ctx];
    if (!slot) slot = std::make_unique<ToolSession>();
    return *slot;
}

void resetToolSession(core::AppContext& ctx) { sessions()[&ctx] = std::make_unique<ToolSession>(); }

forms::Form& mainForm(core::AppContext& ctx) {
    if (!ctx.forms.find("frm03_MirrowMain"))
        ctx.forms.add(std::make_unique<forms::Frm03MirrowMain>());
    forms::Form& f = *ctx.forms.find("frm03_MirrowMain");
    f.ensureLoaded();
    return f;
}

std::string fixedText(double v, int decimals) {
    if (!std::isfinite(v)) return std::isnan(v) ? "NaN" : (v > 0 ? "Infinity" : "-Infinity");
    const double scale = std::pow(10.0, decimals);
    double r = std::round(v * scale) / scale;  // std::round goes half away from zero
    if (r == 0) r = 0;                         // no "-0.0"
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", decimals, r);
    return buf;
}

}  // namespace tools

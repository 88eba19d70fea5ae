#include "analysis/ColourMapByData.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>

#include "analysis/ColourMapForm.h"
#include "analysis/ColourScale.h"
#include "analysis/Frm28ImportFOSData.h"
#include "analysis/ProgressPacer.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"
#include "core/TextNormalise.h"

namespace analysis {

using engine::Handle;

namespace {
constexpr engine::Rgb kMidGrey{128, 128, 128};

bool fieldNumber(const std::vector<std::string>& f, long long index, double& v) {
    if (index < 0 || index >= static_cast<long long>(f.size())) return false;
    v = core::valNumber(f[static_cast<std::size_t>(index)]);
    return std::isfinite(v);
}
}  // namespace

std::vector<std::string> recordFields(std::string_view name) {
    std::string s(name);
    core::P_subNormaliseLineEnds(s);
    std::vector<std::string> out;
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = s.find('\t', start);
        if (tab == std::string::npos) {
            out.push_back(s.substr(start));
            return out;
        }
        out.push_back(s.substr(start, tab - start));
        start = tab + 1;
    }
}

int P_fncRockCodeIndex(std::string_view code) {
    static constexpr std::string_view kCodes[] = {"A", "B",  "C",  "D",  "E",  "F",  "G", "H",
                                                  "I", "DW", "SW", "PW", "MW", "HW", "CW"};
    while (!code.empty() && std::isspace(static_cast<unsigned char>(code.front())))
        code.remove_prefix(1);
    while (!code.empty() && std::isspace(static_cast<unsigned char>(code.back())))
        code.remove_suffix(1);
    std::string upper(code);
    for (char& ch : upper) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    for (std::size_t k = 0; k < std::size(kCodes); ++k)
        if (upper == kCodes[k]) return static_cast<int>(k);
    return -1;
}

Frm35ColourmapSurfaceStresses::Frm35ColourmapSurfaceStresses()
    : Form(kName, "Colourmap Surface Stresses") {
    add(forms::ControlKind::Frame, "fraMohrCoulomb", "Mohr-Coulomb");
    add(forms::ControlKind::Label, "lblRockmassStength", "Rockmass Strength:", "fraMohrCoulomb");
    add(forms::ControlKind::TextBox, "txtRockmassStength", "", "fraMohrCoulomb");
    add(forms::ControlKind::Label, "lblStrengheningFactor",
        "Strenghening Factor:", "fraMohrCoulomb");
    add(forms::ControlKind::TextBox, "txtStrengheningFactor", "", "fraMohrCoulomb");
    add(forms::ControlKind::CommandButton, "cmdAccept", "Accept").onChange = [this] { hide(); };
}

Frm35ColourmapSurfaceStresses& surfaceStressesForm(core::AppContext& ctx) {
    if (auto* f = dynamic_cast<Frm35ColourmapSurfaceStresses*>(
            ctx.forms.find(Frm35ColourmapSurfaceStresses::kName)))
        return *f;
    auto form = std::make_unique<Frm35ColourmapSurfaceStresses>();
    auto& ref = *form;
    ctx.forms.add(std::move(form));
    return ref;
}

RecordValue recordValue(core::AppContext& ctx, const DataSource& src,
                        const std::vector<std::string>& f) {
    const long long hi = static_cast<long long>(f.size()) - 1;
    const long long n = src.column;
    const std::string& s = src.source;
    RecordValue r;
    auto band = [&](long long index) {
        double v = 0;
        if (fieldNumber(f, index, v)) {
            r.kind = RecordValue::Band;
            r.value = v;
        } else {
            r.kind = RecordValue::Grey;
        }
        return r;
    };
    if (s == "optGeneralDataPoints" || s == "optCumPPV" || s == "optMaxPPV" || s == "optNumPPV") {
        if (hi < n) return r;
        return band(n);
    }
    if (s == "optSigma1" || s == "optSigma3") {
        if (hi <= n) return r;
        return band(n + 1);
    }
    if (s == "optSFinv") {
        if (hi <= n) return r;
        double top = 0, bottom = 0;
        r.kind = RecordValue::Grey;
        if (!fieldNumber(f, n + 1, top) || !fieldNumber(f, n + 2, bottom)) return r;
        const double den = src.k * bottom + src.c;
        if (den == 0 || !std::isfinite(top / den)) return r;
        r.kind = RecordValue::Band;
        r.value = top / den;
        return r;
    }
    if (s == "optCalcFOS_RCF") {
        r.kind = RecordValue::Grey;
        double s1 = 0, s3 = 0, v = 0;
        if (!fieldNumber(f, 2, s1) || !fieldNumber(f, 3, s3)) return r;
        Frm28ImportFOSData& fos = importFOSForm(ctx);
        // The rock inputs are read again for every polygon, as they stand on the form.
        if (!recolourCriterion(fos.selectedCriterion(), s1, s3, fos.rockInputs(), v)) return r;
        r.kind = RecordValue::Band;
        r.value = v;
        return r;
    }
    if (s == "optSelectDrillholes") {
        // The letters row compares the check box with -1, a value it never holds:
        // a letter code reads as a number here (0), whatever the box says.
        if (hi <= n) return r;
        band(n + 5);
        if (src.percentage && r.kind == RecordValue::Band) r.kind = RecordValue::Percentage;
        return r;
    }
    r.kind = RecordValue::Grey;
    return r;
}

void p_subColourMapByData(core::AppContext& ctx) {
    auto& form = dynamic_cast<ColourMapForm&>(colourMapForm(ctx));
    // 1
    ctx.progress(0);
    ctx.state.sngProgressBusy = 0;
    ctx.state.lngProgressLines = 0;
    ctx.ui.pumpEvents();
    ctx.ui.showModal(form);
    // 2
    if (ctx.state.bolColourMapCancelled == -1) {
        ctx.state.bolColourMapCancelled = 0;
        return;
    }
    // 3
    ctx.progress(0);
    ctx.state.clearToolFlags();
    core::p_subResetAndCleanup(ctx);
    // 4
    DataSource src;
    const auto column = core::wholeNumber(core::valNumber(form.text("cboLoadColumn")));
    src.column = column ? *column : 0;
    double dblMax = core::valNumber(form.text("cboMax"));
    double dblMin = core::valNumber(form.text("cboMin"));
    ctx.pointer(11);
    // 5
    double dblRange = 0, dblInc = 0;
    int bytScale = kScaleBrightOutside;
    P_subColourScaleSetup(ctx, dblMax, dblMin, dblRange, dblInc, bytScale);
    if (zeroIncrementStops(ctx, dblInc)) return;
    // 6
    src.source = form.selectedSource();
    src.percentage = form.checkValue("chkRQDPRintMode") == 1;
    if (src.source == "optSFinv") {
        Frm35ColourmapSurfaceStresses& sf = surfaceStressesForm(ctx);
        ctx.ui.showModal(sf);
        src.c = core::valNumber(sf.text("txtRockmassStength"));
        src.k = core::valNumber(sf.text("txtStrengheningFactor"));
    }
    // 7 to 10
    engine::Engine& eng = ctx.engine;
    ProgressPacer pacer(ctx);
    long count = 0;
    const std::string counted = "Polygons completed: ";
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (ctx.state.bolInterruptProcess) break;
        if (!eng.polygon_is_disabled(h)) {
            const std::string name = core::strEntityName(eng, h);
            if (name.compare(0, 3, core::kColourMapPrefix) == 0) {
                eng.polygon_set_color_fill(h, kMidGrey);
                const RecordValue v = recordValue(ctx, src, recordFields(name));
                if (v.kind == RecordValue::Skip) continue;
                if (v.kind == RecordValue::Percentage)
                    P_subPercentageColour(eng, h, v.value);
                else if (v.kind == RecordValue::Band)
                    P_subColourPolygon(ctx, h, dblMax, dblMin, v.value, dblRange, dblInc, bytScale);
            }
        }
        pacer.step(1, 100, counted + std::to_string(++count));
    }
    // 11
    ctx.progress(100);
    ctx.pointer(1);
    core::p_subMainLoop(ctx);
}

void registerColourMapForm(core::AppContext& ctx) {
    surfaceStressesForm(ctx);
    auto menu = [&ctx](const char* name, const char* caption,
                       std::function<void(core::AppContext&)> h) {
        core::Command c;
        c.name = name;
        c.caption = caption;
        c.menuPath = "Analysis/Colour map";
        c.handler = std::move(h);
        ctx.commands.add(std::move(c));
    };
    menu("mnuSelectColourMap1", "Colour map by data", [](core::AppContext& c) {
        c.state.bolColourMapCancelled = 0;
        p_subColourMapByData(c);
    });
    menu("mnuSelectColourMap2", "Colour map drillhole information", [](core::AppContext& c) {
        forms::Form& f = colourMapForm(c);
        f.ensureLoaded();
        f.setOption("optSelectDrillholes");
        p_subColourMapByData(c);
    });
    menu("mnuColourmapStress", "Colour map surface stresses", [](core::AppContext& c) {
        forms::Form& f = colourMapForm(c);
        f.ensureLoaded();
        f.setOption("optSigma1");
        p_subColourMapByData(c);
    });
    core::Procedure p;
    p.name = "p_subColourMapByData";
    p.body = [](core::AppContext& c, std::vector<core::Value>&) {
        p_subColourMapByData(c);
        return core::Value();
    };
    ctx.procedures.add(std::move(p));
    core::Procedure rock;
    rock.name = "P_fncRockCodeIndex";
    rock.params = {core::ParamKind::Text};
    rock.body = [](core::AppContext&, std::vector<core::Value>& a) {
        return core::Value(P_fncRockCodeIndex(a.at(0).text()));
    };
    ctx.procedures.add(std::move(rock));
}

}  // namespace analysis

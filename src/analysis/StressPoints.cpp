#include "analysis/StressPoints.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <sstream>

#include "analysis/Frm28ImportFOSData.h"
#include "analysis/ProgressPacer.h"
#include "builders/MarkerSpheres.h"
#include "builders/Meshes.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"
#include "persistence/OpenFile.h"

namespace analysis {

using engine::Handle;

namespace {

constexpr const char* kDegreeSign = "\xC2\xBA";

// The fields of one line, split at single tabs.
void splitTabs(std::string_view line, std::vector<std::string_view>& out) {
    out.clear();
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = line.find('\t', start);
        if (tab == std::string_view::npos) {
            out.push_back(line.substr(start));
            return;
        }
        out.push_back(line.substr(start, tab - start));
        start = tab + 1;
    }
}

bool readFile(const std::string& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream all;
    all << in.rdbuf();
    if (in.bad()) return false;
    text = std::move(all).str();
    return true;
}

}  // namespace

std::string stressPointName(Criterion c, int step, double s1, double s3, float value,
                            const RockInputs& rock) {
    const std::string_view code = criterionCode(c);
    if (code.empty()) return {};
    std::string name(code);
    name += '\t' + std::to_string(step) + '\t' + core::numberText(s1) + '\t' +
            core::numberText(s3) + '\t' + singleText(value) + '\t';
    if (c == Criterion::FOS) {
        name +=
            singleText(rock.ucsRockmass) + "MPa\t" + singleText(rock.frictionAngle) + kDegreeSign;
    } else {
        name += singleText(rock.ucsIntact) + "MPa";
    }
    return name;
}

StressImport readStressPoints(std::string_view text, const StressImportSettings& s,
                              const std::function<bool(const KeptPoint*)>& onLine) {
    StressImport out;
    std::vector<std::string_view> f;
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        pos = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        ++out.linesRead;
        splitTabs(line, f);
        const double step = core::valNumber(f[0]);
        if (step > s.step) break;
        const KeptPoint* kept = nullptr;
        KeptPoint p;
        if (step == s.step) {
            if (f.size() < 6) {
                out.fault = true;
                break;
            }
            double v[5];
            bool finite = true;
            for (int k = 0; k < 5; ++k) {
                v[k] = core::valNumber(f[static_cast<std::size_t>(k) + 1]);
                finite = finite && std::isfinite(v[k]);
            }
            if (!finite) {
                out.fault = true;
                break;
            }
            double s1 = v[3], s3 = v[4];
            if (s1 > s.sig1CutOff && s3 > s.sig3CutOff) {
                p.at = {v[0] * 10, v[1] * 10, v[2] * 10};
                // The cap stands for every criterion, and UCSrm is 0 unless the
                // factor of safety read it.
                if (s3 > s.rock.ucsRockmass) s3 = s.rock.ucsRockmass;
                float result = 0;
                if (s.criterion != Criterion::None &&
                    !importCriterion(s.criterion, s1, s3, s.rock, result)) {
                    out.fault = true;
                    break;
                }
                p.name = stressPointName(s.criterion, s.step, s1, s3, result, s.rock);
                // RCF hands the factor-of-safety store (0 here) to the colour test.
                const float shown =
                    (s.criterion == Criterion::FOS || s.criterion == Criterion::S1S3) ? result
                                                                                      : 0.0f;
                p.colour = markerColour(shown);
                kept = &p;
            }
        }
        if (onLine) {
            if (!onLine(kept)) break;
        } else if (kept != nullptr) {
            out.points.push_back(std::move(p));
        }
    }
    return out;
}

void mnuSphereFailCriteria(core::AppContext& ctx) {
    // 1
    ctx.progress(5);
    if (!persistence::p_subOpenNewFile(ctx, kFOSFileType)) {
        ctx.state.bolFileCancelled = 0;
        return;
    }
    core::p_subMainLoop(ctx);
    // 2
    Frm28ImportFOSData& form = importFOSForm(ctx);
    ctx.ui.showModal(form);
    if (ctx.state.bolColourMapCancelled == -1) {
        ctx.state.bolColourMapCancelled = 0;
        return;
    }
    core::p_subMainLoop(ctx);
    ctx.state.clearToolFlags();
    // 3, 4
    StressImportSettings s;
    if (form.optionValue("optFOS"))
        s.criterion = Criterion::FOS;
    else if (form.optionValue("optS1S3"))
        s.criterion = Criterion::S1S3;
    else if (form.optionValue("optRCF"))
        s.criterion = Criterion::RCF;
    const auto step = core::wholeNumber(core::valNumber(form.text("cboMinStep")));
    s.step = step ? *step : 0;
    const RockInputs all = form.rockInputs();
    if (s.criterion == Criterion::FOS) {
        s.rock.ucsRockmass = all.ucsRockmass;
        s.rock.frictionAngle = all.frictionAngle;
    } else if (s.criterion != Criterion::None) {
        s.rock.ucsIntact = all.ucsIntact;
        s.rock.downgrade = all.downgrade;
    }
    s.size = static_cast<float>(core::valNumber(form.text("cboSphereRadius"))) * 10.0f;
    s.sig1CutOff = core::valNumber(form.text("cboSig1CO"));
    s.sig3CutOff = core::valNumber(form.text("cboSig3CO"));
    // 5
    ctx.progress(0);
    ctx.pointer(11);
    engine::Engine& eng = ctx.engine;
    const Handle group = eng.group_create(kPointDataGroup);
    const std::string path = ctx.state.strFullPath;
    std::string text;
    auto fault = [&ctx] {
        ctx.pointer(1);
        ctx.ui.msgBox(kLoadFaultText, ui::Buttons::OK, kLoadFaultTitle);
    };
    if (!readFile(path, text)) return fault();
    // 6
    const bool cube = builders::cubeMarker(ctx.settings);
    const short stacks = builders::sphereBands(ctx.settings.dblSphereLatitudeBands);
    const short slices = builders::sphereBands(ctx.settings.dblSphereLongitudeBands);
    const float cubeSide =
        ctx.settings.dblSphereScale == 0 ? s.size : builders::toSingle(1.3 * s.size);
    ProgressPacer pacer(ctx);
    long count = 0;
    bool markerFault = false;
    const StressImport result = readStressPoints(text, s, [&](const KeptPoint* p) {
        if (ctx.state.bolInterruptProcess) return false;
        if (p != nullptr) {
            ++count;
            const Handle m =
                cube ? builders::P_fncCreateCube(eng, {cubeSide, cubeSide, cubeSide}, p->colour)
                     : builders::P_fncCreateSphere(eng, s.size, stacks, slices, p->colour);
            if (m == 0) {
                markerFault = true;
                return false;
            }
            core::p_subSetGroupPolygonNames(eng, m, p->name);
            eng.group_set_location(m, p->at);
            eng.group_set_father_group(m, group);
        }
        pacer.step(1, 10, "Lines completed: " + std::to_string(count));
        return true;
    });
    if (result.fault || markerFault) return fault();
    // 7
    persistence::P_subDeleteEngineLogs(ctx, ctx.state.strFolder);
    core::P_subApplyLight(ctx, group);
    core::p_subMainLoop(ctx);
    // 8
    ctx.comment(persistence::logLoadedFile(ctx, path, " added"));
    ctx.pointer(1);
    ctx.progress(100);
    ctx.ui.setFocus();
}

void registerStressPoints(core::AppContext& ctx) {
    importFOSForm(ctx);
    core::Command c;
    c.name = "mnuSphereFailCriteria";
    c.caption = "Stress points with failure criteria";
    c.menuPath = "Analysis/Stress points";
    c.handler = [](core::AppContext& cx) { mnuSphereFailCriteria(cx); };
    ctx.commands.add(std::move(c));
}

}  // namespace analysis

#include "analysis/GeometryColour.h"

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "analysis/ColourScale.h"
#include "analysis/ProgressPacer.h"
#include "builders/Geometry.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"

namespace analysis {

namespace {

using engine::Handle;

constexpr engine::Rgb kWhite{255, 255, 255};

std::string countText(long n) { return "Polygons completed: " + std::to_string(n); }

// The line of a CR LF text, "" past the last.
std::string_view lineOf(std::string_view text, int wanted) {
    std::size_t start = 0;
    for (int k = 0;; ++k) {
        const std::size_t end = text.find("\r\n", start);
        if (k == wanted)
            return text.substr(start, end == std::string_view::npos ? text.npos : end - start);
        if (end == std::string_view::npos) return {};
        start = end + 2;
    }
}

bool hasLine(std::string_view text, int wanted) {
    std::size_t start = 0;
    for (int k = 0; k < wanted; ++k) {
        const std::size_t end = text.find("\r\n", start);
        if (end == std::string_view::npos) return false;
        start = end + 2;
    }
    return true;
}

std::string without(std::string_view text, char drop) {
    std::string out;
    out.reserve(text.size());
    for (char ch : text)
        if (ch != drop) out += ch;
    return out;
}

// What runs after the command, however it ended: light back, normal pointer, a frame.
void finish(core::AppContext& ctx) {
    core::P_subApplyLight(ctx, 0);
    ctx.pointer(1);
    core::p_subMainLoop(ctx);
}

// Step 4: the two limits. Nothing when either answer is empty or cancelled.
bool askLimits(core::AppContext& ctx, std::string_view type, double& dblMin, double& dblMax) {
    const double shown = limitsUnscaled(type) ? 1.0 : 0.1;
    const double back = limitsUnscaled(type) ? 1.0 : 10.0;
    auto min = ctx.ui.inputBox(kMinimumPrompt, kMinimumTitle, core::numberText(dblMin * shown));
    if (!min || min->empty()) return false;
    dblMin = core::valNumber(*min) * back;
    auto max = ctx.ui.inputBox(kMaximumPrompt, kMaximumTitle, core::numberText(dblMax * shown));
    if (!max || max->empty()) return false;
    dblMax = core::valNumber(*max) * back;
    return true;
}

// The widening of the extremes; the first value seeds both.
struct Extremes {
    bool seeded = false;
    double min = 0, max = 0;
    void take(double v) {
        if (!seeded) {
            min = max = v;
            seeded = true;
            return;
        }
        if (v < min) min = v;
        if (v > max) max = v;
    }
};

// The vertex values of one polygon in the mode, in vertex order.
std::vector<double> vertexValues(const engine::Engine& eng, Handle h, std::string_view mode) {
    std::vector<double> out;
    const int count = eng.polygon_get_num_of_points(h);
    if (count <= 0) return out;
    if (mode == kVerticeDepth) {
        int k = 0;
        for (Handle pt = eng.polygon_get_first_point(h); pt != 0 && k < count;
             pt = eng.point_get_next_point(pt), ++k) {
            engine::Point3 p;
            if (eng.point_get_xyz(pt, p) == 0) out.push_back(p.z);
        }
    } else {
        const VertexValues v = vertexValuesOfName(core::strEntityName(eng, h));
        for (int k = 0; k < count && k < 3; ++k) out.push_back(v.v[k]);
    }
    return out;
}

}  // namespace

bool isGeometryType(std::string_view t) {
    return t == kTypeDepth || t == kTypeDip || t == kTypeDipDirection ||
           t == kTypeDipDirection360 || t == kTypeDipDirection180 || t == kTypeMiningStep ||
           t == kTypeEventDateTime;
}

bool limitsUnscaled(std::string_view t) {
    return t == kTypeDip || t == kTypeDipDirection || t == kTypeMiningStep ||
           t == kTypeEventDateTime;
}

bool yesMeansInverse(std::string_view t) {
    return !(t == kTypeMiningStep || t == kTypeEventDateTime);
}

double nameValue(std::string_view type, std::string_view name) {
    if (type == kTypeMiningStep) {
        if (name.size() <= 5) return 0;
        return core::valNumber(name.substr(5, 2));
    }
    if (type == kTypeEventDateTime) {
        if (!hasLine(name, 2)) return 0;
        const std::string text =
            without(lineOf(name, 1), '-') + "." + without(lineOf(name, 2), ':');
        return core::valNumber(text);
    }
    return 0;
}

void p_subNameValue(core::AppContext& ctx, std::string_view type, Handle lngPolygon,
                    double& dblValue) {
    dblValue = nameValue(type, core::strEntityName(ctx.engine, lngPolygon));
}

bool geometryValue(core::AppContext& ctx, Handle h, std::string_view type, double& dblValue) {
    engine::Engine& eng = ctx.engine;
    if (eng.polygon_get_num_of_points(h) <= 0) return false;
    if (type == kTypeDepth) {
        dblValue = eng.polygon_get_center(h).z;
        return true;
    }
    if (type == kTypeMiningStep || type == kTypeEventDateTime) {
        p_subNameValue(ctx, type, h, dblValue);
        return true;
    }
    std::optional<bool> fullCircle;
    if (type == kTypeDipDirection360)
        fullCircle = true;
    else if (type == kTypeDipDirection180)
        fullCircle = false;
    else if (type != kTypeDip && type != kTypeDipDirection)
        return false;
    engine::Plane plane;
    if (eng.polygon_get_plane(h, plane) != 0) return false;
    double dip = 0, direction = 0;
    builders::P_subDipAndDipDirection(ctx, fullCircle, true, true, plane.n, dip, direction);
    if (type == kTypeDip) {
        if (dip < 0 || dip > 90) dip = std::fabs(180 - dip);
        dblValue = dip;
    } else {
        dblValue = direction;
    }
    return true;
}

void p_subColourGeometry(core::AppContext& ctx, std::string_view type) {
    if (!isGeometryType(type)) return;
    engine::Engine& eng = ctx.engine;
    // 1
    const bool asked = type != kTypeDipDirection180 && type != kTypeDipDirection360;
    bool yes = false;
    if (asked)
        yes = ctx.ui.msgBox(kSenseQuestion, ui::Buttons::YesNo, kSenseTitle) == ui::Answer::Yes;
    // 2
    core::p_subResetAndCleanup(ctx);
    core::P_subLightOff(ctx, 0);
    ctx.pointer(11);
    // 3
    Extremes ext;
    double v = 0;
    if (Handle first = eng.polygon_get_first_polygon();
        first != 0 && geometryValue(ctx, first, type, v))
        ext.take(v);
    ProgressPacer pacer(ctx);
    long count = 0;
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (ctx.state.bolInterruptProcess) return finish(ctx);
        if (eng.polygon_is_disabled(h)) continue;
        eng.polygon_set_color_fill(h, kWhite);
        if (geometryValue(ctx, h, type, v)) ext.take(v);
        pacer.step(1, 100, countText(++count));
    }
    // 4
    double dblMin = ext.min, dblMax = ext.max;
    if (!askLimits(ctx, type, dblMin, dblMax)) return finish(ctx);
    // 5
    double dblRange = 0, dblInc = 0;
    int bytScale = kScaleBrightOutside;
    P_subColourScaleSetup(ctx, dblMax, dblMin, dblRange, dblInc, bytScale);
    if (zeroIncrementStops(ctx, dblInc)) return finish(ctx);
    // 6
    bool inverse = ctx.state.bolInverseColourMap == kInverseMap;
    if (asked) {
        inverse = yesMeansInverse(type) ? yes : !yes;
        ctx.state.bolInverseColourMap = inverse ? kInverseMap : kNormalMap;
    }
    ctx.pointer(11);
    ProgressPacer colouring(ctx);
    count = 0;
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (ctx.state.bolInterruptProcess) break;
        if (eng.polygon_is_disabled(h)) continue;
        if (geometryValue(ctx, h, type, v)) {
            if (!asked)
                P_subColourPolygon(ctx, h, dblMax, dblMin, v, dblRange, dblInc, bytScale);
            else if (inverse)
                P_subColourInverse(eng, h, dblMax, dblMin, v, dblRange, dblInc, bytScale);
            else
                P_subColourNormal(eng, h, dblMax, dblMin, v, dblRange, dblInc, bytScale);
        }
        colouring.step(1, 100, countText(++count));
    }
    // 7
    finish(ctx);
}

std::string_view p_subColourByNameValue(core::AppContext& ctx) {
    auto answer = ctx.ui.inputBox(kValueTypeQuestion, kValueTypeTitle, "1");
    if (!answer) return {};
    const double choice = core::valNumber(*answer);
    const std::string_view type = choice == 1   ? kTypeMiningStep
                                  : choice == 2 ? kTypeEventDateTime
                                                : std::string_view{};
    if (!type.empty()) p_subColourGeometry(ctx, type);
    return type;
}

void p_subColourVertices(core::AppContext& ctx, std::string_view mode) {
    if (mode != kVerticeDepth && mode != kVerticeValue) return;
    engine::Engine& eng = ctx.engine;
    core::p_subResetAndCleanup(ctx);
    core::P_subLightOff(ctx, 0);
    ctx.pointer(11);
    Extremes ext;
    if (Handle first = eng.polygon_get_first_polygon(); first != 0)
        for (double v : vertexValues(eng, first, mode)) ext.take(v);
    ProgressPacer pacer(ctx);
    long count = 0;
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (ctx.state.bolInterruptProcess) return finish(ctx);
        if (eng.polygon_is_disabled(h)) continue;
        eng.polygon_set_color_fill(h, kWhite);
        for (double v : vertexValues(eng, h, mode)) ext.take(v);
        pacer.step(1, 100, countText(++count));
    }
    double dblMin = ext.min, dblMax = ext.max;
    if (!askLimits(ctx, mode, dblMin, dblMax)) return finish(ctx);
    double dblRange = 0, dblInc = 0;
    int bytScale = kScaleBrightOutside;
    P_subColourScaleSetup(ctx, dblMax, dblMin, dblRange, dblInc, bytScale);
    if (zeroIncrementStops(ctx, dblInc)) return finish(ctx);
    ctx.pointer(11);
    ProgressPacer colouring(ctx);
    count = 0;
    for (Handle h = eng.polygon_get_first_polygon(); h != 0; h = eng.polygon_get_next(h)) {
        if (ctx.state.bolInterruptProcess) break;
        if (eng.polygon_is_disabled(h)) continue;
        P_subColourVertices(eng, h, dblMax, dblMin, dblRange, dblInc, bytScale, mode);
        colouring.step(1, 100, countText(++count));
    }
    finish(ctx);
}

}  // namespace analysis

#include "analysis/ColourScale.h"

#include <cmath>
#include <string>
#include <vector>

#include "analysis/ColourMapForm.h"
#include "core/AngleMath.h"
#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/NameRecords.h"
#include "core/TextNormalise.h"
#include "engine/Engine.h"

namespace analysis {

using engine::Rgb;

int channelByte(double x) {
    if (std::isnan(x)) return 0;
    const double r = core::roundHalfEven(x);
    if (r <= 0) return 0;
    if (r >= 255) return 255;
    return static_cast<int>(r);
}

Rgb outsideColour(bool bolInverse, bool bolHigh, int bytScale) {
    // Rows by scale: normal low, normal high. The inverse map swaps the two ends.
    static constexpr Rgb kRows[4][2] = {
        {{0, 0, 255}, {255, 0, 0}},
        {{0, 0, 128}, {128, 0, 0}},
        {{64, 64, 64}, {192, 192, 192}},
        {{128, 128, 128}, {255, 0, 0}},
    };
    if (bytScale < 1 || bytScale > 4) return {0, 0, 0};
    const bool highColumn = bolInverse ? !bolHigh : bolHigh;
    return kRows[bytScale - 1][highColumn ? 1 : 0];
}

Rgb bandColour(bool bolInverse, double v, double dblMax, double m, double i, int bytScale) {
    Rgb c{0, 0, 0};  // the scratch colour: what a value that fails every test gets
    if (v < m) {
        c = outsideColour(bolInverse, false, bytScale);
    } else if (v <= m + i) {
        const int x = channelByte((v - m) / i * 255);
        c = bolInverse ? Rgb{255, x, 0} : Rgb{0, x, 255};
    } else if (m + i <= v && v <= m + 2 * i) {
        const int x = channelByte((1 - (v - (m + i)) / i) * 255);
        c = bolInverse ? Rgb{x, 255, 0} : Rgb{0, 255, x};
    } else if (m + 2 * i <= v && v <= m + 3 * i) {
        const int x = channelByte((v - (m + 2 * i)) / i * 255);
        c = bolInverse ? Rgb{0, 255, x} : Rgb{x, 255, 0};
    } else if (m + 3 * i <= v && v <= m + 4 * i) {
        const int x = channelByte((1 - (v - (m + 3 * i)) / i) * 255);
        c = bolInverse ? Rgb{0, x, 255} : Rgb{255, x, 0};
    } else if (v > dblMax) {
        c = outsideColour(bolInverse, true, bytScale);
    }
    return c;
}

Rgb percentageColour(double v) {
    if (v == -1.0) return {0, 0, 0};
    if (v < 0) return {55, 55, 55};
    if (v < 25) return {255, 0, 0};
    if (v < 50) return {255, 255, 0};
    if (v < 75) return {0, 255, 0};
    if (v < 90) return {0, 255, 255};
    if (v <= 100) return {0, 0, 255};
    if (v > 100) return {205, 205, 205};
    return {0, 0, 0};  // NaN: no zone holds it
}

void P_subColourScaleSetup(core::AppContext& ctx, double& dblMax, double& dblMin, double& dblRange,
                           double& dblInc, int& bytScale) {
    dblRange = dblMax - dblMin;
    dblInc = (dblMax - dblMin) / 4.0;
    forms::Form& form = colourMapForm(ctx);
    form.ensureLoaded();
    for (int k = 0; k < 4; ++k) {
        const forms::Control* c = form.find(ColourMapForm::kScaleOptions[k]);
        if (c != nullptr && c->value != 0) {
            bytScale = k + 1;
            return;
        }
    }
}

bool zeroIncrementStops(core::AppContext& ctx, double dblInc) {
    if (dblInc != 0) return false;
    ctx.ui.msgBox(kZeroIncrementText, ui::Buttons::OK, kZeroIncrementTitle);
    ctx.pointer(1);
    return true;
}

void P_subColourPolygon(core::AppContext& ctx, engine::Handle lngPolygon, double dblMax,
                        double dblMin, double dblValue, double dblRange, double dblInc,
                        int bytScale) {
    const short flag = ctx.state.bolInverseColourMap;
    if (flag == kNormalMap)
        P_subColourNormal(ctx.engine, lngPolygon, dblMax, dblMin, dblValue, dblRange, dblInc,
                          bytScale);
    else if (flag == kInverseMap)
        P_subColourInverse(ctx.engine, lngPolygon, dblMax, dblMin, dblValue, dblRange, dblInc,
                           bytScale);
}

void P_subColourNormal(engine::Engine& eng, engine::Handle lngPolygon, double dblMax, double dblMin,
                       double dblValue, double /*dblRange*/, double dblInc, int bytScale) {
    eng.polygon_set_color_fill(lngPolygon,
                               bandColour(false, dblValue, dblMax, dblMin, dblInc, bytScale));
}

void P_subColourInverse(engine::Engine& eng, engine::Handle lngPolygon, double dblMax,
                        double dblMin, double dblValue, double /*dblRange*/, double dblInc,
                        int bytScale) {
    eng.polygon_set_color_fill(lngPolygon,
                               bandColour(true, dblValue, dblMax, dblMin, dblInc, bytScale));
}

void P_subVertexColour(double dblValue, double dblMax, double dblMin, double /*dblRange*/,
                       double dblInc, int bytScale, Rgb& bytColour) {
    bytColour = bandColour(true, dblValue, dblMax, dblMin, dblInc, bytScale);
}

VertexValues vertexValuesOfName(std::string_view name) {
    std::string text(name);
    core::P_subNormaliseLineEnds(text);
    VertexValues out;
    std::size_t start = 0;
    for (int k = 0; k < 3; ++k) {
        if (start > text.size()) break;
        std::size_t tab = text.find('\t', start);
        if (tab == std::string::npos) tab = text.size();
        out.v[k] = core::valNumber(std::string_view(text).substr(start, tab - start));
        start = tab + 1;
    }
    return out;
}

void P_subColourVertices(engine::Engine& eng, engine::Handle lngPolygon, double dblMax,
                         double dblMin, double dblRange, double dblInc, int bytScale,
                         std::string_view strMode) {
    const int count = eng.polygon_get_num_of_points(lngPolygon);
    if (count <= 0) return;
    const bool depth = strMode == "VerticeDepth";
    if (!depth && strMode != "VerticeValue") return;
    VertexValues values;
    if (!depth) values = vertexValuesOfName(core::strEntityName(eng, lngPolygon));
    int k = 0;
    for (engine::Handle pt = eng.polygon_get_first_point(lngPolygon); pt != 0 && k < count;
         pt = eng.point_get_next_point(pt), ++k) {
        double value = 0;
        if (depth) {
            engine::Point3 p;
            if (eng.point_get_xyz(pt, p) != 0) continue;
            value = p.z;
        } else {
            if (k >= 3) break;
            value = values.v[k];
        }
        Rgb c;
        P_subVertexColour(value, dblMax, dblMin, dblRange, dblInc, bytScale, c);
        eng.point_set_rgb(pt, c);
    }
}

void P_subPercentageColour(engine::Engine& eng, engine::Handle lngPolygon, double dblValue) {
    eng.polygon_set_color_fill(lngPolygon, percentageColour(dblValue));
}

}  // namespace analysis

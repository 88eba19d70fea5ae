#pragma once
// One number to one colour: four equal bands between the limits of the scale, and
// the colours of the four scales outside them. Every colour map of the program goes
// through here; nothing about a mapping is stored on the polygon but its colour.
//
// The band tests run in a fixed order and the first that holds wins, so a value
// on a band edge takes the lower band's colour. A value that passes none of them
// (at most the maximum, yet just above min + 4 * inc through rounding of the sum)
// keeps the scratch colour and the polygon turns black: kept so on purpose.

#include <string_view>

#include "engine/Types.h"

namespace engine {
class Engine;
}
namespace core {
class AppContext;
}

namespace analysis {

// The four treatments of a value outside the limits (bytScale, optCM1 to optCM4).
inline constexpr int kScaleBrightOutside = 1;
inline constexpr int kScaleDarkOutside = 2;
inline constexpr int kScaleGreyOutside = 3;
inline constexpr int kScaleGreyAndBright = 4;

// The sense of the shared flag bolInverseColourMap (a 16-bit boolean).
inline constexpr short kNormalMap = 0;    // low values blue, high values red
inline constexpr short kInverseMap = -1;  // low values red, high values blue

// The box a caller shows when the increment is 0.
inline constexpr const char* kZeroIncrementText = "The Maximum and Minimum values are the same";
inline constexpr const char* kZeroIncrementTitle = "ERROR: Increment Value = 0";

// A channel in double precision to a byte: nearest integer, an exact half to the
// even one. Out of range values are held to 0..255 and NaN gives 0.
int channelByte(double x);

// The colour outside the limits: below the minimum (high false) or above the
// maximum (high true), for the map and scale. A scale other than 1 to 4 gives black.
engine::Rgb outsideColour(bool bolInverse, bool bolHigh, int bytScale);

// The band colour of a value; dblMax is only read by the last test (v > max).
engine::Rgb bandColour(bool bolInverse, double dblValue, double dblMax, double dblMin,
                       double dblInc, int bytScale);

// The distinct percentage zones (no data -1.0 black, dark grey below 0, red, yellow,
// green, light blue, dark blue, light grey above 100).
engine::Rgb percentageColour(double dblValue);

// Range and increment (a quarter of the range) from the limits, then the scale from
// the option buttons optCM1 to optCM4 of frm29_ColourMap, tested in that order; with
// none on, bytScale keeps its value. The form is loaded (not shown) when it was not.
void P_subColourScaleSetup(core::AppContext& ctx, double& dblMax, double& dblMin, double& dblRange,
                           double& dblInc, int& bytScale);

// The caller's check after the setup: an increment of 0 shows the box, puts the normal
// pointer back and returns true (colour nothing then).
bool zeroIncrementStops(core::AppContext& ctx, double dblInc);

// By the shared flag: 0 the normal map, -1 the inverse, any other value nothing.
void P_subColourPolygon(core::AppContext& ctx, engine::Handle lngPolygon, double dblMax,
                        double dblMin, double dblValue, double dblRange, double dblInc,
                        int bytScale);
void P_subColourNormal(engine::Engine& eng, engine::Handle lngPolygon, double dblMax, double dblMin,
                       double dblValue, double dblRange, double dblInc, int bytScale);
void P_subColourInverse(engine::Engine& eng, engine::Handle lngPolygon, double dblMax,
                        double dblMin, double dblValue, double dblRange, double dblInc,
                        int bytScale);

// One vertex colour, always by the inverse map whatever the shared flag says.
void P_subVertexColour(double dblValue, double dblMax, double dblMin, double dblRange,
                       double dblInc, int bytScale, engine::Rgb& bytColour);

// Vertex colours of one polygon. strMode "VerticeDepth": the height of each vertex.
// "VerticeValue": fields 0, 1 and 2 of the name (line ends normalised, split at tabs)
// for vertices 0, 1 and 2; a missing field reads 0 and a fourth vertex or later keeps
// its colour, since the name carries three values. Another mode does nothing.
void P_subColourVertices(engine::Engine& eng, engine::Handle lngPolygon, double dblMax,
                         double dblMin, double dblRange, double dblInc, int bytScale,
                         std::string_view strMode);

// The three values of a "VerticeValue" name.
struct VertexValues {
    double v[3] = {0, 0, 0};
};
VertexValues vertexValuesOfName(std::string_view name);

void P_subPercentageColour(engine::Engine& eng, engine::Handle lngPolygon, double dblValue);

}  // namespace analysis

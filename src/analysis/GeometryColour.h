#pragma once
// Colour maps of what the polygons are rather than of data they carry: the height
// of their centre, dip, dip direction, the mining step or event time in their name,
// or the values at their vertices. Every loop shows progress and stops on the
// interrupt button; what was coloured stays coloured, the rest stays white.

#include <string_view>

#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace analysis {

// The types p_subColourGeometry takes.
inline constexpr std::string_view kTypeDepth = "Depth";
inline constexpr std::string_view kTypeDip = "Dip";
inline constexpr std::string_view kTypeDipDirection = "DipDirection";
inline constexpr std::string_view kTypeDipDirection360 = "DipAndDipDirection360";
inline constexpr std::string_view kTypeDipDirection180 = "DipDirection180";
inline constexpr std::string_view kTypeMiningStep = "Mining Step";
inline constexpr std::string_view kTypeEventDateTime = "Event Date Time";
// The modes p_subColourVertices takes.
inline constexpr std::string_view kVerticeDepth = "VerticeDepth";
inline constexpr std::string_view kVerticeValue = "VerticeValue";

inline constexpr const char* kSenseQuestion =
    "Select 'Yes' for Normal Colourmapping and 'No' for Inverse Colourmapping";
inline constexpr const char* kSenseTitle = "Colourmap Selection";
inline constexpr const char* kValueTypeQuestion =
    "'1' for 'Mining Step' and '2' for 'Seismic Event Date/Time'";
inline constexpr const char* kValueTypeTitle = "Value Type Selection";
inline constexpr const char* kMinimumPrompt = "Change the Minimum Value";
inline constexpr const char* kMinimumTitle = "Current minimum value";
inline constexpr const char* kMaximumPrompt = "Change the Maximum Value";
inline constexpr const char* kMaximumTitle = "Current maximum value";

bool isGeometryType(std::string_view strColourMapType);
// The limits of these types are shown as they are; every other type (depth, the
// folded and full-circle dip directions, the vertex modes) in metres, a tenth of
// the scene units, and multiplied by 10 again on the way back.
bool limitsUnscaled(std::string_view strColourMapType);
// The map that the answer Yes to the sense question selects: the inverse (red at low
// values) for depth, dip and dip direction, the normal one for the mining step and
// the event time.
bool yesMeansInverse(std::string_view strColourMapType);

// The value in a name: "Mining Step" the two characters ending at position 7 as a
// number; "Event Date Time" the second line (date without "-") and the third (time
// without ":") read as date.time. Another type or a name without them gives 0.
double nameValue(std::string_view strColourMapType, std::string_view name);
void p_subNameValue(core::AppContext& ctx, std::string_view strColourMapType,
                    engine::Handle lngPolygon, double& dblValue);

// The value of a polygon for the type; false when it has none (no plane for the
// dip types, an unknown type, a bad handle).
bool geometryValue(core::AppContext& ctx, engine::Handle lngPolygon,
                   std::string_view strColourMapType, double& dblValue);

// The whole command for one type: sense question where it applies, white scene,
// limits, colouring, light back on.
void p_subColourGeometry(core::AppContext& ctx, std::string_view strColourMapType);
// mnuColourMapOnPolyValue: asks for the value type ("1" mining step, "2" event date
// and time) and colours by it; another answer, or none, does nothing. Returns the
// type it coloured by, "" when none.
std::string_view p_subColourByNameValue(core::AppContext& ctx);
// Vertex colours by height ("VerticeDepth") or by the three values of the name
// ("VerticeValue"), always on the inverse map.
void p_subColourVertices(core::AppContext& ctx, std::string_view strColourMapType);

}  // namespace analysis

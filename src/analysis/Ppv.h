#pragma once
// Peak particle velocity of seismic events at the polygons of the model: the
// formula, the reading of one event line and the running record a polygon keeps
// in its name ("CM_PPVel", cumulative, maximum, hits, tab separated).

#include <optional>
#include <string>
#include <string_view>

#include "engine/Types.h"

namespace engine {
class Engine;
}

namespace analysis {

inline constexpr const char* kPpvRecordTag = "CM_PPVel";
inline constexpr const char* kPpvStartRecord = "CM_PPVel\t0\t0\t0";
inline constexpr const char* kDamagingEventsGroup = "Damaging Seismic Events";
inline constexpr engine::Rgb kPpvNoHitColour{128, 128, 128};
// The smallest distance before any polygon is seen.
inline constexpr double kPpvNoDistance = 1e+300;

inline constexpr const char* kSeismicErrorText =
    "Associated seismic information could not be found OR The seismic file is invalid";
inline constexpr const char* kSeismicErrorTitle = "Seismic information error";
inline constexpr const char* kPpvCountText = "Number of Seismic Events evaluated: ";

// The sign of each axis and the swap of x and y that an event file is read with.
struct CoordConvention {
    int sign[3] = {1, 1, 1};
    bool swapXY = false;
};

// One event: its position in scene units (ten to a metre) and its local magnitude.
struct PpvEvent {
    engine::Point3 position;
    double ml = 0;
};

// A text that is a number as a whole (blanks around it allowed), as the strict
// conversion takes it; nothing for anything else, and for a value beyond a double.
std::optional<double> strictNumber(std::string_view text);

// One line of an event file: separators normalised (5 rounds) into `normalised`,
// then x, y, z and ML read by position. A first field that is empty adds 1 to every
// value (not to the positions). Nothing when a field is missing or not a number,
// or a position is beyond the range of a double.
std::optional<PpvEvent> readPpvEventLine(std::string_view line, const CoordConvention& conv,
                                         std::string& normalised);

// The distance in metres between two points in scene units.
double ppvDistance(const engine::Point3& a, const engine::Point3& b);
// PPV = exp(K1 * ML + K2 - ln(D)), both natural. K1 and K2 are single precision.
double ppvAt(float sngK1, float sngK2, double dblML, double dblDistance);
// The distance in metres within which an event reaches the threshold, from the
// formula solved for D; nothing when that is no finite positive number.
std::optional<double> ppvReach(float sngK1, float sngK2, double dblML, double dblThreshold);

// The record after one more hit of the value, from the name it had. False (the name
// unchanged) when the new cumulative value is not finite or the hits pass 16 bits.
bool ppvRecordAfterHit(std::string_view oldName, double dblPPV, std::string& newName,
                       double& dblCumulative);

// The three counters of a record (0 for what is missing or no number).
struct PpvRecord {
    double cumulative = 0, maximum = 0;
    long hits = 0;
};
PpvRecord readPpvRecord(std::string_view name);

}  // namespace analysis

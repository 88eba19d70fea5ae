#pragma once
// Seismic event lists: one small sphere or cube per event, sized and coloured by
// its local magnitude, under one group "Seismic data". These are the pieces the
// readers share: the coordinate convention of frm21_DataChanges, the reading of
// a QkL or MS line, the date and time of an event, its record and its marker.

#include <string>
#include <string_view>
#include <vector>

#include "engine/Types.h"

namespace core {
class AppContext;
struct Settings;
}  // namespace core

namespace importers {

inline constexpr const char* kSeismicGroup = "Seismic data";
inline constexpr const char* kBitmapGroup = "BitmapGroup";
inline constexpr const char* kSeismicRecordTag = "PR_SEvnt";
inline constexpr const char* kEventsLoadedText = "Events loaded: ";
// A line of an MS list without its magnitude.
inline constexpr double kMsDefaultMagnitude = 0.25;

inline constexpr const char* kQkLPrompt =
    "Data must be in the format 'Date, Time, X, Y, Z, ML', for example "
    "'20060629 132944 87333 56893 -1222 1.2'";
inline constexpr const char* kMsPrompt =
    "Data must be in the format 'X, Y, Z, ML', for example '87333 56893 -1222 1.2'";

// The sign of each axis as the file is read and the swap of the first two values.
struct SeismicConvention {
    short intCoordSign[3] = {1, 1, 1};
    bool bolSwitchXandY = false;
};

// A position from the first two values and the third as they stand in the file:
// each times its own axis sign and 10; the swap moves the first value (with the
// sign of X) to Y and the second (with the sign of Y) to X.
engine::Point3 seismicPosition(const SeismicConvention& conv, double first, double second,
                               double third);

// "YYYYMMDD" as "YYYY-MM-DD": the first four, two from the fifth, the last two.
// Shorter texts give shorter pieces, as they stand.
std::string seismicDate(std::string_view field);
// A string of up to six digits as "HH:MM:SS", filled from the left with zeros.
// Other lengths are kept as they stand.
std::string seismicTime(std::string_view field);

engine::Rgb seismicMagnitudeColour(double dblML);
// The marker radius in scene units: R times 10 when S is 0, else S * e^((S/8)*ML) * 10.
double seismicMarkerRadius(double dblSphereScale, double dblSphereRadius, double dblML);

// One event as a line gives it.
struct SeismicEvent {
    engine::Point3 position;
    double ml = 0;
    std::string date, time;  // QkL only
};

using SeismicFields = std::vector<std::string_view>;
// The fields a reader keeps of a line (the shift and the six of a QkL line).
inline constexpr std::size_t kSeismicFieldsKept = 8;

// The fields of a line after the separator normaliser; `count` is how many the
// line has. A line too short for its format is an ImportFault.
SeismicEvent readQkLFields(const SeismicFields& f, std::size_t count,
                           const SeismicConvention& conv);
// X, Y, Z and ML; without ML the magnitude is 0.25.
SeismicEvent readMsFields(const SeismicFields& f, std::size_t count, const SeismicConvention& conv);

// The PR_SEvnt record of a QkL event: tag, date, time and "X\tY\tZ\tML" (scene
// units), joined by CR LF.
std::string seismicRecord(const SeismicEvent& e);

// The marker of one event: sphere (or cube when the settings ask for cubes) in
// the magnitude's size, every polygon named `name`, placed on the position, its
// group under `father`. False for an event of radius 0 (no marker). A size or a
// position beyond the range of the numbers is an ImportFault.
bool placeSeismicEvent(core::AppContext& ctx, const engine::Point3& position, double dblML,
                       const engine::Rgb& colour, std::string_view name, engine::Handle father);

// The top group of that name (no father), made when there is none.
engine::Handle seismicGroup(core::AppContext& ctx, const char* name);

}  // namespace importers

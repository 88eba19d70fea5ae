#pragma once
// The centre exports: a point for each polygon, entity or group, with an
// off-set point into the rock mass or with the name record beside it; and the
// polygon data list.

#include <string>

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kDepthTitle = "Sample Point Depth";
inline constexpr const char* kDepthPrompt = "Fill depth for the sample point into the rockmass";
inline constexpr const char* kDepthDefault = "0.75";
// Groups of this many polygons or fewer are markers, kept out of the "Group" list.
inline constexpr int kGroupCentreMinPolygons = 28;

// strType "Poly", "Entity" or "Group"; the flags are 16-bit, -1 for true. True
// when a file was saved.
bool P_subExportCentres(core::AppContext& ctx, const std::string& strType, short bolWithOffset,
                        short bolWithData);
// A tab and the name of each enabled polygon a line.
bool P_subExportPolyData(core::AppContext& ctx);

}  // namespace persistence

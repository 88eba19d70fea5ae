#pragma once
// The seismic list: the name record of each visible group's first polygon.

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kSeismicDataType = "Seismic Data";

// Each name as it stands, followed by CR LF, handed to the save dialog.
bool P_subExportSeisInfo(core::AppContext& ctx);

}  // namespace persistence

#pragma once
// The wireframe exports: faces as a DXF of one entities section, and the Map3D
// point lists whose pen codes draw each polygon.

#include <string>

namespace core {
class AppContext;
}

namespace persistence {

inline constexpr const char* kDxfFileType = "DXF-File";
inline constexpr const char* kPntFileType = "PNT-File";

// "GeneralDXF" writes a 3DFACE for each enabled polygon; any other type writes
// the empty section. True when a file was saved.
bool P_subExportDXF(core::AppContext& ctx, const std::string& strType);
// "Points4": each polygon closed by a copy of its first point; "Points3": the
// first three points of each polygon. True when a file was saved.
bool P_subExportPNT(core::AppContext& ctx, const std::string& strType);

// The colour as the DXF export writes it: red + 256 green + 65536 blue.
long packedColour(int r, int g, int b);

}  // namespace persistence

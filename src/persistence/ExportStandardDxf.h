#pragma once
// A DXF that strict readers take: a header with the version, a layer table with
// a layer for each group of the enabled polygons, and 3DFACE entities in true
// colour. Polygons of more than four corners are split into a fan of triangles.

#include <string>
#include <string_view>

namespace core {
class AppContext;
}

namespace persistence {

// The DXF version written: the first that has true colour (group 420).
inline constexpr const char* kStandardDxfVersion = "AC1018";

// True when a file was saved.
bool exportStandardDxf(core::AppContext& ctx);

// The layer a group's name gives: characters a layer name may not hold become
// "_", and a name with nothing left is layer "0".
std::string dxfLayerName(std::string_view groupName);

// The true colour as group 420 holds it: 65536 red + 256 green + blue.
long dxfTrueColour(int r, int g, int b);

}  // namespace persistence

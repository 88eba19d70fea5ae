#pragma once
// The readers of the Map3D point files: one line is one point, its fields
// separated by any mix of blanks, commas and tabs, a leading separator shifting
// every column one to the right. Coordinates are metres in the file and
// decimetres in the scene (times 10).

#include <string>

namespace core {
class AppContext;
}

namespace importers {

inline constexpr const char* kAscGroup = "ASCModel";
inline constexpr const char* kConstructionGroup = "NextModel";
inline constexpr const char* kConstructionStringsGroup = "AllMap3DLineGroups";
inline constexpr const char* kLinesLoadedText = "Number of data lines loaded: ";

// ASC wireframes into "ASCModel": four lines make a quadrilateral facet cut along
// its first diagonal into triangles coloured by the first line's code. With
// bolVerticeData the last column is a value at the point (and the triangles are
// named by the values of their corners); with bolTwoSided each triangle is also
// built facing the other way. An interrupt or a fault shows the "Warning Message" box.
void importMap3DAsc(core::AppContext& ctx, const std::string& strMode, bool bolVerticeData,
                    bool bolTwoSided);

// Construction wireframes into "NextModel": five lines a facet (four corners and
// a closing line), both sides, coloured by the first line's code.
void importMap3DConstructionWireframes(core::AppContext& ctx, const std::string& strMode);

// Construction strings: segments between lines whose following line has pen code 2,
// built in the shape and size chosen in frm12_Excavation, one "NextModel" group a
// string under "AllMap3DLineGroups".
void importMap3DConstructionStrings(core::AppContext& ctx, const std::string& strMode);

// The Map3D entries of the import menus.
void registerMap3DReaders(core::AppContext& ctx);

}  // namespace importers

#pragma once
// Drillholes enter the scene in steps: collars (a cube a hole), surveys (the hole
// walked interval by interval from its collar), then logged intervals and oriented
// joints placed along the surveyed holes. Nothing is kept beside the scene: each
// step finds what the earlier one made by the names of its polygons.

#include <string>

#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace importers {

inline constexpr const char* kCollarGroup = "DH Collar data";
inline constexpr const char* kSurveyGroup = "DH Survey data";
inline constexpr const char* kSurveyHoleGroup = "DH Survey hole";
inline constexpr const char* kAttributeGroup = "DH Attribute data";
inline constexpr const char* kAttributeHoleGroup = "DH Attribute hole";
inline constexpr const char* kJointGroup = "DH Oriented Joint data";
inline constexpr const char* kJointHoleGroup = "DH Orientated Joints";
inline constexpr const char* kPyramidGroup = "Pyramid";

inline constexpr const char* kCollarName = "DHCollar";
inline constexpr const char* kSurveyName = "DHSurvey ";
inline constexpr const char* kAttributeName = "CM_DHAtr";
inline constexpr const char* kJointName = "CM_OriJo";

inline constexpr engine::Rgb kSurveyColour{179, 179, 13};
inline constexpr engine::Rgb kAttributeColour{179, 13, 13};
inline constexpr engine::Rgb kPlaneColour{235, 15, 15};
inline constexpr engine::Rgb kPyramidColour{15, 235, 15};
inline constexpr engine::Rgb kSphereColour{15, 15, 235};

// The desurvey step: `end` = `start` moved `length` (scene units) along the
// azimuth and plunge (degrees, positive plunge down). Azimuth 0 and 45, plunge 45
// and 90 are nudged first, in the caller's variables too. With sngAxisRotation 0
// the azimuth turns from +x towards -y; with 0.5 it is measured from +y towards +x.
void P_subNextHolePoint(const engine::Point3& start, double length, double& azimuth, double& plunge,
                        engine::Point3& end, float sngAxisRotation);

void importDrillholeCollars(core::AppContext& ctx);
void importDrillholeSurveys(core::AppContext& ctx);
void importDrillholeAttributes(core::AppContext& ctx);
// bolDipAndDipDirection: the two angle columns are dip and dip direction rather
// than alpha and beta.
void importOrientedJoints(core::AppContext& ctx, bool bolDipAndDipDirection);

// The drillhole entries of the import menus.
void registerDrillholeReaders(core::AppContext& ctx);

}  // namespace importers

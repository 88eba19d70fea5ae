#pragma once
// The steps of the mouse-up chain. Each takes the click when its flag is armed
// (true) and leaves the flags armed for what follows; false when its flags are off.

#include <string>

#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace tools {

inline constexpr int kPickPointer = 14;
inline constexpr const char* kAddedInfoGroup = "AddedInfoGroup";

struct Click {
    int shift = 0;
    double x = 0, y = 0;
};

bool stepNewRotation(core::AppContext& ctx, const Click& c);
bool stepMoveCopy(core::AppContext& ctx, const Click& c);
bool stepMeasure(core::AppContext& ctx, const Click& c);
bool stepExcavation(core::AppContext& ctx, const Click& c);
bool stepPlanes(core::AppContext& ctx, const Click& c);
bool stepMarker(core::AppContext& ctx, const Click& c);
bool stepPolygon(core::AppContext& ctx, const Click& c);
bool stepObtainColour(core::AppContext& ctx, const Click& c);
bool stepPointMove(core::AppContext& ctx, const Click& c);

// Ends a measure that is cut short: the question about the yellow line when the
// chain has length, then the reset.
void finishMeasure(core::AppContext& ctx);
// The point move cut short: the picked object lit and opaque again.
void restorePointMove(core::AppContext& ctx);

// Helpers shared by the steps.
void arm(core::AppContext& ctx, const char* off, const char* on);
// A fresh "AddedInfoGroup" for the next object(s) and a zero running length.
void newAddedInfoGroup(core::AppContext& ctx);
// Pick marker `which` at p; false (after the builder's box and a reset) on failure.
bool pickMarkerAt(core::AppContext& ctx, int which, const engine::Point3& p);
// The rubber line from p to the pointer.
void rubberFrom(core::AppContext& ctx, const engine::Point3& p);
// The dip and direction of the line a to b as the measure writes them.
void lineDipDirection(core::AppContext& ctx, const engine::Point3& a, const engine::Point3& b,
                      double& dip, double& direction);

}  // namespace tools

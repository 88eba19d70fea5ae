#pragma once
// Camera placements that show a whole scene, for pictures made without a person
// at the window.

#include <optional>
#include <string_view>

#include "engine/Engine.h"

namespace render {

// Where the camera looks: straight down with north up, towards the north,
// towards the east, or down towards the north-east from the south-west.
enum class View { Top, North, East, Iso };

std::optional<View> parseView(std::string_view name);
const char* viewName(View v);

// Aims the engine's default camera at the bounding box of group 0 from the
// view's side (zoom 24 for iso, a long lens of zoom 2 for the others) so that the whole box fits a
// window of width x height, and sets the near and far planes around it. False when the scene has no
// polygons.
bool frameScene(engine::Engine& e, View view, int width, int height);

}  // namespace render

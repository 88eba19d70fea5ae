#pragma once
// Window-space geometry drawn over the scene: the label texts and 2D lines.
// Coordinates are window pixels from the top left.

#include <vector>

#include "engine/Engine.h"
#include "render/SceneCache.h"

namespace render {

// Height of a text line in pixels at the scale the labels are drawn.
inline constexpr float kTextScale = 1.5f;

// Appends the triangles of one text: its top left corner at (x, y) pixels.
// Lines of the text are split at line feeds.
void appendText(std::vector<Vertex>& out, const std::string& text, float x, float y,
                engine::Rgb colour, float scale = kTextScale);
// Text items place their top left corner at a percentage of the window.
void appendTexts(std::vector<Vertex>& out, const std::vector<engine::TextItem>& texts, int width,
                 int height);
// Width in pixels of the widest line of a text at the given scale.
float textWidth(const std::string& text, float scale = kTextScale);

}  // namespace render

#pragma once
// A small built-in mine for showing the window and the renderer with no data at
// hand: a shaft, a decline ramp spiralling down, level drives and coloured stopes,
// a surface outline.

#include "engine/Engine.h"

namespace render {

// Adds the demo to the engine's world (starting an empty world when none is
// loaded); returns the top group of the demo, 0 on failure.
engine::Handle buildDemoScene(engine::Engine& e);

// A closed box seen from outside: half-axis vectors ex, ey, ez (right-handed) about
// a centre, six faces in the group, filled and shaded by a fixed sun. Returns the
// number of faces the engine took.
int addShadedBox(engine::Engine& e, engine::Handle group, engine::Point3 centre, engine::Point3 ex,
                 engine::Point3 ey, engine::Point3 ez, engine::Rgb colour, int translucent = 0);

}  // namespace render

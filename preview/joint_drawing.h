#pragma once

#include "preview/draw_list.h"
#include "preview/draw_style.h"
#include "preview/scene_frame.h"

namespace jostle {

/// Adds the joints of a scene, each kind in its colour and with a glyph of its own: a rod with end bars for a distance
/// (a dashed one if it can stretch), a diamond for a pivot with the arc of its limits and an arrow for its motor, a
/// cylinder with a rod along the axis for a piston, a coil for a spring. Selected ones are dashed, in the selection's
/// colour.
/// @param unit  composition pixels in one picture pixel
void drawJoints(const SceneFrame& frame, const DrawStyle& style, float unit, DrawList& list);

/// Adds the link from each `AEmatic` body's anchor, as a dot, to the point that pulls it, as a ring.
void drawAEmaticLinks(const SceneFrame& frame, const DrawStyle& style, float unit, DrawList& list);

} // namespace jostle

#pragma once

#include "preview/body_drawing.h"

namespace jostle {

/// Adds the sign of a state in a body's middle: a bar on hatched ground for static, a crescent for dormant, a diamond
/// (a keyframe) for one led by its layer, a cross for dead, a clock for one whose time is not now. A live body has
/// none, nor one that is too small for it.
/// @param fill  the body's; the sign is dark or light, whichever stands out
/// @param unit  composition pixels in one picture pixel
void drawStateSign(BodyState state, const PlacedBody& placed, Rgba fill, const DrawStyle& style, float unit,
                   DrawList& list);

} // namespace jostle

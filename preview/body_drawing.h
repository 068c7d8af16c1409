#pragma once

#include "preview/body_shapes.h"
#include "preview/draw_list.h"
#include "preview/draw_style.h"
#include "simulation/scene.h"

namespace jostle {

/// What decides how a body is drawn.
enum class BodyState {
    Live,
    Led, ///< it follows the keyframes of its layer
    Static,
    Dormant, ///< and not woken yet
    OutOfTime,
    Dead,
};

/// @param outOfTime, dormant  on the frame that is drawn
[[nodiscard]] BodyState bodyState(const BodyRecord& record, bool outOfTime, bool dormant);

/// Adds a body's fill and outline, in the colours and the kind of line that tell its state: dashed for one that waits,
/// faded for one that takes no part, the static highlight for one that never moves, the selection highlight over any of
/// them. A small sign inside tells the same without colours.
/// @param unit  composition pixels in one picture pixel
void drawBody(const BodyRecord& record, BodyState state, const PlacedBody& placed, const ViewOptions& options,
              const DrawStyle& style, float unit, DrawList& list);

/// Adds the corners around a selected body.
void drawSelectionCorners(const PlacedBody& placed, const DrawStyle& style, float unit, DrawList& list);

/// Adds how far a magnet reaches: a dashed circle with four arrows, inwards if it attracts and outwards if it repels.
/// @param center  of the body's mass, composition pixels
/// @param pulls   whether it acts now; paler if not
void drawMagnetReach(const BodyRecord& record, b2Vec2 center, bool pulls, const DrawStyle& style, float unit,
                     DrawList& list);

} // namespace jostle

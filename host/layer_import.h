#pragma once

#include <optional>
#include <span>

#include "host/chain.h"
#include "host/import_report.h"
#include "host/messages.h"
#include "simulation/scene.h"

namespace jostle {

/// Reads the layers of the active composition into a scene.
///
/// Replaces the bodies and the facts of the composition; global properties and preferences stay. Each visible flat
/// layer with something to show becomes a `Dynamic` body as it stands at time 0, of the form that its masks, glyphs,
/// vector shapes or bounds give it; see importLayer. At the end the bodies whose outlines cross themselves are
/// reported. Without an active composition the scene gets no bodies and keeps its facts.
///
/// Host: within one undo group, "Jostle Initialization"; nothing is changed.
/// @param messages  null if nobody is to be told
[[nodiscard]] ImportReport initFromComposition(const HostContext& context, Scene& scene,
                                               MessageSink* messages = nullptr);

/// Reads one body's layer anew, with the record's present `meshPrecision` and `useConvexHull`. `position` and `angle`
/// stay, and so does all that the import does not write. The world must be rebuilt afterwards.
///
/// @param messages  null if nobody is to be told
/// @return how it went; nothing if there is no such body, or its layer is gone
std::optional<LayerReport> refreshBody(const HostContext& context, Scene& scene, int bodyIndex,
                                       MessageSink* messages = nullptr);

/// Tells which of some bodies have an outline that crosses itself; nothing if none has.
/// @param bodyIndices  of records
void reportSelfIntersections(const Scene& scene, std::span<const int> bodyIndices, MessageSink& messages);

} // namespace jostle

#pragma once

#include <span>
#include <string>

#include "host/keyframe_writer.h"
#include "simulation/export_run.h"
#include "simulation/scene.h"
#include "standalone/document/composition.h"

namespace jostle::standalone {

/// The samples of a run as a JSON object, one layer to a line: for each body its layer (place from 0, identifier, name,
/// size of its source in pixels), its type, the layer's anchor as written in layer pixels and scale as a fraction, and
/// for each frame from `start` to `end` where the anchor stands in composition pixels and the layer's angle in degrees,
/// clockwise. Numbers have as many digits as it takes to read the same float back.
///
/// @param stances  by record, as the keyframes were written; the angles are the bodies' and the turns of these
[[nodiscard]] std::string samplesText(const Scene& scene, const ExportRun& run, const Composition& composition,
                                      std::span<const WrittenStance> stances);

} // namespace jostle::standalone

#pragma once

#include <string>

#include "simulation/export_run.h"
#include "simulation/scene.h"
#include "standalone/document/composition.h"

namespace jostle::standalone {

/// The samples of a run as a JSON object, one layer to a line: for each body its layer (place from 0, identifier, name,
/// size of its source in pixels), its type, the layer's anchor in layer pixels and scale as a fraction, and for each
/// frame from `start` to `end` where the anchor stands in composition pixels and the angle in degrees, clockwise.
/// Numbers have as many digits as it takes to read the same float back.
[[nodiscard]] std::string samplesText(const Scene& scene, const ExportRun& run, const Composition& composition);

} // namespace jostle::standalone

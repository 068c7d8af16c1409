#pragma once

#include <string>
#include <vector>

#include "host/layer_import.h"
#include "persistence/overrides.h"

namespace jostle::standalone {

/// The layers of an import as a person names them in settings.
[[nodiscard]] inline std::vector<NamedLayer> namedLayers(const ImportReport& report) {
    std::vector<NamedLayer> layers;
    for (const LayerReport& layer : report.layers) {
        const bool isBody = layer.outcome == LayerOutcome::Body;
        layers.push_back({layer.name, isBody ? std::string() : std::string(outcomeText(layer.outcome))});
    }
    return layers;
}

} // namespace jostle::standalone

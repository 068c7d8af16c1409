#pragma once

#include <string>
#include <vector>

#include "host/import_report.h"

namespace jostle::standalone {

/// What a layer's body consists of, in a few words: "box", "circle", "12 triangles", "2 circles, 1 open line".
[[nodiscard]] std::string shapeText(const BodyRecord& body);

/// What a body is read from, in one word: "bounds", "masks", "text", "shapes", "fallback".
[[nodiscard]] std::string originText(BodyOrigin origin);

/// What a designer should know of a body, each in a few words.
[[nodiscard]] std::vector<std::string> warningsOf(const LayerReport& layer, const BodyRecord& body);

} // namespace jostle::standalone

#pragma once

#include <string>

#include "standalone/document/composition.h"
#include "standalone/lottie/property_writer.h"
#include "standalone/lottie/splice.h"

namespace jostle::standalone {

/// Whether any stream of a transform is marked as changed.
[[nodiscard]] bool isChanged(const Transform& transform);

/// Writes what has changed of a layer's transform.
/// @param layerEdit  of the layer's object
/// @param edits      takes what changes within it
void writeTransform(PropertyWriter& properties, const Layer& layer, ObjectEdit& layerEdit, TextEdits& edits);

/// The text of the transform of a layer that is in no file yet.
/// @param style  of its members
[[nodiscard]] std::string newTransformText(const Layer& layer, const TextStyle& style);

} // namespace jostle::standalone

#pragma once

#include "standalone/lottie/json_tree.h"

namespace jostle::standalone {

/// What depends on the version of the format that a document says it has. What is added to an old document follows
/// the old rules too, as its version never changes.
struct FormatRules {
    bool coloursTo255 = false;     ///< colours of fills and strokes run from 0 to 255
    bool closedOutside = false;    ///< whether a path is closed stands beside it, not in it
    bool absoluteTangents = false; ///< tangents of paths are places, not offsets from their vertex
};

/// The rules of a document; those of the newest version where it does not say.
[[nodiscard]] FormatRules formatRules(const JsonValue& root);

} // namespace jostle::standalone

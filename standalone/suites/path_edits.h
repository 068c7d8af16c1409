#pragma once

#include <optional>

#include "standalone/suites/host_state.h"

/// Outlines as the suites count them, and changes to streams of outlines; see stream_edits.h.
namespace jostle::standalone {

/// As many as vertices if closed, else one less.
[[nodiscard]] A_long segmentCount(const PathValue& outline);

/// Vertex 0 to the number of segments; the last of a closed outline is the first again. None beyond, or without any.
[[nodiscard]] std::optional<PathVertex> vertexAt(const PathValue& outline, A_long index);

/// Whether all coordinates are finite numbers.
[[nodiscard]] bool isFinite(const PathValue& outline);

/// Gives a stream without keys a value. One that is its present value changes nothing.
void setStaticPath(LayerEntry& entry, PathStream& path, const PathValue& value);

/// @param index  0 to the number of keys - 1
void deleteKey(LayerEntry& entry, PathStream& path, std::size_t index);

/// Adds keys in any order: of several at one frame the last given counts, and it replaces a key that stood there.
/// @param values  as many as `keys`
void addKeys(LayerEntry& entry, PathStream& path, const std::vector<NewKey>& keys,
             const std::vector<PathValue>& values);

} // namespace jostle::standalone

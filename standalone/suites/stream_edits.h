#pragma once

#include "host/suites.h"
#include "standalone/suites/host_state.h"

/// Changes to streams. Each goes through the journal and marks what the writer has to replace.
namespace jostle::standalone {

/// Value of a leaf at a composition frame; the position of separated dimensions too.
[[nodiscard]] Components leafValueAt(Layer& layer, StreamNode leaf, double frame);

/// As the suites carry it: a scale without a third component gets 100 there.
[[nodiscard]] AEGP_StreamVal2 toSuiteValue(const Layer& layer, StreamNode leaf, const Components& value);
[[nodiscard]] Components fromSuiteValue(StreamNode leaf, const AEGP_StreamVal2& value);

/// Whether no component is infinite or not a number.
[[nodiscard]] bool isFinite(const Components& value);

/// Gives a stream without keys a value. One that is bit for bit its present value changes nothing.
void setStaticValue(LayerEntry& entry, StreamNode leaf, const Components& value);

/// Number of components per key that a batch for this stream holds.
[[nodiscard]] std::size_t keyComponents(Layer& layer, StreamNode leaf);

/// Takes a key away; the last one leaves its value as the static one.
/// @param index  0 to the number of keys - 1
void deleteKey(LayerEntry& entry, StreamNode leaf, std::size_t index);

/// Adds keys in any order. Of several at one frame the last given counts, and it replaces a key that stood there.
void addKeys(LayerEntry& entry, StreamNode leaf, KeyTrack batch);

} // namespace jostle::standalone

#pragma once

#include <cmath>

#include "host/suites.h"
#include "standalone/suites/host_state.h"

/// Changes to streams. Each goes through the journal and marks what the writer has to replace.
namespace jostle::standalone {

/// How many numbers the suites carry for a leaf: 1 to 3; 0 for outlines.
[[nodiscard]] int suiteComponents(const TreeNode& leaf);

/// Value of a leaf of numbers at a composition frame; the position of separated dimensions too.
[[nodiscard]] Components leafValueAt(const Layer& layer, const TreeNode& leaf, double frame);

/// As the suites carry it: a scale without a third component gets 100 there, a colour an alpha of 1.
[[nodiscard]] AEGP_StreamVal2 toSuiteValue(const TreeNode& leaf, const Components& value);
/// @return components that the suites do not carry for this leaf are 0
[[nodiscard]] Components fromSuiteValue(const TreeNode& leaf, const AEGP_StreamVal2& value);

/// Whether no component is infinite or not a number.
[[nodiscard]] inline bool isFinite(const Components& value) {
    // Of infinite and undefined numbers the difference to themselves is undefined.
    return (value[0] - value[0]) + (value[1] - value[1]) + (value[2] - value[2]) == 0;
}

/// Gives a stream without keys a value. One that is bit for bit its present value changes nothing.
/// @param count  how many components of `value` count; those of the stream beyond keep theirs
void setStaticValue(LayerEntry& entry, Stream& stream, int count, const Components& value);

/// Number of components per key that a batch for this leaf holds.
[[nodiscard]] std::size_t keyComponents(const TreeNode& leaf);

/// Takes a key away; the last one leaves its value as the static one.
/// @param index  0 to the number of keys - 1
void deleteKey(LayerEntry& entry, Stream& stream, std::size_t index);

/// Adds keys in any order. Of several at one frame the last given counts, and it replaces a key that stood there.
/// @param batch  brought into order if it is not
void addKeys(LayerEntry& entry, const TreeNode& leaf, std::vector<NewKey>& batch);

} // namespace jostle::standalone

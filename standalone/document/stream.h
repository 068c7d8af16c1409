#pragma once

#include <array>
#include <cstdint>

#include "standalone/document/lean_vector.h"

namespace jostle::standalone {

/// Place of a value in the source text: half-open range of byte offsets. Empty if the file has no such value.
struct SourceSpan {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    [[nodiscard]] bool empty() const { return begin == end; }
};

/// Up to three components; those that a stream does not have are 0.
using Components = std::array<double, 3>;

/// What happens between a keyframe and the next one.
struct KeySegment {
    bool hold = false;
    bool linear = true;   ///< no easing: the share of time is the share of the way
    bool spatial = false; ///< some of the two tangents is not zero: the way is a curve
    bool hasEnd = false;  ///< the way ends at `end`, from where the value leaps to that of the next key
    Components outX{}, outY{}, inX{}, inY{}; ///< easing handles, one pair per component, x from 0 to 1
    Components outTangent{};                 ///< relative to this key's value, in its units
    Components inTangent{};                  ///< relative to the value at the next key
    Components end{};

    friend bool operator==(const KeySegment&, const KeySegment&) = default;
};

/// The keyframes of one stream, as parallel arrays so that baked motion costs little.
///
/// `frames` rise strictly. `values` holds `components` numbers for each key. `segments` is either empty (all
/// linear, as baked motion is) or holds one entry per key.
struct KeyTrack {
    LeanVector<double> frames; ///< composition frames
    LeanVector<double> values;
    LeanVector<KeySegment> segments;

    [[nodiscard]] std::size_t size() const { return frames.size(); }
    [[nodiscard]] bool empty() const { return frames.empty(); }

    friend bool operator==(const KeyTrack&, const KeyTrack&) = default;
};

/// One animatable property: a value or keyframes, and where it stands in the source text.
///
/// A plain record: copied whole for duplicates and for undo. Units are those of the file: pixels, degrees, percent.
struct Stream {
    int components = 1; ///< 1 to 3, as the file has it
    bool hasExpression = false;
    bool expressionEnabled = false;
    bool changed = false; ///< differs from the source text, so the writer replaces it
    Components value{};   ///< what holds while `keys` is empty; as read with keys, that of the first
    KeyTrack keys;
    SourceSpan source; ///< the property's value in the source text, after slots are looked up the referring one
};

/// Number of keys of a stream that count as motion: fewer than two hold one value for ever.
[[nodiscard]] inline bool isAnimated(const Stream& stream) {
    return stream.keys.size() > 1;
}

} // namespace jostle::standalone

#pragma once

#include <vector>

#include "standalone/document/stream.h"

namespace jostle::standalone {

/// A vertex of an outline in pixels; the tangents are relative to it.
struct PathVertex {
    double x = 0, y = 0;
    double inX = 0, inY = 0;
    double outX = 0, outY = 0;

    friend bool operator==(const PathVertex&, const PathVertex&) = default;
};

/// An outline of cubic curves, in layer pixels unless told otherwise.
struct PathValue {
    std::vector<PathVertex> vertices;
    bool closed = false;

    friend bool operator==(const PathValue&, const PathValue&) = default;
};

/// An animatable outline: a value, or keyframes in order of time.
struct PathStream {
    PathValue value; ///< what holds while there are no keys; as read with keys, that of the first
    std::vector<double> frames;
    std::vector<PathValue> values;
    std::vector<KeySegment> segments; ///< one for each key; of the handles only those of component 0 count
    bool hasExpression = false;
    bool expressionEnabled = false;
    bool changed = false; ///< differs from the source text
};

/// The outline at a composition frame. Between keys with different counts of vertices the first holds; the outline is
/// closed as the first is.
[[nodiscard]] PathValue valueAt(const PathStream& path, double frame);

} // namespace jostle::standalone

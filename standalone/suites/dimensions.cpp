#include "standalone/suites/dimensions.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "standalone/document/evaluate.h"

namespace jostle::standalone {

namespace {

/// The part of a segment that one dimension has.
KeySegment dimensionOf(const KeySegment& segment, std::size_t dimension) {
    const std::size_t handle = segment.spatial ? 0 : dimension; // curves have one easing for all
    KeySegment part;
    part.hold = segment.hold;
    part.linear = segment.linear;
    part.hasEnd = segment.hasEnd;
    part.end[0] = segment.end[dimension];
    part.outX[0] = segment.outX[handle];
    part.outY[0] = segment.outY[handle];
    part.inX[0] = segment.inX[handle];
    part.inY[0] = segment.inY[handle];
    return part;
}

void takeDimension(const Stream& position, std::size_t dimension, Stream& follower) {
    follower.components = 1;
    follower.value = {position.value[dimension], 0, 0};
    follower.keys = {};
    const auto components = static_cast<std::size_t>(position.components);
    follower.changed = true;
    if (dimension >= components)
        return;
    follower.keys.frames = position.keys.frames;
    for (std::size_t key = 0; key < position.keys.size(); ++key)
        follower.keys.values.push_back(position.keys.values[key * components + dimension]);
    for (const KeySegment& segment : position.keys.segments)
        follower.keys.segments.push_back(dimensionOf(segment, dimension));
}

Stream joined(const Transform& transform) {
    Stream position = transform.position;
    const Dimensions& dimensions = *transform.dimensions;
    const bool hasDepth = dimensions.z.value[0] != 0 || !dimensions.z.keys.empty();
    position.components = hasDepth ? 3 : 2;
    position.keys = {};
    for (const Stream* dimension : {&dimensions.x, &dimensions.y, &dimensions.z}) {
        std::vector<double> frames;
        std::set_union(position.keys.frames.begin(), position.keys.frames.end(), dimension->keys.frames.begin(),
                       dimension->keys.frames.end(), std::back_inserter(frames));
        position.keys.frames = std::move(frames);
    }
    position.value = positionAt(transform, position.keys.empty() ? 0 : position.keys.frames.front());
    for (const double frame : position.keys.frames) {
        const Components value = positionAt(transform, frame);
        position.keys.values.insert(position.keys.values.end(), value.begin(), value.begin() + position.components);
    }
    position.hasExpression = position.expressionEnabled = false;
    position.changed = true;
    return position;
}

} // namespace

void setDimensionsSeparated(LayerEntry& entry, bool separated) {
    Transform& transform = entry.layer->transform;
    if (transform.separated == separated)
        return;
    Journal& journal = state().journal;
    journal.touchLayer(entry);
    if (separated) {
        Dimensions& dimensions = transform.dimensions.own();
        const std::array followers{&dimensions.x, &dimensions.y, &dimensions.z};
        for (std::size_t dimension = 0; dimension < followers.size(); ++dimension) {
            journal.touchStream(entry, *followers[dimension]);
            takeDimension(transform.position, dimension, *followers[dimension]);
        }
        dimensions.z.changed = transform.position.components > 2; // else there is nothing to tell
    } else {
        journal.touchStream(entry, transform.position);
        transform.position = joined(transform);
    }
    transform.separated = separated;
    bindTransform(state().treeOf(entry), *entry.layer);
}

} // namespace jostle::standalone

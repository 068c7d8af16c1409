#include "standalone/suites/expressions.h"

#include "standalone/suites/stream_nodes.h"

namespace jostle::standalone {

namespace {

/// The places where expressions of a leaf may stand.
template<class Visit>
void forEachStream(Layer& layer, const TreeNode& leaf, const Visit& visit) {
    Transform& transform = layer.transform;
    if (leaf.path != nullptr) {
        visit(*leaf.path);
    } else if (isSeparatedLeader(layer, leaf)) {
        Dimensions& dimensions = transform.dimensions.own();
        for (Stream* stream : {&dimensions.x, &dimensions.y, &dimensions.z})
            visit(*stream);
    } else if (leaf.stream != nullptr) {
        visit(*leaf.stream);
    }
}

void touch(LayerEntry& entry, Stream& stream) {
    state().journal.touchStream(entry, stream);
    stream.changed = true;
}
void touch(LayerEntry& entry, PathStream& path) {
    state().journal.touchPath(entry, path);
    path.changed = true;
}

SourceSpan sourceOf(const Stream& stream, const TreeNode&) {
    return stream.source;
}
SourceSpan sourceOf(const PathStream&, const TreeNode& leaf) {
    return leaf.source;
}

} // namespace

bool hasEnabledExpression(const Layer& layer, const TreeNode& leaf) {
    bool enabled = false;
    // What is visited is only looked at.
    forEachStream(const_cast<Layer&>(layer), leaf,
                  [&](const auto& stream) { enabled = enabled || (stream.hasExpression && stream.expressionEnabled); });
    return enabled;
}

bool enableExpression(LayerEntry& entry, TreeNode& leaf, bool enabled) {
    bool any = false;
    forEachStream(*entry.layer, leaf, [&](auto& stream) {
        any = any || stream.hasExpression;
        if (!stream.hasExpression || stream.expressionEnabled == enabled)
            return;
        touch(entry, stream);
        stream.expressionEnabled = enabled;
    });
    return any || !enabled;
}

std::string expressionText(const LayerEntry& entry, const TreeNode& leaf) {
    std::string text;
    const LayerDetails* details = entry.comp->composition->details.get();
    forEachStream(*entry.layer, leaf, [&](const auto& stream) {
        if (details != nullptr && text.empty() && stream.hasExpression)
            text = details->expressionAt(sourceOf(stream, leaf));
    });
    return text;
}

void clearExpression(LayerEntry& entry, TreeNode& leaf) {
    forEachStream(*entry.layer, leaf, [&](auto& stream) {
        if (!stream.hasExpression)
            return;
        touch(entry, stream);
        stream.hasExpression = stream.expressionEnabled = false;
    });
}

} // namespace jostle::standalone

#include <array>

#include "standalone/suites/host_state.h"
#include "standalone/suites/stream_edits.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

/// The leaves that hold what a leaf stands for: three followers for a separated position, else the leaf itself.
struct Holders {
    std::array<StreamNode, 3> nodes;
    std::size_t count;
    [[nodiscard]] const StreamNode* begin() const { return nodes.data(); }
    [[nodiscard]] const StreamNode* end() const { return nodes.data() + count; }
};

Holders holdersOf(const Layer& layer, StreamNode leaf) {
    if (isSeparatedLeader(layer, leaf))
        return {{StreamNode::PositionX, StreamNode::PositionY, StreamNode::PositionZ}, 3};
    return {{leaf}, 1};
}

/// The reference, if it leads to a usable leaf.
StreamRef* leafOf(AEGP_StreamRefH handle) {
    StreamRef* ref = state().usableStream(handle);
    return ref != nullptr && isLeaf(ref->node) ? ref : nullptr;
}

bool hasEnabledExpression(const StreamRef& ref) {
    Layer& layer = *ref.layer->layer;
    for (const StreamNode node : holdersOf(layer, ref.node)) {
        const Stream& stream = *streamAt(layer, node);
        if (stream.hasExpression && stream.expressionEnabled)
            return true;
    }
    return false;
}

A_Err getNewLayerStream(AEGP_PluginID, AEGP_LayerH layer, AEGP_LayerStream which, AEGP_StreamRefH* stream) {
    if (state().layerOf(layer) == nullptr || stream == nullptr)
        return A_Err_PARAMETER;
    constexpr std::array nodes{StreamNode::Anchor, StreamNode::Position, StreamNode::Scale, StreamNode::Rotation};
    if (static_cast<std::size_t>(which) >= nodes.size())
        return state().refuse("AEGP_GetNewLayerStream for anything but anchor, position, scale and rotation");
    *stream = state().giveStream(layer, nodes[static_cast<std::size_t>(which)]);
    return A_Err_NONE;
}

A_Err disposeStream(AEGP_StreamRefH handle) {
    const StreamRef* ref = state().streams.find(handle);
    if (ref == nullptr || ref->owned)
        return A_Err_PARAMETER;
    return state().disposeStream(handle) ? A_Err_NONE : A_Err_PARAMETER;
}

A_Err getStreamName(AEGP_PluginID, AEGP_StreamRefH handle, A_Boolean, AEGP_MemHandle* name) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || name == nullptr)
        return A_Err_PARAMETER;
    const std::string& layerName = ref->layer->layer->name;
    *name = state().giveText(ref->node == StreamNode::Root ? layerName : factsOf(ref->node).name);
    return A_Err_NONE;
}

A_Err isStreamTimevarying(AEGP_StreamRefH handle, A_Boolean* timeVarying) {
    const StreamRef* ref = leafOf(handle);
    if (ref == nullptr || timeVarying == nullptr)
        return A_Err_PARAMETER;
    Layer& layer = *ref->layer->layer;
    bool varies = hasEnabledExpression(*ref);
    for (const StreamNode node : holdersOf(layer, ref->node))
        varies = varies || isAnimated(*streamAt(layer, node));
    *timeVarying = varies;
    return A_Err_NONE;
}

A_Err getStreamType(AEGP_StreamRefH handle, AEGP_StreamType* type) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || type == nullptr)
        return A_Err_PARAMETER;
    *type = factsOf(ref->node).type;
    return A_Err_NONE;
}

A_Err getNewStreamValue(AEGP_PluginID, AEGP_StreamRefH handle, AEGP_LTimeMode mode, const A_Time* time, A_Boolean,
                        AEGP_StreamValue2* value) {
    StreamRef* ref = leafOf(handle);
    if (ref == nullptr || !isValid(mode) || !isValid(time) || value == nullptr)
        return A_Err_PARAMETER;
    Layer& layer = *ref->layer->layer;
    const Components components = leafValueAt(layer, ref->node, frameAt(*ref->layer->comp, *time));
    *value = {handle, toSuiteValue(layer, ref->node, components)};
    ++ref->openValues;
    ++state().valuesOut;
    return A_Err_NONE;
}

A_Err disposeStreamValue(AEGP_StreamValue2* value) {
    if (value == nullptr)
        return A_Err_PARAMETER;
    StreamRef* ref = state().streams.find(value->streamH);
    if (ref == nullptr || ref->openValues == 0)
        return A_Err_PARAMETER;
    state().releaseValue(value->streamH, *ref);
    value->streamH = nullptr; // a second disposal is told from the first
    return A_Err_NONE;
}

A_Err setStreamValue(AEGP_PluginID, AEGP_StreamRefH handle, AEGP_StreamValue2* value) {
    const StreamRef* ref = leafOf(handle);
    if (ref == nullptr || value == nullptr)
        return A_Err_PARAMETER;
    const Components components = fromSuiteValue(ref->node, value->val);
    if (!isFinite(components))
        return A_Err_PARAMETER;
    Layer& layer = *ref->layer->layer;
    const Holders holders = holdersOf(layer, ref->node);
    for (const StreamNode node : holders) {
        if (!streamAt(layer, node)->keys.empty())
            return A_Err_GENERIC;
    }
    if (holders.count == 1) {
        setStaticValue(*ref->layer, ref->node, components);
    } else {
        for (std::size_t i = 0; i < holders.count; ++i)
            setStaticValue(*ref->layer, holders.nodes[i], {components[i], 0, 0});
    }
    return A_Err_NONE;
}

A_Err getExpressionState(AEGP_PluginID, AEGP_StreamRefH handle, A_Boolean* enabled) {
    const StreamRef* ref = leafOf(handle);
    if (ref == nullptr || enabled == nullptr)
        return A_Err_PARAMETER;
    *enabled = hasEnabledExpression(*ref);
    return A_Err_NONE;
}

A_Err setExpressionState(AEGP_PluginID, AEGP_StreamRefH handle, A_Boolean enabled) {
    const StreamRef* ref = leafOf(handle);
    if (ref == nullptr)
        return A_Err_PARAMETER;
    Layer& layer = *ref->layer->layer;
    bool hasExpression = false;
    for (const StreamNode node : holdersOf(layer, ref->node)) {
        Stream& stream = *streamAt(layer, node);
        hasExpression = hasExpression || stream.hasExpression;
        if (!stream.hasExpression || stream.expressionEnabled == (enabled != 0))
            continue;
        state().journal.touchStream(*ref->layer, node);
        stream.expressionEnabled = enabled != 0;
        stream.changed = true;
    }
    return enabled && !hasExpression ? A_Err_GENERIC : A_Err_NONE;
}

} // namespace

const AEGP_StreamSuite9 streamSuite{
    .AEGP_GetNewLayerStream = getNewLayerStream,
    .AEGP_GetNewMaskStream = refused<"AEGP_GetNewMaskStream">,
    .AEGP_DisposeStream = disposeStream,
    .AEGP_GetStreamName = getStreamName,
    .AEGP_IsStreamTimevarying = isStreamTimevarying,
    .AEGP_GetStreamType = getStreamType,
    .AEGP_GetNewStreamValue = getNewStreamValue,
    .AEGP_DisposeStreamValue = disposeStreamValue,
    .AEGP_SetStreamValue = setStreamValue,
    .AEGP_GetExpressionState = getExpressionState,
    .AEGP_SetExpressionState = setExpressionState,
    .AEGP_GetExpression = refused<"AEGP_GetExpression">,
    .AEGP_SetExpression = refused<"AEGP_SetExpression">,
};

} // namespace jostle::standalone

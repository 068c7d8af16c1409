#include <array>

#include "standalone/suites/expressions.h"
#include "standalone/suites/host_state.h"
#include "standalone/suites/path_edits.h"
#include "standalone/suites/stream_edits.h"
#include "standalone/suites/stream_nodes.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

A_Err getNewLayerStream(AEGP_PluginID, AEGP_LayerH layer, AEGP_LayerStream which, AEGP_StreamRefH* stream) {
    const LayerEntry* entry = state().layerOf(layer);
    if (entry == nullptr || stream == nullptr)
        return A_Err_PARAMETER;
    constexpr std::array leaves{NodeKind::Anchor, NodeKind::Position, NodeKind::Scale, NodeKind::Rotation,
                                NodeKind::Opacity};
    const auto place = static_cast<std::size_t>(which);
    if (place >= leaves.size())
        return state().refuse("AEGP_GetNewLayerStream for anything but anchor, position, scale, rotation and opacity");
    *stream = state().giveStream(layer, transformLeaf(state().treeOf(*entry), leaves[place]));
    return A_Err_NONE;
}

A_Err getNewMaskStream(AEGP_PluginID, AEGP_MaskRefH handle, AEGP_MaskStream which, AEGP_StreamRefH* stream) {
    const MaskRef* mask = state().usableMask(handle);
    if (mask == nullptr || stream == nullptr)
        return A_Err_PARAMETER;
    constexpr std::array leaves{NodeKind::MaskShape, NodeKind::MaskOpacity, NodeKind::MaskFeather,
                                NodeKind::MaskOffset}; // in the order of their numbers
    const auto place = static_cast<std::size_t>(which - AEGP_MaskStream_OUTLINE);
    TreeNode* leaf = place < leaves.size() ? childOf(*mask->node, leaves[place]) : nullptr;
    if (leaf == nullptr)
        return A_Err_PARAMETER;
    *stream = state().giveStream(mask->layerHandle, *leaf);
    return A_Err_NONE;
}

A_Err disposeStream(AEGP_StreamRefH handle) {
    const StreamRef* ref = state().streams.find(handle);
    if (ref != nullptr && ref->owned)
        return state().note(Misuse::DisposedOfOwned);
    return state().disposeStream(handle) ? A_Err_NONE : A_Err_PARAMETER;
}

A_Err getStreamName(AEGP_PluginID, AEGP_StreamRefH handle, A_Boolean, AEGP_MemHandle* name) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || name == nullptr)
        return A_Err_PARAMETER;
    *name = state().giveText(displayNameOf(*ref->layer->layer, *ref->node));
    return A_Err_NONE;
}

A_Err isStreamTimevarying(AEGP_StreamRefH handle, A_Boolean* timeVarying) {
    const StreamRef* ref = state().leafOf(handle);
    if (ref == nullptr || timeVarying == nullptr)
        return A_Err_PARAMETER;
    const Layer& layer = *ref->layer->layer;
    const Transform& transform = layer.transform;
    bool varies = hasEnabledExpression(layer, *ref->node);
    if (ref->node->path != nullptr)
        varies = varies || ref->node->path->frames.size() > 1;
    else if (isSeparatedLeader(layer, *ref->node))
        varies = varies || isAnimated(transform.dimensions->x) || isAnimated(transform.dimensions->y) ||
                 isAnimated(transform.dimensions->z);
    else
        varies = varies || isAnimated(*ref->node->stream);
    *timeVarying = varies;
    return A_Err_NONE;
}

A_Err getStreamType(AEGP_StreamRefH handle, AEGP_StreamType* type) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || type == nullptr)
        return A_Err_PARAMETER;
    *type = typeOf(*ref->node);
    return A_Err_NONE;
}

A_Err getNewStreamValue(AEGP_PluginID, AEGP_StreamRefH handle, AEGP_LTimeMode mode, const A_Time* time, A_Boolean,
                        AEGP_StreamValue2* value) {
    StreamRef* ref = state().leafOf(handle);
    if (ref == nullptr || !isValid(mode) || !state().isValid(time) || value == nullptr)
        return A_Err_PARAMETER;
    const double frame = frameAt(*ref->layer->comp, *time);
    AEGP_StreamVal2 read{};
    if (ref->node->path != nullptr)
        read.mask = state().maskOutlines.add(valueAt(*ref->node->path, frame));
    else
        read = toSuiteValue(*ref->node, leafValueAt(*ref->layer->layer, *ref->node, frame));
    state().giveValue(handle, *ref, read, *value);
    return A_Err_NONE;
}

A_Err disposeStreamValue(AEGP_StreamValue2* value) {
    if (value == nullptr)
        return A_Err_PARAMETER;
    StreamRef* ref = state().streams.find(value->streamH);
    if (ref == nullptr || ref->openValues == 0)
        return state().note(Misuse::ValueAfterDisposal);
    if (typeOf(*ref->node) == AEGP_StreamType_MASK) {
        if (state().maskOutlines.find(value->val.mask) == nullptr)
            return state().note(Misuse::ValueAfterDisposal);
        state().maskOutlines.remove(value->val.mask);
    }
    state().releaseValue(value->streamH, *ref);
    *value = {}; // a second disposal is told from the first
    return A_Err_NONE;
}

A_Err setOutline(LayerEntry& entry, PathStream& path, AEGP_MaskOutlineValH handle) {
    const PathValue& outline = *state().maskOutlines.find(handle);
    if (!isFinite(outline))
        return A_Err_PARAMETER;
    if (!path.frames.empty())
        return state().note(Misuse::ValueSetOverKeys, A_Err_GENERIC);
    setStaticPath(entry, path, outline);
    return A_Err_NONE;
}

A_Err setStreamValue(AEGP_PluginID, AEGP_StreamRefH handle, AEGP_StreamValue2* value) {
    const StreamRef* ref = state().leafOf(handle);
    if (ref == nullptr || !state().isValueFor(*ref->node, value))
        return A_Err_PARAMETER;
    LayerEntry& entry = *ref->layer;
    if (ref->node->path != nullptr)
        return setOutline(entry, *ref->node->path, value->val.mask);
    const Components components = fromSuiteValue(*ref->node, value->val);
    if (!isFinite(components))
        return A_Err_PARAMETER;
    Transform& transform = entry.layer->transform;
    if (!isSeparatedLeader(*entry.layer, *ref->node)) {
        if (!ref->node->stream->keys.empty())
            return state().note(Misuse::ValueSetOverKeys, A_Err_GENERIC);
        setStaticValue(entry, *ref->node->stream, suiteComponents(*ref->node), components);
        return A_Err_NONE;
    }
    Dimensions& dimensions = transform.dimensions.own();
    const std::array followers{&dimensions.x, &dimensions.y, &dimensions.z};
    for (const Stream* follower : followers) {
        if (!follower->keys.empty())
            return state().note(Misuse::ValueSetOverKeys, A_Err_GENERIC);
    }
    for (std::size_t i = 0; i < followers.size(); ++i)
        setStaticValue(entry, *followers[i], 1, {components[i], 0, 0});
    return A_Err_NONE;
}

A_Err getExpressionState(AEGP_PluginID, AEGP_StreamRefH handle, A_Boolean* enabled) {
    const StreamRef* ref = state().leafOf(handle);
    if (ref == nullptr || enabled == nullptr)
        return A_Err_PARAMETER;
    *enabled = hasEnabledExpression(*ref->layer->layer, *ref->node);
    return A_Err_NONE;
}

A_Err setExpressionState(AEGP_PluginID, AEGP_StreamRefH handle, A_Boolean enabled) {
    const StreamRef* ref = state().leafOf(handle);
    if (ref == nullptr)
        return A_Err_PARAMETER;
    return enableExpression(*ref->layer, *ref->node, enabled != 0) ? A_Err_NONE : A_Err_GENERIC;
}

A_Err getExpression(AEGP_PluginID, AEGP_StreamRefH handle, AEGP_MemHandle* text) {
    const StreamRef* ref = state().leafOf(handle);
    if (ref == nullptr || text == nullptr)
        return A_Err_PARAMETER;
    *text = state().giveBytes(expressionText(*ref->layer, *ref->node));
    return A_Err_NONE;
}

A_Err setExpression(AEGP_PluginID, AEGP_StreamRefH handle, const A_char* text) {
    const StreamRef* ref = state().leafOf(handle);
    if (ref == nullptr)
        return A_Err_PARAMETER;
    if (text != nullptr && *text != '\0')
        return expressionText(*ref->layer, *ref->node) == text ? A_Err_NONE
                                                               : state().refuse("AEGP_SetExpression of a new text");
    clearExpression(*ref->layer, *ref->node);
    return A_Err_NONE;
}

} // namespace

const AEGP_StreamSuite9 streamSuite{
    .AEGP_GetNewLayerStream = getNewLayerStream,
    .AEGP_GetNewMaskStream = getNewMaskStream,
    .AEGP_DisposeStream = disposeStream,
    .AEGP_GetStreamName = getStreamName,
    .AEGP_IsStreamTimevarying = isStreamTimevarying,
    .AEGP_GetStreamType = getStreamType,
    .AEGP_GetNewStreamValue = getNewStreamValue,
    .AEGP_DisposeStreamValue = disposeStreamValue,
    .AEGP_SetStreamValue = setStreamValue,
    .AEGP_GetExpressionState = getExpressionState,
    .AEGP_SetExpressionState = setExpressionState,
    .AEGP_GetExpression = getExpression,
    .AEGP_SetExpression = setExpression,
};

} // namespace jostle::standalone

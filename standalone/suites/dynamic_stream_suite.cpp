#include <string_view>

#include "standalone/suites/dimensions.h"
#include "standalone/suites/host_state.h"
#include "standalone/suites/stream_nodes.h"
#include "standalone/suites/structure_edits.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

/// The reference, if it leads to a position: the one stream whose dimensions can be separated.
StreamRef* leaderOf(AEGP_StreamRefH handle) {
    StreamRef* ref = state().usableStream(handle);
    return ref != nullptr && ref->node->kind == NodeKind::Position ? ref : nullptr;
}

A_Err getNewStreamRefForLayer(AEGP_PluginID, AEGP_LayerH layer, AEGP_StreamRefH* root) {
    const LayerEntry* entry = state().layerOf(layer);
    if (entry == nullptr || root == nullptr)
        return A_Err_PARAMETER;
    *root = state().giveStream(layer, state().treeOf(*entry));
    return A_Err_NONE;
}

A_Err getStreamDepth(AEGP_StreamRefH handle, A_long* depth) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || depth == nullptr)
        return A_Err_PARAMETER;
    *depth = depthOf(*ref->node);
    return A_Err_NONE;
}

A_Err getStreamGroupingType(AEGP_StreamRefH handle, AEGP_StreamGroupingType* type) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || type == nullptr)
        return A_Err_PARAMETER;
    *type = groupingOf(*ref->node);
    return A_Err_NONE;
}

A_Err getNumStreamsInGroup(AEGP_StreamRefH handle, A_long* count) {
    const StreamRef* ref = state().groupOf(handle);
    if (ref == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    *count = childCount(*ref->node);
    return A_Err_NONE;
}

A_Err getNewStreamRefByIndex(AEGP_PluginID, AEGP_StreamRefH handle, A_long index, AEGP_StreamRefH* stream) {
    const StreamRef* ref = state().groupOf(handle);
    TreeNode* child = ref == nullptr ? nullptr : childAt(*ref->node, index);
    if (child == nullptr || stream == nullptr)
        return A_Err_PARAMETER;
    *stream = state().giveStream(ref->layerHandle, *child);
    return A_Err_NONE;
}

A_Err getNewStreamRefByMatchname(AEGP_PluginID, AEGP_StreamRefH handle, const A_char* matchName,
                                 AEGP_StreamRefH* stream) {
    const StreamRef* ref = state().groupOf(handle);
    if (ref == nullptr || matchName == nullptr || stream == nullptr)
        return A_Err_PARAMETER;
    if (groupingOf(*ref->node) != AEGP_StreamGroupingType_NAMED_GROUP)
        return state().note(Misuse::WrongStreamType);
    TreeNode* child = childNamed(*ref->layer->layer, *ref->node, matchName);
    *stream = child != nullptr ? state().giveStream(ref->layerHandle, *child) : nullptr;
    return A_Err_NONE;
}

A_Err deleteStream(AEGP_StreamRefH handle) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr)
        return A_Err_PARAMETER;
    if (ref->node->parent == nullptr || groupingOf(*ref->node->parent) != AEGP_StreamGroupingType_INDEXED_GROUP)
        return state().note(Misuse::WrongStreamType);
    removeNode(*ref->layer, *ref->node);
    return A_Err_NONE;
}

A_Err getMatchName(AEGP_StreamRefH handle, A_char* matchName) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || matchName == nullptr)
        return A_Err_PARAMETER;
    const std::string_view name = matchNameOf(*ref->layer->layer, *ref->node);
    matchName[name.copy(matchName, AEGP_MAX_STREAM_MATCH_NAME_SIZE - 1)] = 0;
    return A_Err_NONE;
}

A_Err getNewParentStreamRef(AEGP_PluginID, AEGP_StreamRefH handle, AEGP_StreamRefH* parent) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || ref->node->parent == nullptr || parent == nullptr)
        return A_Err_PARAMETER;
    *parent = state().giveStream(ref->layerHandle, *ref->node->parent);
    return A_Err_NONE;
}

A_Err isSeparationLeader(AEGP_StreamRefH handle, A_Boolean* leader) {
    if (state().usableStream(handle) == nullptr || leader == nullptr)
        return A_Err_PARAMETER;
    *leader = leaderOf(handle) != nullptr;
    return A_Err_NONE;
}

A_Err areDimensionsSeparated(AEGP_StreamRefH handle, A_Boolean* separated) {
    const StreamRef* leader = leaderOf(handle);
    if (leader == nullptr || separated == nullptr)
        return A_Err_PARAMETER;
    *separated = leader->layer->layer->transform.separated;
    return A_Err_NONE;
}

A_Err setSeparated(AEGP_StreamRefH handle, A_Boolean separated) {
    const StreamRef* leader = leaderOf(handle);
    if (leader == nullptr)
        return A_Err_PARAMETER;
    setDimensionsSeparated(*leader->layer, separated != 0);
    return A_Err_NONE;
}

A_Err getSeparationFollower(AEGP_StreamRefH handle, A_short dimension, AEGP_StreamRefH* follower) {
    const StreamRef* leader = leaderOf(handle);
    if (leader == nullptr || dimension < 0 || dimension > 2 || follower == nullptr)
        return A_Err_PARAMETER;
    if (!leader->layer->layer->transform.separated)
        return A_Err_GENERIC;
    constexpr NodeKind followers[] = {NodeKind::PositionX, NodeKind::PositionY, NodeKind::PositionZ};
    *follower =
        state().giveStream(leader->layerHandle, transformLeaf(*leader->layer->layer->tree, followers[dimension]));
    return A_Err_NONE;
}

} // namespace

const AEGP_DynamicStreamSuite5 dynamicStreamSuite{
    .AEGP_GetNewStreamRefForLayer = getNewStreamRefForLayer,
    .AEGP_GetStreamDepth = getStreamDepth,
    .AEGP_GetStreamGroupingType = getStreamGroupingType,
    .AEGP_GetNumStreamsInGroup = getNumStreamsInGroup,
    .AEGP_GetNewStreamRefByIndex = getNewStreamRefByIndex,
    .AEGP_GetNewStreamRefByMatchname = getNewStreamRefByMatchname,
    .AEGP_DeleteStream = deleteStream,
    .AEGP_GetMatchName = getMatchName,
    .AEGP_GetNewParentStreamRef = getNewParentStreamRef,
    .AEGP_IsSeparationLeader = isSeparationLeader,
    .AEGP_AreDimensionsSeparated = areDimensionsSeparated,
    .AEGP_SetDimensionsSeparated = setSeparated,
    .AEGP_GetSeparationFollower = getSeparationFollower,
};

} // namespace jostle::standalone

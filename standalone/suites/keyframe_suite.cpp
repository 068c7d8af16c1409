#include <algorithm>

#include "standalone/suites/host_state.h"
#include "standalone/suites/stream_edits.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

/// The reference, if it leads to a usable leaf whose keys are its own.
StreamRef* keyedLeaf(AEGP_StreamRefH handle) {
    StreamRef* ref = state().usableStream(handle);
    return ref != nullptr && isLeaf(ref->node) && !isSeparatedLeader(*ref->layer->layer, ref->node) ? ref : nullptr;
}

const Stream& streamOf(const StreamRef& ref) {
    return *streamAt(*ref.layer->layer, ref.node);
}

bool isKey(const StreamRef& ref, AEGP_KeyframeIndex index) {
    return index >= 0 && static_cast<std::size_t>(index) < streamOf(ref).keys.size();
}

A_Err getStreamNumKFs(AEGP_StreamRefH handle, A_long* count) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    if (!isLeaf(ref->node)) {
        *count = AEGP_NumKF_NO_DATA;
        return A_Err_NONE;
    }
    if (keyedLeaf(handle) == nullptr)
        return A_Err_GENERIC;
    *count = static_cast<A_long>(streamOf(*ref).keys.size());
    return A_Err_NONE;
}

A_Err getKeyframeTime(AEGP_StreamRefH handle, AEGP_KeyframeIndex index, AEGP_LTimeMode mode, A_Time* time) {
    const StreamRef* ref = keyedLeaf(handle);
    if (ref == nullptr || !isKey(*ref, index) || !isValid(mode) || time == nullptr)
        return A_Err_PARAMETER;
    const double frame = streamOf(*ref).keys.frames[static_cast<std::size_t>(index)];
    *time = toHost(ref->layer->comp->composition->clock.timeOf(frame));
    return A_Err_NONE;
}

A_Err deleteKeyframe(AEGP_StreamRefH handle, AEGP_KeyframeIndex index) {
    const StreamRef* ref = keyedLeaf(handle);
    if (ref == nullptr || !isKey(*ref, index))
        return A_Err_PARAMETER;
    deleteKey(*ref->layer, ref->node, static_cast<std::size_t>(index));
    return A_Err_NONE;
}

A_Err getNewKeyframeValue(AEGP_PluginID, AEGP_StreamRefH handle, AEGP_KeyframeIndex index, AEGP_StreamValue2* value) {
    StreamRef* ref = keyedLeaf(handle);
    if (ref == nullptr || !isKey(*ref, index) || value == nullptr)
        return A_Err_PARAMETER;
    const Stream& stream = streamOf(*ref);
    Components components{};
    std::copy_n(stream.keys.values.begin() + static_cast<std::ptrdiff_t>(index) * stream.components, stream.components,
                components.begin());
    *value = {handle, toSuiteValue(*ref->layer->layer, ref->node, components)};
    ++ref->openValues;
    ++state().valuesOut;
    return A_Err_NONE;
}

A_Err startAddKeyframes(AEGP_StreamRefH handle, AEGP_AddKeyframesInfoH* batch) {
    const StreamRef* ref = keyedLeaf(handle);
    if (ref == nullptr || batch == nullptr)
        return A_Err_PARAMETER;
    *batch = state().batches.add({handle, keyComponents(*ref->layer->layer, ref->node), {}});
    return A_Err_NONE;
}

/// What a batch is for, if its stream is still usable and still has the components that the batch began with.
StreamRef* targetOf(const KeyBatch* batch) {
    StreamRef* ref = batch == nullptr ? nullptr : keyedLeaf(batch->stream);
    return ref != nullptr && keyComponents(*ref->layer->layer, ref->node) == batch->components ? ref : nullptr;
}

A_Err addKeyframes(AEGP_AddKeyframesInfoH handle, AEGP_LTimeMode mode, const A_Time* time, A_long* index) {
    KeyBatch* batch = state().batches.find(handle);
    const StreamRef* ref = targetOf(batch);
    if (ref == nullptr || !isValid(mode) || !isValid(time) || index == nullptr)
        return A_Err_PARAMETER;
    const double frame = frameAt(*ref->layer->comp, *time);
    const Components value = leafValueAt(*ref->layer->layer, ref->node, frame); // holds until one is set
    *index = static_cast<A_long>(batch->keys.size());
    batch->keys.frames.push_back(frame);
    batch->keys.values.insert(batch->keys.values.end(), value.data(), value.data() + batch->components);
    return A_Err_NONE;
}

A_Err setAddKeyframe(AEGP_AddKeyframesInfoH handle, A_long index, const AEGP_StreamValue2* value) {
    KeyBatch* batch = state().batches.find(handle);
    const StreamRef* ref = targetOf(batch);
    if (ref == nullptr || index < 0 || static_cast<std::size_t>(index) >= batch->keys.size() || value == nullptr)
        return A_Err_PARAMETER;
    const Components components = fromSuiteValue(ref->node, value->val);
    if (!isFinite(components))
        return A_Err_PARAMETER;
    std::copy_n(components.data(), batch->components,
                batch->keys.values.data() + static_cast<std::size_t>(index) * batch->components);
    return A_Err_NONE;
}

A_Err endAddKeyframes(A_Boolean commit, AEGP_AddKeyframesInfoH handle) {
    KeyBatch* batch = state().batches.find(handle);
    if (batch == nullptr)
        return A_Err_PARAMETER;
    const StreamRef* ref = targetOf(batch);
    if (commit && ref != nullptr)
        addKeys(*ref->layer, ref->node, std::move(batch->keys));
    state().batches.remove(handle);
    return commit && ref == nullptr ? A_Err_PARAMETER : A_Err_NONE;
}

} // namespace

const AEGP_KeyframeSuite4 keyframeSuite{
    .AEGP_GetStreamNumKFs = getStreamNumKFs,
    .AEGP_GetKeyframeTime = getKeyframeTime,
    .AEGP_DeleteKeyframe = deleteKeyframe,
    .AEGP_GetNewKeyframeValue = getNewKeyframeValue,
    .AEGP_StartAddKeyframes = startAddKeyframes,
    .AEGP_AddKeyframes = addKeyframes,
    .AEGP_SetAddKeyframe = setAddKeyframe,
    .AEGP_EndAddKeyframes = endAddKeyframes,
};

} // namespace jostle::standalone

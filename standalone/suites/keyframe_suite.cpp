#include <algorithm>
#include <optional>

#include "standalone/suites/host_state.h"
#include "standalone/suites/path_edits.h"
#include "standalone/suites/stream_edits.h"
#include "standalone/suites/stream_nodes.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

/// The reference, if it leads to a usable leaf whose keys are its own.
StreamRef* keyedLeaf(AEGP_StreamRefH handle) {
    StreamRef* ref = state().leafOf(handle);
    if (ref == nullptr || !isSeparatedLeader(*ref->layer->layer, *ref->node))
        return ref;
    state().note(Misuse::KeysOfSeparatedLeader);
    return nullptr;
}

const std::vector<double>& framesOf(const TreeNode& leaf) {
    return leaf.path != nullptr ? leaf.path->frames : leaf.stream->keys.frames.items();
}

bool isKey(const StreamRef& ref, AEGP_KeyframeIndex index) {
    return index >= 0 && static_cast<std::size_t>(index) < framesOf(*ref.node).size();
}

A_Err getStreamNumKFs(AEGP_StreamRefH handle, A_long* count) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    if (typeOf(*ref->node) == AEGP_StreamType_NO_DATA) {
        *count = AEGP_NumKF_NO_DATA;
        return A_Err_NONE;
    }
    if (keyedLeaf(handle) == nullptr)
        return A_Err_GENERIC;
    *count = static_cast<A_long>(framesOf(*ref->node).size());
    return A_Err_NONE;
}

A_Err getKeyframeTime(AEGP_StreamRefH handle, AEGP_KeyframeIndex index, AEGP_LTimeMode mode, A_Time* time) {
    const StreamRef* ref = keyedLeaf(handle);
    if (ref == nullptr || !isKey(*ref, index) || !isValid(mode) || time == nullptr)
        return A_Err_PARAMETER;
    const double frame = framesOf(*ref->node)[static_cast<std::size_t>(index)];
    *time = toHost(ref->layer->comp->composition->clock.timeOf(frame));
    return A_Err_NONE;
}

A_Err deleteKeyframe(AEGP_StreamRefH handle, AEGP_KeyframeIndex index) {
    const StreamRef* ref = keyedLeaf(handle);
    if (ref == nullptr || !isKey(*ref, index))
        return A_Err_PARAMETER;
    if (ref->node->path != nullptr)
        deleteKey(*ref->layer, *ref->node->path, static_cast<std::size_t>(index));
    else
        deleteKey(*ref->layer, *ref->node->stream, static_cast<std::size_t>(index));
    return A_Err_NONE;
}

AEGP_StreamVal2 keyValue(const TreeNode& leaf, AEGP_KeyframeIndex index) {
    if (leaf.path != nullptr) {
        AEGP_StreamVal2 value{};
        value.mask = state().maskOutlines.add(leaf.path->values[static_cast<std::size_t>(index)]);
        return value;
    }
    const Stream& stream = *leaf.stream;
    Components components{};
    std::copy_n(stream.keys.values.begin() + static_cast<std::ptrdiff_t>(index) * stream.components, stream.components,
                components.begin());
    return toSuiteValue(leaf, components);
}

A_Err getNewKeyframeValue(AEGP_PluginID, AEGP_StreamRefH handle, AEGP_KeyframeIndex index, AEGP_StreamValue2* value) {
    StreamRef* ref = keyedLeaf(handle);
    if (ref == nullptr || !isKey(*ref, index) || value == nullptr)
        return A_Err_PARAMETER;
    state().giveValue(handle, *ref, keyValue(*ref->node, index), *value);
    return A_Err_NONE;
}

A_Err startAddKeyframes(AEGP_StreamRefH handle, AEGP_AddKeyframesInfoH* batch) {
    const StreamRef* ref = keyedLeaf(handle);
    if (ref == nullptr || batch == nullptr)
        return A_Err_PARAMETER;
    if (ref->node->kind == NodeKind::StarType)
        return state().refuse("AEGP_StartAddKeyframes for the type of a star"); // a plain number in the file
    *batch = state().batches.add({handle, keyComponents(*ref->node), std::move(state().spareKeys)});
    return A_Err_NONE;
}

KeyBatch* batchOf(AEGP_AddKeyframesInfoH handle) {
    KeyBatch* batch = state().batches.find(handle);
    if (batch == nullptr)
        state().noteUnknown(state().batches, handle);
    return batch;
}

/// Finds out what a batch is for, and all of it that every key needs.
StreamRef* lookedUp(KeyBatch& batch) {
    state().plainBatch = {}; // this batch may be so no longer
    StreamRef* ref = keyedLeaf(batch.stream);
    batch.target = ref != nullptr && keyComponents(*ref->node) == batch.components ? ref : nullptr;
    batch.checkedAt = state().revision();
    if (batch.target == nullptr)
        return nullptr;
    const TreeNode& leaf = *ref->node;
    batch.clock = ref->layer->comp->composition->clock;
    batch.given = static_cast<std::size_t>(suiteComponents(leaf));
    // Of a colour the suites' layout is another one.
    batch.isPlain = leaf.stream != nullptr && leaf.stream->keys.empty() && typeOf(leaf) != AEGP_StreamType_COLOR;
    batch.present = batch.isPlain ? leafValueAt(*ref->layer->layer, leaf, 0) : Components{};
    return ref;
}

/// What a batch is for, if its stream is still usable and still has the components that the batch began with.
StreamRef* targetOf(KeyBatch* batch) {
    if (batch == nullptr)
        return nullptr;
    // Asked for with every key, and as a rule nothing has happened since the last one.
    return batch->target != nullptr && batch->checkedAt == state().revision() ? batch->target : lookedUp(*batch);
}

/// The batch, if it is the one that a key was added to last, a key of it is nothing but its numbers, and all else is
/// known; else null, and no fault.
KeyBatch* plainBatch(AEGP_AddKeyframesInfoH handle) {
    const auto& plain = state().plainBatch;
    return handle == plain.handle && plain.batch != nullptr && plain.batch->checkedAt == state().revision()
               ? plain.batch
               : nullptr;
}

A_Err setPlainKey(KeyBatch& batch, std::size_t place, const AEGP_StreamVal2& value) {
    const Components numbers{value.three_d.x, batch.given > 1 ? value.three_d.y : 0,
                             batch.given > 2 ? value.three_d.z : 0};
    if (!isFinite(numbers))
        return A_Err_PARAMETER;
    Components& key = batch.keys[place].value;
    key[0] = numbers[0];
    if (batch.given > 1)
        key[1] = numbers[1];
    if (batch.given > 2)
        key[2] = numbers[2];
    return A_Err_NONE;
}

/// To a list with room for one more.
void appendWithinRoom(std::vector<NewKey>& keys, const NewKey& key) {
    if (keys.size() == keys.capacity())
        __builtin_unreachable(); // so that no call is made ready for
    keys.push_back(key);
}

// The ways of any key, out of line: without a call those of most of them save and restore no registers.

[[gnu::noinline]] A_Err addAnyKey(AEGP_AddKeyframesInfoH handle, AEGP_LTimeMode mode, const A_Time* time,
                                  A_long* index) {
    KeyBatch* batch = batchOf(handle);
    const StreamRef* ref = targetOf(batch);
    if (ref == nullptr || !isValid(mode) || !state().isValid(time) || index == nullptr)
        return A_Err_PARAMETER;
    const double frame = batch->clock.frameAt({time->value, time->scale});
    *index = static_cast<A_long>(batch->keys.size());
    NewKey& key = batch->keys.emplace_back();
    key.frame = frame;
    // The present value holds until one is set.
    if (batch->isPlain) {
        key.value = batch->present;
        state().plainBatch = {handle, batch}; // the next ones need not come here
    } else if (ref->node->path != nullptr)
        batch->outlines.push_back(valueAt(*ref->node->path, frame));
    else
        key.value = leafValueAt(*ref->layer->layer, *ref->node, frame);
    return A_Err_NONE;
}

[[gnu::noinline]] A_Err setAnyKey(AEGP_AddKeyframesInfoH handle, A_long index, const AEGP_StreamValue2* value) {
    KeyBatch* batch = batchOf(handle);
    const StreamRef* ref = targetOf(batch);
    if (ref == nullptr || index < 0 || static_cast<std::size_t>(index) >= batch->keys.size() ||
        !state().isValueFor(*ref->node, value))
        return A_Err_PARAMETER;
    const auto place = static_cast<std::size_t>(index);
    if (batch->isPlain)
        return setPlainKey(*batch, place, value->val);
    if (ref->node->path != nullptr) {
        const PathValue& outline = *state().maskOutlines.find(value->val.mask);
        if (!isFinite(outline))
            return A_Err_PARAMETER;
        batch->outlines[place] = outline;
        return A_Err_NONE;
    }
    const Components components = fromSuiteValue(*ref->node, value->val);
    if (!isFinite(components))
        return A_Err_PARAMETER;
    std::copy_n(components.data(), batch->given, batch->keys[place].value.data());
    return A_Err_NONE;
}

A_Err addKeyframes(AEGP_AddKeyframesInfoH handle, AEGP_LTimeMode mode, const A_Time* time, A_long* index) {
    KeyBatch* batch = plainBatch(handle);
    if (batch == nullptr || !isValid(mode) || time == nullptr || index == nullptr ||
        batch->keys.size() == batch->keys.capacity())
        return addAnyKey(handle, mode, time, index);
    const std::optional<double> frame = batch->clock.wholeFrameAt({time->value, time->scale});
    if (!frame)
        return addAnyKey(handle, mode, time, index);
    *index = static_cast<A_long>(batch->keys.size());
    appendWithinRoom(batch->keys, {*frame, batch->present});
    return A_Err_NONE;
}

A_Err setAddKeyframe(AEGP_AddKeyframesInfoH handle, A_long index, const AEGP_StreamValue2* value) {
    KeyBatch* batch = plainBatch(handle);
    // A value that was read from the batch's own stream is of its type.
    if (batch == nullptr || value == nullptr || value->streamH != batch->stream || batch->target->openValues == 0 ||
        index < 0 || static_cast<std::size_t>(index) >= batch->keys.size())
        return setAnyKey(handle, index, value);
    return setPlainKey(*batch, static_cast<std::size_t>(index), value->val);
}

A_Err endAddKeyframes(A_Boolean commit, AEGP_AddKeyframesInfoH handle) {
    KeyBatch* batch = batchOf(handle);
    if (batch == nullptr)
        return A_Err_PARAMETER;
    const StreamRef* ref = commit ? targetOf(batch) : nullptr;
    if (ref != nullptr && ref->node->path != nullptr)
        addKeys(*ref->layer, *ref->node->path, batch->keys, batch->outlines);
    else if (ref != nullptr)
        addKeys(*ref->layer, *ref->node, batch->keys);
    // The next batch begins with its memory.
    batch->keys.clear();
    state().spareKeys = std::move(batch->keys);
    state().plainBatch = {};
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

#include <algorithm>

#include "standalone/document/evaluate.h"
#include "standalone/suites/host_state.h"
#include "standalone/suites/reparent.h"
#include "standalone/suites/structure_edits.h"
#include "standalone/suites/tables.h"
#include "standalone/suites/text.h"

namespace jostle::standalone {

namespace {

const Composition& compositionOf(const LayerEntry& entry) {
    return *entry.comp->composition;
}

bool isVideoOn(const Layer& layer) {
    return !layer.hidden && !layer.matteSource;
}

AEGP_LayerFlags flagsOf(const Layer& layer) {
    AEGP_LayerFlags flags = 0;
    const auto add = [&](bool on, AEGP_LayerFlags flag) { flags |= on ? flag : 0; };
    add(isVideoOn(layer), AEGP_LayerFlag_VIDEO_ACTIVE);
    add(layer.motionBlur, AEGP_LayerFlag_MOTION_BLUR);
    add(layer.autoOrient, AEGP_LayerFlag_AUTO_ORIENT_ROTATION);
    add(layer.threeD, AEGP_LayerFlag_LAYER_IS_3D);
    add(layer.kind == LayerKind::Null, AEGP_LayerFlag_NULL_LAYER);
    add(layer.adjustment || layer.kind == LayerKind::Adjustment, AEGP_LayerFlag_ADJUSTMENT_LAYER);
    add(layer.guide || layer.kind == LayerKind::Guide, AEGP_LayerFlag_GUIDE_LAYER);
    return flags;
}

AEGP_ObjectType typeOf(LayerKind kind) {
    switch (kind) {
    case LayerKind::Shape:
        return AEGP_ObjectType_VECTOR;
    case LayerKind::Text:
        return AEGP_ObjectType_TEXT;
    case LayerKind::Camera:
        return AEGP_ObjectType_CAMERA;
    case LayerKind::Light:
        return AEGP_ObjectType_LIGHT;
    default:
        return AEGP_ObjectType_AV;
    }
}

A_Err getCompNumLayers(AEGP_CompH handle, A_long* count) {
    const CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    *count = static_cast<A_long>(comp->layers.size());
    return A_Err_NONE;
}

A_Err getCompLayerByIndex(AEGP_CompH handle, A_long index, AEGP_LayerH* layer) {
    const CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || static_cast<std::size_t>(index) >= comp->layers.size() || layer == nullptr)
        return A_Err_PARAMETER;
    *layer = comp->layers[static_cast<std::size_t>(index)];
    return A_Err_NONE;
}

/// Gives what a function tells of a layer.
template<class Answer, class Function>
A_Err tell(AEGP_LayerH handle, Answer* answer, Function of) {
    const LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || answer == nullptr)
        return A_Err_PARAMETER;
    *answer = of(*entry);
    return A_Err_NONE;
}

A_Err getLayerIndex(AEGP_LayerH handle, A_long* index) {
    return tell(handle, index, [](const LayerEntry& entry) { return entry.index; });
}

A_Err getLayerSourceItem(AEGP_LayerH handle, AEGP_ItemH* item) {
    return tell(handle, item, [](const LayerEntry& entry) { return entry.source; });
}

A_Err getLayerName(AEGP_PluginID, AEGP_LayerH handle, AEGP_MemHandle* layerName, AEGP_MemHandle* sourceName) {
    const LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr)
        return A_Err_PARAMETER;
    if (layerName != nullptr)
        *layerName = state().giveText(entry->layer->name);
    if (sourceName != nullptr)
        *sourceName = state().giveText(entry->layer->item ? std::string_view(entry->layer->item->name) : "");
    return A_Err_NONE;
}

A_Err getLayerFlags(AEGP_LayerH handle, AEGP_LayerFlags* flags) {
    return tell(handle, flags, [](const LayerEntry& entry) { return flagsOf(*entry.layer); });
}

A_Err setLayerFlag(AEGP_LayerH handle, AEGP_LayerFlags flag, A_Boolean value) {
    LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || flag <= 0 || (flag & (flag - 1)) != 0)
        return A_Err_PARAMETER;
    bool Layer::*field = nullptr;
    if (flag == AEGP_LayerFlag_VIDEO_ACTIVE)
        field = &Layer::hidden;
    else if (flag == AEGP_LayerFlag_MOTION_BLUR)
        field = &Layer::motionBlur;
    else if (flag == AEGP_LayerFlag_AUTO_ORIENT_ROTATION)
        field = &Layer::autoOrient;
    else
        return state().refuse("AEGP_SetLayerFlag for anything but video, motion blur and auto-orientation");
    Layer& layer = *entry->layer;
    const bool wanted = (value != 0) != (flag == AEGP_LayerFlag_VIDEO_ACTIVE);
    if (layer.*field == wanted)
        return A_Err_NONE;
    state().journal.touchLayer(*entry);
    layer.*field = wanted;
    layer.changed = true;
    return A_Err_NONE;
}

A_Err isLayerVideoReallyOn(AEGP_LayerH handle, A_Boolean* on) {
    return tell(handle, on, [](const LayerEntry& entry) { return isVideoOn(*entry.layer); });
}

A_Err getLayerInPoint(AEGP_LayerH handle, AEGP_LTimeMode mode, A_Time* time) {
    const LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || !isValid(mode) || time == nullptr)
        return A_Err_PARAMETER;
    *time = toHost(compositionOf(*entry).clock.timeOf(entry->layer->inFrame));
    return A_Err_NONE;
}

A_Err getLayerDuration(AEGP_LayerH handle, AEGP_LTimeMode mode, A_Time* duration) {
    const LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || !isValid(mode) || duration == nullptr)
        return A_Err_PARAMETER;
    const double frames = std::max(0.0, entry->layer->outFrame - entry->layer->inFrame);
    *duration = toHost(compositionOf(*entry).clock.timeOf(frames));
    return A_Err_NONE;
}

A_Err getLayerOffset(AEGP_LayerH handle, A_Time* time) {
    return tell(handle, time, [](const LayerEntry& entry) {
        return toHost(compositionOf(entry).clock.timeOf(entry.layer->startFrame));
    });
}

A_Err reorderLayer(AEGP_LayerH handle, A_long index) {
    LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr)
        return A_Err_PARAMETER;
    const std::size_t count = entry->comp->layers.size();
    const std::size_t place = index == AEGP_REORDER_LAYER_TO_END ? count - 1 : static_cast<std::size_t>(index);
    if (place >= count)
        return A_Err_PARAMETER;
    moveLayer(*entry, place);
    return A_Err_NONE;
}

A_Err getLayerObjectType(AEGP_LayerH handle, AEGP_ObjectType* type) {
    return tell(handle, type, [](const LayerEntry& entry) { return typeOf(entry.layer->kind); });
}

A_Err isLayer3D(AEGP_LayerH handle, A_Boolean* is3D) {
    return tell(handle, is3D, [](const LayerEntry& entry) { return entry.layer->threeD; });
}

A_Err getLayerID(AEGP_LayerH handle, AEGP_LayerIDVal* id) {
    return tell(handle, id, [](const LayerEntry& entry) { return entry.layer->id; });
}

A_Err getLayerToWorld(AEGP_LayerH handle, const A_Time* time, A_Matrix4* matrix) {
    const LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || !state().isValid(time) || matrix == nullptr)
        return A_Err_PARAMETER;
    const Matrix4d world = worldMatrix(*entry->layer, frameAt(*entry->comp, *time));
    std::copy(&world.m[0][0], &world.m[0][0] + 16, &matrix->mat[0][0]);
    return A_Err_NONE;
}

A_Err setLayerName(AEGP_LayerH handle, const A_UTF16Char* name) {
    LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || name == nullptr)
        return A_Err_PARAMETER;
    std::string text = utf8Of(name);
    if (text == entry->layer->name)
        return A_Err_NONE;
    state().journal.touchLayer(*entry);
    entry->layer->name = std::move(text);
    entry->layer->changed = true;
    return A_Err_NONE;
}

A_Err getLayerParent(AEGP_LayerH handle, AEGP_LayerH* parent) {
    return tell(handle, parent, [](const LayerEntry& entry) {
        const auto known = state().layerHandles.find(entry.layer->parent);
        return known == state().layerHandles.end() ? nullptr : known->second;
    });
}

A_Err setLayerParent(AEGP_LayerH handle, AEGP_LayerH parentHandle) {
    LayerEntry* entry = state().layerOf(handle);
    const LayerEntry* parent = state().layerOf(parentHandle);
    if (entry == nullptr || (parentHandle != nullptr && parent == nullptr))
        return A_Err_PARAMETER;
    return setParent(*entry, parent) ? A_Err_NONE : A_Err_PARAMETER;
}

A_Err removeLayer(AEGP_LayerH handle) {
    LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr)
        return A_Err_PARAMETER;
    deleteLayer(*entry);
    return A_Err_NONE;
}

A_Err copyLayer(AEGP_LayerH handle, AEGP_LayerH* duplicate) {
    LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || duplicate == nullptr)
        return A_Err_PARAMETER;
    *duplicate = duplicateLayer(*entry);
    return A_Err_NONE;
}

A_Err getLayerLabel(AEGP_LayerH handle, AEGP_LabelID* label) {
    return tell(handle, label, [](const LayerEntry& entry) { return static_cast<AEGP_LabelID>(entry.layer->label); });
}

} // namespace

const AEGP_LayerSuite13 layerSuite{
    .AEGP_GetCompNumLayers = getCompNumLayers,
    .AEGP_GetCompLayerByIndex = getCompLayerByIndex,
    .AEGP_GetLayerIndex = getLayerIndex,
    .AEGP_GetLayerSourceItem = getLayerSourceItem,
    .AEGP_GetLayerName = getLayerName,
    .AEGP_GetLayerFlags = getLayerFlags,
    .AEGP_SetLayerFlag = setLayerFlag,
    .AEGP_IsLayerVideoReallyOn = isLayerVideoReallyOn,
    .AEGP_GetLayerInPoint = getLayerInPoint,
    .AEGP_GetLayerDuration = getLayerDuration,
    .AEGP_GetLayerOffset = getLayerOffset,
    .AEGP_ReorderLayer = reorderLayer,
    .AEGP_GetLayerObjectType = getLayerObjectType,
    .AEGP_IsLayer3D = isLayer3D,
    .AEGP_GetLayerID = getLayerID,
    .AEGP_GetLayerToWorldXform = getLayerToWorld,
    .AEGP_SetLayerName = setLayerName,
    .AEGP_GetLayerParent = getLayerParent,
    .AEGP_SetLayerParent = setLayerParent,
    .AEGP_DeleteLayer = removeLayer,
    .AEGP_DuplicateLayer = copyLayer,
    .AEGP_GetLayerLabel = getLayerLabel,
};

} // namespace jostle::standalone

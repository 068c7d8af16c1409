#include <cstring>
#include <string_view>

#include "standalone/suites/host_state.h"
#include "standalone/suites/stream_nodes.h"
#include "standalone/suites/tables.h"
#include "standalone/suites/text.h"

// Older versions of the tables. They lead to the newer ones' functions, and differ in their slots and in names, which
// are UTF-8 in fixed buffers here: cut between characters where they are too long.

namespace jostle::standalone {

namespace {

void fill(A_char* buffer, std::size_t size, std::string_view utf8) {
    const std::string_view start = startOf(utf8, size - 1);
    std::memcpy(buffer, start.data(), start.size());
    buffer[start.size()] = '\0';
}

A_Err getItemName(AEGP_ItemH handle, A_char* name) {
    const ItemEntry* entry = state().items.find(handle);
    if (entry == nullptr || name == nullptr)
        return A_Err_PARAMETER;
    fill(name, AEGP_MAX_ITEM_NAME_SIZE, entry->item->name);
    return A_Err_NONE;
}

A_Err getLayerName(AEGP_LayerH handle, A_char* layerName, A_char* sourceName) {
    const LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr)
        return A_Err_PARAMETER;
    if (layerName != nullptr)
        fill(layerName, AEGP_MAX_LAYER_NAME_SIZE, entry->layer->name);
    if (sourceName != nullptr)
        fill(sourceName, AEGP_MAX_LAYER_NAME_SIZE,
             entry->layer->item ? std::string_view(entry->layer->item->name) : "");
    return A_Err_NONE;
}

A_Err setLayerName(AEGP_LayerH handle, const A_char* name) {
    return name == nullptr ? A_Err_PARAMETER : layerSuite.AEGP_SetLayerName(handle, utf16Of(name).c_str());
}

A_Err createNullInComp(const A_char* name, AEGP_CompH comp, const A_Time* duration, AEGP_LayerH* layer) {
    const std::u16string units = utf16Of(name == nullptr ? "" : name);
    return compSuite.AEGP_CreateNullInComp(units.c_str(), comp, duration, layer);
}

A_Err getStreamName(AEGP_StreamRefH handle, A_Boolean, A_char* name) {
    const StreamRef* ref = state().usableStream(handle);
    if (ref == nullptr || name == nullptr)
        return A_Err_PARAMETER;
    fill(name, AEGP_MAX_STREAM_NAME_SIZE, displayNameOf(*ref->layer->layer, *ref->node));
    return A_Err_NONE;
}

template<std::int32_t version>
AEGP_StreamSuiteBefore9<version> streamSuiteBefore9() {
    const AEGP_StreamSuite9& now = streamSuite;
    AEGP_StreamSuiteBefore9<version> table;
    table.AEGP_GetNewLayerStream = now.AEGP_GetNewLayerStream;
    table.AEGP_GetNewMaskStream = now.AEGP_GetNewMaskStream;
    table.AEGP_DisposeStream = now.AEGP_DisposeStream;
    table.AEGP_GetStreamName = getStreamName;
    table.AEGP_IsStreamTimevarying = now.AEGP_IsStreamTimevarying;
    table.AEGP_GetStreamType = now.AEGP_GetStreamType;
    table.AEGP_GetNewStreamValue = now.AEGP_GetNewStreamValue;
    table.AEGP_DisposeStreamValue = now.AEGP_DisposeStreamValue;
    table.AEGP_SetStreamValue = now.AEGP_SetStreamValue;
    table.AEGP_GetExpressionState = now.AEGP_GetExpressionState;
    table.AEGP_SetExpressionState = now.AEGP_SetExpressionState;
    table.AEGP_GetExpression = now.AEGP_GetExpression;
    table.AEGP_SetExpression = now.AEGP_SetExpression;
    return table;
}

} // namespace

// The newer tables are constants that need no initialisation, so they may be read here whatever the order of files.

const AEGP_UtilitySuite7 utilitySuite7{
    .AEGP_ReportInfo = utilitySuite.AEGP_ReportInfo,
    .AEGP_StartUndoGroup = utilitySuite.AEGP_StartUndoGroup,
    .AEGP_EndUndoGroup = utilitySuite.AEGP_EndUndoGroup,
    .AEGP_GetMainHWND = utilitySuite.AEGP_GetMainHWND,
};

const AEGP_ItemSuite11 itemSuite11{
    .AEGP_GetActiveItem = itemSuite.AEGP_GetActiveItem,
    .AEGP_GetItemType = itemSuite.AEGP_GetItemType,
    .AEGP_GetItemName = getItemName,
    .AEGP_GetItemDuration = itemSuite.AEGP_GetItemDuration,
    .AEGP_GetItemDimensions = itemSuite.AEGP_GetItemDimensions,
    .AEGP_GetItemPixelAspectRatio = itemSuite.AEGP_GetItemPixelAspectRatio,
};

const AEGP_CompSuite11 compSuite11{
    .AEGP_GetCompFromItem = compSuite.AEGP_GetCompFromItem,
    .AEGP_GetItemFromComp = compSuite.AEGP_GetItemFromComp,
    .AEGP_GetCompBGColor = compSuite.AEGP_GetCompBGColor,
    .AEGP_GetCompWorkAreaStart = compSuite.AEGP_GetCompWorkAreaStart,
    .AEGP_GetCompWorkAreaDuration = compSuite.AEGP_GetCompWorkAreaDuration,
    .AEGP_SetCompWorkAreaStartAndDuration = compSuite.AEGP_SetCompWorkAreaStartAndDuration,
    .AEGP_GetNewCollectionFromCompSelection = compSuite.AEGP_GetNewCollectionFromCompSelection,
    .AEGP_SetSelection = compSuite.AEGP_SetSelection,
    .AEGP_CreateNullInComp = createNullInComp,
    .AEGP_DuplicateComp = compSuite.AEGP_DuplicateComp,
    .AEGP_GetCompFrameDuration = compSuite.AEGP_GetCompFrameDuration,
};

const AEGP_LayerSuite11 layerSuite11{
    .AEGP_GetCompNumLayers = layerSuite.AEGP_GetCompNumLayers,
    .AEGP_GetCompLayerByIndex = layerSuite.AEGP_GetCompLayerByIndex,
    .AEGP_GetLayerIndex = layerSuite.AEGP_GetLayerIndex,
    .AEGP_GetLayerSourceItem = layerSuite.AEGP_GetLayerSourceItem,
    .AEGP_GetLayerName = getLayerName,
    .AEGP_GetLayerFlags = layerSuite.AEGP_GetLayerFlags,
    .AEGP_SetLayerFlag = layerSuite.AEGP_SetLayerFlag,
    .AEGP_IsLayerVideoReallyOn = layerSuite.AEGP_IsLayerVideoReallyOn,
    .AEGP_GetLayerInPoint = layerSuite.AEGP_GetLayerInPoint,
    .AEGP_GetLayerDuration = layerSuite.AEGP_GetLayerDuration,
    .AEGP_GetLayerOffset = layerSuite.AEGP_GetLayerOffset,
    .AEGP_ReorderLayer = layerSuite.AEGP_ReorderLayer,
    .AEGP_GetLayerObjectType = layerSuite.AEGP_GetLayerObjectType,
    .AEGP_IsLayer3D = layerSuite.AEGP_IsLayer3D,
    .AEGP_GetLayerID = layerSuite.AEGP_GetLayerID,
    .AEGP_GetLayerToWorldXform = layerSuite.AEGP_GetLayerToWorldXform,
    .AEGP_SetLayerName = setLayerName,
    .AEGP_GetLayerParent = layerSuite.AEGP_GetLayerParent,
    .AEGP_SetLayerParent = layerSuite.AEGP_SetLayerParent,
    .AEGP_DeleteLayer = layerSuite.AEGP_DeleteLayer,
    .AEGP_DuplicateLayer = layerSuite.AEGP_DuplicateLayer,
};

const AEGP_StreamSuite7 streamSuite7 = streamSuiteBefore9<7>();
const AEGP_StreamSuite8 streamSuite8 = streamSuiteBefore9<8>();

const AEGP_DynamicStreamSuite2 dynamicStreamSuite2{
    .AEGP_GetNewStreamRefForLayer = dynamicStreamSuite.AEGP_GetNewStreamRefForLayer,
    .AEGP_GetStreamDepth = dynamicStreamSuite.AEGP_GetStreamDepth,
    .AEGP_GetStreamGroupingType = dynamicStreamSuite.AEGP_GetStreamGroupingType,
    .AEGP_GetNumStreamsInGroup = dynamicStreamSuite.AEGP_GetNumStreamsInGroup,
    .AEGP_GetNewStreamRefByIndex = dynamicStreamSuite.AEGP_GetNewStreamRefByIndex,
    .AEGP_GetNewStreamRefByMatchname = dynamicStreamSuite.AEGP_GetNewStreamRefByMatchname,
    .AEGP_DeleteStream = dynamicStreamSuite.AEGP_DeleteStream,
    .AEGP_GetMatchName = dynamicStreamSuite.AEGP_GetMatchName,
    .AEGP_GetNewParentStreamRef = dynamicStreamSuite.AEGP_GetNewParentStreamRef,
};
const AEGP_DynamicStreamSuite3 dynamicStreamSuite3{.before = dynamicStreamSuite2};

} // namespace jostle::standalone

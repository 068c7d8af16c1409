#pragma once

#include <cstring>

#include <string>

#include "tests/host/document.h"

/// A host whose n-th call is refused, over another one. Calls that give something back always go through, so that a
/// balance that is not zero is the plug-in's fault. One at a time.
namespace jostle {

class FailingSuites {
public:
    /// @param failingCall  counted from 1, acquisitions included
    FailingSuites(const SPBasicSuite* host, int failingCall) {
        host_ = host;
        remaining_ = failingCall;
        basic_ = *host;
        basic_.AcquireSuite = &acquire;
    }

    [[nodiscard]] const SPBasicSuite* basic() const { return &basic_; }
    /// Whether the call to be refused was reached.
    [[nodiscard]] static bool reached() { return remaining_ <= 0; }

private:
    template<auto member>
    struct Refusable;
    template<class Suite, class... Arguments, A_Err (*Suite::*member)(Arguments...)>
    struct Refusable<member> {
        static A_Err call(Arguments... arguments) {
            return refuses() ? A_Err_GENERIC : (static_cast<const Suite*>(real<Suite>)->*member)(arguments...);
        }
    };

    static bool refuses() { return --remaining_ == 0; }

    /// Stands a copy of a table in its place, with the given members made refusable.
    template<class Suite, auto... members>
    static bool replace(const char* name, const void** table) {
        if (std::strcmp(name, Suite::suiteName) != 0)
            return false;
        real<Suite> = static_cast<const Suite*>(*table);
        copy<Suite> = *real<Suite>;
        ((copy<Suite>.*members = &Refusable<members>::call), ...);
        *table = &copy<Suite>;
        return true;
    }

    static SPErr acquire(const char* name, std::int32_t version, const void** table) {
        if (refuses())
            return A_Err_GENERIC;
        const SPErr error = host_->AcquireSuite(name, version, table);
        if (error != 0)
            return error;
        using CommandTable = AEGP_CommandSuite1;
        using UtilityTable = AEGP_UtilitySuite11;
        using MemoryTable = AEGP_MemorySuite1;
        using ItemTable = AEGP_ItemSuite13;
        using CompTable = AEGP_CompSuite15;
        using FootageTable = AEGP_FootageSuite11;
        using LayerTable = AEGP_LayerSuite13;
        using StreamTable = AEGP_StreamSuite9;
        using TreeTable = AEGP_DynamicStreamSuite5;
        using KeyTable = AEGP_KeyframeSuite4;
        using MaskTable = AEGP_LayerMaskSuite6;
        using OutlineTable = AEGP_MaskOutlineSuite3;
        using TextTable = AEGP_TextLayerSuite1;
        using PathTable = PF_PathDataSuite1;
        using CollectionTable = AEGP_CollectionSuite2;
        replace<CommandTable, &CommandTable::AEGP_DoCommand>(name, table) ||
            replace<UtilityTable, &UtilityTable::AEGP_StartUndoGroup>(name, table) ||
            replace<MemoryTable, &MemoryTable::AEGP_GetMemHandleSize, &MemoryTable::AEGP_LockMemHandle>(name, table) ||
            replace<ItemTable, &ItemTable::AEGP_GetActiveItem, &ItemTable::AEGP_GetItemType,
                    &ItemTable::AEGP_GetItemDuration, &ItemTable::AEGP_GetItemDimensions,
                    &ItemTable::AEGP_GetItemPixelAspectRatio>(name, table) ||
            replace<CompTable, &CompTable::AEGP_GetCompFromItem, &CompTable::AEGP_GetItemFromComp,
                    &CompTable::AEGP_GetCompFrameDuration, &CompTable::AEGP_DuplicateComp,
                    &CompTable::AEGP_GetNewCollectionFromCompSelection, &CompTable::AEGP_SetSelection,
                    &CompTable::AEGP_SetCompWorkAreaStartAndDuration, &CompTable::AEGP_CreateVectorLayerInComp>(
                name, table) ||
            replace<FootageTable, &FootageTable::AEGP_GetMainFootageFromItem, &FootageTable::AEGP_GetFootageSignature,
                    &FootageTable::AEGP_GetSolidFootageColor>(name, table) ||
            replace<LayerTable, &LayerTable::AEGP_GetCompNumLayers, &LayerTable::AEGP_GetCompLayerByIndex,
                    &LayerTable::AEGP_GetLayerSourceItem, &LayerTable::AEGP_GetLayerName,
                    &LayerTable::AEGP_GetLayerFlags, &LayerTable::AEGP_SetLayerFlag,
                    &LayerTable::AEGP_IsLayerVideoReallyOn, &LayerTable::AEGP_GetLayerInPoint,
                    &LayerTable::AEGP_GetLayerDuration, &LayerTable::AEGP_GetLayerObjectType,
                    &LayerTable::AEGP_IsLayer3D, &LayerTable::AEGP_GetLayerID, &LayerTable::AEGP_GetLayerToWorldXform,
                    &LayerTable::AEGP_GetLayerParent, &LayerTable::AEGP_SetLayerParent, &LayerTable::AEGP_GetLayerLabel,
                    &LayerTable::AEGP_ReorderLayer, &LayerTable::AEGP_SetLayerName, &LayerTable::AEGP_DuplicateLayer>(
                name, table) ||
            replace<StreamTable, &StreamTable::AEGP_GetNewLayerStream, &StreamTable::AEGP_IsStreamTimevarying,
                    &StreamTable::AEGP_GetNewStreamValue, &StreamTable::AEGP_SetStreamValue,
                    &StreamTable::AEGP_GetExpressionState, &StreamTable::AEGP_SetExpressionState,
                    &StreamTable::AEGP_GetNewMaskStream, &StreamTable::AEGP_GetStreamName>(name, table) ||
            replace<TreeTable, &TreeTable::AEGP_GetNewStreamRefForLayer, &TreeTable::AEGP_GetNumStreamsInGroup,
                    &TreeTable::AEGP_GetNewStreamRefByMatchname, &TreeTable::AEGP_IsSeparationLeader,
                    &TreeTable::AEGP_AreDimensionsSeparated, &TreeTable::AEGP_GetSeparationFollower,
                    &TreeTable::AEGP_GetNewStreamRefByIndex, &TreeTable::AEGP_GetMatchName,
                    &TreeTable::AEGP_GetStreamGroupingType, &TreeTable::AEGP_DeleteStream>(name, table) ||
            replace<KeyTable, &KeyTable::AEGP_GetStreamNumKFs, &KeyTable::AEGP_GetKeyframeTime,
                    &KeyTable::AEGP_DeleteKeyframe, &KeyTable::AEGP_StartAddKeyframes, &KeyTable::AEGP_AddKeyframes,
                    &KeyTable::AEGP_SetAddKeyframe>(name, table) ||
            replace<MaskTable, &MaskTable::AEGP_GetLayerMaskByIndex, &MaskTable::AEGP_CreateNewMask,
                    &MaskTable::AEGP_GetMaskIsRotoBezier, &MaskTable::AEGP_SetMaskIsRotoBezier>(name, table) ||
            replace<OutlineTable, &OutlineTable::AEGP_IsMaskOutlineOpen, &OutlineTable::AEGP_GetMaskOutlineNumSegments,
                    &OutlineTable::AEGP_GetMaskOutlineVertexInfo>(name, table) ||
            replace<TextTable, &TextTable::AEGP_GetNewTextOutlines, &TextTable::AEGP_GetNumTextOutlines,
                    &TextTable::AEGP_GetIndexedTextOutline>(name, table) ||
            replace<PathTable, &PathTable::PF_PathIsOpen, &PathTable::PF_PathNumSegments,
                    &PathTable::PF_PathVertexInfo>(name, table) ||
            replace<CollectionTable, &CollectionTable::AEGP_NewCollection, &CollectionTable::AEGP_CollectionPushBack>(
                name, table);
        return 0;
    }

    template<class Suite>
    static inline const Suite* real = nullptr;
    template<class Suite>
    static inline Suite copy{};
    static inline const SPBasicSuite* host_ = nullptr;
    static inline int remaining_ = 0;
    SPBasicSuite basic_;
};

/// Uses a host again and again, each time over a new document and with the next call refused, until there is no call
/// left to refuse.
/// @param document  makes a document
/// @param use       does with a HostContext what is to be tried
/// @return how many calls were refused
template<class MakeDocument, class Use>
int refuseEachCall(const MakeDocument& document, const Use& use) {
    for (int call = 1;; ++call) {
        SCOPED_TRACE("call " + std::to_string(call));
        HostedDocument hosted(document());
        const FailingSuites failing(hosted.host.basic(), call);
        use(HostContext{failing.basic(), hosted.host.pluginId()});
        if (!FailingSuites::reached() || call == 5000)
            return call - 1;
    }
}

} // namespace jostle

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
        /// If the table is of its suite, stands a copy in its place in which this member can be refused.
        static void replace(const char* name, const void** table) {
            if (std::strcmp(name, Suite::suiteName) != 0)
                return;
            if (*table != &copy<Suite>) {
                real<Suite> = static_cast<const Suite*>(*table);
                copy<Suite> = *real<Suite>;
                *table = &copy<Suite>;
            }
            copy<Suite>.*member = &call;
        }
    };
    template<auto... members>
    static void replace(const char* name, const void** table) {
        (Refusable<members>::replace(name, table), ...);
    }

    static bool refuses() { return --remaining_ == 0; }

    static SPErr acquire(const char* name, std::int32_t version, const void** table) {
        if (refuses())
            return A_Err_GENERIC;
        const SPErr error = host_->AcquireSuite(name, version, table);
        if (error != 0)
            return error;
        replace<
            &AEGP_CommandSuite1::AEGP_DoCommand, &AEGP_UtilitySuite11::AEGP_StartUndoGroup,
            &AEGP_MemorySuite1::AEGP_GetMemHandleSize, &AEGP_MemorySuite1::AEGP_LockMemHandle,
            &AEGP_ItemSuite13::AEGP_GetActiveItem, &AEGP_ItemSuite13::AEGP_GetItemType,
            &AEGP_ItemSuite13::AEGP_GetItemDuration, &AEGP_ItemSuite13::AEGP_GetItemDimensions,
            &AEGP_ItemSuite13::AEGP_GetItemPixelAspectRatio, &AEGP_CompSuite15::AEGP_GetCompFromItem,
            &AEGP_CompSuite15::AEGP_GetItemFromComp, &AEGP_CompSuite15::AEGP_GetCompFrameDuration,
            &AEGP_CompSuite15::AEGP_DuplicateComp, &AEGP_CompSuite15::AEGP_GetNewCollectionFromCompSelection,
            &AEGP_CompSuite15::AEGP_SetSelection, &AEGP_CompSuite15::AEGP_SetCompWorkAreaStartAndDuration,
            &AEGP_CompSuite15::AEGP_CreateVectorLayerInComp, &AEGP_FootageSuite11::AEGP_GetMainFootageFromItem,
            &AEGP_FootageSuite11::AEGP_GetFootageSignature, &AEGP_FootageSuite11::AEGP_GetSolidFootageColor,
            &AEGP_LayerSuite13::AEGP_GetCompNumLayers, &AEGP_LayerSuite13::AEGP_GetCompLayerByIndex,
            &AEGP_LayerSuite13::AEGP_GetLayerSourceItem, &AEGP_LayerSuite13::AEGP_GetLayerName,
            &AEGP_LayerSuite13::AEGP_GetLayerFlags, &AEGP_LayerSuite13::AEGP_SetLayerFlag,
            &AEGP_LayerSuite13::AEGP_IsLayerVideoReallyOn, &AEGP_LayerSuite13::AEGP_GetLayerInPoint,
            &AEGP_LayerSuite13::AEGP_GetLayerDuration, &AEGP_LayerSuite13::AEGP_GetLayerObjectType,
            &AEGP_LayerSuite13::AEGP_IsLayer3D, &AEGP_LayerSuite13::AEGP_GetLayerID,
            &AEGP_LayerSuite13::AEGP_GetLayerToWorldXform, &AEGP_LayerSuite13::AEGP_GetLayerParent,
            &AEGP_LayerSuite13::AEGP_SetLayerParent, &AEGP_LayerSuite13::AEGP_GetLayerLabel,
            &AEGP_LayerSuite13::AEGP_ReorderLayer, &AEGP_LayerSuite13::AEGP_SetLayerName,
            &AEGP_LayerSuite13::AEGP_DuplicateLayer, &AEGP_StreamSuite9::AEGP_GetNewLayerStream,
            &AEGP_StreamSuite9::AEGP_IsStreamTimevarying, &AEGP_StreamSuite9::AEGP_GetNewStreamValue,
            &AEGP_StreamSuite9::AEGP_SetStreamValue, &AEGP_StreamSuite9::AEGP_GetExpressionState,
            &AEGP_StreamSuite9::AEGP_SetExpressionState, &AEGP_StreamSuite9::AEGP_GetNewMaskStream,
            &AEGP_StreamSuite9::AEGP_GetStreamName, &AEGP_DynamicStreamSuite5::AEGP_GetNewStreamRefForLayer,
            &AEGP_DynamicStreamSuite5::AEGP_GetNumStreamsInGroup,
            &AEGP_DynamicStreamSuite5::AEGP_GetNewStreamRefByMatchname,
            &AEGP_DynamicStreamSuite5::AEGP_IsSeparationLeader, &AEGP_DynamicStreamSuite5::AEGP_AreDimensionsSeparated,
            &AEGP_DynamicStreamSuite5::AEGP_GetSeparationFollower,
            &AEGP_DynamicStreamSuite5::AEGP_GetNewStreamRefByIndex, &AEGP_DynamicStreamSuite5::AEGP_GetMatchName,
            &AEGP_DynamicStreamSuite5::AEGP_GetStreamGroupingType, &AEGP_DynamicStreamSuite5::AEGP_DeleteStream,
            &AEGP_KeyframeSuite4::AEGP_GetStreamNumKFs, &AEGP_KeyframeSuite4::AEGP_GetKeyframeTime,
            &AEGP_KeyframeSuite4::AEGP_DeleteKeyframe, &AEGP_KeyframeSuite4::AEGP_StartAddKeyframes,
            &AEGP_KeyframeSuite4::AEGP_AddKeyframes, &AEGP_KeyframeSuite4::AEGP_SetAddKeyframe,
            &AEGP_LayerMaskSuite6::AEGP_GetLayerMaskByIndex, &AEGP_LayerMaskSuite6::AEGP_CreateNewMask,
            &AEGP_LayerMaskSuite6::AEGP_GetMaskIsRotoBezier, &AEGP_LayerMaskSuite6::AEGP_SetMaskIsRotoBezier,
            &AEGP_MaskOutlineSuite3::AEGP_IsMaskOutlineOpen, &AEGP_MaskOutlineSuite3::AEGP_GetMaskOutlineNumSegments,
            &AEGP_MaskOutlineSuite3::AEGP_GetMaskOutlineVertexInfo, &AEGP_TextLayerSuite1::AEGP_GetNewTextOutlines,
            &AEGP_TextLayerSuite1::AEGP_GetNumTextOutlines, &AEGP_TextLayerSuite1::AEGP_GetIndexedTextOutline,
            &PF_PathDataSuite1::PF_PathIsOpen, &PF_PathDataSuite1::PF_PathNumSegments,
            &PF_PathDataSuite1::PF_PathVertexInfo, &AEGP_CollectionSuite2::AEGP_NewCollection,
            &AEGP_CollectionSuite2::AEGP_CollectionPushBack>(name, table);
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

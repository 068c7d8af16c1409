#pragma once

#include "host/suites_types.h"

/// Suites of layers, their streams, keyframes, masks and outlines.

/// Layer handles are borrowed and hold for one call of a hook.
struct AEGP_LayerSuite13 {
    static constexpr const char* suiteName = "AEGP Layer Suite";
    static constexpr std::int32_t suiteVersion = 13;

    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH, A_long* count) = nullptr;
    /// Index 0 is the topmost layer.
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH, A_long index, AEGP_LayerH* layer) = nullptr;
    void* reserved2 = nullptr;
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH, A_long* index) = nullptr;
    /// Null for a layer without a source.
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH, AEGP_ItemH* item) = nullptr;
    void* reserved5to6[2] = {};
    /// UTF-16; the caller frees both. The first is empty if the layer was never renamed. Either may be null.
    A_Err (*AEGP_GetLayerName)(AEGP_PluginID, AEGP_LayerH, AEGP_MemHandle* layerName,
                               AEGP_MemHandle* sourceName) = nullptr;
    void* reserved8to9[2] = {};
    A_Err (*AEGP_GetLayerFlags)(AEGP_LayerH, AEGP_LayerFlags* flags) = nullptr;
    /// Takes one flag.
    A_Err (*AEGP_SetLayerFlag)(AEGP_LayerH, AEGP_LayerFlags flag, A_Boolean value) = nullptr;
    /// The video switch, with solo and the like taken into account.
    A_Err (*AEGP_IsLayerVideoReallyOn)(AEGP_LayerH, A_Boolean* on) = nullptr;
    void* reserved13to14[2] = {};
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH, AEGP_LTimeMode, A_Time* time) = nullptr;
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH, AEGP_LTimeMode, A_Time* duration) = nullptr;
    void* reserved17 = nullptr;
    /// Composition time of the layer's time 0.
    A_Err (*AEGP_GetLayerOffset)(AEGP_LayerH, A_Time* time) = nullptr;
    void* reserved19to25[7] = {};
    /// `AEGP_REORDER_LAYER_TO_END` moves the layer to the bottom.
    A_Err (*AEGP_ReorderLayer)(AEGP_LayerH, A_long index) = nullptr;
    void* reserved27 = nullptr;
    A_Err (*AEGP_GetLayerObjectType)(AEGP_LayerH, AEGP_ObjectType* type) = nullptr;
    A_Err (*AEGP_IsLayer3D)(AEGP_LayerH, A_Boolean* is3D) = nullptr;
    void* reserved30to36[7] = {};
    /// Constant for the life of the project.
    A_Err (*AEGP_GetLayerID)(AEGP_LayerH, AEGP_LayerIDVal* id) = nullptr;
    /// Layer pixels to composition pixels at a composition time, parents included.
    A_Err (*AEGP_GetLayerToWorldXform)(AEGP_LayerH, const A_Time* compTime, A_Matrix4* matrix) = nullptr;
    void* reserved39 = nullptr;
    A_Err (*AEGP_SetLayerName)(AEGP_LayerH, const A_UTF16Char* name) = nullptr;
    /// Null if the layer has no parent.
    A_Err (*AEGP_GetLayerParent)(AEGP_LayerH, AEGP_LayerH* parent) = nullptr;
    /// Null takes the parent away; the layer stays where it stands.
    A_Err (*AEGP_SetLayerParent)(AEGP_LayerH, AEGP_LayerH parent) = nullptr;
    A_Err (*AEGP_DeleteLayer)(AEGP_LayerH) = nullptr;
    A_Err (*AEGP_DuplicateLayer)(AEGP_LayerH, AEGP_LayerH* duplicate) = nullptr;
    void* reserved45 = nullptr;
    /// -1 none, 0 no label, 1 to 16.
    A_Err (*AEGP_GetLayerLabel)(AEGP_LayerH, AEGP_LabelID* label) = nullptr;
    void* reserved47 = nullptr;
};
static_assert(sizeof(AEGP_LayerSuite13) == 8 * 48);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_GetLayerIndex) == 8 * 3);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_GetLayerName) == 8 * 7);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_GetLayerFlags) == 8 * 10);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_GetLayerInPoint) == 8 * 15);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_GetLayerOffset) == 8 * 18);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_ReorderLayer) == 8 * 26);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_GetLayerObjectType) == 8 * 28);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_GetLayerID) == 8 * 37);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_SetLayerName) == 8 * 40);
static_assert(offsetof(AEGP_LayerSuite13, AEGP_GetLayerLabel) == 8 * 46);

/// Every stream reference and every value got here is disposed of by the caller, with this suite.
struct AEGP_StreamSuite9 {
    static constexpr const char* suiteName = "AEGP Stream Suite";
    static constexpr std::int32_t suiteVersion = 9;

    void* reserved0to2[3] = {};
    A_Err (*AEGP_GetNewLayerStream)(AEGP_PluginID, AEGP_LayerH, AEGP_LayerStream, AEGP_StreamRefH* stream) = nullptr;
    void* reserved4to5[2] = {};
    A_Err (*AEGP_GetNewMaskStream)(AEGP_PluginID, AEGP_MaskRefH, AEGP_MaskStream, AEGP_StreamRefH* stream) = nullptr;
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH) = nullptr;
    /// UTF-16; the caller frees it. With `forceEnglish` off it is what the user sees.
    A_Err (*AEGP_GetStreamName)(AEGP_PluginID, AEGP_StreamRefH, A_Boolean forceEnglish, AEGP_MemHandle* name) = nullptr;
    void* reserved9to10[2] = {};
    /// Keyframes and expressions count.
    A_Err (*AEGP_IsStreamTimevarying)(AEGP_StreamRefH, A_Boolean* timeVarying) = nullptr;
    A_Err (*AEGP_GetStreamType)(AEGP_StreamRefH, AEGP_StreamType* type) = nullptr;
    /// With `beforeExpressions` off, expressions are applied.
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_LTimeMode, const A_Time* time,
                                    A_Boolean beforeExpressions, AEGP_StreamValue2* value) = nullptr;
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue2* value) = nullptr;
    /// Legal for a stream without keyframes. The value is copied.
    A_Err (*AEGP_SetStreamValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_StreamValue2* value) = nullptr;
    void* reserved16 = nullptr;
    A_Err (*AEGP_GetExpressionState)(AEGP_PluginID, AEGP_StreamRefH, A_Boolean* enabled) = nullptr;
    A_Err (*AEGP_SetExpressionState)(AEGP_PluginID, AEGP_StreamRefH, A_Boolean enabled) = nullptr;
    A_Err (*AEGP_GetExpression)(AEGP_PluginID, AEGP_StreamRefH, AEGP_MemHandle* text) = nullptr;
    A_Err (*AEGP_SetExpression)(AEGP_PluginID, AEGP_StreamRefH, const A_char* text) = nullptr;
    void* reserved21 = nullptr;
};
static_assert(sizeof(AEGP_StreamSuite9) == 8 * 22);
static_assert(offsetof(AEGP_StreamSuite9, AEGP_GetNewLayerStream) == 8 * 3);
static_assert(offsetof(AEGP_StreamSuite9, AEGP_GetNewMaskStream) == 8 * 6);
static_assert(offsetof(AEGP_StreamSuite9, AEGP_IsStreamTimevarying) == 8 * 11);
static_assert(offsetof(AEGP_StreamSuite9, AEGP_SetStreamValue) == 8 * 15);
static_assert(offsetof(AEGP_StreamSuite9, AEGP_GetExpressionState) == 8 * 17);

/// The tree of a layer's streams. References got here are disposed of with the stream suite.
struct AEGP_DynamicStreamSuite5 {
    static constexpr const char* suiteName = "AEGP Dynamic Stream Suite";
    static constexpr std::int32_t suiteVersion = 5;

    A_Err (*AEGP_GetNewStreamRefForLayer)(AEGP_PluginID, AEGP_LayerH, AEGP_StreamRefH* root) = nullptr;
    void* reserved1 = nullptr;
    /// 0 at the root.
    A_Err (*AEGP_GetStreamDepth)(AEGP_StreamRefH, A_long* depth) = nullptr;
    A_Err (*AEGP_GetStreamGroupingType)(AEGP_StreamRefH, AEGP_StreamGroupingType* type) = nullptr;
    /// Fails on a leaf.
    A_Err (*AEGP_GetNumStreamsInGroup)(AEGP_StreamRefH, A_long* count) = nullptr;
    void* reserved5to6[2] = {};
    A_Err (*AEGP_GetNewStreamRefByIndex)(AEGP_PluginID, AEGP_StreamRefH group, A_long index,
                                         AEGP_StreamRefH* stream) = nullptr;
    /// Named groups only. A missing name gives null, or an error on some hosts: initialise the output to null.
    A_Err (*AEGP_GetNewStreamRefByMatchname)(AEGP_PluginID, AEGP_StreamRefH group, const A_char* matchName,
                                             AEGP_StreamRefH* stream) = nullptr;
    /// Children of indexed groups only, such as masks.
    A_Err (*AEGP_DeleteStream)(AEGP_StreamRefH) = nullptr;
    void* reserved10to14[5] = {};
    /// Fills a buffer of `AEGP_MAX_STREAM_MATCH_NAME_SIZE`, ASCII.
    A_Err (*AEGP_GetMatchName)(AEGP_StreamRefH, A_char* matchName) = nullptr;
    A_Err (*AEGP_GetNewParentStreamRef)(AEGP_PluginID, AEGP_StreamRefH, AEGP_StreamRefH* parent) = nullptr;
    void* reserved17to18[2] = {};
    A_Err (*AEGP_IsSeparationLeader)(AEGP_StreamRefH, A_Boolean* leader) = nullptr;
    A_Err (*AEGP_AreDimensionsSeparated)(AEGP_StreamRefH leader, A_Boolean* separated) = nullptr;
    A_Err (*AEGP_SetDimensionsSeparated)(AEGP_StreamRefH leader, A_Boolean separated) = nullptr;
    /// Dimension 0 is x, 1 y, 2 z. The keys of separated dimensions are on the followers, not on the leader.
    A_Err (*AEGP_GetSeparationFollower)(AEGP_StreamRefH leader, A_short dimension, AEGP_StreamRefH* follower) = nullptr;
    void* reserved23to25[3] = {};
};
static_assert(sizeof(AEGP_DynamicStreamSuite5) == 8 * 26);
static_assert(offsetof(AEGP_DynamicStreamSuite5, AEGP_GetNewStreamRefByIndex) == 8 * 7);
static_assert(offsetof(AEGP_DynamicStreamSuite5, AEGP_DeleteStream) == 8 * 9);
static_assert(offsetof(AEGP_DynamicStreamSuite5, AEGP_GetMatchName) == 8 * 15);
static_assert(offsetof(AEGP_DynamicStreamSuite5, AEGP_IsSeparationLeader) == 8 * 19);
static_assert(offsetof(AEGP_DynamicStreamSuite5, AEGP_GetSeparationFollower) == 8 * 22);

struct AEGP_KeyframeSuite4 {
    static constexpr const char* suiteName = "AEGP Keyframe Suite";
    static constexpr std::int32_t suiteVersion = 4;

    /// `AEGP_NumKF_NO_DATA` for a stream that cannot have any.
    A_Err (*AEGP_GetStreamNumKFs)(AEGP_StreamRefH, A_long* count) = nullptr;
    A_Err (*AEGP_GetKeyframeTime)(AEGP_StreamRefH, AEGP_KeyframeIndex, AEGP_LTimeMode, A_Time* time) = nullptr;
    void* reserved2 = nullptr;
    /// Delete from the last index to the first.
    A_Err (*AEGP_DeleteKeyframe)(AEGP_StreamRefH, AEGP_KeyframeIndex) = nullptr;
    /// The caller disposes of the value with the stream suite.
    A_Err (*AEGP_GetNewKeyframeValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_KeyframeIndex,
                                      AEGP_StreamValue2* value) = nullptr;
    void* reserved5to15[11] = {};
    A_Err (*AEGP_StartAddKeyframes)(AEGP_StreamRefH, AEGP_AddKeyframesInfoH* batch) = nullptr;
    /// Yields the index under which the key is given its value.
    A_Err (*AEGP_AddKeyframes)(AEGP_AddKeyframesInfoH, AEGP_LTimeMode, const A_Time* time, A_long* index) = nullptr;
    /// The value is copied.
    A_Err (*AEGP_SetAddKeyframe)(AEGP_AddKeyframesInfoH, A_long index, const AEGP_StreamValue2* value) = nullptr;
    /// Frees the batch either way; its keys appear on `commit` only, as one step.
    A_Err (*AEGP_EndAddKeyframes)(A_Boolean commit, AEGP_AddKeyframesInfoH) = nullptr;
};
static_assert(sizeof(AEGP_KeyframeSuite4) == 8 * 20);
static_assert(offsetof(AEGP_KeyframeSuite4, AEGP_DeleteKeyframe) == 8 * 3);
static_assert(offsetof(AEGP_KeyframeSuite4, AEGP_StartAddKeyframes) == 8 * 16);

/// Mask references are disposed of by the caller; the masks stay.
struct AEGP_LayerMaskSuite6 {
    static constexpr const char* suiteName = "AEGP Layer Mask Suite";
    static constexpr std::int32_t suiteVersion = 6;

    A_Err (*AEGP_GetLayerNumMasks)(AEGP_LayerH, A_long* count) = nullptr;
    A_Err (*AEGP_GetLayerMaskByIndex)(AEGP_LayerH, AEGP_MaskIndex, AEGP_MaskRefH* mask) = nullptr;
    A_Err (*AEGP_DisposeMask)(AEGP_MaskRefH) = nullptr;
    void* reserved3to9[7] = {};
    /// `index` may be null.
    A_Err (*AEGP_CreateNewMask)(AEGP_LayerH, AEGP_MaskRefH* mask, A_long* index) = nullptr;
    void* reserved11to15[5] = {};
    A_Err (*AEGP_GetMaskIsRotoBezier)(AEGP_MaskRefH, A_Boolean* rotoBezier) = nullptr;
    A_Err (*AEGP_SetMaskIsRotoBezier)(AEGP_MaskRefH, A_Boolean rotoBezier) = nullptr;
    void* reserved18 = nullptr;
};
static_assert(sizeof(AEGP_LayerMaskSuite6) == 8 * 19);
static_assert(offsetof(AEGP_LayerMaskSuite6, AEGP_CreateNewMask) == 8 * 10);
static_assert(offsetof(AEGP_LayerMaskSuite6, AEGP_GetMaskIsRotoBezier) == 8 * 16);

/// An outline of N segments has vertices 0 to N; on a closed one the last repeats the first.
struct AEGP_MaskOutlineSuite3 {
    static constexpr const char* suiteName = "AEGP Mask Outline Suite";
    static constexpr std::int32_t suiteVersion = 3;

    A_Err (*AEGP_IsMaskOutlineOpen)(AEGP_MaskOutlineValH, A_Boolean* open) = nullptr;
    void* reserved1 = nullptr;
    A_Err (*AEGP_GetMaskOutlineNumSegments)(AEGP_MaskOutlineValH, A_long* count) = nullptr;
    /// Layer pixels; the handles are relative to the vertex.
    A_Err (*AEGP_GetMaskOutlineVertexInfo)(AEGP_MaskOutlineValH, AEGP_VertexIndex, AEGP_MaskVertex* vertex) = nullptr;
    void* reserved4to6[3] = {};
};
static_assert(sizeof(AEGP_MaskOutlineSuite3) == 8 * 7);

struct AEGP_TextLayerSuite1 {
    static constexpr const char* suiteName = "AEGP Text Layer Suite";
    static constexpr std::int32_t suiteVersion = 1;

    /// Null if the layer is not text. The caller disposes of the outlines, all at once.
    A_Err (*AEGP_GetNewTextOutlines)(AEGP_LayerH, const A_Time* layerTime, AEGP_TextOutlinesH* outlines) = nullptr;
    A_Err (*AEGP_DisposeTextOutlines)(AEGP_TextOutlinesH) = nullptr;
    A_Err (*AEGP_GetNumTextOutlines)(AEGP_TextOutlinesH, A_long* count) = nullptr;
    /// Borrowed from `outlines`.
    A_Err (*AEGP_GetIndexedTextOutline)(AEGP_TextOutlinesH, A_long index, PF_PathOutlinePtr* outline) = nullptr;
};
static_assert(sizeof(AEGP_TextLayerSuite1) == 8 * 4);

/// The effect reference is null throughout. Vertices are counted as those of mask outlines.
struct PF_PathDataSuite1 {
    static constexpr const char* suiteName = "PF Path Data Suite";
    static constexpr std::int32_t suiteVersion = 1;

    PF_Err (*PF_PathIsOpen)(PF_ProgPtr effect, PF_PathOutlinePtr, PF_Boolean* open) = nullptr;
    PF_Err (*PF_PathNumSegments)(PF_ProgPtr effect, PF_PathOutlinePtr, A_long* count) = nullptr;
    /// Layer pixels; the handles are absolute.
    PF_Err (*PF_PathVertexInfo)(PF_ProgPtr effect, PF_PathOutlinePtr, A_long index, PF_PathVertex* vertex) = nullptr;
    void* reserved3to10[8] = {};
};
static_assert(sizeof(PF_PathDataSuite1) == 8 * 11);

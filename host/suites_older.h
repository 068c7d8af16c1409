#pragma once

#include "host/suites_layer.h"
#include "host/suites_project.h"

/// Older versions of suites, for what was built against them. Versions once published stay as they are: slots are not
/// those of the newer tables, and names are 8-bit texts in fixed buffers.

/// Sizes of the buffers for names of items, layers and streams in the older versions, terminator included.
inline constexpr std::size_t AEGP_MAX_ITEM_NAME_SIZE = 32;
inline constexpr std::size_t AEGP_MAX_LAYER_NAME_SIZE = 32;
inline constexpr std::size_t AEGP_MAX_STREAM_NAME_SIZE = 32;

struct AEGP_UtilitySuite7 {
    static constexpr const char* suiteName = "AEGP Utility Suite";
    static constexpr std::int32_t suiteVersion = 7;

    A_Err (*AEGP_ReportInfo)(AEGP_PluginID, const A_char* text) = nullptr;
    void* reserved1to4[4] = {};
    A_Err (*AEGP_StartUndoGroup)(const A_char* name) = nullptr;
    A_Err (*AEGP_EndUndoGroup)() = nullptr;
    void* reserved7 = nullptr;
    A_Err (*AEGP_GetMainHWND)(void* mainWindow) = nullptr;
    void* reserved9to24[16] = {};
};
static_assert(sizeof(AEGP_UtilitySuite7) == 8 * 25);
static_assert(offsetof(AEGP_UtilitySuite7, AEGP_StartUndoGroup) == 8 * 5);
static_assert(offsetof(AEGP_UtilitySuite7, AEGP_GetMainHWND) == 8 * 8);

/// As version 13 but for the name.
struct AEGP_ItemSuite11 {
    static constexpr const char* suiteName = "AEGP Item Suite";
    static constexpr std::int32_t suiteVersion = 11;

    void* reserved0to1[2] = {};
    A_Err (*AEGP_GetActiveItem)(AEGP_ItemH* item) = nullptr;
    void* reserved3to4[2] = {};
    A_Err (*AEGP_GetItemType)(AEGP_ItemH, AEGP_ItemType* type) = nullptr;
    void* reserved6 = nullptr;
    /// Fills a buffer of `AEGP_MAX_ITEM_NAME_SIZE`.
    A_Err (*AEGP_GetItemName)(AEGP_ItemH, A_char* name) = nullptr;
    void* reserved8to13[6] = {};
    A_Err (*AEGP_GetItemDuration)(AEGP_ItemH, A_Time* duration) = nullptr;
    void* reserved15 = nullptr;
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH, A_long* width, A_long* height) = nullptr;
    A_Err (*AEGP_GetItemPixelAspectRatio)(AEGP_ItemH, A_Ratio* ratio) = nullptr;
    void* reserved18to26[9] = {};
};
static_assert(sizeof(AEGP_ItemSuite11) == 8 * 27);
static_assert(offsetof(AEGP_ItemSuite11, AEGP_GetItemName) == 8 * 7);
static_assert(offsetof(AEGP_ItemSuite11, AEGP_GetItemPixelAspectRatio) == 8 * 17);

struct AEGP_CompSuite11 {
    static constexpr const char* suiteName = "AEGP Comp Suite";
    static constexpr std::int32_t suiteVersion = 11;

    A_Err (*AEGP_GetCompFromItem)(AEGP_ItemH, AEGP_CompH* comp) = nullptr;
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH, AEGP_ItemH* item) = nullptr;
    void* reserved2to3[2] = {};
    A_Err (*AEGP_GetCompBGColor)(AEGP_CompH, AEGP_ColorVal* color) = nullptr;
    void* reserved5to10[6] = {};
    A_Err (*AEGP_GetCompWorkAreaStart)(AEGP_CompH, A_Time* start) = nullptr;
    A_Err (*AEGP_GetCompWorkAreaDuration)(AEGP_CompH, A_Time* duration) = nullptr;
    A_Err (*AEGP_SetCompWorkAreaStartAndDuration)(AEGP_CompH, const A_Time* start, const A_Time* duration) = nullptr;
    void* reserved14to17[4] = {};
    A_Err (*AEGP_GetNewCollectionFromCompSelection)(AEGP_PluginID, AEGP_CompH, AEGP_Collection2H* selection) = nullptr;
    A_Err (*AEGP_SetSelection)(AEGP_CompH, AEGP_Collection2H selection) = nullptr;
    void* reserved20to22[3] = {};
    A_Err (*AEGP_CreateNullInComp)(const A_char* name, AEGP_CompH, const A_Time* duration,
                                   AEGP_LayerH* layer) = nullptr;
    void* reserved24to26[3] = {};
    A_Err (*AEGP_DuplicateComp)(AEGP_CompH, AEGP_CompH* duplicate) = nullptr;
    A_Err (*AEGP_GetCompFrameDuration)(AEGP_CompH, A_Time* duration) = nullptr;
    void* reserved29 = nullptr;
};
static_assert(sizeof(AEGP_CompSuite11) == 8 * 30);
static_assert(offsetof(AEGP_CompSuite11, AEGP_GetCompWorkAreaStart) == 8 * 11);
static_assert(offsetof(AEGP_CompSuite11, AEGP_GetNewCollectionFromCompSelection) == 8 * 18);
static_assert(offsetof(AEGP_CompSuite11, AEGP_CreateNullInComp) == 8 * 23);
static_assert(offsetof(AEGP_CompSuite11, AEGP_DuplicateComp) == 8 * 27);

/// As version 13 but for the names, and without labels.
struct AEGP_LayerSuite11 {
    static constexpr const char* suiteName = "AEGP Layer Suite";
    static constexpr std::int32_t suiteVersion = 11;

    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH, A_long* count) = nullptr;
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH, A_long index, AEGP_LayerH* layer) = nullptr;
    void* reserved2 = nullptr;
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH, A_long* index) = nullptr;
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH, AEGP_ItemH* item) = nullptr;
    void* reserved5to6[2] = {};
    /// Fills buffers of `AEGP_MAX_LAYER_NAME_SIZE`; either may be null.
    A_Err (*AEGP_GetLayerName)(AEGP_LayerH, A_char* layerName, A_char* sourceName) = nullptr;
    void* reserved8to9[2] = {};
    A_Err (*AEGP_GetLayerFlags)(AEGP_LayerH, AEGP_LayerFlags* flags) = nullptr;
    A_Err (*AEGP_SetLayerFlag)(AEGP_LayerH, AEGP_LayerFlags flag, A_Boolean value) = nullptr;
    A_Err (*AEGP_IsLayerVideoReallyOn)(AEGP_LayerH, A_Boolean* on) = nullptr;
    void* reserved13to14[2] = {};
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH, AEGP_LTimeMode, A_Time* time) = nullptr;
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH, AEGP_LTimeMode, A_Time* duration) = nullptr;
    void* reserved17 = nullptr;
    A_Err (*AEGP_GetLayerOffset)(AEGP_LayerH, A_Time* time) = nullptr;
    void* reserved19to25[7] = {};
    A_Err (*AEGP_ReorderLayer)(AEGP_LayerH, A_long index) = nullptr;
    void* reserved27 = nullptr;
    A_Err (*AEGP_GetLayerObjectType)(AEGP_LayerH, AEGP_ObjectType* type) = nullptr;
    A_Err (*AEGP_IsLayer3D)(AEGP_LayerH, A_Boolean* is3D) = nullptr;
    void* reserved30to36[7] = {};
    A_Err (*AEGP_GetLayerID)(AEGP_LayerH, AEGP_LayerIDVal* id) = nullptr;
    A_Err (*AEGP_GetLayerToWorldXform)(AEGP_LayerH, const A_Time* compTime, A_Matrix4* matrix) = nullptr;
    void* reserved39 = nullptr;
    A_Err (*AEGP_SetLayerName)(AEGP_LayerH, const A_char* name) = nullptr;
    A_Err (*AEGP_GetLayerParent)(AEGP_LayerH, AEGP_LayerH* parent) = nullptr;
    A_Err (*AEGP_SetLayerParent)(AEGP_LayerH, AEGP_LayerH parent) = nullptr;
    A_Err (*AEGP_DeleteLayer)(AEGP_LayerH) = nullptr;
    A_Err (*AEGP_DuplicateLayer)(AEGP_LayerH, AEGP_LayerH* duplicate) = nullptr;
    void* reserved45 = nullptr;
};
static_assert(sizeof(AEGP_LayerSuite11) == 8 * 46);
static_assert(offsetof(AEGP_LayerSuite11, AEGP_GetLayerName) == 8 * 7);
static_assert(offsetof(AEGP_LayerSuite11, AEGP_ReorderLayer) == 8 * 26);
static_assert(offsetof(AEGP_LayerSuite11, AEGP_SetLayerName) == 8 * 40);
static_assert(offsetof(AEGP_LayerSuite11, AEGP_DuplicateLayer) == 8 * 44);

/// As version 9 but for the name. Versions 7 and 8 are alike.
template<std::int32_t version>
struct AEGP_StreamSuiteBefore9 {
    static constexpr const char* suiteName = "AEGP Stream Suite";
    static constexpr std::int32_t suiteVersion = version;

    void* reserved0to2[3] = {};
    A_Err (*AEGP_GetNewLayerStream)(AEGP_PluginID, AEGP_LayerH, AEGP_LayerStream, AEGP_StreamRefH* stream) = nullptr;
    void* reserved4to5[2] = {};
    A_Err (*AEGP_GetNewMaskStream)(AEGP_PluginID, AEGP_MaskRefH, AEGP_MaskStream, AEGP_StreamRefH* stream) = nullptr;
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH) = nullptr;
    /// Fills a buffer of `AEGP_MAX_STREAM_NAME_SIZE`.
    A_Err (*AEGP_GetStreamName)(AEGP_StreamRefH, A_Boolean forceEnglish, A_char* name) = nullptr;
    void* reserved9to10[2] = {};
    A_Err (*AEGP_IsStreamTimevarying)(AEGP_StreamRefH, A_Boolean* timeVarying) = nullptr;
    A_Err (*AEGP_GetStreamType)(AEGP_StreamRefH, AEGP_StreamType* type) = nullptr;
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_LTimeMode, const A_Time* time,
                                    A_Boolean beforeExpressions, AEGP_StreamValue2* value) = nullptr;
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue2* value) = nullptr;
    A_Err (*AEGP_SetStreamValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_StreamValue2* value) = nullptr;
    void* reserved16 = nullptr;
    A_Err (*AEGP_GetExpressionState)(AEGP_PluginID, AEGP_StreamRefH, A_Boolean* enabled) = nullptr;
    A_Err (*AEGP_SetExpressionState)(AEGP_PluginID, AEGP_StreamRefH, A_Boolean enabled) = nullptr;
    A_Err (*AEGP_GetExpression)(AEGP_PluginID, AEGP_StreamRefH, AEGP_MemHandle* text) = nullptr;
    A_Err (*AEGP_SetExpression)(AEGP_PluginID, AEGP_StreamRefH, const A_char* text) = nullptr;
    void* reserved21 = nullptr;
};
using AEGP_StreamSuite7 = AEGP_StreamSuiteBefore9<7>;
using AEGP_StreamSuite8 = AEGP_StreamSuiteBefore9<8>;
static_assert(sizeof(AEGP_StreamSuite7) == 8 * 22);
static_assert(offsetof(AEGP_StreamSuite7, AEGP_GetStreamName) == 8 * 8);
static_assert(offsetof(AEGP_StreamSuite7, AEGP_SetStreamValue) == 8 * 15);

/// Without the calls for masks and for separated dimensions.
struct AEGP_DynamicStreamSuite2 {
    static constexpr const char* suiteName = "AEGP Dynamic Stream Suite";
    static constexpr std::int32_t suiteVersion = 2;

    A_Err (*AEGP_GetNewStreamRefForLayer)(AEGP_PluginID, AEGP_LayerH, AEGP_StreamRefH* root) = nullptr;
    A_Err (*AEGP_GetStreamDepth)(AEGP_StreamRefH, A_long* depth) = nullptr;
    A_Err (*AEGP_GetStreamGroupingType)(AEGP_StreamRefH, AEGP_StreamGroupingType* type) = nullptr;
    A_Err (*AEGP_GetNumStreamsInGroup)(AEGP_StreamRefH, A_long* count) = nullptr;
    void* reserved4to5[2] = {};
    A_Err (*AEGP_GetNewStreamRefByIndex)(AEGP_PluginID, AEGP_StreamRefH group, A_long index,
                                         AEGP_StreamRefH* stream) = nullptr;
    A_Err (*AEGP_GetNewStreamRefByMatchname)(AEGP_PluginID, AEGP_StreamRefH group, const A_char* matchName,
                                             AEGP_StreamRefH* stream) = nullptr;
    A_Err (*AEGP_DeleteStream)(AEGP_StreamRefH) = nullptr;
    void* reserved9to13[5] = {};
    A_Err (*AEGP_GetMatchName)(AEGP_StreamRefH, A_char* matchName) = nullptr;
    A_Err (*AEGP_GetNewParentStreamRef)(AEGP_PluginID, AEGP_StreamRefH, AEGP_StreamRefH* parent) = nullptr;
    void* reserved16 = nullptr;
};
static_assert(sizeof(AEGP_DynamicStreamSuite2) == 8 * 17);
static_assert(offsetof(AEGP_DynamicStreamSuite2, AEGP_GetNewStreamRefByIndex) == 8 * 6);
static_assert(offsetof(AEGP_DynamicStreamSuite2, AEGP_GetMatchName) == 8 * 14);

/// As version 2 with one slot more.
struct AEGP_DynamicStreamSuite3 {
    static constexpr const char* suiteName = "AEGP Dynamic Stream Suite";
    static constexpr std::int32_t suiteVersion = 3;

    AEGP_DynamicStreamSuite2 before;
    void* reserved17 = nullptr;
};
static_assert(sizeof(AEGP_DynamicStreamSuite3) == 8 * 18);

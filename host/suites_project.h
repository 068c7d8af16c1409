#pragma once

#include "host/suites_types.h"

/// Suites of the application, its project, items, compositions and collections.

/// Usable inside the entry point only. The hooks live on until the host ends.
struct AEGP_RegisterSuite6 {
    static constexpr const char* suiteName = "AEGP Register Suite";
    static constexpr std::int32_t suiteVersion = 6;

    /// A hook for `AEGP_Command_ALL` sees every command before the host acts, at times number 0 too: set `handled`
    /// for one's own number only.
    A_Err (*AEGP_RegisterCommandHook)(AEGP_PluginID, AEGP_HookPriority, AEGP_Command, AEGP_CommandHook,
                                      AEGP_CommandRefcon) = nullptr;
    /// Called whenever any menu is about to be shown: cheap, without side effects.
    A_Err (*AEGP_RegisterUpdateMenuHook)(AEGP_PluginID, AEGP_UpdateMenuHook, AEGP_UpdateMenuRefcon) = nullptr;
    A_Err (*AEGP_RegisterDeathHook)(AEGP_PluginID, AEGP_DeathHook, AEGP_DeathRefcon) = nullptr;
    void* reserved3to11[9] = {};
};
static_assert(sizeof(AEGP_RegisterSuite6) == 8 * 12);

struct AEGP_CommandSuite1 {
    static constexpr const char* suiteName = "AEGP Command Suite";
    static constexpr std::int32_t suiteVersion = 1;

    A_Err (*AEGP_GetUniqueCommand)(AEGP_Command* command) = nullptr;
    A_Err (*AEGP_InsertMenuCommand)(AEGP_Command, const A_char* name, AEGP_MenuID, A_long position) = nullptr;
    void* reserved2to3[2] = {};
    A_Err (*AEGP_EnableCommand)(AEGP_Command) = nullptr;
    A_Err (*AEGP_DisableCommand)(AEGP_Command) = nullptr;
    void* reserved6 = nullptr;
    /// Runs a command of the host by its number: 16 undoes the last undo group, 19 copies and 20 pastes by selection.
    A_Err (*AEGP_DoCommand)(AEGP_Command) = nullptr;
};
static_assert(sizeof(AEGP_CommandSuite1) == 8 * 8);
static_assert(offsetof(AEGP_CommandSuite1, AEGP_EnableCommand) == 8 * 4);
static_assert(offsetof(AEGP_CommandSuite1, AEGP_DoCommand) == 8 * 7);

struct AEGP_UtilitySuite11 {
    static constexpr const char* suiteName = "AEGP Utility Suite";
    static constexpr std::int32_t suiteVersion = 11;

    /// Shows an ASCII text in the host's own dialog.
    A_Err (*AEGP_ReportInfo)(AEGP_PluginID, const A_char* text) = nullptr;
    void* reserved1to5[5] = {};
    /// Groups never overlap. Every start needs its end, on failure too.
    A_Err (*AEGP_StartUndoGroup)(const A_char* name) = nullptr;
    A_Err (*AEGP_EndUndoGroup)() = nullptr;
    void* reserved8 = nullptr;
    /// Takes the address of a native window handle.
    A_Err (*AEGP_GetMainHWND)(void* mainWindow) = nullptr;
    void* reserved10to30[21] = {};
};
static_assert(sizeof(AEGP_UtilitySuite11) == 8 * 31);
static_assert(offsetof(AEGP_UtilitySuite11, AEGP_StartUndoGroup) == 8 * 6);
static_assert(offsetof(AEGP_UtilitySuite11, AEGP_GetMainHWND) == 8 * 9);

/// Handles are locked to be read, unlocked as often, and freed by whoever got them.
struct AEGP_MemorySuite1 {
    static constexpr const char* suiteName = "AEGP Memory Suite";
    static constexpr std::int32_t suiteVersion = 1;

    A_Err (*AEGP_NewMemHandle)(AEGP_PluginID, const A_char* what, AEGP_MemSize, AEGP_MemFlag,
                               AEGP_MemHandle* memory) = nullptr;
    A_Err (*AEGP_FreeMemHandle)(AEGP_MemHandle) = nullptr;
    A_Err (*AEGP_LockMemHandle)(AEGP_MemHandle, void** content) = nullptr;
    A_Err (*AEGP_UnlockMemHandle)(AEGP_MemHandle) = nullptr;
    /// Bytes, the terminator of a text included.
    A_Err (*AEGP_GetMemHandleSize)(AEGP_MemHandle, AEGP_MemSize* size) = nullptr;
    void* reserved5to7[3] = {};
};
static_assert(sizeof(AEGP_MemorySuite1) == 8 * 8);

/// At most one project is open: index 0.
struct AEGP_ProjSuite8 {
    static constexpr const char* suiteName = "AEGP Proj Suite";
    static constexpr std::int32_t suiteVersion = 8;

    A_Err (*AEGP_GetNumProjects)(A_long* count) = nullptr;
    A_Err (*AEGP_GetProjectByIndex)(A_long index, AEGP_ProjectH* project) = nullptr;
    /// Fills a buffer of `AEGP_MAX_PROJ_NAME_SIZE` in the host's 8-bit code page.
    A_Err (*AEGP_GetProjectName)(AEGP_ProjectH, A_char* name) = nullptr;
    /// UTF-16, empty for a project never saved. The caller frees it.
    A_Err (*AEGP_GetProjectPath)(AEGP_ProjectH, AEGP_MemHandle* path) = nullptr;
    void* reserved4to13[10] = {};
};
static_assert(sizeof(AEGP_ProjSuite8) == 8 * 14);

/// The application's store of settings. A read of a missing key keeps the default in the store and returns it.
struct AEGP_PersistentDataSuite3 {
    static constexpr const char* suiteName = "AEGP Persistent Data Suite";
    static constexpr std::int32_t suiteVersion = 3;

    A_Err (*AEGP_GetApplicationBlob)(AEGP_PersistentBlobH* blob) = nullptr;
    void* reserved1to2[2] = {};
    A_Err (*AEGP_DoesKeyExist)(AEGP_PersistentBlobH, const A_char* section, const A_char* key,
                               A_Boolean* exists) = nullptr;
    void* reserved4to7[4] = {};
    /// A text that does not fit `buffer` comes back empty. `actualSize` counts the terminator; with null for it a
    /// misfit is an error.
    A_Err (*AEGP_GetString)(AEGP_PersistentBlobH, const A_char* section, const A_char* key, const A_char* defaultText,
                            A_u_long bufferSize, A_char* buffer, A_u_long* actualSize) = nullptr;
    A_Err (*AEGP_GetLong)(AEGP_PersistentBlobH, const A_char* section, const A_char* key, A_long defaultValue,
                          A_long* value) = nullptr;
    /// Kept with six decimals.
    A_Err (*AEGP_GetFpLong)(AEGP_PersistentBlobH, const A_char* section, const A_char* key, A_FpLong defaultValue,
                            A_FpLong* value) = nullptr;
    void* reserved11to12[2] = {};
    A_Err (*AEGP_SetString)(AEGP_PersistentBlobH, const A_char* section, const A_char* key,
                            const A_char* text) = nullptr;
    A_Err (*AEGP_SetLong)(AEGP_PersistentBlobH, const A_char* section, const A_char* key, A_long value) = nullptr;
    A_Err (*AEGP_SetFpLong)(AEGP_PersistentBlobH, const A_char* section, const A_char* key, A_FpLong value) = nullptr;
    A_Err (*AEGP_DeleteEntry)(AEGP_PersistentBlobH, const A_char* section, const A_char* key) = nullptr;
    void* reserved17 = nullptr;
};
static_assert(sizeof(AEGP_PersistentDataSuite3) == 8 * 18);
static_assert(offsetof(AEGP_PersistentDataSuite3, AEGP_DoesKeyExist) == 8 * 3);
static_assert(offsetof(AEGP_PersistentDataSuite3, AEGP_GetString) == 8 * 8);
static_assert(offsetof(AEGP_PersistentDataSuite3, AEGP_SetString) == 8 * 13);
static_assert(offsetof(AEGP_PersistentDataSuite3, AEGP_DeleteEntry) == 8 * 16);

/// Item handles are borrowed.
struct AEGP_ItemSuite13 {
    static constexpr const char* suiteName = "AEGP Item Suite";
    static constexpr std::int32_t suiteVersion = 13;

    void* reserved0to1[2] = {};
    /// Null if no item is active.
    A_Err (*AEGP_GetActiveItem)(AEGP_ItemH* item) = nullptr;
    void* reserved3to4[2] = {};
    A_Err (*AEGP_GetItemType)(AEGP_ItemH, AEGP_ItemType* type) = nullptr;
    void* reserved6 = nullptr;
    /// UTF-16. The caller frees it.
    A_Err (*AEGP_GetItemName)(AEGP_PluginID, AEGP_ItemH, AEGP_MemHandle* name) = nullptr;
    void* reserved8to13[6] = {};
    A_Err (*AEGP_GetItemDuration)(AEGP_ItemH, A_Time* duration) = nullptr;
    void* reserved15 = nullptr;
    /// Pixels.
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH, A_long* width, A_long* height) = nullptr;
    A_Err (*AEGP_GetItemPixelAspectRatio)(AEGP_ItemH, A_Ratio* ratio) = nullptr;
    void* reserved18to26[9] = {};
};
static_assert(sizeof(AEGP_ItemSuite13) == 8 * 27);
static_assert(offsetof(AEGP_ItemSuite13, AEGP_GetActiveItem) == 8 * 2);
static_assert(offsetof(AEGP_ItemSuite13, AEGP_GetItemType) == 8 * 5);
static_assert(offsetof(AEGP_ItemSuite13, AEGP_GetItemName) == 8 * 7);
static_assert(offsetof(AEGP_ItemSuite13, AEGP_GetItemDuration) == 8 * 14);
static_assert(offsetof(AEGP_ItemSuite13, AEGP_GetItemDimensions) == 8 * 16);
static_assert(offsetof(AEGP_ItemSuite13, AEGP_GetItemPixelAspectRatio) == 8 * 17);

/// Composition and layer handles are borrowed.
struct AEGP_CompSuite15 {
    static constexpr const char* suiteName = "AEGP Comp Suite";
    static constexpr std::int32_t suiteVersion = 15;

    A_Err (*AEGP_GetCompFromItem)(AEGP_ItemH, AEGP_CompH* comp) = nullptr;
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH, AEGP_ItemH* item) = nullptr;
    void* reserved2to3[2] = {};
    A_Err (*AEGP_GetCompBGColor)(AEGP_CompH, AEGP_ColorVal* color) = nullptr;
    void* reserved5to12[8] = {};
    A_Err (*AEGP_GetCompWorkAreaStart)(AEGP_CompH, A_Time* start) = nullptr;
    A_Err (*AEGP_GetCompWorkAreaDuration)(AEGP_CompH, A_Time* duration) = nullptr;
    A_Err (*AEGP_SetCompWorkAreaStartAndDuration)(AEGP_CompH, const A_Time* start, const A_Time* duration) = nullptr;
    void* reserved16to19[4] = {};
    /// The caller disposes of the collection.
    A_Err (*AEGP_GetNewCollectionFromCompSelection)(AEGP_PluginID, AEGP_CompH, AEGP_Collection2H* selection) = nullptr;
    /// Copies the collection; it stays the caller's.
    A_Err (*AEGP_SetSelection)(AEGP_CompH, AEGP_Collection2H selection) = nullptr;
    void* reserved22to24[3] = {};
    /// A null layer from time 0. A `duration` of scale 0 means the composition's length.
    A_Err (*AEGP_CreateNullInComp)(const A_UTF16Char* name, AEGP_CompH, const A_Time* duration,
                                   AEGP_LayerH* layer) = nullptr;
    void* reserved26to28[3] = {};
    A_Err (*AEGP_DuplicateComp)(AEGP_CompH, AEGP_CompH* duplicate) = nullptr;
    A_Err (*AEGP_GetCompFrameDuration)(AEGP_CompH, A_Time* duration) = nullptr;
    void* reserved31 = nullptr;
    A_Err (*AEGP_CreateVectorLayerInComp)(AEGP_CompH, AEGP_LayerH* layer) = nullptr;
    void* reserved33 = nullptr;
};
static_assert(sizeof(AEGP_CompSuite15) == 8 * 34);
static_assert(offsetof(AEGP_CompSuite15, AEGP_GetCompBGColor) == 8 * 4);
static_assert(offsetof(AEGP_CompSuite15, AEGP_GetCompWorkAreaStart) == 8 * 13);
static_assert(offsetof(AEGP_CompSuite15, AEGP_GetNewCollectionFromCompSelection) == 8 * 20);
static_assert(offsetof(AEGP_CompSuite15, AEGP_CreateNullInComp) == 8 * 25);
static_assert(offsetof(AEGP_CompSuite15, AEGP_DuplicateComp) == 8 * 29);
static_assert(offsetof(AEGP_CompSuite15, AEGP_GetCompFrameDuration) == 8 * 30);
static_assert(offsetof(AEGP_CompSuite15, AEGP_CreateVectorLayerInComp) == 8 * 32);

/// A stream reference that was pushed into a collection belongs to it.
struct AEGP_CollectionSuite2 {
    static constexpr const char* suiteName = "AEGP Collection Suite";
    static constexpr std::int32_t suiteVersion = 2;

    A_Err (*AEGP_NewCollection)(AEGP_PluginID, AEGP_Collection2H* collection) = nullptr;
    A_Err (*AEGP_DisposeCollection)(AEGP_Collection2H) = nullptr;
    A_Err (*AEGP_GetCollectionNumItems)(AEGP_Collection2H, A_u_long* count) = nullptr;
    A_Err (*AEGP_GetCollectionItemByIndex)(AEGP_Collection2H, A_u_long index, AEGP_CollectionItemV2* item) = nullptr;
    A_Err (*AEGP_CollectionPushBack)(AEGP_Collection2H, const AEGP_CollectionItemV2* item) = nullptr;
    void* reserved5 = nullptr;
};
static_assert(sizeof(AEGP_CollectionSuite2) == 8 * 6);

/// Footage got from an item is borrowed.
struct AEGP_FootageSuite11 {
    static constexpr const char* suiteName = "AEGP Footage Suite";
    static constexpr std::int32_t suiteVersion = 11;

    A_Err (*AEGP_GetMainFootageFromItem)(AEGP_ItemH, AEGP_FootageH* footage) = nullptr;
    void* reserved1to3[3] = {};
    A_Err (*AEGP_GetFootageSignature)(AEGP_FootageH, AEGP_FootageSignature* signature) = nullptr;
    void* reserved5to15[11] = {};
    /// Takes the item, not its footage; `proxy` is 0.
    A_Err (*AEGP_GetSolidFootageColor)(AEGP_ItemH, A_Boolean proxy, AEGP_ColorVal* color) = nullptr;
    void* reserved17to20[4] = {};
};
static_assert(sizeof(AEGP_FootageSuite11) == 8 * 21);
static_assert(offsetof(AEGP_FootageSuite11, AEGP_GetFootageSignature) == 8 * 4);
static_assert(offsetof(AEGP_FootageSuite11, AEGP_GetSolidFootageColor) == 8 * 16);

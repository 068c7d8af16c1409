#pragma once

#include <cstddef>
#include <cstdint>

/// Basic types, handles, records and constants of the host's suites. Names and memory layout are the published ones;
/// nothing here may be reordered, widened or packed.

// --- scalars ---

using A_char = char;
using A_u_char = unsigned char;
using A_Boolean = std::uint8_t; ///< 0 or 1
using A_short = std::int16_t;
using A_u_short = std::uint16_t;
using A_long = std::int32_t; ///< 32 bits on every host
using A_u_long = std::uint32_t;
using A_FpShort = float;
using A_FpLong = double;
using A_Err = A_long;
using A_intptr_t = std::intptr_t;
using A_UTF16Char = char16_t;
using A_LegacyEnumType = std::int32_t; ///< 4 bytes whatever compiler builds the plug-in
using PF_Err = A_long;
using PF_MaskMode = A_long;
using PF_Boolean = std::uint8_t;
using PF_FpLong = double;
using PF_PathID = A_u_long;
using SPErr = int;
using SPBoolean = int;

using AEGP_PluginID = A_long;
using AEGP_Command = A_long;
using AEGP_HookPriority = A_u_long;
using AEGP_MenuID = A_LegacyEnumType;
using AEGP_WindowType = A_LegacyEnumType;
using AEGP_CollectionItemType = A_LegacyEnumType;
using AEGP_StreamCollectionItemType = A_LegacyEnumType;
using AEGP_LayerIDVal = A_long;
using AEGP_MaskIDVal = A_long;
using AEGP_MaskIndex = A_long;
using AEGP_VertexIndex = A_long;
using AEGP_KeyframeIndex = A_long;
using AEGP_MemSize = A_u_long;
using AEGP_MemFlag = A_long;
using AEGP_LTimeMode = A_short; ///< narrow: so is an output variable of it
using AEGP_ItemType = A_short;  ///< narrow
using AEGP_ObjectType = A_long;
using AEGP_LayerFlags = A_long;
using AEGP_LayerStream = A_long;
using AEGP_MaskStream = A_long;
using AEGP_StreamType = A_long;
using AEGP_StreamGroupingType = A_long;
using AEGP_DynStreamFlags = A_u_long;
using AEGP_FootageSignature = A_u_long;
using AEGP_LabelID = A_char; ///< narrow

// --- opaque handles: each its own type, so that the compiler tells them apart ---

using AEGP_ProjectH = struct AEGP_ProjectOpaque**;
using AEGP_ItemH = struct AEGP_ItemOpaque**;
using AEGP_CompH = struct AEGP_CompOpaque**;
using AEGP_FootageH = struct AEGP_FootageOpaque**;
using AEGP_LayerH = struct AEGP_LayerOpaque**;
using AEGP_EffectRefH = struct AEGP_EffectRefOpaque**;
using AEGP_MaskRefH = struct AEGP_MaskRefOpaque**;
using AEGP_StreamRefH = struct AEGP_StreamRefOpaque**;
using AEGP_PersistentBlobH = struct AEGP_PersistentBlobOpaque**;
using AEGP_MaskOutlineValH = struct AEGP_MaskOutlineValOpaque**;
using AEGP_Collection2H = struct AEGP_Collection2Opaque**;
using AEGP_AddKeyframesInfoH = struct AEGP_AddKeyframesInfoOpaque**;
using AEGP_TextDocumentH = struct AEGP_TextDocumentOpaque**;
using AEGP_TextOutlinesH = struct AEGP_TextOutlinesOpaque**;
using AEGP_MemHandle = struct AEGP_MemOpaque**;

using AEGP_MarkerValP = struct AEGP_MarkerValOpaque*;
using AEGP_ItemViewP = struct AEGP_ItemViewOpaque*;
using AEGP_GlobalRefcon = struct AEGP_GlobalRefconOpaque*;
using AEGP_CommandRefcon = struct AEGP_CommandRefconOpaque*;
using AEGP_UpdateMenuRefcon = struct AEGP_UpdateMenuRefconOpaque*;
using AEGP_DeathRefcon = struct AEGP_DeathRefconOpaque*;
using PF_ProgPtr = struct PF_ProgOpaque*;
using PF_PathOutlinePtr = struct PF_PathOutlineOpaque*;

// --- records ---

/// value / scale seconds. A scale of 0 is invalid as input and to be guarded on output.
struct A_Time {
    A_long value;
    A_u_long scale;
};

struct A_Ratio {
    A_long num;
    A_u_long den;
};

struct A_FloatPoint {
    double x, y;
};

struct A_FloatRect {
    double left, top, right, bottom;
};

/// Row-major for row vectors: a point is multiplied from the left and the translation stands in row 3. Origin at the
/// composition's upper left corner, y downwards, pixels.
struct A_Matrix4 {
    double mat[4][4];
};

/// Components from 0 to 1.
struct AEGP_ColorVal {
    double alphaF, redF, greenF, blueF;
};

using AEGP_OneDVal = double;

struct AEGP_TwoDVal {
    double x, y;
};

struct AEGP_ThreeDVal {
    double x, y, z;
};

struct AEGP_FourDVal {
    double x, y, z, w;
};

/// Handles are relative to the vertex in mask outlines and absolute in path outlines.
struct PF_PathVertex {
    double x, y;
    double tan_in_x, tan_in_y;
    double tan_out_x, tan_out_y;
};
using AEGP_MaskVertex = PF_PathVertex;

union AEGP_StreamVal2 {
    AEGP_FourDVal four_d;
    AEGP_ThreeDVal three_d; ///< anchor, position, scale; x and y coincide with `two_d`
    AEGP_TwoDVal two_d;     ///< mask feather
    AEGP_OneDVal one_d;     ///< rotation, opacity, mask expansion, separated dimensions
    AEGP_ColorVal color;
    void** arbH;
    AEGP_MarkerValP markerP;
    AEGP_LayerIDVal layer_id;
    AEGP_MaskIDVal mask_id;
    AEGP_MaskOutlineValH mask;
    AEGP_TextDocumentH text_documentH;
};

/// To change a value, keep the record as read and replace only the members wanted.
struct AEGP_StreamValue2 {
    AEGP_StreamRefH streamH;
    AEGP_StreamVal2 val;
};

/// Zero the record first. For a stream reference set `type` and `stream_refH` and leave the union alone.
struct AEGP_CollectionItemV2 {
    AEGP_CollectionItemType type;
    union {
        AEGP_LayerH layer;
        std::uint64_t words[5];
    } u;
    AEGP_StreamRefH stream_refH;
};

static_assert(sizeof(void*) == 8 && sizeof(void (*)()) == 8);
static_assert(sizeof(A_Time) == 8 && sizeof(A_Ratio) == 8);
static_assert(sizeof(A_FloatPoint) == 16 && sizeof(A_FloatRect) == 32);
static_assert(sizeof(A_Matrix4) == 128 && sizeof(AEGP_ColorVal) == 32);
static_assert(sizeof(PF_PathVertex) == 48);
static_assert(sizeof(AEGP_StreamVal2) == 32 && alignof(AEGP_StreamVal2) == 8);
static_assert(sizeof(AEGP_StreamValue2) == 40 && offsetof(AEGP_StreamValue2, val) == 8);
static_assert(sizeof(AEGP_CollectionItemV2) == 56 && offsetof(AEGP_CollectionItemV2, u) == 8);
static_assert(offsetof(AEGP_CollectionItemV2, stream_refH) == 48);
static_assert(sizeof(AEGP_LTimeMode) == 2 && sizeof(AEGP_ItemType) == 2 && sizeof(AEGP_LabelID) == 1);

// --- constants ---

inline constexpr A_Err A_Err_NONE = 0;
inline constexpr A_Err A_Err_GENERIC = 1;
inline constexpr A_Err A_Err_STRUCT = 2;
inline constexpr A_Err A_Err_PARAMETER = 3;
inline constexpr A_Err A_Err_ALLOC = 4;
inline constexpr A_Err A_Err_MISSING_SUITE = 13;

inline constexpr AEGP_LTimeMode AEGP_LTimeMode_LayerTime = 0;
inline constexpr AEGP_LTimeMode AEGP_LTimeMode_CompTime = 1;

inline constexpr AEGP_ItemType AEGP_ItemType_NONE = 0;
inline constexpr AEGP_ItemType AEGP_ItemType_FOLDER = 1;
inline constexpr AEGP_ItemType AEGP_ItemType_COMP = 2;
inline constexpr AEGP_ItemType AEGP_ItemType_FOOTAGE = 4;

enum : AEGP_ObjectType {
    AEGP_ObjectType_NONE = -1,
    AEGP_ObjectType_AV = 0,
    AEGP_ObjectType_LIGHT = 1,
    AEGP_ObjectType_CAMERA = 2,
    AEGP_ObjectType_TEXT = 3,
    AEGP_ObjectType_VECTOR = 4,
};

enum : AEGP_StreamGroupingType {
    AEGP_StreamGroupingType_NONE = -1,
    AEGP_StreamGroupingType_LEAF = 0,
    AEGP_StreamGroupingType_NAMED_GROUP = 1,
    AEGP_StreamGroupingType_INDEXED_GROUP = 2,
};

enum : AEGP_StreamType {
    AEGP_StreamType_NO_DATA = 0,
    AEGP_StreamType_ThreeD_SPATIAL = 1,
    AEGP_StreamType_ThreeD = 2,
    AEGP_StreamType_TwoD_SPATIAL = 3,
    AEGP_StreamType_TwoD = 4,
    AEGP_StreamType_OneD = 5,
    AEGP_StreamType_COLOR = 6,
    AEGP_StreamType_ARB = 7,
    AEGP_StreamType_MARKER = 8,
    AEGP_StreamType_LAYER_ID = 9,
    AEGP_StreamType_MASK_ID = 10,
    AEGP_StreamType_MASK = 11,
    AEGP_StreamType_TEXT_DOCUMENT = 12,
};

enum : AEGP_LayerStream {
    AEGP_LayerStream_NONE = -1,
    AEGP_LayerStream_ANCHORPOINT = 0,
    AEGP_LayerStream_POSITION = 1,
    AEGP_LayerStream_SCALE = 2,
    AEGP_LayerStream_ROTATION = 3,
    AEGP_LayerStream_ROTATE_Z = AEGP_LayerStream_ROTATION,
    AEGP_LayerStream_OPACITY = 4,
    AEGP_LayerStream_AUDIO = 5,
    AEGP_LayerStream_MARKER = 6,
    AEGP_LayerStream_TIME_REMAP = 7,
    AEGP_LayerStream_ROTATE_X = 8,
    AEGP_LayerStream_ROTATE_Y = 9,
    AEGP_LayerStream_ORIENTATION = 10,
};

enum : AEGP_MaskStream {
    AEGP_MaskStream_OUTLINE = 400,
    AEGP_MaskStream_OPACITY = 401,
    AEGP_MaskStream_FEATHER = 402,
    AEGP_MaskStream_EXPANSION = 403,
};

enum : AEGP_FootageSignature {
    AEGP_FootageSignature_NONE = 0xFFFFFFFFu,
    AEGP_FootageSignature_MISSING = 0,
    AEGP_FootageSignature_SOLID = 0x536F6C69u,
};

enum : AEGP_CollectionItemType {
    AEGP_CollectionItemType_NONE = 0,
    AEGP_CollectionItemType_LAYER = 1,
    AEGP_CollectionItemType_MASK = 2,
    AEGP_CollectionItemType_EFFECT = 3,
    AEGP_CollectionItemType_STREAM = 4,
    AEGP_CollectionItemType_KEYFRAME = 5,
    AEGP_CollectionItemType_MASK_VERTEX = 6,
    AEGP_CollectionItemType_STREAMREF = 7,
};

enum : AEGP_HookPriority {
    AEGP_HP_BeforeAE = 1,
    AEGP_HP_AfterAE = 2,
};

enum : AEGP_MemFlag {
    AEGP_MemFlag_NONE = 0,
    AEGP_MemFlag_CLEAR = 1,
    AEGP_MemFlag_QUIET = 2,
};

enum : AEGP_MenuID {
    AEGP_Menu_NONE = 0,
    AEGP_Menu_FILE = 2,
    AEGP_Menu_EDIT = 3,
    AEGP_Menu_COMPOSITION = 4,
    AEGP_Menu_LAYER = 5,
    AEGP_Menu_EFFECT = 6,
    AEGP_Menu_WINDOW = 7,
    AEGP_Menu_KF_ASSIST = 9,
    AEGP_Menu_IMPORT = 10,
    AEGP_Menu_EXPORT = 13,
    AEGP_Menu_ANIMATION = 14,
};

enum : A_long {
    AEGP_MENU_INSERT_SORTED = -2,
    AEGP_MENU_INSERT_AT_BOTTOM = -1,
    AEGP_MENU_INSERT_AT_TOP = 0,
};

enum : AEGP_WindowType {
    AEGP_WindType_NONE = 0,
    AEGP_WindType_PROJECT = 1,
    AEGP_WindType_COMP = 2,
    AEGP_WindType_TIME_LAYOUT = 3,
    AEGP_WindType_LAYER = 4,
    AEGP_WindType_FOOTAGE = 5,
    AEGP_WindType_RENDER_QUEUE = 6,
    AEGP_WindType_QT = 7,
    AEGP_WindType_DIALOG = 8,
    AEGP_WindType_FLOWCHART = 9,
    AEGP_WindType_EFFECT = 10,
    AEGP_WindType_OTHER = 11,
};

/// A layer's bit field; `AEGP_SetLayerFlag` takes exactly one of them.
enum : AEGP_LayerFlags {
    AEGP_LayerFlag_NONE = 0,
    AEGP_LayerFlag_VIDEO_ACTIVE = 0x1,
    AEGP_LayerFlag_AUDIO_ACTIVE = 0x2,
    AEGP_LayerFlag_EFFECTS_ACTIVE = 0x4,
    AEGP_LayerFlag_MOTION_BLUR = 0x8,
    AEGP_LayerFlag_FRAME_BLENDING = 0x10,
    AEGP_LayerFlag_LOCKED = 0x20,
    AEGP_LayerFlag_SHY = 0x40,
    AEGP_LayerFlag_COLLAPSE = 0x80,
    AEGP_LayerFlag_AUTO_ORIENT_ROTATION = 0x100,
    AEGP_LayerFlag_ADJUSTMENT_LAYER = 0x200,
    AEGP_LayerFlag_TIME_REMAPPING = 0x400,
    AEGP_LayerFlag_LAYER_IS_3D = 0x800,
    AEGP_LayerFlag_LOOK_AT_CAMERA = 0x1000,
    AEGP_LayerFlag_LOOK_AT_POI = 0x2000,
    AEGP_LayerFlag_SOLO = 0x4000,
    AEGP_LayerFlag_MARKERS_LOCKED = 0x8000,
    AEGP_LayerFlag_NULL_LAYER = 0x10000,
    AEGP_LayerFlag_HIDE_LOCKED_MASKS = 0x20000,
    AEGP_LayerFlag_GUIDE_LAYER = 0x40000,
    AEGP_LayerFlag_ADVANCED_FRAME_BLENDING = 0x80000,
    AEGP_LayerFlag_SUBLAYERS_RENDER_SEPARATELY = 0x100000,
    AEGP_LayerFlag_ENVIRONMENT_LAYER = 0x200000,
};

inline constexpr AEGP_Command AEGP_Command_ALL = 0;
inline constexpr A_long AEGP_REORDER_LAYER_TO_END = -1;
inline constexpr AEGP_LayerIDVal AEGP_LayerIDVal_NONE = 0;
inline constexpr A_long AEGP_NumKF_NO_DATA = -1;

/// Numbers of the host's own menu commands that are used.
enum : AEGP_Command {
    hostCommandUndo = 16,
    hostCommandCopy = 19,
    hostCommandPaste = 20,
};

/// Sizes of the fixed text buffers, terminator included.
inline constexpr std::size_t AEGP_MAX_PROJ_NAME_SIZE = 48;
inline constexpr std::size_t AEGP_MAX_STREAM_MATCH_NAME_SIZE = 40;

// --- hooks and entry point ---

using AEGP_CommandHook = A_Err (*)(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command, AEGP_HookPriority,
                                   A_Boolean alreadyHandled, A_Boolean* handled);
using AEGP_UpdateMenuHook = A_Err (*)(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType activeWindow);
using AEGP_DeathHook = A_Err (*)(AEGP_GlobalRefcon, AEGP_DeathRefcon);

/// Handed to the entry point, never acquired; valid for the whole run.
struct SPBasicSuite {
    /// Sets `*table` to a table of function pointers. Non-zero if the host has no such suite; `*table` then means
    /// nothing. Each success is given back once with `ReleaseSuite`.
    SPErr (*AcquireSuite)(const char* name, std::int32_t version, const void** table) = nullptr;
    SPErr (*ReleaseSuite)(const char* name, std::int32_t version) = nullptr;
    SPBoolean (*IsEqual)(const char* one, const char* other) = nullptr;
    SPErr (*AllocateBlock)(std::size_t size, void** block) = nullptr;
    SPErr (*FreeBlock)(void* block) = nullptr;
    SPErr (*ReallocateBlock)(void* block, std::size_t size, void** moved) = nullptr;
    SPErr (*Undefined)() = nullptr;
};
static_assert(sizeof(SPBasicSuite) == 8 * 7);

/// The plug-in's entry: called once at the host's start, on the main thread, with the version of the interface.
using AEGP_EntryPoint = A_Err (*)(SPBasicSuite* basic, A_long major, A_long minor, AEGP_PluginID id,
                                  AEGP_GlobalRefcon* global);

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "host/suites.h"

/// Older versions of suites, for what was built against them. Versions once published stay as they are.
namespace jostle::standalone {

/// A function of any type; what type it is follows from the suite, its version and the slot.
using Slot = void (*)();

/// An older version of a table: the newer one's slots without those that came between, up to `count` of them. Names
/// are 8-bit texts there, in buffers of fixed size where they are read, so that calls with names are of other types.
template<class NewerSuite, std::int32_t version, std::size_t count, std::size_t firstAdded = count,
         std::size_t added = 0>
struct OlderSuite {
    using Newer = NewerSuite;
    static constexpr const char* suiteName = Newer::suiteName;
    static constexpr std::int32_t suiteVersion = version;

    /// The slot here of what stands at an offset of the newer table, in bytes.
    static constexpr std::size_t slotOf(std::size_t newerOffset) {
        const std::size_t newer = newerOffset / sizeof(Slot);
        return newer < firstAdded ? newer : newer - added;
    }
    /// The slot of the newer table that is called as this one here.
    static constexpr std::size_t newerSlotOf(std::size_t slot) { return slot < firstAdded ? slot : slot + added; }

    std::array<Slot, count> slots;
};

/// Sizes of the buffers for names of items, layers and streams, terminator included.
inline constexpr std::size_t AEGP_MAX_ITEM_NAME_SIZE = 32;
inline constexpr std::size_t AEGP_MAX_LAYER_NAME_SIZE = 32;
inline constexpr std::size_t AEGP_MAX_STREAM_NAME_SIZE = 32;

using AEGP_UtilitySuite7 = OlderSuite<AEGP_UtilitySuite11, 7, 25, 5, 1>;
static_assert(sizeof(AEGP_UtilitySuite7) == 8 * 25);
static_assert(AEGP_UtilitySuite7::slotOf(offsetof(AEGP_UtilitySuite11, AEGP_ReportInfo)) == 0);
static_assert(AEGP_UtilitySuite7::slotOf(offsetof(AEGP_UtilitySuite11, AEGP_StartUndoGroup)) == 5);
static_assert(AEGP_UtilitySuite7::slotOf(offsetof(AEGP_UtilitySuite11, AEGP_GetMainHWND)) == 8);

using AEGP_ItemSuite11 = OlderSuite<AEGP_ItemSuite13, 11, 27>;
static_assert(sizeof(AEGP_ItemSuite11) == 8 * 27);
static_assert(AEGP_ItemSuite11::slotOf(offsetof(AEGP_ItemSuite13, AEGP_GetItemName)) == 7);
static_assert(AEGP_ItemSuite11::slotOf(offsetof(AEGP_ItemSuite13, AEGP_GetItemPixelAspectRatio)) == 17);

using AEGP_CompSuite11 = OlderSuite<AEGP_CompSuite15, 11, 30, 11, 2>;
static_assert(sizeof(AEGP_CompSuite11) == 8 * 30);
static_assert(AEGP_CompSuite11::slotOf(offsetof(AEGP_CompSuite15, AEGP_GetCompBGColor)) == 4);
static_assert(AEGP_CompSuite11::slotOf(offsetof(AEGP_CompSuite15, AEGP_GetCompWorkAreaStart)) == 11);
static_assert(AEGP_CompSuite11::slotOf(offsetof(AEGP_CompSuite15, AEGP_GetNewCollectionFromCompSelection)) == 18);
static_assert(AEGP_CompSuite11::slotOf(offsetof(AEGP_CompSuite15, AEGP_CreateNullInComp)) == 23);
static_assert(AEGP_CompSuite11::slotOf(offsetof(AEGP_CompSuite15, AEGP_DuplicateComp)) == 27);

/// Without labels.
using AEGP_LayerSuite11 = OlderSuite<AEGP_LayerSuite13, 11, 46>;
static_assert(sizeof(AEGP_LayerSuite11) == 8 * 46);
static_assert(AEGP_LayerSuite11::slotOf(offsetof(AEGP_LayerSuite13, AEGP_GetLayerName)) == 7);
static_assert(AEGP_LayerSuite11::slotOf(offsetof(AEGP_LayerSuite13, AEGP_ReorderLayer)) == 26);
static_assert(AEGP_LayerSuite11::slotOf(offsetof(AEGP_LayerSuite13, AEGP_SetLayerName)) == 40);
static_assert(AEGP_LayerSuite11::slotOf(offsetof(AEGP_LayerSuite13, AEGP_DuplicateLayer)) == 44);

using AEGP_StreamSuite7 = OlderSuite<AEGP_StreamSuite9, 7, 22>;
using AEGP_StreamSuite8 = OlderSuite<AEGP_StreamSuite9, 8, 22>;
static_assert(sizeof(AEGP_StreamSuite7) == 8 * 22);
static_assert(AEGP_StreamSuite7::slotOf(offsetof(AEGP_StreamSuite9, AEGP_GetStreamName)) == 8);
static_assert(AEGP_StreamSuite7::slotOf(offsetof(AEGP_StreamSuite9, AEGP_SetStreamValue)) == 15);

/// Without the calls for separated dimensions.
using AEGP_DynamicStreamSuite2 = OlderSuite<AEGP_DynamicStreamSuite5, 2, 17, 1, 1>;
using AEGP_DynamicStreamSuite3 = OlderSuite<AEGP_DynamicStreamSuite5, 3, 18, 1, 1>;
static_assert(sizeof(AEGP_DynamicStreamSuite2) == 8 * 17);
static_assert(sizeof(AEGP_DynamicStreamSuite3) == 8 * 18);
static_assert(AEGP_DynamicStreamSuite2::slotOf(offsetof(AEGP_DynamicStreamSuite5, AEGP_GetStreamDepth)) == 1);
static_assert(AEGP_DynamicStreamSuite2::slotOf(offsetof(AEGP_DynamicStreamSuite5, AEGP_GetNewStreamRefByIndex)) == 6);
static_assert(AEGP_DynamicStreamSuite2::slotOf(offsetof(AEGP_DynamicStreamSuite5, AEGP_GetMatchName)) == 14);

} // namespace jostle::standalone

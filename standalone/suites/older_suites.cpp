#include <bit>
#include <cstring>
#include <initializer_list>
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

/// A call that stands in an older table in place of the one at an offset of the newer table.
struct Replacement {
    std::size_t newerOffset;
    Slot call;
};

template<class Older>
Older olderThan(const typename Older::Newer& newer, std::initializer_list<Replacement> replacements = {}) {
    const auto newerSlots = std::bit_cast<std::array<Slot, sizeof(newer) / sizeof(Slot)>>(newer);
    Older older;
    for (std::size_t slot = 0; slot < older.slots.size(); ++slot)
        older.slots[slot] = newerSlots[Older::newerSlotOf(slot)];
    for (const Replacement& replacement : replacements)
        older.slots[Older::slotOf(replacement.newerOffset)] = replacement.call;
    return older;
}

template<class Older>
Older olderStreamSuite() {
    return olderThan<Older>(streamSuite,
                            {{offsetof(AEGP_StreamSuite9, AEGP_GetStreamName), reinterpret_cast<Slot>(getStreamName)}});
}

} // namespace

// The newer tables are constants that need no initialisation, so they may be read here whatever the order of files.

const AEGP_UtilitySuite7 utilitySuite7 = olderThan<AEGP_UtilitySuite7>(utilitySuite);
const AEGP_ItemSuite11 itemSuite11 = olderThan<AEGP_ItemSuite11>(
    itemSuite, {{offsetof(AEGP_ItemSuite13, AEGP_GetItemName), reinterpret_cast<Slot>(getItemName)}});
const AEGP_CompSuite11 compSuite11 = olderThan<AEGP_CompSuite11>(
    compSuite, {{offsetof(AEGP_CompSuite15, AEGP_CreateNullInComp), reinterpret_cast<Slot>(createNullInComp)}});
const AEGP_LayerSuite11 layerSuite11 = olderThan<AEGP_LayerSuite11>(
    layerSuite, {{offsetof(AEGP_LayerSuite13, AEGP_GetLayerName), reinterpret_cast<Slot>(getLayerName)},
                 {offsetof(AEGP_LayerSuite13, AEGP_SetLayerName), reinterpret_cast<Slot>(setLayerName)}});
const AEGP_StreamSuite7 streamSuite7 = olderStreamSuite<AEGP_StreamSuite7>();
const AEGP_StreamSuite8 streamSuite8 = olderStreamSuite<AEGP_StreamSuite8>();
const AEGP_DynamicStreamSuite2 dynamicStreamSuite2 = olderThan<AEGP_DynamicStreamSuite2>(dynamicStreamSuite);
const AEGP_DynamicStreamSuite3 dynamicStreamSuite3 = olderThan<AEGP_DynamicStreamSuite3>(dynamicStreamSuite);

} // namespace jostle::standalone

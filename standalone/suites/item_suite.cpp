#include <cmath>
#include <limits>

#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

/// The simplest ratio that gives a number above 0, by continued fractions; 1/1 for what is no aspect at all.
A_Ratio ratioOf(double number) {
    constexpr double closeEnough = 1e-9;
    constexpr double largest = 1e6;
    if (!(number > closeEnough && number < largest))
        return {1, 1};
    double num = 1, den = 0, lastNum = 0, lastDen = 1;
    for (double rest = number;;) {
        const double whole = std::floor(rest);
        const double nextNum = whole * num + lastNum;
        const double nextDen = whole * den + lastDen;
        if (nextNum > std::numeric_limits<A_long>::max() || nextDen > std::numeric_limits<A_long>::max())
            break;
        lastNum = std::exchange(num, nextNum);
        lastDen = std::exchange(den, nextDen);
        if (std::abs(num / den - number) <= closeEnough * number)
            break;
        rest = 1 / (rest - whole);
    }
    return {static_cast<A_long>(num), static_cast<A_u_long>(den)};
}

A_Err getActiveItem(AEGP_ItemH* item) {
    if (item == nullptr)
        return A_Err_PARAMETER;
    *item = state().comps.find(state().openComps.front())->item;
    return A_Err_NONE;
}

A_Err getItemType(AEGP_ItemH handle, AEGP_ItemType* type) {
    const ItemEntry* entry = state().items.find(handle);
    if (entry == nullptr || type == nullptr)
        return A_Err_PARAMETER;
    *type = entry->item->kind == Item::Kind::Composition ? AEGP_ItemType_COMP : AEGP_ItemType_FOOTAGE;
    return A_Err_NONE;
}

A_Err getItemName(AEGP_PluginID, AEGP_ItemH handle, AEGP_MemHandle* name) {
    const ItemEntry* entry = state().items.find(handle);
    if (entry == nullptr || name == nullptr)
        return A_Err_PARAMETER;
    *name = state().giveText(entry->item->name);
    return A_Err_NONE;
}

A_Err getItemDuration(AEGP_ItemH handle, A_Time* duration) {
    const ItemEntry* entry = state().items.find(handle);
    if (entry == nullptr || duration == nullptr)
        return A_Err_PARAMETER;
    if (const CompEntry* comp = state().compOf(entry->comp)) {
        const Composition& composition = *comp->composition;
        *duration = toHost(composition.clock.timeOf(composition.durationFrames));
        return A_Err_NONE;
    }
    if (entry->item->kind == Item::Kind::Composition)
        return state().refuse("AEGP_GetItemDuration of a composition inside another");
    *duration = {0, 1}; // stills last as long as their layers
    return A_Err_NONE;
}

A_Err getItemDimensions(AEGP_ItemH handle, A_long* width, A_long* height) {
    const ItemEntry* entry = state().items.find(handle);
    if (entry == nullptr || width == nullptr || height == nullptr)
        return A_Err_PARAMETER;
    *width = entry->item->width;
    *height = entry->item->height;
    return A_Err_NONE;
}

A_Err getItemPixelAspectRatio(AEGP_ItemH handle, A_Ratio* ratio) {
    const ItemEntry* entry = state().items.find(handle);
    if (entry == nullptr || ratio == nullptr)
        return A_Err_PARAMETER;
    const CompEntry* comp = state().compOf(entry->comp);
    *ratio = comp == nullptr ? A_Ratio{1, 1} : ratioOf(comp->composition->pixelAspect);
    return A_Err_NONE;
}

} // namespace

const AEGP_ItemSuite13 itemSuite{
    .AEGP_GetActiveItem = getActiveItem,
    .AEGP_GetItemType = getItemType,
    .AEGP_GetItemName = getItemName,
    .AEGP_GetItemDuration = getItemDuration,
    .AEGP_GetItemDimensions = getItemDimensions,
    .AEGP_GetItemPixelAspectRatio = getItemPixelAspectRatio,
};

} // namespace jostle::standalone

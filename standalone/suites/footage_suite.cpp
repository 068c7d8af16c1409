#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

// An item has one footage, so that the item's handle can stand for it.
AEGP_ItemH itemOf(AEGP_FootageH footage) {
    return reinterpret_cast<AEGP_ItemH>(footage);
}

A_Err getMainFootageFromItem(AEGP_ItemH handle, AEGP_FootageH* footage) {
    const ItemEntry* entry = state().items.find(handle);
    if (entry == nullptr || entry->item->kind != Item::Kind::Footage || footage == nullptr)
        return A_Err_PARAMETER;
    *footage = reinterpret_cast<AEGP_FootageH>(handle);
    return A_Err_NONE;
}

A_Err getFootageSignature(AEGP_FootageH footage, AEGP_FootageSignature* signature) {
    const ItemEntry* entry = state().items.find(itemOf(footage));
    if (entry == nullptr || signature == nullptr)
        return A_Err_PARAMETER;
    *signature = entry->item->isSolid ? AEGP_FootageSignature_SOLID : AEGP_FootageSignature_MISSING;
    return A_Err_NONE;
}

A_Err getSolidFootageColor(AEGP_ItemH handle, A_Boolean proxy, AEGP_ColorVal* color) {
    const ItemEntry* entry = state().items.find(handle);
    if (entry == nullptr || !entry->item->isSolid || proxy != 0 || color == nullptr)
        return A_Err_PARAMETER;
    const Rgba& solid = entry->item->solidColor;
    *color = {solid.alpha, solid.red, solid.green, solid.blue};
    return A_Err_NONE;
}

} // namespace

const AEGP_FootageSuite11 footageSuite{
    .AEGP_GetMainFootageFromItem = getMainFootageFromItem,
    .AEGP_GetFootageSignature = getFootageSignature,
    .AEGP_GetSolidFootageColor = getSolidFootageColor,
};

} // namespace jostle::standalone

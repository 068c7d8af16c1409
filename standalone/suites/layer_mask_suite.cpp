#include "standalone/suites/host_state.h"
#include "standalone/suites/stream_nodes.h"
#include "standalone/suites/structure_edits.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

/// The masks of a layer; null for layers that have none.
TreeNode* masksOf(const LayerEntry& entry) {
    return childOf(state().treeOf(entry), NodeKind::MaskParade);
}

A_Err getLayerNumMasks(AEGP_LayerH handle, A_long* count) {
    const LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    const TreeNode* masks = masksOf(*entry);
    *count = masks == nullptr ? 0 : childCount(*masks);
    return A_Err_NONE;
}

A_Err getLayerMaskByIndex(AEGP_LayerH handle, AEGP_MaskIndex index, AEGP_MaskRefH* mask) {
    LayerEntry* entry = state().layerOf(handle);
    const TreeNode* masks = entry == nullptr ? nullptr : masksOf(*entry);
    TreeNode* node = masks == nullptr ? nullptr : childAt(*masks, index);
    if (node == nullptr || mask == nullptr)
        return A_Err_PARAMETER;
    *mask = state().masks.add({handle, entry, node});
    return A_Err_NONE;
}

A_Err disposeMask(AEGP_MaskRefH mask) {
    if (state().masks.find(mask) == nullptr) {
        state().noteUnknown(state().masks, mask, Misuse::DisposedTwice);
        return A_Err_PARAMETER;
    }
    state().masks.remove(mask);
    return A_Err_NONE;
}

A_Err createNewMask(AEGP_LayerH handle, AEGP_MaskRefH* mask, A_long* index) {
    LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || mask == nullptr)
        return A_Err_PARAMETER;
    TreeNode* node = addMask(*entry);
    if (node == nullptr)
        return A_Err_GENERIC;
    *mask = state().masks.add({handle, entry, node});
    if (index != nullptr)
        *index = static_cast<A_long>(placeInParent(*node));
    return A_Err_NONE;
}

A_Err getMaskIsRotoBezier(AEGP_MaskRefH handle, A_Boolean* rotoBezier) {
    const MaskRef* mask = state().usableMask(handle);
    if (mask == nullptr || rotoBezier == nullptr)
        return A_Err_PARAMETER;
    *rotoBezier = mask->node->rotoBezier;
    return A_Err_NONE;
}

A_Err setMaskIsRotoBezier(AEGP_MaskRefH handle, A_Boolean rotoBezier) {
    const MaskRef* mask = state().usableMask(handle);
    if (mask == nullptr)
        return A_Err_PARAMETER;
    state().journal.touchNode(*mask->layer, *mask->node);
    mask->node->rotoBezier = rotoBezier != 0;
    return A_Err_NONE;
}

} // namespace

const AEGP_LayerMaskSuite6 layerMaskSuite{
    .AEGP_GetLayerNumMasks = getLayerNumMasks,
    .AEGP_GetLayerMaskByIndex = getLayerMaskByIndex,
    .AEGP_DisposeMask = disposeMask,
    .AEGP_CreateNewMask = createNewMask,
    .AEGP_GetMaskIsRotoBezier = getMaskIsRotoBezier,
    .AEGP_SetMaskIsRotoBezier = setMaskIsRotoBezier,
};

} // namespace jostle::standalone

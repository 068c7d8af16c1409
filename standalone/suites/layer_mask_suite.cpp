#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

A_Err getLayerNumMasks(AEGP_LayerH handle, A_long* count) {
    const LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    *count = entry->layer->maskCount;
    return A_Err_NONE;
}

} // namespace

const AEGP_LayerMaskSuite6 layerMaskSuite{
    .AEGP_GetLayerNumMasks = getLayerNumMasks,
    .AEGP_GetLayerMaskByIndex = refused<"AEGP_GetLayerMaskByIndex">,
    .AEGP_DisposeMask = refused<"AEGP_DisposeMask">,
    .AEGP_CreateNewMask = refused<"AEGP_CreateNewMask">,
    .AEGP_GetMaskIsRotoBezier = refused<"AEGP_GetMaskIsRotoBezier">,
    .AEGP_SetMaskIsRotoBezier = refused<"AEGP_SetMaskIsRotoBezier">,
};

} // namespace jostle::standalone

#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

A_Err registerCommandHook(AEGP_PluginID, AEGP_HookPriority priority, AEGP_Command command, AEGP_CommandHook hook,
                          AEGP_CommandRefcon refcon) {
    if (hook == nullptr)
        return A_Err_PARAMETER;
    state().commandHooks.push_back({command, priority, hook, refcon});
    return A_Err_NONE;
}

A_Err registerUpdateMenuHook(AEGP_PluginID, AEGP_UpdateMenuHook hook, AEGP_UpdateMenuRefcon refcon) {
    if (hook == nullptr)
        return A_Err_PARAMETER;
    state().updateMenuHooks.push_back({hook, refcon});
    return A_Err_NONE;
}

A_Err registerDeathHook(AEGP_PluginID, AEGP_DeathHook hook, AEGP_DeathRefcon refcon) {
    if (hook == nullptr)
        return A_Err_PARAMETER;
    state().deathHooks.push_back({hook, refcon});
    return A_Err_NONE;
}

} // namespace

const AEGP_RegisterSuite6 registerSuite{
    .AEGP_RegisterCommandHook = registerCommandHook,
    .AEGP_RegisterUpdateMenuHook = registerUpdateMenuHook,
    .AEGP_RegisterDeathHook = registerDeathHook,
};

} // namespace jostle::standalone

#include "host/entry.h"

#include <utility>

namespace jostle {

namespace {

/// What lasts as long as the process: the host's hooks carry no reference of ours.
struct Process {
    HostContext context;
    A_long majorVersion = 0;
    A_long minorVersion = 0;
    AEGP_Command command = 0;
    Launch launch;
};

Process& process() {
    static Process values;
    return values;
}

A_Err onCommand(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command command, AEGP_HookPriority, A_Boolean,
                A_Boolean* handled) {
    if (command == AEGP_Command_ALL || command != process().command)
        return A_Err_NONE;
    *handled = 1;
    if (process().launch)
        process().launch(process().context);
    return A_Err_NONE;
}

A_Err onUpdateMenu(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType) {
    HostChain chain(process().context);
    AEGP_ItemH item = nullptr;
    AEGP_ItemType type = AEGP_ItemType_NONE;
    if (chain.call<&AEGP_ItemSuite13::AEGP_GetActiveItem>(&item) && item != nullptr)
        chain.call<&AEGP_ItemSuite13::AEGP_GetItemType>(item, &type);
    if (type == AEGP_ItemType_COMP)
        chain.call<&AEGP_CommandSuite1::AEGP_EnableCommand>(process().command);
    else
        chain.call<&AEGP_CommandSuite1::AEGP_DisableCommand>(process().command);
    return chain.code();
}

} // namespace

A_Err enterPlugin(SPBasicSuite* basic, A_long majorVersion, A_long minorVersion, AEGP_PluginID pluginId,
                  Launch launch) {
    process() = {{basic, pluginId}, majorVersion, minorVersion, 0, std::move(launch)};
    HostChain chain(process().context);
    if (chain.call<&AEGP_CommandSuite1::AEGP_GetUniqueCommand>(&process().command))
        chain.call<&AEGP_CommandSuite1::AEGP_InsertMenuCommand>(
            process().command, "Jostle 2...", AEGP_MenuID{AEGP_Menu_COMPOSITION}, A_long{AEGP_MENU_INSERT_AT_BOTTOM});
    chain.call<&AEGP_RegisterSuite6::AEGP_RegisterCommandHook>(
        pluginId, AEGP_HookPriority{AEGP_HP_BeforeAE}, AEGP_Command_ALL, &onCommand, AEGP_CommandRefcon{nullptr});
    chain.call<&AEGP_RegisterSuite6::AEGP_RegisterUpdateMenuHook>(pluginId, &onUpdateMenu,
                                                                  AEGP_UpdateMenuRefcon{nullptr});
    if (chain.failed())
        chain.dispose<&AEGP_UtilitySuite11::AEGP_ReportInfo>(pluginId,
                                                             "Jostle Error: Could not register command hook.");
    return chain.code();
}

} // namespace jostle
